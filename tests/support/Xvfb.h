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

// An X server for one test, on a free display, without a window manager. Ends
// with the object, or with the test's process.
class Xvfb {
  public:
    explicit Xvfb(const std::string& screen = "640x480x24",
                  const std::vector<std::string>& more = {});
    ~Xvfb();
    Xvfb(const Xvfb&) = delete;
    Xvfb& operator=(const Xvfb&) = delete;

    // Whether the server started; every other call needs that.
    [[nodiscard]] bool isRunning() const { return connection_ != nullptr; }
    [[nodiscard]] QString display() const { return QString::fromLocal8Bit(display_); }

    [[nodiscard]] pid_t process() const { return process_; }

    // Kills the server at once, like a crash.
    void kill();

    // A client's connection to the server. Every call below waits for the server.
    [[nodiscard]] xcb_connection_t* connection() const { return connection_; }
    [[nodiscard]] const xcb_screen_t& screen() const;

    struct Host {
        int width = 200, height = 150;
        int x = 0, y = 0;
        int depth = 0;  // 0 is the screen's own
        xcb_window_t parent = 0;
        bool mapped = true;
    };
    // Makes a white window of the first visual of that depth, as a host does.
    [[nodiscard]] xcb_window_t makeWindow(const Host& options) const;
    void destroy(xcb_window_t window) const;
    void map(xcb_window_t window) const;
    void unmap(xcb_window_t window) const;
    void resize(xcb_window_t window, int width, int height) const;
    void clear(xcb_window_t window, const QRect& rect) const;   // and tells the owner
    void fill(xcb_window_t window, std::uint32_t pixel) const;  // without telling any client

    // The server's pixels of the window, one number each, row by row.
    [[nodiscard]] std::vector<std::uint32_t> pixels(xcb_window_t window, const QRect& rect) const;
    [[nodiscard]] std::uint32_t pixel(xcb_window_t window, int x, int y) const;
    // A picture of the window; depth 24 and 32 only.
    [[nodiscard]] QImage picture(xcb_window_t window) const;
    // The mapped top-level windows, lowest first.
    [[nodiscard]] std::vector<xcb_window_t> mappedWindows() const;

  private:
    void sync() const;

    pid_t process_ = -1;
    QByteArray display_;
    xcb_connection_t* connection_ = nullptr;
};
