// SPDX-License-Identifier: MIT
#include "worlds/LandKaart.h"

#include <zlib.h>

#include <QPainter>
#include <QtEndian>
#include <algorithm>
#include <string_view>

#include "platform/files/InputFile.h"
#include "platform/resources/ResourceFolder.h"

namespace brixtel {

namespace {

constexpr int kBreedte = 720;
constexpr int kHoogte = 360;
constexpr std::uint8_t kZee = 128;  // this grey and lighter

constexpr const char* kSysteemKaart =
    "/System/Library/PrivateFrameworks/GeoKit.framework/Versions/A/Resources/worldmap@2x.png";

constexpr std::size_t kGrootste = std::size_t{64} << 20;  // bytes of a map's file

constexpr std::string_view kPng("\x89PNG\r\n\x1a\n", 8);
constexpr std::size_t kKop = 8;  // a chunk's length and type
constexpr std::size_t kSom = 4;

std::uint32_t getalOp(std::string_view bytes, std::size_t plaats) {
    return qFromBigEndian<std::uint32_t>(bytes.data() + plaats);
}

// Whether every chunk is whole and has its checksum, up to the last one. libpng prints a
// line of its own on standard error where one is not.
bool isGaaf(std::string_view png) {
    if (!png.starts_with(kPng)) return false;
    png.remove_prefix(kPng.size());
    while (png.size() >= kKop + kSom) {
        const std::size_t lang = getalOp(png, 0);
        if (lang > png.size() - kKop - kSom) return false;
        const auto* const soort = reinterpret_cast<const Bytef*>(png.data() + kKop / 2);
        const uLong som = crc32(0, soort, static_cast<uInt>(lang + kKop / 2));
        if (som != getalOp(png, kKop + lang)) return false;
        if (png.substr(kKop / 2, 4) == "IEND") return true;
        png.remove_prefix(kKop + lang + kSom);
    }
    return false;
}

LandKaart leesKaart() {
    if (LandKaart systeem = LandKaart::uitBestand(kSysteemKaart); systeem.breedte() > 0)
        return systeem;
    static const char hier = 0;
    const auto eigen = platform::resourcePath(&hier, "worldmap@2x.png");
    return eigen ? LandKaart::uitBestand(eigen->string()) : LandKaart();
}

int plaats(double deel, int aantal) {
    return static_cast<int>(std::clamp(deel * aantal, 0.0, aantal - 1.0));
}

}  // namespace

LandKaart::LandKaart(const QImage& beeld) {
    if (beeld.isNull()) return;
    QImage vlak(kBreedte, kHoogte, QImage::Format_RGB32);
    if (vlak.isNull()) return;
    vlak.fill(Qt::white);
    QPainter schilder(&vlak);
    schilder.setRenderHint(QPainter::SmoothPixmapTransform);
    schilder.drawImage(QRectF(0.0, 0.0, kBreedte, kHoogte), beeld);
    schilder.end();
    const QImage grijs = vlak.convertToFormat(QImage::Format_Grayscale8);
    for (int rij = 0; rij < kHoogte; ++rij) {
        const uchar* lijn = grijs.constScanLine(rij);
        grijs_.insert(grijs_.end(), lijn, lijn + kBreedte);
    }
    breedte_ = kBreedte;
    hoogte_ = kHoogte;
}

LandKaart LandKaart::uitBestand(const std::string& pad) {
    const platform::FileContent bestand = platform::readRegularFile(pad, kGrootste);
    if (!isGaaf(bestand.bytes)) return {};
    const auto png = QByteArray::fromRawData(bestand.bytes.data(), qsizetype(bestand.bytes.size()));
    return LandKaart(QImage::fromData(png, "PNG"));
}

const LandKaart& LandKaart::gedeeld() {
    static const LandKaart kaart = leesKaart();
    return kaart;
}

bool LandKaart::isLand(double breedte, double lengte) const {
    if (grijs_.empty()) return false;
    const int kolom = plaats((lengte + 180.0) / 360.0, breedte_);
    const int rij = plaats((90.0 - breedte) / 180.0, hoogte_);
    return grijs_[static_cast<std::size_t>(rij * breedte_ + kolom)] < kZee;
}

}  // namespace brixtel
