// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <variant>

#include <QColor>
#include <QImage>

#include <glm/mat4x4.hpp>

namespace platform {

enum class LightingModel {
    Constant,  // the diffuse contents as they are, no light
    Lambert,   // diffuse × (Σ light × max(N·L, 0) + ambient) + emission
};
enum class BlendMode {
    Alpha,     // over what lies behind
    Additive,  // premultiplied source + destination
};
enum class WrapMode { Clamp, Repeat };

// An sRGB colour, or an sRGB picture. An empty picture draws nothing.
using Contents = std::variant<QColor, QImage>;

// The look of a surface. Geometries share ownership of a material. Main thread: the
// material may change at any time, and its revision rises with every real change. A
// picture is shared, not copied; QImage::cacheKey() tells pictures apart.
class Material {
  public:
    Material();
    explicit Material(Contents diffuse);
    Material(const Material&) = delete;
    Material& operator=(const Material&) = delete;

    [[nodiscard]] LightingModel lightingModel() const { return lightingModel_; }
    void setLightingModel(LightingModel model);

    [[nodiscard]] const Contents& diffuse() const { return diffuse_; }
    void setDiffuse(Contents contents);
    // The diffuse contents as one kind; null or invalid when the contents are the other kind.
    [[nodiscard]] QImage picture() const;
    [[nodiscard]] QColor colour() const;

    // Light added to the reflected light; Lambert only. Black by default. The
    // colour's alpha dims the light.
    [[nodiscard]] const QColor& emission() const { return emission_; }
    void setEmission(const QColor& colour);

    // uv' = M · (u, v, 0, 1), in double precision. The drawer gets the matrix
    // with whole repeats taken off.
    [[nodiscard]] const glm::dmat4& contentsTransform() const { return contentsTransform_; }
    void setContentsTransform(const glm::dmat4& transform);

    [[nodiscard]] WrapMode wrapS() const { return wrapS_; }
    [[nodiscard]] WrapMode wrapT() const { return wrapT_; }
    void setWrapS(WrapMode mode);
    void setWrapT(WrapMode mode);

    [[nodiscard]] BlendMode blendMode() const { return blendMode_; }
    void setBlendMode(BlendMode mode);

    [[nodiscard]] bool writesDepth() const { return writesDepth_; }
    void setWritesDepth(bool writes);

    // Whether nearer surfaces hide this one. When off, the surface shows
    // through everything drawn before it.
    [[nodiscard]] bool readsDepth() const { return readsDepth_; }
    void setReadsDepth(bool reads);

    [[nodiscard]] bool isDoubleSided() const { return doubleSided_; }
    void setDoubleSided(bool doubleSided);

    // Whether nothing shines through: alpha blending, of contents without alpha.
    [[nodiscard]] bool isOpaque() const { return opaque_; }
    // Whether the drawing order within this kind makes no difference: light
    // that only adds and hides nothing.
    [[nodiscard]] bool commutes() const {
        return blendMode_ == BlendMode::Additive && !writesDepth_;
    }
    [[nodiscard]] bool drawsNothing() const { return drawsNothing_; }

    [[nodiscard]] std::uint64_t id() const { return id_; }
    [[nodiscard]] std::uint64_t revision() const { return revision_; }

  private:
    template <typename T>
    void change(T& field, const T& value);
    void changed();

    const std::uint64_t id_;
    std::uint64_t revision_ = 0;
    LightingModel lightingModel_ = LightingModel::Lambert;
    Contents diffuse_;
    QColor emission_ = Qt::black;
    glm::dmat4 contentsTransform_{1.0};
    WrapMode wrapS_ = WrapMode::Clamp;
    WrapMode wrapT_ = WrapMode::Clamp;
    BlendMode blendMode_ = BlendMode::Alpha;
    bool writesDepth_ = true;
    bool readsDepth_ = true;
    bool doubleSided_ = false;
    bool opaque_ = true;
    bool drawsNothing_ = false;
};

using MaterialPtr = std::shared_ptr<Material>;

}  // namespace platform
