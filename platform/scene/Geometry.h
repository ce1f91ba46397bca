// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include <glm/vec3.hpp>

#include "platform/scene/Material.h"
#include "platform/scene/Mesh.h"

namespace platform {

// One mesh in one material. The pair is immutable (its material is not), and
// nodes share ownership of it. All instances of one mesh in one material are
// drawn at once. Main thread.
class Geometry {
  public:
    Geometry(MeshPtr mesh, MaterialPtr material)
        : mesh_(std::move(mesh)), material_(std::move(material)) {}

    [[nodiscard]] const MeshPtr& mesh() const { return mesh_; }
    [[nodiscard]] const MaterialPtr& material() const { return material_; }

    // The extent of the mesh along each axis, in the node's units.
    [[nodiscard]] glm::vec3 size() const { return mesh_->bounds().size(); }

  private:
    MeshPtr mesh_;
    MaterialPtr material_;
};

using GeometryPtr = std::shared_ptr<const Geometry>;

// The makers below centre the shape on the node's origin, in the node's units.
// Without a material, the shape gets a white one with Lambert lighting.

// A rectangle in the xy plane, facing +z; seen from there, the picture is upright.
struct PlaneOptions {
    double width = 1.0;
    double height = 1.0;
};
[[nodiscard]] GeometryPtr makePlane(const PlaneOptions& options, MaterialPtr material = {});

// A box: width along x, height along y, length along z, all outer sizes. The chamfer
// rounds edges and corners inside those sizes, in `chamferSegments` steps: one or an
// even number. One step has a quarter of the vertices of two and looks as soft where a
// chamfer is a few pixels wide; under a picture it smears the picture over the edges.
struct BoxOptions {
    double width = 1.0;
    double height = 1.0;
    double length = 1.0;
    double chamferRadius = 0.0;
    int chamferSegments = 2;
};
[[nodiscard]] GeometryPtr makeBox(const BoxOptions& options, MaterialPtr material = {});

// A sphere with poles on ±y, `segments` around the axis and `rows` from pole to pole, half
// as many as segments where `rows` is 0. The picture's seam lies on −z, its middle on +z.
struct SphereOptions {
    double radius = 0.5;
    int segments = 48;
    int rows = 0;
};
[[nodiscard]] GeometryPtr makeSphere(const SphereOptions& options, MaterialPtr material = {});

// A tube about the y axis: an inner wall, an outer wall and two rims. On the inner
// wall, normals point inward, u runs once round and reads left to right from inside,
// and v runs once along, 0 at +y. The outer wall reads left to right from outside.
struct TubeOptions {
    double innerRadius = 0.25;
    double outerRadius = 0.5;
    double height = 1.0;
    int radialSegments = 48;
};
[[nodiscard]] GeometryPtr makeTube(const TubeOptions& options, MaterialPtr material = {});

// A torus about the y axis, its ring in the xz plane; u along the ring, v round the pipe.
struct TorusOptions {
    double ringRadius = 0.5;
    double pipeRadius = 0.25;
    int ringSegments = 48;
    int pipeSegments = 24;
};
[[nodiscard]] GeometryPtr makeTorus(const TorusOptions& options, MaterialPtr material = {});

// Makes one round dot per position, `pointSize` points across on screen at any
// distance.
[[nodiscard]] GeometryPtr makePoints(std::vector<glm::vec3> positions, double pointSize,
                                     MaterialPtr material = {});

// Makes one line, one point wide on screen, per pair of positions; an odd last
// position is left out.
[[nodiscard]] GeometryPtr makeLines(std::vector<glm::vec3> ends, MaterialPtr material = {});

// Makes a geometry of any mesh.
[[nodiscard]] GeometryPtr makeGeometry(MeshData data, MaterialPtr material = {});

}  // namespace platform
