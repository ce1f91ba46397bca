// SPDX-License-Identifier: MIT
#include "platform/session/PowerSupply.h"

#include <fstream>
#include <string>
#include <system_error>
#include <utility>

#include "platform/time/Queue.h"

namespace platform {

namespace {

constexpr double kLook = 30.0;
constexpr double kTolerance = 5.0;

// Reads the single word in a file of the kernel's; empty if there is none.
std::string word(const std::filesystem::path& file) {
    std::string text;
    std::ifstream(file) >> text;
    return text;
}

}  // namespace

bool isOnBattery(const std::filesystem::path& supplies) {
    bool emptied = false;
    std::error_code error;
    for (auto at = std::filesystem::directory_iterator(supplies, error);
         !error && at != std::filesystem::directory_iterator(); at.increment(error)) {
        // The supply of a device, such as a mouse, does not feed the machine.
        if (word(at->path() / "scope") == "Device") continue;
        const std::string type = word(at->path() / "type");
        if (type == "Battery" || type == "UPS") {
            emptied = emptied || word(at->path() / "status") == "Discharging";
            continue;
        }
        // A connected supply has a fixed voltage (1) or a negotiated one (2).
        const std::string online = word(at->path() / "online");
        if (online == "1" || online == "2") return false;
    }
    return emptied;
}

// The state last told to the action; looks in flight hold it weakly.
struct PowerWatch::Told {
    std::function<void(bool)> action;
    bool onBattery = false;
};

PowerWatch::PowerWatch(MediaClock& clock, std::function<void(bool)> action,
                       std::filesystem::path supplies)
    : supplies_(std::move(supplies)),
      told_(std::make_shared<Told>(Told{.action = std::move(action)})),
      queue_(std::make_unique<SerialQueue>("power")),
      timer_(clock, {.interval = kLook, .repeats = true, .tolerance = kTolerance},
             [this] { look(); }) {
    look();
}

PowerWatch::~PowerWatch() = default;

void PowerWatch::look() {
    queue_->async([supplies = supplies_, weak = std::weak_ptr(told_)] {
        runOnMainQueue([onBattery = isOnBattery(supplies), weak] {
            const auto told = weak.lock();
            if (told && std::exchange(told->onBattery, onBattery) != onBattery)
                told->action(onBattery);
        });
    });
}

}  // namespace platform
