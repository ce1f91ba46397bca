// SPDX-License-Identifier: MIT
#include "hosts/saver/Beeldmaker.h"

#include <QFile>
#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>

#include "connections/Overzicht.h"
#include "platform/render/OffscreenPicture.h"
#include "platform/render/cpu/CpuDrawer.h"

namespace brixtel {

namespace {

// The most that is read of a file with lines: one may be endless.
constexpr qint64 kMeesteBytes = 16 << 20;
constexpr platform::Rgba kZwart{0.0F, 0.0F, 0.0F, 1.0F};
constexpr int kMonsters = 4;

}  // namespace

Beeldmaker::Beeldmaker(const Opdracht& opdracht, const ModuleLader& module)
    : opdracht_(opdracht),
      toeval_(opdracht.zaad ? platform::RandomSource(*opdracht.zaad)
                            : platform::RandomSource::fromSystem()) {
    const QSizeF maat(opdracht.maat);
    frame_.grid = {.scale = opdracht.schaal,
                   .size = {static_cast<int>(std::ceil(maat.width() * opdracht.schaal)),
                            static_cast<int>(std::ceil(maat.height() * opdracht.schaal))}};
    if (const auto soort = soortUitRuw(opdracht.keuze)) {
        maakWereld(*soort);
        return;
    }
    saver_ = module.maak({QPointF(0, 0), maat}, opdracht.voorvertoning,
                         {.clock = klok_, .random = toeval_, .notifications = geenBus_});
    saver_->startAnimation();
    view_ = saver_;
}

Beeldmaker::~Beeldmaker() {
    if (saver_) saver_->stopAnimation();
}

// The globe has the lines of a file where the command names one.
void Beeldmaker::maakWereld(DrieSoort soort) {
    const bool eigenLijnen = !opdracht_.lijnen.isEmpty();
    wereld_ = std::make_unique<DrieWereld>(
        soort, DrieWereldOpties{.groot = !opdracht_.voorvertoning, .eigenLijnen = eigenLijnen},
        DrieWereldBronnen{.klok = klok_, .toeval = toeval_});
    view_ = wereld_->maakView({QPointF(0, 0), QSizeF(opdracht_.maat)});
    if (!eigenLijnen) return;
    QFile bestand(opdracht_.lijnen);
    const auto lijnen =
        bestand.open(QIODevice::ReadOnly) ? leesJson(bestand.read(kMeesteBytes)) : std::nullopt;
    if (lijnen)
        wereld_->zetLijnen(*lijnen);
    else
        mis_ = QStringLiteral("'%1' bevat geen lijnen als die van --verbindingen=json")
                   .arg(opdracht_.lijnen);
}

std::optional<QImage> Beeldmaker::beeld(double tijd) {
    klok_.advance(std::max(0.0, begin_ + tijd - klok_.now()));
    platform::FrameBuilder(frame_, klok_.now()).add(*view_);
    return teken();
}

// Lays the scene into the picture.
bool Beeldmaker::tekenScene(const platform::SceneFrame& scene, QImage& beeld) {
    if (!snapshot_) snapshot_ = platform::SceneSnapshot::create();
    if (!snapshot_ || !scene.hasScene) return false;
    const QImage deel = snapshot_->picture(scene.list, scene.frame.size(), frame_.grid.scale,
                                           {.samples = std::max(scene.sampleCount, kMonsters)});
    if (deel.isNull()) return false;
    QPainter(&beeld).drawImage(frame_.grid.snap(scene.frame).topLeft(), deel);
    return true;
}

// Layers are drawn with OpenGL where that is asked for, and on the CPU otherwise,
// which gives the same picture on every machine.
std::optional<QImage> Beeldmaker::teken() {
    if (opdracht_.tekenaar == platform::DrawerChoice::OpenGl && frame_.passes.size() == 1) {
        const auto gl = platform::OffscreenPicture::create();
        const QImage beeld = gl ? gl->draw(frame_.passes[0].layers, frame_.grid, kZwart) : QImage();
        return beeld.isNull() ? std::nullopt : std::optional(beeld);
    }
    QImage beeld(frame_.grid.size, QImage::Format_ARGB32_Premultiplied);
    if (beeld.isNull()) return std::nullopt;
    platform::CpuDrawer cpu;
    const std::array alles{beeld.rect()};
    std::optional<platform::Rgba> onder = kZwart;
    for (const platform::FramePass& pas : frame_.passes) {
        if (pas.scene.isShown && !tekenScene(pas.scene, beeld)) return std::nullopt;
        cpu.draw(pas.layers, frame_.grid, alles, onder,
                 {.pixels = reinterpret_cast<std::uint32_t*>(beeld.bits()),
                  .stride = static_cast<int>(beeld.bytesPerLine() / 4),
                  .size = beeld.size()});
        onder.reset();
    }
    return beeld;
}

}  // namespace brixtel
