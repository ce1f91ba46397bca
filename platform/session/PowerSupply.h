// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <memory>

#include "platform/time/Timer.h"

namespace platform {

class SerialQueue;

// The kernel's folder of power supplies.
inline constexpr const char* kPowerSupplies = "/sys/class/power_supply";

// Whether the machine itself runs on a battery now: a battery discharges, and no other
// supply is connected. False where the kernel does not report it. May take a while: some
// machines ask their firmware. Any thread.
[[nodiscard]] bool isOnBattery(const std::filesystem::path& supplies = kPowerSupplies);

// Reports changes of the power supply: looks at once and then twice a minute, on its own queue.
class PowerWatch {
  public:
    // Main thread. Calls the action on the main thread at each change; before the first look
    // the machine counts as running on mains. The clock outlives the watch.
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
