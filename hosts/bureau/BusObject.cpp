// SPDX-License-Identifier: MIT
#include "hosts/bureau/BusObject.h"

#include <QXmlStreamReader>

namespace brixtel {

BusFout verkeerdeWaarde(const QString& tekst) {
    return {QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs"), tekst};
}

std::vector<BusMethode> methodenIn(const QString& beschrijving) {
    std::vector<BusMethode> methoden;
    QString interface;
    QXmlStreamReader xml(QStringLiteral("<node>") + beschrijving + QStringLiteral("</node>"));
    bool inMethode = false;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isEndElement() && xml.name() == u"method") inMethode = false;
        if (!xml.isStartElement()) continue;
        const auto kenmerk = [&](QLatin1String naam) {
            return xml.attributes().value(naam).toString();
        };
        if (xml.name() == u"interface") interface = kenmerk(QLatin1String("name"));
        if (xml.name() == u"method") {
            methoden.push_back({interface, kenmerk(QLatin1String("name")), {}});
            inMethode = true;
        }
        if (inMethode && xml.name() == u"arg" && kenmerk(QLatin1String("direction")) != u"out")
            methoden.back().handtekening += kenmerk(QLatin1String("type"));
    }
    return methoden;
}

}  // namespace brixtel
