// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <QSize>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

#include "platform/window/wayland/Protocols.h"

namespace platform::wayland {

class ShmBuffers;

// Memory for pictures that the program and a compositor share, one number a
// pixel, premultiplied ARGB. Owned by a BufferRing.
class Buffer {
  public:
    // Null where the machine gives no memory.
    [[nodiscard]] static std::unique_ptr<Buffer> create(QSize size);
    ~Buffer();
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;

    [[nodiscard]] QSize size() const { return size_; }
    [[nodiscard]] std::uint32_t* pixels() const { return pixels_; }

  private:
    friend class BufferRing;
    friend class ShmBuffers;
    enum class State { Free, Painting, Painted, Shown };
    Buffer(QSize size, int file, std::uint32_t* pixels, std::size_t bytes);

    const QSize size_;
    const int file_;
    std::uint32_t* const pixels_;
    const std::size_t bytes_;
    // Under the ring's mutex.
    State state_ = State::Free;
    // Where the picture differs from the newest one.
    std::vector<QRect> missed_;
    // The compositor's names for the buffer, with alpha and without; for the main thread.
    Proxy<wl_buffer> withAlpha_, opaque_;
    ShmBuffers* names_ = nullptr;
};

// Three buffers that a window's pictures are painted into in turn. The render
// thread paints one while the compositor reads another; what a buffer missed
// meanwhile is painted again, never copied. A new size makes new buffers, and the
// old ones stay until the compositor gives them back.
//
// Shared by the native window (main thread) and its surface (render thread); the
// buffers' memory ends with the last of the two.
class BufferRing {
  public:
    BufferRing();
    ~BufferRing();
    BufferRing(const BufferRing&) = delete;
    BufferRing& operator=(const BufferRing&) = delete;

    // Render thread. A buffer of that size to paint into; null where the
    // compositor has them all. `rects` gets `damage` and all that the buffer
    // missed, within the picture.
    [[nodiscard]] Buffer* begin(QSize size, std::span<const QRect> damage,
                                std::vector<QRect>& rects);
    // The buffer shows the newest picture, which differs from the one before within
    // `damage`. Wakes the main thread.
    void finish(Buffer& buffer, std::span<const QRect> damage, bool opaque);
    // The picture changed there, and there was nothing to paint on.
    void miss(std::span<const QRect> damage);

    // Main thread. Readable once there is a new picture; take() empties it.
    [[nodiscard]] int file() const { return file_; }
    struct Painted {
        Buffer* buffer = nullptr;  // null: none
        bool opaque = false;
    };
    // The newest picture that was not taken, if it has that size; one of another
    // size is dropped. `damage` gets where it differs from the one taken before.
    [[nodiscard]] Painted take(QSize size, std::vector<QRect>& damage);
    // Empties the file.
    void acknowledge() const;
    // The compositor reads the buffer no more.
    void released(Buffer& buffer);
    // The surface that the pictures were for is gone: every buffer is free and
    // shows nothing that counts. To be called once the compositor cannot read them.
    void reset();
    [[nodiscard]] bool hasFree() const;
    // Ends the memory of an earlier size that the compositor gave back.
    void sweep();
    // Ends the compositor's names for all buffers. Before the connection ends.
    void endNames();

  private:
    [[nodiscard]] Buffer* freeOf(QSize size);

    const int file_;
    mutable std::mutex mutex_;
    std::vector<std::unique_ptr<Buffer>> buffers_;
    // The buffers of another size than the window's; the main thread ends them.
    std::vector<std::unique_ptr<Buffer>> retired_;
    QSize size_;
    Buffer* painted_ = nullptr;
    bool paintedOpaque_ = false;
    std::vector<QRect> damage_;  // since the picture that was taken last
};

// Makes the compositor's names for a ring's buffers, and hears when the compositor
// gives one back. The ring and the shared memory outlive it. Main thread.
class ShmBuffers {
  public:
    ShmBuffers(wl_shm* shm, BufferRing& ring, std::function<void()> released);
    ~ShmBuffers();
    ShmBuffers(const ShmBuffers&) = delete;
    ShmBuffers& operator=(const ShmBuffers&) = delete;

    [[nodiscard]] wl_buffer* name(Buffer& buffer, bool opaque);

  private:
    static const wl_buffer_listener kListener;
    wl_shm* const shm_;
    BufferRing& ring_;
    const std::function<void()> released_;
};

}  // namespace platform::wayland
