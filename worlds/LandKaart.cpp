// SPDX-License-Identifier: MIT
#include "worlds/LandKaart.h"

#include <QPainter>
#include <QString>
#include <algorithm>

#include "platform/resources/ResourceFolder.h"

namespace brixtel {

namespace {

constexpr int kBreedte = 720;
constexpr int kHoogte = 360;
constexpr std::uint8_t kZee = 128;  // this grey and lighter

const QLatin1String kSysteemKaart(
    "/System/Library/PrivateFrameworks/GeoKit.framework/Versions/A/Resources/worldmap@2x.png");

QImage leesKaart() {
    if (const QImage systeem(kSysteemKaart); !systeem.isNull()) return systeem;
    static const char hier = 0;
    const auto eigen = platform::resourcePath(&hier, "worldmap@2x.png");
    return eigen ? QImage(QString::fromStdString(eigen->string())) : QImage();
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

const LandKaart& LandKaart::gedeeld() {
    static const LandKaart kaart(leesKaart());
    return kaart;
}

bool LandKaart::isLand(double breedte, double lengte) const {
    if (grijs_.empty()) return false;
    const int kolom = plaats((lengte + 180.0) / 360.0, breedte_);
    const int rij = plaats((90.0 - breedte) / 180.0, hoogte_);
    return grijs_[static_cast<std::size_t>(rij * breedte_ + kolom)] < kZee;
}

}  // namespace brixtel
