// SPDX-License-Identifier: MIT
#pragma once

#include "platform/time/MediaClock.h"
#include "platform/view/View.h"

namespace brixtel {

// Black over a new picture; the black fades out in a quarter of a second from the first
// frame on. A first frame that comes later than that, as after a leap of the clock, shows
// the picture at once. Main thread; the clock outlives the view.
class Opkomst final : public platform::View {
  public:
    static constexpr double kDuur = 0.25;  // seconds

    Opkomst(const QRectF& frame, platform::MediaClock& klok);

  protected:
    void build(platform::FrameBuilder& builder, QPointF origin) override;

  private:
    void begin();

    platform::MediaClock& klok_;
    const double gemaakt_;
    bool gezien_ = false;
};

}  // namespace brixtel
