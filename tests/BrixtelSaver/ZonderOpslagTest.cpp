// SPDX-License-Identifier: MIT
// A user without a configuration folder: the module has no store.
#include "tests/BrixtelSaver/SaverOpstelling.h"
#include "tests/support/ZonderThuis.h"

using brixtel::SaverInstellingen;
using brixtel::SaverKeuze;

namespace {

class ZonderOpslag : public steun::SaverView {
  protected:
    const steun::ZonderThuis zonderThuis_;
    void SetUp() override { ASSERT_EQ(SaverInstellingen::opslag(), nullptr); }
};

TEST_F(ZonderOpslag, ReadingIsRotatingAndWritingDoesNothing) {
    EXPECT_EQ(SaverInstellingen::keuze(), SaverKeuze::wisselend);
    SaverInstellingen::zetKeuze(SaverKeuze::kubus);
    EXPECT_EQ(SaverInstellingen::keuze(), SaverKeuze::wisselend);
}

TEST_F(ZonderOpslag, WhatWasSetIsNotStoredLater) {
    SaverInstellingen::zetKeuze(SaverKeuze::kubus);
    const brixtel::EigenInstellingen later;
    ASSERT_NE(SaverInstellingen::opslag(), nullptr);
    SaverInstellingen::opslag()->synchronize();
    EXPECT_EQ(SaverInstellingen::keuze(), SaverKeuze::wisselend);
    EXPECT_FALSE(QFile::exists(later.bestand()));
}

TEST_F(ZonderOpslag, TheViewRotatesAndAPickShowsForThisRunAlone) {
    const auto view = maak();
    view->startAnimation();
    EXPECT_EQ(view->nu(), SaverKeuze::wisselend);
    ASSERT_TRUE(view->configureSheet());
    view->klaar(SaverKeuze::regen);
    EXPECT_TRUE(view->regen());
    EXPECT_EQ(view->nu(), SaverKeuze::regen);
    view->startAnimation();
    EXPECT_EQ(view->nu(), SaverKeuze::wisselend);
}

}  // namespace
