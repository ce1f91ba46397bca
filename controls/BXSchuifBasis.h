// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QQuickItem>

#include "controls/BXWaarde.h"
#include "controls/SchuifRekenen.h"

namespace brixtel {

// A slider without a look. A user's change of `waarde` keeps its binding. The
// owner may set any value; outside the range, the knob stands at the nearest
// end. The slider with the keyboard is SchuifFocus.actief. Assistive technology reads its
// numbers and its text.
class BXSchuifBasis : public QQuickItem, public BXWaarde {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString naam READ naam WRITE zetNaam NOTIFY naamChanged)
    Q_PROPERTY(double waarde READ waarde WRITE zetWaarde NOTIFY waardeChanged)
    Q_PROPERTY(QList<double> bereik READ bereik WRITE zetBereik NOTIFY bereikChanged)
    Q_PROPERTY(double stap READ stap WRITE zetStap NOTIFY stapChanged)
    Q_PROPERTY(QString tekst READ tekst WRITE zetTekst NOTIFY tekstChanged)
    Q_PROPERTY(double naamBreedte READ naamBreedte WRITE zetNaamBreedte NOTIFY naamBreedteChanged)
    Q_PROPERTY(bool actief READ actief NOTIFY actiefChanged)
    Q_PROPERTY(double minimumValue READ minimumValue NOTIFY bereikChanged)
    Q_PROPERTY(double maximumValue READ maximumValue NOTIFY bereikChanged)
    Q_PROPERTY(double stepSize READ stepSize NOTIFY stepSizeChanged)

  public:
    explicit BXSchuifBasis(QQuickItem* ouder = nullptr);
    ~BXSchuifBasis() override;

    [[nodiscard]] const QString& naam() const { return naam_; }
    void zetNaam(const QString& naam);

    [[nodiscard]] double waarde() const { return waarde_; }
    void zetWaarde(double waarde);

    // Both bounds; any list but two numbers gives the empty range 0...0.
    [[nodiscard]] const QList<double>& bereik() const { return bereik_; }
    void zetBereik(const QList<double>& bereik);

    [[nodiscard]] double stap() const { return stap_; }
    void zetStap(double stap);

    // The shown text of the value.
    [[nodiscard]] const QString& tekst() const { return tekst_; }
    void zetTekst(const QString& tekst);

    [[nodiscard]] double naamBreedte() const { return naamBreedte_; }
    void zetNaamBreedte(double breedte);

    [[nodiscard]] QAccessible::Role waardeRol() const override { return QAccessible::Slider; }
    [[nodiscard]] QString waardeNaam() const override { return naam_; }
    [[nodiscard]] QString waardeTekst() const override { return tekst_; }
    [[nodiscard]] Getallen waardeGetallen() const override {
        return {
            .nu = waarde_, .onder = minimumValue(), .boven = maximumValue(), .stap = stepSize()};
    }
    [[nodiscard]] bool isVerstelbaar() const override { return true; }
    void kiesWaarde(double waarde) override { kies(waarde); }
    void stapWaarde(bool hoger) override { hoger ? verhoog() : verlaag(); }

    // Whether SchuifFocus names this slider.
    [[nodiscard]] bool actief() const;

    [[nodiscard]] double minimumValue() const { return reken().onder(); }
    [[nodiscard]] double maximumValue() const { return reken().boven(); }
    [[nodiscard]] double stepSize() const { return reken().stap(); }

    // The user's actions, for an enabled slider. Clamps a value outside the
    // range.
    Q_INVOKABLE void kies(double waarde);
    Q_INVOKABLE void sleep(double fractie);  // of the track, from the left; NaN does nothing
    Q_INVOKABLE void verzet(int stappen);
    Q_INVOKABLE void verhoog();
    Q_INVOKABLE void verlaag();

    // The number of bars on a track of `breedte` points, and the number of lit bars.
    Q_INVOKABLE int balken(double breedte) const { return SchuifRekenen::balken(breedte); }
    Q_INVOKABLE int gevuld(double waarde, int balken) const;

  Q_SIGNALS:
    void naamChanged();
    void waardeChanged();
    void bereikChanged();
    void stapChanged();
    void stepSizeChanged();
    void tekstChanged();
    void naamBreedteChanged();
    void actiefChanged();
    // The user moved the slider.
    void bewogen(double waarde);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

  private:
    [[nodiscard]] SchuifRekenen reken() const;
    void neemFocus();

    QString naam_, tekst_;
    double waarde_ = 0.0, stap_ = 0.0, naamBreedte_ = 92.0;
    QList<double> bereik_{0.0, 1.0};
    bool toetsenbord_ = false;
};

}  // namespace brixtel
