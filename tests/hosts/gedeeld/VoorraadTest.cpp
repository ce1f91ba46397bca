// SPDX-License-Identifier: MIT
#include "hosts/gedeeld/Voorraad.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <QThread>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <system_error>
#include <thread>

using brixtel::tekort;

namespace {

// The kernel counts no processes of root.
void wordNiemand() {
    constexpr uid_t kNobody = 65534;
    if (geteuid() == 0 && setresuid(kNobody, kNobody, kNobody) != 0) std::abort();
}

// Exits with 1 after saying what is short, else with 0.
[[noreturn]] void kijk(int wat, rlim_t hoogstens) {
    if (wat == RLIMIT_NPROC) wordNiemand();
    const rlimit grens{hoogstens, hoogstens};
    setrlimit(static_cast<__rlimit_resource>(wat), &grens);
    const QString mis = tekort();
    std::fputs(qUtf8Printable(mis), stderr);
    std::_Exit(mis.isEmpty() ? 0 : 1);
}

TEST(Voorraad, OrdinarilyNothingIsShort) {
    EXPECT_EQ(tekort(), QString());
    EXPECT_EQ(tekort(), QString());
}

TEST(Voorraad, DescriptorsThatAreRefusedAreTold) {
    EXPECT_EXIT(kijk(RLIMIT_NOFILE, 13), testing::ExitedWithCode(1), "te weinig open bestanden");
    EXPECT_EXIT(kijk(RLIMIT_NOFILE, 256), testing::ExitedWithCode(0), "");
}

TEST(Voorraad, ThreadsThatAreRefusedAreTold) {
    EXPECT_EXIT(kijk(RLIMIT_NPROC, 1), testing::ExitedWithCode(1), "te weinig draden");
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST(Voorraad, MemoryThatIsRefusedIsTold) {
    EXPECT_EXIT(kijk(RLIMIT_AS, 100 << 20), testing::ExitedWithCode(1), "te weinig geheugen");
}
#endif

[[noreturn]] void gooiOpEenDraad(bool geheugen) {
    brixtel::eindigMetEenRegel("proef");
    std::thread([geheugen] {
        if (geheugen) throw std::bad_alloc();
        throw std::system_error(EAGAIN, std::generic_category());
    }).join();
    std::_Exit(0);
}

TEST(Voorraad, AnExceptionThatNobodyCatchesIsOneLineAndExitOne) {
    EXPECT_EXIT(gooiOpEenDraad(true), testing::ExitedWithCode(1),
                "^proef: er is te weinig geheugen\n$");
    EXPECT_EXIT(gooiOpEenDraad(false), testing::ExitedWithCode(1),
                "^proef: het systeem weigert een draad of een ander middel\n$");
}

// A thread of Qt's own where the kernel refuses it, with Qt's messages as the programs take them.
[[noreturn]] void startDraadVanQt() {
    brixtel::eindigMetEenRegel("proef");
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& regel) {
        brixtel::eindigZonderDraad(regel);
    });
    qWarning("een andere waarschuwing: Thread creation error");
    wordNiemand();
    const rlimit geen{1, 1};
    setrlimit(RLIMIT_NPROC, &geen);
    QThread draad;
    draad.start();
    std::_Exit(0);
}

TEST(Voorraad, AThreadThatIsRefusedToQtIsOneLineAndExitOne) {
    EXPECT_EXIT(startDraadVanQt(), testing::ExitedWithCode(1),
                "^proef: het systeem weigert een draad of een ander middel\n$");
}

}  // namespace
