// SPDX-License-Identifier: MIT
// The icon in the tray, before a tray of the test's own.
#include "hosts/bureau/Pictogram.h"

#include <QDBusArgument>
#include <functional>

#include "tests/hosts/bureau/BureauProef.h"

using namespace brixtel;

namespace {

const QString kTrays = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString kItem = QStringLiteral("/StatusNotifierItem");
const QString kItemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString kMenuInterface = QStringLiteral("com.canonical.dbusmenu");
const QString kEigenschappen = QStringLiteral("org.freedesktop.DBus.Properties");

// A tray that notes which icons register.
struct Tray {
    QStringList aangemeld;
    BusAansluiting aansluiting;

    Tray(platform::MediaClock& klok, const QString& adres) : aansluiting(klok, adres) {
        aansluiting.bied(
            {.pad = QStringLiteral("/StatusNotifierWatcher"),
             .beschrijving = QStringLiteral(
                 "<interface name=\"org.kde.StatusNotifierWatcher\">"
                 "<method name=\"RegisterStatusNotifierItem\">"
                 "<arg name=\"service\" type=\"s\" direction=\"in\"/></method></interface>"),
             .doe = {{kTrays + QStringLiteral(".RegisterStatusNotifierItem"),
                      [this](const QVariantList& waarden) -> BusAntwoord {
                          aangemeld << waarden.at(0).toString();
                          return QVariantList();
                      }}},
             .eigenschappen = {}});
    }
    bool kom() { return aansluiting.neemNaam(kTrays); }
};

class InHetSysteemvak : public BureauOpDeBus {
  protected:
    std::optional<Pictogram> pictogram;

