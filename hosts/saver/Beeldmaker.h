// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <memory>
#include <optional>

#include "hosts/saver/ModuleLader.h"
#include "hosts/saver/Opdracht.h"
#include "platform/session/DistributedNotificationCenter.h"
#include "platform/time/MediaClock.h"
#include "platform/time/RandomSource.h"
#include "platform/view/Frame.h"
#include "platform/window/PicturePainter.h"
#include "worlds/DrieWereld.h"

namespace brixtel {

// Draws the pictures of a command, one by one at full quality, with no display and on a
// clock of its own. Needs a QGuiApplication whose main screen has the wanted scale; the
// module must outlive it. Main thread.
class Beeldmaker {
  public:
    Beeldmaker(const Opdracht& opdracht, const ModuleLader& module);
    ~Beeldmaker();
    Beeldmaker(const Beeldmaker&) = delete;
    Beeldmaker& operator=(const Beeldmaker&) = delete;

    // The error that prevents any picture, as one line for the user; empty on success.
    [[nodiscard]] const QString& mis() const { return mis_; }

    // The size of a picture in pixels.
    [[nodiscard]] QSize maat() const { return frame_.grid.size; }

    // The picture at `tijd` seconds after the start; `tijd` never decreases from call to
    // call. None where OpenGL or memory is missing.
    [[nodiscard]] std::optional<QImage> beeld(double tijd);
    // The still of the command. None where OpenGL or memory is missing.
    [[nodiscard]] std::optional<QImage> plaatje();
    // The line for the user where no picture can be made.
    static constexpr QLatin1String geenBeeld{"er is geen OpenGL, of geen geheugen voor zo'n beeld"};

  private:
    void maakWereld(DrieSoort soort);
    [[nodiscard]] std::optional<QImage> teken();

    const Opdracht opdracht_;
    platform::ManualClock klok_;
    const double begin_ = klok_.now();
    platform::RandomSource toeval_;
    platform::DistributedNotificationCenter geenBus_{QString()};
    std::unique_ptr<DrieWereld> wereld_;
    std::shared_ptr<platform::ScreenSaverView> saver_;
    std::shared_ptr<platform::View> view_;
    platform::Frame frame_;
    platform::PicturePainter schilder_{{.still = true}};
    QString mis_;
};

}  // namespace brixtel
