// SPDX-License-Identifier: MIT
// The GPU's working time; private to platform/render.
#pragma once

#include <array>
#include <optional>

#include "platform/render/gl/GlObjects.h"

namespace platform {

// Measures frames without waiting: an answer comes some frames later. At most four answers
// are outstanding at once. The context's thread.
class GpuTimer {
  public:
    explicit GpuTimer(bool enabled);

    void begin();
    void end();
    // The last answered frame's time; none before the first answer.
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
