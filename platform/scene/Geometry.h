// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include <glm/vec3.hpp>

#include "platform/scene/Material.h"
#include "platform/scene/Mesh.h"

namespace platform {

// A shape and what it wears: one mesh, one material. The pair never changes (the
// material itself may); nodes share it by handle. All instances of one mesh in
// one material are drawn at once.
class Geometry {
  public:
    Geometry(MeshPtr mesh, MaterialPtr material)
        : mesh_(std::move(mesh)), material_(std::move(material)) {}

    [[nodiscard]] const MeshPtr& mesh() const { return mesh_; }
    [[nodiscard]] const MaterialPtr& material() const { return material_; }

    // The corners' difference, in the node's units.
    [[nodiscard]] glm::vec3 size() const { return mesh_->bounds().size(); }

  private:
    MeshPtr mesh_;
    MaterialPtr material_;
};

using GeometryPtr = std::shared_ptr<const Geometry>;

// The makers below centre the shape on the node's origin, in the node's units.
// An absent material becomes a white one with Lambert lighting.

// In the xy plane, facing +z, the picture upright seen from there.
struct PlaneOptions {
    double width = 1.0;
    double height = 1.0;
};
[[nodiscard]] GeometryPtr makePlane(const PlaneOptions& options, MaterialPtr material = {});

// width along x, height along y, length along z, all outer sizes. The chamfer
// rounds edges and corners inside them, in `chamferSegments` steps: one or an even
// number. One has a quarter of the vertices of two and is as soft where a chamfer
// is a few pixels wide, but no good for a picture, which it smears over the edges.
struct BoxOptions {
    double width = 1.0;
    double height = 1.0;
    double length = 1.0;
    double chamferRadius = 0.0;
    int chamferSegments = 2;
};
[[nodiscard]] GeometryPtr makeBox(const BoxOptions& options, MaterialPtr material = {});

// Poles on ±y; `segments` round the axis and `rows` from pole to pole, half as many
// segments where `rows` is 0.
// The picture's seam lies on −z, its middle on +z.
struct SphereOptions {
    double radius = 0.5;
    int segments = 48;
    int rows = 0;
};
[[nodiscard]] GeometryPtr makeSphere(const SphereOptions& options, MaterialPtr material = {});

// Axis y, open ended but for the rims between the two walls. On the inner wall
// the normals point inward; u runs once round and reads left to right from
// inside, v once along, 0 at +y. The outer wall reads left to right from outside.
struct TubeOptions {
    double innerRadius = 0.25;
    double outerRadius = 0.5;
    double height = 1.0;
    int radialSegments = 48;
};
[[nodiscard]] GeometryPtr makeTube(const TubeOptions& options, MaterialPtr material = {});

// Axis y, the ring in the xz plane; u along the ring, v round the pipe.
struct TorusOptions {
    double ringRadius = 0.5;
    double pipeRadius = 0.25;
    int ringSegments = 48;
    int pipeSegments = 24;
};
[[nodiscard]] GeometryPtr makeTorus(const TorusOptions& options, MaterialPtr material = {});

// One round dot at each position, `pointSize` points across on screen whatever
// the distance.
[[nodiscard]] GeometryPtr makePoints(std::vector<glm::vec3> positions, double pointSize,
                                     MaterialPtr material = {});

// One line, one point wide on screen, for each pair of positions; an odd last
// one is left out.
[[nodiscard]] GeometryPtr makeLines(std::vector<glm::vec3> ends, MaterialPtr material = {});

// Any mesh of one's own.
[[nodiscard]] GeometryPtr makeGeometry(MeshData data, MaterialPtr material = {});

}  // namespace platform
