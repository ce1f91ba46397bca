// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>

namespace platform {

// How much of its scenes a program draws. A value.
struct WorkMeasure {
    double resolution = 1.0;  // pixels drawn per pixel shown at most, along each side
    int pace = 1;             // one frame in so many of the display's
    friend bool operator==(const WorkMeasure&, const WorkMeasure&) = default;
};

// Coarser pixels come first, then fewer frames.
inline constexpr std::array<WorkMeasure, 7> kWorkMeasures{{
    {.resolution = 1.0, .pace = 1},
    {.resolution = 0.8, .pace = 1},
    {.resolution = 0.65, .pace = 1},
    {.resolution = 0.5, .pace = 1},
    {.resolution = 0.5, .pace = 2},
    {.resolution = 0.5, .pace = 4},
    {.resolution = 0.5, .pace = 8},
}};

// Keeps a program that draws with the processor to a share of the machine. Goes down one
// measure when the program takes more for two seconds, and up one when the finer measure is
// sure to fit for a while; waits longer after each step up that proved too much. Has no clock
// and measures nothing: the caller reports both. One owner, on one thread.
class WorkBudget {
  public:
    struct Options {
        double share = 1.0;  // of one processor, > 0
        int mostPace = 2;    // the measures with a higher one are never taken
        friend bool operator==(const Options&, const Options&) = default;
    };
    explicit WorkBudget(const Options& options) : options_(options) {}

    // Reports the processor time that the program has used so far, in seconds, at a time of
    // the caller's clock. Reports less than a second after the last counted one do nothing,
    // and a report after more than two seconds without one only begins anew. True if the
    // measure changes.
    bool used(double time, double cpuSeconds);
    // Whether a report at this time would count.
    [[nodiscard]] bool wants(double time) const;

    [[nodiscard]] const WorkMeasure& measure() const { return kWorkMeasures[step_]; }

    // The share for a machine of so many processors: one of them, and at most half of all.
    [[nodiscard]] static double shareOf(int processors);

  private:
    static constexpr int kFirstPatience = 4;

    struct Report {
        double time = 0.0;
        double cpuSeconds = 0.0;
    };
    bool judge(double share);
    bool moveTo(std::size_t step);
    [[nodiscard]] bool fitsAbove(double share) const;

    const Options options_;
    std::optional<Report> last_;
    std::size_t step_ = 0;
    bool settles_ = true;  // the next second belongs to what was before
    int over_ = 0;         // consecutive seconds with too much
    int roomy_ = 0;        // consecutive seconds with room for the measure above
    int since_ = 0;        // seconds with this measure
    bool onTrial_ = false;
    // Seconds with room before each measure is tried.
    std::array<int, kWorkMeasures.size()> patience_{kFirstPatience, kFirstPatience, kFirstPatience,
                                                    kFirstPatience, kFirstPatience, kFirstPatience,
                                                    kFirstPatience};
};

}  // namespace platform
