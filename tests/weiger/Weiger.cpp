// SPDX-License-Identifier: MIT
// A library for LD_PRELOAD that refuses one call, as the kernel or the C library refuses
// where nothing is left:
//   BRIXTEL_WEIGER=KIND:N      the N-th call of that kind, counted from 1
//   BRIXTEL_WEIGER=KIND:N+     that one and every later one
//   BRIXTEL_WEIGER_TEL=FILE    where calls are counted: a 64-bit number for each kind
//   BRIXTEL_WEIGER_WIE=FILE    where the callers of the refused call are written, innermost
//                              first: a line for each, with its library
// Kinds, in the order of the file: geheugen, open, socket, mmap, shm, draad, groot. "groot" is
// memory of a MiB or more, which counts as geheugen too. Calls count from just before main
// on, in the first process alone. Any thread may call.
#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/shm.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
}

namespace {

enum Kind { kMemory, kOpen, kSocket, kMap, kShared, kThread, kLarge, kKinds };
constexpr std::array<std::string_view, kKinds> kNames{"geheugen", "open",  "socket", "mmap",
                                                      "shm",      "draad", "groot"};
constexpr std::size_t kLargeFrom = std::size_t{1} << 20;  // bytes

using Counts = std::array<std::atomic<std::uint64_t>, kKinds>;
Counts ownCounts{};
Counts* counts = nullptr;  // none before the start
int refusedKind = -1;
std::uint64_t refused = 0;
bool andLater = false;
int callersFile = -1;

void tellCallers() {
    constexpr int kMost = 40;
    if (callersFile < 0) return;
    const int file = callersFile;
    callersFile = -1;
    std::array<void*, kMost> callers{};
    backtrace_symbols_fd(callers.data(), backtrace(callers.data(), kMost), file);
    close(file);
}

// Whether this call is refused.
bool refuses(Kind kind) {
    if (counts == nullptr) return false;
    const std::uint64_t number = ++(*counts)[kind];
    const bool refuses = kind == refusedKind && (andLater ? number >= refused : number == refused);
    if (refuses) tellCallers();
    return refuses;
}

bool refusesMemory(std::size_t bytes) {
    const bool small = refuses(kMemory);
    return (bytes >= kLargeFrom && refuses(kLarge)) || small;
}

template <typename Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

Counts* sharedCounts(const char* file) {
    const int descriptor = file ? next<int(const char*, int, ...)>("open")(file, O_RDWR) : -1;
    if (descriptor < 0) return &ownCounts;
    void* const map = next<decltype(mmap)>("mmap")(nullptr, sizeof(Counts), PROT_READ | PROT_WRITE,
                                                   MAP_SHARED, descriptor, 0);
    close(descriptor);
    return map == MAP_FAILED ? &ownCounts : static_cast<Counts*>(map);
}

void readWish(std::string_view wish) {
    const auto colon = wish.find(':');
    if (colon == std::string_view::npos) return;
    for (int kind = 0; kind < kKinds; ++kind)
        if (wish.substr(0, colon) == kNames[static_cast<std::size_t>(kind)]) refusedKind = kind;
    refused = std::strtoull(wish.data() + colon + 1, nullptr, 10);
    andLater = wish.back() == '+';
}

__attribute__((constructor)) void start() {
    if (const char* const wish = std::getenv("BRIXTEL_WEIGER")) readWish(wish);
    if (const char* const who = std::getenv("BRIXTEL_WEIGER_WIE")) {
        callersFile = next<int(const char*, int, ...)>("open")(who, O_WRONLY | O_CLOEXEC);
        // The first call loads a library.
        std::array<void*, 1> callers{};
        backtrace(callers.data(), 1);
    }
    Counts* const where = sharedCounts(std::getenv("BRIXTEL_WEIGER_TEL"));
    // Programs that this one starts are not refused anything.
    unsetenv("LD_PRELOAD");
    counts = where;
}

int failed(int number) {
    errno = number;
    return -1;
}

void* noMemory() {
    errno = ENOMEM;
    return nullptr;
}

mode_t modeIn(int flags, va_list rest) {
    const bool makes = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
    return makes ? va_arg(rest, mode_t) : 0;
}

}  // namespace

