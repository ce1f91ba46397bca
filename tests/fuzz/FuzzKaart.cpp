// SPDX-License-Identifier: MIT
#include <zlib.h>

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QtEndian>

#include "tests/fuzz/FuzzDoelen.h"
#include "tests/support/GeheugenBestand.h"
#include "worlds/LandKaart.h"

namespace fuzz {

namespace {

using brixtel::LandKaart;

constexpr qsizetype kKop = 8;    // a chunk's length and type; the file's mark is as long
constexpr qsizetype kStuk = 12;  // a chunk without content

// Gives every chunk the checksum of what is in it. The ends of the chunks, up to the last one;
// none where they are cut off or have no last one.
std::vector<qsizetype> herstelSommen(QByteArray& png) {
    std::vector<qsizetype> einden;
    if (!png.startsWith(QByteArrayLiteral("\x89PNG\r\n\x1a\n"))) return {};
    for (qsizetype plaats = kKop; plaats + kStuk <= png.size();) {
        char* const stuk = png.data() + plaats;
        const qsizetype lang = qFromBigEndian<quint32>(stuk);
        if (lang > png.size() - plaats - kStuk) return {};
        const auto* const soort = reinterpret_cast<const Bytef*>(stuk + kKop / 2);
        const auto som = crc32(0, soort, static_cast<uInt>(lang + kKop / 2));
        qToBigEndian(static_cast<quint32>(som), stuk + kKop + lang);
        einden.push_back(plaats + kStuk + lang);
        if (png.mid(plaats + kKop / 2, kKop / 2) == "IEND") return einden;
        plaats = einden.back();
    }
    return {};
}

LandKaart alsBestand(const QByteArray& png) {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(png.constData());
    return LandKaart::uitBestand(
        steun::GeheugenBestand({bytes, static_cast<std::size_t>(png.size())}).pad());
}

// For some places, whether there is land.
std::vector<bool> land(const LandKaart& kaart) {
    std::vector<bool> uit;
    for (const double breedte : {-90.0, -45.5, 0.0, 52.1, 90.0, 1e9})
        for (const double lengte : {-180.0, -77.0, 0.0, 5.3, 180.0, -1e9})
            uit.push_back(kaart.isLand(breedte, lengte));
    return uit;
}

void eisAfwezig(const LandKaart& kaart) {
    eis(kaart.breedte() == 0 && kaart.hoogte() == 0);
    eis(land(kaart) == land(LandKaart()));
}

// A file in which one bit is changed must be an absent map.
void eisAfwezigMetAnderBit(QByteArray png, qsizetype plaats, unsigned long bit) {
    char& getroffen = png.data()[plaats];
    getroffen = static_cast<char>(getroffen ^ (1 << bit));
    eisAfwezig(alsBestand(png));
}

void eisGelijk(const LandKaart& een, const LandKaart& ander) {
    eis(een.breedte() == ander.breedte() && een.hoogte() == ander.hoogte());
    eis(land(een) == land(ander));
}

// A larger picture takes the fuzzer's time, and shows nothing new.
bool isGroot(QByteArray png) {
    QBuffer buffer(&png);
    const QSize maat = QImageReader(&buffer, "png").size();
    constexpr int kZijde = 512;
    return maat.width() > kZijde || maat.height() > kZijde;
}

}  // namespace

void kaart(Bytes bytes) {
    const QByteArray inhoud = alsArray(bytes);
    QByteArray heel = inhoud;
    const auto einden = herstelSommen(heel);
    if (isGroot(inhoud) || isGroot(heel)) return;
    const QImage beeld = QImage::fromData(inhoud, "PNG");
    const LandKaart vanBeeld(beeld);
    eis((vanBeeld.breedte() == 0) == beeld.isNull());
    if (beeld.isNull()) eisAfwezig(vanBeeld);

    // A whole file is the picture that is in it; one bit of anything makes it none.
    if (einden.empty()) return eisAfwezig(alsBestand(inhoud));
    eisGelijk(alsBestand(heel), LandKaart(QImage::fromData(heel, "PNG")));
    if (heel.left(einden.back()) != inhoud.left(einden.back())) eisAfwezig(alsBestand(inhoud));
    const auto lot = crc32(0, bytes.data(), static_cast<uInt>(bytes.size()));
    eisAfwezigMetAnderBit(heel, static_cast<qsizetype>(lot / 8) % einden.back(), lot % 8);
    for (const qsizetype einde : einden)
        eisAfwezigMetAnderBit(heel, einde - 1, lot % 8);
}

}  // namespace fuzz
