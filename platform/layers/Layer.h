// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QImage>
#include <QPointF>
#include <QRectF>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/animation/Animation.h"
#include "platform/layers/Rgba.h"

namespace platform {

// One rectangle of a retained picture. A layer shares ownership of its
// sublayers and its mask with every other holder of a shared_ptr. The tree is
// plain data on the main thread: DisplayListBuilder makes its picture at any
// time, without a window.
//
// Points, origin at the lower left, y up; a sublayer lies in its superlayer's
// bounds. `position` is the centre. There are no implicit animations: every
// setter takes effect at once, and an equal value changes nothing.
class Layer {
  public:
    Layer();
    virtual ~Layer();
    Layer(const Layer&) = delete;
    Layer& operator=(const Layer&) = delete;

    // Geometry. The bounds' origin shifts the sublayers.
    [[nodiscard]] QRectF frame() const;
    void setFrame(const QRectF& frame);
    [[nodiscard]] const QRectF& bounds() const { return bounds_; }
    void setBounds(const QRectF& bounds);
    [[nodiscard]] QPointF position() const { return position_; }
    void setPosition(QPointF position);

    // Look. Opacity in [0, 1] multiplies the whole subtree.
    [[nodiscard]] double opacity() const { return opacity_; }
    void setOpacity(double opacity);
    [[nodiscard]] const QColor& backgroundColor() const { return background_; }
    void setBackgroundColor(const QColor& colour);  // an invalid colour draws nothing
    // A premultiplied picture, stretched to the bounds; a null image draws nothing.
    [[nodiscard]] const QImage& contents() const { return contents_; }
    void setContents(const QImage& contents);
    // Pixels of the contents per point.
    [[nodiscard]] double contentsScale() const { return contentsScale_; }
    void setContentsScale(double scale);
    [[nodiscard]] bool masksToBounds() const { return masksToBounds_; }
    void setMasksToBounds(bool masks);

    // Tree. Adding a layer removes it from its former superlayer. A cycle is a programming
    // error.
    [[nodiscard]] const std::vector<std::shared_ptr<Layer>>& sublayers() const {
        return sublayers_;
    }
    void addSublayer(std::shared_ptr<Layer> layer);
    void removeFromSuperlayer();
    [[nodiscard]] Layer* superlayer() const { return superlayer_; }
    // Only the alpha of the mask and its sublayers counts. The mask lies in
    // this layer's own coordinates; nothing outside the mask shows.
    [[nodiscard]] const std::shared_ptr<Layer>& mask() const { return mask_; }
    void setMask(std::shared_ptr<Layer> mask);

    // Time.
    [[nodiscard]] const LocalTime& time() const { return time_; }
    void setTime(const LocalTime& time);
    // The media clock's time as this layer's local time.
    [[nodiscard]] double localTime(double clockTime) const;

    // Animations, one per key; adding one under a key in use replaces it.
    // `clockTime` is the media clock's now.
    void addAnimation(const std::string& key, KeyframeAnimation animation, double clockTime);
    void addAnimation(const std::string& key, BasicAnimation animation, double clockTime);
    void removeAnimation(const std::string& key);
    [[nodiscard]] const Animation* animation(const std::string& key) const;

    // The value at the layer's local time, animations included.
    [[nodiscard]] QPointF shownPosition(double layerTime) const;
    [[nodiscard]] double shownOpacity(double layerTime) const;

    // Called on every change of this layer or its subtree. Meant for the root
    // of a window's tree.
    void onChange(std::function<void()> action) { onChange_ = std::move(action); }

  protected:
    void changed();

  private:
    friend class DisplayListBuilder;
    void structureChanged();
    void attach(Layer* parent);
    void detach();
    void put(const std::string& key, Animation animation);
    [[nodiscard]] std::optional<double> animated(KeyPath keyPath, double layerTime) const;

    QRectF bounds_;
    QPointF position_;
    double opacity_ = 1.0;
    QColor background_;
    QImage contents_;
    double contentsScale_ = 1.0;
    bool masksToBounds_ = false;
    LocalTime time_;
    std::vector<std::pair<std::string, Animation>> animations_;
    std::vector<std::shared_ptr<Layer>> sublayers_;
    std::shared_ptr<Layer> mask_;
    Layer* superlayer_ = nullptr;
    std::function<void()> onChange_;

    // The root keeps three numbers for its whole tree: a process-wide number of
    // the last change of structure, the structure that `order_` was counted
    // for, and the number of layers counted.
    std::uint64_t structure_ = 0;
    std::uint64_t counted_ = 0;
    std::uint32_t count_ = 0;
    // The layer's place in its tree, before its mask and sublayers.
    std::uint32_t order_ = 0;
};

struct ColourStop {
    double location = 0.0;  // share of the way from start to end
    QColor colour;
};

// A layer filled with a linear gradient between two points of its unit square,
// by default from the middle of the bottom to the middle of the top. The end
// colours extend beyond the first and last stop. Between stops, the components
// are interpolated gamma-encoded and premultiplied.
class GradientLayer final : public Layer {
  public:
    // Locations rise; a gradient without stops draws nothing.
    void setStops(const std::vector<ColourStop>& stops);
    void setAxis(QPointF start, QPointF end);

    struct Stop {
        float location;
        Rgba colour;
        friend bool operator==(const Stop&, const Stop&) = default;
    };
    [[nodiscard]] const std::vector<Stop>& stops() const { return stops_; }
    [[nodiscard]] QPointF start() const { return start_; }
    [[nodiscard]] QPointF end() const { return end_; }

  private:
    std::vector<Stop> stops_;
    QPointF start_{0.5, 0.0};
    QPointF end_{0.5, 1.0};
};

}  // namespace platform
