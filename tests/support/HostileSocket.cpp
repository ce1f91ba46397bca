// SPDX-License-Identifier: MIT
#include "tests/support/HostileSocket.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <list>
#include <random>
#include <span>
#include <utility>
#include <vector>

#include "tests/support/LocalSocket.h"

namespace {
using Clock = std::chrono::steady_clock;
using Bytes = std::vector<std::uint8_t>;
}  // namespace

struct HostileSocket::Loop {
    struct Connection : localsocket::Passage {
        bool isSpared = false;
        std::size_t passed = 0, ofServer = 0;
        SocketFilter filter;
        Clock::time_point held;  // nothing of the server passes before
    };

    Loop(HostileSocket& socket, const SocketHarm& wanted, std::string path,
         std::function<SocketFilter()> filters)
        : owner(socket),
          harm(wanted),
          server(std::move(path)),
          makeFilter(std::move(filters)),
          chance(wanted.seed) {}
    ~Loop() {
        for (Connection& c : connections)
            c.end();
    }

    HostileSocket& owner;
    const SocketHarm harm;
    const std::string server;
    const std::function<SocketFilter()> makeFilter;
    std::mt19937 chance;
    std::list<Connection> connections;

    void run();
    void accept();
    void passUp(Connection& c);
    void passDown(Connection& c);
    void send(Connection& c, int to, std::span<const std::uint8_t> bytes);
    void spoil(Bytes& bytes);
    void silence(Connection& c, Bytes& bytes);
    bool isHeldUp(Connection& c);
};

void HostileSocket::Loop::run() {
    std::vector<pollfd> files;
    for (;;) {
        files.assign({{.fd = owner.wake_, .events = POLLIN, .revents = 0},
                      {.fd = owner.listener_, .events = POLLIN, .revents = 0}});
        int patience = -1;
        const auto now = Clock::now();
        for (const Connection& c : connections) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(c.held - now).count();
            if (left > 0)
                patience = static_cast<int>(patience < 0 ? left : std::min<long>(patience, left));
            files.push_back({.fd = c.client, .events = POLLIN, .revents = 0});
            // A negative file is none.
            files.push_back({.fd = left > 0 ? -1 : c.server, .events = POLLIN, .revents = 0});
        }
        poll(files.data(), files.size(), patience);
        if (files[0].revents != 0) return;
        std::size_t i = 2;
        for (Connection& c : connections) {
            if (files[i].revents != 0) passUp(c);
            if (!c.gone && files[i + 1].revents != 0) passDown(c);
            i += 2;
        }
        connections.remove_if([](const Connection& c) { return c.gone; });
        if (files[1].revents != 0) accept();
    }
}

void HostileSocket::Loop::accept() {
    const auto passage = localsocket::acceptFor(owner.listener_, server);
    if (!passage) return;
    Connection& c = connections.emplace_back();
    static_cast<localsocket::Passage&>(c) = *passage;
    c.isSpared = owner.connections_++ < static_cast<std::uint64_t>(harm.spared);
    if (!c.isSpared && makeFilter) c.filter = makeFilter();
}

namespace {

// Reads as much as has come; none where the connection has ended.
std::optional<Bytes> receive(int file) {
    std::array<std::uint8_t, 65536> some;
    const ssize_t count = recv(file, some.data(), some.size(), MSG_DONTWAIT);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) return Bytes();
    if (count <= 0) return std::nullopt;
    return Bytes(some.begin(), some.begin() + count);
}

}  // namespace

void HostileSocket::Loop::passUp(Connection& c) {
    const auto bytes = receive(c.client);
    if (!bytes) return c.end();
    send(c, c.server, *bytes);
}

void HostileSocket::Loop::passDown(Connection& c) {
    if (isHeldUp(c)) return;
    auto bytes = receive(c.server);
    if (!bytes) return c.end();
    if (!c.isSpared) {
        if (c.filter) {
            Bytes changed = c.filter(*bytes);
            if (changed != *bytes) ++owner.deeds_;
            bytes = std::move(changed);
        }
        spoil(*bytes);
        silence(c, *bytes);
    }
    send(c, c.client, *bytes);
}

// Whether what came waits from now on; it passes when the time is over.
bool HostileSocket::Loop::isHeldUp(Connection& c) {
    const bool hasWaited = std::exchange(c.held, Clock::time_point()) != Clock::time_point();
    if (c.isSpared || hasWaited || !std::bernoulli_distribution(harm.delays)(chance)) return false;
    const double seconds = std::uniform_real_distribution(0.0, harm.mostDelay)(chance);
    c.held = Clock::now() +
             std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
    ++owner.deeds_;
    return true;
}

void HostileSocket::Loop::silence(Connection& c, Bytes& bytes) {
    if (!harm.muteAfter) return;
    const std::size_t most = *harm.muteAfter - std::min(c.ofServer, *harm.muteAfter);
    c.ofServer += bytes.size();
    if (bytes.size() <= most) return;
    bytes.resize(most);
    ++owner.deeds_;
}

// A receiver that takes nothing more loses its connection.
void HostileSocket::Loop::send(Connection& c, int to, std::span<const std::uint8_t> bytes) {
    const bool cuts = harm.cutAfter && !c.isSpared;
    const std::size_t most = cuts ? *harm.cutAfter - c.passed : bytes.size();
    const bool isCut = cuts && bytes.size() >= most;
    if (isCut) bytes = bytes.first(most);
    c.passed += bytes.size();
    const ssize_t sent = ::send(to, bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (isCut) ++owner.deeds_;
    if (isCut || sent != static_cast<ssize_t>(bytes.size())) c.end();
}

void HostileSocket::Loop::spoil(Bytes& bytes) {
    if (harm.garbage <= 0.0) return;
    std::bernoulli_distribution happens(harm.garbage);
    std::uniform_int_distribution<int> difference(1, 255);
    for (std::uint8_t& byte : bytes) {
        if (!happens(chance)) continue;
        byte = static_cast<std::uint8_t>(byte + difference(chance));
        ++owner.deeds_;
    }
}

HostileSocket::HostileSocket(const std::string& server, const SocketHarm& harm,
                             std::function<SocketFilter()> makeFilter)
    : path_(server + ".vijandig") {
    listener_ = localsocket::listenAt(path_);
    if (listener_ < 0) return;
    wake_ = eventfd(0, EFD_CLOEXEC);
    loop_ = std::make_unique<Loop>(*this, harm, server, std::move(makeFilter));
    thread_ = std::thread([this] { loop_->run(); });
}

HostileSocket::~HostileSocket() {
    if (listener_ < 0) return;
    eventfd_write(wake_, 1);
    thread_.join();
    loop_.reset();
    close(wake_);
    close(listener_);
    unlink(path_.c_str());
}
