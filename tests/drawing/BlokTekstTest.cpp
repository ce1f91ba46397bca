// SPDX-License-Identifier: MIT
#include "drawing/BlokTekst.h"

#include <gtest/gtest.h>

using brixtel::BlokCijfer;
using brixtel::BlokTekst;

namespace {

TEST(BlokTekst, KnowsExactlyItsFortyTwoCharacters) {
    int gekend = 0;
    for (char16_t c = 1; c < 0x3000; ++c)
        gekend += BlokTekst::kent(QString(QChar(c))) ? 1 : 0;
    EXPECT_EQ(gekend, 42);
    for (const QChar c : QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789 !?.-+"))
        EXPECT_TRUE(BlokTekst::kent(QString(c))) << static_cast<int>(c.unicode());
}

TEST(BlokTekst, KnowsUpperCaseAndSpaceButNotLowerCase) {
    EXPECT_FALSE(BlokTekst::kent(u"a"));
    EXPECT_TRUE(BlokTekst::kent(u"A"));
    EXPECT_TRUE(BlokTekst::kent(u" "));
    EXPECT_FALSE(BlokTekst::kent(u""));
    EXPECT_FALSE(BlokTekst::kent(u"AB"));
}

TEST(BlokTekst, WidthOfABIsElevenAndOfNothingZero) {
    EXPECT_EQ(BlokTekst::breedte(QStringLiteral("AB"), {.blok = 1, .spleet = 0}), 11.0);
    EXPECT_EQ(BlokTekst::breedte(QString(), {.blok = 1, .spleet = 0}), 0.0);
}

TEST(BlokTekst, TheSpaceBetweenGlyphsIsABlockAndTwoGaps) {
    EXPECT_DOUBLE_EQ(BlokTekst::breedte(QStringLiteral("ABC"), {.blok = 1, .spleet = 0.15}),
                     3 * 5.6 + 2 * 1.3);
}

TEST(BlokTekst, AnUnknownCharacterKeepsItsCellEmpty) {
    const auto vakken = BlokTekst::vakken(QStringLiteral("a#b"), {.bij = {0, 0}, .blok = 1});
    auto verwacht = BlokTekst::vakken(QStringLiteral("A"), {.bij = {0, 0}, .blok = 1});
    const auto b = BlokTekst::vakken(QStringLiteral("B"), {.bij = {12, 0}, .blok = 1});
    verwacht.insert(verwacht.end(), b.begin(), b.end());
    EXPECT_EQ(vakken, verwacht);
}

TEST(BlokTekst, ACharacterWithItsAccentIsOneCell) {
    const QString eenLetter = QStringLiteral("e\u0301");  // e and a combining accent
    EXPECT_EQ(BlokTekst::breedte(eenLetter, {.blok = 1, .spleet = 0}), 5.0);
    EXPECT_TRUE(BlokTekst::vakken(eenLetter, {.blok = 1}).empty());
}

TEST(BlokTekst, DigitsZeroAndOneAreTheDigitGlyphsAndOIsNotZero) {
    const auto plaats = brixtel::BlokPlaats{.bij = {0, 0}, .blok = 1};
    EXPECT_EQ(BlokTekst::vakken(QStringLiteral("0"), plaats), BlokCijfer::vakken(false, plaats));
    EXPECT_EQ(BlokTekst::vakken(QStringLiteral("1"), plaats), BlokCijfer::vakken(true, plaats));
    EXPECT_NE(BlokTekst::vakken(QStringLiteral("O"), plaats), BlokCijfer::vakken(false, plaats));
}

TEST(BlokTekst, TheFullStopIsTwoByTwoInTheBottomRows) {
    const std::vector<QRectF> verwacht{{1, 1, 1, 1}, {2, 1, 1, 1}, {1, 0, 1, 1}, {2, 0, 1, 1}};
    EXPECT_EQ(BlokTekst::vakken(QStringLiteral("."), {.bij = {0, 0}, .blok = 1}), verwacht);
}

// Counted in a drawing of the font, so that a slip in the table shows.
TEST(BlokTekst, EveryGlyphHasItsNumberOfBlocks) {
    const QString letters = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZ23456789 !?.-+");
    const std::vector<std::size_t> blokken{18, 20, 13, 18, 18, 14, 17, 17, 15, 11, 14, 11, 18, 17,
                                           16, 15, 17, 18, 15, 11, 15, 13, 18, 13, 10, 15, 15, 15,
                                           14, 17, 15, 11, 17, 15, 0,  6,  10, 4,  5,  9};
    ASSERT_EQ(static_cast<std::size_t>(letters.size()), blokken.size());
    for (qsizetype i = 0; i < letters.size(); ++i)
        EXPECT_EQ(BlokTekst::vakken(letters.mid(i, 1), {.blok = 1}).size(),
                  blokken[static_cast<std::size_t>(i)])
            << letters[i].toLatin1();
}

// A glyph as its cells show it, row by row from the top.
std::string cellen(const QString& letter) {
    std::string tekst(5 * 7, '.');
    for (const QRectF& vak : BlokTekst::vakken(letter, {.bij = {0, 0}, .blok = 1}))
        tekst[static_cast<std::size_t>((6 - vak.top()) * 5 + vak.left())] = '#';
    std::string regels;
    for (std::size_t rij = 0; rij < 7; ++rij)
        regels += tekst.substr(5 * rij, 5) + "\n";
    return regels;
}

TEST(BlokTekst, EveryGlyphIsDrawnAsItIs) {
    const std::string_view letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789!?.-+ ";
    const std::vector<std::string> beelden{
        ".###.\n#...#\n#...#\n#####\n#...#\n#...#\n#...#\n",
        "####.\n#...#\n#...#\n####.\n#...#\n#...#\n####.\n",
        ".####\n#....\n#....\n#....\n#....\n#....\n.####\n",
        "####.\n#...#\n#...#\n#...#\n#...#\n#...#\n####.\n",
        "#####\n#....\n#....\n####.\n#....\n#....\n#####\n",
        "#####\n#....\n#....\n####.\n#....\n#....\n#....\n",
        ".####\n#....\n#....\n#..##\n#...#\n#...#\n.####\n",
        "#...#\n#...#\n#...#\n#####\n#...#\n#...#\n#...#\n",
        "#####\n..#..\n..#..\n..#..\n..#..\n..#..\n#####\n",
        "..###\n...#.\n...#.\n...#.\n...#.\n#..#.\n.##..\n",
        "#...#\n#..#.\n#.#..\n##...\n#.#..\n#..#.\n#...#\n",
        "#....\n#....\n#....\n#....\n#....\n#....\n#####\n",
        "#...#\n##.##\n#.#.#\n#.#.#\n#...#\n#...#\n#...#\n",
        "#...#\n##..#\n#.#.#\n#..##\n#...#\n#...#\n#...#\n",
        ".###.\n#...#\n#...#\n#...#\n#...#\n#...#\n.###.\n",
        "####.\n#...#\n#...#\n####.\n#....\n#....\n#....\n",
        ".###.\n#...#\n#...#\n#...#\n#.#.#\n#..#.\n.##.#\n",
        "####.\n#...#\n#...#\n####.\n#.#..\n#..#.\n#...#\n",
        ".####\n#....\n#....\n.###.\n....#\n....#\n####.\n",
        "#####\n..#..\n..#..\n..#..\n..#..\n..#..\n..#..\n",
        "#...#\n#...#\n#...#\n#...#\n#...#\n#...#\n.###.\n",
        "#...#\n#...#\n#...#\n#...#\n#...#\n.#.#.\n..#..\n",
        "#...#\n#...#\n#...#\n#.#.#\n#.#.#\n##.##\n#...#\n",
        "#...#\n#...#\n.#.#.\n..#..\n.#.#.\n#...#\n#...#\n",
        "#...#\n#...#\n.#.#.\n..#..\n..#..\n..#..\n..#..\n",
        "#####\n....#\n...#.\n..#..\n.#...\n#....\n#####\n",
        ".###.\n#...#\n#..##\n#.#.#\n##..#\n#...#\n.###.\n",
        "..#..\n.##..\n#.#..\n..#..\n..#..\n..#..\n#####\n",
        ".###.\n#...#\n....#\n..##.\n.#...\n#....\n#####\n",
        "####.\n....#\n....#\n.###.\n....#\n....#\n####.\n",
        "...#.\n..##.\n.#.#.\n#..#.\n#####\n...#.\n...#.\n",
        "#####\n#....\n####.\n....#\n....#\n#...#\n.###.\n",
        "..##.\n.#...\n#....\n####.\n#...#\n#...#\n.###.\n",
        "#####\n....#\n...#.\n..#..\n.#...\n.#...\n.#...\n",
        ".###.\n#...#\n#...#\n.###.\n#...#\n#...#\n.###.\n",
        ".###.\n#...#\n#...#\n.####\n....#\n...#.\n.##..\n",
        "..#..\n..#..\n..#..\n..#..\n..#..\n.....\n..#..\n",
        ".###.\n#...#\n....#\n..##.\n..#..\n.....\n..#..\n",
        ".....\n.....\n.....\n.....\n.....\n.##..\n.##..\n",
        ".....\n.....\n.....\n#####\n.....\n.....\n.....\n",
        ".....\n..#..\n..#..\n#####\n..#..\n..#..\n.....\n",
        ".....\n.....\n.....\n.....\n.....\n.....\n.....\n",
    };
    ASSERT_EQ(letters.size(), beelden.size());
    for (std::size_t i = 0; i < letters.size(); ++i)
        EXPECT_EQ(cellen(QString(QLatin1Char(letters[i]))), beelden[i]) << letters[i];
}

}  // namespace
