// SPDX-License-Identifier: MIT
// The worlds as the processor draws them, beside OpenGL's pictures of four times
// the size, averaged down.
#include <gtest/gtest.h>

#include "platform/render/cpu/CpuSceneDrawer.h"
#include "tests/support/PictureQuality.h"
#include "tests/support/SceneSnapshot.h"
#include "tests/worlds/Opstelling.h"

using brixtel::DrieSoort;
using brixtel::DrieWereld;

namespace {

struct Shape {
    QSize size;
    double scale = 1.0;
};

constexpr int kTimes = 4;
// Decibels.
constexpr double kLeast = 36.0;

class CpuBeeld : public steun::WereldOpstelling {
  protected:
    void vergelijk(DrieSoort soort, double least) {
        const auto wereld = maak(soort, {.eigenLijnen = true});
        if (soort == DrieSoort::bol) {
            std::vector<brixtel::Lijn> lijnen;
            for (int i = 0; i < 8; ++i)
                lijnen.push_back({{"DE", 60.0 - 12.0 * i, 14.0 * i - 40.0}, {"Proef"}, 8 - i});
            wereld->zetLijnen(lijnen);
        }
        const auto snapshot = platform::SceneSnapshot::create();
        ASSERT_TRUE(snapshot);
        platform::CpuSceneDrawer drawer;
        const Shape shapes[] = {{{400, 250}}, {{250, 400}}, {{440, 180}}, {{200, 125}, 2.0}};
        for (const double time : {1.0, 5.0, 9.0}) {
            wereld->scene()->advance(time);
            for (const Shape& shape : shapes) {
                platform::DrawList list;
                platform::extract(*wereld->scene(), 1.0 * shape.size.width() / shape.size.height(),
                                  list);
                const QImage own = drawer.picture(list, shape.size, shape.scale);
                const QImage wanted = platform::test::averagedDown(
                    snapshot->picture(list, shape.size, kTimes * shape.scale), kTimes);
                const QImage openGl = snapshot->picture(list, shape.size, shape.scale);
                const double reached = platform::test::psnr(own, wanted);
                EXPECT_GE(reached, least) << time << ' ' << shape.size.width() << 'x'
                                          << shape.size.height() << " × " << shape.scale;
                EXPECT_GE(reached, platform::test::psnr(openGl, wanted))
                    << time << ' ' << shape.size.width() << 'x' << shape.size.height() << " × "
                    << shape.scale;
            }
        }
    }
};

TEST_F(CpuBeeld, TheGlobe) {
    vergelijk(DrieSoort::bol, kLeast);
}
TEST_F(CpuBeeld, TheCube) {
    vergelijk(DrieSoort::kubus, kLeast);
}
TEST_F(CpuBeeld, TheTunnel) {
    vergelijk(DrieSoort::tunnel, kLeast);
}
TEST_F(CpuBeeld, TheLogo) {
    vergelijk(DrieSoort::logo, kLeast);
}

}  // namespace
