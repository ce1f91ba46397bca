// SPDX-License-Identifier: MIT
#include "drawing/BlokCijfer.h"

#include <gtest/gtest.h>

#include "drawing/Thema.h"

using brixtel::BlokCijfer;
using brixtel::Tekenvlak;
using brixtel::Thema;

namespace {

std::string teken(const brixtel::Glief& glief) {
    std::string uit;
    for (const auto rij : glief) {
        for (int c = 0; c < 5; ++c)
            uit += (rij >> (4 - c) & 1) != 0 ? '#' : '.';
        uit += '\n';
    }
    return uit;
}

TEST(BlokCijfer, TheZeroHasADiagonalStroke) {
    EXPECT_EQ(teken(BlokCijfer::nul), ".###.\n#...#\n#..##\n#.#.#\n##..#\n#...#\n.###.\n");
}

TEST(BlokCijfer, TheOneHasAFlagAndAFullWidthFoot) {
    EXPECT_EQ(teken(BlokCijfer::een), "..#..\n.##..\n#.#..\n..#..\n..#..\n..#..\n#####\n");
}

TEST(BlokCijfer, SizeOfBlockFourGapOneIs24By34) {
    EXPECT_EQ(BlokCijfer::maat({.blok = 4, .spleet = 1}), QSizeF(24, 34));
}

TEST(BlokCijfer, TheOneUpwardsGives13RectanglesFromTopToFoot) {
    const auto vakken = BlokCijfer::vakken(true, {.bij = {0, 0}, .blok = 1, .spleet = 0});
    ASSERT_EQ(vakken.size(), 13U);
    EXPECT_EQ(vakken.front(), QRectF(2, 6, 1, 1));
    for (int c = 0; c < 5; ++c)
        EXPECT_EQ(vakken[8 + static_cast<std::size_t>(c)], QRectF(c, 0, 1, 1));
}

TEST(BlokCijfer, DownwardsTheTopRowHasTheSmallestY) {
    const auto vakken =
        BlokCijfer::vakken(false, {.bij = {10, 20}, .blok = 2, .spleet = 0.5, .omhoog = false});
    EXPECT_EQ(vakken.front(), QRectF(10 + 2.5, 20, 2, 2));
    EXPECT_EQ(vakken.back(), QRectF(10 + 3 * 2.5, 20 + 6 * 2.5, 2, 2));
}

TEST(BlokCijfer, AnEmptyPatternGivesAnEmptyList) {
    EXPECT_TRUE(BlokCijfer::vakken(std::span<const std::uint8_t>(), {}).empty());
}

TEST(BlokCijfer, APatternMayHaveAnyNumberOfRows) {
    const std::array<std::uint8_t, 2> patroon{0x10, 0x01};
    const auto vakken = BlokCijfer::vakken(patroon, {.bij = {0, 0}, .blok = 1, .spleet = 0});
    ASSERT_EQ(vakken.size(), 2U);
    EXPECT_EQ(vakken[0], QRectF(0, 1, 1, 1));
    EXPECT_EQ(vakken[1], QRectF(4, 0, 1, 1));
}

TEST(BlokCijfer, PaintsFromTheLowerLeftCornerUpwards) {
    const auto beeld = Thema::beeld(
        {7, 9}, {.schaal = 1, .teken = [](Tekenvlak& vlak) {
                     BlokCijfer::teken(
                         true, {.linksonder = {1, 1}, .blok = 1, .spleet = 0, .kleur = Qt::green},
                         vlak);
                 }});
    ASSERT_TRUE(beeld);
    int gezet = 0;
    for (int y = 0; y < 9; ++y)
        for (int x = 0; x < 7; ++x)
            gezet += qAlpha(beeld->pixel(x, y)) == 255 ? 1 : 0;
    EXPECT_EQ(gezet, 13);
    EXPECT_EQ(beeld->pixel(3, 1), qRgb(0, 255, 0));  // the top block, one row from the top
    for (int x = 1; x <= 5; ++x)
        EXPECT_EQ(beeld->pixel(x, 7), qRgb(0, 255, 0));
}

}  // namespace
