// SPDX-License-Identifier: MIT
#include "tools/landen/Kaart.h"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>

using brixtel::Kaart;
using brixtel::Plaats;

namespace {

// A map of these arcs, in whole degrees from (0, 0), with these shapes.
Kaart kaart(const QByteArray& bogen, const QByteArray& vormen) {
    return Kaart(R"({"type": "Topology", "transform": {"scale": [1, 1], "translate": [0, 0]},
                     "arcs": [)" +
                 bogen + R"(], "objects": {"countries": {"geometries": [)" + vormen + "]}}}");
}

void verwacht(const Kaart& kaart, const char* nummer, Plaats plaats, double tot = 0.2) {
    const auto midden = kaart.midden(nummer);
    ASSERT_TRUE(midden) << nummer;
    EXPECT_NEAR(midden->breedte, plaats.breedte, tot);
    EXPECT_NEAR(midden->lengte, plaats.lengte, tot);
}

TEST(Kaart, ASquaresMiddleIsItsMiddle) {
    const auto k = kaart("[[10,-2],[0,4],[4,0],[0,-4],[-4,0]]",
                         R"({"type": "Polygon", "id": "001", "arcs": [[0]]})");
    verwacht(k, "001", {0, 12}, 1e-9);
    EXPECT_FALSE(k.midden("002"));
}

TEST(Kaart, TheGridsStepsAndOriginAreApplied) {
    const Kaart k(R"({"transform": {"scale": [0.5, 0.25], "translate": [-10, -20]},
                      "arcs": [[[0,0],[0,8],[4,0],[0,-8],[-4,0]]], "objects": {"countries":
                      {"geometries": [{"type": "Polygon", "id": "001", "arcs": [[0]]}]}}})");
    verwacht(k, "001", {-19, -9}, 0.01);
}

TEST(Kaart, ARingOfSeveralArcsSomeBackwards) {
    const auto k = kaart("[[0,0],[0,4],[4,0]], [[0,0],[4,0],[0,4]]",
                         R"({"type": "Polygon", "id": "001", "arcs": [[0, -2]]})");
    verwacht(k, "001", {2, 2}, 0.01);
}

TEST(Kaart, TheLargestPieceCounts) {
    const auto k = kaart("[[40,0],[0,1],[1,0],[0,-1],[-1,0]], [[0,0],[0,4],[4,0],[0,-4],[-4,0]]",
                         R"({"type": "MultiPolygon", "id": "001", "arcs": [[[0]], [[1]]]})");
    verwacht(k, "001", {2, 2}, 0.01);
}

TEST(Kaart, TheLargestPieceOfSeveralShapesOfOneNumberCounts) {
    const auto k = kaart("[[40,0],[0,1],[1,0],[0,-1],[-1,0]], [[0,0],[0,4],[4,0],[0,-4],[-4,0]]",
                         R"({"type": "Polygon", "id": "036", "arcs": [[1]]},
           {"type": "Polygon", "id": "036", "arcs": [[0]]})");
    verwacht(k, "036", {2, 2}, 0.01);
}

TEST(Kaart, NorthAndSouthCountByTheirTrueSize) {
    // From the equator to 60 north: more of it lies in the south.
    const auto k = kaart("[[0,0],[0,30],[0,30],[1,0],[0,-30],[0,-30],[-1,0]]",
                         R"({"type": "Polygon", "id": "001", "arcs": [[0]]})");
    const double helft = std::asin(0.5 * std::sin(M_PI / 3)) * 180 / M_PI;  // halves the area
    verwacht(k, "001", {helft, 0.5}, 3.0);
}

TEST(Kaart, AHoleWeighsNothing) {
    const auto k = kaart("[[0,0],[0,8],[8,0],[0,-8],[-8,0]], [[5,2],[2,0],[0,4],[-2,0],[0,-4]]",
                         R"({"type": "Polygon", "id": "001", "arcs": [[0], [1]]})");
    // 64 with its middle at 4, less 8 with its middle at 6.
    verwacht(k, "001", {4, (64 * 4.0 - 8 * 6.0) / 56}, 0.05);
}

TEST(Kaart, AMiddleOutsideMovesToTheWidestLandOnItsParallel) {
    // A U, open to the north, its right leg the wider; its middle is in the bay.
    const auto k = kaart("[[0,0],[0,10],[2,0],[0,-8],[5,0],[0,8],[3,0],[0,-10],[-10,0]]",
                         R"({"type": "Polygon", "id": "001", "arcs": [[0]]})");
    const auto midden = k.midden("001");
    ASSERT_TRUE(midden);
    EXPECT_NEAR(midden->lengte, 8.5, 1e-9);
    EXPECT_GT(midden->breedte, 2.0);
}

TEST(Kaart, AShapeAcrossTheDateLineIsOnePiece) {
    const auto k = kaart("[[170,0],[0,4],[10,0],[-350,0],[0,-4],[350,0],[-10,0]]",
                         R"({"type": "Polygon", "id": "001", "arcs": [[0]]})");
    const auto midden = k.midden("001");
    ASSERT_TRUE(midden);
    EXPECT_NEAR(midden->breedte, 2, 0.05);
    EXPECT_NEAR(std::abs(midden->lengte), 180, 0.05);
}

TEST(Kaart, AShapeAroundAPoleHasItsMiddleThere) {
    const auto k = kaart("[[-180,-80],[90,0],[90,0],[90,0],[90,0]]",
                         R"({"type": "Polygon", "id": "010", "arcs": [[0]]})");
    verwacht(k, "010", {-90, k.midden("010")->lengte}, 1e-6);
}

TEST(Kaart, AShapeTooSmallForTheMapIsNone) {
    const auto k = kaart("[[12,41],[0,0],[0,0]]", R"({"type": "Polygon", "id": "336",
                                                      "arcs": [[0]]})");
    EXPECT_FALSE(k.midden("336"));
}

TEST(Kaart, RefusesWhatIsNoMap) {
    for (const char* tekst : {"", "{}", R"({"objects": {"countries": {"geometries": []}}})"})
        EXPECT_THROW(Kaart{QByteArray(tekst)}, std::runtime_error);
}

}  // namespace
