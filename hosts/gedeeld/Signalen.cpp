// SPDX-License-Identifier: MIT
#include "hosts/gedeeld/Signalen.h"

#include <fcntl.h>
#include <signal.h>
#include <time.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <optional>

namespace brixtel {

namespace {

constexpr std::array kSignalen{SIGTERM, SIGINT, SIGHUP};
// A host allows 0.1 s for the end.
constexpr double kGeduld = 0.06;  // seconds, leaving some for the system
std::array<int, 2> pijp{-1, -1};
// The timer is the kernel's, since no thread of this program may get a turn any more.
std::optional<timer_t> wekker;
volatile std::sig_atomic_t eerste = 0;

void zetWekker(double seconden) {
    const auto heel = static_cast<time_t>(seconden);
    const auto rest = static_cast<long>((seconden - static_cast<double>(heel)) * 1e9);
    const itimerspec over{.it_interval = {}, .it_value = {.tv_sec = heel, .tv_nsec = rest}};
    if (wekker) timer_settime(*wekker, 0, &over, nullptr);
}

// The safe work of a signal handler: it passes the number on, and starts the timer that
// enforces the end.
void vang(int signaal) {
    const int bewaard = errno;
    const auto nummer = static_cast<unsigned char>(signaal);
    [[maybe_unused]] const auto geschreven = write(pijp[1], &nummer, 1);
    if (eerste == 0) {
        eerste = signaal;
        zetWekker(kGeduld);
    }
    errno = bewaard;
}

void vangOpnieuw(int signaal) {
    const int bewaard = errno;
    const auto nummer = static_cast<unsigned char>(signaal);
    [[maybe_unused]] const auto geschreven = write(pijp[1], &nummer, 1);
    errno = bewaard;
}

void geduldIsOp(int) {
    if (eerste == 0) _exit(0);
    signal(eerste, SIG_DFL);
    kill(getpid(), eerste);
}

void maakWekker() {
    if (wekker) return;
    struct sigaction actie {};
    actie.sa_handler = geduldIsOp;
    sigaction(SIGALRM, &actie, nullptr);
    sigevent hoe{};
    hoe.sigev_notify = SIGEV_SIGNAL;
    hoe.sigev_signo = SIGALRM;
    timer_t nieuw{};
    if (timer_create(CLOCK_MONOTONIC, &hoe, &nieuw) == 0) wekker = nieuw;
}

void zet(void (*doe)(int), void (*opnieuw)(int)) {
    struct sigaction actie {};
    actie.sa_handler = doe;
    for (const int signaal : kSignalen)
        sigaction(signaal, &actie, nullptr);
    actie.sa_handler = opnieuw;
    actie.sa_flags = SA_RESTART;
    sigaction(SIGUSR1, &actie, nullptr);
}

void laatDoor() {
    sigset_t alle;
    sigemptyset(&alle);
    for (const int signaal : kSignalen)
        sigaddset(&alle, signaal);
    sigaddset(&alle, SIGUSR1);
    sigaddset(&alle, SIGALRM);
    pthread_sigmask(SIG_UNBLOCK, &alle, nullptr);
}

// The signal that the main thread acts on, of all since the last call, or 0. An end goes
// before a restart, and many restarts are one.
int leegPijp() {
    int signaal = 0;
    std::array<unsigned char, 256> nummers{};
    for (;;) {
        const ssize_t aantal = read(pijp[0], nummers.data(), nummers.size());
        if (aantal <= 0) return signaal;
        for (ssize_t i = 0; i < aantal; ++i) {
            const int nummer = nummers[static_cast<std::size_t>(i)];
            if (signaal == 0 || signaal == SIGUSR1) signaal = nummer;
        }
    }
}

}  // namespace

Signalen::Signalen(std::function<void(int)> einde, std::function<void()> opnieuw) {
    if (pipe2(pijp.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
    melder_ = std::make_unique<QSocketNotifier>(pijp[0], QSocketNotifier::Read);
    QObject::connect(melder_.get(), &QSocketNotifier::activated,
                     [einde = std::move(einde), opnieuw = std::move(opnieuw)] {
                         const int signaal = leegPijp();
                         if (signaal != 0 && signaal != SIGUSR1)
                             einde(signaal);
                         else if (signaal != 0 && opnieuw)
                             opnieuw();
                     });
    maakWekker();
    zet(vang, vangOpnieuw);
    laatDoor();
}

Signalen::~Signalen() {
    zet(SIG_DFL, SIG_IGN);
    melder_.reset();
    for (int& eind : pijp) {
        if (eind >= 0) close(eind);
        eind = -1;
    }
}

void Signalen::negeerOpnieuw() {
    signal(SIGUSR1, SIG_IGN);
}

void Signalen::negeerVerbreking() {
    signal(SIGPIPE, SIG_IGN);
}

void Signalen::haast(Haast hoe) {
    constexpr double kRustig = 1.5;  // seconds
    if (eerste == 0) zetWekker(hoe == Haast::Rustig ? kRustig : kGeduld);
}

void Signalen::eindigDoor(int signaal) {
    signal(signaal, SIG_DFL);
    raise(signaal);
    std::_Exit(128 + signaal);
}

}  // namespace brixtel
