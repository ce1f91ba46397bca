// SPDX-License-Identifier: MIT
#include "platform/files/InputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/files/Descriptor.h"

namespace platform {

namespace {

int notRegular(const struct stat& file) {
    if (S_ISREG(file.st_mode)) return 0;
    return S_ISDIR(file.st_mode) ? EISDIR : ENOTSUP;
}

// A file may grow while it is read; reading one byte more than the limit detects a larger
// one.
FileContent readUpTo(int descriptor, std::size_t expected, std::size_t limit) {
    FileContent content;
    std::size_t size = 0;
    for (;;) {
        content.bytes.resize(std::min(std::max(expected, size) + 1, limit + 1));
        if (size == content.bytes.size()) return {.error = EFBIG};
        const ssize_t count =
            read(descriptor, content.bytes.data() + size, content.bytes.size() - size);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return {.error = errno};
        if (count == 0) break;
        size += static_cast<std::size_t>(count);
    }
    content.bytes.resize(size);
    return content;
}

}  // namespace

FileContent readRegularFile(const std::string& path, std::size_t limit) {
    // Opening a pipe would wait for its writer.
    const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat about {};
    if (!file.isOpen() || fstat(file.get(), &about) != 0) return {.error = errno};
    if (const int error = notRegular(about); error != 0) return {.error = error};
    const auto expected = static_cast<std::size_t>(about.st_size);
    if (expected > limit) return {.error = EFBIG};
    return readUpTo(file.get(), expected, limit);
}

}  // namespace platform
