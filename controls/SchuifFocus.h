// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <functional>
#include <optional>

class QJSEngine;
class QQmlEngine;

namespace brixtel {

// Names the slider that has the keyboard: at most one at a time. The owner of
// keyboard input passes steps on to `verzet`. The one instance, `gedeeld`, lives as
// long as the process; in QML it is the singleton SchuifFocus. Main thread.
class SchuifFocus final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString actief READ actiefNaam NOTIFY actiefGewijzigd)

  public:
    using Verzet = std::function<void(int stappen)>;

    static SchuifFocus& gedeeld();
    static SchuifFocus* create(QQmlEngine*, QJSEngine*);

    // The name of the slider with the keyboard; QML sees none as "".
    [[nodiscard]] const std::optional<QString>& actief() const { return actief_; }
    [[nodiscard]] QString actiefNaam() const { return actief_.value_or(QString()); }

    // Moves the slider with the keyboard by a number of steps; empty without such a slider.
    [[nodiscard]] const Verzet& verzet() const { return verzet_; }

    void neem(const QString& naam, Verzet verzet);

    // Gives the keyboard up; with a name, only if that slider has it.
    void laatLos(const std::optional<QString>& naam = std::nullopt);

    // Passes an arrow key on to `verzet`: one step, ten with Shift; right and
    // up increase. True if the key was an arrow and a slider had the keyboard.
    Q_INVOKABLE bool toets(int toets, int bijtoetsen);

  Q_SIGNALS:
    void actiefGewijzigd();

  private:
    SchuifFocus() = default;

    std::optional<QString> actief_;
    Verzet verzet_;
};

}  // namespace brixtel
