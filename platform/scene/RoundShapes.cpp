// SPDX-License-Identifier: MIT
// Shapes of revolution. Seen from outside, a growing angle runs from left to
// right; it starts and ends at −z, behind the shape.
#include <cmath>
#include <utility>

#include <glm/trigonometric.hpp>

#include "platform/scene/Geometry.h"
#include "platform/scene/GridMesh.h"
#include "platform/scene/Transform.h"
#include "platform/time/Require.h"

namespace platform {

namespace {

// The horizontal direction at the share `u` of a full turn.
glm::dvec3 outward(double u) {
    const double angle = 2.0 * kPi * u;
    return {-std::sin(angle), 0.0, -std::cos(angle)};
}

double share(int index, int count) {
    return static_cast<double>(index) / count;
}

// A tube's wall. The inner wall is seen from the other side, so its columns run
// the other way.
void addWall(MeshData& mesh, double radius, const TubeOptions& options, bool inner) {
    addGrid(mesh, options.radialSegments, 1, [&](int column, int row) {
        const double u = share(column, options.radialSegments);
        const glm::dvec3 out = outward(inner ? 1.0 - u : u);
        return GridVertex{out * radius + glm::dvec3(0.0, options.height * (0.5 - row), 0.0),
                          inner ? -out : out,
                          {u, row}};
    });
}

// The flat ring between the walls at the top or bottom end.
void addRim(MeshData& mesh, const TubeOptions& options, bool top) {
    const double side = top ? 1.0 : -1.0;
    addGrid(mesh, options.radialSegments, 1, [&](int column, int row) {
        const double u = share(column, options.radialSegments);
        const bool outer = (row == 1) == top;
        const double radius = outer ? options.outerRadius : options.innerRadius;
        return GridVertex{outward(u) * radius + glm::dvec3(0.0, side * 0.5 * options.height, 0.0),
                          {0.0, side, 0.0},
                          {u, row}};
    });
}

}  // namespace

GeometryPtr makeSphere(const SphereOptions& options, MaterialPtr material) {
    const int rows = options.rows > 0 ? options.rows : options.segments / 2;
    require(options.segments >= 4 && rows >= 2);
    MeshData mesh;
    addGrid(mesh, options.segments, rows, [&](int column, int row) {
        const double u = share(column, options.segments);
        const double v = share(row, rows);
        const glm::dvec3 out =
            outward(u) * std::sin(kPi * v) + glm::dvec3(0.0, std::cos(kPi * v), 0.0);
        return GridVertex{out * options.radius, out, {u, v}};
    });
    return makeGeometry(std::move(mesh), std::move(material));
}

GeometryPtr makeTube(const TubeOptions& options, MaterialPtr material) {
    require(options.radialSegments >= 3);
    MeshData mesh;
    // The inner wall comes first: seen from inside, it hides the outer wall
    // before that wall is shaded.
    addWall(mesh, options.innerRadius, options, true);
    addWall(mesh, options.outerRadius, options, false);
    addRim(mesh, options, true);
    addRim(mesh, options, false);
    return makeGeometry(std::move(mesh), std::move(material));
}

GeometryPtr makeTorus(const TorusOptions& options, MaterialPtr material) {
    require(options.ringSegments >= 3 && options.pipeSegments >= 3);
    MeshData mesh;
    addGrid(mesh, options.ringSegments, options.pipeSegments, [&](int column, int row) {
        const double u = share(column, options.ringSegments);
        const double v = share(row, options.pipeSegments);
        const glm::dvec3 normal =
            -outward(u) * std::cos(2.0 * kPi * v) + glm::dvec3(0.0, std::sin(2.0 * kPi * v), 0.0);
        return GridVertex{
            outward(u) * options.ringRadius + normal * options.pipeRadius, normal, {u, v}};
    });
    return makeGeometry(std::move(mesh), std::move(material));
}

}  // namespace platform
