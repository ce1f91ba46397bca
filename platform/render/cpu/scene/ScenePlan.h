// SPDX-License-Identifier: MIT
// From a draw list to shapes on the screen; private to platform/render.
#pragma once

#include <QSize>
#include <cstdint>
#include <glm/mat4x4.hpp>
#include <memory>
#include <unordered_map>
#include <vector>

#include "platform/render/cpu/scene/MeshShape.h"
#include "platform/render/cpu/scene/RipPicture.h"
#include "platform/render/cpu/scene/SceneBins.h"
#include "platform/render/cpu/scene/ScreenShapes.h"
#include "platform/render/cpu/scene/SpritePicture.h"
#include "platform/render/cpu/scene/TileBodies.h"
#include "platform/render/cpu/scene/TileFloor.h"
#include "platform/render/cpu/scene/TilePolygons.h"
#include "platform/render/cpu/scene/TileStrokes.h"
#include "platform/scene/DrawList.h"

namespace platform {

// All shapes of a frame, on the screen and in drawing order. Meshes and pictures are prepared
// once, cached by their ids, and dropped when no frame has shown them for a
// while.
class ScenePlan {
  public:
    // `keepFrames` is the number of frames after which an unused mesh or picture is dropped.
    ScenePlan(int keepFrames, TileWorkers& workers) : keepFrames_(keepFrames), workers_(workers) {}

    void make(const DrawList& list, QSize size, double scale);

    [[nodiscard]] const SceneBins& bins() const { return bins_; }
    [[nodiscard]] const ScreenLens& lens() const { return lens_; }
    [[nodiscard]] const PolygonFrame& frame() const { return frame_; }
    [[nodiscard]] const LineKernel& lineKernel() const { return *lineKernel_; }
    [[nodiscard]] const std::vector<ScreenDot>& dots() const { return dots_; }
    [[nodiscard]] const std::vector<DotStyle>& dotStyles() const { return dotStyles_; }
    [[nodiscard]] const std::vector<ScreenLine>& lines() const { return lines_; }
    [[nodiscard]] const std::vector<ScreenSprite>& sprites() const { return sprites_; }
    [[nodiscard]] const std::vector<ScreenBall>& balls() const { return balls_; }
    [[nodiscard]] const std::vector<Surface>& surfaces() const { return surfaces_; }
    [[nodiscard]] const std::vector<ScreenPolygon>& polygons() const { return polygons_; }
    [[nodiscard]] const std::vector<ScreenFloor>& floors() const { return floors_; }
    // Whether all floors, and the lens before them, are those of the frame before.
    [[nodiscard]] bool hasSameFloors() const { return hasSameFloors_; }

    // The numbers of stored meshes and pictures.
    [[nodiscard]] int meshCount() const { return static_cast<int>(meshes_.size()); }
    [[nodiscard]] int pictureCount() const { return static_cast<int>(pictures_.size()); }

  private:
    struct Picture {
        std::array<std::unique_ptr<SpritePicture>, 2> sprite;  // by whether it is only added
        std::unique_ptr<RipPicture> rip;
        std::unique_ptr<StripePicture> stripes;
        bool hasNoStripes = false;
        std::uint64_t lastFrame = 0;
    };
    struct Shape {
        std::unique_ptr<MeshShape> shape;
        std::uint64_t lastFrame = 0;
    };
    // A point of an instance's mesh.
    struct MeshPlace {
        glm::vec3 way{0.0F};  // from the camera, along the world's axes
        glm::vec3 eye{0.0F};  // the same as the eye sees it, z positive before it
        glm::vec2 at{0.0F};   // pixels
        float height = 0.0F;  // above the mirror
        unsigned outside = 0;
    };
    // A corner of a polygon: its place from the eye and on the screen, and its attributes, which
    // are linear along the polygon.
    struct Corner {
        glm::dvec3 eye{0.0};
        glm::dvec2 at{0.0};
        glm::vec3 way{0.0F};
        std::array<double, ScreenPolygon::kAttributes> value{};
    };
    // Properties that a batch's instances share.
    struct BatchView {
        const DrawBatch* batch = nullptr;
        const MeshShape* shape = nullptr;
        bool mirrored = false;
        bool additive = false;
        Hiding hiding;
    };

