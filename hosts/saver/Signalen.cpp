// SPDX-License-Identifier: MIT
#include "hosts/saver/Signalen.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>

namespace brixtel {

namespace {

constexpr std::array kSignalen{SIGTERM, SIGINT, SIGHUP};
std::array<int, 2> pijp{-1, -1};

// All that a signal handler may safely do: pass the number on.
void vang(int signaal) {
    const int bewaard = errno;
    const auto nummer = static_cast<unsigned char>(signaal);
    [[maybe_unused]] const auto geschreven = write(pijp[1], &nummer, 1);
    errno = bewaard;
}

void zet(void (*doe)(int)) {
    struct sigaction actie {};
    actie.sa_handler = doe;
    for (const int signaal : kSignalen)
        sigaction(signaal, &actie, nullptr);
}

}  // namespace

Signalen::Signalen(std::function<void(int)> actie) {
    if (pipe2(pijp.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
    melder_ = std::make_unique<QSocketNotifier>(pijp[0], QSocketNotifier::Read);
    QObject::connect(melder_.get(), &QSocketNotifier::activated, [actie = std::move(actie)] {
        unsigned char nummer = 0;
        if (read(pijp[0], &nummer, 1) == 1) actie(nummer);
    });
    zet(vang);
}

Signalen::~Signalen() {
    zet(SIG_DFL);
    melder_.reset();
    for (int& eind : pijp) {
        if (eind >= 0) close(eind);
        eind = -1;
    }
}

void Signalen::eindigDoor(int signaal) {
    signal(signaal, SIG_DFL);
    raise(signaal);
    std::_Exit(128 + signaal);
}

}  // namespace brixtel
