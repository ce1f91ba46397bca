// SPDX-License-Identifier: MIT
#include "tools/landen/Kaart.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>
#include <glm/vec3.hpp>
#include <numbers>
#include <stdexcept>

namespace brixtel {

namespace {

using namespace Qt::StringLiterals;
using Ring = std::vector<Plaats>;
using Stuk = std::vector<Ring>;

constexpr double kRadialen = std::numbers::pi / 180.0;

glm::dvec3 opBol(Plaats p) {
    const double b = p.breedte * kRadialen;
    const double l = p.lengte * kRadialen;
    return {std::cos(b) * std::cos(l), std::cos(b) * std::sin(l), std::sin(b)};
}

Plaats plaatsVan(glm::dvec3 v) {
    return {std::atan2(v.z, std::hypot(v.x, v.y)) / kRadialen, std::atan2(v.y, v.x) / kRadialen};
}

// The ring's area times its centre of mass on the sphere, pointing towards the
// ring for either direction of travel.
glm::dvec3 gewicht(const Ring& ring) {
    glm::dvec3 som(0.0);
    glm::dvec3 kant(0.0);
    for (std::size_t i = 0; i + 1 < ring.size(); ++i) {
        const glm::dvec3 a = opBol(ring[i]);
        const glm::dvec3 b = opBol(ring[i + 1]);
        const glm::dvec3 haaks = glm::cross(a, b);
        const double sinus = glm::length(haaks);
        if (sinus > 0.0) som += haaks * (std::atan2(sinus, glm::dot(a, b)) / sinus / 2.0);
        kant += a;
    }
    return glm::dot(som, kant) < 0.0 ? -som : som;
}

glm::dvec3 gewicht(const Stuk& stuk) {
    glm::dvec3 som = gewicht(stuk.front());
    for (std::size_t i = 1; i < stuk.size(); ++i)
        som -= gewicht(stuk[i]);
    return som;
}

// The longitude nearest to `bij` that means the same meridian.
double nabij(double lengte, double bij) {
    return lengte - 360.0 * std::round((lengte - bij) / 360.0);
}

// Unwraps outlines that jump at the 180th meridian.
Stuk doorlopend(Stuk stuk) {
    const double begin = stuk.front().front().lengte;
    for (Ring& ring : stuk) {
        double vorige = begin;
        for (Plaats& p : ring)
            vorige = p.lengte = nabij(p.lengte, vorige);
    }
    return stuk;
}

bool omPool(const Ring& doorlopende) {
    return std::abs(doorlopende.front().lengte - doorlopende.back().lengte) > 180.0;
}

// The crossings of the parallel with the outlines, from west to east.
std::vector<double> snijpunten(const Stuk& stuk, double breedte) {
    std::vector<double> lengten;
    for (const Ring& ring : stuk) {
        for (std::size_t i = 0; i + 1 < ring.size(); ++i) {
            const Plaats a = ring[i];
            const Plaats b = ring[i + 1];
            if ((a.breedte > breedte) == (b.breedte > breedte)) continue;
            const double deel = (breedte - a.breedte) / (b.breedte - a.breedte);
            lengten.push_back(a.lengte + deel * (b.lengte - a.lengte));
        }
    }
    std::sort(lengten.begin(), lengten.end());
    return lengten;
}

Plaats binnen(const Stuk& stuk, Plaats p) {
    const Stuk vorm = doorlopend(stuk);
    if (omPool(vorm.front())) return p;
    const std::vector<double> lengten = snijpunten(vorm, p.breedte);
    Plaats beste = p;
    double breedst = 0.0;
    for (std::size_t i = 0; i + 1 < lengten.size(); i += 2) {
        const double midden = (lengten[i] + lengten[i + 1]) / 2.0;
        const double half = (lengten[i + 1] - lengten[i]) / 2.0;
        if (std::abs(nabij(p.lengte, midden) - midden) <= half) return p;
        if (half <= breedst) continue;
        breedst = half;
        beste.lengte = nabij(midden, 0.0);
    }
    return beste;
}

// Sums up the steps of each line, which TopoJSON stores.
std::vector<Ring> leesBogen(const QJsonObject& kaart) {
    const QJsonObject vorm = kaart[u"transform"_s].toObject();
    const QJsonArray schaal = vorm[u"scale"_s].toArray();
    const QJsonArray nul = vorm[u"translate"_s].toArray();
    std::vector<Ring> bogen;
    for (const QJsonValue boog : kaart[u"arcs"_s].toArray()) {
        Ring& ring = bogen.emplace_back();
        double x = 0.0;
        double y = 0.0;
        for (const QJsonValue stap : boog.toArray()) {
            x += stap[0].toDouble();
            y += stap[1].toDouble();
            ring.push_back({y * schaal[1].toDouble() + nul[1].toDouble(),
                            x * schaal[0].toDouble() + nul[0].toDouble()});
        }
    }
    return bogen;
}

// A ring is a chain of arcs, each given by its index, or by the index's
// complement when reversed; an arc's last point is the next arc's first.
Ring leesRing(const QJsonArray& nummers, const std::vector<Ring>& bogen) {
    Ring ring;
    for (const QJsonValue waarde : nummers) {
        const int nummer = waarde.toInt();
        Ring boog = bogen.at(static_cast<std::size_t>(nummer < 0 ? ~nummer : nummer));
        if (nummer < 0) std::reverse(boog.begin(), boog.end());
        if (!ring.empty()) ring.pop_back();
        ring.insert(ring.end(), boog.begin(), boog.end());
    }
    return ring;
}

std::vector<Stuk> leesStukken(const QJsonObject& vorm, const std::vector<Ring>& bogen) {
    const QJsonArray arcs = vorm[u"arcs"_s].toArray();
    const bool een = vorm[u"type"_s] == u"Polygon"_s;
    std::vector<Stuk> stukken;
    for (const QJsonValue stuk : een ? QJsonArray{QJsonValue(arcs)} : arcs) {
        Stuk& ringen = stukken.emplace_back();
        for (const QJsonValue ring : stuk.toArray())
            ringen.push_back(leesRing(ring.toArray(), bogen));
        if (ringen.empty()) stukken.pop_back();
    }
    return stukken;
}

}  // namespace

Kaart::Kaart(const QByteArray& topoJson) {
    const QJsonObject kaart = QJsonDocument::fromJson(topoJson).object();
    const QJsonArray vormen =
        kaart[u"objects"_s].toObject()[u"countries"_s].toObject()[u"geometries"_s].toArray();
    if (vormen.isEmpty()) throw std::runtime_error("geen TopoJSON met landen");
    const std::vector<Ring> bogen = leesBogen(kaart);
    for (const QJsonValue waarde : vormen) {
        const QJsonObject vorm = waarde.toObject();
        // Some regions have no number of their own, and some outlying regions
        // are listed under their country's.
        auto& stukken = landen_[vorm[u"id"_s].toString().toStdString()];
        for (Stuk& stuk : leesStukken(vorm, bogen))
            stukken.push_back(std::move(stuk));
    }
}

std::optional<Plaats> Kaart::midden(const std::string& nummer) const {
    const auto land = landen_.find(nummer);
    if (land == landen_.end() || land->second.empty()) return std::nullopt;
    const Stuk* grootste = &land->second.front();
    glm::dvec3 zwaarste(0.0);
    for (const Stuk& stuk : land->second) {
        const glm::dvec3 g = gewicht(stuk);
        if (glm::length(g) <= glm::length(zwaarste)) continue;
        grootste = &stuk;
        zwaarste = g;
    }
    // A shape smaller than the map's grid is a point, with zero weight.
    if (glm::length(zwaarste) == 0.0) return std::nullopt;
    return binnen(*grootste, plaatsVan(zwaarste));
}

}  // namespace brixtel
