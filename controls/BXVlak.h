// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

#include "controls/BXTekening.h"

namespace brixtel {

// A filled rectangle with a one-point outline, and rounded corners on request.
class BXVlak : public BXTekening {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor kleur READ kleur WRITE zetKleur NOTIFY kleurChanged)
    Q_PROPERTY(QColor rand READ rand WRITE zetRand NOTIFY randChanged)
    Q_PROPERTY(double ronding READ ronding WRITE zetRonding NOTIFY rondingChanged)
    Q_PROPERTY(bool dun READ dun WRITE zetDun NOTIFY dunChanged)

  public:
    using BXTekening::BXTekening;

    [[nodiscard]] QColor kleur() const { return kleur_; }
    void zetKleur(const QColor& kleur);

    // The outline's colour; transparent means no outline.
    [[nodiscard]] QColor rand() const { return rand_; }
    void zetRand(const QColor& rand);

    // The corners' radius in points, at most half the shorter side.
    [[nodiscard]] double ronding() const { return ronding_; }
    void zetRonding(double ronding);

    // Makes a rule: the shorter side is as thick as an outline, wherever it lies.
    [[nodiscard]] bool dun() const { return dun_; }
    void zetDun(bool dun);

  Q_SIGNALS:
    void kleurChanged();
    void randChanged();
    void rondingChanged();
    void dunChanged();

  protected:
    void teken(QPainter& painter, QSize maat, double schaal) const override;
    [[nodiscard]] QRect pixels(QPointF plaats, double schaal) const override;

  private:
    void tekenRecht(QPainter& painter, QSize maat, int dikte) const;
    void tekenRond(QPainter& painter, QSize maat, int dikte, double ronding) const;

    QColor kleur_ = Qt::transparent;
    QColor rand_ = Qt::transparent;
    double ronding_ = 0.0;
    bool dun_ = false;
};

}  // namespace brixtel
