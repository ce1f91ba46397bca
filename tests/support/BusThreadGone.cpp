// SPDX-License-Identifier: MIT
// Waits at a program's end until Qt's bus thread has gone, for tests under a sanitizer. Qt
// waits for the thread's work, not for the thread itself, and then deletes the key by which
// the thread frees its data: a thread that is late leaks it (Qt 6.4).
//
// The kernel tells the thread's end since Linux 6.9. An older kernel tells nothing, and the
// program ends without a wait.
#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

// Qt names a thread by its class, and Linux keeps 15 characters of it and ends its file with a
// line feed.
constexpr std::string_view kThread = "QDBusConnection\n";
constexpr int kPatience = 5000;  // milliseconds
// PIDFD_THREAD, which older headers lack: the descriptor is of one thread.
constexpr unsigned kOfOneThread = O_EXCL;

// Whether the thread is Qt's bus thread, by plain calls: the sanitizer cannot check a stream's type
// where the program may open no more files.
bool isNamed(const char* task) {
    const std::string path = std::string("/proc/self/task/") + task + "/comm";
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return false;
    std::array<char, 32> name{};
    const ssize_t length = read(file, name.data(), name.size());
    close(file);
    return std::string_view(name.data(), length > 0 ? static_cast<std::size_t>(length) : 0) ==
           kThread;
}

// Returns when the thread has run its last instruction.
void waitForEnd(const char* task) {
    const long end = syscall(SYS_pidfd_open, std::atoi(task), kOfOneThread);
    if (end < 0) return;
    pollfd gone{.fd = static_cast<int>(end), .events = POLLIN, .revents = 0};
    poll(&gone, 1, kPatience);
    close(gone.fd);
}

// The program's own statics are made after Qt's library and before Qt's bus thread: this one
// ends after the thread's work and before the library.
struct AtTheEnd {
    AtTheEnd() = default;
    AtTheEnd(const AtTheEnd&) = delete;
    AtTheEnd& operator=(const AtTheEnd&) = delete;
    ~AtTheEnd() {
        DIR* const tasks = opendir("/proc/self/task");
        if (!tasks) return;
        while (const dirent* task = readdir(tasks))
            if (isNamed(task->d_name)) waitForEnd(task->d_name);
        closedir(tasks);
    }
};

const AtTheEnd atTheEnd;

}  // namespace
