// SPDX-License-Identifier: MIT
#include "platform/process/ToolRun.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/timerfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
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

// Readable after that many seconds, or never for 0.
int alarmAfter(double seconds) {
    const int alarm = timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK);
    if (alarm < 0 || seconds <= 0.0) return alarm;
    const double whole = std::floor(seconds);
    itimerspec at{};
    at.it_value.tv_sec = static_cast<time_t>(whole);
    at.it_value.tv_nsec = std::max(static_cast<long>((seconds - whole) * 1e9), 1L);
    timerfd_settime(alarm, 0, &at, nullptr);
    return alarm;
}

// The limits that may end a run before the tool ends.
struct Bounds {
    int stop;
    int alarm;
    std::size_t mostBytes;
};

// Waits for `descriptor` to be readable or at its end: done, or what came first.
ToolEnd await(int descriptor, const Bounds& bounds) {
    std::array<pollfd, 3> waits{
        {{descriptor, POLLIN, 0}, {bounds.stop, POLLIN, 0}, {bounds.alarm, POLLIN, 0}}};
    while (poll(waits.data(), waits.size(), -1) < 0 && errno == EINTR) {
    }
    if (waits[1].revents != 0) return ToolEnd::stopped;
    return waits[2].revents != 0 ? ToolEnd::late : ToolEnd::done;
}

// Whether the killed process has ended in time.
bool isGoneSoon(int process) {
    pollfd wait{process, POLLIN, 0};
    int count = 0;
    while ((count = poll(&wait, 1, kGoneWithinMs)) < 0 && errno == EINTR) {
    }
    return count != 0;
}

ToolEnd readAll(int pipe, const Bounds& bounds, ToolText& text) {
    for (;;) {
        if (const ToolEnd end = await(pipe, bounds); end != ToolEnd::done) return end;
        char* const at = text.grow(1);
        if (!at) return ToolEnd::notStarted;
        const ssize_t count = read(pipe, at, text.room());
        if (count == 0) return ToolEnd::done;
        if (count > 0) text.wrote(static_cast<std::size_t>(count));
        if (text.text().size() > bounds.mostBytes) return ToolEnd::tooMuch;
        if (count < 0 && errno != EINTR) return ToolEnd::notStarted;
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

namespace {

// The end of a process with this wait status.
ToolEnd endOf(int status, const ToolText& text) {
    if (WIFEXITED(status) && WEXITSTATUS(status) == kNotStarted && text.text().empty())
        return ToolEnd::notStarted;
    return WIFEXITED(status) && WEXITSTATUS(status) <= 1 ? ToolEnd::done : ToolEnd::failed;
}

ToolEnd run(const ToolCall& call, const ToolStop* stop, ToolText& text) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) < 0) return ToolEnd::notStarted;
    Descriptor from(ends[0]);
    Descriptor to(ends[1]);
    const Descriptor alarm(alarmAfter(call.mostSeconds));
    if (alarm.get() < 0) return ToolEnd::notStarted;
    const pid_t pid = startTool(call, to.get());
    to.reset();
    if (pid < 0) return ToolEnd::notStarted;

    const Bounds bounds{stop ? stop->descriptor() : -1, alarm.get(), call.mostBytes};
    const Descriptor process(processDescriptor(pid));
    const bool watched = process.get() >= 0;
    ToolEnd end = readAll(from.get(), bounds, text);
    if (end == ToolEnd::done && watched) end = await(process.get(), bounds);
    // Without a process descriptor (old kernels), a tool that has closed its output
    // is killed rather than waited for: a plain wait could not hear the stop.
    if (end != ToolEnd::done || !watched) killGroup(pid);
    if (end != ToolEnd::done && watched && !isGoneSoon(process.get())) return end;
    const int status = reap(pid);
    return end == ToolEnd::done && watched ? endOf(status, text) : end;
}

}  // namespace

std::optional<ToolText> runTool(const ToolCall& call, const ToolStop* stop, ToolEnd* end) {
    ToolText text;
    const ToolEnd how = run(call, stop, text);
    if (end) *end = how;
    if (how == ToolEnd::done || how == ToolEnd::failed) return text;
    return std::nullopt;
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
