// SPDX-License-Identifier: MIT
#include "platform/window/PicturePlace.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <cstring>
#include <mutex>
#include <utility>

#include "platform/window/PicturePainter.h"

namespace platform {

// The newest picture, which the render thread writes and the place's owner reads.
class PicturePlace::Picture {
  public:
    Picture() : file_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}
    ~Picture() { close(file_); }
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    // Readable once there is a new picture; acknowledge() empties it.
    [[nodiscard]] int file() const { return file_; }
    void acknowledge() const {
        eventfd_t count = 0;
        (void)eventfd_read(file_, &count);
    }

    // Takes over the parts of the picture that changed, and wakes the main thread.
    void publish(const QImage& from, std::span<const QRect> changed) {
        {
            const std::lock_guard lock(mutex_);
            if (image_.size() != from.size()) {
                image_ = from.copy();
            } else {
                for (const QRect& rect : changed)
                    copy(from, rect & image_.rect());
            }
        }
        (void)eventfd_write(file_, 1);
    }
    void read(const std::function<void(const QImage&)>& use) const {
        const std::lock_guard lock(mutex_);
        use(image_);
    }
    void clear() {
        const std::lock_guard lock(mutex_);
        image_ = QImage();
    }

  private:
    void copy(const QImage& from, const QRect& rect) {
        const auto bytes = static_cast<std::size_t>(rect.width()) * sizeof(QRgb);
        const auto offset = static_cast<std::ptrdiff_t>(rect.left()) * std::ptrdiff_t{sizeof(QRgb)};
        for (int row = rect.top(); row <= rect.bottom(); ++row)
            std::memcpy(image_.scanLine(row) + offset, from.constScanLine(row) + offset, bytes);
    }

    const int file_;
    mutable std::mutex mutex_;
    QImage image_;
};

// Paints on the render thread, and hands each whole picture over.
class PicturePlace::PlaceSurface final : public Surface {
  public:
    explicit PlaceSurface(std::shared_ptr<Picture> picture) : picture_(std::move(picture)) {}

    Result draw(const Frame& frame, std::span<const QRect> damage) override {
        const QSize size = frame.grid.size;
        const QRect whole(QPoint(0, 0), size);
        if (size.isEmpty()) return Result::Drawn;
        if (canvas_.size() != size) {
            canvas_ = QImage(size, QImage::Format_RGB32);
            damage = {&whole, 1};
        }
        if (canvas_.isNull()) return Result::Drawn;
        painter_.paint(frame, damage,
                       {.pixels = reinterpret_cast<std::uint32_t*>(canvas_.bits()),
                        .stride = size.width(),
                        .size = size});
        picture_->publish(canvas_, painter_.changed(damage));
        return Result::Drawn;
    }
    Result repair(const Frame& frame, std::span<const QRect> lost) override {
        return draw(frame, lost);
    }
    Result finish() override { return Result::Drawn; }
    [[nodiscard]] const QString& drawer() const override { return painter_.drawer(); }
    [[nodiscard]] int rung() const override { return painter_.rung(); }
    [[nodiscard]] bool failsScenes() const override { return painter_.failsScenes(); }
    void frameTook(double seconds) override { painter_.frameTook(seconds); }

  private:
    const std::shared_ptr<Picture> picture_;
    QImage canvas_;
    PicturePainter painter_;
};

// The window system's part: a size, and no window at all.
class PicturePlace::PlaceWindow final : public NativeWindow {
  public:
    PlaceWindow(PicturePlace& place, NativeWindowDelegate& delegate)
        : place_(place),
          delegate_(delegate),
          painted_(place.picture_->file(), QSocketNotifier::Read) {
        place_.window_ = this;
        QObject::connect(&painted_, &QSocketNotifier::activated, &painted_, [this] {
            place_.picture_->acknowledge();
            delegate_.readyForFrame(false);
            if (place_.action_) place_.action_();
        });
    }
    ~PlaceWindow() override { place_.window_ = nullptr; }

    [[nodiscard]] std::int64_t number() const override { return 1; }
    [[nodiscard]] WindowRef reference() const override { return {}; }
    [[nodiscard]] bool isDrawable() const override { return true; }
    [[nodiscard]] bool exists() override { return true; }
    [[nodiscard]] QRectF frame() const override { return {QPointF(0, 0), size()}; }
    void setFrame(const QRectF&) override {}
    [[nodiscard]] QSizeF size() const override { return place_.measures_.size; }
    [[nodiscard]] QSize pixelSize() const override { return (size() * scale()).toSize(); }
    [[nodiscard]] double scale() const override { return place_.measures_.scale; }
    [[nodiscard]] std::optional<Screen> screen() const override { return place_.measures_.screen; }
    void show() override {}
    void raise() override {}
    void hide() override {}
    void keepOnTop() override {}
    void takeKeyboard() override {}
    [[nodiscard]] bool hasKeyboard() const override { return false; }
    [[nodiscard]] bool isShown() const override { return place_.measures_.isSeen; }
    [[nodiscard]] bool isSeen() const override {
        return place_.measures_.isSeen && !pixelSize().isEmpty();
    }
    void setIgnoresMouse(bool) override {}
    void setTitle(const QString&) override {}
    void setCursorHidden(bool) override {}
    void setOpacity(double) override {}
    [[nodiscard]] SurfaceMaker surfaceMaker(const SurfaceOptions&) override {
        return [picture = place_.picture_](int) { return std::make_unique<PlaceSurface>(picture); };
    }

    void measuresChanged() {
        delegate_.geometryChanged();
        delegate_.visibilityChanged();
        // A picture from before may never be shown.
        delegate_.readyForFrame(true);
    }
    void wasShown() { delegate_.readyForFrame(true); }

  private:
    PicturePlace& place_;
    NativeWindowDelegate& delegate_;
    QSocketNotifier painted_;
};

PicturePlace::PicturePlace() : picture_(std::make_shared<Picture>()) {}

PicturePlace::~PicturePlace() = default;

void PicturePlace::setMeasures(const Measures& measures) {
    if (measures_ == measures) return;
    measures_ = measures;
    if (window_) window_->measuresChanged();
}

void PicturePlace::wasShown() {
    if (window_) window_->wasShown();
}

void PicturePlace::read(const std::function<void(const QImage&)>& use) const {
    picture_->read(use);
}

std::unique_ptr<NativeWindow> PicturePlace::makeWindow(NativeWindowDelegate& delegate) {
    picture_->clear();
    return std::make_unique<PlaceWindow>(*this, delegate);
}

}  // namespace platform
