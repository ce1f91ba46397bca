// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <memory>

#include "platform/time/Timer.h"

namespace platform {

class SerialQueue;

// Where the kernel tells of what the machine is fed with.
inline constexpr const char* kPowerSupplies = "/sys/class/power_supply";

// Whether the machine itself runs on a battery at the moment: one that is being
// emptied, with no other feed connected. False where that cannot be told. May
// take a while: some machines ask their firmware.
[[nodiscard]] bool isOnBattery(const std::filesystem::path& supplies = kPowerSupplies);

// Owns a queue that looks at once and then twice a minute. Main thread.
class PowerWatch {
  public:
    // Calls the action on the main thread each time it changes, mains being what
    // counts before the first look.
    PowerWatch(MediaClock& clock, std::function<void(bool onBattery)> action,
               std::filesystem::path supplies = kPowerSupplies);
    ~PowerWatch();
    PowerWatch(const PowerWatch&) = delete;
    PowerWatch& operator=(const PowerWatch&) = delete;

  private:
    void look();
    struct Told;

    const std::filesystem::path supplies_;
    std::shared_ptr<Told> told_;
    std::unique_ptr<SerialQueue> queue_;
    Timer timer_;
};

}  // namespace platform
