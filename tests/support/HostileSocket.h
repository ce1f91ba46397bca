// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <thread>
#include <vector>

// The harm that a socket does to what passes it.
struct SocketHarm {
    std::uint32_t seed = 0;
    int spared = 0;                        // the first connections, which meet no harm
    std::optional<std::size_t> cutAfter;   // bytes, both ways together, of any one connection
    std::optional<std::size_t> muteAfter;  // bytes of the server; of one connection no more pass
    double garbage = 0.0;                  // the share of the server's bytes that become others
    double delays = 0.0;     // the share of the server's pieces that are held up, by up to ...
    double mostDelay = 0.0;  // ... these seconds, with all that follows
};

// Changes what the server of one connection sends: takes the bytes that came, and returns
// those that pass.
using SocketFilter = std::function<std::vector<std::uint8_t>(std::span<const std::uint8_t>)>;

// A local socket that stands before a server and is hostile to its clients. Passes bytes and
// no descriptors. Owns its thread and sockets; the object may be used on one thread.
class HostileSocket {
  public:
    // `server` is the path of the server's socket, which must outlive the object. `makeFilter`,
    // if any, is called on the object's thread for each connection that is not spared.
    HostileSocket(const std::string& server, const SocketHarm& harm,
                  std::function<SocketFilter()> makeFilter = {});
    ~HostileSocket();
    HostileSocket(const HostileSocket&) = delete;
    HostileSocket& operator=(const HostileSocket&) = delete;

    // Whether it listens; every other call needs that.
    [[nodiscard]] bool isRunning() const { return listener_ >= 0; }
    // The path that clients use.
    [[nodiscard]] const std::string& path() const { return path_; }
    // Connections so far.
    [[nodiscard]] std::uint64_t connections() const { return connections_; }
    // Cuts, changed bytes, and pieces that were changed, held up or kept back so far.
    [[nodiscard]] std::uint64_t deeds() const { return deeds_; }

  private:
    struct Loop;

    std::string path_;
    int listener_ = -1;
    int wake_ = -1;  // an eventfd: the loop ends
    std::atomic<std::uint64_t> connections_ = 0, deeds_ = 0;
    std::unique_ptr<Loop> loop_;
    std::thread thread_;
};
