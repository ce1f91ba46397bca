// SPDX-License-Identifier: MIT
#include "platform/files/OutputFile.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <utility>

#include "platform/files/Descriptor.h"

namespace platform {

namespace {

constexpr int kMostLinks = 40;
constexpr int kMostTries = 100;

// The place to write, behind the links, and its present file.
struct Place {
    std::string path;
    bool exists = false;
    struct stat about {};
};

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

// Follows one link: 0, or the error's number.
int followLink(std::string& path) {
    std::array<char, PATH_MAX> target{};
    const ssize_t length = readlink(path.c_str(), target.data(), target.size());
    if (length < 0) return errno;
    if (static_cast<std::size_t>(length) == target.size()) return ENAMETOOLONG;
    std::string next(target.data(), static_cast<std::size_t>(length));
    path = next.starts_with('/') ? std::move(next) : folderOf(path) + next;
    return 0;
}

int find(Place& place) {
    for (int links = 0; links <= kMostLinks; ++links) {
        if (lstat(place.path.c_str(), &place.about) != 0) return errno == ENOENT ? 0 : errno;
        if (!S_ISLNK(place.about.st_mode)) {
            place.exists = true;
            return S_ISDIR(place.about.st_mode) ? EISDIR : 0;
        }
        if (place.about.st_uid != geteuid()) return ELOOP;
        if (const int error = followLink(place.path); error != 0) return error;
    }
    return ELOOP;
}

// Writes into a device or a pipe. The file there may have been replaced since the first
// look.
int writeInto(const Place& place, std::string_view bytes) {
    Descriptor file(
        open(place.path.c_str(), O_WRONLY | O_NONBLOCK | O_NOFOLLOW | O_NOCTTY | O_CLOEXEC));
    struct stat about {};
    if (!file.isOpen() || fstat(file.get(), &about) != 0) return errno;
    if (S_ISREG(about.st_mode)) return EEXIST;
    if (fcntl(file.get(), F_SETFL, 0) != 0) return errno;
    if (const int error = writeAll(file.get(), bytes); error != 0) return error;
    return file.close();
}

// Makes a new file beside the place and leaves its name in `name`.
int makeBeside(const std::string& path, std::string& name) {
    for (int tries = 0; tries < kMostTries; ++tries) {
        std::uint32_t lot = 0;
        if (getrandom(&lot, sizeof lot, 0) != sizeof lot) break;
        std::array<char, 16> tail{};
        std::snprintf(tail.data(), tail.size(), ".%08x", static_cast<unsigned>(lot));
        name = path + tail.data();
        const int made = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (made >= 0 || errno != EEXIST) return made;
    }
    return -1;
}

int fill(Descriptor& file, const Place& place, std::string_view bytes) {
    if (const int error = writeAll(file.get(), bytes); error != 0) return error;
    if (place.exists && fchmod(file.get(), place.about.st_mode & 0777) != 0) return errno;
    if (fsync(file.get()) != 0) return errno;
    return file.close();
}

int access(const std::string& path, int how) {
    return faccessat(AT_FDCWD, path.c_str(), how, AT_EACCESS) == 0 ? 0 : errno;
}

bool isSpecial(const Place& place) {
    return place.exists && !S_ISREG(place.about.st_mode);
}

int replace(const Place& place, std::string_view bytes) {
    if (const int error = place.exists ? access(place.path, W_OK) : 0; error != 0) return error;
    std::string name;
    Descriptor file(makeBeside(place.path, name));
    if (!file.isOpen()) return errno;
    int error = fill(file, place, bytes);
    if (error == 0 && rename(name.c_str(), place.path.c_str()) != 0) error = errno;
    if (error != 0) unlink(name.c_str());
    return error;
}

}  // namespace

int replaceFile(const std::string& path, std::string_view bytes) {
    Place place{.path = path};
    if (const int error = find(place); error != 0) return error;
    return isSpecial(place) ? writeInto(place, bytes) : replace(place, bytes);
}

int mayReplaceFile(const std::string& path) {
    Place place{.path = path};
    if (const int error = find(place); error != 0) return error;
    if (const int error = place.exists ? access(place.path, W_OK) : 0; error != 0) return error;
    return isSpecial(place) ? 0 : access(folderOf(place.path), W_OK | X_OK);
}

}  // namespace platform
