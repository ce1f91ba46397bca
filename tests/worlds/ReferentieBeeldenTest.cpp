// SPDX-License-Identifier: MIT
// Every world beside its stored pictures, one of each drawer.
#include <gtest/gtest.h>

#include "tests/support/Paden.h"
#include "tests/support/Pictures.h"
#include "tests/worlds/ReferentieBeelden.h"

using brixtel::DrieSoort;
using platform::test::PictureLimits;
using steun::ReferentieTekenaar;

namespace {

// In 255ths. The processor's bits are the same everywhere but for a library's sines.
constexpr PictureLimits kProcessor{.largest = 6, .mean = 0.02};
// Mesa 22.3 (Debian 12) and 25.0 (Debian 13) differ by at most 1.
constexpr PictureLimits kOpenGl{.largest = 6, .mean = 0.02};

class ReferentieBeelden : public testing::TestWithParam<DrieSoort> {
  protected:
    static void compare(ReferentieTekenaar drawer, PictureLimits limits) {
        const QString name = steun::referentieNaam(GetParam(), drawer);
        const QImage stored(QStringLiteral(BRIXTEL_TEST_DATA "/werelden/") + name);
        ASSERT_FALSE(stored.isNull());
        EXPECT_TRUE(platform::test::agree(steun::referentieBeeld(GetParam(), drawer),
                                          stored.convertToFormat(QImage::Format_RGB32),
                                          name.toStdString(), limits))
            << "tests/worlds/referentiebeelden tells when stored pictures may be renewed";
    }
};

}  // namespace

TEST_P(ReferentieBeelden, TheProcessorsPictureIsTheStoredOne) {
    compare(ReferentieTekenaar::Processor, kProcessor);
}

TEST_P(ReferentieBeelden, OpenGlsPictureIsTheStoredOne) {
    compare(ReferentieTekenaar::OpenGl, kOpenGl);
}

INSTANTIATE_TEST_SUITE_P(Worlds, ReferentieBeelden, testing::ValuesIn(brixtel::alleSoorten),
                         [](const auto& een) { return ruweWaarde(een.param).toStdString(); });
