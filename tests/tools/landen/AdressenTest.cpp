// SPDX-License-Identifier: MIT
#include "tools/landen/Adressen.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

using brixtel::Adres;
using brixtel::leesAdressen4;
using brixtel::leesAdressen6;

namespace {

auto lees4(const std::string& tekst) {
    std::istringstream in(tekst);
    return leesAdressen4(in);
}
auto lees6(const std::string& tekst) {
    std::istringstream in(tekst);
    return leesAdressen6(in);
}

TEST(Adressen, ReadsIpv4RowsAndSkipsComments) {
    const auto rijen = lees4("# head\n16777216,16777471,AU\n\n4294967295,4294967295,??\n");
    ASSERT_EQ(rijen.size(), 2U);
    EXPECT_TRUE(rijen[0].eerste == 16777216 && rijen[0].laatste == 16777471);
    EXPECT_EQ(rijen[0].code, "AU");
    EXPECT_TRUE(rijen[1].laatste == 0xFFFFFFFF);
}

TEST(Adressen, ReadsIpv6RowsInFull) {
    const auto rijen = lees6("2001:db8::1,2001:db8:0:1::,NL\n");
    ASSERT_EQ(rijen.size(), 1U);
    EXPECT_TRUE(rijen[0].eerste == ((Adres{0x20010DB800000000} << 64) | 1));
    EXPECT_TRUE(rijen[0].laatste == Adres{0x20010DB800000001} << 64);
}

TEST(Adressen, RefusesARowThatItCannotRead) {
    for (const char* tekst : {"1,2\n", "x,2,NL\n", "1,x,NL\n", "2,1,NL\n", "-1,2,NL\n",
                              "1,4294967296,NL\n", "1.0.0.0,1.0.0.1,NL\n"})
        EXPECT_THROW(lees4(tekst), std::runtime_error) << tekst;
    EXPECT_THROW(lees6("1,2,NL\n"), std::runtime_error);
}

TEST(Adressen, RefusesRowsThatOverlapOrDescendAndSaysWhere) {
    EXPECT_THROW(lees4("1,5,NL\n5,9,BE\n"), std::runtime_error);
    try {
        (void)lees4("# head\n4,5,NL\n1,2,BE\n");
        FAIL();
    } catch (const std::runtime_error& fout) {
        EXPECT_STREQ(fout.what(), "regel 3: 1,2,BE");
    }
}

}  // namespace
