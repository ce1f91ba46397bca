// SPDX-License-Identifier: MIT
#include "hosts/saver/Opdracht.h"

#include <gtest/gtest.h>

using brixtel::Fout;
using brixtel::leesOpdracht;
using brixtel::Opdracht;
using platform::DrawerChoice;

namespace {

using Taak = Opdracht::Taak;

Opdracht goed(const QStringList& woorden, const QString& host = {}) {
    const auto gelezen = leesOpdracht(woorden, host);
    if (const auto* fout = std::get_if<Fout>(&gelezen)) {
        ADD_FAILURE() << qPrintable(fout->regel);
        return {};
    }
    return std::get<Opdracht>(gelezen);
}

platform::HostRef host(std::uint32_t nummer) {
    return {QString::number(nummer)};
}

QString mis(const QStringList& woorden, const QString& host = {}) {
    const auto gelezen = leesOpdracht(woorden, host);
    const auto* fout = std::get_if<Fout>(&gelezen);
    return fout ? fout->regel : QString();
}

QStringList woorden(const char* regel) {
    return QString::fromUtf8(regel).split(u' ', Qt::SkipEmptyParts);
}

TEST(Opdracht, NothingMeansFullScreen) {
    const Opdracht opdracht = goed({});
    EXPECT_EQ(opdracht.taak, Taak::Schermvullend);
    EXPECT_TRUE(opdracht.keuze.isEmpty());
    EXPECT_EQ(opdracht.tekenaar, DrawerChoice::Auto);
    EXPECT_FALSE(opdracht.seconden);
}

TEST(Opdracht, OneDashOrTwoAndAValueAfterIsOrAsTheNextWord) {
    for (const char* regel : {"--keuze=kubus", "-keuze=kubus", "--keuze kubus", "-keuze kubus"})
        EXPECT_EQ(goed(woorden(regel)).keuze, QStringLiteral("kubus")) << regel;
}

TEST(Opdracht, AWindowOfAGivenSizeOrTheUsualOne) {
    EXPECT_EQ(goed(woorden("--venster")).venster, QSize(1280, 720));
    EXPECT_EQ(goed(woorden("--venster=800x600")).venster, QSize(800, 600));
    EXPECT_EQ(goed(woorden("--venster 800x600")).venster, QSize(800, 600));
    const Opdracht opdracht = goed(woorden("--venster --keuze logo"));
    EXPECT_EQ(opdracht.taak, Taak::Venster);
    EXPECT_EQ(opdracht.keuze, QStringLiteral("logo"));
}

TEST(Opdracht, AHostsWindowInHexOrDecimal) {
    EXPECT_EQ(goed(woorden("--window-id 0x1A00003")).vensterId, host(0x1A00003U));
    EXPECT_EQ(goed(woorden("-window-id=27262979")).vensterId, host(27262979U));
    EXPECT_EQ(goed(woorden("--window-id 0X2")).taak, Taak::Gastheer);
}

TEST(Opdracht, OfBothHostSwitchesTheIdWins) {
    for (const char* regel : {"--root --window-id 0x12", "--window-id 0x12 --root"}) {
        const Opdracht opdracht = goed(woorden(regel), QStringLiteral("0x99"));
        EXPECT_EQ(opdracht.taak, Taak::Gastheer);
        EXPECT_EQ(opdracht.vensterId, host(0x12U));
    }
}

TEST(Opdracht, TheEnvironmentsWindowServesRootAndNothing) {
    EXPECT_EQ(goed(woorden("--root"), QStringLiteral("0x400001")).vensterId, host(0x400001U));
    EXPECT_EQ(goed({}, QStringLiteral("4194305")).vensterId, host(0x400001U));
    EXPECT_EQ(goed({}, QStringLiteral("4194305")).taak, Taak::Gastheer);
    EXPECT_EQ(goed(woorden("--root")).taak, Taak::Gastheer);
    EXPECT_FALSE(goed(woorden("--root")).vensterId);
}

TEST(Opdracht, TheEnvironmentsWindowDoesNotServeAWindowOfOnesOwn) {
    EXPECT_EQ(goed(woorden("--venster"), QStringLiteral("0x400001")).taak, Taak::Venster);
    EXPECT_EQ(goed(woorden("--versie"), QStringLiteral("onzin")).taak, Taak::Versie);
}

TEST(Opdracht, AWrongSizeIsAnsweredWithItsLimits) {
    for (const char* maat : {"100000x1", "0x5", "16385x16", "groot"})
        EXPECT_TRUE(mis({QStringLiteral("--plaatje=a.png"), QStringLiteral("--keuze=regen"),
                         QStringLiteral("--maat=%1").arg(QLatin1String(maat))})
                        .contains(QStringLiteral("elke zijde van 1 tot en met 16384, niet '%1'")
                                      .arg(QLatin1String(maat))))
            << maat;
}

TEST(Opdracht, AStillPictureWithAllItsParts) {
    const Opdracht opdracht =
        goed(woorden("--plaatje=a.png --keuze=regen --maat=640x480 --schaal=1.5 --na=6.5 "
                     "--zaad=18446744073709551615"));
    EXPECT_EQ(opdracht.taak, Taak::Plaatje);
    EXPECT_EQ(opdracht.plaatje, QStringLiteral("a.png"));
    EXPECT_EQ(opdracht.maat, QSize(640, 480));
    EXPECT_EQ(goed(woorden("--plaatje=a.png --keuze=regen --maat=4096x4096 --schaal=2")).schaal, 2);
    EXPECT_EQ(opdracht.schaal, 1.5);
    EXPECT_EQ(opdracht.na, 6.5);
    EXPECT_EQ(opdracht.zaad, 18446744073709551615ULL);
}

TEST(Opdracht, TheRest) {
    const Opdracht opdracht =
        goed(woorden("--seconden=10 --meet --fps --voorvertoning --tekenaar=gl"));
    EXPECT_EQ(opdracht.seconden, 10.0);
    EXPECT_TRUE(opdracht.meet);
    EXPECT_TRUE(opdracht.fps);
    EXPECT_TRUE(opdracht.voorvertoning);
    EXPECT_EQ(opdracht.tekenaar, DrawerChoice::OpenGl);
    EXPECT_EQ(goed(woorden("--tekenaar cpu")).tekenaar, DrawerChoice::Cpu);
    EXPECT_EQ(goed(woorden("--instellingen")).taak, Taak::Instellingen);
    EXPECT_TRUE(goed(woorden("--instellingen")).instellingen.isEmpty());
    EXPECT_EQ(goed(woorden("--instellingen blad.png")).instellingen, QStringLiteral("blad.png"));
    EXPECT_EQ(goed(woorden("--instellingen --boven=0x1f")).boven,
              platform::WindowRef{QString::number(0x1fU)});
    EXPECT_FALSE(goed({}).volleSnelheid);
    EXPECT_TRUE(goed(woorden("-volle-snelheid")).volleSnelheid);
    EXPECT_EQ(goed(woorden("--help")).taak, Taak::Hulp);
    EXPECT_FALSE(goed(woorden("--verbindingen")).json);
    EXPECT_TRUE(goed(woorden("--verbindingen=json")).json);
    EXPECT_TRUE(goed(woorden("--verbindingen json")).json);
}

TEST(Opdracht, ABadArgumentGetsOneClearDutchLine) {
    for (const char* regel : {"--onzin",
                              "regen",
                              "-",
                              "--",
                              "--keuze=Regen",
                              "--keuze=",
                              "--keuze",
                              "--venster=800",
                              "--venster=0x600",
                              "--venster=99999x600",
                              "--window-id",
                              "--window-id=0",
                              "--window-id=0xZZ",
                              "--window-id=-5",
                              "--window-id=0x100000000",
                              "--root=ja",
                              "--tekenaar=vulkan",
                              "--seconden=-1",
                              "--seconden=nan",
                              "--seconden=inf",
                              "--plaatje=a.jpg --keuze=regen",
                              "--plaatje=a.png",
                              "--plaatje=a.png --keuze=regen --meet",
                              "--plaatje=a.png --keuze=regen --maat=8193x8192",
                              "--plaatje=a.png --keuze=regen --maat=4097x4096 --schaal=2",
                              "--lijnen=a.json",
                              "--plaatje=a.png --keuze=regen --lijnen=a.json",
                              "--zaad=-1",
                              "--zaad=1.5",
                              "--schaal=0",
                              "--na=-1",
                              "--verbindingen=xml",
                              "--venster --plaatje=a.png --keuze=regen",
                              "--root --venster",
                              "--instellingen=a.jpg",
                              "--instellingen --venster",
                              "--instellingen --boven=0",
                              "--instellingen=a.png --boven=5",
                              "--boven=5",
                              "--meet=ja"}) {
        const QString fout = mis(woorden(regel));
        EXPECT_TRUE(fout.startsWith(QLatin1String("brixtel-saver: "))) << regel;
        EXPECT_FALSE(fout.contains(u'\n')) << regel;
        EXPECT_GT(fout.size(), 30) << regel;
    }
    EXPECT_FALSE(mis({}, QStringLiteral("0xnee")).isEmpty());
    EXPECT_FALSE(mis({QString()}).isEmpty());
}

TEST(Opdracht, ABadNumberIsToldItsBoundsWrittenOut) {
    EXPECT_EQ(mis(woorden("--seconden=0")),
              QStringLiteral("brixtel-saver: --seconden wil een getal van 0,1 tot en met 31536000, "
                             "niet '0' (--help toont wat er kan)"));
    EXPECT_TRUE(mis(woorden("--na=1e9")).contains(QStringLiteral("van 0 tot en met 86400,")));
}

TEST(Opdracht, ALineBreakInAnArgumentIsNoneInTheLine) {
    const QString fout = mis({QStringLiteral("--keuze=een\nander")});
    EXPECT_FALSE(fout.contains(u'\n'));
    EXPECT_TRUE(fout.contains(QStringLiteral("'een ander'")));
}

TEST(Opdracht, HelpAndVersionHaveTheNamesThatPeopleTry) {
    for (const char* regel : {"--version", "-V", "--versie", "-version", "--maat=3x3 -V"})
        EXPECT_EQ(goed(woorden(regel)).taak, Taak::Versie) << regel;
    for (const char* regel : {"-h", "--help", "--zaad 1 -h"})
        EXPECT_EQ(goed(woorden(regel)).taak, Taak::Hulp) << regel;
}

TEST(Opdracht, ANumberTakesACommaAsWellAsAPoint) {
    EXPECT_EQ(goed(woorden("--seconden=1,5")).seconden, 1.5);
    EXPECT_EQ(goed(woorden("--plaatje=a.png --keuze=bol --schaal 0,5 --na 2,25")).na, 2.25);
    for (const char* regel : {"--seconden=1,5,5", "--seconden=1.000,5", "--seconden=,"})
        EXPECT_FALSE(mis(woorden(regel)).isEmpty()) << regel;
}

TEST(Opdracht, ResumingEndsTheOneThatRuns) {
    EXPECT_EQ(goed(woorden("--hervat")).taak, Taak::Hervat);
    EXPECT_EQ(goed(woorden("--hervat"), QStringLiteral("5")).taak, Taak::Hervat);
    EXPECT_FALSE(mis(woorden("--hervat --keuze=bol")).isEmpty());
    EXPECT_FALSE(mis(woorden("--hervat --venster")).isEmpty());
}

TEST(Opdracht, ATypingErrorIsAnsweredWithTheNearestOption) {
    const std::pair<const char*, const char*> paren[] = {{"--keuz=bol", "keuze"},
                                                         {"-venstre", "venster"},
                                                         {"--plaaatje=a.png", "plaatje"},
                                                         {"--fsp", "fps"},
                                                         {"venster", "venster"},
                                                         {"--verison", "version"},
                                                         {"--voorvertonig", "voorvertoning"}};
    for (const auto& [regel, optie] : paren)
        EXPECT_TRUE(mis(woorden(regel))
                        .contains(QStringLiteral("; bedoelt u --%1? (").arg(QLatin1String(optie))))
            << qPrintable(mis(woorden(regel)));
    EXPECT_FALSE(mis(woorden("--hologram")).contains(QStringLiteral("bedoelt")));
}

TEST(Opdracht, ABeginningAndTwoLettersOfFiveAreATypingErrorToo) {
    const std::pair<const char*, const char*> paren[] = {
        {"--keus=bol", "--keuze?"},
        {"--verb", "--verbindingen?"},
        {"--inst", "--instellingen?"},
        {"--ver", "--versie, --version of --verbindingen?"},
        {"--venste", "--venster?"}};
    for (const auto& [regel, vraag] : paren)
        EXPECT_TRUE(mis(woorden(regel))
                        .contains(QStringLiteral("; bedoelt u %1 (").arg(QLatin1String(vraag))))
            << qPrintable(mis(woorden(regel)));
}

TEST(Opdracht, AMistypedChoiceIsAnsweredWithTheNearest) {
    EXPECT_TRUE(mis(woorden("--keuze=wiselend"))
                    .contains(QStringLiteral("niet 'wiselend'; bedoelt u wisselend? (")));
    EXPECT_TRUE(mis(woorden("--keuze=tun")).contains(QStringLiteral("; bedoelt u tunnel? (")));
    EXPECT_FALSE(mis(woorden("--keuze=zebra")).contains(QStringLiteral("bedoelt")));
    EXPECT_TRUE(
        mis(woorden("--tekenaar=cpuu"))
            .contains(QStringLiteral("kent gl, cpu en auto, niet 'cpuu'; bedoelt u cpu? (")));
    EXPECT_TRUE(mis(woorden("--venstersysteem=waylnd"))
                    .contains(QStringLiteral(
                        "kent wayland, x11 en auto, niet 'waylnd'; bedoelt u wayland? (")));
    EXPECT_TRUE(mis(woorden("--venstersysteem=aut")).contains(QStringLiteral("bedoelt u auto? (")));
    EXPECT_TRUE(mis(woorden("--verbindingen=jsn"))
                    .contains(QStringLiteral("kent alleen json, niet 'jsn'; bedoelt u json? (")));
    for (const char* regel : {"--tekenaar=vulkan", "--venstersysteem=mir", "--verbindingen=xml"})
        EXPECT_FALSE(mis(woorden(regel)).contains(QStringLiteral("bedoelt"))) << regel;
}

TEST(Opdracht, AnOptionOfAnotherCallIsRefused) {
    const std::pair<const char*, const char*> paren[] = {
        {"--maat=800x600", "--maat gaat alleen samen met --plaatje of --film "},
        {"--venster --na=3", "--na gaat alleen samen met --plaatje of --film "},
        {"--root --zaad=1", "--zaad gaat alleen samen met --plaatje of --film "},
        {"--schaal=2",
         "--schaal gaat alleen samen met --plaatje, --film of --instellingen=BESTAND.png "},
        {"--lijnen=a.json", "--lijnen gaat alleen samen met --plaatje of --film "},
        {"--boven=5", "--boven gaat alleen samen met --instellingen "},
        {"--instellingen=a.png --boven=5",
         "--boven gaat alleen samen met --instellingen zonder BESTAND.png "},
        {"--venstersysteem=auto --instellingen=a.png",
         "--venstersysteem gaat alleen samen met --instellingen zonder BESTAND.png "},
        {"--instellingen --schaal=2", "--schaal gaat alleen samen met --instellingen als"},
        {"--instellingen --keuze=bol", "--keuze gaat niet samen met --instellingen "},
        {"--plaatje=a.png --keuze=bol --boven=5", "--boven gaat niet samen met --plaatje "},
        {"--plaatje=a.png --keuze=bol --fps", "--fps gaat niet samen met --plaatje "},
        {"--verbindingen --tekenaar=cpu", "--tekenaar gaat niet samen met --verbindingen "},
        {"--aanmelden --seconden=3", "--seconden gaat niet samen met --aanmelden "},
        {"--volle-snelheid --afmelden", "--volle-snelheid gaat niet samen met --afmelden "},
        {"--plaatje=a.png --keuze=bol --film=b.mp4", "--film gaat niet samen met --plaatje "},
        {"--film=b.mp4 --plaatje=a.png", "--plaatje gaat niet samen met --film "},
        {"--venster --root", "--root gaat niet samen met --venster "},
        {"--root --venster", "--venster gaat niet samen met --root "},
        {"--window-id=5 --instellingen", "--instellingen gaat niet samen met --window-id "},
        {"--instellingen --verbindingen", "--verbindingen gaat niet samen met --instellingen "},
        {"--verbindingen --aanmelden", "--aanmelden gaat niet samen met --verbindingen "},
        {"--aanmelden --afmelden", "--afmelden gaat niet samen met --aanmelden "},
        {"--afmelden --hervat", "--hervat gaat niet samen met --afmelden "},
        {"--hervat -V", "--versie gaat niet samen met --hervat "},
        {"--version -h", "--help gaat niet samen met --versie "},
        {"-h --venster", "--venster gaat niet samen met --help "},
    };
    for (const auto& [regel, verwacht] : paren)
        EXPECT_TRUE(mis(woorden(regel)).contains(QLatin1String(verwacht)))
            << regel << ": " << qPrintable(mis(woorden(regel)));
    EXPECT_EQ(goed(woorden("--instellingen=a.png --schaal=2")).schaal, 2.0);
    EXPECT_TRUE(goed(woorden("--plaatje=a.png --keuze=bol --voorvertoning")).voorvertoning);
    EXPECT_EQ(goed(woorden("--keuze=bol"), QStringLiteral("5")).taak, Taak::Gastheer);
}

// Every option but those that choose a call, with every call.
TEST(Opdracht, EveryOptionHasAPlaceAndNoOther) {
    const char* const aanroepen[] = {"",
                                     "--plaatje=a.png --keuze=bol",
                                     "--instellingen=a.png",
                                     "--instellingen",
                                     "--verbindingen",
                                     "--aanmelden",
                                     "--film=a.mp4 --keuze=bol --seconden=2"};
    // One column per call: 1 where the option belongs.
    const std::pair<const char*, const char*> rijen[] = {
        {"--voorvertoning", "1100001"}, {"--meet", "1000000"},
        {"--fps", "1000000"},           {"--fps=20", "0000001"},
        {"--fps=30", "0000001"},        {"--boven=5", "0001000"},
        {"--keuze=bol", "1100001"},     {"--volle-snelheid", "1000000"},
        {"--tekenaar=cpu", "1100001"},  {"--maat=8x8", "0100001"},
        {"--schaal=2", "0110001"},      {"--na=1", "0100001"},
        {"--seconden=1", "1000001"},    {"--zaad=1", "0100001"},
        {"--lijnen=a.json", "0100001"}, {"--venstersysteem=auto", "1001000"},
    };
    for (const auto& [optie, past] : rijen)
        for (std::size_t i = 0; i < std::size(aanroepen); ++i) {
            const QString regel =
                QStringLiteral("%1 %2").arg(QLatin1String(aanroepen[i]), QLatin1String(optie));
            EXPECT_EQ(mis(woorden(qPrintable(regel))).isEmpty(), past[i] == '1')
                << qPrintable(regel);
        }
}

TEST(Opdracht, TheHelpNamesEveryOption) {
    const QString hulp = brixtel::hulpTekst();
    for (const char* naam :
         {"venster",        "root",         "window-id", "voorvertoning", "keuze",
          "instellingen",   "plaatje",      "maat",      "schaal",        "na",
          "zaad",           "seconden",     "meet",      "fps",           "tekenaar",
          "lijnen",         "verbindingen", "versie",    "help",          "boven",
          "volle-snelheid", "film",         "lus"})
        EXPECT_TRUE(hulp.contains(QStringLiteral("--") + QLatin1String(naam))) << naam;
}

}  // namespace
