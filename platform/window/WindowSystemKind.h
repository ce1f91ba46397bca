// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QRect>
#include <QString>
#include <memory>
#include <optional>

#include "platform/time/MediaClock.h"
#include "platform/window/QtLoss.h"
#include "platform/window/WindowSystem.h"

class QWindow;

namespace platform {

// One kind of window system, independent of any window: whether the session has it, and its
// services for dialogs that Qt draws. Without state; one object per kind lasts as long as
// the process. Main thread.
class WindowSystemKind {
  public:
    virtual ~WindowSystemKind() = default;

    // The kind's name, as a user writes it on a command line.
    [[nodiscard]] virtual QByteArray name() const = 0;
    // The Qt platform plugin that shows Qt's own windows on such a system.
    [[nodiscard]] virtual QByteArray qtPlugin() const = 0;
    // Whether the program's windows are made by Qt, so that Qt must run on that
    // plugin.
    [[nodiscard]] virtual bool needsQt() const = 0;

    // Whether hosts on such a system give a saver a window to draw in.
    [[nodiscard]] virtual bool hasHosts() const = 0;

    // The address that the environment gives for such a system; empty for none.
    [[nodiscard]] virtual QString address() const = 0;

    // Connects to the environment's system; null where it does not answer. The caller keeps
    // the result until Qt has connected: a server may restart when its last client leaves,
    // and then refuse others.
    [[nodiscard]] virtual std::shared_ptr<void> reach() const = 0;

    // Opens the system. The clock outlives the system.
    [[nodiscard]] virtual std::unique_ptr<WindowSystem> open(MediaClock& clock) const = 0;

    // The loss that a message of Qt's tells of. Any thread.
    [[nodiscard]] virtual QtLoss lossIn(const QString& message) const = 0;

    // Reads a window's name from a command line or the environment; none for a text that
    // names no window.
    [[nodiscard]] virtual std::optional<HostRef> readHost(const QString& text) const = 0;
    [[nodiscard]] virtual std::optional<WindowRef> readWindow(const QString& text) const = 0;

    // The same as in systems/DialogFrame.h.
    virtual void askForDarkFrame(QWindow& window) const = 0;
    virtual void askForTitleOnly(QWindow& window) const = 0;
    [[nodiscard]] virtual std::optional<QRect> placeOf(const WindowRef& window) const = 0;
    [[nodiscard]] virtual std::shared_ptr<void> attach(QWindow& dialog,
                                                       const WindowRef& owner) const = 0;
    [[nodiscard]] virtual WindowRef refOf(QWindow& window) const = 0;
};

}  // namespace platform
