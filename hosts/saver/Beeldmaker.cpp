// SPDX-License-Identifier: MIT
#include "hosts/saver/Beeldmaker.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "connections/Overzicht.h"
#include "hosts/gedeeld/Reden.h"
#include "platform/files/InputFile.h"
#include "platform/render/gl/OffscreenPicture.h"
#include "platform/view/FrameBuilder.h"

namespace brixtel {

namespace {

// The limit of a file with lines, since one may be endless.
constexpr std::size_t kMeesteBytes = std::size_t{16} << 20;
constexpr platform::Rgba kZwart{0.0F, 0.0F, 0.0F, 1.0F};

}  // namespace

Beeldmaker::Beeldmaker(const Opdracht& opdracht, const ModuleLader& module)
    : opdracht_(opdracht),
      toeval_(opdracht.zaad ? platform::RandomSource(*opdracht.zaad)
                            : platform::RandomSource::fromSystem()) {
    const QSizeF maat(opdracht.maat);
    frame_.grid = {.scale = opdracht.schaal,
                   .size = {static_cast<int>(std::ceil(maat.width() * opdracht.schaal)),
                            static_cast<int>(std::ceil(maat.height() * opdracht.schaal))}};
    frame_.background = kZwart;
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

// The globe shows the lines of a file where the command names one.
void Beeldmaker::maakWereld(DrieSoort soort) {
    const bool eigenLijnen = !opdracht_.lijnen.isEmpty();
    wereld_ = std::make_unique<DrieWereld>(
        soort, DrieWereldOpties{.groot = !opdracht_.voorvertoning, .eigenLijnen = eigenLijnen},
        DrieWereldBronnen{.klok = klok_, .toeval = toeval_});
    view_ = wereld_->maakView({QPointF(0, 0), QSizeF(opdracht_.maat)});
    if (!eigenLijnen) return;
    const platform::FileContent inhoud =
        platform::readRegularFile(opdracht_.lijnen.toStdString(), kMeesteBytes);
    const auto lijnen =
        inhoud.error == 0 ? leesJson(QByteArray::fromStdString(inhoud.bytes)) : std::nullopt;
    if (inhoud.error != 0)
        mis_ =
            QStringLiteral("'%1' is niet te lezen: %2").arg(opdracht_.lijnen, reden(inhoud.error));
    else if (lijnen)
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

std::optional<QImage> Beeldmaker::plaatje() {
    if (!wereld_) return beeld(opdracht_.na);
    const QImage still = wereld_->plaatje(
        {.maat = QSizeF(opdracht_.maat), .na = opdracht_.na, .schaal = opdracht_.schaal});
    return still.isNull() ? std::nullopt : std::optional(still);
}

// Draws layers with OpenGL where the command asks for it, and otherwise on the CPU, which
// gives the same picture on every machine.
std::optional<QImage> Beeldmaker::teken() {
    if (opdracht_.tekenaar == platform::DrawerChoice::OpenGl && frame_.passes.size() == 1) {
        const auto gl = platform::OffscreenPicture::create();
        const QImage beeld = gl ? gl->draw(frame_.passes[0].layers, frame_.grid, kZwart) : QImage();
        return beeld.isNull() ? std::nullopt : std::optional(beeld);
    }
    QImage beeld(frame_.grid.size, QImage::Format_ARGB32_Premultiplied);
    if (beeld.isNull()) return std::nullopt;
    // A view without the scene that it should show makes no picture.
    const bool mist = std::any_of(frame_.passes.begin(), frame_.passes.end(), [](const auto& pas) {
        return pas.scene.isShown && !pas.scene.hasScene;
    });
    const std::array alles{beeld.rect()};
    if (mist || !schilder_.paint(frame_, alles,
                                 {.pixels = reinterpret_cast<std::uint32_t*>(beeld.bits()),
                                  .stride = static_cast<int>(beeld.bytesPerLine() / 4),
                                  .size = beeld.size()}))
        return std::nullopt;
    return beeld;
}

}  // namespace brixtel
