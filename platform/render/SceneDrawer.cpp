// SPDX-License-Identifier: MIT
#include "platform/render/SceneDrawer.h"

#include "platform/render/gl/GlSceneDrawer.h"

namespace platform {

std::unique_ptr<SceneDrawer> makeSceneDrawer(const SceneDrawerOptions& options) {
    if (options.still) return GlStillDrawer::create();
    return GlSceneDrawer::create(options.resetStatus);
}

}  // namespace platform
