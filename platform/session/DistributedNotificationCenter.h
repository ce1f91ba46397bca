// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace platform {

class NotificationLink;

// Notifications between programs, over the session bus. A notification
// "a.b.c" is the D-Bus signal "c" of the interface "a.b", from anyone and on any
// path:
//
//   dbus-send --session --type=signal / com.apple.screensaver.willstop
//
// A desktop's own signal for its saver or lock, ActiveChanged of
// org.freedesktop.ScreenSaver and similar interfaces, counts as
// "com.apple.screensaver.didstart" (true) or "com.apple.screensaver.willstop" (false). Only
// the owner of the bus name equal to the interface is believed. A start ends when its sender
// leaves the bus.
//
// The centre connects to the bus in the background, so that no caller waits. Without a bus,
// notifications stay within the program. The program owns the centre. Main thread.
class DistributedNotificationCenter {
  public:
    // `busAddress` is the address of a bus; empty for no bus.
    explicit DistributedNotificationCenter(const QString& busAddress = sessionBusAddress());
    ~DistributedNotificationCenter();
    DistributedNotificationCenter(const DistributedNotificationCenter&) = delete;
    DistributedNotificationCenter& operator=(const DistributedNotificationCenter&) = delete;

    // The address of the running session bus; empty when there is none. Never starts a bus.
    [[nodiscard]] static QString sessionBusAddress();

    // Calls the handler for every notification of that name. A name has at least three words
    // of letters, digits and underscores, with dots between. Equal notifications within one
    // turn of the event loop are delivered once; different ones in the order of their last
    // arrival. `observer` is the key that removes the handler; it is never
    // dereferenced.
    void addObserver(const void* observer, const QString& name, std::function<void()> handler);
    void removeObserver(const void* observer);

    // Posts to every observer on the bus, this program's included, in a later turn of the
    // event loop.
    void post(const QString& name);

    // Calls the action in a later turn of the event loop, once the bus knows every observer
    // added so far, or is known to be absent.
    void whenReady(std::function<void()> action);

  private:
    void deliver(const QString& name);

    struct Observer {
        const void* key;
        QString name;
        std::function<void()> handler;
        bool removed = false;
    };
    std::vector<std::shared_ptr<Observer>> observers_;
    std::unique_ptr<NotificationLink> link_;
};

}  // namespace platform
