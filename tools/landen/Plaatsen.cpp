// SPDX-License-Identifier: MIT
#include "tools/landen/Plaatsen.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>
#include <istream>
#include <sstream>
#include <stdexcept>

namespace brixtel {

namespace {

using namespace Qt::StringLiterals;

// Converts +DDMM, +DDDMM, +DDMMSS or +DDDMMSS (zone.tab) to degrees.
double graden(const std::string& tekst) {
    const bool seconden = tekst.size() > 6;
    const double getal = std::abs(std::stod(tekst));
    const double minuten = seconden ? getal / 100.0 : getal;
    const double heel = std::floor(minuten / 100.0);
    const double rest = minuten - heel * 100.0;  // MM, or MM.SS
    const double deel = std::floor(rest) + (rest - std::floor(rest)) / 0.6;
    return (tekst.front() == '-' ? -1.0 : 1.0) * (heel + deel / 60.0);
}

}  // namespace

std::map<std::string, std::string> leesIso(const QByteArray& json) {
    std::map<std::string, std::string> nummers;
    for (const QJsonValue land : QJsonDocument::fromJson(json).object()[u"3166-1"_s].toArray())
        nummers[land[u"alpha_2"_s].toString().toStdString()] =
            land[u"numeric"_s].toString().toStdString();
    if (nummers.empty()) throw std::runtime_error("geen landcodes");
    return nummers;
}

std::map<std::string, Plaats> leesZones(std::istream& in) {
    std::map<std::string, Plaats> zones;
    std::string regel;
    while (std::getline(in, regel)) {
        if (regel.empty() || regel.front() == '#') continue;
        std::istringstream velden(regel);
        std::string code, plek;
        velden >> code >> plek;
        const std::size_t tweede = plek.find_first_of("+-", 1);
        if (tweede == std::string::npos) throw std::runtime_error("geen plaats: " + regel);
        zones.try_emplace(code,
                          Plaats{graden(plek.substr(0, tweede)), graden(plek.substr(tweede))});
    }
    return zones;
}

Correcties leesCorrecties(std::istream& in) {
    Correcties correcties;
    std::string regel;
    while (std::getline(in, regel)) {
        std::istringstream velden(regel.substr(0, regel.find('#')));
        std::string woord, code, rest;
        if (!(velden >> woord)) continue;
        Plaats plaats;
        std::string land;
        if (woord == "zelfde" && velden >> code >> land && !(velden >> rest)) {
            correcties.zelfde[code] = land;
        } else if (woord == "plaats" && velden >> code >> plaats.breedte >> plaats.lengte &&
                   !(velden >> rest)) {
            correcties.plaatsen[code] = plaats;
        } else {
            throw std::runtime_error("correctie: " + regel);
        }
    }
    return correcties;
}

}  // namespace brixtel
