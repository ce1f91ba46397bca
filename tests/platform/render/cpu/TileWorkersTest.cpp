// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/TileWorkers.h"

#include <gtest/gtest.h>

#include <array>
#include <latch>
#include <utility>
#include <vector>

namespace platform::test {

// Every piece is worked on once, by a thread within bounds, and all is done when
// the call returns: the counts are plain numbers.
TEST(TileWorkers, EveryPieceIsDoneOnce) {
    for (const int threads : {1, 2, 4}) {
        TileWorkers workers(threads);
        std::vector<int> hits(500, 0);
        for (int round = 0; round < 500; ++round) {
            const int pieces = round % 7 == 0 ? TileWorkers::kFewestPieces - 1 : 50 + round % 450;
            std::array<int, 4> byThread{};
            workers.each(pieces, [&](int piece, int thread) {
                ++hits[static_cast<std::size_t>(piece)];
                ++byThread.at(static_cast<std::size_t>(thread));
            });
            EXPECT_EQ(byThread[0] + byThread[1] + byThread[2] + byThread[3], pieces);
            if (pieces < TileWorkers::kFewestPieces) {
                EXPECT_EQ(byThread[0], pieces);
            }
            for (int i = 0; i < pieces; ++i)
                ASSERT_EQ(std::exchange(hits[static_cast<std::size_t>(i)], 0), 1) << i;
        }
    }
}

TEST(TileWorkers, FewSmallPiecesAreTheCallersAlone) {
    TileWorkers workers(4);
    constexpr int kPieces = TileWorkers::kFewestSmallPieces - 1;
    for (int round = 0; round < 200; ++round) {
        int own = 0;
        workers.each(
            kPieces, [&](int, int thread) { own += thread == 0 ? 1 : 0; },
            TileWorkers::kFewestSmallPieces);
        ASSERT_EQ(own, kPieces);
    }
}

// Two long pieces wait for one another: one thread that took both would wait for ever.
TEST(TileWorkers, TwoPiecesAreTwoThreadsWork) {
    TileWorkers workers(2);
    for (int round = 0; round < 100; ++round) {
        std::latch both(2);
        workers.each(
            2, [&](int, int) { both.arrive_and_wait(); }, 2);
        ASSERT_TRUE(both.try_wait());
    }
}

TEST(TileWorkers, NothingToDoEndsAtOnce) {
    const TileWorkers unused(4);
    TileWorkers workers(4);
    int calls = 0;
    workers.each(0, [&](int, int) { ++calls; });
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(TileWorkers(1).threads(), 1);
    EXPECT_EQ(TileWorkers(99).threads(), 4);
    EXPECT_GE(TileWorkers(0).threads(), 1);
}

}  // namespace platform::test
