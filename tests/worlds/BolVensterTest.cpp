// SPDX-License-Identifier: MIT
// From a real connection to the light in a real window: the system's own lsof, a
// table that knows this process's own loopback address, and a window on an X
// server of its own. Only the clock is moved by hand.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <optional>

#include "platform/process/ToolRun.h"
#include "platform/scene/DrawList.h"
#include "platform/window/Window.h"
#include "tests/connections/Programma.h"
#include "tests/connections/Tabellen.h"
#include "tests/support/KeepDriver.h"
#include "tests/support/Paden.h"
#include "tests/support/Until.h"
#include "tests/support/WindowSystems.h"
#include "tests/support/Xvfb.h"
#include "worlds/DrieWereld.h"

using brixtel::DrieSoort;
using brixtel::DrieWereld;
using brixtel::VerbindingWacht;

namespace {

constexpr double kTussentijd = 3.0;
constexpr double kSpeling = 0.15 * kTussentijd;  // of the watcher's timer
constexpr int kMilliseconden = 60'000;           // for what others do
const std::string kPrater = BRIXTEL_BUILD_DIR "/tests/programmas/Mijn App";

// Loopback addresses that are this process's alone: lsof sees the whole machine.
std::uint32_t eigenAdres(std::uint32_t netwerk) {
    return netwerk | (static_cast<std::uint32_t>(getpid()) & 0x3FFFFF);
}
const std::uint32_t kEigen = eigenAdres(0x7F400000);  // 127.64.0.0/10
const std::uint32_t kAnder = eigenAdres(0x7F800000);  // 127.128.0.0/10, of no country

std::string alsTekst(std::uint32_t adres) {
    const in_addr inNetwerk{htonl(adres)};
    std::array<char, INET_ADDRSTRLEN> tekst{};
    return inet_ntop(AF_INET, &inNetwerk, tekst.data(), tekst.size());
}

// A table in which kEigen alone lies in the Atlantic; home is the Netherlands.
brixtel::LandenInhoud eigenTabel() {
    return {.landen = {{"AQ", 25.0, -40.0}, {"NL", 52.25, 5.5}},
            .v4 = {kEigen, kEigen + 1},
            .v4Land = {0, steun::kGeen},
            .v6 = {},
            .v6Land = {}};
}

class BolVenster : public testing::Test {
  protected:
    void SetUp() override {
        if (!platform::findTool("lsof")) GTEST_SKIP() << "no lsof here";
        ASSERT_TRUE(x_.isRunning());
        id_ = x_.makeWindow({.width = 960, .height = 600});
        server_.emplace(klok_,
                        platform::WindowServerOptions{.system = systemOn(klok_, x_.display())});
        venster_ = std::make_unique<platform::Window>(*server_, hostRef(id_));
        bol_ = std::make_unique<DrieWereld>(DrieSoort::bol, brixtel::DrieWereldOpties{},
                                            brixtel::DrieWereldBronnen{.klok = klok_,
                                                                       .toeval = toeval_,
                                                                       .wacht = &wacht_,
                                                                       .landen = &*tabel_,
                                                                       .kaart = &kaart_});
        abonnement_ = wacht_.lijnen().volg([this](const auto&) { ++metingen_; });
        metingen_ = 0;
        venster_->contentView()->addSubview(bol_->maakView({0, 0, 960, 600}));
    }

    [[nodiscard]] bool meting(int welke) {
        return until([&] { return metingen_ >= welke; }, kMilliseconden);
    }

    // Another frame, begun from now on, is on the screen.
    [[nodiscard]] bool beeld() {
        for (int keer = 0; keer < 2; ++keer) {
            const auto voor = venster_->statistics().frames;
            klok_.advance(1.0 / 60.0);
            if (!until([&] { return venster_->statistics().frames > voor; }, kMilliseconden))
                return false;
        }
        return true;
    }

    // Where the label of that country stands, or would stand, in the window.
    [[nodiscard]] QRect vak() const {
        platform::DrawList lijst;
        platform::extract(*bol_->scene(), 960.0 / 600.0, lijst);
        const glm::dvec3 plaats(bol_->bol()->worldTransform() *
                                glm::dvec4(DrieWereld::punt(25.0, -40.0, {.r = 1.09}), 1.0));
        const glm::vec4 op = lijst.camera.projection * lijst.camera.view * glm::vec4(plaats, 1.0F);
        return {static_cast<int>(480.0F * (1.0F + op.x / op.w)) - 35,
                static_cast<int>(300.0F * (1.0F - op.y / op.w)) - 18, 70, 24};
    }

    // The number of pixels as bright as letters.
    [[nodiscard]] int letters() const {
        const QImage beeld = x_.picture(id_);
        const QRect waar = vak();
        int aantal = 0;
        for (int y = waar.top(); y <= waar.bottom(); ++y)
            for (int x = waar.left(); x <= waar.right(); ++x)
                aantal += qGreen(beeld.pixel(x, y)) > 160 ? 1 : 0;
        return aantal;
    }

    const Xvfb x_{"960x600x24"};
    xcb_window_t id_ = 0;
    platform::ManualClock klok_{1000.0};
    platform::RandomSource toeval_{1};
    steun::Tabel tabel_{eigenTabel()};
    brixtel::LandKaart kaart_;
    VerbindingWacht wacht_{klok_, {.tabel = *tabel_}};
    std::optional<platform::WindowServer> server_;
    std::unique_ptr<platform::Window> venster_;
    std::unique_ptr<DrieWereld> bol_;
    brixtel::Abonnement abonnement_;
    int metingen_ = 0;
};

TEST_F(BolVenster, AConnectionIsSeenWithinOneIntervalAndGoneWithinOneAfterItCloses) {
    ASSERT_TRUE(meting(1));
    EXPECT_TRUE(bol_->lijnenNode()->children().empty());
    ASSERT_TRUE(beeld());
    EXPECT_EQ(letters(), 0);

    steun::Programma prater({kPrater, alsTekst(kEigen), alsTekst(kAnder)});
    ASSERT_NE(prater.regel().find('4'), std::string::npos);
    klok_.advance(kTussentijd + kSpeling);
    ASSERT_TRUE(meting(2));
    EXPECT_EQ(bol_->lijnenNode()->children().size(), 4U);
    ASSERT_TRUE(beeld());
    EXPECT_GT(letters(), 40);

    prater.sluit();
    prater.wacht();
    klok_.advance(kTussentijd + kSpeling);
    ASSERT_TRUE(meting(3));
    EXPECT_TRUE(bol_->lijnenNode()->children().empty());
    ASSERT_TRUE(beeld());
    EXPECT_EQ(letters(), 0);
}

}  // namespace
