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
    [[nodiscard]] virtual EglWindowSurface& surface() const = 0;
    // Sets the size of the next frame, in pixels.
    virtual void resize(QSize size) = 0;
    // The window's state, as last reported by the system.
    [[nodiscard]] virtual Surface::Result state() = 0;
};

// Draws the whole picture of every frame on a window with OpenGL, and waits for the screen
// at the swap. The window's render thread.
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

    [[nodiscard]] bool isSoftware() const { return context_->isSoftware(); }

  private:
    GlSurface(std::unique_ptr<EglTarget> target, ResetQuery resetStatus)
        : resetStatus_(std::move(resetStatus)), target_(std::move(target)) {}
    bool start();
    // Makes a new context in place of a lost one; once.
    bool renew();
    // Paints the frame and swaps; false where the context or the window is gone.
    bool show(const Frame& frame);
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
    bool failsScenes_ = false;
    bool showsScene_ = false;
    bool windowGone_ = false;
    bool renewed_ = false;
};

}  // namespace platform
