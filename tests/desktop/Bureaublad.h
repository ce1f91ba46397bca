// SPDX-License-Identifier: MIT
// A desktop of a test's own: an X server with openbox and, when it is started,
// picom; the tools that a user's hands stand for.
#pragma once

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <cstring>
#include <initializer_list>

#include "tests/support/Openbox.h"
#include "tests/support/Until.h"
#include "tests/support/Xvfb.h"

namespace brixtel {

// The server that Qt is connected to; made by the test program's main().
inline Xvfb* scherm = nullptr;

class Bureaublad {
  public:
    Bureaublad() = default;
    ~Bureaublad() { eindig(compositor); }
    Bureaublad(const Bureaublad&) = delete;
    Bureaublad& operator=(const Bureaublad&) = delete;

    [[nodiscard]] bool isKlaar() const { return beheer.isReady(); }
    void stopBeheer() { beheer.stop(); }
    [[nodiscard]] bool startCompositor() {
        begin(compositor, QStringLiteral("picom"),
              {QStringLiteral("--backend"), QStringLiteral("xrender"), QStringLiteral("--config"),
               QStringLiteral("/dev/null")});
        return until([] { return isDoorzichtig(); });
    }
    [[nodiscard]] bool stopCompositor() {
        eindig(compositor);
        return until([] { return !isDoorzichtig(); });
    }

    static void begin(QProcess& proces, const QString& naam, const QStringList& woorden) {
        QProcessEnvironment omgeving = QProcessEnvironment::systemEnvironment();
        omgeving.insert(QStringLiteral("DISPLAY"), scherm->display());
        proces.setProcessEnvironment(omgeving);
        proces.start(naam, woorden);
        proces.waitForStarted(10'000);
    }
    static void eindig(QProcess& proces) {
        if (proces.state() == QProcess::NotRunning) return;
        proces.terminate();
        if (!proces.waitForFinished(10'000)) proces.kill();
        proces.waitForFinished(10'000);
    }
    // Runs a tool and returns what it prints.
    static QByteArray hulp(const QString& regel) {
        QProcess proces;
        QStringList woorden = regel.split(u' ');
        const QString naam = woorden.takeFirst();
        begin(proces, naam, woorden);
        proces.waitForFinished(20'000);
        return proces.readAllStandardOutput();
    }
    static xcb_window_t actief() {
        return hulp(QStringLiteral("xdotool getactivewindow")).trimmed().toUInt();
    }
    // The windows that the window manager knows of.
    static QList<xcb_window_t> beheerde() {
        auto* const antwoord = xcb_get_property_reply(
            scherm->connection(),
            xcb_get_property(scherm->connection(), 0, scherm->screen().root,
                             atoom("_NET_CLIENT_LIST"), XCB_ATOM_WINDOW, 0, 1024),
            nullptr);
        QList<xcb_window_t> alle;
        if (antwoord) {
            const auto* const eerste =
                static_cast<const xcb_window_t*>(xcb_get_property_value(antwoord));
            alle = {eerste, eerste + xcb_get_property_value_length(antwoord) / 4};
        }
        std::free(antwoord);
        return alle;
    }
    static xcb_window_t metToetsen() {
        auto* const antwoord = xcb_get_input_focus_reply(
            scherm->connection(), xcb_get_input_focus(scherm->connection()), nullptr);
        const xcb_window_t venster = antwoord ? antwoord->focus : 0;
        std::free(antwoord);
        return venster;
    }
    static xcb_atom_t atoom(const char* naam) {
        auto* const antwoord = xcb_intern_atom_reply(
            scherm->connection(),
            xcb_intern_atom(scherm->connection(), 0, std::uint16_t(std::strlen(naam)), naam),
            nullptr);
        const xcb_atom_t atoom = antwoord->atom;
        std::free(antwoord);
        return atoom;
    }
    // Asks the window manager for something, as programs do.
    static void vraagBeheer(xcb_window_t venster, const char* wat,
                            std::initializer_list<std::uint32_t> getallen) {
        xcb_client_message_event_t vraag{};
        vraag.response_type = XCB_CLIENT_MESSAGE;
        vraag.format = 32;
        vraag.window = venster;
        vraag.type = atoom(wat);
        std::copy(getallen.begin(), getallen.end(), vraag.data.data32);
        xcb_send_event(scherm->connection(), 0, scherm->screen().root,
                       XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&vraag));
        xcb_flush(scherm->connection());
    }
    static bool isDoorzichtig() {
        auto* const antwoord = xcb_get_selection_owner_reply(
            scherm->connection(),
            xcb_get_selection_owner(scherm->connection(), atoom("_NET_WM_CM_S0")), nullptr);
        const bool is = antwoord && antwoord->owner != XCB_NONE;
        std::free(antwoord);
        return is;
    }

  private:
    Openbox beheer{scherm->display()};
    QProcess compositor;
};

// A real program with one window, whose events it prints: xev.
class VreemdProgramma {
  public:
    VreemdProgramma() {
        proces.setProcessChannelMode(QProcess::MergedChannels);
        Bureaublad::begin(
            // By itself it does not always write out what it has said.
            proces, QStringLiteral("stdbuf"),
            {QStringLiteral("-oL"), QStringLiteral("xev"), QStringLiteral("-geometry"),
             QStringLiteral("200x150+40+60"), QStringLiteral("-event"), QStringLiteral("button"),
             QStringLiteral("-event"), QStringLiteral("keyboard"), QStringLiteral("-event"),
             QStringLiteral("structure")});
        if (!until([this] { return zegt("Outer window is") > 0; }))
            ADD_FAILURE() << "xev " << proces.state() << " said: " << gezegd.constData();
        // The program's first words are "Outer window is 0x...".
        const qsizetype plaats = gezegd.indexOf("0x");
        venster = gezegd.mid(plaats, gezegd.indexOf(',', plaats) - plaats).toUInt(nullptr, 16);
        // Until it is managed, nobody hears the wish; and the manager tells the server
        // before it tells the others.
        if (!until([this] { return Bureaublad::beheerde().contains(venster); }))
            ADD_FAILURE() << std::hex << venster << " is not managed";
        Bureaublad::vraagBeheer(venster, "_NET_ACTIVE_WINDOW", {2});
        if (!until([this] {
                return Bureaublad::metToetsen() == venster && Bureaublad::actief() == venster;
            }))
            ADD_FAILURE() << std::hex << venster << " has no keyboard but "
                          << Bureaublad::metToetsen();
    }
    ~VreemdProgramma() { Bureaublad::eindig(proces); }
    VreemdProgramma(const VreemdProgramma&) = delete;
    VreemdProgramma& operator=(const VreemdProgramma&) = delete;

    // The number of times that the program has printed this so far.
    int zegt(const char* tekst) {
        gezegd += proces.readAll();
        return int(gezegd.count(tekst));
    }

    xcb_window_t venster = 0;

  private:
    QProcess proces;
    QByteArray gezegd;
};

}  // namespace brixtel
