// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "connections/Gepubliceerd.h"
#include "connections/LandenTabel.h"
#include "connections/Lijn.h"
#include "platform/process/ToolRun.h"
#include "platform/time/MediaClock.h"
#include "platform/time/Queue.h"
#include "platform/time/Timer.h"

namespace brixtel {

// Watches the machine's established TCP connections and publishes them by the
// country at the other end: while at least one subscriber asks for it, every so
// many seconds, by running lsof on a queue of its own. Nothing goes out to the
// network. Whatever fails (no lsof, lines or addresses that mean nothing) is
// just not in the list.
//
// Main thread only, but for the static functions, which any thread may call.
// Destroying the watcher ends a measurement that is under way, the running
// lsof with it. The clock must outlive the watcher's use.
class VerbindingWacht {
  public:
    // What a measurement is made from.
    struct Bron {
        LandenTabel& tabel = LandenTabel::gedeeld();
        std::string lsof = {};  // the tool's path; empty means where the system has it
        double seconden = 5.0;  // the longest that it may take
    };

    explicit VerbindingWacht(platform::MediaClock& klok) : VerbindingWacht(klok, Bron{}) {}
    VerbindingWacht(platform::MediaClock& klok, Bron bron);
    ~VerbindingWacht();
    VerbindingWacht(const VerbindingWacht&) = delete;
    VerbindingWacht& operator=(const VerbindingWacht&) = delete;

    // The program's one watcher, made at the first call, on the system's clock.
    // What is to run on another clock or source makes a watcher of its own.
    [[nodiscard]] static VerbindingWacht& gedeeld();

    // The latest measurement, most connections first; kept when watching stops.
    [[nodiscard]] const Gepubliceerd<std::vector<Lijn>>& lijnen() const { return lijnen_; }
    // The connections in lijnen(); already new when those are published.
    [[nodiscard]] const Gepubliceerd<std::int64_t>& totaal() const { return totaal_; }

    // Registers the subscriber `sleutel`, which wants a measurement every
    // `elke` seconds, or removes it. The smallest wish counts. The first
    // subscriber gets a measurement at once.
    void gebruik(const std::string& sleutel, bool aan, double elke = 3.0);

    // Runs `doe` on the main thread, once all that is under way now has been measured
    // and published.
    void daarna(std::function<void()> doe);

    // Seconds between two measurements; 0 while nobody asks.
    [[nodiscard]] double tussentijd() const { return tussentijd_; }

    // One measurement, waiting for lsof to end; empty also when `stop` ends it first.
    [[nodiscard]] static std::vector<Lijn> meet() { return meet(Bron{}); }
    [[nodiscard]] static std::vector<Lijn> meet(const Bron& bron,
                                                const platform::ToolStop* stop = nullptr);

    // As meet(), and nothing where nothing could be measured: lsof is missing, fails
    // without a word, takes longer than it may or writes more than kMeesteBytes.
    [[nodiscard]] static std::optional<std::vector<Lijn>> probeer(
        const Bron& bron, const platform::ToolStop* stop = nullptr);
    static constexpr std::size_t kMeesteBytes = std::size_t{64} << 20;

    // A program's name as people know it, from the name that lsof prints: known
    // helper processes get their program's, an escaped space becomes one.
    [[nodiscard]] static std::string netteNaam(std::string_view naam);

  private:
    void kijk();
    void toon(std::vector<Lijn> lijnen);

    platform::MediaClock& mediaKlok_;
    const Bron bron_;
    Gepubliceerd<std::vector<Lijn>> lijnen_;
    Gepubliceerd<std::int64_t> totaal_;
    std::map<std::string, double> gebruikers_;
    platform::Timer klok_;  // the next measurement
    double tussentijd_ = 0.0;
    bool bezig_ = false;  // a measurement is under way

    // Gone with the watcher; a result on its way back looks whether it is.
    std::shared_ptr<const bool> leeft_ = std::make_shared<bool>(true);
    platform::ToolStop stop_;
    platform::SerialQueue wachtrij_;  // last: ends before what its task uses
};

}  // namespace brixtel
