// SPDX-License-Identifier: MIT
#include "hosts/gedeeld/Melding.h"

#include <gtest/gtest.h>

using brixtel::eenRegel;

namespace {

TEST(EenRegel, WhatIsOneLineStaysAsItIs) {
    EXPECT_EQ(eenRegel(QStringLiteral("'/a  b' is niet te schrijven …")),
              QStringLiteral("'/a  b' is niet te schrijven …"));
    EXPECT_EQ(eenRegel(QString()), QString());
}

TEST(EenRegel, NothingThatIsQuotedBreaksItOrSteersATerminal) {
    EXPECT_EQ(eenRegel(QStringLiteral("a\nb\r\nc\td\u2028e\u2029f\u0085g\u001b[2J")),
              QStringLiteral("a b  c d e f g [2J"));
    EXPECT_EQ(eenRegel(QStringLiteral("a\u202Eb\u2066c\u200Fd")), QStringLiteral("a b c d"));
    EXPECT_EQ(eenRegel(QStringLiteral("\n a \n")), QStringLiteral("a"));
}

TEST(Melding, IsOneLineOnStandardErrorAndGivesItsExitStatus) {
    testing::internal::CaptureStderr();
    const int uitgang = brixtel::meld(QStringLiteral("een\ntwee: é\n"), 7);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "een twee: é\n");
    EXPECT_EQ(uitgang, 7);
}

TEST(Melding, WhereQtGivesUpTheUserReadsDutchAndNoAdvice) {
    EXPECT_EQ(brixtel::waaromQtOpgeeft(QStringLiteral(
                  "This application failed to start because no Qt platform plugin could be "
                  "initialized. Reinstalling the application may fix this problem.\n\nAvailable")),
              QStringLiteral("Qt kan zijn deel voor het scherm niet openen"));
    EXPECT_EQ(brixtel::waaromQtOpgeeft(QStringLiteral("Cannot mix\nfurther lines")),
              QStringLiteral("Qt geeft het op: Cannot mix"));
}

}  // namespace
