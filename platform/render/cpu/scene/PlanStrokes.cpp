// SPDX-License-Identifier: MIT
// Dots, lines, sprites and balls.
#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>
#include <glm/mat3x3.hpp>

#include "platform/render/cpu/scene/ScenePlan.h"
#include "platform/render/cpu/scene/SceneTile.h"

namespace platform {

namespace {

constexpr float kMostCoordinate = 1e7F;  // pixels; the limit of visible places
// The share of a card's size that it may be off from facing the camera.
constexpr float kUpright = 2e-4F;
// The part of a ball's radius that counts as hiding: dropped shapes then really lie behind it.
constexpr float kHidingShare = 0.97F;

bool isSane(glm::vec2 at) {
    return std::abs(at.x) < kMostCoordinate && std::abs(at.y) < kMostCoordinate;
}

// Whether some of a ball may be seen in the tile with this middle: whether the cone that
// the eye sees the ball in meets the one that holds the tile and a pixel around it.
bool canShow(const ScreenBall& ball, const ScreenLens& lens, glm::vec2 tileMiddle) {
    const glm::vec2 half((0.5F * kTileWidth + 1.0F) * lens.perPixel.x,
                         (0.5F * kTileHeight + 1.0F) * lens.perPixel.y);
    const glm::vec3 look((tileMiddle.x - lens.middle.x) * lens.perPixel.x,
                         (lens.middle.y - tileMiddle.y) * lens.perPixel.y, 1.0F);
    const float sinTile = glm::length(half) / glm::length(look);
    const float away = glm::length(ball.middle);
    const float sinBall = ball.radius / away;
    if (!(sinTile < 1.0F && sinBall < 1.0F)) return true;
    const float cosTile = std::sqrt(1.0F - sinTile * sinTile);
    const float cosBall = std::sqrt(1.0F - sinBall * sinBall);
    const float cosBetween = glm::dot(look, ball.middle) / (glm::length(look) * away);
    return cosBetween >= cosTile * cosBall - sinTile * sinBall - 1e-5F;
}

// Whether the mesh is a card with a picture, which a sprite shows where it faces the camera.
bool isSprite(const MeshShape& shape, const DrawMaterial& material) {
    return shape.isCard && !material.picture.isNull() && material.doubleSided &&
           material.lighting == LightingModel::Constant && material.wrapS == WrapMode::Clamp &&
           material.wrapT == WrapMode::Clamp && material.contentsTransform == glm::mat4(1.0F);
}

// Whether a card with these sides, as the eye sees them, faces the eye upright.
bool isUpright(const glm::vec3& along, const glm::vec3& down) {
    const float most = kUpright * std::min(std::abs(along.x), std::abs(down.y));
    return along.x != 0.0F && down.y != 0.0F &&
           std::max({std::abs(along.y), std::abs(along.z), std::abs(down.x), std::abs(down.z)}) <=
               most;
}

// Whether a ball stays a ball.
bool isEvenlyGrown(const glm::mat3& turn) {
    const float grown = glm::length(turn[0]);
    for (int i = 0; i < 3; ++i) {
        if (std::abs(glm::length(turn[i]) - grown) > 1e-3F * grown) return false;
        if (std::abs(glm::dot(turn[i], turn[(i + 1) % 3])) > 1e-3F * grown * grown) return false;
    }
    return true;
}

}  // namespace

bool ScenePlan::isBehindBall(const glm::vec3& eye) const {
    if (hidingRadius_ <= 0.0F) return false;
    const float square = glm::dot(eye, eye);
    const float along = glm::dot(eye, hidingMiddle_);
    if (!(along > 0.0F) || along >= square) return false;
    return glm::dot(hidingMiddle_, hidingMiddle_) - along * along / square <
           hidingRadius_ * hidingRadius_;
}

void ScenePlan::addDots(const BatchView& view, const DrawInstance& instance) {
    const MeshData& data = view.batch->mesh->data();
    float diameter = std::max(static_cast<float>(data.pointSize * scale_), 1.0F);
    if (data.pointHeightShare > 0.0)
        diameter = std::min(
            diameter, static_cast<float>(data.pointHeightShare * size_.height()) * heightShare_);
    if (!std::isfinite(diameter)) return;
    // A dot is at least one pixel wide. Where its share of the height is less, it has less light
    // instead.
    const float share = std::clamp(diameter, 0.0F, 1.0F);
    diameter = std::clamp(diameter, 1.0F, 4096.0F);
    const auto style = static_cast<std::uint32_t>(dotStyles_.size());
    dotStyles_.push_back({&dotKernelOf(diameter), view.hiding});
    const glm::vec4 tint = tintOf(view, instance) * (share * share);
    const float reach = 0.5F * diameter + 1.0F;
    for (const std::uint32_t index : data.indices) {
        if (index >= data.positions.size()) continue;
        glm::vec3 world(instance.world * glm::vec4(data.positions[index], 1.0F));
        float height = 0.0F;
        if (view.mirrored) {
            height = heightOf(world);
            if (height < 0.0F) continue;
            world = mirroredPlace(world);
        }
        const glm::vec3 eye = eyeOf(world);
        if (!(eye.z >= zNear_ && eye.z <= zFar_)) continue;
        if (view.hiding.reads && isBehindBall(eye)) continue;
        const glm::vec2 at = screenOf(eye);
        if (!isSane(at)) continue;
        const ShapeCall call(ShapeKind::Dot, dots_.size());
        dots_.push_back({at, 1.0F / eye.z, inkAt(view, tint, glm::length(eye), height), style});
        bins_.add(call, at - reach, at + reach);
    }
}

void ScenePlan::addLines(const BatchView& view, const DrawInstance& instance) {
    const MeshData& data = view.batch->mesh->data();
    const glm::vec4 tint = tintOf(view, instance);
    for (std::size_t i = 0; i + 1 < data.indices.size(); i += 2) {
        if (std::max(data.indices[i], data.indices[i + 1]) >= data.positions.size()) continue;
        glm::vec3 a(instance.world * glm::vec4(data.positions[data.indices[i]], 1.0F));
        glm::vec3 b(instance.world * glm::vec4(data.positions[data.indices[i + 1]], 1.0F));
        if (!view.mirrored) {
            addLine(view, tint, eyeOf(a), eyeOf(b), 0.0F, 0.0F);
            continue;
        }
        float heightA = heightOf(a);
        float heightB = heightOf(b);
        if (heightA < 0.0F && heightB < 0.0F) continue;
        if (heightA < 0.0F || heightB < 0.0F) {
            const float share = heightA / (heightA - heightB);
            (heightA < 0.0F ? a : b) = a + share * (b - a);
            (heightA < 0.0F ? heightA : heightB) = 0.0F;
        }
        addLine(view, tint, eyeOf(mirroredPlace(a)), eyeOf(mirroredPlace(b)), heightA, heightB);
    }
}

void ScenePlan::addLine(const BatchView& view, const glm::vec4& tint, glm::vec3 a, glm::vec3 b,
                        float heightA, float heightB) {
    // A part behind the camera or too far away is cut off.
    const auto cut = [&](float limit, float side) {
        const float insideA = side * (a.z - limit);
        const float insideB = side * (b.z - limit);
        if (!(insideA >= 0.0F || insideB >= 0.0F)) return false;
        if (insideA >= 0.0F && insideB >= 0.0F) return true;
        const float share = insideA / (insideA - insideB);
        const bool first = insideA < 0.0F;
        (first ? heightA : heightB) = heightA + share * (heightB - heightA);
        (first ? a : b) = a + share * (b - a);
        return true;
    };
    if (!cut(zNear_, 1.0F) || !cut(zFar_, -1.0F)) return;
    if (view.hiding.reads && isBehindBall(a) && isBehindBall(b)) return;
    ScreenLine line{.from = screenOf(a),
                    .to = screenOf(b),
                    .nearFrom = 1.0F / a.z,
                    .nearTo = 1.0F / b.z,
                    .inkFrom = inkAt(view, tint, glm::length(a), heightA),
                    .inkTo = inkAt(view, tint, glm::length(b), heightB),
                    .hiding = view.hiding};
    if (!isSane(line.from) || !isSane(line.to)) return;
    const float reach = lineKernel_->reach + 1.0F;
    const ShapeCall call(ShapeKind::Line, lines_.size());
    lines_.push_back(line);
    bins_.add(call, glm::min(line.from, line.to) - reach, glm::max(line.from, line.to) + reach);
}

bool ScenePlan::addSprite(const BatchView& view, const DrawInstance& instance) {
    const DrawMaterial& material = view.batch->material;
    if (view.mirrored || !isSprite(*view.shape, material)) return false;
    const glm::mat4 toEye = list_->camera.view * instance.world;
    const glm::vec3 along(toEye * glm::vec4(view.shape->along, 0.0F));
    const glm::vec3 down(toEye * glm::vec4(view.shape->down, 0.0F));
    if (!isUpright(along, down)) return false;
    glm::vec3 corner(toEye * glm::vec4(view.shape->corner, 1.0F));
    corner.z = -corner.z;
    if (!(corner.z >= zNear_ && corner.z <= zFar_)) return true;
    const glm::dvec2 perUnit(1.0 / (static_cast<double>(corner.z) * lens_.perPixel.x),
                             1.0 / (static_cast<double>(corner.z) * lens_.perPixel.y));
    ScreenSprite sprite;
    sprite.at = {lens_.middle.x + corner.x * perUnit.x, lens_.middle.y - corner.y * perUnit.y};
    sprite.size = {along.x * perUnit.x, -down.y * perUnit.y};
    if (!isSane(glm::vec2(sprite.at)) || !isSane(glm::vec2(sprite.at + sprite.size))) return false;
    // A tint cannot express fog that is not black.
    if (frame_.hasFog && !view.additive && glm::length(frame_.fogColour) > 0.0F) return false;
    const glm::vec3 middle = corner + 0.5F * glm::vec3(along.x, down.y, 0.0F);
    const glm::vec4 tint = tintOf(view, instance);
    sprite.picture = &spriteOf(material, view.additive).forSize(sprite.size);
    sprite.near = 1.0F / corner.z;
    sprite.tint = {inkAt(view, tint, glm::length(middle), 0.0F).light, tint.a};
    sprite.additive = view.additive;
    sprite.hiding = view.hiding;
    putSprite(sprite);
    return true;
}

// Adds a sprite to the tiles that its picture has something in.
void ScenePlan::putSprite(const ScreenSprite& sprite) {
    const ShapeCall call(ShapeKind::Sprite, sprites_.size());
    sprites_.push_back(sprite);
    const glm::vec2 a(sprite.at);
    const glm::vec2 b(sprite.at + sprite.size);
    const glm::dvec2 perPixel(sprite.picture->width / sprite.size.x,
                              sprite.picture->height / sprite.size.y);
    bins_.addWhere(call, glm::min(a, b), glm::max(a, b), [&](int tileX, int tileY) {
        const glm::dvec2 low(tileX * kTileWidth, tileY * kTileHeight);
        const glm::dvec2 from = (low - sprite.at) * perPixel;
        const glm::dvec2 to = (low + glm::dvec2(kTileWidth, kTileHeight) - sprite.at) * perPixel;
        return !sprite.picture->isEmpty(std::min(from.x, to.x), std::min(from.y, to.y),
                                        std::max(from.x, to.x), std::max(from.y, to.y));
    });
}

bool ScenePlan::addBall(const BatchView& view, const DrawInstance& instance) {
    const DrawMaterial& material = view.batch->material;
    const glm::vec4 tint = tintOf(view, instance);
    if (!view.shape->isBall || view.mirrored || view.additive || !material.opaque ||
        tint.a < 1.0F || !material.picture.isNull() || material.lighting != LightingModel::Constant)
        return false;
    const glm::mat3 turn(instance.world);
    if (!isEvenlyGrown(turn)) return false;
    ScreenBall ball;
    const glm::vec3 middle = view.batch->mesh->bounds().centre();
    ball.middle = eyeOf(glm::vec3(instance.world * glm::vec4(middle, 1.0F)));
    ball.radius = glm::length(turn[0]) * view.shape->radius;
    // A ball that the near or the far plane cuts is no ellipse.
    if (!(ball.middle.z - ball.radius > zNear_ && ball.middle.z + ball.radius < zFar_))
        return false;
    // The box of its eight corners holds it, seen from anywhere.
    glm::vec2 low(kMostCoordinate), high(-kMostCoordinate);
    for (int i = 0; i < 8; ++i) {
        const glm::vec3 side((i & 1) != 0 ? 1.0F : -1.0F, (i & 2) != 0 ? 1.0F : -1.0F,
                             (i & 4) != 0 ? 1.0F : -1.0F);
        const glm::vec2 at = screenOf(ball.middle + ball.radius * side);
        low = glm::min(low, at);
        high = glm::max(high, at);
    }
    if (!isSane(low) || !isSane(high)) return false;
    ball.low = low - 1.0F;
    ball.high = high + 1.0F;
    const float distance = std::max(0.0F, glm::length(ball.middle) - ball.radius);
    ball.ink = inkAt(view, tint, distance, 0.0F);
    ball.hiding = view.hiding;
    putBall(ball);
    return true;
}

// Adds a ball to the tiles that may show it, unless a larger one hides it.
void ScenePlan::putBall(const ScreenBall& ball) {
    if (ball.hiding.reads && isBehindBall(ball.middle) &&
        isBehindBall(ball.middle - glm::vec3(ball.radius, 0.0F, 0.0F)) &&
        isBehindBall(ball.middle + glm::vec3(ball.radius, 0.0F, 0.0F)) &&
        isBehindBall(ball.middle - glm::vec3(0.0F, ball.radius, ball.radius)) &&
        isBehindBall(ball.middle + glm::vec3(0.0F, ball.radius, -ball.radius)))
        return;
    const ShapeCall call(ShapeKind::Ball, balls_.size());
    balls_.push_back(ball);
    bins_.addWhere(call, ball.low, ball.high, [&](int tileX, int tileY) {
        return canShow(ball, lens_,
                       {(static_cast<float>(tileX) + 0.5F) * kTileWidth,
                        (static_cast<float>(tileY) + 0.5F) * kTileHeight});
    });
    if (ball.hiding.writes && kHidingShare * ball.radius > hidingRadius_) {
        hidingMiddle_ = ball.middle;
        hidingRadius_ = kHidingShare * ball.radius;
    }
}

}  // namespace platform
