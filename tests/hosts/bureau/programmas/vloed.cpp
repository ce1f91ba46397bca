// SPDX-License-Identifier: MIT
// Calls the owner's service as fast as the bus takes it and waits for no answer,
// until it is killed. Prints a line for every thousand calls.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <cstdio>

int main(int argc, char** argv) {
    const QCoreApplication app(argc, argv);
    const QDBusConnection bus =
        QDBusConnection::connectToBus(QString::fromLocal8Bit(argv[1]), QStringLiteral("vloed"));
    const QString naam = QStringLiteral("nl.groenlicht.brixtel.Bureau");
    const QString pad = QStringLiteral("/nl/groenlicht/brixtel/Bureau");
    const QString eigenschappen = QStringLiteral("org.freedesktop.DBus.Properties");
    QDBusMessage berichten[] = {
        QDBusMessage::createMethodCall(naam, pad, naam, QStringLiteral("WisselRegen")),
        QDBusMessage::createMethodCall(naam, pad, naam, QStringLiteral("ToonZwart")),
        QDBusMessage::createMethodCall(naam, pad, naam, QStringLiteral("ZetSnelheid")),
        QDBusMessage::createMethodCall(naam, pad, naam, QStringLiteral("Onzin")),
        QDBusMessage::createMethodCall(naam, pad, eigenschappen, QStringLiteral("GetAll")),
    };
    berichten[1] << QStringLiteral("onzin");
    berichten[2] << 1.5;
    berichten[4] << naam;
    for (long keer = 1; bus.isConnected(); ++keer) {
        const QDBusMessage& bericht = berichten[keer % 5];
        // Every hundredth is waited for, so that the bus itself is not drowned.
        if (keer % 100 == 0)
            bus.call(bericht, QDBus::Block, 60'000);
        else
            bus.send(bericht);
        if (keer % 1000 == 0) {
            std::puts("duizend");
            std::fflush(stdout);
        }
    }
    return 0;
}
