// SPDX-License-Identifier: MIT
// Both programs whole, as an ordinary user to whom the kernel refuses processes, memory or
// descriptors: one line and exit status 1, or pictures; never a hang or a crash.
//
// BRIXTEL_GRENZEN=N tries every limit on processes and on descriptors up to N.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <QImage>
#include <algorithm>
#include <set>
#include <string>

#include "tests/hosts/saver/Programma.h"
#include "tests/hosts/saver/Zaden.h"
#include "tests/support/DBusDaemon.h"

using brixtel::bureauPad;
using brixtel::Programma;
using brixtel::programmaPad;

namespace {

constexpr rlim_t kKiB = 1024;
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kGeheugenIsVrij = false;  // a sanitizer takes terabytes of address space
#else
constexpr bool kGeheugenIsVrij = true;
#endif

struct Grens {
    __rlimit_resource wat;
    rlim_t hoogstens;
    bool weigert = false;   // too little for any picture
    bool volstaat = false;  // enough for pictures
};

constexpr uid_t kNobody = 65534;

// The kernel counts no processes of root.
void wordGewoon() {
    if (geteuid() == 0 && setresuid(kNobody, kNobody, kNobody) != 0) _exit(127);
}

std::vector<Grens> alleGrenzen() {
    std::set<rlim_t> processen{1, 4, 8, 11, 12, 14, 80}, bestanden{6, 8, 10, 13, 33, 40, 100};
    for (int i = 1; i <= steun::uitOmgeving("BRIXTEL_GRENZEN", 0); ++i) {
        processen.insert(static_cast<rlim_t>(i));
        bestanden.insert(static_cast<rlim_t>(i + 5));  // the loader needs some
    }
    std::vector<Grens> alle;
    for (const rlim_t n : processen)
        // The kernel counts all that the user runs, which only nobody is known to run little of.
        alle.push_back({RLIMIT_NPROC, n, n <= 8, n >= 80 && geteuid() == 0});
    for (const rlim_t n : bestanden)
        alle.push_back({RLIMIT_NOFILE, n, n <= 13, n >= 100});
    if (!kGeheugenIsVrij) return alle;
    alle.push_back({RLIMIT_AS, 102400 * kKiB, true});
    alle.push_back({RLIMIT_AS, 400000 * kKiB});
    alle.push_back({RLIMIT_AS, 1000000 * kKiB});
    alle.push_back({RLIMIT_AS, 3000000 * kKiB, false, true});
    return alle;
}

class Grenzen : public testing::Test {
  protected:
    // Any user may use it.
    Xvfb server_{"320x240x24", {"-ac"}};

    void SetUp() override { ASSERT_TRUE(server_.isRunning()); }

    // Waits until the server has taken the windows of the program before off the screen.
    void wachtOpZwart() const {
        ASSERT_TRUE(until([&] { return !toontBeeld(); }));
    }
    void begin(Programma& programma, const DBusDaemon& bus, const std::optional<Grens>& grens,
               const char* woorden) const {
        programma.zet(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address());
        programma.zet(QStringLiteral("PULSE_SERVER"), QStringLiteral("unix:/nonexistent"));
        // The search for leaks needs a thread of its own.
        programma.zet(QStringLiteral("ASAN_OPTIONS"),
                      qEnvironmentVariable("ASAN_OPTIONS") + QStringLiteral(":detect_leaks=0"));
        if (geteuid() == 0) {
            EXPECT_EQ(chown(qPrintable(programma.map()), kNobody, static_cast<gid_t>(-1)), 0);
        }
        programma.wijzig([grens] {
            wordGewoon();
            if (!grens) return;
            const rlimit hoogstens{grens->hoogstens, grens->hoogstens};
            setrlimit(grens->wat, &hoogstens);
        });
        programma.start(QString::fromLatin1(woorden).split(u' '));
    }
    static void isEenRegel(Programma& programma, const char* naam) {
        EXPECT_FALSE(programma.doorSignaal()) << programma.uitgang();
        EXPECT_EQ(programma.uitgang(), 1);
        const QByteArray fouten = programma.fouten();
        EXPECT_EQ(fouten.count('\n'), 1) << fouten.constData();
        EXPECT_TRUE(fouten.startsWith(naam)) << fouten.constData();
    }
    // The exit status of a request that has no limits.
    [[nodiscard]] int vraag(const DBusDaemon& bus, const char* wat) const {
        Programma klant(server_.display(), bureauPad());
        begin(klant, bus, std::nullopt, wat);
        return klant.wacht() && !klant.doorSignaal() ? klant.uitgang() : -1;
    }

