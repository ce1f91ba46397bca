// SPDX-License-Identifier: MIT
#include "desktop/MatrixCentrale.h"

#include <algorithm>
#include <utility>

#include "platform/time/ProcessUsage.h"
#include "platform/view/AnimationGroup.h"

namespace brixtel {

using platform::Screen;
using platform::Timer;
using platform::Workspace;

namespace {

// The black screen takes the keyboard back from another program after this many seconds.
constexpr double kToetsenRust = 0.25;
// The keyboard is taken back at most this many times in a row; a row has less than
// kStrijd seconds between two times.
constexpr int kMeesteKeren = 5;
constexpr double kStrijd = 1.5;

}  // namespace

MatrixCentrale::MatrixCentrale(const MatrixCentraleBronnen& bronnen)
    : bronnen_(bronnen),
      klok_(bronnen.server.clock()),
      werkruimte_(bronnen.werkruimte.observe([this](Workspace::Change wat) { veranderd(wat); })),
      schermen_([this] { volgSchermen(); }) {}

MatrixCentrale::~MatrixCentrale() {
    // The completions of running fades find no controller from here on.
    zelf_.reset();
    werkruimte_.reset();
    if (cursorWeg_) bronnen_.werkruimte.unhideCursor();
    // The keyboard is given back before the windows go. A window waits for its drawing, and
    // a process that is being ended may not get that far.
    if (vorigeApp_) bronnen_.werkruimte.activate(*vorigeApp_);
    zwart_.clear();
}

void MatrixCentrale::wisselZwart(std::optional<DrieSoort> drie) {
    if (zwartAan())
        sluitZwart();
    else
        toonZwart(drie);
}

void MatrixCentrale::wisselRegen() {
    if (regenAan())
        sluitRegen();
    else
        toonRegen();
}

void MatrixCentrale::sluitAlles() {
    sluitZwart();
    sluitRegen();
}

// --- closing ---

void MatrixCentrale::laatUitgaan(Sluitend sluitend, double duur) {
    const int nummer = sluitend.nummer = ++laatsteNummer_;
    sluitend_.push_back(std::move(sluitend));
    platform::AnimationGroup groep(
        {.duration = duur, .completion = zwak([nummer](MatrixCentrale& c) { c.rondAf(nummer); })});
    const Sluitend& deze = sluitend_.back();
    for (const Zwart& zwart : deze.zwart)
        zwart.venster->fadeTo(0.0, groep);
    for (const Regen& regen : deze.regen)
        regen.venster->fadeTo(0.0, groep);
}

void MatrixCentrale::rondAf(int nummer) {
    const auto gevonden = std::find_if(sluitend_.begin(), sluitend_.end(),
                                       [=](const Sluitend& s) { return s.nummer == nummer; });
    if (gevonden == sluitend_.end()) return;
    std::optional<Sluitend> klaar = std::move(*gevonden);
    sluitend_.erase(gevonden);
    for (const Zwart& zwart : klaar->zwart) {
        zwart.tafereel->stop();
        zwart.venster->hide();
    }
    for (const Regen& regen : klaar->regen) {
        regen.regen->stop();
        regen.venster->hide();
    }
    // The worlds of a black screen that was opened meanwhile stay.
    std::erase_if(drieWerelden_, [&](const auto& wereld) {
        return std::find(klaar->werelden.begin(), klaar->werelden.end(), wereld.get()) !=
               klaar->werelden.end();
    });
    const bool hadWerelden = !klaar->werelden.empty();
    klaar.reset();
    // Scenes free much memory, and the owner may stay idle for days.
    if (hadWerelden && !zwartAan()) platform::releaseFreeMemory();
}

// --- events of the desktop ---

void MatrixCentrale::veranderd(Workspace::Change wat) {
    if (wat != Workspace::Change::FrontmostApplication) werkRegenBij();
    // Changes of displays under a saver or lock are handled when it ends.
    if (wat == Workspace::Change::Saver) {
        if (zwartAan()) verbergCursor(!bronnen_.werkruimte.isSaverActive());
        if (!bronnen_.werkruimte.isSaverActive()) volgSchermen();
    }
    if (wat == Workspace::Change::Compositor || !zwartAan() || toetsenKlok_.isValid()) return;
    // A window that the black screen covers must not receive keys.
    toetsenKlok_ = Timer(klok_, {.interval = kToetsenRust}, [this] {
        const bool eigen = std::any_of(zwart_.begin(), zwart_.end(),
                                       [](const Zwart& z) { return z.venster->isKey(); });
        if (zwartAan() && !eigen && !bronnen_.werkruimte.isSaverActive()) neemToetsen();
    });
}

// A program that keeps taking the keyboard keeps it in the end: it may be a lock that the
// workspace does not know.
void MatrixCentrale::neemToetsen() {
    const double nu = klok_.now();
    genomen_ = nu - laatstGenomen_ < kStrijd ? genomen_ + 1 : 1;
    laatstGenomen_ = nu;
    if (genomen_ <= kMeesteKeren) bronnen_.werkruimte.activateIgnoringOthers();
}

// The pointer is hidden on the whole desktop, so it returns while a saver or lock covers
// the black screen.
void MatrixCentrale::verbergCursor(bool weg) {
    if (std::exchange(cursorWeg_, weg) == weg) return;
    if (weg)
        bronnen_.werkruimte.hideCursor();
    else
        bronnen_.werkruimte.unhideCursor();
}

void MatrixCentrale::volgSchermen() {
    const std::vector<Screen> schermen = platform::distinctRectangles(bronnen_.schermen());
    // A change of displays may pass through a moment without any.
    if (schermen.empty()) return;
    // A new black window would lie over the saver or lock.
    if (zwartAan() && !bronnen_.werkruimte.isSaverActive()) volgZwart(schermen);
    if (regenAan()) volgRegen(schermen);
}

}  // namespace brixtel
