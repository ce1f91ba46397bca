// SPDX-License-Identifier: MIT
// The scene more.
#include "worlds/DrieWereld.h"

namespace brixtel {

void DrieWereld::bouwProef() {
    auto ster = std::make_shared<platform::Node>();
    ster->setName("ster");
    scene_->root().addChild(ster);
}

}  // namespace brixtel
