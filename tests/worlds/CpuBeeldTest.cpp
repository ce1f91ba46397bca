// SPDX-License-Identifier: MIT
// The worlds as the processor draws them, beside OpenGL's pictures of four times
// the size, averaged down.
#include <gtest/gtest.h>

#include "platform/render/cpu/CpuSceneDrawer.h"
#include "tests/support/PictureQuality.h"
#include "tests/support/SceneSnapshot.h"
#include "tests/worlds/BolLijst.h"
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
    // With the land and the lines of a globe as people see it.
    void vergelijk(DrieSoort soort) {
        kaart_ = brixtel::LandKaart::gedeeld();
        ASSERT_GT(kaart_.breedte(), 0);
        const auto wereld = maak(soort, {.eigenLijnen = true});
        if (soort == DrieSoort::bol) wereld->zetLijnen(steun::lijnen(24));
        const auto snapshot = platform::SceneSnapshot::create();
        ASSERT_TRUE(snapshot);
        platform::CpuSceneDrawer drawer;
        const Shape shapes[] = {{{512, 320}},      {{320, 512}},      {{560, 230}},
                                {{256, 160}, 2.0}, {{160, 256}, 2.0}, {{280, 115}, 2.0}};
        for (const double time : {1.0, 5.0, 9.0, 21.0, 40.0}) {
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
                EXPECT_GE(reached, kLeast) << time << ' ' << shape.size.width() << 'x'
                                           << shape.size.height() << " × " << shape.scale;
                EXPECT_GE(reached, platform::test::psnr(openGl, wanted))
                    << time << ' ' << shape.size.width() << 'x' << shape.size.height() << " × "
                    << shape.scale;
            }
        }
    }
};

TEST_F(CpuBeeld, TheGlobe) {
    vergelijk(DrieSoort::bol);
}
TEST_F(CpuBeeld, TheCube) {
    vergelijk(DrieSoort::kubus);
}
TEST_F(CpuBeeld, TheTunnel) {
    vergelijk(DrieSoort::tunnel);
}
TEST_F(CpuBeeld, TheLogo) {
    vergelijk(DrieSoort::logo);
}

}  // namespace