    void setFrame(const DrawList& list);
    void addBatches(bool mirrored);
    void addInstance(const BatchView& view, const DrawInstance& instance);
    [[nodiscard]] glm::vec4 tintOf(const BatchView& view, const DrawInstance& instance) const;
    void addDots(const BatchView& view, const DrawInstance& instance);
    void addLines(const BatchView& view, const DrawInstance& instance);
    void addLine(const BatchView& view, const glm::vec4& tint, glm::vec3 a, glm::vec3 b,
                 float heightA, float heightB);
    bool addSprite(const BatchView& view, const DrawInstance& instance);
    void putSprite(const ScreenSprite& sprite);
    bool addBall(const BatchView& view, const DrawInstance& instance);
    void putBall(const ScreenBall& ball);
    void addFaces(const BatchView& view, const DrawInstance& instance);
    // The colours that the surface may have light of.
    [[nodiscard]] unsigned coloursOf(const Surface& surface) const;
    [[nodiscard]] Surface surfaceFor(const BatchView& view, const DrawInstance& instance);
    void placeMesh(const BatchView& view, const DrawInstance& instance);
    // The faces to draw of the mesh whose places are in `places_`.
    [[nodiscard]] const std::vector<MeshShape::Face>& facesOf(const BatchView& view,
                                                              const Surface& surface,
                                                              const DrawInstance& instance) const;
    [[nodiscard]] bool maySee(const MeshShape::Face& face, const Surface& surface,
                              bool doubleSided) const;
    void takeCorners(const MeshShape::Face& face, const BatchView& view, const Surface& surface,
                     const glm::mat3& turn);
    void cutFace(const Surface& surface);
    void addPolygon(const Surface& surface, std::size_t number, bool doubleSided);
    bool setOutline(const Surface& surface, bool doubleSided, ScreenPolygon& polygon) const;
    void setFlatNormal(ScreenPolygon& polygon) const;
    // Whether the light of the polygon whose corners are in `cut_` is as good as even on the
    // screen.
    [[nodiscard]] bool isEven(const Surface& surface, const ScreenPolygon& polygon) const;
    [[nodiscard]] glm::vec3 lightAt(const Surface& surface, const ScreenPolygon& polygon,
                                    const Corner& corner) const;
    [[nodiscard]] Plane along(const glm::dvec3& axis) const;
    void addFloor(const DrawFloor& floor);
    void addMirrored(const DrawFloor& floor);
    void setPicturePlanes(const DrawFloor& floor, ScreenFloor& plane) const;
    const StripePicture* stripesFor(const DrawMaterial& material);
    void putFloor(const ScreenFloor& floor);
    bool addStripes(const DrawFloor& floor, const ScreenFloor& plane);
    [[nodiscard]] Surface floorSurface(const DrawMaterial& material);
    void addFloorPolygon(const DrawFloor& floor);

    [[nodiscard]] glm::vec3 mirroredPlace(const glm::vec3& world) const;
    [[nodiscard]] float heightOf(const glm::vec3& world) const;
    [[nodiscard]] glm::vec3 eyeOf(const glm::vec3& world) const;
    [[nodiscard]] glm::vec2 screenOf(const glm::vec3& eye) const;
    [[nodiscard]] glm::dvec2 screenAt(const glm::dvec3& eye) const;
    [[nodiscard]] Ink inkAt(const BatchView& view, const glm::vec4& tint, float distance,
                            float height) const;
    [[nodiscard]] bool isBehindBall(const glm::vec3& eye) const;

    const MeshShape& shapeOf(const Mesh& mesh);
    Picture& pictureOf(const DrawMaterial& material);
    SpritePicture& spriteOf(const DrawMaterial& material, bool additive);
    const RipPicture& ripOf(const DrawMaterial& material);
    const DotKernel& dotKernelOf(float diameter);
    void dropOld();

    const int keepFrames_;
    TileWorkers& workers_;
    std::uint64_t frameNumber_ = 0;
    const DrawList* list_ = nullptr;
    QSize size_;
    double scale_ = 1.0;
    float heightShare_ = 1.0F;
    float zNear_ = 0.05F;
    float zFar_ = 100.0F;
    glm::vec4 floorPlane_{0.0F};
    // The largest ball so far that hides the shapes behind it.
    glm::vec3 hidingMiddle_{0.0F};
    float hidingRadius_ = 0.0F;

    SceneBins bins_;
    ScreenLens lens_;
    PolygonFrame frame_;
    std::vector<ScreenDot> dots_;
    std::vector<DotStyle> dotStyles_;
    std::vector<ScreenLine> lines_;
    std::vector<ScreenSprite> sprites_;
    std::vector<ScreenBall> balls_;
    std::vector<Surface> surfaces_;
    std::vector<ScreenPolygon> polygons_;
    std::vector<ScreenFloor> floors_, floorsBefore_;
    ScreenLens lensBefore_;
    bool hasSameFloors_ = false;
    std::vector<MeshPlace> places_;
    std::vector<Corner> cut_, uncut_;
    std::vector<glm::vec2> outline_;
    std::unique_ptr<LineKernel> lineKernel_;
    std::vector<std::unique_ptr<DotKernel>> dotKernels_;
    std::unordered_map<std::uint64_t, Shape> meshes_;
    std::unordered_map<qint64, Picture> pictures_;
};

}  // namespace platform
