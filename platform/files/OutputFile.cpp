// SPDX-License-Identifier: MIT
#include "platform/files/OutputFile.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>

#include "platform/files/Descriptor.h"

namespace platform {

namespace {

constexpr int kMostLinks = 40;
constexpr int kMostTries = 100;

// The place to write, behind the links: a name in an open folder, and its present file. A
// folder stays the same one whatever happens to the names on the way to it.
struct Place {
    Descriptor folder{-1};
    std::string name;
    bool exists = false;
    struct stat about {};
};

// A path's walk, one name at a time.
struct Walk {
    std::string rest;  // of the path, from the place's folder
    int links = 0;
};

int openFolder(Place& place, const char* path) {
    Descriptor start(open(path, O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!start.isOpen()) return errno;
    place.folder.take(start);
    return 0;
}

// Goes to the start of the rest: the root for an absolute path, else the place's folder, or
// the current one at first.
int begin(Place& place, Walk& walk) {
    if (walk.rest.empty()) return ENOENT;
    if (walk.rest.size() >= PATH_MAX) return ENAMETOOLONG;
    if (walk.rest.front() == '/') return openFolder(place, "/");
    return place.folder.isOpen() ? 0 : openFolder(place, ".");
}

// Takes the first name off the rest; empty at the end.
std::string nextName(Walk& walk) {
    walk.rest.erase(0, std::min(walk.rest.find_first_not_of('/'), walk.rest.size()));
    const std::size_t end = std::min(walk.rest.find('/'), walk.rest.size());
    std::string name = walk.rest.substr(0, end);
    walk.rest.erase(0, end);
    return name;
}

// Puts a link's target before the rest. Root's links may lead to a folder, as the system's
// own do, but not to the file.
int followLink(Place& place, Walk& walk, const Descriptor& link, const struct stat& about) {
    const bool leadsToFolder = !walk.rest.empty();
    if (about.st_uid != geteuid() && !(leadsToFolder && about.st_uid == 0)) return ELOOP;
    if (++walk.links > kMostLinks) return ELOOP;
    std::array<char, PATH_MAX> target{};
    const ssize_t length = readlinkat(link.get(), "", target.data(), target.size());
    if (length < 0) return errno;
    if (static_cast<std::size_t>(length) == target.size()) return ENAMETOOLONG;
    walk.rest.insert(0, target.data(), static_cast<std::size_t>(length));
    return begin(place, walk);
}

// Walks one name further; `done` once the name is the file's.
int step(Place& place, Walk& walk, bool& done) {
    place.name = nextName(walk);
    if (place.name.empty()) return EISDIR;
    Descriptor next(
        openat(place.folder.get(), place.name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    if (!next.isOpen()) {
        done = errno == ENOENT && walk.rest.empty();
        return done ? 0 : errno;
    }
    if (fstat(next.get(), &place.about) != 0) return errno;
    if (S_ISLNK(place.about.st_mode)) return followLink(place, walk, next, place.about);
    if (S_ISDIR(place.about.st_mode)) {
        place.folder.take(next);
        return 0;
    }
    place.exists = done = true;
    return walk.rest.empty() ? 0 : ENOTDIR;
}

int find(const std::string& path, Place& place) {
    Walk walk{.rest = path};
    int error = begin(place, walk);
    for (bool done = false; error == 0 && !done;)
        error = step(place, walk, done);
    return error;
}

// Writes into a device or a pipe. The file there may have been replaced since the first
// look.
int writeInto(const Place& place, std::string_view bytes) {
    Descriptor file(openat(place.folder.get(), place.name.c_str(),
                           O_WRONLY | O_NONBLOCK | O_NOFOLLOW | O_NOCTTY | O_CLOEXEC));
    struct stat about {};
    if (!file.isOpen() || fstat(file.get(), &about) != 0) return errno;
    if (S_ISREG(about.st_mode)) return EEXIST;
    if (fcntl(file.get(), F_SETFL, 0) != 0) return errno;
    if (const int error = writeAll(file.get(), bytes); error != 0) return error;
    return file.close();
}

// Makes a new file beside the place and leaves its name in `name`.
int makeBeside(const Place& place, std::string& name) {
    for (int tries = 0; tries < kMostTries; ++tries) {
        std::uint32_t lot = 0;
        if (getrandom(&lot, sizeof lot, 0) != sizeof lot) break;
        std::array<char, 16> tail{};
        std::snprintf(tail.data(), tail.size(), ".%08x", static_cast<unsigned>(lot));
        name = place.name + tail.data();
        const int made =
            openat(place.folder.get(), name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
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

int access(const Place& place, const char* name, int how) {
    return faccessat(place.folder.get(), name, how, AT_EACCESS) == 0 ? 0 : errno;
}

// Whether the present file may be written; 0 where there is none.
int mayWrite(const Place& place) {
    return place.exists ? access(place, place.name.c_str(), W_OK) : 0;
}

bool isSpecial(const Place& place) {
    return place.exists && !S_ISREG(place.about.st_mode);
}

int replace(const Place& place, std::string_view bytes) {
    if (const int error = mayWrite(place); error != 0) return error;
    std::string name;
    Descriptor file(makeBeside(place, name));
    if (!file.isOpen()) return errno;
    const int folder = place.folder.get();
    int error = fill(file, place, bytes);
    if (error == 0 && renameat(folder, name.c_str(), folder, place.name.c_str()) != 0)
        error = errno;
    if (error != 0) unlinkat(folder, name.c_str(), 0);
    return error;
}

}  // namespace

int replaceFile(const std::string& path, std::string_view bytes) {
    Place place;
    if (const int error = find(path, place); error != 0) return error;
    return isSpecial(place) ? writeInto(place, bytes) : replace(place, bytes);
}

int mayReplaceFile(const std::string& path) {
    Place place;
    if (const int error = find(path, place); error != 0) return error;
    if (const int error = mayWrite(place); error != 0) return error;
    return isSpecial(place) ? 0 : access(place, ".", W_OK | X_OK);
}

}  // namespace platform
