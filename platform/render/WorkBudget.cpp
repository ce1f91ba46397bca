// SPDX-License-Identifier: MIT
#include "platform/render/WorkBudget.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

constexpr double kPeriod = 1.0;  // seconds from one report that counts to the next
constexpr double kGap = 2.0;
constexpr int kPatienceBelow = 2;  // seconds with too much
constexpr int kMostPatience = 64;
constexpr int kProof = 16;
// The part of the share that a finer measure may take by reckoning.
constexpr double kSure = 0.9;

// How much more work a measure is than another at most.
double timesAsMuch(const WorkMeasure& finer, const WorkMeasure& coarser) {
    const double side = finer.resolution / coarser.resolution;
    return side * side * coarser.pace / finer.pace;
}

}  // namespace

double WorkBudget::shareOf(int processors) {
    return std::min(1.0, 0.5 * std::max(processors, 1));
}

bool WorkBudget::wants(double time) const {
    return !last_ || time < last_->time || time - last_->time >= kPeriod;
}

bool WorkBudget::used(double time, double cpuSeconds) {
    if (!wants(time)) return false;
    const std::optional<Report> before = std::exchange(last_, Report{time, cpuSeconds});
    if (!before || time <= before->time || time - before->time > kGap) {
        settles_ = true;
        over_ = roomy_ = 0;
        return false;
    }
    if (std::exchange(settles_, false)) return false;
    return judge((cpuSeconds - before->cpuSeconds) / (time - before->time));
}

bool WorkBudget::judge(double share) {
    ++since_;
    over_ = share > options_.share ? over_ + 1 : 0;
    roomy_ = fitsAbove(share) ? roomy_ + 1 : 0;
    const bool tooMuch = over_ >= kPatienceBelow;
    if (onTrial_ && (tooMuch || since_ >= kProof)) {
        onTrial_ = false;
        int& patience = patience_[step_];
        patience = tooMuch ? std::min(2 * patience, kMostPatience) : kFirstPatience;
    }
    if (tooMuch) return moveTo(step_ + 1);
    if (step_ == 0 || roomy_ < patience_[step_ - 1] || !moveTo(step_ - 1)) return false;
    onTrial_ = true;
    return true;
}

bool WorkBudget::fitsAbove(double share) const {
    if (step_ == 0) return false;
    const double more = timesAsMuch(kWorkMeasures[step_ - 1], kWorkMeasures[step_]);
    return share * more <= kSure * options_.share;
}

bool WorkBudget::moveTo(std::size_t step) {
    over_ = 0;
    if (step >= kWorkMeasures.size() || kWorkMeasures[step].pace > options_.mostPace) return false;
    step_ = step;
    roomy_ = since_ = 0;
    settles_ = true;
    return true;
}

}  // namespace platform
