// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include "platform/render/egl/Egl.h"
#include "platform/render/gl/GlDrawer.h"
#include "platform/window/SceneStage.h"
#include "platform/window/Surface.h"

namespace platform {

// A window that EGL draws on. The window systems implement the interface; the surface that
// draws owns the target. The window's render thread.
class EglTarget {
  public:
    virtual ~EglTarget() = default;
    [[nodiscard]] virtual const std::shared_ptr<EglDisplay>& display() const = 0;
    // The surface that lasts as long as the target; null where surfaces come and go. Such a
    // surface is current during a frame alone.
    [[nodiscard]] virtual EglWindowSurface* lasting() const { return nullptr; }
    // Begins a frame of that size, in pixels, and waits until the window system accepts one.
    // Null where the window cannot show the frame now, and the frame is skipped.
    [[nodiscard]] virtual EglWindowSurface* begin(QSize size) = 0;
    // Shows the frame's picture, which differs from the last one within `damage`. False where
    // the window or its system is gone.
    virtual bool swap(const Frame& frame, std::span<const QRect> damage) = 0;
    // Ends the frame that begin() gave a surface for.
    virtual void end() {}
    // The interval of EglWindowSurface::setSwapInterval().
    [[nodiscard]] virtual int swapInterval() const { return 1; }
    // The window's state, as last reported by the system.
    [[nodiscard]] virtual Surface::Result state() = 0;
};

// Draws the whole picture of every frame on a window with OpenGL, in step with the screen.
// The window's render thread.
class GlSurface final : public Surface {
  public:
    // Null if the window has no OpenGL.
    [[nodiscard]] static std::unique_ptr<GlSurface> create(std::unique_ptr<EglTarget> target,
                                                           ResetQuery resetStatus);
    ~GlSurface() override;

    Result draw(const Frame& frame, std::span<const QRect> damage) override;
    Result repair(const Frame& frame, std::span<const QRect> lost) override;
    Result finish() override;
    [[nodiscard]] const QString& drawer() const override { return name_; }
    [[nodiscard]] int rung() const override { return showsScene_ && stage_ ? stage_->rung() : 0; }
    [[nodiscard]] bool failsScenes() const override { return showsScene_ && failsScenes_; }
    void frameTook(double seconds) override;

    [[nodiscard]] bool isSoftware() const override { return context_->isSoftware(); }

  private:
    GlSurface(std::unique_ptr<EglTarget> target, ResetQuery resetStatus)
        : resetStatus_(std::move(resetStatus)), target_(std::move(target)) {}
    bool start();
    // Makes a new context in place of a lost one; once.
    bool renew();
    // Makes the surface of the present frame current.
    bool attach(EglWindowSurface& surface);
    // Paints the frame on its surface and swaps.
    void show(const Frame& frame, std::span<const QRect> damage, EglWindowSurface& surface);
    // False where the context or the window is gone.
    bool tryToShow(const Frame& frame, std::span<const QRect> damage);
    void paint(const Frame& frame);
    void paintScene(const Frame& frame, const SceneFrame& scene);
    [[nodiscard]] Result state() const;

    const ResetQuery resetStatus_;
    // The members stand in the order of their making: each uses the earlier ones.
    const std::unique_ptr<EglTarget> target_;
    std::unique_ptr<GlContext> context_;
    std::unique_ptr<GlDrawer> drawer_;
    std::unique_ptr<SceneStage> stage_;  // made for the first scene
    QString name_;
    EglWindowSurface* current_ = nullptr;
    bool failsScenes_ = false;
    bool showsScene_ = false;
    bool windowGone_ = false;
    bool renewed_ = false;
};

}  // namespace platform
