// SPDX-License-Identifier: MIT
#include "hosts/saver/Plaatje.h"

#include <QImage>
#include <QSaveFile>
#include <array>
#include <cmath>

#include "platform/desktop/DistributedNotificationCenter.h"
#include "platform/desktop/FrameBuilder.h"
#include "platform/render/CpuDrawer.h"
#include "platform/render/OffscreenPicture.h"
#include "platform/time/MediaClock.h"

namespace brixtel {

namespace {

// Draws with OpenGL where that is asked for, and on the CPU otherwise, which
// gives the same picture on every machine.
std::optional<QImage> teken(const platform::DisplayList& lijst, const platform::PixelGrid& raster,
                            platform::DrawerChoice tekenaar) {
    const platform::Rgba zwart{0.0F, 0.0F, 0.0F, 1.0F};
    if (tekenaar == platform::DrawerChoice::OpenGl) {
        const auto gl = platform::OffscreenPicture::create();
        const QImage beeld = gl ? gl->draw(lijst, raster, zwart) : QImage();
        return beeld.isNull() ? std::nullopt : std::optional(beeld);
    }
    QImage beeld(raster.size, QImage::Format_ARGB32_Premultiplied);
    if (beeld.isNull()) return std::nullopt;
    platform::CpuDrawer cpu;
    const std::array alles{beeld.rect()};
    cpu.draw(lijst, raster, alles, zwart,
             {.pixels = reinterpret_cast<std::uint32_t*>(beeld.bits()),
              .stride = static_cast<int>(beeld.bytesPerLine() / 4),
              .size = beeld.size()});
    return beeld;
}

QString schrijf(const QImage& beeld, const QString& naam) {
    QSaveFile bestand(naam);
    const bool gelukt = bestand.open(QIODevice::WriteOnly) &&
                        beeld.convertToFormat(QImage::Format_RGB32).save(&bestand, "PNG") &&
                        bestand.commit();
    if (gelukt) return {};
    return QStringLiteral("'%1' kan niet geschreven worden").arg(naam);
}

}  // namespace

QString maakPlaatje(const Opdracht& opdracht, const ModuleLader& module) {
    platform::ManualClock klok;
    auto toeval = opdracht.zaad ? platform::RandomSource(*opdracht.zaad)
                                : platform::RandomSource::fromSystem();
    platform::DistributedNotificationCenter geenBus{QString()};
    const QSizeF maat(opdracht.maat);
    const auto view = module.maak({QPointF(0, 0), maat}, opdracht.voorvertoning,
                                  {.clock = klok, .random = toeval, .notifications = geenBus});
    view->startAnimation();
    klok.advance(opdracht.na);

    platform::Frame frame;
    frame.grid = {.scale = opdracht.schaal,
                  .size = {static_cast<int>(std::ceil(maat.width() * opdracht.schaal)),
                           static_cast<int>(std::ceil(maat.height() * opdracht.schaal))}};
    platform::FrameBuilder(frame, klok.now()).add(*view);
    const auto beeld = teken(frame.passes.front().layers, frame.grid, opdracht.tekenaar);
    view->stopAnimation();
    if (!beeld) return QStringLiteral("er is geen OpenGL, of geen geheugen voor zo'n beeld");
    return schrijf(*beeld, opdracht.plaatje);
}

}  // namespace brixtel
