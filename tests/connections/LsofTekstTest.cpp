// SPDX-License-Identifier: MIT
#include "connections/LsofTekst.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <limits>

#include "connections/VerbindingWacht.h"
#include "tests/connections/Tabellen.h"

using brixtel::Lijn;
using brixtel::verAdres;
using brixtel::VerbindingWacht;
using testing::ElementsAre;

namespace {

class LsofTekst : public testing::Test {
  protected:
    std::vector<Lijn> groepeer(std::string_view tekst) { return brixtel::groepeer(tekst, *tabel_); }

    // "NL 2 [Firefox, Safari]" for each line.
    std::vector<std::string> kort(std::string_view tekst) {
        std::vector<std::string> regels;
        for (const Lijn& lijn : groepeer(tekst)) {
            std::string regel = lijn.land.code + " " + std::to_string(lijn.aantal) + " [";
            for (const auto& programma : lijn.programmas)
                regel += (regel.back() == '[' ? "" : ", ") + programma;
            regels.push_back(regel + "]");
        }
        return regels;
    }

  private:
    steun::Tabel tabel_{steun::kleineTabel()};
};

TEST(VerAdres, AnIpv6RemoteLosesItsPortAndBrackets) {
    EXPECT_EQ(verAdres("192.168.1.2:50000->[2a00:1450::1]:443"), "2a00:1450::1");
}

TEST(VerAdres, AnIpv4RemoteLosesItsPort) {
    EXPECT_EQ(verAdres("10.0.0.2:50000->8.8.8.8:443"), "8.8.8.8");
}

TEST(VerAdres, OddForms) {
    EXPECT_EQ(verAdres("*:8080"), "");  // listening
    EXPECT_EQ(verAdres(""), "");
    EXPECT_EQ(verAdres("->"), "");
    EXPECT_EQ(verAdres("a->"), "");
    EXPECT_EQ(verAdres("a->:"), "");
    EXPECT_EQ(verAdres("a->[]:1"), "");
    EXPECT_EQ(verAdres("a->8.8.8.8"), "8.8.8.8");  // no port
    EXPECT_EQ(verAdres("a->8.8.8.8:443->1.1.1.1:1"),
              "8.8.8.8:443->1.1.1.1");            // first arrow, last colon
    EXPECT_EQ(verAdres("a->[[::1]]]:1"), "::1");  // every bracket at the ends
    EXPECT_EQ(verAdres("a->[fe80::1%en0]:1"), "fe80::1%en0");
    EXPECT_EQ(verAdres("a->2a00::1"), "2a00:");  // no brackets: cut all the same
    EXPECT_EQ(verAdres("a- >8.8.8.8:1"), "");
    EXPECT_EQ(verAdres("a->host:https (ESTABLISHED)"), "host");
}

TEST_F(LsofTekst, NothingGivesNothing) {
    EXPECT_THAT(kort(""), ElementsAre());
    EXPECT_THAT(kort("\n\n\n"), ElementsAre());
    EXPECT_THAT(kort("n"), ElementsAre());
    EXPECT_THAT(kort("c"), ElementsAre());
}

TEST_F(LsofTekst, AConnectionIsCountedUnderItsProgram) {
    EXPECT_THAT(kort("p12\ncfirefox\nf7\nn10.0.0.2:50000->8.8.8.8:443\nTST=ESTABLISHED\nTQR=0\n"),
                ElementsAre("US 1 [firefox]"));
}

TEST_F(LsofTekst, ANameBeforeAnyProgramIsCountedUnderAQuestionMark) {
    EXPECT_THAT(kort("na:1->8.8.8.8:443\ncx\n"), ElementsAre("US 1 [?]"));
}

TEST_F(LsofTekst, AProgramStaysInForceUntilTheNext) {
    EXPECT_THAT(kort("ca\nf1\nn->8.8.8.8:1\np2\nf1\nn->9.9.9.9:1\ncb\nn->9.9.9.9:2\n"),
                ElementsAre("DE 2 [a, b]", "US 1 [a]"));
}

TEST_F(LsofTekst, AnEmptyProgramNameIsAName) {
    EXPECT_THAT(kort("ca\nc\nn->8.8.8.8:1\n"), ElementsAre("US 1 []"));
    EXPECT_THAT(groepeer("c\nn->8.8.8.8:1\n").front().programmas, ElementsAre(""));
}

TEST_F(LsofTekst, ChromesHelpersAndSafariGiveOneLineOfThree) {
    EXPECT_THAT(kort("cGoogle Chrome He\nn->8.8.8.8:1\nn->8.8.4.4:1\ncSafari\nn->8.1.1.1:1\n"),
                ElementsAre("US 3 [Chrome, Safari]"));
}

TEST_F(LsofTekst, EqualCountsAreOrderedByCode) {
    EXPECT_THAT(kort("ca\nn->8.8.8.8:1\nn->9.9.9.9:1\n"), ElementsAre("DE 1 [a]", "US 1 [a]"));
}

TEST_F(LsofTekst, LargerCountsComeFirst) {
    EXPECT_THAT(kort("ca\nn->9.9.9.9:1\nn->8.8.8.8:1\nn->8.8.8.8:2\nn->1.1.1.1:1\n"),
                ElementsAre("US 2 [a]", "DE 1 [a]", "NL 1 [a]"));
}

TEST_F(LsofTekst, AddressesOfEveryKindAreLookedUp) {
    EXPECT_THAT(kort("ca\nn[::1]:1->[2a00::5]:443\nn1.2.3.4:1->[::ffff:8.8.8.8]:443\n"),
                ElementsAre("NL 1 [a]", "US 1 [a]"));
}

TEST_F(LsofTekst, LinesThatDoNotFitAreSkipped) {
    EXPECT_THAT(kort("ca\nn*:22\nn->nowhere:1\nn->127.0.0.1:1\nn->[fe80::1%en0]:1\nN->8.8.8.8:1\n"
                     " n->8.8.8.8:1\nTST=->8.8.8.8:1\nx\nn->8.8.8.8:1\n"),
                ElementsAre("US 1 [a]"));
}

TEST_F(LsofTekst, TheLastLineNeedsNoLineFeed) {
    EXPECT_THAT(kort("ca\nn->8.8.8.8:1"), ElementsAre("US 1 [a]"));
}

TEST_F(LsofTekst, ACarriageReturnIsPartOfTheValue) {
    EXPECT_THAT(kort("ca\r\nn->8.8.8.8:1\r\n"), ElementsAre("US 1 [a\r]"));
}

TEST_F(LsofTekst, InvalidUtf8IsReplacedAndNamesThatThenAreEqualAreOne) {
    EXPECT_THAT(kort("ca\xFF\nn->8.8.8.8:1\nca\xFE\nn->8.8.8.8:1\n"),
                ElementsAre("US 2 [a\uFFFD]"));
    EXPECT_THAT(kort("ca\nn\xFF->8.8.8.8:1\nn->8.8.8.8\xFF:1\n"), ElementsAre("US 1 [a]"));
}

TEST_F(LsofTekst, ZeroBytesEndNothingButAnAddress) {
    using namespace std::string_literals;
    EXPECT_EQ(groepeer("ca\0b\nn->8.8.8.8:1\n"s).front().programmas.front(), "a\0b"s);
    EXPECT_THAT(kort("ca\nnx\0y->8.8.8.8:1\n"s), ElementsAre("US 1 [a]"));
}

TEST_F(LsofTekst, ALineOfAHundredMegabytesIsALine) {
    std::string lang(100'000'000, 'x');
    EXPECT_THAT(kort("ca\nn" + lang + "->8.8.8.8:1\n"), ElementsAre("US 1 [a]"));
    EXPECT_THAT(kort("ca\nn->" + lang + "\nn->8.8.8.8:1\n"), ElementsAre("US 1 [a]"));
}

TEST_F(LsofTekst, ThereIsNoCapOnLinesOrPrograms) {
    std::string tekst;
    for (int i = 0; i < 20'000; ++i)
        tekst += "cprogramma" + std::to_string(i) + "\nn->8.8.8.8:1\n";
    const auto lijnen = groepeer(tekst);
    ASSERT_EQ(lijnen.size(), 1U);
    EXPECT_EQ(lijnen[0].aantal, 20'000);
    EXPECT_EQ(lijnen[0].programmas.size(), 20'000U);
    EXPECT_TRUE(std::is_sorted(lijnen[0].programmas.begin(), lijnen[0].programmas.end()));
}

TEST(Lijn, IsEqualByAllFieldsAndKnownByItsCode) {
    const Lijn lijn{.land = {"NL", 52.0, 5.0}, .programmas = {"a", "b"}, .aantal = 2};
    EXPECT_EQ(lijn.id(), "NL");
    EXPECT_EQ(lijn, Lijn(lijn));
    EXPECT_NE(lijn, (Lijn{{"BE", 52.0, 5.0}, {"a", "b"}, 2}));
    EXPECT_NE(lijn, (Lijn{{"NL", 52.0, 5.0}, {"a"}, 2}));
    EXPECT_NE(lijn, (Lijn{{"NL", 52.0, 5.0}, {"a", "b"}, 3}));
}

TEST_F(LsofTekst, RecordsOfOneCodeInDifferentPlacesAreDifferentCountries) {
    auto inhoud = steun::kleineTabel();
    inhoud.landen[2].code = "DE";
    steun::Tabel tabel(inhoud);
    EXPECT_EQ(brixtel::groepeer("ca\nn->8.8.8.8:1\nn->9.9.9.9:1\n", *tabel).size(), 2U);
}

TEST(NetteNaam, TheTableIsExact) {
    const auto nette = [](const char* naam) { return VerbindingWacht::netteNaam(naam); };
    EXPECT_EQ(nette("Google Chrome He"), "Chrome");
    EXPECT_EQ(nette("Google"), "Chrome");
    EXPECT_EQ(nette("com.apple.WebKi"), "Safari");
    EXPECT_EQ(nette("Spotify Helper"), "Spotify");
    EXPECT_EQ(nette("Discord Helper"), "Discord");
    EXPECT_EQ(nette("Code Helper"), "VS Code");
    EXPECT_EQ(nette("java"), "Minecraft");
    for (const char* naam : {"Google Chrome", "google", "Java", "java ", "", "?", "Code"})
        EXPECT_EQ(nette(naam), naam);
}

TEST(NetteNaam, AnEscapedSpaceBecomesASpace) {
    EXPECT_EQ(VerbindingWacht::netteNaam("My\\x20App"), "My App");
    EXPECT_EQ(VerbindingWacht::netteNaam("\\x20a\\x20\\x20b\\x20"), " a  b ");
}

TEST(NetteNaam, TheLookupIsBeforeTheUnescaping) {
    EXPECT_EQ(VerbindingWacht::netteNaam("Google\\x20Chrome\\x20He"), "Google Chrome He");
}

TEST(NetteNaam, NoOtherEscapeIsUndone) {
    for (const char* naam : {"a\\x09b", "a\\X20b", "a\\x2", "a\\\\b", "^[x", "\\x2\\x2"})
        EXPECT_EQ(VerbindingWacht::netteNaam(naam), naam);
    EXPECT_EQ(VerbindingWacht::netteNaam("\\x2\\x200"), "\\x2 0");
}

TEST(Tellen, BeyondSixtyFourBitsStopsTheProcess) {
    constexpr auto kMeest = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(brixtel::telOp(kMeest - 1, 1), kMeest);
    EXPECT_EXIT((void)brixtel::telOp(kMeest, 1), testing::KilledBySignal(SIGABRT), "");
}

TEST(Tellen, ATotalBeyondSixtyFourBitsStopsTheProcess) {
    constexpr auto kMeest = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(brixtel::totaalVan({}), 0);
    EXPECT_EQ(brixtel::totaalVan({{.aantal = 2}, {.aantal = 3}}), 5);
    EXPECT_EXIT((void)brixtel::totaalVan({{.aantal = kMeest}, {.aantal = 1}}),
                testing::KilledBySignal(SIGABRT), "");
}

}  // namespace
