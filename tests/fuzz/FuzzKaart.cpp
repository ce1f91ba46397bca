// SPDX-License-Identifier: MIT
#include <QBuffer>
#include <QImage>
#include <QImageReader>

#include "tests/fuzz/FuzzDoelen.h"
#include "worlds/LandKaart.h"

namespace fuzz {

void kaart(Bytes bytes) {
    QByteArray inhoud = alsArray(bytes);
    QBuffer buffer(&inhoud);
    QImageReader lezer(&buffer, "png");
    // A larger picture takes the fuzzer's time, and shows nothing new.
    constexpr int kZijde = 512;
    if (const QSize maat = lezer.size(); maat.width() > kZijde || maat.height() > kZijde) return;
    const QImage beeld = lezer.read();
    const brixtel::LandKaart kaart(beeld);
    eis((kaart.breedte() == 0) == beeld.isNull());
    int land = 0;
    for (const double breedte : {-90.0, -45.5, 0.0, 52.1, 90.0, 1e9})
        for (const double lengte : {-180.0, -77.0, 0.0, 5.3, 180.0, -1e9})
            land += kaart.isLand(breedte, lengte) ? 1 : 0;
    eis(!beeld.isNull() || land == 0);
}

}  // namespace fuzz