extern "C" {

void* malloc(std::size_t size) {
    return refusesMemory(size) ? noMemory() : __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) {
    return refusesMemory(count * size) ? noMemory() : __libc_calloc(count, size);
}
void* realloc(void* old, std::size_t size) {
    return refusesMemory(size) ? noMemory() : __libc_realloc(old, size);
}
void* memalign(std::size_t alignment, std::size_t size) {
    return refusesMemory(size) ? noMemory() : __libc_memalign(alignment, size);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
    return memalign(alignment, size);
}
int posix_memalign(void** to, std::size_t alignment, std::size_t size) {
    if (refusesMemory(size)) return ENOMEM;
    *to = __libc_memalign(alignment, size);
    return *to ? 0 : ENOMEM;
}

#define OPENS(name)                                                        \
    int name(const char* path, int flags, ...) {                           \
        va_list rest;                                                      \
        va_start(rest, flags);                                             \
        const mode_t mode = modeIn(flags, rest);                           \
        va_end(rest);                                                      \
        if (refuses(kOpen)) return failed(EMFILE);                         \
        static auto* const real = next<int(const char*, int, ...)>(#name); \
        return real(path, flags, mode);                                    \
    }
OPENS(open)
OPENS(open64)

#define OPENS_AT(name)                                                          \
    int name(int folder, const char* path, int flags, ...) {                    \
        va_list rest;                                                           \
        va_start(rest, flags);                                                  \
        const mode_t mode = modeIn(flags, rest);                                \
        va_end(rest);                                                           \
        if (refuses(kOpen)) return failed(EMFILE);                              \
        static auto* const real = next<int(int, const char*, int, ...)>(#name); \
        return real(folder, path, flags, mode);                                 \
    }
OPENS_AT(openat)
OPENS_AT(openat64)

// Calls that give a descriptor or -1.
#define GIVES(kind, name, number, parameters, arguments)       \
    int name parameters {                                      \
        if (refuses(kind)) return failed(number);              \
        static auto* const real = next<int parameters>(#name); \
        return real arguments;                                 \
    }
GIVES(kOpen, memfd_create, EMFILE, (const char* name, unsigned flags), (name, flags))
GIVES(kOpen, eventfd, EMFILE, (unsigned count, int flags), (count, flags))
GIVES(kOpen, pipe, EMFILE, (int* ends), (ends))
GIVES(kOpen, pipe2, EMFILE, (int* ends, int flags), (ends, flags))
GIVES(kOpen, epoll_create1, EMFILE, (int flags), (flags))
GIVES(kOpen, timerfd_create, EMFILE, (int clock, int flags), (clock, flags))
GIVES(kOpen, inotify_init1, EMFILE, (int flags), (flags))
GIVES(kSocket, socket, EMFILE, (int domain, int type, int protocol), (domain, type, protocol))
GIVES(kSocket, socketpair, EMFILE, (int domain, int type, int protocol, int* ends),
      (domain, type, protocol, ends))
GIVES(kShared, shmget, ENOSPC, (key_t key, std::size_t size, int flags), (key, size, flags))

#define OPENS_FILE(name)                                                        \
    FILE* name(const char* path, const char* mode) {                            \
        if (refuses(kOpen)) {                                                   \
            errno = EMFILE;                                                     \
            return nullptr;                                                     \
        }                                                                       \
        static auto* const real = next<FILE*(const char*, const char*)>(#name); \
        return real(path, mode);                                                \
    }
OPENS_FILE(fopen)
OPENS_FILE(fopen64)

#define MAPS(name)                                                                              \
    void* name(void* at, std::size_t size, int protection, int flags, int file, off_t from) {   \
        if (refuses(kMap)) {                                                                    \
            errno = ENOMEM;                                                                     \
            return MAP_FAILED;                                                                  \
        }                                                                                       \
        static auto* const real = next<void*(void*, std::size_t, int, int, int, off_t)>(#name); \
        return real(at, size, protection, flags, file, from);                                   \
    }
MAPS(mmap)
MAPS(mmap64)

void* shmat(int segment, const void* at, int flags) {
    if (refuses(kShared)) {
        errno = EMFILE;
        return reinterpret_cast<void*>(-1);
    }
    static auto* const real = next<void*(int, const void*, int)>("shmat");
    return real(segment, at, flags);
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*body)(void*),
                   void* argument) {
    if (refuses(kThread)) return EAGAIN;
    static auto* const real =
        next<int(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*)>("pthread_create");
    return real(thread, attributes, body, argument);
}

}  // extern "C"
