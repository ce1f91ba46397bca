// SPDX-License-Identifier: MIT
// Waits at a program's end until Qt's bus thread has gone, for tests under a sanitizer. Qt
// waits for the thread's work, not for the thread itself, and then deletes the key by which
// the thread frees its data: a thread that is late leaks it (Qt 6.4).
#include <dirent.h>

#include <ctime>
#include <fstream>
#include <string>

namespace {

// Qt names a thread by its class, and Linux keeps 15 characters.
constexpr const char* kThread = "QDBusConnection";
constexpr int kPatience = 5000;  // milliseconds

bool isBusThreadThere() {
    DIR* const tasks = opendir("/proc/self/task");
    if (!tasks) return false;
    bool found = false;
    while (const dirent* task = readdir(tasks)) {
        std::string name;
        std::getline(std::ifstream(std::string("/proc/self/task/") + task->d_name + "/comm"), name);
        found = found || name == kThread;
    }
    closedir(tasks);
    return found;
}

// The program's own statics are made after Qt's library and before Qt's bus thread: this one
// ends after the thread's work and before the library.
struct AtTheEnd {
    AtTheEnd() = default;
    AtTheEnd(const AtTheEnd&) = delete;
    AtTheEnd& operator=(const AtTheEnd&) = delete;
    ~AtTheEnd() {
        const timespec millisecond{.tv_sec = 0, .tv_nsec = 1'000'000};
        for (int i = 0; i < kPatience && isBusThreadThere(); ++i)
            nanosleep(&millisecond, nullptr);
    }
};

const AtTheEnd atTheEnd;

}  // namespace
