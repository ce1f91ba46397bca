// SPDX-License-Identifier: MIT
#include "hosts/gedeeld/Voorraad.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <mutex>
#include <new>
#include <string_view>
#include <system_error>

namespace brixtel {

namespace {

constexpr std::size_t kDraden = 8;
constexpr std::size_t kDescriptors = 32;

// Whether several threads can exist at the same time. The threads end by themselves: to wait for
// them takes a turn of the scheduler each, several milliseconds on a busy machine.
bool zijnErDraden() {
    static std::mutex poort;
    const auto wacht = [](void*) -> void* {
        const std::lock_guard door(poort);
        return nullptr;
    };
    pthread_attr_t los;
    if (pthread_attr_init(&los) != 0) return false;
    pthread_attr_setdetachstate(&los, PTHREAD_CREATE_DETACHED);
    std::size_t gemaakt = 0;
    {
        const std::lock_guard dicht(poort);
        pthread_t draad{};
        while (gemaakt < kDraden && pthread_create(&draad, &los, wacht, nullptr) == 0)
            ++gemaakt;
    }
    pthread_attr_destroy(&los);
    return gemaakt == kDraden;
}

bool zijnErDescriptors() {
    std::array<int, kDescriptors> nummers{};
    std::size_t open = 0;
    while (open < kDescriptors && (nummers[open] = ::open("/dev/null", O_RDONLY | O_CLOEXEC)) >= 0)
        ++open;
    for (std::size_t i = 0; i < open; ++i)
        close(nummers[i]);
    return open == kDescriptors;
}

bool isErRuimte(std::size_t bytes) {
    void* const ruimte = mmap(nullptr, bytes, PROT_READ | PROT_WRITE,
                              MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    return ruimte != MAP_FAILED && munmap(ruimte, bytes) == 0;
}

const char* naam = "brixtel";

iovec stuk(std::string_view tekst) {
    return {.iov_base = const_cast<char*>(tekst.data()), .iov_len = tekst.size()};
}

constexpr std::string_view kGeheugen = "er is te weinig geheugen";
constexpr std::string_view kGeweigerd = "het systeem weigert een draad of een ander middel";

// Ends without memory: the text of the line exists beforehand. Where several threads get
// here, the first one writes.
[[noreturn]] void eindigOm(std::string_view waarom) {
    static std::atomic_flag geschreven;
    if (geschreven.test_and_set())
        for (;;)
            pause();
    const std::array regel{stuk(naam), stuk(": "), stuk(waarom), stuk("\n")};
    [[maybe_unused]] const auto aantal = writev(STDERR_FILENO, regel.data(), regel.size());
    std::_Exit(1);
}

[[noreturn]] void eindig() {
    std::string_view waarom = "er ging iets mis in het programma";
    try {
        if (const auto nu = std::current_exception()) std::rethrow_exception(nu);
    } catch (const std::bad_alloc&) {
        waarom = kGeheugen;
    } catch (const std::system_error&) {
        waarom = kGeweigerd;
    } catch (...) {
    }
    eindigOm(waarom);
}

}  // namespace

QString tekort(std::size_t ruimte) {
    if (!zijnErDescriptors())
        return QStringLiteral("het systeem staat te weinig open bestanden toe");
    if (!isErRuimte(ruimte)) return QStringLiteral("het systeem staat te weinig geheugen toe");
    if (!zijnErDraden()) return QStringLiteral("het systeem staat te weinig draden toe");
    return {};
}

void eindigMetEenRegel(const char* programma) {
    naam = programma;
    std::set_terminate(eindig);
    // Qt 6.4 waits for an answer without looking whether the bus took the question, and
    // libdbus aborts the process then.
    setenv("DBUS_FATAL_WARNINGS", "0", 0);
}

void eindigZonderDraad(const QString& bericht) {
    if (bericht.startsWith(QLatin1String("QThread::start: Thread creation error")))
        eindigOm(kGeweigerd);
}

void eindigZonderGeheugen() {
    eindigOm(kGeheugen);
}

}  // namespace brixtel
