// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/shm.h>

#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/window/x11/Xcb.h"

namespace platform {

// Memory shared by this program and an X server on the same machine. The surface owns it;
// the connection must outlive it. One thread at a time: the render thread.
class ShmImage {
  public:
    // Null if the server has no shared memory, or runs on another machine. Waits for the
    // server.
    [[nodiscard]] static std::unique_ptr<ShmImage> create(xcb_connection_t* connection,
                                                          std::size_t bytes);
    ~ShmImage();
    ShmImage(const ShmImage&) = delete;
    ShmImage& operator=(const ShmImage&) = delete;

    [[nodiscard]] std::uint8_t* data() const { return data_; }
    [[nodiscard]] xcb_shm_seg_t segment() const { return segment_; }

  private:
    ShmImage(xcb_connection_t* connection, std::uint8_t* data, std::size_t bytes);
    bool attach(int file);

    xcb_connection_t* connection_;
    std::uint8_t* data_;
    std::size_t bytes_;
    xcb_shm_seg_t segment_ = 0;
};

}  // namespace platform
