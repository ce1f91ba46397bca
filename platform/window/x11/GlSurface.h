// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include "platform/render/egl/Egl.h"
#include "platform/render/gl/GlDrawer.h"
#include "platform/window/SceneStage.h"
#include "platform/window/Surface.h"
#include "platform/window/x11/Xcb.h"

namespace platform {

// Draws with OpenGL on the window's id, all of it each time, and waits for the
// screen at the swap. Owns its context. The render thread.
class GlSurface final : public Surface {
  public:
    struct Options {
        QString display;
        std::uint32_t window = 0;
        ResetQuery resetStatus{};
    };

    // None if there is no OpenGL for this window.
    [[nodiscard]] static std::unique_ptr<GlSurface> create(const Options& options);
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
    explicit GlSurface(ResetQuery resetStatus) : resetStatus_(std::move(resetStatus)) {}
    bool start();
    // In another context, where the one there was is lost; once.
    bool renew();
    // Paints it and swaps; false where the context or the window is gone.
    bool show(const Frame& frame);
    void paint(const Frame& frame);
    void paintScene(const Frame& frame, const SceneFrame& scene);
    // The state after the errors that have arrived.
    Result state();

    const ResetQuery resetStatus_;
    // In the order of their making: each stands on those before.
    std::unique_ptr<XConnection> connection_;
    std::shared_ptr<EglDisplay> egl_;
    std::unique_ptr<EglWindowSurface> window_;
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
