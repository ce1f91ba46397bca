// SPDX-License-Identifier: MIT
#include "connections/LandenTabel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtGlobal>
#include <barrier>
#include <fstream>
#include <random>
#include <sstream>
#include <thread>

#include "tests/connections/Tabellen.h"
#include "tests/support/Paden.h"
#include "tests/support/Processen.h"

using brixtel::Land;
using brixtel::LandenInhoud;
using brixtel::LandenTabel;
using steun::codeVan;
using steun::kleineTabel;
using steun::Tabel;

namespace {

// Sets the locale's variables for one test.
class Omgeving {
  public:
    explicit Omgeving(const char* alles, const char* adres = "", const char* taal = "") {
        qputenv("LC_ALL", alles);
        qputenv("LC_ADDRESS", adres);
        qputenv("LANG", taal);
    }
    ~Omgeving() {
        for (const char* naam : {"LC_ALL", "LC_ADDRESS", "LANG"})
            qunsetenv(naam);
    }
};

TEST(LandenTabel, BelowTheFirstStartYieldsNone) {
    Tabel tabel(kleineTabel());
    EXPECT_EQ(codeVan(*tabel, "0.255.255.255"), "-");
    EXPECT_EQ(codeVan(*tabel, "2000:ffff::1"), "-");
}

TEST(LandenTabel, EqualToAStartYieldsThatRange) {
    Tabel tabel(kleineTabel());
    EXPECT_EQ(codeVan(*tabel, "1.0.0.0"), "NL");
    EXPECT_EQ(codeVan(*tabel, "8.0.0.0"), "US");
    EXPECT_EQ(codeVan(*tabel, "2600::"), "US");
}

TEST(LandenTabel, JustBelowAStartYieldsTheRangeBefore) {
    Tabel tabel(kleineTabel());
    EXPECT_EQ(codeVan(*tabel, "8.255.255.255"), "US");
    EXPECT_EQ(codeVan(*tabel, "2a00:ffff:ffff:ffff:ffff:ffff:ffff:ffff"), "NL");
}

TEST(LandenTabel, BeyondTheLastStartYieldsTheLastRange) {
    auto inhoud = kleineTabel();
    inhoud.v4Land.back() = 0;
    Tabel tabel(inhoud);
    EXPECT_EQ(codeVan(*tabel, "255.255.255.255"), "DE");
    EXPECT_EQ(codeVan(*tabel, "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff"), "DE");
}

TEST(LandenTabel, AMappedAddressYieldsTheSameAsItsIpv4Address) {
    Tabel tabel(kleineTabel());
    EXPECT_EQ(codeVan(*tabel, "::ffff:8.8.8.8"), "US");
    EXPECT_EQ(codeVan(*tabel, "::ffff:808:808"), "US");
    EXPECT_EQ(codeVan(*tabel, "::FFFF:1.1.1.1"), codeVan(*tabel, "1.1.1.1"));
}

TEST(LandenTabel, AlmostMappedAddressesAreIpv6) {
    Tabel tabel(kleineTabel());
    EXPECT_EQ(codeVan(*tabel, "::8.8.8.8"), "-");
    EXPECT_EQ(codeVan(*tabel, "1::ffff:8.8.8.8"), "-");
}

TEST(LandenTabel, WhatIsNoBareAddressYieldsNone) {
    auto inhoud = kleineTabel();
    inhoud.v4.front() = 0;  // so that any address at all has a country
    inhoud.v6.front() = 0;
    for (auto* indexen : {&inhoud.v4Land, &inhoud.v6Land})
        std::fill(indexen->begin(), indexen->end(), std::uint8_t{2});
    Tabel tabel(inhoud);
    EXPECT_EQ(codeVan(*tabel, "8.8.8.8"), "US");
    EXPECT_EQ(codeVan(*tabel, "2001:db8::1"), "US");
    for (const char* tekst :
         {"[2001:db8::1]", "8.8.8.8:443", "fe80::1%en0", "", " 8.8.8.8", "8.8.8.8 ", "8.8.8",
          "8.8.8.256", "08.8.8.8", "1.2.3.4.5", "::1::", ":", "::ffff:8.8.8.8:443", "localhost",
          "0000:0000:0000:0000:0000:ffff:255.255.255.2555"})
        EXPECT_EQ(codeVan(*tabel, tekst), "-") << tekst;
    EXPECT_EQ(codeVan(*tabel, std::string(1'000'000, '1')), "-");
    // The longest there is.
    EXPECT_EQ(codeVan(*tabel, "0000:0000:0000:0000:0000:ffff:255.255.255.255"), "US");
}

TEST(LandenTabel, AnIndexThatIsNoCountrysYieldsNone) {
    auto inhoud = kleineTabel();
    inhoud.v4Land = {255, 254, 3, 2, 0};
    Tabel tabel(inhoud);
    EXPECT_EQ(codeVan(*tabel, "1.1.1.1"), "-");
    EXPECT_EQ(codeVan(*tabel, "2.1.1.1"), "-");
    EXPECT_EQ(codeVan(*tabel, "8.1.1.1"), "-");
    EXPECT_EQ(codeVan(*tabel, "9.1.1.1"), "US");
}

TEST(LandenTabel, AmongEqualStartsTheLastWins) {
    auto inhoud = kleineTabel();
    inhoud.v4 = {0x01000000, 0x08000000, 0x08000000, 0x08000000, 0x0A000000};
    inhoud.v4Land = {0, 0, 1, 2, 0};
    Tabel tabel(inhoud);
    EXPECT_EQ(codeVan(*tabel, "8.0.0.0"), "US");
    EXPECT_EQ(codeVan(*tabel, "7.0.0.0"), "DE");
}

TEST(LandenTabel, ATableWithoutIpv6YieldsNoneForIt) {
    auto inhoud = kleineTabel();
    inhoud.v6.clear();
    inhoud.v6Land.clear();
    Tabel tabel(inhoud);
    EXPECT_EQ(codeVan(*tabel, "2600::1"), "-");
    EXPECT_EQ(codeVan(*tabel, "::ffff:8.8.8.8"), "US");
}

TEST(LandenTabel, ATableOfOneRangeIsSearchedToo) {
    auto inhoud = kleineTabel();
    inhoud.v4 = {0x08000000};
    inhoud.v4Land = {2};
    Tabel tabel(inhoud);
    EXPECT_EQ(codeVan(*tabel, "7.255.255.255"), "-");
    EXPECT_EQ(codeVan(*tabel, "8.0.0.0"), "US");
}

// The search as it is described, step by step.
template <typename Getal>
long zoekLetterlijk(const std::vector<Getal>& s, Getal sleutel) {
    long laag = 0, hoog = static_cast<long>(s.size()) - 1, gevonden = -1;
    while (laag <= hoog) {
        const long midden = (laag + hoog) / 2;
        if (s[static_cast<std::size_t>(midden)] <= sleutel) {
            gevonden = midden;
            laag = midden + 1;
        } else {
            hoog = midden - 1;
        }
    }
    return gevonden;
}

std::string tekstVan(std::uint32_t a) {
    return std::to_string(a >> 24) + "." + std::to_string(a >> 16 & 255) + "." +
           std::to_string(a >> 8 & 255) + "." + std::to_string(a & 255);
}

TEST(BereikZoeker, FindsWhatTheBinarySearchFindsInListsOfEverySizeAndSpread) {
    std::mt19937_64 lot(11);
    for (std::size_t maat = 1; maat < 200; maat += 1 + maat / 10) {
        for (int bits = 0; bits <= 64; bits += 4) {
            std::vector<std::uint64_t> starts(maat);
            for (auto& start : starts)
                start = bits == 0 ? 0 : lot() >> (64 - bits);
            std::sort(starts.begin(), starts.end());
            const brixtel::BereikZoeker bladwijzer(starts);
            std::vector<std::uint64_t> sleutels{~std::uint64_t{0}, lot(), starts.front()};
            for (const auto start : starts)
                sleutels.insert(sleutels.end(), {start, start + 1, start - 1});
            for (const auto sleutel : sleutels) {
                if (sleutel < starts.front()) continue;
                ASSERT_EQ(static_cast<long>(bladwijzer.zoek(sleutel, starts)),
                          zoekLetterlijk(starts, sleutel))
                    << maat << ' ' << bits << ' ' << sleutel;
            }
        }
    }
}

// Thousands of starts with the same sixteen highest bits, as IPv6 has them, between
// pages with one start or none.
TEST(BereikZoeker, FindsWhatTheBinarySearchFindsOnACrowdedPage) {
    std::mt19937_64 lot(14);
    std::vector<std::uint64_t> starts{0, 0x2000000000000000, 0x2A01FFFFFFFFFFFF};
    for (int i = 0; i < 5000; ++i)
        starts.push_back(0x2A02000000000000 + (lot() >> (16 + i % 40)));
    starts.push_back(0x2A03000000000000);
    std::sort(starts.begin(), starts.end());
    const brixtel::BereikZoeker zoeker(starts);
    for (const auto start : starts)
        for (const auto sleutel : {start, start + 1, start == 0 ? 0 : start - 1, start + 1000})
            ASSERT_EQ(static_cast<long>(zoeker.zoek(sleutel, starts)),
                      zoekLetterlijk(starts, sleutel))
                << sleutel;
}

TEST(BereikZoeker, InAListThatDoesNotAscendItStaysInside) {
    std::mt19937 lot(12);
    for (int beurt = 0; beurt < 1000; ++beurt) {
        std::vector<std::uint32_t> starts(1 + lot() % 500);
        for (auto& start : starts)
            start = static_cast<std::uint32_t>(lot() % (beurt % 2 ? 300U : ~0U));
        const brixtel::BereikZoeker bladwijzer(starts);
        for (unsigned i = 0; i < 100; ++i)
            ASSERT_LT(bladwijzer.zoek(starts.front() + i, starts), starts.size());
    }
}

TEST(LandenTabel, FindsWhatTheBinarySearchFindsInTheShippedTable) {
    std::ifstream bestand(BRIXTEL_LIB_DIR "/resources/landen.bin", std::ios::binary);
    std::ostringstream tekst;
    tekst << bestand.rdbuf();
    const std::string bytes = tekst.str();
    const auto inhoud = brixtel::leesLanden(
        *brixtel::pakUit({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}));
    std::mt19937 lot(13);
    for (int i = 0; i < 20'000; ++i) {
        // At, just before and just after a start, and anywhere.
        const auto sleutel = static_cast<std::uint32_t>(
            i % 4 == 0 ? lot()
                       : inhoud.v4[lot() % inhoud.v4.size()] + static_cast<unsigned>(i % 4) - 2);
        const long plaats = zoekLetterlijk(inhoud.v4, sleutel);
        const std::size_t index =
            plaats < 0 ? 255U : inhoud.v4Land[static_cast<std::size_t>(plaats)];
        const std::string code = index < inhoud.landen.size() ? inhoud.landen[index].code : "-";
        ASSERT_EQ(codeVan(LandenTabel::gedeeld(), tekstVan(sleutel)), code) << sleutel;
    }
}

TEST(LandenTabel, LoadsAtTheFirstQuestionOnly) {
    Tabel tabel(kleineTabel());
    EXPECT_TRUE(tabel->landen().empty());
    (void)tabel->land("no address");
    EXPECT_EQ(tabel->landen(), kleineTabel().landen);
}

TEST(LandenTabel, AFailedLoadIsNotTriedAgain) {
    const std::string pad = testing::TempDir() + "brixtel-later-landen.bin";
    LandenTabel tabel(pad);
    EXPECT_EQ(codeVan(tabel, "8.8.8.8"), "-");
    const auto bytes = brixtel::pakIn(brixtel::schrijfLanden(kleineTabel()));
    FILE* const bestand = fopen(pad.c_str(), "wb");
    ASSERT_TRUE(bestand);
    fwrite(bytes.data(), 1, bytes.size(), bestand);
    fclose(bestand);
    EXPECT_EQ(codeVan(tabel, "8.8.8.8"), "-");
    LandenTabel nieuwe(pad);
    EXPECT_EQ(codeVan(nieuwe, "8.8.8.8"), "US");
    remove(pad.c_str());
}

TEST(LandenTabel, TwoThreadsThatAskFirstBothSeeTheWholeTable) {
    for (int beurt = 0; beurt < 50; ++beurt) {
        Tabel tabel(kleineTabel());
        std::barrier samen(2);
        std::string code;
        std::thread achter([&] {
            samen.arrive_and_wait();
            code = codeVan(*tabel, "2a00::1");
        });
        samen.arrive_and_wait();
        const Land thuis = tabel->thuis();
        achter.join();
        EXPECT_EQ(code, "NL");
        EXPECT_EQ(thuis, kleineTabel().landen[1]);
    }
}

TEST(Thuis, ARegionWithARecordYieldsThatRecord) {
    auto inhoud = kleineTabel();
    inhoud.landen.push_back({"BE", 50.5, 4.5});
    Tabel tabel(inhoud);
    const Omgeving omgeving("nl_BE.UTF-8");
    EXPECT_EQ(tabel->thuis(), (Land{"BE", 50.5, 4.5}));
}

TEST(Thuis, ARegionWithoutARecordYieldsTheTablesNetherlands) {
    Tabel tabel(kleineTabel());
    const Omgeving omgeving("fr_FR.UTF-8");
    EXPECT_EQ(tabel->thuis(), (Land{"NL", 52.25, 5.5}));
}

TEST(Thuis, AnUnknownRegionYieldsTheTablesNetherlands) {
    Tabel tabel(kleineTabel());
    for (const char* naam : {"nl_QQ", "en_001.UTF-8", "de_12345", "@", "____"}) {
        const Omgeving omgeving(naam);
        EXPECT_EQ(tabel->thuis().code, "NL") << naam;
    }
}

TEST(Thuis, ALocaleWithoutARegionYieldsTheTablesNetherlands) {
    Tabel tabel(kleineTabel());
    for (const char* naam : {"", "C", "C.UTF-8", "POSIX", "de", "de.UTF-8", "eo"}) {
        const Omgeving omgeving(naam);
        EXPECT_EQ(tabel->thuis(), (Land{"NL", 52.25, 5.5})) << naam;
    }
}

TEST(Thuis, ATableWithoutTheNetherlandsYieldsTheBuiltInOne) {
    auto inhoud = kleineTabel();
    inhoud.landen[1].code = "nl";  // codes are compared exactly
    Tabel tabel(inhoud);
    const Omgeving omgeving("fr_FR.UTF-8");
    EXPECT_EQ(tabel->thuis(), (Land{"NL", 52.13, 5.29}));
}

TEST(Thuis, WithTheResourceMissingItIsTheBuiltInOneAndNoAddressHasACountry) {
    LandenTabel tabel("/no/such/landen.bin");
    const Omgeving omgeving("nl_BE.UTF-8");
    EXPECT_EQ(tabel.thuis(), (Land{"NL", 52.13, 5.29}));
    for (const char* adres : {"8.8.8.8", "1.1.1.1", "2600::1", "::ffff:8.8.8.8", "x"})
        EXPECT_EQ(codeVan(tabel, adres), "-");
}

TEST(Thuis, TheFirstOfTheLocalesVariablesThatIsSetCounts) {
    Tabel tabel(kleineTabel());
    const auto code = [&](const char* alles, const char* adres, const char* taal) {
        const Omgeving omgeving(alles, adres, taal);
        return tabel->thuis().code;
    };
    EXPECT_EQ(code("de_DE", "en_US", "nl_NL"), "DE");
    EXPECT_EQ(code("", "en_US.UTF-8", "nl_NL"), "US");
    EXPECT_EQ(code("", "", "de_DE@euro"), "DE");
}

TEST(Meegeleverd, TheModulesOwnTableIsFoundBesideTheModule) {
    LandenTabel tabel;
    EXPECT_EQ(codeVan(tabel, "127.0.0.1"), "-");
    EXPECT_EQ(tabel.landen().size(), 250U);
    EXPECT_EQ(&LandenTabel::gedeeld(), &LandenTabel::gedeeld());
    EXPECT_NE(LandenTabel::gedeeld().land("193.0.6.139"), std::nullopt);
}

TEST(Meegeleverd, TheChecksumIsBesideTheTableAndHolds) {
    const auto inhoudVan = [](const char* naam) {
        std::ostringstream tekst;
        tekst << std::ifstream(std::string(BRIXTEL_LIB_DIR "/resources/") + naam, std::ios::binary)
                     .rdbuf();
        return tekst.str();
    };
    const std::string bytes = inhoudVan("landen.bin");
    EXPECT_EQ(inhoudVan("landen.bin.crc32"),
              brixtel::somVan({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}));
}

TEST(Meegeleverd, ThisComputersOwnAndPrivateAddressesBelongToNoCountry) {
    for (const char* adres :
         {"127.0.0.1", "10.1.2.3", "172.16.0.1", "192.168.1.2", "169.254.1.1", "0.0.0.0",
          "255.255.255.255", "224.0.0.1", "::1", "::", "fe80::1", "fd00::1", "ff02::1"})
        EXPECT_EQ(codeVan(LandenTabel::gedeeld(), adres), "-") << adres;
}

TEST(Meegeleverd, EveryCountryHasADutchName) {
    (void)LandenTabel::gedeeld().thuis();
    for (const Land& land : LandenTabel::gedeeld().landen())
        EXPECT_NE(land.naam().toStdString(), land.code);
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST(Meegeleverd, TheTableTakesLessThanEightMegabytes) {
    const auto voor = steun::geheugenInGebruik();
    LandenTabel tabel;
    (void)tabel.land("8.8.8.8");
    const auto bytes = steun::geheugenInGebruik() - voor;
    EXPECT_GT(bytes, 1'000'000U);
    EXPECT_LT(bytes, 8'000'000U);
}
#endif

}  // namespace
