// SPDX-License-Identifier: MIT
// Scenes with the same demands on a drawer as the saver's worlds.
#pragma once

#include <QImage>
#include <QString>
#include <memory>

#include "platform/scene/Scene.h"
#include "platform/time/RandomSource.h"

namespace platform::test {

// A glowing digit on a clear picture, `points` high, at two pixels per point.
[[nodiscard]] QImage digitPicture(bool one, const QColor& colour);

// 343 additive billboards of four geometries in a turning wire frame.
[[nodiscard]] std::unique_ptr<Scene> makeDigitCube(std::uint64_t seed);
// A turning tube around the camera with a streaming texture, and particles inside. Something
// shows through the texture unless it is opaque.
[[nodiscard]] std::unique_ptr<Scene> makeTunnel(std::uint64_t seed, bool opaque = false);
// Lit blocks, a ring of billboards and a mirroring floor with a grid.
[[nodiscard]] std::unique_ptr<Scene> makeBlocks(std::uint64_t seed);
// Clouds of points around a dark sphere, arcs, and lights that travel along them.
[[nodiscard]] std::unique_ptr<Scene> makeGlobe(std::uint64_t seed);

// One of these by its name: cube, tunnel, wall (an opaque tunnel), blocks, globe; null for
// another name.
[[nodiscard]] std::unique_ptr<Scene> makeStandIn(const QString& name, std::uint64_t seed);

}  // namespace platform::test
