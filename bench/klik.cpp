// SPDX-License-Identifier: MIT
// The time that a click takes to the program below the desktop rain, with and
// without the rain: from the moment at which the server gets the click to the
// moment at which the program below hears of it. Runs an X server, a window
// manager and a compositor of its own. Needs the tests to be built: their
// program shows the rain.
//
// Usage: klik [--maat=1920x1080] [--kliks=200]
#include <poll.h>
#include <xcb/xtest.h>

#include <QCoreApplication>
#include <QProcess>
#include <QProcessEnvironment>
#include <chrono>
#include <cstdio>
#include <optional>

#include "bench/Kliktijden.h"
#include "tests/support/Openbox.h"
#include "tests/support/Until.h"
#include "tests/support/Xvfb.h"

namespace {

using Tijd = std::chrono::steady_clock;

constexpr int kGeduld = 2000;  // milliseconds: the longest wait for a click

void begin(QProcess& proces, const Xvfb& server, const QString& programma,
           const QStringList& woorden) {
    QProcessEnvironment omgeving = QProcessEnvironment::systemEnvironment();
    omgeving.insert(QStringLiteral("DISPLAY"), server.display());
    proces.setProcessEnvironment(omgeving);
    proces.start(programma, woorden);
    if (proces.waitForStarted()) return;
    std::fprintf(stderr, "klik: %s ontbreekt\n", qPrintable(programma));
    std::exit(1);
}

void eindig(QProcess& proces) {
    proces.kill();
    proces.waitForFinished();
}

// A client with a window in the middle, and a client that acts as the mouse.
class Proef {
  public:
    explicit Proef(const Xvfb& server)
        : hand_(xcb_connect(qPrintable(server.display()), nullptr)),
          programma_(xcb_connect(qPrintable(server.display()), nullptr)),
          wortel_(server.screen().root) {
        const std::uint32_t waarden[] = {0xffffff, XCB_EVENT_MASK_BUTTON_PRESS};
        const xcb_window_t venster = xcb_generate_id(programma_);
        xcb_create_window(programma_, XCB_COPY_FROM_PARENT, venster, wortel_, 100, 100, 400, 300, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, waarden);
        xcb_map_window(programma_, venster);
        xcb_flush(programma_);
        // Waits until the window stands in the window manager's frame.
        until([&] { return isBeheerd(venster) && isTeZien(venster); });
        xcb_warp_pointer(programma_, XCB_NONE, venster, 0, 0, 0, 0, 200, 150);
        xcb_flush(programma_);
    }
    ~Proef() {
        xcb_disconnect(programma_);
        xcb_disconnect(hand_);
    }
    Proef(const Proef&) = delete;
    Proef& operator=(const Proef&) = delete;

    // Milliseconds; none if the click never came.
    std::optional<double> klik() {
        const Tijd::time_point begin = Tijd::now();
        xcb_test_fake_input(hand_, XCB_BUTTON_PRESS, 1, 0, wortel_, 0, 0, 0);
        xcb_flush(hand_);
        const bool kwam = wacht(kGeduld);
        const std::chrono::duration<double, std::milli> duur = Tijd::now() - begin;
        xcb_test_fake_input(hand_, XCB_BUTTON_RELEASE, 1, 0, wortel_, 0, 0, 0);
        xcb_flush(hand_);
        return kwam ? std::optional(duur.count()) : std::nullopt;
    }

  private:
    [[nodiscard]] bool isTeZien(xcb_window_t venster) const {
        auto* const staat = xcb_get_window_attributes_reply(
            programma_, xcb_get_window_attributes(programma_, venster), nullptr);
        const bool is = staat && staat->map_state == XCB_MAP_STATE_VIEWABLE;
        std::free(staat);
        return is;
    }
    [[nodiscard]] bool isBeheerd(xcb_window_t venster) const {
        auto* const boom =
            xcb_query_tree_reply(programma_, xcb_query_tree(programma_, venster), nullptr);
        const bool is = boom && boom->parent != wortel_;
        std::free(boom);
        return is;
    }
    bool wacht(int milliseconden) {
        pollfd oor{.fd = xcb_get_file_descriptor(programma_), .events = POLLIN, .revents = 0};
        for (;;) {
            while (xcb_generic_event_t* const bericht = xcb_poll_for_event(programma_)) {
                const bool is = (bericht->response_type & 0x7f) == XCB_BUTTON_PRESS;
                std::free(bericht);
                if (is) return true;
            }
            if (poll(&oor, 1, milliseconden) <= 0) return false;
        }
    }

    xcb_connection_t* const hand_;
    xcb_connection_t* const programma_;
    const xcb_window_t wortel_;
};

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication app(argc, argv);
    QString maat = QStringLiteral("1920x1080");
    int kliks = 200;
    for (const QString& woord : QCoreApplication::arguments().mid(1)) {
        const QString waarde = woord.section(u'=', 1);
        if (woord.startsWith(QLatin1String("--maat="))) maat = waarde;
        if (woord.startsWith(QLatin1String("--kliks="))) kliks = waarde.toInt();
    }
    const Xvfb server((maat + QStringLiteral("x24")).toStdString());
    if (!server.isRunning()) return 1;
    const Openbox beheer(server.display());
    if (!beheer.isReady()) return 1;
    QProcess picom;
    begin(picom, server, QStringLiteral("picom"),
          {QStringLiteral("--backend"), QStringLiteral("xrender"), QStringLiteral("--config"),
           QStringLiteral("/dev/null")});
    Kliktijden tijden;
    {
        Proef proef(server);
        const auto maakRegen = [&] {
            Regen regen(new QProcess);
            begin(*regen, server,
                  QCoreApplication::applicationDirPath() +
                      QStringLiteral("/../tests/centrale_programma"),
                  {QStringLiteral("regen")});
            return regen->waitForReadyRead(20'000) ? std::move(regen) : nullptr;
        };
        if (!meetKliks(
                kliks, maakRegen, [&] { return proef.klik(); }, tijden))
            return 1;
    }
    std::printf("%s under openbox and picom; ms until the program below has the click\n",
                qPrintable(maat));
    druk(tijden);
    eindig(picom);
    return 0;
}
