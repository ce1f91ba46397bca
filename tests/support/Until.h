// SPDX-License-Identifier: MIT
#pragma once

#include <QEventLoop>
#include <QTimer>

// Turns the event loop until the condition holds; false at the deadline. For
// effects of another process or thread.
template <typename Condition>
bool until(Condition condition, int deadlineMilliseconds = 30'000) {
    if (condition()) return true;
    QEventLoop loop;
    QTimer look, deadline;
    bool held = false;
    look.setInterval(1);
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        held = condition();
        if (held) loop.quit();
    });
    deadline.setSingleShot(true);
    QObject::connect(&deadline, &QTimer::timeout, &loop, [&] { loop.quit(); });
    look.start();
    deadline.start(deadlineMilliseconds);
    loop.exec();
    return held || condition();
}
