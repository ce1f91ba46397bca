// SPDX-License-Identifier: MIT
#include "hosts/saver/Plaatje.h"

#include <QFile>
#include <QImage>
#include <QSaveFile>
#include <algorithm>
#include <array>
#include <cmath>

#include "connections/Overzicht.h"
#include "platform/render/gl/OffscreenPicture.h"
#include "platform/session/DistributedNotificationCenter.h"
#include "platform/time/MediaClock.h"
#include "platform/view/FrameBuilder.h"
#include "platform/window/PicturePainter.h"
#include "worlds/DrieWereld.h"

namespace brixtel {

namespace {

// Of a file with lines, by which an endless one is told from one that is none.
constexpr qint64 kMeesteBytes = 16 << 20;
constexpr platform::Rgba kZwart{0.0F, 0.0F, 0.0F, 1.0F};

// Layers are drawn with OpenGL where that is asked for, and on the CPU otherwise,
// which gives the same picture on every machine.
std::optional<QImage> teken(const platform::Frame& frame, platform::DrawerChoice tekenaar) {
    if (tekenaar == platform::DrawerChoice::OpenGl && frame.passes.size() == 1) {
        const auto gl = platform::OffscreenPicture::create();
        const QImage beeld = gl ? gl->draw(frame.passes[0].layers, frame.grid, kZwart) : QImage();
        return beeld.isNull() ? std::nullopt : std::optional(beeld);
    }
    QImage beeld(frame.grid.size, QImage::Format_ARGB32_Premultiplied);
    if (beeld.isNull()) return std::nullopt;
    // A view that is to show a scene and has none shows no picture of itself.
    const bool mist = std::any_of(frame.passes.begin(), frame.passes.end(), [](const auto& pas) {
        return pas.scene.isShown && !pas.scene.hasScene;
    });
    platform::PicturePainter schilder({.still = true});
    const std::array alles{beeld.rect()};
    if (mist || !schilder.paint(frame, alles,
                                {.pixels = reinterpret_cast<std::uint32_t*>(beeld.bits()),
                                 .stride = static_cast<int>(beeld.bytesPerLine() / 4),
                                 .size = beeld.size()}))
        return std::nullopt;
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

// What the view shows now, in the file that the command names.
QString leg(platform::View& view, const Opdracht& opdracht, double nu) {
    const QSizeF maat = view.bounds().size();
    platform::Frame frame;
    frame.grid = {.scale = opdracht.schaal,
                  .size = {static_cast<int>(std::ceil(maat.width() * opdracht.schaal)),
                           static_cast<int>(std::ceil(maat.height() * opdracht.schaal))}};
    frame.background = kZwart;
    platform::FrameBuilder(frame, nu).add(view);
    const auto beeld = teken(frame, opdracht.tekenaar);
    if (!beeld) return QStringLiteral("er is geen OpenGL, of geen geheugen voor zo'n beeld");
    return schrijf(*beeld, opdracht.plaatje);
}

// The globe with the lines of a file in place of those of this machine.
QString bolMetLijnen(const Opdracht& opdracht, platform::ManualClock& klok,
                     platform::RandomSource& toeval) {
    QFile bestand(opdracht.lijnen);
    const auto lijnen =
        bestand.open(QIODevice::ReadOnly) ? leesJson(bestand.read(kMeesteBytes)) : std::nullopt;
    if (!lijnen)
        return QStringLiteral("'%1' bevat geen lijnen als die van --verbindingen=json")
            .arg(opdracht.lijnen);
    DrieWereld wereld(DrieSoort::bol, {.groot = !opdracht.voorvertoning, .eigenLijnen = true},
                      {.klok = klok, .toeval = toeval});
    wereld.zetLijnen(*lijnen);
    const auto view = wereld.maakView({QPointF(0, 0), QSizeF(opdracht.maat)});
    klok.advance(opdracht.na);
    return leg(*view, opdracht, klok.now());
}

}  // namespace

QString maakPlaatje(const Opdracht& opdracht, const ModuleLader& module) {
    platform::ManualClock klok;
    auto toeval = opdracht.zaad ? platform::RandomSource(*opdracht.zaad)
                                : platform::RandomSource::fromSystem();
    if (!opdracht.lijnen.isEmpty()) return bolMetLijnen(opdracht, klok, toeval);
    platform::DistributedNotificationCenter geenBus{QString()};
    const auto view = module.maak({QPointF(0, 0), QSizeF(opdracht.maat)}, opdracht.voorvertoning,
                                  {.clock = klok, .random = toeval, .notifications = geenBus});
    view->startAnimation();
    klok.advance(opdracht.na);
    const QString mis = leg(*view, opdracht, klok.now());
    view->stopAnimation();
    return mis;
}

}  // namespace brixtel
