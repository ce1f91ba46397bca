// SPDX-License-Identifier: MIT
// Where everything on the panel stands, with all that it can show at once, at
// several sizes and, as the environment says, densities.
#include "tests/hosts/bureau/PaneelProef.h"

using namespace brixtel;

namespace {

struct Ding {
    QQuickItem* item;
    QRectF vlak;  // in the window, in points
    QString naam;
};

class PaneelMaat : public PaneelProef, public testing::WithParamInterface<QSize> {
  protected:
    std::vector<Ding> teksten, knoppen;

    void SetUp() override {
        PaneelProef::SetUp();
        toon();
        const QString schaal = qEnvironmentVariable("QT_SCALE_FACTOR", QStringLiteral("1"));
        ASSERT_EQ(view()->effectiveDevicePixelRatio(), schaal.toDouble());
        alles();
        view()->resize(GetParam());
        ASSERT_TRUE(until([this] { return blad()->size() == QSizeF(GetParam()); }));
        kalmeer();
        verzamel();
    }
    // Each notice, the longest statuses, every row open: two rows begin closed.
    void alles() {
        werkruimte.doorzichtig = false;
        bureau->toonRegen();
        bureau->kies(&BureauKeuzes::rust, BureauInstellingen::kLangsteRust);
        bureau->zetRustBewaakt(false);
        schakel("Muziek volgen");
        const QByteArray pad = qgetenv("PATH");
        qputenv("PATH", "/nonexistent");
        paneel->staat()->toonSaverBlad();
        EXPECT_TRUE(until([this] {
            klok.advance(0.05);
            return item("geluidMelding")->isVisible() && item("regenMelding")->isVisible() &&
                   item("saverMelding")->isVisible() && item("rustMelding")->isVisible();
        }));
        qputenv("PATH", pad);
        druk(QAccessible::Button, "Toon de opties van Na rust");
        druk(QAccessible::Button, "Toon de opties van Brixtel");
        EXPECT_TRUE(until([this] {
            const auto* const vink = item("bijAanmelden");
            return vink && vink->isVisible();
        }));
        // The last notice was brought into sight.
        item("rol")->setProperty("contentY", 0.0);
    }
    void verzamelTeksten(QQuickItem& in) {
        const QString tekst = in.property("text").toString();
        if (in.inherits("QQuickText") && in.isVisible() && !tekst.isEmpty())
            teksten.push_back({&in, in.mapRectToScene(in.boundingRect()), tekst});
        for (QQuickItem* een : in.childItems())
            verzamelTeksten(*een);
    }
    void verzamel() {
        verzamelTeksten(*blad());
        elke(QAccessible::queryAccessibleInterface(view()), [this](QAccessibleInterface& een) {
            switch (een.role()) {
                case QAccessible::CheckBox:
                case QAccessible::Slider:
                case QAccessible::RadioButton:
                case QAccessible::Button:
                case QAccessible::ProgressBar:
                case QAccessible::Indicator:
                case QAccessible::AlertMessage: {
                    auto* const ding = qobject_cast<QQuickItem*>(een.object());
                    ASSERT_NE(ding, nullptr);
                    knoppen.push_back({ding, ding->mapRectToScene({{}, ding->size()}),
                                       een.text(QAccessible::Name)});
                    break;
                }
                default:
                    break;
            }
        });
        // Two ticks (the picture, the start with the session); six arrows, one to a row;
        // three switches; three sliders; fourteen options (five scenes, three flashes, six
        // modes of the saver); three buttons ("Toon nu", "Open de instellingen",
        // "Standaard"); two meters; four notices.
        EXPECT_EQ(knoppen.size(), 37U);
        EXPECT_GE(teksten.size(), 35U);
    }
    static bool raakt(const Ding& een, const Ding& ander) {
        return een.vlak.adjusted(0.5, 0.5, -0.5, -0.5).intersects(ander.vlak);
    }
};

TEST_P(PaneelMaat, NothingIsCut) {
    for (const Ding& een : teksten) {
        EXPECT_FALSE(een.item->property("truncated").toBool()) << qPrintable(een.naam);
        EXPECT_LE(een.item->property("contentWidth").toDouble(), een.item->width() + 0.5)
            << qPrintable(een.naam);
        EXPECT_LE(een.item->property("contentHeight").toDouble(), een.item->height() + 0.5)
            << qPrintable(een.naam);
    }
    const double breed = GetParam().width();
    for (const auto* lijst : {&teksten, &knoppen})
        for (const Ding& een : *lijst) {
            EXPECT_GE(een.vlak.left(), 12.0) << qPrintable(een.naam);
            EXPECT_LE(een.vlak.right(), breed - 12.0) << qPrintable(een.naam);
        }
    // The lower part can be scrolled to.
    const auto* const rol = item("rol");
    const double onder = rol->mapToScene({}).y() + rol->property("contentHeight").toDouble();
    for (const Ding& een : knoppen)
        EXPECT_LE(een.vlak.bottom(), onder) << qPrintable(een.naam);
}

TEST_P(PaneelMaat, NothingLiesOverAnything) {
    const auto los = [](const std::vector<Ding>& lijst) {
        for (std::size_t i = 0; i < lijst.size(); ++i)
            for (std::size_t j = 0; j < i; ++j)
                EXPECT_FALSE(raakt(lijst[i], lijst[j]))
                    << qPrintable(lijst[i].naam) << " / " << qPrintable(lijst[j].naam);
    };
    los(teksten);
    los(knoppen);
    for (const Ding& tekst : teksten)
        for (const Ding& knop : knoppen)
            EXPECT_TRUE(knop.item->isAncestorOf(tekst.item) || !raakt(tekst, knop))
                << qPrintable(tekst.naam) << " / " << qPrintable(knop.naam);
    // The running picture covers nothing either.
    const QRectF plek = blad()->property("plek").toRectF();
    for (const auto* lijst : {&teksten, &knoppen})
        for (const Ding& een : *lijst)
            EXPECT_FALSE(een.vlak.intersects(plek)) << qPrintable(een.naam);
}

INSTANTIATE_TEST_SUITE_P(Maten, PaneelMaat,
                         testing::Values(QSize(300, 640), QSize(340, 640), QSize(400, 752),
                                         QSize(300, 240), QSize(900, 1200)),
                         [](const auto& maat) {
                             return std::to_string(maat.param.width()) + "x" +
                                    std::to_string(maat.param.height());
                         });

}  // namespace
