// SPDX-License-Identifier: MIT
// The system's own lsof, on connections that are there.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>

#include "connections/VerbindingWacht.h"
#include "tests/connections/Programma.h"
#include "tests/connections/Tabellen.h"
#include "tests/connections/WachtOpstelling.h"

using brixtel::Lijn;
using brixtel::VerbindingWacht;

namespace {

// Two loopback addresses that are this process's alone: lsof sees the whole
// machine, and these tests run beside each other.
std::uint32_t eigenAdres(std::uint32_t netwerk) {
    return netwerk | (static_cast<std::uint32_t>(getpid()) & 0x3FFFFF);
}
const std::uint32_t kEigen4 = eigenAdres(0x7F400000);   // 127.64.0.0/10
const std::uint32_t kEigenOm = eigenAdres(0x7F800000);  // 127.128.0.0/10

std::string alsTekst(std::uint32_t adres) {
    const in_addr inNetwerk{htonl(adres)};
    std::array<char, INET_ADDRSTRLEN> tekst{};
    return inet_ntop(AF_INET, &inNetwerk, tekst.data(), tekst.size());
}

// 127.0.0.0/8 is Dutch but for those two; ::1 is German.
brixtel::LandenInhoud terugTabel() {
    return {
        .landen = {{"BE", 50.5, 4.5}, {"DE", 51.0, 10.5}, {"LU", 49.75, 6.0}, {"NL", 52.25, 5.5}},
        .v4 = {0x7F000000, kEigen4, kEigen4 + 1, kEigenOm, kEigenOm + 1, 0x80000000},
        .v4Land = {3, 0, 3, 2, 3, steun::kGeen},
        .v6 = {0, 1},
        .v6Land = {1, steun::kGeen}};
}

class EchteLsof : public testing::Test {
  protected:
    EchteLsof() { heeft_ = prater_.regel(); }

    void SetUp() override {
        if (!platform::findTool("lsof")) GTEST_SKIP() << "no lsof here";
        lijnen_ = VerbindingWacht::meet({.tabel = *tabel_});
    }

    [[nodiscard]] bool heeft(char soort) const { return heeft_.find(soort) != std::string::npos; }

    [[nodiscard]] const Lijn* lijn(const std::string& code) const {
        const auto gevonden = std::find_if(lijnen_.begin(), lijnen_.end(),
                                           [&](const Lijn& l) { return l.id() == code; });
        return gevonden == lijnen_.end() ? nullptr : &*gevonden;
    }

    steun::Programma prater_{
        {steun::kProgrammas + "Mijn App", alsTekst(kEigen4), alsTekst(kEigenOm)}};
    steun::Tabel tabel_{terugTabel()};
    std::string heeft_;
    std::vector<Lijn> lijnen_;
};

const std::vector<std::string> kMijnApp{"Mijn App"};

TEST_F(EchteLsof, AnIpv4ConnectionIsCountedAtBothEndsUnderItsProgramsName) {
    ASSERT_TRUE(heeft('4'));
    ASSERT_TRUE(lijn("BE"));
    EXPECT_EQ(lijn("BE")->aantal, 2);
    EXPECT_EQ(lijn("BE")->programmas, kMijnApp);
}

TEST_F(EchteLsof, AMappedConnectionIsCountedAsIpv4) {
    if (!heeft('m')) GTEST_SKIP() << "no IPv6 here";
    ASSERT_TRUE(lijn("LU"));
    EXPECT_EQ(lijn("LU")->aantal, 2);
    EXPECT_EQ(lijn("LU")->programmas, kMijnApp);
}

TEST_F(EchteLsof, AnIpv6ConnectionIsCountedToo) {
    if (!heeft('6')) GTEST_SKIP() << "no IPv6 here";
    ASSERT_TRUE(lijn("DE"));
    EXPECT_GE(lijn("DE")->aantal, 2);  // others on the machine may have some
    EXPECT_NE(std::find(lijn("DE")->programmas.begin(), lijn("DE")->programmas.end(), "Mijn App"),
              lijn("DE")->programmas.end());
}

TEST_F(EchteLsof, ConnectionsThatHaveEndedAreGone) {
    prater_.sluit();
    prater_.wacht();
    lijnen_ = VerbindingWacht::meet({.tabel = *tabel_});
    EXPECT_FALSE(lijn("BE"));
    EXPECT_FALSE(lijn("LU"));
}

}  // namespace
