// SPDX-License-Identifier: MIT
#include "tests/support/HostileSocket.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <list>
#include <random>
#include <span>
#include <utility>
#include <vector>

#include "tests/support/LocalSocket.h"

struct HostileSocket::Loop {
    struct Connection : localsocket::Passage {
        std::size_t passed = 0;
    };

    Loop(HostileSocket& socket, const SocketHarm& wanted, std::string path)
        : owner(socket), harm(wanted), server(std::move(path)), chance(wanted.seed) {}
    ~Loop() {
        for (Connection& c : connections)
            c.end();
    }

    HostileSocket& owner;
    const SocketHarm harm;
    const std::string server;
    std::mt19937 chance;
    std::list<Connection> connections;

    void run();
    void accept();
    void pass(Connection& c, int from, int to);
    void spoil(std::span<std::uint8_t> bytes);
};

void HostileSocket::Loop::run() {
    std::vector<pollfd> files;
    for (;;) {
        files.assign({{.fd = owner.wake_, .events = POLLIN, .revents = 0},
                      {.fd = owner.listener_, .events = POLLIN, .revents = 0}});
        for (const Connection& c : connections) {
            files.push_back({.fd = c.client, .events = POLLIN, .revents = 0});
            files.push_back({.fd = c.server, .events = POLLIN, .revents = 0});
        }
        poll(files.data(), files.size(), -1);
        if (files[0].revents != 0) return;
        std::size_t i = 2;
        for (Connection& c : connections) {
            if (files[i].revents != 0) pass(c, c.client, c.server);
            if (!c.gone && files[i + 1].revents != 0) pass(c, c.server, c.client);
            i += 2;
        }
        connections.remove_if([](const Connection& c) { return c.gone; });
        if (files[1].revents != 0) accept();
    }
}

void HostileSocket::Loop::accept() {
    const auto passage = localsocket::acceptFor(owner.listener_, server);
    if (!passage) return;
    ++owner.connections_;
    static_cast<localsocket::Passage&>(connections.emplace_back()) = *passage;
}

// A receiver that takes nothing more loses its connection.
void HostileSocket::Loop::pass(Connection& c, int from, int to) {
    std::array<std::uint8_t, 65536> some;
    const ssize_t count = recv(from, some.data(), some.size(), MSG_DONTWAIT);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
    if (count <= 0) return c.end();
    auto bytes = std::span(some).first(static_cast<std::size_t>(count));
    if (from == c.server && harm.isMute) {
        ++owner.deeds_;
        return;
    }
    if (from == c.server) spoil(bytes);
    const std::size_t most = harm.cutAfter ? *harm.cutAfter - c.passed : bytes.size();
    const bool isCut = harm.cutAfter && bytes.size() >= most;
    if (isCut) bytes = bytes.first(most);
    c.passed += bytes.size();
    const ssize_t sent = send(to, bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (isCut) ++owner.deeds_;
    if (isCut || sent != static_cast<ssize_t>(bytes.size())) c.end();
}

void HostileSocket::Loop::spoil(std::span<std::uint8_t> bytes) {
    if (harm.garbage <= 0.0) return;
    std::bernoulli_distribution happens(harm.garbage);
    std::uniform_int_distribution<int> difference(1, 255);
    for (std::uint8_t& byte : bytes) {
        if (!happens(chance)) continue;
        byte = static_cast<std::uint8_t>(byte + difference(chance));
        ++owner.deeds_;
    }
}

HostileSocket::HostileSocket(const std::string& server, const SocketHarm& harm)
    : path_(server + ".vijandig") {
    listener_ = localsocket::listenAt(path_);
    if (listener_ < 0) return;
    wake_ = eventfd(0, EFD_CLOEXEC);
    loop_ = std::make_unique<Loop>(*this, harm, server);
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
