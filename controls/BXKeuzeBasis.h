// SPDX-License-Identifier: MIT
#pragma once

#include <QQuickItem>
#include <QVariant>

namespace brixtel {

// A choice of one option out of several, without a look. A user's choice
// changes `keuze` and keeps its binding.
class BXKeuzeBasis : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QVariantList opties READ opties WRITE zetOpties NOTIFY optiesChanged)
    Q_PROPERTY(QVariant keuze READ keuze WRITE zetKeuze NOTIFY keuzeChanged)
    Q_PROPERTY(int gekozen READ gekozen NOTIFY gekozenChanged)

  public:
    using QQuickItem::QQuickItem;

    // The options in order, each `{ waarde: ..., label: "..." }`; values of any
    // comparable kind.
    [[nodiscard]] const QVariantList& opties() const { return opties_; }
    void zetOpties(const QVariantList& opties);

    // The chosen value, which need not be among the options.
    [[nodiscard]] const QVariant& keuze() const { return keuze_; }
    void zetKeuze(const QVariant& keuze);

    // The index of the chosen option; −1 means none.
    [[nodiscard]] int gekozen() const;

    // Makes the user's choice; an index outside the options does nothing.
    Q_INVOKABLE void kies(int index);

    // keuzeVerdeling for QML, with `gevraagd` and `minst` of each option.
    Q_INVOKABLE [[nodiscard]] static QList<double> verdeel(const QList<double>& gevraagd,
                                                           const QList<double>& minst,
                                                           double ruimte);

  Q_SIGNALS:
    void optiesChanged();
    void keuzeChanged();
    void gekozenChanged();
    // The user chose another option.
    void gewisseld(const QVariant& keuze);

  private:
    [[nodiscard]] QVariant waarde(qsizetype index) const;

    QVariantList opties_;
    QVariant keuze_;
};

}  // namespace brixtel
