// SPDX-License-Identifier: MIT
// The saver's view on a clock that is moved by hand, with settings of its own.
#pragma once

#include <gtest/gtest.h>

#include <QImage>
#include <memory>

#include "BrixtelSaver/BrixtelSaver.h"
#include "tests/BrixtelSaver/Instellingen.h"
#include "tests/support/Until.h"

namespace steun {

using brixtel::BrixtelSaverView;
using brixtel::EigenInstellingen;
using brixtel::SaverInstellingen;
using brixtel::SaverKeuze;

struct EenBlad : platform::Sheet {
    void showAbove(const platform::WindowRef&) override {}
    void dismiss() override {}
    bool isShown() const override { return false; }
    QImage picture() override { return {}; }
};

// A view whose sheet hands its callback to the test.
class ProefView : public BrixtelSaverView {
  public:
    using BrixtelSaverView::BrixtelSaverView;
    Klaar klaar;

  protected:
    std::shared_ptr<platform::Sheet> maakInstellingenVenster(Klaar k) override {
        klaar = std::move(k);
        return std::make_shared<EenBlad>();
    }
};

class SaverView : public testing::Test {
  protected:
    EigenInstellingen eigen;
    platform::ManualClock klok{100.0};
    platform::RandomSource toeval{5};
    platform::DistributedNotificationCenter berichten{QString()};

    std::shared_ptr<ProefView> maak(bool voorvertoning = false) {
        return std::make_shared<ProefView>(
            QRectF(0, 0, 300, 200), voorvertoning,
            platform::ScreenSaverContext{
                .clock = klok, .random = toeval, .notifications = berichten});
    }
    std::shared_ptr<ProefView> gestart(SaverKeuze keuze) {
        SaverInstellingen::zetKeuze(keuze);
        auto view = maak();
        view->startAnimation();
        return view;
    }
    void meldStop() {
        bool gehoord = false;
        berichten.addObserver(&gehoord, QStringLiteral("com.apple.screensaver.willstop"),
                              [&] { gehoord = true; });
        berichten.post(QStringLiteral("com.apple.screensaver.willstop"));
        EXPECT_TRUE(until([&] { return gehoord; }));
        berichten.removeObserver(&gehoord);
    }
    static bool leeg(const BrixtelSaverView& view) {
        return !view.regen() && !view.scn() && !view.wereld() &&
               view.layer()->sublayers().empty() && view.subviews().empty();
    }
};

}  // namespace steun
