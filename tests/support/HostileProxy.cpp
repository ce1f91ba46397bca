// SPDX-License-Identifier: MIT
#include "tests/support/HostileProxy.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <list>
#include <map>
#include <random>
#include <span>
#include <utility>
#include <vector>

#include "tests/support/LocalSocket.h"

namespace {

using Clock = std::chrono::steady_clock;
using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kMostWaiting = std::size_t{1} << 20;
constexpr std::size_t kPacket = 32;  // an event, an error, the head of a reply
constexpr std::uint8_t kGenericEvent = 35;

std::int64_t nanoseconds() {
    return std::chrono::nanoseconds(Clock::now().time_since_epoch()).count();
}

template <typename Number>
Number numberAt(const Bytes& bytes, std::size_t at) {
    Number number = 0;
    std::memcpy(&number, bytes.data() + at, sizeof number);
    return number;
}

template <typename Number>
void put(std::uint8_t* at, Number number) {
    std::memcpy(at, &number, sizeof number);
}

std::size_t padded(std::size_t bytes) {
    return (bytes + 3) / 4 * 4;
}

std::string pathOf(int display) {
    return "/tmp/.X11-unix/X" + std::to_string(display);
}

// One way of a connection: what came in and is no whole message yet, and what goes on.
struct Way {
    Bytes in, out;
    bool began = false;  // the setup has passed
};

struct Replaced {
    std::uint8_t major, minor;
    std::uint32_t value;
};

}  // namespace

struct HostileProxy::Loop {
    struct Connection : localsocket::Passage {
        Way up, down;
        std::size_t passed = 0;
        std::uint16_t sequence = 0;
        int spared = 0;
        std::map<std::uint16_t, Replaced> replaced;
        Clock::time_point held;
    };

    Loop(HostileProxy& owner, const Hostility& wanted, const std::string& server)
        : proxy(owner),
          hostility(wanted),
          serverPath(pathOf(std::stoi(server.substr(1)))),
          chance(wanted.seed),
          own(xcb_connect(server.c_str(), nullptr)),
          refusals(wanted.refuses) {}
    ~Loop() {
        for (Connection& c : connections)
            c.end();
        xcb_disconnect(own);
    }

    HostileProxy& proxy;
    const Hostility hostility;
    const std::string serverPath;
    std::mt19937 chance;
    xcb_connection_t* const own;
    int refusals;
    std::list<Connection> connections;
    std::vector<xcb_window_t> windows;

    bool happens(double share) { return share > 0.0 && unit() < share; }
    double unit() { return std::uniform_real_distribution(0.0, 1.0)(chance); }
    std::size_t below(std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(chance);
    }

    void run();
    void accept();
    void serve(Connection& c, const pollfd& client, const pollfd& server);
    void receive(Connection& c, int file, Way& way);
    void send(Connection& c, int file, Way& way);
    void passRequests(Connection& c);
    void passRequest(Connection& c, std::span<std::uint8_t> request);
    void passAnswers(Connection& c);
    void rewrite(Connection& c, std::span<std::uint8_t> error);
    void destroyOne();
};

void HostileProxy::Loop::run() {
    std::vector<pollfd> files;
    for (;;) {
        files.assign({{.fd = proxy.wake_, .events = POLLIN, .revents = 0},
                      {.fd = proxy.listener_, .events = POLLIN, .revents = 0}});
        int patience = -1;
        const auto now = Clock::now();
        for (const Connection& c : connections) {
            const bool isHeld = c.held > now;
            if (isHeld) {
                const auto left = std::chrono::ceil<std::chrono::milliseconds>(c.held - now);
                patience = std::max(1, patience < 0 ? static_cast<int>(left.count())
                                                    : std::min<int>(patience, left.count()));
            }
            const auto events = [&](const Way& in, const Way& out) {
                int wanted = in.out.size() < kMostWaiting && !isHeld ? POLLIN : 0;
                if (!out.out.empty() && !isHeld) wanted |= POLLOUT;
                return static_cast<short>(wanted);
            };
            files.push_back({.fd = c.client, .events = events(c.up, c.down), .revents = 0});
            files.push_back({.fd = c.server, .events = events(c.down, c.up), .revents = 0});
        }
        poll(files.data(), files.size(), patience);
        if (files[0].revents != 0) return;
        std::size_t i = 2;
        for (Connection& c : connections) {
            serve(c, files[i], files[i + 1]);
            i += 2;
        }
        connections.remove_if([](const Connection& c) { return c.gone; });
        if (files[1].revents != 0) accept();
    }
}

