// SPDX-License-Identifier: MIT
#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace brixtel {

// SIGTERM, SIGINT and SIGHUP as calls on the main thread. One at a time; its end
// gives the signals back to the system. Whoever is in the middle of waiting for
// an X server that hangs cannot be called, and a driver may take its time to
// stop: what has not ended shortly after the first signal, is ended by it.
//
// SIGUSR1 asks for a new beginning. Whoever started the process may have left
// any of them ignored or blocked; here they count.
class Signalen {
  public:
    // `einde` is given the signal's number; SIGUSR1 calls `opnieuw` if there is one,
    // and does nothing otherwise. Of several before the main thread's next turn an
    // end counts before a new beginning, and many of those are one.
    explicit Signalen(std::function<void(int)> einde, std::function<void()> opnieuw = {});
    ~Signalen();
    Signalen(const Signalen&) = delete;
    Signalen& operator=(const Signalen&) = delete;

    // From now on SIGUSR1 no longer ends the process: where nothing has begun,
    // and once all has ended, there is nothing to begin anew.
    static void negeerOpnieuw();

    // The process is ending by itself: ends it with exit status 0 where that
    // takes longer than after a signal.
    static void haast();

    // Ends the process by this signal, as if nobody had caught it. A host that
    // sent it takes any other end for a crash.
    [[noreturn]] static void eindigDoor(int signaal);

  private:
    std::unique_ptr<QSocketNotifier> melder_;
};

}  // namespace brixtel
