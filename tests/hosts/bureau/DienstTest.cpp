// SPDX-License-Identifier: MIT
// The service on a bus: what others can call, what they are told, and what they
// get for calls that are wrong.
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDir>
#include <QProcess>
#include <limits>

#include "hosts/bureau/BureauInstellingen.h"
#include "hosts/bureau/BureauXml.h"
#include "hosts/bureau/Klant.h"
#include "tests/hosts/bureau/BureauProef.h"
#include "tests/support/BusMonitor.h"
#include "tests/support/Paden.h"
#include "tests/support/ZonderThuis.h"

using namespace brixtel;

namespace {

const QString kEigenschappen = QStringLiteral("org.freedesktop.DBus.Properties");

class Dienst : public BureauOpDeBus {
  protected:
    std::optional<BureauDienst> dienst;

    void bied(const BureauDaden& daden) override { dienst.emplace(*bureau, *aansluiting, daden); }
    // A call that must be refused: by which error, with one Dutch line, and with
    // nothing changed.
    void geweigerd(const QDBusMessage& antwoord, const char* naam) {
        EXPECT_EQ(antwoord.type(), QDBusMessage::ErrorMessage);
        EXPECT_EQ(antwoord.errorName(),
                  QLatin1String("org.freedesktop.DBus.Error.") + QLatin1String(naam));
        EXPECT_GT(antwoord.errorMessage().size(), 15) << qPrintable(antwoord.errorMessage());
        EXPECT_FALSE(antwoord.errorMessage().contains(QStringLiteral("such")));
        EXPECT_TRUE(gemeld.empty());
        EXPECT_EQ(nu(), BureauStand{});
    }
};

TEST_F(Dienst, EachMethodDoesWhatItSays) {
    EXPECT_EQ(beller->roep("ToonRegen").type(), QDBusMessage::ReplyMessage);
    EXPECT_TRUE(nu().regen);
    beller->roep("SluitRegen");
    EXPECT_FALSE(nu().regen);
    beller->roep("WisselRegen");
    EXPECT_TRUE(nu().regen);
    beller->roep("ToonZwart", {QStringLiteral("kubus")});
    EXPECT_EQ(nu().soort, DrieSoort::kubus);
    beller->roep("SluitZwart");
    EXPECT_FALSE(nu().zwart);
    beller->roep("WisselZwart", {QStringLiteral("")});
    EXPECT_TRUE(nu().zwart);
    EXPECT_EQ(nu().soort, std::nullopt);
    beller->roep("SluitAlles");
    EXPECT_EQ(nu(), BureauStand{});
}

TEST_F(Dienst, ChoicesAreSet) {
    beller->roep("ZetDichtheid", {0.1});
    beller->roep("ZetSnelheid", {2.5});
    beller->roep("ZetMuziek", {true});
    EXPECT_EQ(nu().keuzes, (BureauKeuzes{.dichtheid = 0.1, .snelheid = 2.5, .muziek = true}));
    EXPECT_EQ(beller->lees("Dichtheid"), 0.1);
    EXPECT_EQ(beller->lees("Snelheid"), 2.5);
    EXPECT_EQ(beller->lees("Muziek"), true);
}

// A folder in the place of the settings' file.
TEST_F(Dienst, AChoiceThatCannotBeKeptHoldsAndIsSaidNotToBe) {
    const QString naam = map.filePath(BureauInstellingen::moduleNaam + QStringLiteral(".conf"));
    ASSERT_TRUE(QDir().mkpath(naam));
    for (const auto& [methode, waarde] :
         {std::pair<const char*, QVariant>("ZetDichtheid", 0.1), {"ZetMuziek", true}}) {
        const QDBusMessage antwoord = beller->roep(methode, {waarde});
        EXPECT_EQ(antwoord.type(), QDBusMessage::ErrorMessage) << methode;
        EXPECT_EQ(antwoord.errorName(), kNietBewaard);
        EXPECT_TRUE(antwoord.errorMessage().contains(QStringLiteral("niet te bewaren")))
            << qPrintable(antwoord.errorMessage());
        klok.advance(1.0);
    }
    EXPECT_EQ(nu().keuzes.dichtheid, 0.1);
    EXPECT_TRUE(nu().keuzes.muziek);
    QDir().rmdir(naam);
    EXPECT_EQ(beller->roep("ZetDichtheid", {0.2}).type(), QDBusMessage::ReplyMessage);
}

TEST_F(Dienst, WithoutAFolderForSettingsAChoiceHoldsAndIsSaidNotToBeKept) {
    const steun::ZonderThuis zonderThuis;
    const QDBusMessage antwoord = beller->roep("ZetDichtheid", {0.1});
    EXPECT_EQ(antwoord.errorName(), kNietBewaard);
    EXPECT_EQ(antwoord.errorMessage(), QStringLiteral("de keuze geldt, maar is niet te bewaren: er "
                                                      "is geen map voor instellingen"));
    EXPECT_EQ(nu().keuzes.dichtheid, 0.1);
    EXPECT_EQ(BureauInstellingen::lees(), BureauKeuzes{});
}

// The owner may be stopped, and do it when it goes on.
TEST(KlantFout, NoAnswerIsSaidNotToBeARefusal) {
    const auto tekst = [](const char* fout, brixtel::Vraagt vraagt = brixtel::Vraagt::Daad) {
        return brixtel::foutTekst(QDBusMessage::createError(QLatin1String(fout), QString()),
                                  vraagt);
    };
    EXPECT_EQ(tekst("org.freedesktop.DBus.Error.NoReply"),
              QStringLiteral("de draaiende brixtel-bureau antwoordt niet; wat gevraagd is kan "
                             "later nog gebeuren"));
    EXPECT_EQ(tekst("org.freedesktop.DBus.Error.NoReply", brixtel::Vraagt::Stand),
              QStringLiteral("de draaiende brixtel-bureau antwoordt niet"));
    EXPECT_EQ(tekst("org.freedesktop.DBus.Error.ServiceUnknown"),
              QStringLiteral("brixtel-bureau draait niet meer"));
    EXPECT_EQ(tekst("org.freedesktop.DBus.Error.Disconnected"),
              QStringLiteral("de verbinding met de sessiebus is verbroken"));
}

TEST_F(Dienst, TheStateIsInItsProperties) {
    werkruimte.doorzichtig = false;
    beller->roep("ToonRegen");
    beller->roep("ToonZwart", {QStringLiteral("regen")});
    const auto alles = beller->roep(kDienstPad, kEigenschappen, "GetAll", {kDienstNaam});
    const auto waarden = qdbus_cast<QVariantMap>(alles.arguments().value(0));
    EXPECT_EQ(waarden.value(QStringLiteral("ZwartAan")), true);
    EXPECT_EQ(waarden.value(QStringLiteral("ZwartSoort")), QStringLiteral("regen"));
    EXPECT_EQ(waarden.value(QStringLiteral("RegenAan")), true);
    EXPECT_EQ(waarden.value(QStringLiteral("RegenStand")), QStringLiteral("geen-compositor"));
    EXPECT_TRUE(waarden.value(QStringLiteral("RegenUitleg"))
                    .toString()
                    .contains(QStringLiteral("compositor")));
    EXPECT_EQ(waarden.value(QStringLiteral("Dichtheid")), 0.7);
    EXPECT_EQ(waarden.value(QStringLiteral("Versie")), QStringLiteral(BRIXTEL_VERSION));
    EXPECT_EQ(waarden.value(QStringLiteral("Rust")), 0);
    EXPECT_EQ(waarden.size(), 11);
}

TEST_F(Dienst, TheDescriptionTellsOfEveryMethodAndProperty) {
    const auto antwoord = beller->roep(
        kDienstPad, QStringLiteral("org.freedesktop.DBus.Introspectable"), "Introspect");
    const QString xml = antwoord.arguments().value(0).toString();
    for (const BusMethode& methode : methodenIn(QString::fromUtf8(kBureauXml)))
        EXPECT_TRUE(xml.contains(QStringLiteral("<method name=\"%1\"").arg(methode.naam)));
    const auto alles = beller->roep(kDienstPad, kEigenschappen, "GetAll", {kDienstNaam});
    const auto waarden = qdbus_cast<QVariantMap>(alles.arguments().value(0));
    EXPECT_EQ(xml.count(QStringLiteral("<property ")), waarden.size());
    for (auto een = waarden.begin(); een != waarden.end(); ++een)
        EXPECT_TRUE(xml.contains(QStringLiteral("<property name=\"%1\"").arg(een.key())));
}

TEST_F(Dienst, EveryChangeIsSignalled) {
    BusMonitor luisteraar(bus, QStringLiteral("type=signal,member=PropertiesChanged"));
    ASSERT_TRUE(luisteraar.isReady());
    beller->roep("ToonRegen");
    EXPECT_TRUE(luisteraar.hears("\"RegenStand\""));
    EXPECT_TRUE(luisteraar.hasHeard("\"RegenAan\""));
    EXPECT_FALSE(luisteraar.hasHeard("\"ZwartAan\""));
    luisteraar.forget();
    werkruimte.zetDoorzichtig(false);
    EXPECT_TRUE(luisteraar.hears("\"geen-compositor\""));
    EXPECT_TRUE(luisteraar.hears("\"RegenUitleg\""));
    EXPECT_FALSE(luisteraar.hasHeard("\"RegenAan\""));
}

TEST_F(Dienst, AValueThatIsNoneIsRefused) {
    for (const char* soort : {"onzin", "Bol", "wisselend", " bol"}) {
        geweigerd(beller->roep("ToonZwart", {QString::fromLatin1(soort)}), "InvalidArgs");
        geweigerd(beller->roep("WisselZwart", {QString::fromLatin1(soort)}), "InvalidArgs");
        beller.emplace(bus.address());
    }
    const double geen = std::numeric_limits<double>::quiet_NaN();
    for (const double getal : {-0.01, 1.01, geen, 1e300})
        geweigerd(beller->roep("ZetDichtheid", {getal}), "InvalidArgs");
    beller.emplace(bus.address());
    for (const double getal : {0.0, 0.19, 4.1, geen})
        geweigerd(beller->roep("ZetSnelheid", {getal}), "InvalidArgs");
    beller.emplace(bus.address());
    for (const int minuten : {-1, 121, std::numeric_limits<int>::max()})
        geweigerd(beller->roep("ZetRust", {minuten}), "InvalidArgs");
    EXPECT_EQ(nu().keuzes.rust, 0);
    EXPECT_EQ(beller->roep("ZetRust", {120}).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(nu().keuzes.rust, 120);
    EXPECT_EQ(beller->lees("Rust"), 120);
}

TEST_F(Dienst, ValuesOfAnotherSortAreRefused) {
    geweigerd(beller->roep("ToonZwart"), "InvalidArgs");
    geweigerd(beller->roep("ToonZwart", {7}), "InvalidArgs");
    geweigerd(beller->roep("ToonZwart", {QStringLiteral("bol"), 7}), "InvalidArgs");
    geweigerd(beller->roep("ToonRegen", {true}), "InvalidArgs");
    geweigerd(beller->roep("ZetDichtheid", {QStringLiteral("0.5")}), "InvalidArgs");
    geweigerd(beller->roep("ZetMuziek", {1}), "InvalidArgs");
}

TEST_F(Dienst, WhatIsNotThereIsSaidToBe) {
    geweigerd(beller->roep("Ontplof"), "UnknownMethod");
    geweigerd(beller->roep(kDienstPad, QStringLiteral("org.example.Anders"), "ToonRegen"),
              "UnknownMethod");
    geweigerd(beller->roep(QStringLiteral("/elders"), kDienstNaam, "ToonRegen"), "UnknownObject");
    geweigerd(
        beller->roep(kDienstPad, kEigenschappen, "Get", {kDienstNaam, QStringLiteral("Kleur")}),
        "UnknownProperty");
    geweigerd(beller->roep(kDienstPad, kEigenschappen, "Get", {kDienstNaam}), "InvalidArgs");
}

TEST_F(Dienst, PropertiesAreReadAndNotSet) {
    const QVariant aan = QVariant::fromValue(QDBusVariant(true));
    const auto roep = [&](const char* methode, const QVariantList& waarden = {}) {
        return beller->roep(kDienstPad, kEigenschappen, methode, waarden);
    };
    geweigerd(roep("Set", {kDienstNaam, QStringLiteral("RegenAan"), aan}), "PropertyReadOnly");
    geweigerd(roep("Set", {kDienstNaam, QStringLiteral("Kleur"), aan}), "UnknownProperty");
    geweigerd(roep("Ontplof", {kDienstNaam}), "UnknownMethod");
    geweigerd(roep("get", {kDienstNaam, QStringLiteral("RegenAan")}), "UnknownMethod");
    for (const QVariantList& waarden :
         {QVariantList{}, QVariantList{kDienstNaam, QStringLiteral("RegenAan")},
          QVariantList{kDienstNaam, QStringLiteral("RegenAan"), true}}) {
        const QDBusMessage antwoord = roep("Set", waarden);
        geweigerd(antwoord, "InvalidArgs");
        EXPECT_TRUE(antwoord.errorMessage().startsWith(
            QStringLiteral("Set wil waarden van de soort 'ssv', niet '")))
            << qPrintable(antwoord.errorMessage());
    }
    geweigerd(roep("GetAll"), "InvalidArgs");
    EXPECT_EQ(beller->lees("RegenAan"), false);
}

TEST_F(Dienst, ABlackScreenUnderALockIsRefused) {
    werkruimte.zetBeveiligd(true);
    geweigerd(beller->roep("ToonZwart", {QStringLiteral("bol")}), "Failed");
    geweigerd(beller->roep("WisselZwart", {QString::fromLatin1("")}), "Failed");
    werkruimte.zetBeveiligd(false);
    EXPECT_EQ(beller->roep("WisselZwart", {QStringLiteral("bol")}).type(),
              QDBusMessage::ReplyMessage);
    werkruimte.zetBeveiligd(true);
    // Closing a black screen is never refused.
    EXPECT_EQ(beller->roep("WisselZwart", {QStringLiteral("bol")}).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_FALSE(nu().zwart);
}

TEST_F(Dienst, StopAnswersFirst) {
    EXPECT_EQ(beller->roep("Stop").type(), QDBusMessage::ReplyMessage);
    EXPECT_TRUE(until([&] { return gestopt == 1; }));
}

TEST_F(Dienst, TheNameIsOneProgramsOnly) {
    BusAansluiting tweede(echteKlok, bus.address());
    EXPECT_FALSE(tweede.neemNaam(kDienstNaam));
}

TEST_F(Dienst, TheEndOfTheBusIsTold) {
    int verloren = 0;
    aansluiting->onVerloren([&] { ++verloren; });
    bus.stop();
    EXPECT_TRUE(until([&] { return verloren == 1; }));
}

// A program that calls as fast as it can, everything there is.
class Vloed {
  public:
    explicit Vloed(const QString& adres) {
        proces.start(QStringLiteral(BRIXTEL_BUILD_DIR "/tests/programmas/vloed"), {adres});
        until([this] {
            gezegd += proces.readAll();
            return gezegd.contains('\n');
        });
    }
    ~Vloed() {
        proces.kill();
        proces.waitForFinished();
    }
    // The number of lines, of which the flooding client writes one every thousand calls.
    long duizenden() {
        gezegd += proces.readAll();
        return static_cast<long>(gezegd.count('\n'));
    }

  private:
    QProcess proces;
    QByteArray gezegd;
};

TEST_F(Dienst, AFloodOfCallsStopsNeitherPicturesNorOthers) {
    Vloed vloed(bus.address());
    int beelden = 0;
    const platform::Timer beeld(echteKlok, {.interval = 1.0 / 60, .repeats = true},
                                [&] { ++beelden; });
    const long begin = vloed.duizenden();
    const double sinds = echteKlok.now();
    // While ten thousand calls come in there are pictures, and another is answered.
    ASSERT_TRUE(until([&] { return vloed.duizenden() >= begin + 5; }, 60'000));
    const int halverwege = beelden;
    EXPECT_GT(halverwege, 0);
    EXPECT_EQ(beller->roep("ZetDichtheid", {0.5}).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(nu().keuzes.dichtheid, 0.5);
    ASSERT_TRUE(until([&] { return vloed.duizenden() >= begin + 10; }, 60'000));
    EXPECT_GT(beelden, halverwege);
    // The flooder got as many calls through as any caller may, and more than none.
    EXPECT_GT(gemeld.size(), 2U);
    const double duur = echteKlok.now() - sinds;
    EXPECT_LE(static_cast<double>(gemeld.size()), 2 + 8 + 4 * (duur + 20));
}

TEST_F(Dienst, ThePanelIsShownOrTheReasonToldWhyNot) {
    EXPECT_EQ(beller->roep("ToonPaneel").type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(getoond, 1);
    paneelMis = QStringLiteral("het paneel ontbreekt");
    const QDBusMessage antwoord = beller->roep("ToonPaneel");
    EXPECT_EQ(antwoord.type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(antwoord.errorMessage(), paneelMis);
}

}  // namespace