void HostileProxy::Loop::accept() {
    if (const auto passage = localsocket::acceptFor(proxy.listener_, serverPath))
        static_cast<localsocket::Passage&>(connections.emplace_back()) = *passage;
}

void HostileProxy::Loop::serve(Connection& c, const pollfd& client, const pollfd& server) {
    constexpr short kEnd = POLLHUP | POLLERR;
    if (client.revents & (POLLIN | kEnd)) {
        receive(c, c.client, c.up);
        if (!c.gone) passRequests(c);
    }
    if (!c.gone && (server.revents & (POLLIN | kEnd))) {
        receive(c, c.server, c.down);
        if (!c.gone) passAnswers(c);
    }
    if (!c.gone && (client.revents & POLLOUT)) send(c, c.client, c.down);
    if (!c.gone && (server.revents & POLLOUT)) send(c, c.server, c.up);
}

void HostileProxy::Loop::receive(Connection& c, int file, Way& way) {
    std::array<std::uint8_t, 65536> some;
    const ssize_t count = recv(file, some.data(), some.size(), MSG_DONTWAIT);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
    if (count <= 0) return c.end();
    way.in.insert(way.in.end(), some.begin(), some.begin() + count);
}

void HostileProxy::Loop::send(Connection& c, int file, Way& way) {
    std::size_t most = way.out.size();
    const bool cuts = hostility.cutAfter && c.spared == 0;
    if (cuts) most = std::min(most, *hostility.cutAfter - std::min(c.passed, *hostility.cutAfter));
    const ssize_t count = ::send(file, way.out.data(), most, MSG_DONTWAIT | MSG_NOSIGNAL);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
    if (count < 0) return c.end();
    way.out.erase(way.out.begin(), way.out.begin() + count);
    c.passed += static_cast<std::size_t>(count);
    if (!cuts || c.passed < *hostility.cutAfter) return;
    ++proxy.deeds_;
    if (proxy.cutAt_ == 0) proxy.cutAt_ = nanoseconds();
    c.end();
}

void HostileProxy::Loop::passRequests(Connection& c) {
    Way& way = c.up;
    std::size_t at = 0;
    const auto left = [&] { return way.in.size() - at; };
    if (!way.began) {
        constexpr std::size_t kHead = 12;
        if (left() < kHead) return;
        const std::size_t whole = kHead + padded(numberAt<std::uint16_t>(way.in, 6)) +
                                  padded(numberAt<std::uint16_t>(way.in, 8));
        if (left() < whole) return;
        // No server knows this version of the protocol.
        if (refusals > 0) {
            --refusals;
            ++proxy.deeds_;
            put<std::uint16_t>(way.in.data() + 2, 99);
        }
        way.out.insert(way.out.end(), way.in.begin(),
                       way.in.begin() + static_cast<std::ptrdiff_t>(whole));
        at = whole;
        way.began = true;
    }
    while (left() >= 4) {
        std::size_t words = numberAt<std::uint16_t>(way.in, at + 2);
        if (words == 0) {
            if (left() < 8) break;
            words = numberAt<std::uint32_t>(way.in, at + 4);
        }
        if (words == 0) return c.end();
        if (left() < 4 * words) break;
        passRequest(c, std::span(way.in).subspan(at, 4 * words));
        at += 4 * words;
    }
    way.in.erase(way.in.begin(), way.in.begin() + static_cast<std::ptrdiff_t>(at));
}

