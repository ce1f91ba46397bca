// SPDX-License-Identifier: MIT
// Where everything on the panel stands, with all that it can show at once, at
// several sizes and, as the environment says, densities.
#include <QDir>
#include <map>

#include "drawing/Thema.h"
#include "hosts/bureau/Autostart.h"
#include "tests/hosts/bureau/PaneelProef.h"
#include "tests/support/Contrast.h"

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
        // The opened rows scrolled; a row that is scrolled away lies behind the upper part, cut.
        item("rol")->setProperty("contentY", 0.0);
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
        EXPECT_TRUE(until([this] {
            klok.advance(0.05);
            return item("geluidMelding")->isVisible() && item("regenMelding")->isVisible() &&
                   item("rustMelding")->isVisible();
        }));
        druk(QAccessible::Button, "Toon de opties van Na rust");
        druk(QAccessible::Button, "Toon de opties van Brixtel");
        EXPECT_TRUE(until([this] {
            const auto* const vink = item("bijAanmelden");
            return vink && vink->isVisible();
        }));
        // The entry cannot be written where a folder has its name.
        EXPECT_TRUE(QDir().mkpath(Autostart::bestand()));
        schakel("Start bij het aanmelden");
        EXPECT_TRUE(until([this] { return item("autostartMelding")->isVisible(); }));
        kalmeer();
        // The opened rows and the last notice were brought into sight.
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
                case QAccessible::Graphic:
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
        // modes of the saver); two buttons ("Toon nu", "Standaard"); two meters; four
        // notices.
        EXPECT_EQ(knoppen.size(), 36U);
        EXPECT_GE(teksten.size(), 34U);
    }
    static void elkItem(QQuickItem& in, const std::function<void(QQuickItem&)>& doe) {
        if (!in.isVisible()) return;
        doe(in);
        for (QQuickItem* een : in.childItems())
            elkItem(*een, doe);
    }
    // The control of the kit that the item is a part of, by its QML type.
    static bool isDeelVan(const QQuickItem& item, const char* type) {
        for (const QQuickItem* boven = &item; boven; boven = boven->parentItem())
            if (QByteArray(boven->metaObject()->className()).startsWith(type)) return true;
        return false;
    }
    // The result of drawing a colour over the panel's black.
    static QRgb overZwart(const QQuickItem& item, const QColor& kleur) {
        double dekking = kleur.alphaF();
        for (const QQuickItem* boven = &item; boven; boven = boven->parentItem())
            dekking *= boven->opacity();
        const QColor& zwart = Thema::zwart();
        const auto meng = [&](float voor, float achter) {
            return static_cast<int>(std::lround(255.0 * (voor * dekking + achter * (1 - dekking))));
        };
        return qRgb(meng(kleur.redF(), zwart.redF()), meng(kleur.greenF(), zwart.greenF()),
                    meng(kleur.blueF(), zwart.blueF()));
    }
    // The contrast of a text in sight, in pixels: of what differs most from the ground, which
    // is the colour that most of its pixels have.
    static double contrastIn(const QImage& beeld, const QRect& vlak) {
        std::map<QRgb, int> aantallen;
        for (int y = vlak.top(); y <= vlak.bottom(); ++y)
            for (int x = vlak.left(); x <= vlak.right(); ++x)
                ++aantallen[beeld.pixel(x, y)];
        const auto grond = std::max_element(
            aantallen.begin(), aantallen.end(),
            [](const auto& een, const auto& ander) { return een.second < ander.second; });
        double meeste = 1.0;
        for (const auto& [kleur, aantal] : aantallen)
            meeste = std::max(meeste, contrast(kleur, grond->first));
        return meeste;
    }
    void elkeTekstIsLeesbaar(const char* wanneer) {
        constexpr double kLeesbaar = 4.5;
        teksten.clear();
        verzamelTeksten(*blad());
        const double schaal = view()->effectiveDevicePixelRatio();
        const QImage beeld = view()->grabWindow();
        const auto* const rol = item("rol");
        const QRectF zicht = rol->mapRectToScene({{}, rol->size()});
        int gezien = 0;
        for (const Ding& een : teksten) {
            if (een.item->opacity() == 0.0 ||
                (isDeelVan(*een.item, "QQuickFlickable") && !zicht.contains(een.vlak)))
                continue;
            const QRect vlak = QRectF(een.vlak.topLeft() * schaal, een.vlak.size() * schaal)
                                   .toAlignedRect()
                                   .intersected(beeld.rect());
            EXPECT_GE(contrastIn(beeld, vlak), kLeesbaar)
                << wanneer << ": " << qPrintable(een.naam);
            ++gezien;
        }
        EXPECT_GE(gezien, 2) << wanneer;
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

// Six choices in a narrow window are six words still: room stands between two of them, and at
// the ends of the chosen one's ground.
TEST_P(PaneelMaat, TheChoicesStayApart) {
    constexpr double kRuim = 8.0, kRand = 3.5;
    for (const char* groep : {kScenes, kSaver}) {
        auto* const keuze = vind(QAccessible::Grouping, groep);
        ASSERT_TRUE(keuze);
        double vorige = -1e9;  // where the last label that was not chosen ends
        int lijnen = 0;
        for (int i = 0; i < keuze->childCount(); ++i) {
            auto* const knop = qobject_cast<QQuickItem*>(keuze->child(i)->object());
            ASSERT_TRUE(knop);
            std::vector<Ding> vorm;
            std::swap(vorm, teksten);
            verzamelTeksten(*knop);
            std::swap(vorm, teksten);
            ASSERT_EQ(vorm.size(), 1U);
            const double half = vorm[0].item->property("contentWidth").toDouble() / 2.0;
            const double midden =
                vorm[0].item->mapRectToScene({{}, vorm[0].item->size()}).center().x();
            const auto* const lijn = knop->findChild<QQuickItem*>(QStringLiteral("scheiding"));
            ASSERT_TRUE(lijn);
            const bool gekozen = keuze->child(i)->state().checked;
            EXPECT_FALSE(gekozen && lijn->isVisible());
            if (!gekozen) {
                EXPECT_GE(midden - half - vorige, kRuim) << qPrintable(vorm[0].naam);
            }
            EXPECT_GE(knop->width() / 2.0 - half, kRand) << qPrintable(vorm[0].naam);
            lijnen += lijn->isVisible() ? 1 : 0;
            vorige = gekozen ? -1e9 : midden + half;
        }
        EXPECT_EQ(lijnen, 0) << groep << " has room";
    }
}

TEST_P(PaneelMaat, EveryTextIsReadable) {
    elkeTekstIsLeesbaar("all that can be seen");
    schakel("Muziek volgen");
    kalmeer();
    elkeTekstIsLeesbaar("the music off");
}

// The switch that is off, the rule and the bars that are not lit have given colours; every
// other edge is clear.
TEST_P(PaneelMaat, EveryEdgeIsSeen) {
    constexpr double kGezien = 3.0;
    const QRgb zwart = Thema::zwart().rgb();
    int randen = 0;
    elkItem(*blad(), [&](QQuickItem& een) {
        if (!een.inherits("brixtel::BXVlak") || isDeelVan(een, "BXSchakelStijl")) return;
        const auto kleur = een.property("rand").value<QColor>();
        if (kleur.alpha() == 0) return;
        EXPECT_GE(contrast(overZwart(een, kleur), zwart), kGezien)
            << een.metaObject()->className() << ' ' << qPrintable(een.objectName());
        ++randen;
    });
    EXPECT_GE(randen, 3) << "the notices";
    const auto* const balk = item("schuifbalk");
    ASSERT_TRUE(balk);
    EXPECT_GE(contrast(overZwart(*balk, balk->property("kleur").value<QColor>()), zwart), kGezien);
}

INSTANTIATE_TEST_SUITE_P(Maten, PaneelMaat,
                         testing::Values(QSize(300, 640), QSize(340, 640), QSize(400, 760),
                                         QSize(300, 240), QSize(900, 1200)),
                         [](const auto& maat) {
                             return std::to_string(maat.param.width()) + "x" +
                                    std::to_string(maat.param.height());
                         });

}  // namespace
