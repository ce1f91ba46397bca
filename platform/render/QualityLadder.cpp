// SPDX-License-Identifier: MIT
#include "platform/render/QualityLadder.h"

#include <algorithm>

namespace platform {

namespace {

// The number of frames after a change that do not count: they make images and shaders anew.
constexpr int kFramesToSettle = 3;
constexpr int kWindow = 16;  // frames
// The share of the budget that leaves room: the next rung up costs some 1.6 times as much at most.
constexpr double kRoom = 0.6;
constexpr int kFirstPatience = 4;  // windows
constexpr int kMostPatience = 256;
constexpr int kProof = 8;

}  // namespace

QualityLadder::QualityLadder(const Options& options)
    : budget_(options.budget),
      best_(std::clamp(options.bestRung, 0, static_cast<int>(kQualityRungs.size()) - 1)),
      rung_(std::clamp(options.firstRung, best_, static_cast<int>(kQualityRungs.size()) - 1)),
      frames_(-kFramesToSettle) {
    patience_.fill(kFirstPatience);
}

bool QualityLadder::frameCost(double seconds) {
    if (++frames_ <= 0) return false;
    if (seconds > budget_) ++slow_;
    if (seconds < kRoom * budget_) ++roomy_;
    return frames_ == kWindow && endWindow();
}

bool QualityLadder::endWindow() {
    const bool tooSlow = 2 * slow_ > kWindow;
    const bool hasRoom = 4 * roomy_ > 3 * kWindow;
    frames_ = slow_ = roomy_ = 0;
    ++windows_;
    roomyWindows_ = hasRoom ? roomyWindows_ + 1 : 0;
    const auto here = static_cast<std::size_t>(rung_);
    if (onTrial_ && (tooSlow || windows_ >= kProof)) {
        onTrial_ = false;
        patience_[here] = tooSlow ? std::min(2 * patience_[here], kMostPatience) : kFirstPatience;
    }
    if (tooSlow) return moveTo(rung_ + 1);
    if (rung_ <= best_ || roomyWindows_ < patience_[here - 1] || !moveTo(rung_ - 1)) return false;
    onTrial_ = true;
    return true;
}

bool QualityLadder::moveTo(int rung) {
    if (rung >= static_cast<int>(kQualityRungs.size())) return false;
    rung_ = rung;
    windows_ = roomyWindows_ = 0;
    frames_ = -kFramesToSettle;
    return true;
}

void QualityLadder::sizeChanged() {
    patience_.fill(kFirstPatience);
    onTrial_ = false;
    slow_ = roomy_ = 0;
    moveTo(rung_);
}

}  // namespace platform
