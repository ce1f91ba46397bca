// SPDX-License-Identifier: MIT
#include "connections/Land.h"

#include <gtest/gtest.h>

#include "connections/Utf8.h"

using brixtel::herstelUtf8;
using brixtel::Land;

namespace {

std::string naam(const char* code) {
    return Land{code}.naam().toStdString();
}

TEST(Land, TheNameOfDeIsGermanysInDutch) {
    EXPECT_EQ(naam("DE"), "Duitsland");
}

TEST(Land, NamesAreDutchWhateverTheUsersLanguage) {
    qputenv("LC_ALL", "ja_JP.UTF-8");
    EXPECT_EQ(naam("NL"), "Nederland");
    EXPECT_EQ(naam("BE"), "België");
    qunsetenv("LC_ALL");
}

TEST(Land, EuropeAsAWholeHasADutchNameToo) {
    EXPECT_EQ(naam("EU"), "Europese Unie");
}

TEST(Land, ACodeThatTheLocaleDataDoesNotKnowIsReturnedAsItStands) {
    for (const char* code : {"QX", "", "!!", "\uFFFDA", "12"})
        EXPECT_EQ(naam(code), code);
}

TEST(Land, IsEqualByAllThreeFields) {
    const Land nl{"NL", 52.0, 5.0};
    EXPECT_EQ(nl, (Land{"NL", 52.0, 5.0}));
    EXPECT_NE(nl, (Land{"BE", 52.0, 5.0}));
    EXPECT_NE(nl, (Land{"NL", 52.5, 5.0}));
    EXPECT_NE(nl, (Land{"NL", 52.0, 5.5}));
}

TEST(Land, MinusZeroHashesAsZero) {
    const std::hash<Land> hash;
    EXPECT_EQ((Land{"GH", 0.0, 0.0}), (Land{"GH", -0.0, -0.0}));
    EXPECT_EQ(hash({"GH", 0.0, 0.0}), hash({"GH", -0.0, -0.0}));
    EXPECT_NE(hash({"GH", 1.0, 0.0}), hash({"GH", 0.0, 1.0}));
}

TEST(Utf8, ValidTextStaysAsItIs) {
    EXPECT_EQ(herstelUtf8("gewoon"), "gewoon");
    EXPECT_EQ(herstelUtf8("één 漢 😀"), "één 漢 😀");
    EXPECT_EQ(herstelUtf8("\uFEFFx"), "\uFEFFx");
    EXPECT_EQ(herstelUtf8(""), "");
}

TEST(Utf8, InvalidSequencesAreReplaced) {
    EXPECT_EQ(herstelUtf8("a\xFFz"), "a\uFFFDz");
    EXPECT_EQ(herstelUtf8("a\xE2\x82z"), "a\uFFFDz");  // cut off
    EXPECT_EQ(herstelUtf8("\xC3"), "\uFFFD");
}

}  // namespace
