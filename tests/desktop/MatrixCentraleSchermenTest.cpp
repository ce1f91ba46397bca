// SPDX-License-Identifier: MIT
// Displays that come, go and change under the black screen.
#include <QCoreApplication>
#include <QEvent>

#include "tests/desktop/CentraleProef.h"

using brixtel::CentraleProef;
using brixtel::DrieSoort;

namespace {

class CentraleSchermen : public CentraleProef {};

TEST_F(CentraleSchermen, DisplaysThatChangeUnderALockAreFollowedAfterIt) {
    centrale->toonZwart(std::nullopt);
    werkruimte.zetBeveiligd(true);
    schermen.push_back({.name = QStringLiteral("drie"), .frame = {720, 0, 200, 200}, .scale = 1.0});
    klok.advance(1.0);
    // A new window would lie over the lock.
    EXPECT_EQ(centrale->zwart().size(), 2U);
    werkruimte.zetBeveiligd(false);
    EXPECT_EQ(centrale->zwart().size(), 3U);
}

// A frame is relative to the primary display's, and so the primary's own stays the
// same wherever it goes: then its windows are elsewhere than their frame says.
TEST_F(CentraleSchermen, AWindowIsPutWhereItsDisplayIsAlsoIfTheFrameIsTheSame) {
    centrale->toonRegen();
    centrale->toonZwart(std::nullopt);
    const QRectF elders = schermen[0].frame.translated(-400, 0);
    centrale->regen()[0].venster->setFrame(elders);
    centrale->zwart()[0].venster->setFrame(elders);
    ASSERT_EQ(centrale->zwart()[0].venster->frame(), elders);
    werkruimte.zetBeveiligd(false);
    EXPECT_EQ(centrale->regen()[0].venster->frame(), schermen[0].frame);
    EXPECT_EQ(centrale->zwart()[0].venster->frame(), schermen[0].frame);
}

// Notes the windows that come and go.
struct Kijker : QObject {
    platform::WindowServer& server;
    std::vector<std::string> gezien;

    explicit Kijker(platform::WindowServer& s) : server(s) {
        QCoreApplication::instance()->installEventFilter(this);
    }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Show) gezien.emplace_back("komt");
        if (event->type() == QEvent::Hide)
            gezien.emplace_back(server.keyWindow() ? "gaat" : "gaat, en niemand heeft de toetsen");
        return false;
    }
};

TEST_F(CentraleSchermen, AChangedDisplayIsCoveredBeforeItsOldWindowGoes) {
    schermen.resize(1);
    centrale->toonZwart(DrieSoort::kubus);
    const Kijker kijker(server);
    werkruimte.zetBeveiligd(true);
    schermen[0].frame = {0, 0, 300, 400};
    werkruimte.zetBeveiligd(false);
    EXPECT_EQ(kijker.gezien, (std::vector<std::string>{"komt", "gaat"}));
    EXPECT_EQ(centrale->zwart()[0].venster->frame(), schermen[0].frame);
    EXPECT_EQ(server.keyWindow(), centrale->zwart()[0].venster.get());
    ASSERT_EQ(centrale->drieWerelden().size(), 1U);
    EXPECT_EQ(centrale->drieWerelden()[0]->scene(), centrale->zwart()[0].drie->scene());
}

TEST_F(CentraleSchermen, TheKeyboardMovesBeforeTheDisplayThatHadItGoes) {
    centrale->toonZwart(std::nullopt);
    ASSERT_EQ(server.keyWindow(), centrale->zwart()[1].venster.get());
    const Kijker kijker(server);
    werkruimte.zetBeveiligd(true);
    schermen.resize(1);
    werkruimte.zetBeveiligd(false);
    EXPECT_EQ(kijker.gezien, std::vector<std::string>{"gaat"});
    EXPECT_EQ(server.keyWindow(), centrale->zwart()[0].venster.get());
}

TEST_F(CentraleSchermen, DisplaysThatMirrorOneAnotherHaveOneWindow) {
    schermen.resize(1);
    schermen.push_back(schermen[0]);
    schermen[1].name = QStringLiteral("spiegel");
    centrale->toonRegen();
    centrale->toonZwart(std::nullopt);
    EXPECT_EQ(centrale->regen().size(), 1U);
    EXPECT_EQ(centrale->zwart().size(), 1U);
    // The same holds for displays that mirror only later.
    schermen[1].frame.translate(500.0, 0.0);
    werkruimte.zetBeveiligd(true);
    werkruimte.zetBeveiligd(false);
    EXPECT_EQ(centrale->regen().size(), 2U);
    schermen[1].frame = schermen[0].frame;
    werkruimte.zetBeveiligd(true);
    werkruimte.zetBeveiligd(false);
    EXPECT_EQ(centrale->regen().size(), 1U);
    EXPECT_EQ(centrale->zwart().size(), 1U);
}

}  // namespace
