// SPDX-License-Identifier: MIT
// A scene's surfaces on the screen; private to platform/render. Pixels,
// (0, 0) being the picture's upper left corner and y pointing down. Nearness is
// 1 / depth before the camera, and even along everything flat.
#pragma once

#include <array>
#include <cstdint>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

namespace platform {

struct RipPicture;
struct SpritePicture;
struct DotKernel;

// Light to blend over the picture: result = light + present light × (1 − alpha).
struct Ink {
    glm::vec3 light{0.0F};  // alpha multiplied in
    float alpha = 0.0F;     // 0: only added
};

struct Hiding {
    bool reads = true;
    bool writes = true;
    bool operator==(const Hiding&) const = default;
};

struct ScreenDot {
    glm::vec2 middle{0.0F};
    float near = 0.0F;
    Ink ink;
    std::uint32_t style = 0;
};

// Properties that many dots share.
struct DotStyle {
    const DotKernel* kernel = nullptr;
    Hiding hiding;
};

struct ScreenLine {
    glm::vec2 from{0.0F};
    glm::vec2 to{0.0F};
    float nearFrom = 0.0F;
    float nearTo = 0.0F;
    Ink inkFrom;
    Ink inkTo;
    Hiding hiding;
};

// A picture that faces the camera upright.
struct ScreenSprite {
    const SpritePicture* picture = nullptr;
    // The place of the picture's left and upper edges, and the picture's size; a negative size
    // mirrors the picture.
    glm::dvec2 at{0.0};
    glm::dvec2 size{0.0};
    float near = 0.0F;
    glm::vec4 tint{1.0F};  // times the picture; alpha multiplied in
    bool additive = false;
    Hiding hiding;
};

// A ball of one colour, as an ellipse.
struct ScreenBall {
    glm::vec3 middle{0.0F};  // from the eye, z positive before it
    float radius = 0.0F;
    glm::vec2 low{0.0F};
    glm::vec2 high{0.0F};
    Ink ink;
    glm::vec3 inkFog{0.0F};  // fog's colour, alpha multiplied in
    Hiding hiding;
};

// a·x + b·y + c at a pixel's middle.
struct Plane {
    double a = 0.0;
    double b = 0.0;
    double c = 0.0;
    [[nodiscard]] double at(double x, double y) const { return a * x + b * y + c; }
    bool operator==(const Plane&) const = default;
};

// Properties that many polygons share.
struct Surface {
    const RipPicture* picture = nullptr;
    glm::vec4 tint{1.0F};  // alpha multiplied in
    glm::vec3 emission{0.0F};
    bool lambert = false;
    bool additive = false;
    bool opaque = true;
    bool repeatS = false;
    bool repeatT = false;
    bool outlined = true;  // has edges that several samples a pixel smooth
    bool mirrored = false;
    Hiding hiding;
    unsigned colours = 0;  // a bit for each of red, green and blue that may have light
};

struct ScreenPolygon {
    static constexpr int kMaxEdges = 8;
    // Attributes, each multiplied by nearness: the place in the picture, the normal, and the
    // height above the mirror.
    static constexpr std::size_t kPicture = 0;
    static constexpr std::size_t kNormal = 2;
    static constexpr std::size_t kHeight = 5;
    static constexpr std::size_t kAttributes = 6;
    // An even polygon has its red, green and blue light here instead, not multiplied.
    static constexpr std::size_t kLight = 0;
    std::uint32_t surface = 0;
    int edges = 0;
    bool back = false;       // seen from behind
    bool even = false;       // its light is planes on the screen
    bool flat = false;       // has one normal, not its attributes
    glm::vec3 normal{0.0F};  // of length 1, towards the side that is seen
    glm::vec2 low{0.0F};
    glm::vec2 high{0.0F};
    // The signed distance from each edge in pixels; inside ≥ 0.
    std::array<Plane, kMaxEdges> edge{};
    Plane near;
    std::array<Plane, kAttributes> attribute{};
};

enum class ShapeKind : std::uint32_t { Dot, Line, Sprite, Ball, Polygon, Floor };

}  // namespace platform
