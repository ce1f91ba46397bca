// SPDX-License-Identifier: MIT
#include "platform/process/ToolRun.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "platform/process/ToolStart.h"

namespace platform {

namespace {

constexpr std::size_t kFirstRoom = std::size_t{64} * 1024;
// The time in milliseconds that a killed tool may take to end. A tool that takes longer
// hangs inside the kernel, where no signal reaches it, and is not waited for.
constexpr int kGoneWithinMs = 1000;

// Owns and closes a descriptor.
class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() { reset(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    [[nodiscard]] int get() const { return number_; }
    void reset() {
        if (const int number = std::exchange(number_, -1); number >= 0) close(number);
    }

  private:
    int number_;
};

// Makes a descriptor that becomes readable when the process ends. The system's
// header for it is not valid C++.
int processDescriptor(pid_t pid) {
    return static_cast<int>(syscall(SYS_pidfd_open, pid, 0U));
}

enum class Event { ready, stopped, late };

// Waits until `descriptor` is readable or at its end, the stop is requested, or
// `withinMs` milliseconds (if not negative) have passed.
Event await(int descriptor, int stop, int withinMs = -1) {
    std::array<pollfd, 2> waits{{{descriptor, POLLIN, 0}, {stop, POLLIN, 0}}};
    int count = 0;
    while ((count = poll(waits.data(), waits.size(), withinMs)) < 0 && errno == EINTR) {
    }
    if (count == 0) return Event::late;
    return waits[1].revents != 0 ? Event::stopped : Event::ready;
}

// Reads to the end; false if reading was cut short.
bool readAll(int pipe, int stop, ToolText& text) {
    for (;;) {
        if (await(pipe, stop) == Event::stopped) return false;
        char* const at = text.grow(1);
        if (!at) return false;
        const ssize_t count = read(pipe, at, text.room());
        if (count == 0) return true;
        if (count > 0) text.wrote(static_cast<std::size_t>(count));
        if (count < 0 && errno != EINTR) return false;
    }
}

void killGroup(pid_t pid) {
    // Kills the child by its number too: its group exists only once the child has made it.
    kill(-pid, SIGKILL);
    kill(pid, SIGKILL);
}

// Collects the exit status of an ended process, which removes the process.
int reap(pid_t pid) {
    int status = 0;
    while (waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR) return 0;  // a program that ignores SIGCHLD has no status to give
    }
    return status;
}

}  // namespace

char* ToolText::grow(std::size_t room) {
    if (capacity_ - size_ < room) {
        const std::size_t capacity = std::max({kFirstRoom, capacity_ * 2, size_ + room});
        auto* const moved = static_cast<char*>(std::realloc(data_.get(), capacity));
        if (!moved) return nullptr;
        (void)data_.release();
        data_.reset(moved);
        capacity_ = capacity;
    }
    return data_.get() + size_;
}

ToolStop::ToolStop() : descriptor_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}
ToolStop::~ToolStop() {
    if (descriptor_ >= 0) close(descriptor_);
}
void ToolStop::request() const {
    eventfd_write(descriptor_, 1);
}

std::optional<ToolText> runTool(const ToolCall& call, const ToolStop* stop) {
    const int stopped = stop ? stop->descriptor() : -1;
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) < 0) return std::nullopt;
    Descriptor from(ends[0]);
    Descriptor to(ends[1]);
    const pid_t pid = startTool(call, to.get());
    to.reset();
    if (pid < 0) return std::nullopt;

    const Descriptor process(processDescriptor(pid));
    const bool watched = process.get() >= 0;
    ToolText text;
    bool whole = readAll(from.get(), stopped, text);
    if (whole && watched) whole = await(process.get(), stopped) == Event::ready;
    // Without a process descriptor (old kernels), a tool that has closed its output
    // is killed rather than waited for: a plain wait could not hear the stop.
    if (!whole || !watched) killGroup(pid);
    if (!whole && watched && await(process.get(), -1, kGoneWithinMs) == Event::late)
        return std::nullopt;
    const int status = reap(pid);
    const bool failed = WIFEXITED(status) && WEXITSTATUS(status) == kNotStarted;
    if (!whole || (failed && text.text().empty())) return std::nullopt;
    return text;
}

std::optional<std::string> findTool(std::string_view name) {
    const char* const path = std::getenv("PATH");
    std::string folders = "/usr/sbin:/usr/bin:";
    if (path) folders += path;
    for (std::size_t begin = 0; begin < folders.size();) {
        const std::size_t end = std::min(folders.find(':', begin), folders.size());
        std::string candidate = folders.substr(begin, end - begin);
        begin = end + 1;
        // An empty or relative entry on the PATH means the current folder;
        // nothing is run from there.
        if (!candidate.starts_with('/')) continue;
        candidate.append("/").append(name);
        // A folder, too, can have execute permission.
        struct stat file {};
        const bool isFile = stat(candidate.c_str(), &file) == 0 && S_ISREG(file.st_mode);
        if (isFile && access(candidate.c_str(), X_OK) == 0) return candidate;
    }
    return std::nullopt;
}

}  // namespace platform
