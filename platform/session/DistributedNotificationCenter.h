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
// The desktops' own word for their saver or lock, ActiveChanged of
// org.freedesktop.ScreenSaver and its kin, counts as
// "com.apple.screensaver.didstart" (true) or "com.apple.screensaver.willstop"
// (false) too. They are believed from the owner of that name alone. A start holds
// while its sender is on the bus: whoever says one and goes has said a stop too.
//
// The bus is looked up in the background, so that nobody waits for it; without
// one, notifications stay within the program. Main thread.
class DistributedNotificationCenter {
  public:
    // The address of a bus; empty for none.
    explicit DistributedNotificationCenter(const QString& busAddress = sessionBusAddress());
    ~DistributedNotificationCenter();
    DistributedNotificationCenter(const DistributedNotificationCenter&) = delete;
    DistributedNotificationCenter& operator=(const DistributedNotificationCenter&) = delete;

    // The address of the running session bus; empty when there is none. Never starts a bus.
    [[nodiscard]] static QString sessionBusAddress();

    // Calls the handler for every notification of that name, which is made of at
    // least three words of letters, digits and underscores, with dots between. Of
    // those that come within one turn of the event loop it is told once, each name
    // when it came last.
    // `observer` is the key to take it away again, for all names.
    void addObserver(const void* observer, const QString& name, std::function<void()> handler);
    void removeObserver(const void* observer);

    // To every observer on the bus, this program's included, in a later turn of
    // the event loop.
    void post(const QString& name);

    // Calls the action once the bus listens to every observer added so far, or
    // has turned out to be absent.
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
