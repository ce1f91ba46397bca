// SPDX-License-Identifier: MIT
#include "platform/files/ScratchFile.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string_view>

#include "platform/files/OutputFile.h"

namespace platform {

namespace {

int makeUnnamed(int& error) {
    const std::string folder = ScratchFile::folder();
    int made = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (made < 0) {
        // A file system without unnamed files: the name goes at once.
        std::string name = folder + "/brixtel.XXXXXX";
        made = mkostemp(name.data(), O_CLOEXEC);
        if (made >= 0) unlink(name.c_str());
    }
    error = made < 0 ? errno : 0;
    return made;
}

}  // namespace

ScratchFile::ScratchFile() : file_(makeUnnamed(error_)) {}

std::string ScratchFile::folder() {
    const char* const asked = std::getenv("TMPDIR");
    return asked && *asked != '\0' ? asked : "/tmp";
}

std::string ScratchFile::path() const {
    return "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(file_.get());
}

int ScratchFile::copyOver(const std::string& path) const {
    struct stat about {};
    if (fstat(file_.get(), &about) != 0) return errno;
    const auto size = static_cast<std::size_t>(about.st_size);
    if (size == 0) return replaceFile(path, {});
    void* const bytes = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file_.get(), 0);
    if (bytes == MAP_FAILED) return errno;
    const int error = replaceFile(path, {static_cast<const char*>(bytes), size});
    munmap(bytes, size);
    return error;
}

}  // namespace platform
