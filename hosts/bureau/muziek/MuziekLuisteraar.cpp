// SPDX-License-Identifier: MIT
#include "hosts/bureau/muziek/MuziekLuisteraar.h"

#include <algorithm>
#include <mutex>
#include <utility>

#include "hosts/bureau/muziek/SlagZoeker.h"

namespace brixtel {

namespace {
constexpr double kEersteGeduld = 1.0;    // seconds
constexpr double kLangsteGeduld = 10.0;  // seconds
constexpr double kGeloof = 1.0;          // seconds
// A device that stops playing stops sending samples.
constexpr double kVerstomd = 0.5;  // seconds
}  // namespace

// The sound as the recorder's thread hears it, for the main thread to read.
struct MuziekLuisteraar::Gehoor {
    std::mutex slot;
    std::optional<SlagZoeker> zoeker;  // none while nothing has been heard
    double tempo = 0;                  // samples a second
    int slagen = 0;                    // of earlier searchers
    double laatst = 0;                 // the clock's time at the last samples

    void hoor(std::span<const float> monsters, double nieuwTempo, double nu) {
        const std::lock_guard houvast(slot);
        if (zoeker && tempo != nieuwTempo) vergeet();
        if (!zoeker) zoeker.emplace(nieuwTempo);
        tempo = nieuwTempo;
        zoeker->voeg(monsters);
        laatst = nu;
    }
    void vergeet() {
        if (zoeker) slagen += zoeker->aantal();
        zoeker.reset();
    }
};

MuziekLuisteraar::MuziekLuisteraar(platform::MediaClock& klok,
                                   platform::MonitorRecorderOptions opties)
    : klok_(klok),
      opties_(std::move(opties)),
      gehoor_(std::make_shared<Gehoor>()),
      geduld_(kEersteGeduld) {}

MuziekLuisteraar::~MuziekLuisteraar() = default;

void MuziekLuisteraar::luister(bool aan) {
    if (aan == luistert_) return;
    luistert_ = aan;
    if (aan) return begin();
    opname_.reset();
    pogingKlok_.invalidate();
    geduld_ = kEersteGeduld;
    kwijt_ = false;
    gehoor_->vergeet();
}

void MuziekLuisteraar::begin() {
    begonnen_ = klok_.now();
    opname_ = std::make_unique<platform::MonitorRecorder>(
        opties_,
        [gehoor = gehoor_, &klok = klok_](std::span<const float> monsters, double tempo) {
            gehoor->hoor(monsters, tempo, klok.now());
        },
        [this] { verloren(); });
}

void MuziekLuisteraar::verloren() {
    const std::lock_guard houvast(gehoor_->slot);
    if (gehoor_->zoeker) geduld_ = kEersteGeduld;
    gehoor_->vergeet();
    kwijt_ = true;
    const double wacht = std::exchange(geduld_, std::min(2 * geduld_, kLangsteGeduld));
    // The recorder is the caller here, so a timer destroys it later.
    pogingKlok_ = platform::Timer(klok_, {.interval = wacht}, [this] { begin(); });
}

bool MuziekLuisteraar::isZonderServer() const {
    return kwijt_ && (pogingKlok_.isValid() || klok_.now() - begonnen_ < kGeloof);
}

std::optional<MuziekStand> MuziekLuisteraar::stand() const {
    const std::lock_guard houvast(gehoor_->slot);
    if (!gehoor_->zoeker) return std::nullopt;
    const SlagZoeker& zoeker = *gehoor_->zoeker;
    const double stil = klok_.now() - gehoor_->laatst;
    const auto sinds = static_cast<double>(zoeker.monsters() - zoeker.laatste().plaats);
    return MuziekStand{.beat = gehoor_->slagen + zoeker.aantal(),
                       .sterkte = zoeker.laatste().sterkte,
                       .level = stil < kVerstomd ? zoeker.level() : 0.0,
                       .vertraging = stil + sinds / gehoor_->tempo};
}

}  // namespace brixtel
