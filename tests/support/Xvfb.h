// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>
#include <xcb/xcb.h>

#include <QByteArray>
#include <QImage>
#include <QRect>
#include <QString>
#include <string>
#include <vector>

// An X server of a test's own, on a display that was free, without any window
// manager. It ends with the object, or with the test's process.
class Xvfb {
  public:
    explicit Xvfb(const std::string& screen = "640x480x24",
                  const std::vector<std::string>& more = {});
    ~Xvfb();
    Xvfb(const Xvfb&) = delete;
    Xvfb& operator=(const Xvfb&) = delete;

    // Whether it came up; the rest needs that.
    [[nodiscard]] bool isRunning() const { return connection_ != nullptr; }
    [[nodiscard]] QString display() const { return QString::fromLocal8Bit(display_); }

    [[nodiscard]] pid_t process() const { return process_; }

    // Dies at once, as in a crash.
    void kill();

    // A client's view of it. Everything waits for the server.
    [[nodiscard]] xcb_connection_t* connection() const { return connection_; }
    [[nodiscard]] const xcb_screen_t& screen() const;

    struct Host {
        int width = 200, height = 150;
        int x = 0, y = 0;
        int depth = 0;  // 0 is the screen's own
        xcb_window_t parent = 0;
        bool mapped = true;
    };
    // A window as a host makes one: of the first visual of that depth, white.
    [[nodiscard]] xcb_window_t makeWindow(const Host& options) const;
    void destroy(xcb_window_t window) const;
    void map(xcb_window_t window) const;
    void unmap(xcb_window_t window) const;
    void resize(xcb_window_t window, int width, int height) const;
    void clear(xcb_window_t window, const QRect& rect) const;   // and tells its owner
    void fill(xcb_window_t window, std::uint32_t pixel) const;  // and tells nobody

    // The window's pixels as the server has them, each a number, row by row.
    [[nodiscard]] std::vector<std::uint32_t> pixels(xcb_window_t window, const QRect& rect) const;
    [[nodiscard]] std::uint32_t pixel(xcb_window_t window, int x, int y) const;
    // Depth 24 and 32 only.
    [[nodiscard]] QImage picture(xcb_window_t window) const;
    // Top level windows that are mapped, lowest first.
    [[nodiscard]] std::vector<xcb_window_t> mappedWindows() const;

  private:
    void sync() const;

    pid_t process_ = -1;
    QByteArray display_;
    xcb_connection_t* connection_ = nullptr;
};
