// SPDX-License-Identifier: MIT
// The GPU's working time; private to platform/render.
#pragma once

#include <array>
#include <optional>

#include "platform/render/gl/GlObjects.h"

namespace platform {

// Asks without waiting: an answer comes some frames later. Does not start again
// before that.
class GpuTimer {
  public:
    explicit GpuTimer(bool enabled);

    void begin();
    void end();
    // The time of the last frame answered; none before the first answer.
    [[nodiscard]] std::optional<double> seconds() const { return seconds_; }

  private:
    struct Question {
        GlQuery query;
        bool asked = false;
    };

    bool enabled_;
    std::array<Question, 4> questions_;
    std::size_t next_ = 0;
    bool running_ = false;
    std::optional<double> seconds_;
};

}  // namespace platform
