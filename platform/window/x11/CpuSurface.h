// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/shm.h>

#include <vector>

#include "platform/window/PicturePainter.h"
#include "platform/window/Surface.h"
#include "platform/window/x11/PixelFormat.h"
#include "platform/window/x11/ShmImage.h"

namespace platform {

// Draws with the processor into memory and has the server copy changes to the window:
// through shared memory where possible, else over the connection in pieces. Owns the whole
// picture, so that exposed parts are shown again without drawing. The render thread.
class CpuSurface final : public Surface {
  public:
    struct Options {
        QString display;
        std::uint32_t window = 0;
        int ending = -1;  // ends all waiting once it is readable
        bool sharedMemory = true;
    };

    // Null if the window or the server does not exist.
    [[nodiscard]] static std::unique_ptr<CpuSurface> create(const Options& options);
    ~CpuSurface() override;

    Result draw(const Frame& frame, std::span<const QRect> damage) override;
    Result repair(const Frame& frame, std::span<const QRect> lost) override;
    Result finish() override;
    [[nodiscard]] const QString& drawer() const override { return painter_.drawer(); }
    [[nodiscard]] int rung() const override { return painter_.rung(); }
    [[nodiscard]] bool failsScenes() const override { return painter_.failsScenes(); }
    void frameTook(double seconds) override { painter_.frameTook(seconds); }

  private:
    CpuSurface(const Options& options, std::unique_ptr<XConnection> connection,
               const WindowLook& look, PixelFormat format);

    void resize(QSize size);
    void show(std::span<const QRect> rects);
    void putShared(const QRect& rect, bool last);
    void putOverConnection(const QRect& rect);
    void putBand(const QRect& band);

    // Waits until the server has copied every image sent.
    Result settle();
    void take(const xcb_generic_event_t& event);
    [[nodiscard]] Result state() const;

    const Options options_;
    const std::unique_ptr<XConnection> connection_;
    const int depth_;
    const PixelFormat format_;
    const xcb_gcontext_t context_;
    std::size_t largestPut_;  // bytes of pixels in one request

    PicturePainter painter_;
    QSize size_;
    // `shared_` holds the picture in the window's format, where there is shared memory; the
    // picture in the program's own format is kept beside it, unless the formats are equal.
    std::unique_ptr<ShmImage> shared_;
    std::vector<std::uint32_t> picture_;
    std::vector<std::uint8_t> band_;
    std::vector<QRect> damage_;  // the drawn parts of the picture

    // The server may still read the shared memory until it has answered.
    bool copying_ = false;
    std::uint32_t answer_ = 0;     // sequence number of a copy over the connection
    std::uint8_t completion_ = 0;  // event number of a copy of shared memory; 0 without
    bool windowGone_ = false;
};

}  // namespace platform
