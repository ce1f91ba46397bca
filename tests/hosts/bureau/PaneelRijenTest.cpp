// SPDX-License-Identifier: MIT
// The panel's rows: how they begin, and whether they fit.
#include <QDir>
#include <QFile>

#include "hosts/bureau/Autostart.h"
#include "tests/hosts/bureau/PaneelProef.h"

using namespace brixtel;

namespace {

class PaneelRijen : public PaneelProef {
  protected:
    void SetUp() override {
        PaneelProef::SetUp();
        toon();
    }
    [[nodiscard]] QString ingang() const {
        return map.filePath(QStringLiteral("autostart/nl.groenlicht.brixtel.bureau.desktop"));
    }
    // Whether the panel comes to show that the session starts the program, or not.
    bool komt(bool aan) {
        return until([&] { return isAan("Start bij het aanmelden") == aan; });
    }
};

void schrijf(const QString& naam, const QByteArray& tekst) {
    QFile bestand(naam);
    ASSERT_TRUE(bestand.open(QIODevice::WriteOnly));
    ASSERT_EQ(bestand.write(tekst), tekst.size());
}

// The arrow of a row, by its action and the row's title.
QAccessibleInterface* pijl(QAccessibleInterface* top, const char* doet, const QString& titel) {
    if (top->role() == QAccessible::Button &&
        top->text(QAccessible::Name) == QLatin1String(doet) + QStringLiteral(" van ") + titel)
        return top;
    for (int i = 0; i < top->childCount(); ++i)
        if (auto* const een = pijl(top->child(i), doet, titel)) return een;
    return nullptr;
}

// Every row is in sight when the panel first opens, and nothing is left to scroll.
TEST_F(PaneelRijen, WithoutNoticesEveryRowFitsInTheFirstSize) {
    kalmeer();
    ASSERT_EQ(view()->size(), QSize(400, 760));
    EXPECT_FALSE(blad()->property("plek").toRectF().isEmpty());
    EXPECT_LE(item("rol")->property("contentHeight").toDouble(), item("rol")->height());
    EXPECT_FALSE(item("schuifbalk")->isVisible());
    view()->resize(400, 500);
    EXPECT_TRUE(until([this] { return item("schuifbalk")->isVisible(); }));
}

// The control of that role and name, as it stands in the sheet.
QRectF vakVan(QAccessibleInterface* wat, const QQuickItem* blad) {
    const auto* const een = qobject_cast<QQuickItem*>(wat->object());
    return een->mapRectToItem(blad, {{}, een->size()});
}

TEST_F(PaneelRijen, InAWideWindowLinesKeepToTheMiddle) {
    const auto vak = [this] {
        return vakVan(vind(QAccessible::CheckBox, "Voorbeeld van het zwarte scherm"), blad());
    };
    EXPECT_EQ(vak().left(), 12.0);
    EXPECT_EQ(vak().width(), 400.0 - 2 * 12.0);
    view()->resize(1000, 760);
    ASSERT_TRUE(until([this] { return blad()->width() == 1000.0; }));
    EXPECT_EQ(vak().left(), 220.0);
    EXPECT_EQ(vak().width(), 560.0);
    EXPECT_EQ(vakVan(vind(QAccessible::Grouping, "Na rust"), blad()).width(), 560.0);
}

// The range, the step and the words of a slider, and the choice that moving it changes.
struct Schuif {
    const char* naam;
    double onder, boven, stap, waarde;
    double BureauKeuzes::*getal;
    const char* woorden;
};
class PaneelSchuif : public PaneelRijen, public testing::WithParamInterface<Schuif> {};

TEST_P(PaneelSchuif, HasItsRangeStepAndWords) {
    const Schuif& schuif = GetParam();
    auto* const een = vind(QAccessible::Slider, schuif.naam);
    auto* const getal = een->valueInterface();
    EXPECT_EQ(getal->minimumValue().toDouble(), schuif.onder);
    EXPECT_EQ(getal->maximumValue().toDouble(), schuif.boven);
    EXPECT_NEAR(getal->minimumStepSize().toDouble(), schuif.stap, 1e-9);
    const BureauKeuzes eerst = nu().keuzes;
    getal->setCurrentValue(schuif.waarde);
    BureauKeuzes verwacht = eerst;
    verwacht.*schuif.getal = schuif.waarde;
    EXPECT_EQ(nu().keuzes, verwacht);
    EXPECT_EQ(een->text(QAccessible::Value), QString::fromUtf8(schuif.woorden));
}

INSTANTIATE_TEST_SUITE_P(
    Regen, PaneelSchuif,
    testing::Values(Schuif{"Dichtheid", 0.0, 1.0, 0.05, 0.35, &BureauKeuzes::dichtheid, "35%"},
                    Schuif{"Snelheid", 0.2, 4.0, 0.1, 2.3, &BureauKeuzes::snelheid, "2,3 ×"}),
    [](const auto& schuif) { return std::string(schuif.param.naam); });

TEST_F(PaneelRijen, TheProgramsRowBeginsClosedAndHoldsItsStartAndTheDefaults) {
    const QString bestand = ingang();
    druk(QAccessible::Button, "Toon de opties van Brixtel");
    kalmeer();
    EXPECT_FALSE(isAan("Start bij het aanmelden"));
    EXPECT_TRUE(vind(QAccessible::StaticText, "start niet mee"));
    schakel("Start bij het aanmelden");
    EXPECT_TRUE(QFile::exists(bestand));
    EXPECT_TRUE(isAan("Start bij het aanmelden"));
    EXPECT_TRUE(vind(QAccessible::StaticText, "start mee"));
    schakel("Start bij het aanmelden");
    EXPECT_FALSE(QFile::exists(bestand));
    EXPECT_FALSE(isAan("Start bij het aanmelden"));
    druk(QAccessible::RadioButton, "Uit", "Flits op de maat");
    EXPECT_EQ(nu().keuzes.flits, Flits::uit);
    druk(QAccessible::Button, "Standaard");
    EXPECT_EQ(nu().keuzes, BureauKeuzes{});
    EXPECT_TRUE(isGekozen("Gewoon", "Flits op de maat"));
}

TEST_F(PaneelRijen, AStartThatIsSwitchedElsewhereShowsAtOnce) {
    druk(QAccessible::Button, "Toon de opties van Brixtel");
    kalmeer();
    // The folder comes and goes too.
    for (int keer = 0; keer < 2; ++keer) {
        ASSERT_FALSE(isAan("Start bij het aanmelden"));
        ASSERT_EQ(Autostart::zet(true, QStringLiteral("/usr/bin/brixtel-bureau")), QString());
        EXPECT_TRUE(komt(true)) << keer;
        schrijf(ingang(), "[Desktop Entry]\nExec=brixtel-bureau\nHidden=true\n");
        EXPECT_TRUE(komt(false)) << keer;
        schrijf(ingang(), "[Desktop Entry]\nExec=brixtel-bureau\nHidden=false\n");
        EXPECT_TRUE(komt(true)) << keer;
        ASSERT_EQ(Autostart::zet(false, {}), QString());
        EXPECT_TRUE(komt(false)) << keer;
        ASSERT_TRUE(QDir(map.path()).rmdir(QStringLiteral("autostart")));
    }
    EXPECT_EQ(klok.timerCount(), 0U);
}

TEST_F(PaneelRijen, AStartThatCannotBeSwitchedIsSaidInSightAndNotShown) {
    ASSERT_TRUE(QDir(map.path()).mkpath(ingang()));
    druk(QAccessible::Button, "Toon de opties van Brixtel");
    kalmeer();
    EXPECT_FALSE(item("autostartMelding")->isVisible());
    schakel("Start bij het aanmelden");
    EXPECT_FALSE(isAan("Start bij het aanmelden"));
    kalmeer();
    const QQuickItem* const melding = item("autostartMelding");
    ASSERT_TRUE(melding->isVisible());
    const QString tekst = melding->property("tekst").toString();
    EXPECT_TRUE(tekst.contains(ingang()) && tekst.contains(QStringLiteral("dat is een map")))
        << qPrintable(tekst);
    const QQuickItem* const rol = item("rol");
    EXPECT_LE(melding->mapRectToItem(rol, {{}, melding->size()}).bottom(), rol->height());
    // It goes once the wish is fulfilled.
    ASSERT_TRUE(QDir(map.path()).rmdir(ingang()));
    schakel("Start bij het aanmelden");
    EXPECT_TRUE(isAan("Start bij het aanmelden"));
    EXPECT_FALSE(melding->isVisible());
}

TEST_F(PaneelRijen, TheRowOfRestBeginsClosedAndHoldsTheMinutes) {
    EXPECT_TRUE(vind(QAccessible::StaticText, "nooit"));
    druk(QAccessible::Button, "Toon de opties van Na rust");
    kalmeer();
    auto* const minuten = vind(QAccessible::Slider, "Minuten")->valueInterface();
    EXPECT_EQ(minuten->minimumValue().toDouble(), 0.0);
    EXPECT_EQ(minuten->maximumValue().toDouble(), 120.0);
    EXPECT_EQ(minuten->minimumStepSize().toDouble(), 1.0);
    minuten->setCurrentValue(12.0);
    EXPECT_EQ(nu().keuzes.rust, 12);
    EXPECT_TRUE(vind(QAccessible::StaticText, "12 min"));
    EXPECT_FALSE(item("rustMelding")->isVisible());
    bureau->zetRustBewaakt(false);
    EXPECT_TRUE(item("rustMelding")->isVisible());
    vind(QAccessible::Slider, "Minuten")->valueInterface()->setCurrentValue(0.0);
    EXPECT_EQ(nu().keuzes.rust, 0);
    EXPECT_FALSE(item("rustMelding")->isVisible());
}

TEST_F(PaneelRijen, FourRowsBeginOpenAndCanBeClosed) {
    auto* const top = QAccessible::queryAccessibleInterface(view());
    for (const auto& titel :
         {QStringLiteral("Regen over het bureaublad"), QStringLiteral("Zwart scherm"),
          QStringLiteral("Muziek volgen"), QStringLiteral("Schermbeveiliging")}) {
        auto* const dicht = pijl(top, "Verberg de opties", titel);
        ASSERT_NE(dicht, nullptr) << qPrintable(titel);
        const int hoog = item("rol")->property("contentHeight").toInt();
        dicht->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        EXPECT_NE(pijl(top, "Toon de opties", titel), nullptr) << qPrintable(titel);
        EXPECT_TRUE(
            until([&] { return item("rol")->property("contentHeight").toInt() < hoog - 40; }));
    }
}

// The last two rows stand at the lower edge of the first size.
TEST_F(PaneelRijen, AnOpenedRowIsInSight) {
    auto* const top = QAccessible::queryAccessibleInterface(view());
    const auto* const rol = item("rol");
    const auto plek = [&] { return rol->property("contentY").toDouble(); };
    const auto open = [&](const QString& titel) -> QQuickItem* {
        auto* const dicht = pijl(top, "Toon de opties", titel);
        if (!dicht) return nullptr;
        dicht->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        kalmeer();
        return qobject_cast<QQuickItem*>(vind(QAccessible::Grouping, qPrintable(titel))->object());
    };
    ASSERT_EQ(plek(), 0.0);
    for (const auto& titel : {QStringLiteral("Na rust"), QStringLiteral("Brixtel")}) {
        const QQuickItem* const rij = open(titel);
        ASSERT_NE(rij, nullptr) << qPrintable(titel);
        const QRectF vlak = rij->mapRectToItem(rol, {{}, rij->size()});
        EXPECT_GE(vlak.top(), 0.0) << qPrintable(titel);
        EXPECT_LE(vlak.bottom(), rol->height()) << qPrintable(titel);
    }
    EXPECT_GT(plek(), 0.0);
    // A row higher than the room shows its head.
    view()->resize(300, 130);
    ASSERT_TRUE(until([this] { return blad()->size() == QSizeF(300, 130); }));
    pijl(top, "Verberg de opties", QStringLiteral("Regen over het bureaublad"))
        ->actionInterface()
        ->doAction(QAccessibleActionInterface::pressAction());
    kalmeer();
    const QQuickItem* const rij = open(QStringLiteral("Regen over het bureaublad"));
    ASSERT_NE(rij, nullptr);
    ASSERT_GT(rij->height(), rol->height());
    EXPECT_GE(rij->mapRectToItem(rol, {{}, rij->size()}).top(), 0.0);
    EXPECT_LE(rij->mapRectToItem(rol, {{}, rij->size()}).top(), 7.0);
}

// Whatever is open and whatever notice is there.
TEST_F(PaneelRijen, AScreenReaderIsToldOnlyOfWhatIsShownAndHasAName) {
    const auto klopt = [&](const char* wanneer) {
        int aantal = 0;
        const std::function<void(QAccessibleInterface*)> loop = [&](QAccessibleInterface* een) {
            ++aantal;
            const QString naam = een->text(QAccessible::Name);
            EXPECT_FALSE(een->state().invisible)
                << wanneer << ": " << een->role() << ' ' << qPrintable(naam);
            EXPECT_FALSE(naam.isEmpty() && een->object() != view())
                << wanneer << ": " << een->role() << " of " << een->object()->objectName().data();
            for (int i = 0; i < een->childCount(); ++i)
                loop(een->child(i));
        };
        loop(QAccessible::queryAccessibleInterface(view()));
        EXPECT_GT(aantal, 30) << wanneer;
    };
    kalmeer();
    klopt("at first");
    bureau->zetRustBewaakt(false);
    for (const char* rij : {"Na rust", "Brixtel"})
        druk(QAccessible::Button, (std::string("Toon de opties van ") + rij).c_str());
    kalmeer();
    klopt("all open");
    for (const char* rij : {"Regen over het bureaublad", "Zwart scherm", "Muziek volgen"})
        druk(QAccessible::Button, (std::string("Verberg de opties van ") + rij).c_str());
    kalmeer();
    klopt("some closed");
}

}  // namespace
