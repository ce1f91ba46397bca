// SPDX-License-Identifier: MIT
#include "platform/scene/Material.h"

#include <atomic>
#include <utility>

namespace platform {

namespace {

std::uint64_t nextId() {
    static std::atomic<std::uint64_t> last{0};
    return ++last;
}

bool hasAlpha(const Contents& contents) {
    if (const auto* colour = std::get_if<QColor>(&contents)) return colour->alphaF() < 1.0F;
    return std::get<QImage>(contents).hasAlphaChannel();
}

// Compares pictures by key; comparing pixels would be slow.
bool isSame(const Contents& a, const Contents& b) {
    if (a.index() != b.index()) return false;
    if (std::holds_alternative<QColor>(a)) return std::get<QColor>(a) == std::get<QColor>(b);
    return std::get<QImage>(a).cacheKey() == std::get<QImage>(b).cacheKey();
}

bool isEmpty(const Contents& contents) {
    const auto* picture = std::get_if<QImage>(&contents);
    return picture != nullptr && picture->isNull();
}

}  // namespace

Material::Material() : Material(QColor(Qt::white)) {}

Material::Material(Contents diffuse) : id_(nextId()), diffuse_(std::move(diffuse)) {
    changed();
}

template <typename T>
void Material::change(T& field, const T& value) {
    if (field == value) return;
    field = value;
    changed();
}

void Material::changed() {
    ++revision_;
    opaque_ = blendMode_ == BlendMode::Alpha && !hasAlpha(diffuse_);
    drawsNothing_ = isEmpty(diffuse_);
}

void Material::setLightingModel(LightingModel model) {
    change(lightingModel_, model);
}

void Material::setDiffuse(Contents contents) {
    if (isSame(diffuse_, contents)) return;
    diffuse_ = std::move(contents);
    changed();
}

QImage Material::picture() const {
    const auto* picture = std::get_if<QImage>(&diffuse_);
    return picture != nullptr ? *picture : QImage();
}

QColor Material::colour() const {
    const auto* colour = std::get_if<QColor>(&diffuse_);
    return colour != nullptr ? *colour : QColor();
}

void Material::setEmission(const QColor& colour) {
    change(emission_, colour);
}
void Material::setContentsTransform(const glm::dmat4& transform) {
    change(contentsTransform_, transform);
}
void Material::setWrapS(WrapMode mode) {
    change(wrapS_, mode);
}
void Material::setWrapT(WrapMode mode) {
    change(wrapT_, mode);
}
void Material::setBlendMode(BlendMode mode) {
    change(blendMode_, mode);
}
void Material::setWritesDepth(bool writes) {
    change(writesDepth_, writes);
}
void Material::setReadsDepth(bool reads) {
    change(readsDepth_, reads);
}
void Material::setDoubleSided(bool doubleSided) {
    change(doubleSided_, doubleSided);
}

}  // namespace platform
