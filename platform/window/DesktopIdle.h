// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <functional>
#include <memory>

#include "platform/session/IdleInhibitors.h"
#include "platform/session/IdleWatch.h"
#include "platform/session/MutterIdle.h"
#include "platform/session/OtherSavers.h"
#include "platform/time/Timer.h"

namespace platform {

class WindowServer;

struct DesktopIdleOptions {
    QString busAddress;    // of the session bus; empty for none
    double seconds = 0.0;  // without input; above 0
    // Called with whether any part watches the input, once that is known and at each change.
    std::function<void(bool watching)> watching{};
};

// Tells when a saver may start on a running desktop: there was no input for some time, and no
// program asks that no saver starts. A window system that knows both is asked first, then the
// session bus, then a window system that can measure the time. In the last case no time counts
// while another saver runs. When the last request against a saver ends, the whole time has to
// pass once more.
//
// The server outlives it. Owned by the program. Main thread.
class DesktopIdle {
  public:
    // Calls the action each time a saver may start, once until there is input again.
    DesktopIdle(WindowServer& server, const DesktopIdleOptions& options,
                std::function<void()> action);
    ~DesktopIdle();
    DesktopIdle(const DesktopIdle&) = delete;
    DesktopIdle& operator=(const DesktopIdle&) = delete;

    // Whether a program is known to ask that no saver starts.
    [[nodiscard]] bool isInhibited() const { return inhibited_; }

  private:
    void tellWatching(bool watching) const;
    void setBusWatches(bool watches);
    void setIdle(bool idle);
    void setInhibited(bool inhibited);
    void tellIfFree();

    WindowServer& server_;
    const DesktopIdleOptions options_;
    const std::function<void()> action_;
    bool idle_ = false;
    bool inhibited_ = false;
    bool otherSaver_ = false;
    Timer afterInhibitors_;
    IdleInhibitors inhibitors_;
    std::unique_ptr<IdleWatch> watch_;
    std::unique_ptr<OtherSavers> savers_;
    std::unique_ptr<MutterIdle> bus_;
};

}  // namespace platform
