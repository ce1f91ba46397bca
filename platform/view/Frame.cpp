// SPDX-License-Identifier: MIT
#include "platform/view/Frame.h"

#include "platform/layers/Damage.h"

namespace platform {

namespace {

// Whether two frames have the same parts, so that they can be compared part by
// part.
bool sameParts(const Frame& before, const Frame& after) {
    if (before.grid != after.grid || before.background != after.background) return false;
    if (before.opacity != after.opacity || before.passes.size() != after.passes.size())
        return false;
    for (std::size_t i = 0; i < after.passes.size(); ++i)
        if (before.passes[i].scene.isShown != after.passes[i].scene.isShown ||
            before.passes[i].scene.frame != after.passes[i].scene.frame)
            return false;
    return true;
}

}  // namespace

std::size_t firstVisiblePass(const Frame& frame) {
    const QRect picture(QPoint(0, 0), frame.grid.size);
    for (std::size_t i = frame.passes.size(); i-- > 1;)
        if (frame.grid.snap(frame.passes[i].scene.frame).contains(picture)) return i;
    return 0;
}

void findFrameDamage(const Frame& before, const Frame& after, std::vector<QRect>& rects) {
    rects.clear();
    const QRect picture(QPoint(0, 0), after.grid.size);
    if (!sameParts(before, after)) {
        rects.push_back(picture);
        return;
    }
    if (after.passes.size() == 1) {
        findDamage(before.passes[0].layers, after.passes[0].layers, after.grid, rects);
        return;
    }
    // Each render thread keeps its own list, so that a steady frame allocates nothing.
    thread_local std::vector<QRect> ofLayers;
    QRect all, scenes;
    for (std::size_t i = firstVisiblePass(after); i < after.passes.size(); ++i) {
        const SceneFrame& scene = after.passes[i].scene;
        const QRect rect = scene.isShown ? after.grid.snap(scene.frame) & picture : QRect();
        scenes |= rect;
        if (scene.picture != before.passes[i].scene.picture) all |= rect;
        findDamage(before.passes[i].layers, after.passes[i].layers, after.grid, ofLayers);
        for (const QRect& part : ofLayers)
            all |= part;
    }
    // A changed scene is drawn whole, together with the layers over it.
    if (!all.isEmpty()) rects.push_back(all | scenes);
}

}  // namespace platform