    void bied(const BureauDaden& daden) override {
        pictogram.emplace(*bureau, *aansluiting, daden);
    }
    QVariant kenmerk(const char* naam) {
        const auto antwoord =
            beller->roep(kItem, kEigenschappen, "Get", {kItemInterface, QLatin1String(naam)});
        return qvariant_cast<QDBusVariant>(antwoord.arguments().value(0)).variant();
    }
    QString menuPad() { return qvariant_cast<QDBusObjectPath>(kenmerk("Menu")).path(); }
    BusMenuRegel menu() {
        const auto antwoord =
            beller->roep(menuPad(), kMenuInterface, "GetLayout", {0, -1, QStringList()});
        return qdbus_cast<BusMenuRegel>(antwoord.arguments().value(1));
    }
    static const BusMenuRegel* vind(const BusMenuRegel& regel, const QString& begin) {
        const QString tekst = regel.kenmerken.value(QStringLiteral("label")).toString();
        if (!tekst.isEmpty() && tekst.startsWith(begin)) return &regel;
        for (const auto& onder : regel.onder)
            if (const auto* gevonden = vind(onder, begin)) return gevonden;
        return nullptr;
    }
    void klik(const char* begin) {
        const BusMenuRegel alles = menu();
        const auto* regel = vind(alles, QString::fromLatin1(begin));
        ASSERT_NE(regel, nullptr) << begin;
        beller->roep(menuPad(), kMenuInterface, "Event",
                     {regel->nummer, QStringLiteral("clicked"),
                      QVariant::fromValue(QDBusVariant(QString())), 0U});
    }
    static bool heeftVink(const BusMenuRegel& regel) {
        return regel.kenmerken.value(QStringLiteral("toggle-state")) == 1;
    }
    bool heeftVink(const char* begin) {
        const BusMenuRegel alles = menu();
        const auto* regel = vind(alles, QString::fromLatin1(begin));
        return regel && heeftVink(*regel);
    }
    // The texts of a menu's lines, with a star at the one that is on.
    QStringList keuzes(const char* naam) {
        const BusMenuRegel alles = menu();
        const auto* regel = vind(alles, QString::fromLatin1(naam));
        QStringList teksten;
        for (const auto& onder : regel ? regel->onder : std::vector<BusMenuRegel>()) {
            EXPECT_EQ(onder.kenmerken.value(QStringLiteral("toggle-type")),
                      QStringLiteral("radio"));
            teksten << onder.kenmerken.value(QStringLiteral("label")).toString() +
                           (heeftVink(onder) ? QStringLiteral("*") : QString());
        }
        return teksten;
    }
};

TEST_F(InHetSysteemvak, ATrayThatIsThereIsToldAtOnce) {
    Tray tray(echteKlok, bus.address());
    ASSERT_TRUE(tray.kom());
    pictogram->meldAan();
    ASSERT_TRUE(until([&] { return !tray.aangemeld.isEmpty(); }));
    EXPECT_EQ(tray.aangemeld, QStringList(aansluiting->verbinding().baseService()));
}

TEST_F(InHetSysteemvak, AClickIsForTheIconAndTheHelpTellsHowThingsStand) {
    EXPECT_EQ(kenmerk("ItemIsMenu"), false);
    const auto hulp = [&] { return qdbus_cast<BusHulp>(kenmerk("ToolTip")); };
    EXPECT_EQ(hulp().titel, QStringLiteral("Brixtel"));
    EXPECT_EQ(hulp().tekst, QStringLiteral("Regen over het bureaublad: uit\nZwart scherm: uit"));
    beller->roep(kItem, kItemInterface, "Activate", {0, 0});
    EXPECT_EQ(hulp().tekst, QStringLiteral("Regen over het bureaublad: aan\nZwart scherm: uit"));
    bureau->toonZwart(ZwartSoort(DrieSoort::bol));
    EXPECT_TRUE(hulp().tekst.endsWith(QStringLiteral("Zwart scherm: bol")));
    bureau->kies(&BureauKeuzes::dichtheid, 0.0);
    klok.advance(1.0);
    EXPECT_TRUE(hulp().tekst.contains(QStringLiteral("aan, maar niet te zien: ")));
}

TEST_F(InHetSysteemvak, ATrayThatComesLaterOrAgainIsToldToo) {
    pictogram->meldAan();
    for (int keer = 0; keer < 2; ++keer) {
        Tray tray(echteKlok, bus.address());
        ASSERT_TRUE(tray.kom());
        EXPECT_TRUE(until([&] { return tray.aangemeld.size() == 1; })) << keer;
    }
}

TEST_F(InHetSysteemvak, ThePictureIsGreenOnBlack) {
    EXPECT_EQ(kenmerk("Title"), QStringLiteral("Brixtel"));
    EXPECT_EQ(kenmerk("Status"), QStringLiteral("Active"));
    EXPECT_EQ(kenmerk("ItemIsMenu"), false);
    const auto beelden = qdbus_cast<QList<BusBeeld>>(kenmerk("IconPixmap"));
    ASSERT_EQ(beelden.size(), 3);
    for (const BusBeeld& beeld : beelden) {
        ASSERT_EQ(beeld.bytes.size(), beeld.breedte * beeld.hoogte * 4);
        int groen = 0, zwart = 0;
        for (qsizetype i = 0; i < beeld.bytes.size(); i += 4) {
            const auto kanaal = [&](int k) { return static_cast<quint8>(beeld.bytes[i + k]); };
            groen += kanaal(0) == 255 && kanaal(2) > 90 && kanaal(2) > 2 * kanaal(1);
            zwart += kanaal(0) == 255 && kanaal(2) < 30;
        }
        EXPECT_GT(groen, beeld.breedte * beeld.hoogte / 10);
        EXPECT_GT(zwart, beeld.breedte * beeld.hoogte / 3);
    }
}

TEST_F(InHetSysteemvak, TheMenuDoesWhatItSays) {
    klik("Regen over het bureaublad");
    EXPECT_TRUE(nu().regen);
    EXPECT_TRUE(heeftVink("Regen over het bureaublad"));
    klik("TUNNEL: vlieg door een tunnel van matrix-cijfers");
    EXPECT_EQ(nu().soort, DrieSoort::tunnel);
    EXPECT_TRUE(heeftVink("TUNNEL"));
    EXPECT_FALSE(heeftVink("BOL: de aarde"));
    klik("Zwart scherm volgt de muziek");
    EXPECT_TRUE(nu().keuzes.muziek);
    EXPECT_TRUE(heeftVink("Zwart scherm volgt de muziek"));
    klik("Alles sluiten");
    EXPECT_FALSE(nu().regen || nu().zwart);
    EXPECT_EQ(gestopt, 0);
    klik("Instellingen");
    EXPECT_EQ(getoond, 1);
    klik("Stoppen");
    EXPECT_EQ(gestopt, 1);
}

TEST_F(InHetSysteemvak, TheMenuSaysWhyNoPanelOpensUntilOneDoes) {
    paneelMis = QStringLiteral("de module BrixtelPaneel.so ontbreekt");
    klik("Instellingen");
    BusMenuRegel alles = menu();
    EXPECT_NE(vind(alles, QStringLiteral("Instellingen… (de module BrixtelPaneel.so ontbreekt)")),
              nullptr);
    paneelMis.clear();
    klik("Instellingen");
    alles = menu();
    EXPECT_EQ(vind(alles, QStringLiteral("Instellingen… (")), nullptr);
    EXPECT_NE(vind(alles, QStringLiteral("Instellingen…")), nullptr);
    EXPECT_EQ(getoond, 2);
}

TEST_F(InHetSysteemvak, TheMenuSaysWhatTheRainWaitsFor) {
    werkruimte.doorzichtig = false;
    bureau->toonRegen();
    const BusMenuRegel alles = menu();
    EXPECT_NE(vind(alles, QStringLiteral("Regen over het bureaublad (wacht op een compositor)")),
              nullptr);
}

TEST_F(InHetSysteemvak, DensityAndSpeedAreChosenInStepsAndTheChoiceIsMarked) {
    EXPECT_EQ(keuzes("Dichtheid").join(u' '), QStringLiteral("10% 30% 50% 70%* 90% 100%"));
    EXPECT_EQ(keuzes("Snelheid").join(u','),
              QStringLiteral("0,2 ×,0,5 ×,1,0 ×*,1,5 ×,2,0 ×,3,0 ×,4,0 ×"));
    klik("30%");
    klik("4,0");
    EXPECT_EQ(nu().keuzes, (BureauKeuzes{.dichtheid = 0.3, .snelheid = 4.0}));
    EXPECT_EQ(keuzes("Dichtheid").join(u' '), QStringLiteral("10% 30%* 50% 70% 90% 100%"));
    EXPECT_EQ(keuzes("Snelheid").last(), QStringLiteral("4,0 ×*"));
}

TEST_F(InHetSysteemvak, AChoiceBetweenTheStepsIsListedAsLongAsItIsChosen) {
    bureau->zetKeuzes({.dichtheid = 0.0, .snelheid = 1.2});
    EXPECT_EQ(keuzes("Dichtheid").join(u' '), QStringLiteral("0%* 10% 30% 50% 70% 90% 100%"));
    EXPECT_EQ(keuzes("Snelheid").at(3), QStringLiteral("1,2 ×*"));
    klik("50%");
    EXPECT_EQ(keuzes("Dichtheid").join(u' '), QStringLiteral("10% 30% 50%* 70% 90% 100%"));
    // By what can be told apart.
    bureau->kies(&BureauKeuzes::dichtheid, 0.7001);
    EXPECT_EQ(keuzes("Dichtheid").join(u' '), QStringLiteral("10% 30% 50% 70%* 90% 100%"));
}

TEST_F(InHetSysteemvak, ABlackScreenUnderALockDoesNotCome) {
    werkruimte.zetBeveiligd(true);
    klik("TUNNEL: vlieg door een tunnel van matrix-cijfers");
    EXPECT_EQ(nu(), BureauStand{});
    EXPECT_FALSE(heeftVink("TUNNEL"));
}

TEST_F(InHetSysteemvak, ALineThatIsNotThereIsRefused) {
    for (const int nummer : {-1, 28, 1'000'000}) {
        EXPECT_EQ(beller->roep(menuPad(), kMenuInterface, "AboutToShow", {nummer}).type(),
                  QDBusMessage::ErrorMessage);
        EXPECT_EQ(beller
                      ->roep(menuPad(), kMenuInterface, "Event",
                             {nummer, QStringLiteral("clicked"),
                              QVariant::fromValue(QDBusVariant(0)), 0U})
                      .type(),
                  QDBusMessage::ErrorMessage);
    }
    EXPECT_EQ(nu(), BureauStand{});
}

TEST_F(InHetSysteemvak, ActivatingTheIconSwitchesTheRain) {
    beller->roep(kItem, kItemInterface, "Activate", {0, 0});
    EXPECT_TRUE(nu().regen);
    beller->roep(kItem, kItemInterface, "Activate", {0, 0});
    EXPECT_FALSE(nu().regen);
}

TEST_F(InHetSysteemvak, WithoutNamingAnyAllLinesOfTheMenuAreTold) {
    const auto alle = [this](const QList<int>& nummers) {
        const auto antwoord = beller->roep(menuPad(), kMenuInterface, "GetGroupProperties",
                                           {QVariant::fromValue(nummers), QStringList()});
        return qdbus_cast<QList<BusMenuKenmerken>>(antwoord.arguments().value(0));
    };
    const auto lijst = alle({});
    std::function<int(const BusMenuRegel&)> tel = [&](const BusMenuRegel& regel) {
        int aantal = 1;
        for (const auto& onder : regel.onder)
            aantal += tel(onder);
        return aantal;
    };
    EXPECT_EQ(lijst.size(), tel(menu()));
    EXPECT_EQ(alle({1, 2}).size(), 2);
    EXPECT_EQ(alle({1, 9999}).size(), 1);
}

}  // namespace
