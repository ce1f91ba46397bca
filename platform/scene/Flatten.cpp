// SPDX-License-Identifier: MIT
// Merges a subtree into one node.
#include <algorithm>
#include <utility>

#include <glm/gtc/matrix_inverse.hpp>

#include "platform/scene/Node.h"

namespace platform {

namespace {

// The geometry that shares one material and one kind of primitive.
struct Part {
    MaterialPtr material;
    MeshData mesh;

    [[nodiscard]] bool takes(const Geometry& geometry) const {
        const MeshData& other = geometry.mesh()->data();
        return material == geometry.material() && mesh.primitive == other.primitive &&
               mesh.pointSize == other.pointSize && mesh.pointHeightShare == other.pointHeightShare;
    }
};

Part& partFor(std::vector<Part>& parts, const Geometry& geometry) {
    const auto found = std::find_if(parts.begin(), parts.end(),
                                    [&](const Part& part) { return part.takes(geometry); });
    if (found != parts.end()) return *found;
    const MeshData& data = geometry.mesh()->data();
    parts.push_back({geometry.material(), {}});
    parts.back().mesh.primitive = data.primitive;
    parts.back().mesh.pointSize = data.pointSize;
    parts.back().mesh.pointHeightShare = data.pointHeightShare;
    return parts.back();
}

void addMesh(MeshData& to, const MeshData& from, const glm::dmat4& transform) {
    const auto base = static_cast<std::uint32_t>(to.positions.size());
    const glm::dmat3 normals = glm::inverseTranspose(glm::dmat3(transform));
    for (const glm::vec3& position : from.positions)
        to.positions.emplace_back(transform * glm::dvec4(position, 1.0));
    for (const glm::vec3& normal : from.normals)
        to.normals.emplace_back(glm::normalize(normals * glm::dvec3(normal)));
    to.texcoords.insert(to.texcoords.end(), from.texcoords.begin(), from.texcoords.end());
    for (const std::uint32_t index : from.indices)
        to.indices.push_back(base + index);
    // A mirroring transform reverses the winding of triangles.
    if (from.primitive != Primitive::Triangles || glm::determinant(glm::dmat3(transform)) >= 0.0)
        return;
    for (std::size_t i = to.indices.size() - from.indices.size(); i + 2 < to.indices.size(); i += 3)
        std::swap(to.indices[i + 1], to.indices[i + 2]);
}

void gather(const Node& node, const glm::dmat4& transform, std::vector<Part>& parts) {
    if (const GeometryPtr& geometry = node.geometry())
        addMesh(partFor(parts, *geometry).mesh, geometry->mesh()->data(), transform);
    for (const NodePtr& child : node.children())
        gather(*child, transform * child->localTransform(), parts);
}

}  // namespace

NodePtr Node::flattenedClone() const {
    std::vector<Part> parts;
    gather(*this, glm::dmat4(1.0), parts);
    auto clone = std::make_shared<Node>();
    clone->name_ = name_;
    clone->pose_ = pose_;
    clone->euler_ = euler_;
    clone->renderingOrder_ = renderingOrder_;
    clone->opacity_ = opacity_;
    for (Part& part : parts) {
        GeometryPtr geometry = makeGeometry(std::move(part.mesh), std::move(part.material));
        if (!clone->geometry_) {
            clone->geometry_ = std::move(geometry);
        } else {
            clone->addChild(std::make_shared<Node>(std::move(geometry)));
        }
    }
    return clone;
}

}  // namespace platform
