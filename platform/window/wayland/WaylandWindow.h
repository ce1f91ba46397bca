// SPDX-License-Identifier: MIT
#pragma once

#include <QSocketNotifier>
#include <memory>
#include <vector>

#include "platform/window/NativeWindow.h"
#include "platform/window/wayland/BufferRing.h"
#include "platform/window/wayland/EglPlace.h"
#include "platform/window/wayland/ShellSurface.h"

namespace platform::wayland {

class WaylandSystem;

// One window of the program's own on a Wayland compositor: an overlay if it fills a display
// or has a level, else an ordinary window. Owns its surface, which exists while the window is
// shown and not kept down. Owned by the window above the seam. Main thread.
class WaylandWindow final : public NativeWindow, public InputTarget, public ShellSurfaceOwner {
  public:
    // The system and the delegate outlive the window.
    WaylandWindow(WaylandSystem& system, const NativeWindowOptions& options,
                  NativeWindowDelegate& delegate);
    ~WaylandWindow() override;

    [[nodiscard]] std::int64_t number() const override { return number_; }
    [[nodiscard]] WindowRef reference() const override { return {}; }
    [[nodiscard]] bool isDrawable() const override { return true; }
    [[nodiscard]] bool exists() override { return true; }
    [[nodiscard]] QRectF frame() const override;
    void setFrame(const QRectF& frame) override;
    [[nodiscard]] QSizeF size() const override { return QSizeF(points()); }
    [[nodiscard]] QSize pixelSize() const override;
    [[nodiscard]] double scale() const override;
    [[nodiscard]] std::optional<Screen> screen() const override;
    void show() override;
    void raise() override {}
    void hide() override;
    void keepOnTop() override {}
    void takeKeyboard() override;
    [[nodiscard]] bool hasKeyboard() const override;
    [[nodiscard]] bool isShown() const override { return shown_; }
    [[nodiscard]] bool isSeen() const override;
    // A compositor may offer reports, and send none; they count from the first one on.
    [[nodiscard]] bool tellsPresentation() const override { return tellsPresentation_; }
    void setIgnoresMouse(bool ignores) override;
    void setTitle(const QString& title) override;
    void setCursorHidden(bool hidden) override;
    void setOpacity(double) override {}
    [[nodiscard]] SurfaceMaker surfaceMaker(const SurfaceOptions& options) override;
    void endDrawing() override { place_->close(); }

    // For the system: keeps an overlay down while true.
    void setKeptDown(bool keptDown);
    [[nodiscard]] bool isOverlay() const;
    // Whether the window is shown and hides the overlays below it on its display.
    [[nodiscard]] bool hidesOverlays() const { return shown_ && isOverlay() && isOpaque(); }
    [[nodiscard]] int level() const { return options_.window.level; }
    [[nodiscard]] QString outputName() const;
    // Reports that displays came, went or changed.
    void outputsChanged();
    // The focus went to another program's window, to none, or came back.
    void focusChanged();
    // Whether a lock seems to have the keyboard that the window is to have.
    [[nodiscard]] bool isResting() const { return resting_; }
    // Reports that the system hides the pointer, or no longer does.
    void cursorChanged();
    // Converts a point of the window, y down, to the space of Screen::frame.
    [[nodiscard]] QPointF onScreen(QPointF at) const;

  private:
    static const wl_callback_listener kAgain, kSettled;
    void keyPressed(const KeyEvent& event) override;
    void pointerMoved(QPointF at) override;
    void buttonPressed(Button button, QPointF at) override;
    void keyboardChanged() override;
    [[nodiscard]] bool hidesCursor() const override;
    void surfaceConfigured(QSize size) override;
    void surfaceRescaled() override;
    void surfaceOnDisplay(bool isThere) override;
    void surfaceTaken() override;
    void closeAsked() override;
    void frameDone() override;
    void presented(double time, double interval) override;

    // Whether the focus says that no lock can be there; always true where the compositor
    // keeps locks above everything.
    [[nodiscard]] bool isSurelyUnlocked() const;
    // Whether the surface is to have the keyboard now. Where lockers are overlays, a seat
    // without a keyboard leaves the focus where it is, so that the focus tells of a lock. Where
    // a lock hides surfaces, a hidden overlay asks for no keyboard: it could get the lock's.
    [[nodiscard]] bool wantsKeyboard() const;
    void followKeyboard();
    [[nodiscard]] bool isOpaque() const { return options_.window.opaque; }
    [[nodiscard]] bool fillsDisplay() const;
    [[nodiscard]] const Output* output() const;
    [[nodiscard]] QSize points() const;
    [[nodiscard]] MouseEvent eventAt(QPointF at) const;
    // Makes or ends the surface, to match the present wishes.
    void follow();
    void makeSurface();
    void endSurface();
    void setResting(bool resting);
    void showPainted();
    void updateReadiness();
    void updatePlace();

    WaylandSystem& system_;
    Connection& connection_;
    NativeWindowOptions options_;
    NativeWindowDelegate& delegate_;
    const std::int64_t number_;
    bool shown_ = false;
    bool keptDown_ = false;
    bool hadChance_ = false;  // of the keyboard, since this surface was made
    bool resting_ = false;    // a lock seems to have that keyboard
    // Where a lock hides surfaces: the overlay left its display, and a lock may be the reason,
    // as before the overlay ever came to the display.
    bool hidden_ = false, mayBeLocked_ = false;
    bool takesKeyboard_;
    bool hasExclusive_ = false;  // the surface asks for the keyboard
    int takenTimes_ = 0;
    QSize configured_;  // points; empty where the compositor left it open
    QString outputName_;
    bool ready_ = true;
    bool tellsPresentation_ = false;
    const std::shared_ptr<BufferRing> ring_;
    ShmBuffers buffers_;
    const std::shared_ptr<EglPlace> place_;
    std::unique_ptr<ShellSurface> surface_;
    Proxy<wl_callback> again_;     // while a closed surface may be made again
    Proxy<wl_callback> settling_;  // while the compositor moves the keyboard
    std::vector<QRect> damage_, boxes_;
    QSocketNotifier painted_, drawn_, late_;
};

}  // namespace platform::wayland
