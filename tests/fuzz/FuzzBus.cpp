// SPDX-License-Identifier: MIT
#include <QDBusConnection>
#include <QDBusMessage>

#include "hosts/bureau/BusOntvanger.h"
#include "platform/time/MediaClock.h"
#include "tests/fuzz/FuzzDoelen.h"

namespace fuzz {

namespace {

using namespace brixtel;

const char* const kBeschrijving = R"(<node><interface name="nl.proef.Een">
<method name="Doe"/><method name="Zet"><arg type="d" direction="in"/></method>
<property name="Aan" type="b" access="read"/></interface></node>)";

const BusObject& object() {
    const auto goed = [](const QVariantList&) -> BusAntwoord { return QVariantList(); };
    static const BusObject een{.pad = QStringLiteral("/nl/proef"),
                               .beschrijving = QString::fromLatin1(kBeschrijving),
                               .doe = {{QStringLiteral("nl.proef.Een.Doe"), goed},
                                       {QStringLiteral("nl.proef.Een.Zet"), goed}},
                               .eigenschappen = {{QStringLiteral("nl.proef.Een.Aan"), true}},
                               .prijzen = {}};
    return een;
}

}  // namespace

void bus(Bytes bytes) {
    platform::ManualClock klok(1.0);
    int geroepen = 0;
    BusOntvanger ontvanger(klok, [&geroepen] { ++geroepen; });
    ontvanger.bied(object());
    // Without a bus, answers go nowhere.
    static const QDBusConnection nergens(QStringLiteral("geen"));
    for (const QByteArray& regel : alsArray(bytes).split('\n')) {
        const QByteArrayList delen = regel.split('\0');
        const auto deel = [&](qsizetype i) { return QString::fromUtf8(delen.value(i)); };
        QDBusMessage bericht = QDBusMessage::createMethodCall(QString(), deel(0), deel(1), deel(2));
        QVariantList waarden;
        for (qsizetype i = 3; i < delen.size(); ++i)
            waarden << deel(i);
        bericht.setArguments(waarden);
        (void)ontvanger.handleMessage(bericht, nergens);
        (void)ontvanger.introspect(deel(0));
    }
    int wachtend = 0;
    while (const auto oproep = ontvanger.neem()) {
        eis(oproep->bericht.member() == u"Doe" && oproep->bericht.path() == object().pad);
        (void)oproep->doe(oproep->bericht.arguments());
        ++wachtend;
    }
    eis(geroepen == wachtend);
}

}  // namespace fuzz
