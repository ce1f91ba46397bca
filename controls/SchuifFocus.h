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

// Which slider has the keyboard: at most one at a time. Whoever owns the
// keyboard input passes steps on to `verzet`. The one instance, `gedeeld`, lives
// for the process; in QML it is the singleton SchuifFocus. Main thread.
class SchuifFocus final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString actief READ actiefNaam NOTIFY actiefGewijzigd)

  public:
    using Verzet = std::function<void(int stappen)>;

    static SchuifFocus& gedeeld();
    static SchuifFocus* create(QQmlEngine*, QJSEngine*);

    // The name of the slider that has the keyboard; none in QML is "".
    [[nodiscard]] const std::optional<QString>& actief() const { return actief_; }
    [[nodiscard]] QString actiefNaam() const { return actief_.value_or(QString()); }

    // Moves the slider that has the keyboard by so many steps; empty where none has.
    [[nodiscard]] const Verzet& verzet() const { return verzet_; }

    void neem(const QString& naam, Verzet verzet);

    // Gives the keyboard up; with a name, only where that slider has it.
    void laatLos(const std::optional<QString>& naam = std::nullopt);

    // Passes an arrow key on to `verzet`: one step, with Shift ten, right and up
    // being more. Whether it was such a key and a slider had the keyboard.
    Q_INVOKABLE bool toets(int toets, int bijtoetsen);

  Q_SIGNALS:
    void actiefGewijzigd();

  private:
    SchuifFocus() = default;

    std::optional<QString> actief_;
    Verzet verzet_;
};

}  // namespace brixtel
