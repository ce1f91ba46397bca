// SPDX-License-Identifier: MIT
#include "BrixtelSaver/InstellingenVenster.h"

#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QWindow>
#include <utility>

#include "BrixtelSaver/InstellingenStijl.h"
#include "BrixtelSaver/SaverInstellingen.h"
#include "drawing/Thema.h"
#include "platform/window/systems/DialogFrame.h"

namespace brixtel {

namespace {

constexpr int kKnopStap = 26;
// The sheet is laid out for six choices, and grows with more.
constexpr int kErbij = kKnopStap * (static_cast<int>(alleKeuzes.size()) - 6);
constexpr QSize kMaat(380, 286 + kErbij);
constexpr int kEersteKnop = 190 + kErbij;
// The title bar alone: no button to close, shrink or grow.
constexpr Qt::WindowFlags kSoort =
    Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::MSWindowsFixedSizeDialogHint;

QPalette donkerPalet() {
    QPalette palet(Thema::wit(), Thema::zwart());
    palet.setColor(QPalette::Window, Thema::zwart());
    palet.setColor(QPalette::Base, Thema::zwart());
    palet.setColor(QPalette::WindowText, Thema::wit());
    palet.setColor(QPalette::ButtonText, Thema::wit());
    palet.setColor(QPalette::Highlight, Thema::groen());
    palet.setColor(QPalette::Mid, Thema::middel());
    palet.setColor(QPalette::Dark, Thema::donker());
    return palet;
}

}  // namespace

InstellingenVenster::InstellingenVenster(Klaar klaar)
    : QDialog(nullptr, kSoort), klaar_(std::move(klaar)) {
    for (std::size_t i = 0; i < alleKeuzes.size(); ++i)
        knoppen_[i] = new QRadioButton(naam(alleKeuzes[i]));
    setWindowTitle(QStringLiteral("Schermbeveiliging instellen — Brixtel"));
    setFixedSize(kMaat);
    setStyle(InstellingenStijl::gedeeld());
    setPalette(donkerPalet());
    inhoud_ = new QWidget(this);
    inhoud_->setGeometry(QRect(QPoint(0, 0), kMaat));
    const QString titel = QStringLiteral("BRIXTEL SCHERMBEVEILIGING");
    const QString vraag = QStringLiteral("// wat laat hij zien?");
    maakOpschrift(titel, Thema::font(15, {.vet = true}), Thema::groen(),
                  {20, 244 + kErbij, 340, 22});
    maakOpschrift(vraag, Thema::font(11), Thema::middel(), {20, 222 + kErbij, 340, 16});
    setAccessibleName(titel);
    setAccessibleDescription(vraag);
    const SaverKeuze bewaard = SaverInstellingen::keuze();
    for (std::size_t i = 0; i < knoppen_.size(); ++i)
        maakKnop(i, bewaard);
    QPushButton* const klaarKnop = maakKlaarKnop();
    // Children do not inherit a style.
    for (QWidget* kind : findChildren<QWidget*>())
        kind->setStyle(style());
    for (QRadioButton* knop : knoppen_)
        connect(knop, &QRadioButton::clicked, this, [this, knop] { gekozenKnop(knop); });
    connect(klaarKnop, &QPushButton::clicked, this, [this] { sluit(); });
    // Return presses "Klaar" on any focus; on some desktops it would press the focused button.
    for (const auto toets : {Qt::Key_Return, Qt::Key_Enter}) {
        auto* const return_ = new QShortcut(toets, this);
        return_->setAutoRepeat(false);
        connect(return_, &QShortcut::activated, klaarKnop, [klaarKnop] { klaarKnop->click(); });
    }
}

InstellingenVenster::~InstellingenVenster() = default;

QRect InstellingenVenster::omgekeerd(QRect vak) {
    vak.moveTop(kMaat.height() - vak.y() - vak.height());
    return vak;
}

void InstellingenVenster::maakOpschrift(const QString& tekst, const QFont& font,
                                        const QColor& kleur, QRect vak) {
    auto* const opschrift = new QLabel(tekst, inhoud_);
    opschrift->setTextFormat(Qt::PlainText);
    opschrift->setFont(font);
    QPalette palet = donkerPalet();
    palet.setColor(QPalette::WindowText, kleur);
    opschrift->setPalette(palet);
    opschrift->setGeometry(omgekeerd(vak));
}

void InstellingenVenster::maakKnop(std::size_t plaats, SaverKeuze bewaard) {
    QRadioButton* const knop = knoppen_[plaats];
    knop->setParent(inhoud_);
    knop->setFont(Thema::font(12));
    QPalette palet = donkerPalet();
    palet.setColor(QPalette::WindowText, Thema::wit());
    palet.setColor(InstellingenStijl::kTint, Thema::groen());
    knop->setPalette(palet);
    knop->setChecked(alleKeuzes[plaats] == bewaard);
    if (knop->isChecked()) knop->setFocus();
    knop->setGeometry(omgekeerd({24, kEersteKnop - kKnopStap * static_cast<int>(plaats), 330, 22}));
}

QPushButton* InstellingenVenster::maakKlaarKnop() {
    auto* const knop = new QPushButton(QStringLiteral("Klaar"), inhoud_);
    knop->setFont(Thema::font(12));
    knop->setDefault(true);
    knop->setGeometry(omgekeerd({270, 16, 90, 30}));
    return knop;
}

void InstellingenVenster::gekozenKnop(const QAbstractButton* knop) {
    for (QRadioButton* een : knoppen_) {
        // Qt keeps the last button of an exclusive group on.
        een->setAutoExclusive(false);
        een->setChecked(een == knop);
    }
    for (QRadioButton* een : knoppen_)
        een->setAutoExclusive(true);
}

void InstellingenVenster::sluit() {
    for (std::size_t i = 0; i < knoppen_.size(); ++i) {
        if (!knoppen_[i]->isChecked()) continue;
        klaar_(alleKeuzes[i]);
        break;
    }
    if (platform::SheetParent* const ouder = sheetParent())
        ouder->endSheet(*this);
    else
        dismiss();
}

void InstellingenVenster::showAbove(const platform::WindowRef& above) {
    create();
    platform::askForDarkFrame(*windowHandle());
    platform::askForTitleOnly(*windowHandle());
    if (const auto plaats = platform::placeOf(above)) {
        onder_ = platform::attach(*windowHandle(), above);
        move(plaats->center() - rect().center());
    }
    show();
    raise();
    activateWindow();
}

void InstellingenVenster::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    // Some window managers offer to minimise the sheet anyway. Over a full screen a minimised
    // sheet could not be found again.
    if (event->type() == QEvent::WindowStateChange && isMinimized())
        QMetaObject::invokeMethod(this, &QWidget::showNormal, Qt::QueuedConnection);
}

void InstellingenVenster::dismiss() {
    if (!isVisible()) return;
    hide();
    tellDismissed();
}

QImage InstellingenVenster::picture() {
    return grab().toImage();
}

}  // namespace brixtel
