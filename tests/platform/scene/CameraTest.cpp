// SPDX-License-Identifier: MIT
#include "platform/scene/Camera.h"

#include <gtest/gtest.h>

#include <cmath>

#include "platform/scene/Transform.h"

using platform::Camera;

namespace {

double halfHeight(const Camera& camera, double aspect) {
    return std::tan(0.5 * platform::radians(camera.verticalAngle(aspect)));
}

TEST(CameraTest, AWidePictureShowsTheStatedAngle) {
    const Camera camera{.fieldOfView = 42.0, .subjectWidth = 3.0};
    for (const double aspect : {4.0 / 3.0, 1.6, 16.0 / 9.0, 21.0 / 9.0, 32.0 / 9.0})
        EXPECT_EQ(camera.verticalAngle(aspect), 42.0) << aspect;
}

TEST(CameraTest, ANarrowPictureShowsTheWidthOf4To3) {
    const Camera camera{.fieldOfView = 42.0};
    const double width = halfHeight(camera, 4.0 / 3.0) * 4.0 / 3.0;
    for (const double aspect : {1.3, 1.0, 0.75, 9.0 / 16.0, 9.0 / 32.0}) {
        EXPECT_NEAR(halfHeight(camera, aspect) * aspect, width, 1e-12) << aspect;
        EXPECT_NEAR(camera.projection(aspect)[0][0], 1.0 / width, 1e-9) << aspect;
    }
}

TEST(CameraTest, AThingTakesLessOfTheHeightWhereTheAngleIsWider) {
    const Camera camera{.fieldOfView = 42.0};
    EXPECT_EQ(camera.heightShare(16.0 / 9.0), 1.0);
    EXPECT_EQ(camera.heightShare(4.0 / 3.0), 1.0);
    EXPECT_NEAR(camera.heightShare(9.0 / 16.0), 27.0 / 64.0, 1e-12);
}

TEST(CameraTest, ASubjectWiderThan4To3IsSeenWholeFromASquareOn) {
    const Camera camera{.fieldOfView = 42.0, .subjectWidth = 0.6};
    for (const double aspect : {1.0, 0.75, 9.0 / 32.0})
        EXPECT_NEAR(halfHeight(camera, aspect) * aspect, 0.6, 1e-12) << aspect;
    // Nothing jumps while a window is dragged narrower.
    double last = camera.verticalAngle(1.5);
    for (double aspect = 1.5; aspect > 0.5; aspect -= 0.001) {
        EXPECT_NEAR(camera.verticalAngle(aspect), last, 0.2) << aspect;
        last = camera.verticalAngle(aspect);
    }
}

}  // namespace
