// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <thread>

// The harm that a proxy does to its clients. Shares are of requests and lie between 0 and 1.
struct Hostility {
    std::uint32_t seed = 0;
    double errors = 0.0;                  // answered with an error of a random kind
    double delays = 0.0;                  // held up, with all that follows, by up to mostDelay
    double destroys = 0.0;                // after which a window of the client goes
    double mostDelay = 0.0;               // seconds
    std::optional<std::size_t> cutAfter;  // bytes, both ways together, of any one connection
    int refuses = 0;                      // so many connections are refused at the setup
    // The first requests of a connection that Xlib opened are not answered with errors, and
    // the connection is not cut until these have passed.
    int spared = 0;
};

// An X server's display that stands before another one and is hostile to its clients. Other
// clients of the server do not notice. Owns its thread, sockets and its own connection to
// the server; the object may be used on one thread.
class HostileProxy {
  public:
    // `display` is the server's, which must outlive the proxy.
    HostileProxy(const std::string& display, const Hostility& hostility);
    ~HostileProxy();
    HostileProxy(const HostileProxy&) = delete;
    HostileProxy& operator=(const HostileProxy&) = delete;

    // Whether it listens; every other call needs that.
    [[nodiscard]] bool isRunning() const { return listener_ >= 0; }
    // The display that clients use.
    [[nodiscard]] const std::string& display() const { return display_; }
    // Requests so far, of all clients.
    [[nodiscard]] std::uint64_t requests() const { return requests_; }
    // Errors, delays, destroyed windows and cuts so far.
    [[nodiscard]] std::uint64_t deeds() const { return deeds_; }
    // The time since it first cut a connection; none before.
    [[nodiscard]] std::optional<double> secondsSinceCut() const;

  private:
    struct Loop;

    std::string display_, path_;
    int listener_ = -1;
    int wake_ = -1;  // an eventfd: the loop ends
    std::atomic<std::uint64_t> requests_ = 0, deeds_ = 0;
    std::atomic<std::int64_t> cutAt_ = 0;  // nanoseconds of a steady clock; 0 is never
    std::unique_ptr<Loop> loop_;
    std::thread thread_;
};
