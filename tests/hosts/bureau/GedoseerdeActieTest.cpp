// SPDX-License-Identifier: MIT
// An action that is requested often and done seldom: by itself, and as choices are written.
#include "hosts/bureau/GedoseerdeActie.h"

#include "tests/hosts/bureau/BureauProef.h"
#include "tests/hosts/bureau/SchrijfTeller.h"

using brixtel::BureauInstellingen;
using brixtel::BureauProef;
using brixtel::GedoseerdeActie;
using brixtel::SchrijfTeller;

namespace {

struct GedoseerdeActieTest : testing::Test {
    platform::ManualClock klok;
    int gedaan = 0;
    GedoseerdeActie werk{klok, 0.15, [this] { ++gedaan; }};
};

TEST_F(GedoseerdeActieTest, TheFirstIsDoneAtOnceAndAloneLeavesNothing) {
    EXPECT_EQ(klok.timerCount(), 0U);
    werk.vraag();
    EXPECT_EQ(gedaan, 1);
    klok.advance(0.15);
    EXPECT_EQ(gedaan, 1);
    EXPECT_EQ(klok.timerCount(), 0U);
}

TEST_F(GedoseerdeActieTest, WhatIsAskedForMeanwhileIsDoneOnceAsTheTimeIsUp) {
    for (int keer = 0; keer < 100; ++keer)
        werk.vraag();
    EXPECT_EQ(gedaan, 1);
    klok.advance(0.149);
    EXPECT_EQ(gedaan, 1);
    klok.advance(0.001);
    EXPECT_EQ(gedaan, 2);
    // And the time counts from there.
    werk.vraag();
    klok.advance(0.149);
    EXPECT_EQ(gedaan, 2);
    klok.advance(0.001);
    EXPECT_EQ(gedaan, 3);
    klok.advance(1.0);
    EXPECT_EQ(gedaan, 3);
    EXPECT_EQ(klok.timerCount(), 0U);
    werk.vraag();
    EXPECT_EQ(gedaan, 4);
}

TEST_F(GedoseerdeActieTest, WhatWaitsIsDoneNowOrForgotten) {
    werk.doeNu();
    EXPECT_EQ(gedaan, 0);
    werk.vraag();
    werk.vraag();
    werk.doeNu();
    EXPECT_EQ(gedaan, 2);
    werk.doeNu();
    klok.advance(0.15);
    EXPECT_EQ(gedaan, 2);
    werk.vraag();
    werk.vraag();
    werk.vergeet();
    EXPECT_EQ(klok.timerCount(), 0U);
    klok.advance(1.0);
    EXPECT_EQ(gedaan, 3);
}

class Bewaring : public BureauProef {
  protected:
    const SchrijfTeller teller{map.path(), "nl.groenlicht.brixtel.bureau.conf"};

    void sleep(double dichtheid) { bureau->zetKeuzes({.dichtheid = dichtheid}); }
    static double bewaard() { return BureauInstellingen::lees().dichtheid; }
};

TEST_F(Bewaring, ADragIsWrittenAtMostOnceInATimeAndItsLastValueAlways) {
    // A hundred values in a second.
    for (int stap = 1; stap <= 100; ++stap) {
        sleep(stap * 0.005);
        // The effects have it at once.
        ASSERT_EQ(nu().keuzes.dichtheid, stap * 0.005);
        ASSERT_EQ(bureau->centrale().dichtheid, stap * 0.005);
        klok.advance(0.01);
    }
    // At 0, 0.15, 0.30, ... 0.90.
    EXPECT_EQ(teller.geschreven(), 7);
    EXPECT_NE(bewaard(), 0.5);
    klok.advance(0.15);
    EXPECT_EQ(teller.geschreven(), 1);
    EXPECT_EQ(bewaard(), 0.5);
    klok.advance(10.0);
    EXPECT_EQ(teller.geschreven(), 0);
    EXPECT_EQ(klok.timerCount(), 0U);
}

TEST_F(Bewaring, AChoiceByItselfIsWrittenAtOnce) {
    sleep(0.25);
    EXPECT_EQ(teller.geschreven(), 1);
    EXPECT_EQ(bewaard(), 0.25);
    sleep(0.25);
    klok.advance(1.0);
    EXPECT_EQ(teller.geschreven(), 0);
}

TEST_F(Bewaring, WhatWaitsIsWrittenAtTheEnd) {
    sleep(0.25);
    sleep(0.75);
    EXPECT_EQ(bewaard(), 0.25);
    bureau.reset();
    EXPECT_EQ(teller.geschreven(), 2);
    EXPECT_EQ(bewaard(), 0.75);
}

}  // namespace
