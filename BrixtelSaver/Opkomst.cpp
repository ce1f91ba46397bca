// SPDX-License-Identifier: MIT
#include "BrixtelSaver/Opkomst.h"

#include <utility>

namespace brixtel {

Opkomst::Opkomst(const QRectF& frame, platform::MediaClock& klok)
    : View(frame), klok_(klok), gemaakt_(klok.now()) {
    setWantsLayer(true);
    layer()->setBackgroundColor(Qt::black);
    layer()->setOpacity(0.0);
    begin();
}

void Opkomst::begin() {
    layer()->addAnimation("opkomst",
                          platform::BasicAnimation{.keyPath = platform::KeyPath::Opacity,
                                                   .from = 1.0,
                                                   .to = 0.0,
                                                   .timing = {.duration = kDuur}},
                          klok_.now());
}

void Opkomst::build(platform::FrameBuilder& builder, QPointF origin) {
    if (!std::exchange(gezien_, true) && klok_.now() - gemaakt_ < kDuur) begin();
    View::build(builder, origin);
}

}  // namespace brixtel