    // Whether something is lit on the screen, whose background is black.
    [[nodiscard]] bool toontBeeld() const {
        const QImage beeld =
            server_.picture(server_.screen().root).convertToFormat(QImage::Format_Grayscale8);
        for (int y = 0; y < beeld.height(); ++y)
            if (std::any_of(beeld.constScanLine(y), beeld.constScanLine(y) + beeld.width(),
                            [](uchar licht) { return licht > 0; }))
                return true;
        return false;
    }
    void beginEigenaar(const Grens& grens) const {
        wachtOpZwart();
        const DBusDaemon bus(wordGewoon);
        ASSERT_FALSE(bus.address().isEmpty());
        Programma eigenaar(server_.display(), bureauPad());
        begin(eigenaar, bus, grens, "--toon-zwart=bol");
        ASSERT_TRUE(until([&] { return !eigenaar.loopt() || vraag(bus, "--stand") == 0; }))
            << "hangt";
        if (!eigenaar.loopt()) {
            EXPECT_FALSE(grens.volstaat);
            return isEenRegel(eigenaar, "brixtel-bureau: ");
        }
        EXPECT_FALSE(grens.weigert);
        if (grens.volstaat) {
            EXPECT_TRUE(until([&] { return toontBeeld(); }));
        }
        EXPECT_EQ(vraag(bus, "--stop"), 0);
        EXPECT_TRUE(eigenaar.wacht()) << "hangt";
        EXPECT_FALSE(eigenaar.doorSignaal()) << eigenaar.uitgang();
        EXPECT_FALSE(grens.volstaat && eigenaar.uitgang() != 0);
        if (eigenaar.uitgang() != 0) return isEenRegel(eigenaar, "brixtel-bureau: ");
        EXPECT_EQ(eigenaar.fouten(), QByteArray());
    }
    void beginSaver(const Grens& grens) const {
        wachtOpZwart();
        const DBusDaemon bus(wordGewoon);
        Programma saver(server_.display(), programmaPad());
        begin(saver, bus, grens, "--keuze=bol");
        ASSERT_TRUE(until([&] { return !saver.loopt() || toontBeeld(); })) << "hangt";
        if (!saver.loopt()) {
            EXPECT_FALSE(grens.volstaat);
            return isEenRegel(saver, "brixtel-saver: ");
        }
        EXPECT_FALSE(grens.weigert);
        ::kill(static_cast<pid_t>(saver.nummer()), SIGTERM);
        ASSERT_TRUE(saver.wacht()) << "hangt";
        EXPECT_TRUE(saver.doorSignaal());
        EXPECT_EQ(saver.uitgang(), SIGTERM);
        EXPECT_EQ(saver.fouten(), QByteArray());
    }
};

TEST_F(Grenzen, TheOwnerSaysWhatIsRefusedOrWorks) {
    for (const Grens& grens : alleGrenzen()) {
        SCOPED_TRACE(testing::Message() << "grens " << grens.wat << ": " << grens.hoogstens);
        beginEigenaar(grens);
    }
}

TEST_F(Grenzen, TheSaverSaysWhatIsRefusedOrWorks) {
    for (const Grens& grens : alleGrenzen()) {
        SCOPED_TRACE(testing::Message() << "grens " << grens.wat << ": " << grens.hoogstens);
        beginSaver(grens);
    }
}

}  // namespace
