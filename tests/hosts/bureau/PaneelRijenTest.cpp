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
}

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
    vind(QAccessible::Slider, "Minuten")->valueInterface()->setCurrentValue(12.0);
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
