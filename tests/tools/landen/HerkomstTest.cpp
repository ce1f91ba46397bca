// SPDX-License-Identifier: MIT
// The table against the rows that it was made from, where those are: in the
// folder that BRIXTEL_GEOIP names, else where Debian's tor-geoipdb has them.
#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <sstream>

#include "connections/LandenTabel.h"
#include "tests/connections/Tabellen.h"
#include "tools/landen/LandenBouw.h"
#include "tools/landen/LandenSchrijf.h"

using namespace brixtel;

namespace {

constexpr int kAdressen = 100'000;
const char* const kGeen = "-";

std::string bronMap() {
    const char* const map = std::getenv("BRIXTEL_GEOIP");
    return map ? map : "/usr/share/tor";
}

std::string opGemaakt(const std::string& pad) {
    std::ifstream bestand(pad);
    for (std::string regel; std::getline(bestand, regel) && regel.starts_with('#');)
        if (const auto plaats = regel.find("Generated: "); plaats != std::string::npos)
            return regel.substr(plaats + 11);
    return "unknown";
}

class Herkomst : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        std::ifstream v4(bronMap() + "/geoip"), v6(bronMap() + "/geoip6");
        rijen4_ = leesAdressen4(v4);
        rijen6_ = leesAdressen6(v6);
        for (const Land& land :
             (void(LandenTabel::gedeeld().thuis()), LandenTabel::gedeeld().landen()))
            codes_.insert(land.code);
    }
    void SetUp() override {
        if (rijen4_.empty() || rijen6_.empty()) GTEST_SKIP() << "no tor-geoipdb in " << bronMap();
    }

    // The country of a row's mark, found without the code that makes the table.
    static std::string code(const std::string& merk) {
        if (merk == "UK") return "GB";
        return codes_.contains(merk) ? merk : kGeen;
    }

    static const AdresRij* rijVan(const std::vector<AdresRij>& rijen, Adres adres) {
        auto na = std::upper_bound(rijen.begin(), rijen.end(), adres,
                                   [](Adres a, const AdresRij& rij) { return a < rij.eerste; });
        if (na == rijen.begin() || (--na)->laatste < adres) return nullptr;
        return &*na;
    }

    // Anywhere, or in some row, so that small ones are tried too.
    static Adres loot(const std::vector<AdresRij>& rijen, Adres grens, std::mt19937_64& lot) {
        const Adres getal = (Adres{lot()} << 64 | lot()) & grens;
        if (lot() % 4 == 0) return getal;
        const AdresRij& rij = rijen[lot() % rijen.size()];
        return rij.eerste + getal % (rij.laatste - rij.eerste + 1);
    }

    static std::string tekst4(Adres adres) {
        const auto getal = htonl(static_cast<std::uint32_t>(adres));
        std::array<char, INET_ADDRSTRLEN> tekst{};
        return inet_ntop(AF_INET, &getal, tekst.data(), tekst.size());
    }
    static std::string tekst6(Adres adres) {
        std::array<std::uint8_t, 16> bytes{};
        for (std::size_t i = 0; i < 16; ++i)
            bytes[15 - i] = static_cast<std::uint8_t>(adres >> (8 * i));
        std::array<char, INET6_ADDRSTRLEN> tekst{};
        return inet_ntop(AF_INET6, bytes.data(), tekst.data(), tekst.size());
    }

    static void vergelijk(LandenTabel& tabel) {
        std::mt19937_64 lot(1);
        int verschillen = 0;
        for (int i = 0; i < kAdressen / 2; ++i) {
            const Adres adres = loot(rijen4_, 0xFFFFFFFF, lot);
            const AdresRij* const rij = rijVan(rijen4_, adres);
            const std::string verwacht = rij ? code(rij->code) : kGeen;
            verschillen += steun::codeVan(tabel, tekst4(adres)) != verwacht;
        }
        EXPECT_EQ(verschillen, 0);
    }

    // A /64 that several rows share has one country, which must be one of theirs.
    static void vergelijk6(LandenTabel& tabel) {
        std::mt19937_64 lot(2);
        int verschillen = 0, gedeelde = 0;
        for (int i = 0; i < kAdressen / 2; ++i) {
            const Adres adres = loot(rijen6_, ~Adres{0}, lot);
            const Adres begin = adres >> 64 << 64;
            const AdresRij* const rij = rijVan(rijen6_, adres);
            const AdresRij* const eerste = rijVan(rijen6_, begin);
            const AdresRij* const laatste = rijVan(rijen6_, begin | (~Adres{0} >> 64));
            const std::string gekregen = steun::codeVan(tabel, tekst6(adres));
            if (rij == eerste && rij == laatste && (rij || !ietsIn(begin))) {
                verschillen += gekregen != (rij ? code(rij->code) : kGeen);
            } else {
                ++gedeelde;
                verschillen += !codesIn(begin).contains(gekregen);
            }
        }
        EXPECT_EQ(verschillen, 0);
        EXPECT_LT(gedeelde, kAdressen / 20);
    }

    static bool ietsIn(Adres begin) { return codesIn(begin).size() > 1; }
    static std::set<std::string> codesIn(Adres begin) {
        const Adres einde = begin | (~Adres{0} >> 64);
        std::set<std::string> codes{kGeen};  // of what the rows leave
        for (auto rij = std::lower_bound(rijen6_.begin(), rijen6_.end(), begin,
                                         [](const AdresRij&r, Adres a) { return r.laatste < a; });
             rij != rijen6_.end() && rij->eerste <= einde; ++rij)
            codes.insert(code(rij->code));
        return codes;
    }

    static inline std::vector<AdresRij> rijen4_, rijen6_;
    static inline std::set<std::string> codes_;
};

TEST_F(Herkomst, ATableMadeOfTheRowsGivesTheCountriesOfTheRows) {
    LandenBronnen bronnen{
        .v4 = rijen4_,
        .v6 = rijen6_,
        .iso = {},
        .kaart = Kaart(R"({"objects": {"countries": {"geometries": [{"id": "0"}]}}})"),
        .zones = {},
        .correcties = {.zelfde = {{"UK", "GB"}}, .plaatsen = {}}};
    for (const auto& code : codes_)
        bronnen.correcties.plaatsen[code] = {};
    steun::Tabel tabel(bouwTabel(bronnen));
    vergelijk(*tabel);
    vergelijk6(*tabel);
}

TEST_F(Herkomst, TheShippedTableGivesTheCountriesOfTheRows) {
    std::ifstream bestand(BRIXTEL_SOURCE_DIR "/resources/BRONNEN.md");
    std::ostringstream bronnen;
    bronnen << bestand.rdbuf();
    const std::string gemaakt = opGemaakt(bronMap() + "/geoip");
    if (bronnen.str().find(gemaakt) == std::string::npos)
        GTEST_SKIP() << "made from another version than that of " << gemaakt;
    vergelijk(LandenTabel::gedeeld());
    vergelijk6(LandenTabel::gedeeld());
}

}  // namespace
