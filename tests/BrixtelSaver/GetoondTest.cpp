// SPDX-License-Identifier: MIT
// The view names each scene that it puts up, for the title of a window.
#include <QStringList>

#include "tests/BrixtelSaver/SaverOpstelling.h"

using brixtel::naam;
using brixtel::SaverInstellingen;
using brixtel::SaverKeuze;
using steun::SaverView;

namespace {

TEST_F(SaverView, NamesTheSceneOfEveryMinute) {
    SaverInstellingen::zetKeuze(SaverKeuze::wisselend);
    const auto view = maak();
    QStringList namen, getoond;
    view->onShown([&](const QString& een) { namen << een; });
    view->startAnimation();
    getoond << naam(*view->huidige());
    for (int minuut = 0; minuut < 20; ++minuut) {
        klok.leap(60.0);
        getoond << naam(*view->huidige());
    }
    EXPECT_EQ(namen, getoond);
    EXPECT_FALSE(namen.contains(naam(SaverKeuze::wisselend)));
}

TEST_F(SaverView, NamesWhatIsPickedAndNothingWhenItStops) {
    const auto view = maak();
    QStringList namen;
    view->onShown([&](const QString& een) { namen << een; });
    SaverInstellingen::zetKeuze(SaverKeuze::kubus);
    view->startAnimation();
    view->takePick(QStringLiteral("regen"));
    view->stopAnimation();
    EXPECT_EQ(namen, (QStringList{naam(SaverKeuze::kubus), naam(SaverKeuze::regen)}));
}

}  // namespace
