// SPDX-License-Identifier: MIT
// Holds TCP connections with itself on loopback, each of which counts twice:
// over IPv4 at the first argument's address, over IPv6 at ::1, and over IPv4 at
// the second's from IPv6 sockets. Prints on one line which of these it has
// ("4 6 m"), and ends when its input does.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string>

namespace {

// Makes a connection between two ends with this address, open until the program ends.
bool verbind(int familie, const sockaddr* adres, socklen_t maat) {
    const int nee = 0;
    const int luister = socket(familie, SOCK_STREAM, 0);
    const int bel = socket(familie, SOCK_STREAM, 0);
    for (const int eind : {luister, bel}) {
        if (familie == AF_INET6) setsockopt(eind, IPPROTO_IPV6, IPV6_V6ONLY, &nee, sizeof nee);
        if (eind < 0 || bind(eind, adres, maat) < 0) return false;
    }
    sockaddr_storage poort{};
    getsockname(luister, reinterpret_cast<sockaddr*>(&poort), &maat);
    return listen(luister, 1) == 0 &&
           connect(bel, reinterpret_cast<const sockaddr*>(&poort), maat) == 0 &&
           accept(luister, nullptr, nullptr) >= 0;
}

bool verbind4(const char* tekst) {
    sockaddr_in adres{};
    adres.sin_family = AF_INET;
    inet_pton(AF_INET, tekst, &adres.sin_addr);
    return verbind(AF_INET, reinterpret_cast<const sockaddr*>(&adres), sizeof adres);
}

bool verbind6(const char* tekst) {
    sockaddr_in6 adres{};
    adres.sin6_family = AF_INET6;
    inet_pton(AF_INET6, tekst, &adres.sin6_addr);
    return verbind(AF_INET6, reinterpret_cast<const sockaddr*>(&adres), sizeof adres);
}

}  // namespace

int main(int aantal, char** woorden) {
    if (aantal != 3) return 2;
    std::string heeft;
    if (verbind4(woorden[1])) heeft += "4 ";
    if (verbind6("::1")) heeft += "6 ";
    if (verbind6((std::string("::ffff:") + woorden[2]).c_str())) heeft += "m ";
    heeft += "\n";
    if (write(STDOUT_FILENO, heeft.data(), heeft.size()) < 0) return 1;
    char teken = 0;
    while (read(STDIN_FILENO, &teken, 1) > 0) {
    }
    return 0;
}
