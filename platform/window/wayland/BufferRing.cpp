// SPDX-License-Identifier: MIT
#include "platform/window/wayland/BufferRing.h"

#include <sys/eventfd.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

namespace platform::wayland {

namespace {

constexpr std::size_t kBuffers = 3;
// The most missed rectangles that are kept apart; more are joined into one.
constexpr std::size_t kMostMissed = 512;
constexpr std::size_t kMostRetired = 2 * kBuffers;

void append(std::vector<QRect>& list, std::span<const QRect> rects) {
    list.insert(list.end(), rects.begin(), rects.end());
    if (list.size() <= kMostMissed) return;
    QRect all;
    for (const QRect& rect : list)
        all |= rect;
    list.assign(1, all);
}

}  // namespace

std::unique_ptr<Buffer> Buffer::create(QSize size) {
    const auto bytes = static_cast<std::size_t>(size.width()) *
                       static_cast<std::size_t>(size.height()) * sizeof(std::uint32_t);
    if (size.isEmpty()) return nullptr;
    const int file = memfd_create("brixtel", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    if (file < 0) return nullptr;
    void* const memory = ftruncate(file, static_cast<off_t>(bytes)) == 0
                             ? mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0)
                             : MAP_FAILED;
    if (memory == MAP_FAILED) {
        close(file);
        return nullptr;
    }
    return std::unique_ptr<Buffer>(
        new Buffer(size, file, static_cast<std::uint32_t*>(memory), bytes));
}

Buffer::Buffer(QSize size, int file, std::uint32_t* pixels, std::size_t bytes)
    : size_(size), file_(file), pixels_(pixels), bytes_(bytes) {}

Buffer::~Buffer() {
    munmap(pixels_, bytes_);
    close(file_);
}

BufferRing::BufferRing() : file_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

BufferRing::~BufferRing() {
    close(file_);
}

Buffer* BufferRing::freeOf(QSize size) {
    if (std::exchange(size_, size) != size) {
        // A buffer that the compositor still reads is kept until the compositor releases
        // it.
        for (auto& buffer : buffers_)
            retired_.push_back(std::move(buffer));
        buffers_.clear();
        painted_ = nullptr;
        damage_.clear();
    }
    for (const auto& buffer : buffers_)
        if (buffer->state_ == Buffer::State::Free) return buffer.get();
    if (buffers_.size() == kBuffers) return nullptr;
    auto made = Buffer::create(size);
    if (!made) return nullptr;
    made->missed_.assign(1, QRect(QPoint(0, 0), size));
    buffers_.push_back(std::move(made));
    return buffers_.back().get();
}

Buffer* BufferRing::begin(QSize size, std::span<const QRect> damage, std::vector<QRect>& rects) {
    const std::lock_guard lock(mutex_);
    Buffer* const buffer = freeOf(size);
    if (!buffer) return nullptr;
    buffer->state_ = Buffer::State::Painting;
    const QRect whole(QPoint(0, 0), size);
    rects.clear();
    for (const std::span<const QRect> part : {std::span<const QRect>(buffer->missed_), damage})
        for (const QRect& rect : part)
            if (const QRect inside = rect & whole; !inside.isEmpty()) rects.push_back(inside);
    buffer->missed_.clear();
    return buffer;
}

void BufferRing::finish(Buffer& buffer, std::span<const QRect> damage, bool opaque) {
    {
        const std::lock_guard lock(mutex_);
        for (const auto& other : buffers_)
            if (other.get() != &buffer) append(other->missed_, damage);
        append(damage_, damage);
        // The surface may have gone while its buffer was painted.
        if (buffer.state_ != Buffer::State::Painting) return;
        buffer.state_ = Buffer::State::Free;
        if (damage.empty()) return;
        if (painted_) painted_->state_ = Buffer::State::Free;
        painted_ = &buffer;
        paintedOpaque_ = opaque;
        buffer.state_ = Buffer::State::Painted;
    }
    // The main thread takes the picture without waiting for the lock.
    eventfd_write(file_, 1);
}

void BufferRing::miss(std::span<const QRect> damage) {
    const std::lock_guard lock(mutex_);
    for (const auto& buffer : buffers_)
        append(buffer->missed_, damage);
    append(damage_, damage);
}

void BufferRing::acknowledge() const {
    eventfd_t ignored = 0;
    eventfd_read(file_, &ignored);
}

BufferRing::Painted BufferRing::take(QSize size, std::vector<QRect>& damage) {
    const std::lock_guard lock(mutex_);
    damage.clear();
    if (!painted_) return {};
    Buffer* const buffer = std::exchange(painted_, nullptr);
    if (buffer->size_ != size) {
        buffer->state_ = Buffer::State::Free;
        return {};
    }
    buffer->state_ = Buffer::State::Shown;
    std::swap(damage, damage_);
    return {buffer, paintedOpaque_};
}

void BufferRing::released(Buffer& buffer) {
    const std::lock_guard lock(mutex_);
    if (buffer.state_ == Buffer::State::Shown) buffer.state_ = Buffer::State::Free;
}

void BufferRing::reset() {
    const std::lock_guard lock(mutex_);
    painted_ = nullptr;
    for (const auto& buffer : buffers_) {
        // A buffer that is being painted counts as free too: finish() then shows nothing.
        buffer->state_ = Buffer::State::Free;
        buffer->missed_.assign(1, QRect(QPoint(0, 0), buffer->size_));
    }
}

bool BufferRing::hasFree() const {
    const std::lock_guard lock(mutex_);
    return buffers_.size() < kBuffers ||
           std::any_of(buffers_.begin(), buffers_.end(),
                       [](const auto& buffer) { return buffer->state_ == Buffer::State::Free; });
}

void BufferRing::sweep() {
    const std::lock_guard lock(mutex_);
    // The limit bounds the memory that a compositor holds by releasing no buffer.
    while (retired_.size() > kMostRetired)
        retired_.erase(retired_.begin());
    std::erase_if(retired_,
                  [](const auto& buffer) { return buffer->state_ != Buffer::State::Shown; });
}

void BufferRing::endNames() {
    const std::lock_guard lock(mutex_);
    retired_.clear();
    for (const auto& buffer : buffers_) {
        buffer->withAlpha_.reset();
        buffer->opaque_.reset();
    }
}

const wl_buffer_listener ShmBuffers::kListener = {.release = [](void* data, wl_buffer*) {
    Buffer& buffer = *static_cast<Buffer*>(data);
    ShmBuffers& names = *buffer.names_;
    names.ring_.released(buffer);
    names.ring_.sweep();
    names.released_();
}};

ShmBuffers::ShmBuffers(wl_shm* shm, BufferRing& ring, std::function<void()> released)
    : shm_(shm), ring_(ring), released_(std::move(released)) {}

ShmBuffers::~ShmBuffers() {
    ring_.endNames();
}

wl_buffer* ShmBuffers::name(Buffer& buffer, bool opaque) {
    Proxy<wl_buffer>& name = opaque ? buffer.opaque_ : buffer.withAlpha_;
    if (name) return name.get();
    const Proxy<wl_shm_pool> pool(
        wl_shm_create_pool(shm_, buffer.file_, static_cast<std::int32_t>(buffer.bytes_)));
    const QSize size = buffer.size_;
    name.reset(wl_shm_pool_create_buffer(pool.get(), 0, size.width(), size.height(),
                                         size.width() * static_cast<int>(sizeof(std::uint32_t)),
                                         opaque ? WL_SHM_FORMAT_XRGB8888 : WL_SHM_FORMAT_ARGB8888));
    buffer.names_ = this;
    wl_buffer_add_listener(name.get(), &kListener, &buffer);
    return name.get();
}

}  // namespace platform::wayland
