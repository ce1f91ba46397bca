// SPDX-License-Identifier: MIT
#include "connections/LandenBestand.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <random>

#include "tests/connections/Tabellen.h"
#include "tests/support/TijdelijkeMap.h"

using brixtel::LandenTabel;
using brixtel::leesLanden;
using brixtel::pakIn;
using brixtel::pakUit;
using brixtel::schrijfLanden;
using steun::kleineTabel;
using Bytes = std::vector<std::uint8_t>;

namespace {

// A file whose load is silent and leaves the table empty.
void verwachtLeeg(const Bytes& bestand, const std::string& wat = {}) {
    steun::Tabel tabel(bestand);
    EXPECT_FALSE(tabel->land("1.2.3.4")) << wat;
    EXPECT_FALSE(tabel->land("2600::1")) << wat;
    EXPECT_TRUE(tabel->landen().empty()) << wat;
    EXPECT_EQ(tabel->thuis(), (brixtel::Land{"NL", 52.13, 5.29})) << wat;
}

Bytes metKop(std::uint16_t landen, std::uint32_t v4, std::uint32_t v6) {
    Bytes data = schrijfLanden(kleineTabel());
    const auto zet = [&](std::size_t plaats, std::size_t bytes, std::uint64_t getal) {
        for (std::size_t i = 0; i < bytes; ++i)
            data[plaats + i] = static_cast<std::uint8_t>(getal >> (8 * i));
    };
    zet(6, 2, landen);
    zet(8, 4, v4);
    zet(12, 4, v6);
    return data;
}

TEST(LandenBestand, ReadsBackWhatWasWritten) {
    const auto inhoud = kleineTabel();
    const auto terug = leesLanden(schrijfLanden(inhoud));
    EXPECT_EQ(terug.landen, inhoud.landen);
    EXPECT_EQ(terug.v4, inhoud.v4);
    EXPECT_EQ(terug.v4Land, inhoud.v4Land);
    EXPECT_EQ(terug.v6, inhoud.v6);
    EXPECT_EQ(terug.v6Land, inhoud.v6Land);
}

TEST(LandenBestand, TheLayoutIsByteForByteAsDescribed) {
    const Bytes data{'B', 'X', 'G', 'E', 'O', '1', 1, 0, 1, 0, 0, 0, 1, 0, 0, 0,
                     // "NL", 52.5 and -0.5 as floats
                     'N', 'L', 0, 0, 0x52, 0x42, 0, 0, 0, 0xBF,
                     // 1.2.3.4 on, country 0
                     4, 3, 2, 1, 0,
                     // 2a00:1234:5678:9abc:: on, country 7
                     0xBC, 0x9A, 0x78, 0x56, 0x34, 0x12, 0x00, 0x2A, 7};
    const auto inhoud = leesLanden(data);
    EXPECT_EQ(inhoud.landen, (std::vector<brixtel::Land>{{"NL", 52.5, -0.5}}));
    EXPECT_EQ(inhoud.v4, std::vector<std::uint32_t>{0x01020304});
    EXPECT_EQ(inhoud.v4Land, Bytes{0});
    EXPECT_EQ(inhoud.v6, std::vector<std::uint64_t>{0x2A00123456789ABC});
    EXPECT_EQ(inhoud.v6Land, Bytes{7});
}

TEST(LandenBestand, InvalidBytesInACodeAreRepaired) {
    Bytes data = schrijfLanden(kleineTabel());
    data[16] = 0xFF;
    EXPECT_EQ(leesLanden(data).landen.front().code, "\uFFFDE");
}

TEST(LandenBestand, AMissingFileIsSilent) {
    LandenTabel tabel("/no/such/landen.bin");
    EXPECT_FALSE(tabel.land("1.2.3.4"));
    EXPECT_EQ(tabel.thuis(), (brixtel::Land{"NL", 52.13, 5.29}));
}

TEST(LandenBestand, AFolderInItsPlaceIsSilent) {
    LandenTabel tabel("/proc/self");
    EXPECT_FALSE(tabel.land("1.2.3.4"));
}

TEST(LandenBestand, AnEmptyFileIsSilent) {
    verwachtLeeg({});
}

TEST(LandenBestand, AFileThatIsNotPackedIsSilent) {
    verwachtLeeg(schrijfLanden(kleineTabel()));
}

TEST(LandenBestand, TheWrongMarkIsSilent) {
    Bytes data = schrijfLanden(kleineTabel());
    data[5] = '2';
    verwachtLeeg(pakIn(data));
}

TEST(LandenBestand, AFileCutOffAtAnyLengthIsSilent) {
    const Bytes heel = pakIn(schrijfLanden(kleineTabel()));
    for (std::size_t lengte = 0; lengte < heel.size(); ++lengte)
        verwachtLeeg({heel.begin(), heel.begin() + static_cast<long>(lengte)},
                     std::to_string(lengte));
}

TEST(LandenBestand, DataCutOffAtAnyLengthIsSilentUpToItsHeadAndThenStopsTheProcess) {
    const Bytes heel = schrijfLanden(kleineTabel());
    for (std::size_t lengte = 0; lengte < heel.size(); ++lengte) {
        const Bytes data(heel.begin(), heel.begin() + static_cast<long>(lengte));
        if (lengte <= 16) {
            verwachtLeeg(pakIn(data), std::to_string(lengte));
        } else {
            EXPECT_EXIT((void)leesLanden(data), testing::KilledBySignal(SIGABRT), "") << lengte;
        }
    }
}

TEST(LandenBestand, CountsThatClaimTooMuchStopTheProcess) {
    const std::array<Bytes, 5> leugens{metKop(4, 5, 5), metKop(3, 6, 5), metKop(3, 5, 6),
                                       metKop(0xFFFF, 0, 0), metKop(3, 0xFFFFFFFF, 0xFFFFFFFF)};
    for (const Bytes& leugen : leugens) {
        steun::Tabel tabel(pakIn(leugen));
        EXPECT_EXIT((void)tabel->land("1.2.3.4"), testing::KilledBySignal(SIGABRT), "");
    }
}

TEST(LandenBestand, ATableThatStopsTheProcessSaysSoFirst) {
    EXPECT_EXIT((void)leesLanden(metKop(4, 5, 5)), testing::KilledBySignal(SIGABRT),
                "^brixtel: de landentabel is korter dan zij zelf zegt\n");
}

TEST(LandenBestand, WithItsChecksumBesideItEveryDamagedByteCountsAsNoFile) {
    const steun::TijdelijkeMap map;
    const Bytes heel = pakIn(schrijfLanden(kleineTabel()));
    const auto schrijf = [&map](const Bytes& bytes) {
        return map.bestand("landen.bin",
                           {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    };
    (void)map.bestand("landen.bin.crc32", brixtel::somVan(heel));
    for (std::size_t i = 0; i <= heel.size(); ++i) {
        Bytes stuk = heel;
        if (i < heel.size()) stuk[i] ^= 0xAA;
        LandenTabel tabel(schrijf(stuk));
        EXPECT_EQ(steun::codeVan(tabel, "8.8.8.8"), i < heel.size() ? "-" : "US") << i;
        EXPECT_EQ(tabel.landen().empty(), i < heel.size()) << i;
    }
    // The checksum itself may be damaged too.
    for (const char* som : {"", "00000000\n", "0"}) {
        (void)map.bestand("landen.bin.crc32", som);
        LandenTabel tabel(schrijf(heel));
        EXPECT_EQ(steun::codeVan(tabel, "8.8.8.8"), "-") << som;
    }
}

TEST(LandenBestand, TheChecksumIsThatOfTheUsualTools) {
    const std::string_view cijfers = "123456789";
    EXPECT_EQ(
        brixtel::somVan({reinterpret_cast<const std::uint8_t*>(cijfers.data()), cijfers.size()}),
        "cbf43926\n");
}

TEST(LandenBestand, CountsThatClaimTooLittleAreTrusted) {
    steun::Tabel tabel(pakIn(metKop(3, 5, 0)));
    EXPECT_EQ(steun::codeVan(*tabel, "8.8.8.8"), "US");
    EXPECT_EQ(steun::codeVan(*tabel, "2600::1"), "-");
}

TEST(LandenBestand, ADamagedStreamIsSilentOrGivesOtherData) {
    // DEFLATE has no checksum: damage may also unpack. It must then not be read
    // beyond its end, which the sanitizers see.
    const Bytes heel = pakIn(schrijfLanden(kleineTabel()));
    std::mt19937 lot(5);
    int onleesbaar = 0;
    for (int beurt = 0; beurt < 5000; ++beurt) {
        Bytes stuk = heel;
        stuk[lot() % stuk.size()] ^= static_cast<std::uint8_t>(1U << lot() % 8);
        const auto data = pakUit(stuk);
        if (!data) {
            ++onleesbaar;
            verwachtLeeg(stuk);
            continue;
        }
        const auto kop = brixtel::leesKop(*data);
        if (kop && kop->maat() > data->size()) continue;  // which stops the process
        steun::Tabel tabel(stuk);
        (void)tabel->land("8.8.8.8");
        (void)tabel->land("2600::1");
    }
    EXPECT_GT(onleesbaar, 100);
}

TEST(LandenBestand, ADecompressionBombIsSilent) {
    // Zeros pack a thousandfold.
    const Bytes bom = pakIn(Bytes(brixtel::kLandenGrens + 1));
    EXPECT_LT(bom.size(), 100'000U);
    EXPECT_FALSE(pakUit(bom));
    verwachtLeeg(bom);
}

}  // namespace
