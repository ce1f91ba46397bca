// SPDX-License-Identifier: MIT
// The main of a test program with an X server of its own.
#pragma once

#include <gtest/gtest.h>

#include <QByteArray>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <functional>
#include <utility>
#include <vector>

#include "tests/support/Xvfb.h"

namespace steun {

struct EigenSchermOpties {
    const char* scherm = "640x480x24";
    // The server keeps its picture, Xvfb_screen0, in the home folder.
    bool metGlas = false;
    // Beside those that every such program gets.
    std::vector<std::pair<const char*, const char*>> omgeving;
};

// Runs the tests under a Programma that is connected to the server. Every folder of the
// user is a new, empty one, and there is no session bus. `begin` is called with the server
// and the home folder before there is an application.
template <typename Programma = QGuiApplication>
int draaiOpEigenScherm(int argc, char** argv, const EigenSchermOpties& opties,
                       const std::function<void(Xvfb&, const QString&)>& begin = {}) {
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
    const QTemporaryDir thuis;
    std::vector<std::string> meer;
    if (opties.metGlas) meer = {"-fbdir", thuis.path().toStdString()};
    Xvfb server(opties.scherm, meer);
    if (!server.isRunning()) return 1;
    for (const char* naam : {"HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
        qputenv(naam, QFile::encodeName(thuis.path()));
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/dev/null");
    qputenv("DISPLAY", server.display().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "xcb");
    for (const auto& [naam, waarde] : opties.omgeving)
        qputenv(naam, waarde);
    if (begin) begin(server, thuis.path());
    const Programma app(argc, argv);
    Programma::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}

}  // namespace steun
