// SPDX-License-Identifier: MIT
// The pixels to the point of the rain's digits: those of the view's window, else of the main
// screen, else two.
#include "platform/window/PicturePlace.h"
#include "platform/window/Window.h"
#include "tests/BrixtelSaver/SaverOpstelling.h"
#include "tests/support/WindowSystems.h"

using brixtel::SaverKeuze;

namespace {

// Screens of the test's own.
class Schermen final : public platform::ScreenSource {
  public:
    explicit Schermen(std::vector<platform::Screen> alle) : alle_(std::move(alle)) { use(this); }
    ~Schermen() override { use(nullptr); }
    Schermen(const Schermen&) = delete;
    Schermen& operator=(const Schermen&) = delete;

    [[nodiscard]] std::vector<platform::Screen> screens() const override { return alle_; }
    [[nodiscard]] platform::Observation observeScreens(std::function<void()>) override {
        return {};
    }

  private:
    const std::vector<platform::Screen> alle_;
};

platform::Screen scherm(double schaal) {
    return {.name = QStringLiteral("een"), .frame = {0, 0, 800, 600}, .scale = schaal};
}

class Schaal : public steun::SaverView {
  protected:
    platform::WindowServer server{klok, {.drawer = {}, .system = withoutSystem(klok)}};

    // Every strip is drawn and shown in so many pixels to the point.
    static void verwacht(const brixtel::MatrixRegen* regen, double schaal) {
        ASSERT_TRUE(regen);
        ASSERT_FALSE(regen->kolommen().empty());
        for (const auto& kolom : regen->kolommen())
            for (const auto& laag : {kolom.staart, kolom.kop}) {
                EXPECT_EQ(laag->contentsScale(), schaal);
                EXPECT_EQ(laag->contents().size(), (laag->bounds().size() * schaal).toSize());
            }
    }
};

TEST_F(Schaal, IsTheWindowsWhateverTheMainScreenHas) {
    for (const double schaal : {2.0, 1.0}) {
        const Schermen schermen({scherm(3.0 - schaal)});
        brixtel::SaverInstellingen::zetKeuze(SaverKeuze::regen);
        platform::PicturePlace plek;
        plek.setMeasures({.size = {300, 200}, .scale = schaal, .screen = scherm(3.0 - schaal)});
        platform::Window venster(server, plek);
        ASSERT_EQ(venster.backingScaleFactor(), schaal);
        const auto view = maak();
        venster.setContentView(view);
        ASSERT_EQ(view->window(), &venster);
        view->startAnimation();
        verwacht(view->regen(), schaal);
    }
}

TEST_F(Schaal, WithoutAWindowIsTheMainScreens) {
    const Schermen schermen({scherm(1.5), scherm(3.0)});
    verwacht(gestart(SaverKeuze::regen)->regen(), 1.5);
}

TEST_F(Schaal, WithoutAScreenIsTwo) {
    const Schermen schermen({});
    verwacht(gestart(SaverKeuze::regen)->regen(), 2.0);
}

}  // namespace
