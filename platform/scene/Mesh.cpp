// SPDX-License-Identifier: MIT
#include "platform/scene/Mesh.h"

#include <atomic>
#include <utility>

#include <glm/common.hpp>

namespace platform {

namespace {

std::uint64_t nextId() {
    static std::atomic<std::uint64_t> last{0};
    return ++last;
}

Bounds boundsOf(const std::vector<glm::vec3>& positions) {
    if (positions.empty()) return {};
    Bounds bounds{positions.front(), positions.front()};
    for (const glm::vec3& position : positions) {
        bounds.low = glm::min(bounds.low, position);
        bounds.high = glm::max(bounds.high, position);
    }
    return bounds;
}

}  // namespace

Mesh::Mesh(MeshData data)
    : data_(std::move(data)), bounds_(boundsOf(data_.positions)), id_(nextId()) {}

std::size_t Mesh::primitiveCount() const {
    switch (data_.primitive) {
        case Primitive::Triangles:
            return data_.indices.size() / 3;
        case Primitive::Lines:
            return data_.indices.size() / 2;
        case Primitive::Points:
            break;
    }
    return data_.indices.size();
}

}  // namespace platform
