// SPDX-License-Identifier: MIT
#include "platform/scene/DrawOrder.h"

#include <algorithm>
#include <tuple>

namespace platform {

namespace {

using Item = DrawList::Item;

bool covers(const Item& item) {
    return item.blended && !item.material->commutes();
}

bool isFurther(const Item& a, const Item& b) {
    return std::tuple(a.renderingOrder, a.blended, -a.depth, a.staged) <
           std::tuple(b.renderingOrder, b.blended, -b.depth, b.staged);
}

// Numbers the layers of one rendering order's blended items, from the back: each covering
// item is a layer, and all additive items between two covering items are one layer.
void numberLayers(std::vector<Item>& items) {
    std::sort(items.begin(), items.end(), isFurther);
    std::uint32_t covered = 0;
    const Item* last = nullptr;
    for (Item& item : items) {
        if (last != nullptr && last->renderingOrder != item.renderingOrder) covered = 0;
        if (covers(item)) ++covered;
        if (item.blended) item.layer = 2 * covered - (covers(item) ? 1 : 0);
        last = &item;
    }
}

bool isBefore(const Item& a, const Item& b) {
    if (a.renderingOrder != b.renderingOrder) return a.renderingOrder < b.renderingOrder;
    if (a.blended != b.blended) return b.blended;
    if (a.layer != b.layer) return a.layer < b.layer;
    if (a.mesh != b.mesh) return a.mesh->id() < b.mesh->id();
    if (a.material != b.material) return a.material->id() < b.material->id();
    return a.staged < b.staged;
}

}  // namespace

void putInDrawingOrder(std::vector<Item>& items) {
    if (std::any_of(items.begin(), items.end(), covers)) numberLayers(items);
    std::sort(items.begin(), items.end(), isBefore);
}

}  // namespace platform
