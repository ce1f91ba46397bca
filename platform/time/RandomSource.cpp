// SPDX-License-Identifier: MIT
#include "platform/time/RandomSource.h"

#include "platform/time/Require.h"

namespace platform {

RandomSource RandomSource::fromSystem() {
    std::random_device device;
    return RandomSource((std::uint64_t{device()} << 32) | device());
}

double RandomSource::unit() {
    return static_cast<double>(engine_() >> 11) * 0x1p-53;
}

// Multiply-shift with rejection (D. Lemire, "Fast Random Integer Generation in
// an Interval", 2019): every value is exactly as likely.
std::uint32_t RandomSource::below(std::uint32_t count) {
    require(count > 0);
    const std::uint32_t threshold = (0U - count) % count;
    for (;;) {
        const std::uint64_t product = (engine_() >> 32) * count;
        if (static_cast<std::uint32_t>(product) >= threshold)
            return static_cast<std::uint32_t>(product >> 32);
    }
}

}  // namespace platform
