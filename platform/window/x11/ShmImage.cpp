// SPDX-License-Identifier: MIT
#include "platform/window/x11/ShmImage.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

namespace platform {

namespace {

// Files pass only over sockets of this machine. A display forwarded from another machine
// may offer shared memory that is the other machine's.
bool isLocal(xcb_connection_t* connection) {
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    const int socket = xcb_get_file_descriptor(connection);
    return getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length) == 0 &&
           address.ss_family == AF_UNIX;
}

// Version 1.2 is the first that accepts a file.
bool takesFiles(xcb_connection_t* connection) {
    const xcb_query_extension_reply_t* const present =
        xcb_get_extension_data(connection, &xcb_shm_id);
    if (!present || !present->present) return false;
    const auto version =
        answer(connection, xcb_shm_query_version(connection), xcb_shm_query_version_reply);
    if (!version) return false;
    return version->major_version > 1 ||
           (version->major_version == 1 && version->minor_version >= 2);
}

}  // namespace

std::unique_ptr<ShmImage> ShmImage::create(xcb_connection_t* connection, std::size_t bytes) {
    if (bytes == 0 || !isLocal(connection) || !takesFiles(connection)) return nullptr;
    const int file = memfd_create("window", MFD_CLOEXEC);
    if (file < 0) return nullptr;
    void* data = MAP_FAILED;
    if (ftruncate(file, static_cast<off_t>(bytes)) == 0)
        data = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (data == MAP_FAILED) {
        close(file);
        return nullptr;
    }
    // One call makes all pages, faster than a fault for each. A kernel that does not know the
    // call leaves the pages to the first writes.
    (void)madvise(data, bytes, MADV_POPULATE_WRITE);
    std::unique_ptr<ShmImage> image(
        new ShmImage(connection, static_cast<std::uint8_t*>(data), bytes));
    return image->attach(file) ? std::move(image) : nullptr;
}

ShmImage::ShmImage(xcb_connection_t* connection, std::uint8_t* data, std::size_t bytes)
    : connection_(connection), data_(data), bytes_(bytes) {}

bool ShmImage::attach(int file) {
    const xcb_shm_seg_t segment = xcb_generate_id(connection_);
    // The request takes the file over.
    const auto cookie = xcb_shm_attach_fd_checked(connection_, segment, file, true);
    const XcbReply<xcb_generic_error_t> refused(xcb_request_check(connection_, cookie));
    if (refused || xcb_connection_has_error(connection_) != 0) return false;
    segment_ = segment;
    return true;
}

ShmImage::~ShmImage() {
    if (segment_) xcb_shm_detach(connection_, segment_);
    munmap(data_, bytes_);
}

}  // namespace platform
