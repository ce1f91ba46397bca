// SPDX-License-Identifier: MIT
#pragma once

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <optional>
#include <string>

// The common part of the sockets that stand between clients and a server.
namespace localsocket {

[[nodiscard]] inline sockaddr_un addressOf(const std::string& path) {
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    return address;
}

// Calls `attach`, which is connect() or bind(), on a new socket; -1 where it fails.
template <typename Attach>
[[nodiscard]] int socketAt(const std::string& path, Attach attach) {
    const sockaddr_un address = addressOf(path);
    const int file = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (attach(file, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return file;
    close(file);
    return -1;
}

[[nodiscard]] inline int connectTo(const std::string& path) {
    return socketAt(path, connect);
}

// -1 where the path is taken, too.
[[nodiscard]] inline int listenAt(const std::string& path) {
    return socketAt(path, [](int file, const sockaddr* address, socklen_t length) {
        const int bound = bind(file, address, length);
        return bound == 0 ? listen(file, SOMAXCONN) : bound;
    });
}

// A client's connection and the one to the server that stands for it. Its owner ends it.
struct Passage {
    int client = -1, server = -1;
    bool gone = false;

    void end() {
        if (gone) return;
        gone = true;
        close(client);
        close(server);
    }
};

// Accepts a client, and connects to the server for it; none where either is not there.
[[nodiscard]] inline std::optional<Passage> acceptFor(int listener, const std::string& server) {
    const int client = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
    if (client < 0) return std::nullopt;
    const int file = connectTo(server);
    if (file >= 0) return Passage{.client = client, .server = file};
    close(client);
    return std::nullopt;
}

}  // namespace localsocket
