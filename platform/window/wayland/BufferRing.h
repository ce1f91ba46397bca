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
    // The ring's mutex guards the state and the missed rectangles.
    State state_ = State::Free;
    // The rectangles in which the buffer differs from the newest picture.
    std::vector<QRect> missed_;
    // The compositor's names for the buffer, with alpha and without; for the main thread.
    Proxy<wl_buffer> withAlpha_, opaque_;
    ShmBuffers* names_ = nullptr;
};

// Three buffers that receive a window's pictures in turn. The render thread paints one
// buffer while the compositor reads another. The damage that a buffer missed is painted
// again, never copied. A new size makes new buffers; a buffer of an earlier size stays until
// the compositor releases it.
//
// Shared by the native window (main thread) and its surface (render thread); the
// buffers' memory ends with the last of the two.
class BufferRing {
  public:
    BufferRing();
    ~BufferRing();
    BufferRing(const BufferRing&) = delete;
    BufferRing& operator=(const BufferRing&) = delete;

    // Render thread. Gives a buffer of that size to paint into; null while the compositor
    // has all buffers. `rects` receives `damage` and the buffer's missed rectangles, within
    // the picture.
    [[nodiscard]] Buffer* begin(QSize size, std::span<const QRect> damage,
                                std::vector<QRect>& rects);
    // Marks the buffer as the newest picture, which differs from the previous one within
    // `damage`, and wakes the main thread. Without damage there is nothing to show.
    void finish(Buffer& buffer, std::span<const QRect> damage, bool opaque);
    // Notes damage for which there was no free buffer.
    void miss(std::span<const QRect> damage);

    // Main thread. The file is readable once there is a new picture; see acknowledge().
    [[nodiscard]] int file() const { return file_; }
    struct Painted {
        Buffer* buffer = nullptr;  // null for no picture
        bool opaque = false;
    };
    // Takes the newest picture if it has that size, and drops a picture of another size.
    // `damage` receives the difference from the last picture taken.
    [[nodiscard]] Painted take(QSize size, std::vector<QRect>& damage);
    // Resets the readable file.
    void acknowledge() const;
    // Reports that the compositor has released the buffer.
    void released(Buffer& buffer);
    // Frees every buffer after its surface has gone, and forgets the buffers' contents. To be
    // called once the compositor cannot read the buffers.
    void reset();
    [[nodiscard]] bool hasFree() const;
    // Ends the buffers of earlier sizes that the compositor has released.
    void sweep();
    // Ends the compositor's names for all buffers. To be called before the connection ends.
    void endNames();

  private:
    [[nodiscard]] Buffer* freeOf(QSize size);

    const int file_;
    mutable std::mutex mutex_;
    std::vector<std::unique_ptr<Buffer>> buffers_;
    // The buffers of earlier sizes; the main thread ends them.
    std::vector<std::unique_ptr<Buffer>> retired_;
    QSize size_;
    Buffer* painted_ = nullptr;
    bool paintedOpaque_ = false;
    std::vector<QRect> damage_;  // since the last picture taken
};

// Makes the compositor's names for a ring's buffers, and receives their release. The native
// window owns it; the ring and the shared memory outlive it. Main thread.
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
