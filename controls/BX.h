// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QColor>
#include <QFont>
#include <QObject>

class QQmlEngine;

namespace brixtel {

// The kit's colours, from the theme.
struct BXKleur final {
    BXKleur() = delete;

    static const QColor& bx();
    static const QColor& bxMiddel();
    static const QColor& bxDonker();
    static const QColor& bxWit();
    static const QColor& bxZwart();
    static const QColor& bxOranje();
    static const QColor& bxCijfer();
};

struct BXFontOpties {
    bool vet = false;
};
// The theme's font, `grootte` points high. Qt rounds any font size to whole
// pixels, so 10.5 becomes 11. Needs a QGuiApplication.
[[nodiscard]] QFont bxFont(double grootte, BXFontOpties opties = {});

// Lets the engine find `import Brixtel.Controls` in this library, so that a
// program linking the library needs no import path.
void bxBereid(QQmlEngine& machine);

// The colours, fonts and numbers for QML, as the singleton BX.
class BX : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QColor bx READ bx CONSTANT)
    Q_PROPERTY(QColor bxMiddel READ bxMiddel CONSTANT)
    Q_PROPERTY(QColor bxDonker READ bxDonker CONSTANT)
    Q_PROPERTY(QColor bxWit READ bxWit CONSTANT)
    Q_PROPERTY(QColor bxZwart READ bxZwart CONSTANT)
    Q_PROPERTY(QColor bxOranje READ bxOranje CONSTANT)
    Q_PROPERTY(QColor bxCijfer READ bxCijfer CONSTANT)

  public:
    explicit BX(QObject* ouder = nullptr) : QObject(ouder) {}

    [[nodiscard]] QColor bx() const { return BXKleur::bx(); }
    [[nodiscard]] QColor bxMiddel() const { return BXKleur::bxMiddel(); }
    [[nodiscard]] QColor bxDonker() const { return BXKleur::bxDonker(); }
    [[nodiscard]] QColor bxWit() const { return BXKleur::bxWit(); }
    [[nodiscard]] QColor bxZwart() const { return BXKleur::bxZwart(); }
    [[nodiscard]] QColor bxOranje() const { return BXKleur::bxOranje(); }
    [[nodiscard]] QColor bxCijfer() const { return BXKleur::bxCijfer(); }

    Q_INVOKABLE QFont font(double grootte, bool vet = false) const;
    // The colour at the given opacity, 0...1.
    Q_INVOKABLE QColor dek(const QColor& kleur, double dekking) const;
    Q_INVOKABLE QString bxGetal(double waarde, int decimalen) const;
    Q_INVOKABLE QString bxProcent(double fractie) const;
};

}  // namespace brixtel
