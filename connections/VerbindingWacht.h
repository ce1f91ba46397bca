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

// Watches the machine's established TCP connections and publishes them by the remote
// country. While at least one subscriber is registered, it runs lsof at intervals on a
// queue of its own. Nothing goes out to the network. A failure (no lsof, unreadable lines
// or addresses) only shortens the list.
//
// Main thread only, but for the static functions, which any thread may call. Destroying the
// watcher ends a measurement that is under way, and the running lsof. The clock must
// outlive the watcher.
class VerbindingWacht {
  public:
    // The source of a measurement.
    struct Bron {
        LandenTabel& tabel = LandenTabel::gedeeld();
        std::string lsof = {};  // the tool's path; empty is the system's own
        double seconden = 5.0;  // the longest time of one measurement
    };

    explicit VerbindingWacht(platform::MediaClock& klok) : VerbindingWacht(klok, Bron{}) {}
    VerbindingWacht(platform::MediaClock& klok, Bron bron);
    ~VerbindingWacht();
    VerbindingWacht(const VerbindingWacht&) = delete;
    VerbindingWacht& operator=(const VerbindingWacht&) = delete;

    // The program's one watcher, made at the first call, on the system's clock. A caller
    // with another clock or source makes a watcher of its own.
    [[nodiscard]] static VerbindingWacht& gedeeld();

    // The latest measurement, most connections first; kept when watching stops.
    [[nodiscard]] const Gepubliceerd<std::vector<Lijn>>& lijnen() const { return lijnen_; }
    // The number of connections in lijnen(), set before lijnen() is published.
    [[nodiscard]] const Gepubliceerd<std::int64_t>& totaal() const { return totaal_; }

    // Registers the subscriber `sleutel` for a measurement every `elke` seconds, or removes
    // it. The shortest interval of all subscribers holds. The first subscriber gets a
    // measurement at once.
    void gebruik(const std::string& sleutel, bool aan, double elke = 3.0);

    // Runs `doe` on the main thread, once every present measurement has ended and is
    // published; tests wait with it.
    void daarna(std::function<void()> doe);

    // Seconds between two measurements; 0 without subscribers.
    [[nodiscard]] double tussentijd() const { return tussentijd_; }

    // One measurement; waits for lsof to end. Empty also when `stop` ends it first.
    [[nodiscard]] static std::vector<Lijn> meet() { return meet(Bron{}); }
    [[nodiscard]] static std::vector<Lijn> meet(const Bron& bron,
                                                const platform::ToolStop* stop = nullptr);

    // The same as meet(), but nothing where the measurement fails: lsof is missing, fails
    // without output, takes longer than its limit or writes more than kMeesteBytes.
    [[nodiscard]] static std::optional<std::vector<Lijn>> probeer(
        const Bron& bron, const platform::ToolStop* stop = nullptr);
    static constexpr std::size_t kMeesteBytes = std::size_t{64} << 20;

    // A program's name for people, from the name that lsof prints: a known helper process
    // gets its program's name, and an escaped space becomes a space.
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

    // The token goes with the watcher; a returning result checks it.
    std::shared_ptr<const bool> leeft_ = std::make_shared<bool>(true);
    platform::ToolStop stop_;
    platform::SerialQueue wachtrij_;  // last: ends before the members that its task uses
};

}  // namespace brixtel
