// SPDX-License-Identifier: MIT
#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace brixtel {

// SIGTERM, SIGINT and SIGHUP as calls on the main thread. One object at a time; its
// destructor gives the signals back to the system. A main thread that waits for a hanging X
// server cannot be called, and a driver may stop slowly: a process that has not ended
// shortly after the first signal is ended by that signal.
//
// SIGUSR1 asks for a restart. The starting process may have left any of these signals
// ignored or blocked; this object receives them anyway.
class Signalen {
  public:
    // Calls `einde` with the signal's number. SIGUSR1 calls `opnieuw` if there is one, and
    // does nothing otherwise. Among several signals before the main thread's next turn an
    // end goes before a restart, and many restarts are one.
    explicit Signalen(std::function<void(int)> einde, std::function<void()> opnieuw = {});
    ~Signalen();
    Signalen(const Signalen&) = delete;
    Signalen& operator=(const Signalen&) = delete;

    // Makes SIGUSR1 harmless from now on. Before the program has begun and after it has
    // ended there is nothing to restart.
    static void negeerOpnieuw();

    // Makes SIGPIPE harmless from now on. A display or a bus that breaks the connection while
    // the process writes is an error of that call; child processes get the signal as usual.
    static void negeerVerbreking();

    // Ends the process with exit status 0 if its own end takes longer: than the time after a
    // signal, or than a user would wait.
    enum class Haast { Gastheer, Rustig };
    static void haast(Haast hoe);

    // Ends the process by this signal, as if it had no handler. A host that sent the signal
    // takes any other end for a crash.
    [[noreturn]] static void eindigDoor(int signaal);

  private:
    std::unique_ptr<QSocketNotifier> melder_;
};

}  // namespace brixtel
