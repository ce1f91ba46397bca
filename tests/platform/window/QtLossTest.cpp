// SPDX-License-Identifier: MIT
// The end of Qt's own connection, by the words that Qt logs.
#include <gtest/gtest.h>

#include "platform/window/systems/WindowSystems.h"

using platform::lossIn;
using platform::QtLoss;

namespace {

TEST(QtsLoss, IsKnownByQtsWords) {
    EXPECT_EQ(
        lossIn(QStringLiteral("The Wayland connection broke. Did the Wayland compositor die?")),
        QtLoss::Gone);
    EXPECT_EQ(
        lossIn(QStringLiteral("The Wayland connection experienced a fatal error: Protocol error")),
        QtLoss::Refused);
    EXPECT_EQ(lossIn(QStringLiteral("The X11 connection broke (error 1). Did the X11 server die?")),
              QtLoss::Fatal);
    EXPECT_EQ(lossIn(QStringLiteral("The Wayland compositor is slow")), QtLoss::None);
    EXPECT_EQ(lossIn(QString()), QtLoss::None);
}

}  // namespace
