// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include "platform/render/egl/Egl.h"
#include "platform/render/gl/GlDrawer.h"
#include "platform/window/SceneStage.h"
#include "platform/window/Surface.h"

namespace platform {

// A window as EGL draws on it. The window systems implement the interface; the
// surface that draws owns it. The window's render thread.
class EglTarget {
  public:
    virtual ~EglTarget() = default;
    [[nodiscard]] virtual const std::shared_ptr<EglDisplay>& display() const = 0;
    [[nodiscard]] virtual EglWindowSurface& surface() const = 0;
    // The next frame has this size, in pixels.
    virtual void resize(QSize size) = 0;
    // The state as far as the system has told.
    [[nodiscard]] virtual Surface::Result state() = 0;
};

// Draws with OpenGL on a window, all of it each time, and waits for the screen at
// the swap. The window's render thread.
class GlSurface final : public Surface {
  public:
    // None if there is no OpenGL for this window.
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

    [[nodiscard]] bool isSoftware() const { return context_->isSoftware(); }

  private:
    GlSurface(std::unique_ptr<EglTarget> target, ResetQuery resetStatus)
        : resetStatus_(std::move(resetStatus)), target_(std::move(target)) {}
    bool start();
    // In another context, where the one there was is lost; once.
    bool renew();
    // Paints it and swaps; false where the context or the window is gone.
    bool show(const Frame& frame);
    void paint(const Frame& frame);
    void paintScene(const Frame& frame, const SceneFrame& scene);
    [[nodiscard]] Result state() const;

    const ResetQuery resetStatus_;
    // In the order of their making: each stands on those before.
    const std::unique_ptr<EglTarget> target_;
    std::unique_ptr<GlContext> context_;
    std::unique_ptr<GlDrawer> drawer_;
    std::unique_ptr<SceneStage> stage_;  // made for the first scene
    QString name_;
    bool failsScenes_ = false;
    bool showsScene_ = false;
    bool windowGone_ = false;
    bool renewed_ = false;
};

}  // namespace platform