void HostileProxy::Loop::passRequest(Connection& c, std::span<std::uint8_t> request) {
    ++proxy.requests_;
    ++c.sequence;
    // Xlib begins by asking for an extension; libxcb asks for none by itself.
    if (c.sequence == 1 && request[0] == XCB_QUERY_EXTENSION) c.spared = hostility.spared;
    if (request[0] == XCB_CREATE_WINDOW && request.size() >= 8) {
        std::uint32_t window = 0;
        std::memcpy(&window, &request[4], sizeof window);
        windows.push_back(window);
    }
    if (happens(hostility.delays)) {
        ++proxy.deeds_;
        c.held = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                    std::chrono::duration<double>(unit() * hostility.mostDelay));
    }
    if (happens(hostility.destroys)) destroyOne();
    if (c.spared > 0) --c.spared;
    if (c.spared > 0 || !happens(hostility.errors)) {
        c.up.out.insert(c.up.out.end(), request.begin(), request.end());
        return;
    }
    ++proxy.deeds_;
    Replaced replaced{.major = request[0], .minor = request[1], .value = 0};
    if (request.size() >= 8) std::memcpy(&replaced.value, &request[4], sizeof replaced.value);
    c.replaced[c.sequence] = replaced;
    // The name of an atom that no server has: the server counts the request and answers
    // with an error, which becomes the wanted one.
    std::array<std::uint8_t, 8> nonsense{XCB_GET_ATOM_NAME, 0, 2, 0, 0xFF, 0xFF, 0xFF, 0x1F};
    c.up.out.insert(c.up.out.end(), nonsense.begin(), nonsense.end());
}

void HostileProxy::Loop::passAnswers(Connection& c) {
    Way& way = c.down;
    std::size_t at = 0;
    const auto left = [&] { return way.in.size() - at; };
    if (!way.began) {
        if (left() < 8) return;
        const std::size_t whole = 8 + std::size_t{4} * numberAt<std::uint16_t>(way.in, 6);
        if (left() < whole) return;
        at = whole;
        way.began = true;
    }
    while (left() >= kPacket) {
        const std::uint8_t kind = way.in[at];
        std::size_t whole = kPacket;
        if (kind == 1 || (kind & 0x7F) == kGenericEvent)
            whole += std::size_t{4} * numberAt<std::uint32_t>(way.in, at + 4);
        if (left() < whole) break;
        if (kind == 0) rewrite(c, std::span(way.in).subspan(at, whole));
        at += whole;
    }
    way.out.insert(way.out.end(), way.in.begin(), way.in.begin() + static_cast<std::ptrdiff_t>(at));
    way.in.erase(way.in.begin(), way.in.begin() + static_cast<std::ptrdiff_t>(at));
}

void HostileProxy::Loop::rewrite(Connection& c, std::span<std::uint8_t> error) {
    constexpr std::array<std::uint8_t, 10> kCodes{
        XCB_REQUEST, XCB_VALUE,    XCB_WINDOW, XCB_PIXMAP, XCB_ATOM,
        XCB_MATCH,   XCB_DRAWABLE, XCB_ACCESS, XCB_ALLOC,  XCB_IMPLEMENTATION};
    std::uint16_t sequence = 0;
    std::memcpy(&sequence, &error[2], sizeof sequence);
    const auto found = c.replaced.find(sequence);
    if (found == c.replaced.end()) return;
    error[1] = kCodes[below(kCodes.size())];
    put(&error[4], found->second.value);
    put<std::uint16_t>(&error[8], found->second.minor);
    error[10] = found->second.major;
    c.replaced.erase(found);
}

void HostileProxy::Loop::destroyOne() {
    if (windows.empty()) return;
    ++proxy.deeds_;
    const std::size_t which = below(windows.size());
    xcb_destroy_window(own, windows[which]);
    xcb_flush(own);
    windows.erase(windows.begin() + static_cast<std::ptrdiff_t>(which));
}

HostileProxy::HostileProxy(const std::string& display, const Hostility& hostility) {
    constexpr int kFirst = 400, kMost = 400;
    for (int number = kFirst; number < kFirst + kMost && listener_ < 0; ++number) {
        path_ = pathOf(number);
        display_ = ":" + std::to_string(number);
        // A path that is taken belongs to another proxy.
        listener_ = localsocket::listenAt(path_);
    }
    if (listener_ < 0) return;
    wake_ = eventfd(0, EFD_CLOEXEC);
    loop_ = std::make_unique<Loop>(*this, hostility, display);
    thread_ = std::thread([this] { loop_->run(); });
}

HostileProxy::~HostileProxy() {
    if (listener_ < 0) return;
    eventfd_write(wake_, 1);
    thread_.join();
    loop_.reset();
    close(wake_);
    close(listener_);
    unlink(path_.c_str());
}

std::optional<double> HostileProxy::secondsSinceCut() const {
    if (cutAt_ == 0) return std::nullopt;
    return static_cast<double>(nanoseconds() - cutAt_) * 1e-9;
}
