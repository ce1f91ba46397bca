// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

#include "platform/window/PicturePainter.h"
#include "platform/window/Surface.h"
#include "platform/window/wayland/BufferRing.h"

namespace platform::wayland {

// Paints frames with the processor into the buffers of a ring, and hands each to the main
// thread, which shows it when the compositor accepts one. Never waits: the next frame paints
// the damage of a frame that had no free buffer. Made, used and dropped on the window's
// render thread, which owns it.
class ShmSurface final : public Surface {
  public:
    explicit ShmSurface(std::shared_ptr<BufferRing> ring);

    Result draw(const Frame& frame, std::span<const QRect> damage) override;
    Result repair(const Frame& frame, std::span<const QRect> lost) override;
    Result finish() override { return Result::Drawn; }
    [[nodiscard]] const QString& drawer() const override { return painter_.drawer(); }
    [[nodiscard]] int rung() const override { return painter_.rung(); }
    [[nodiscard]] bool failsScenes() const override { return painter_.failsScenes(); }
    void frameTook(double seconds) override { painter_.frameTook(seconds); }

  private:
    // `isLost`: the compositor shows nothing within `damage`.
    Result show(const Frame& frame, std::span<const QRect> damage, bool isLost);

    const std::shared_ptr<BufferRing> ring_;
    PicturePainter painter_;
    std::vector<QRect> rects_;
};

}  // namespace platform::wayland
