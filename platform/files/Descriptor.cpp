// SPDX-License-Identifier: MIT
#include "platform/files/Descriptor.h"

#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <utility>

namespace platform {

namespace {

// Blocks SIGPIPE on this thread, and consumes one that arrives meanwhile.
class NoPipeSignal {
  public:
    NoPipeSignal() {
        sigemptyset(&pipe_);
        sigaddset(&pipe_, SIGPIPE);
        sigset_t pending;
        sigpending(&pending);
        wasPending_ = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &pipe_, &before_);
    }
    ~NoPipeSignal() {
        constexpr timespec kNow{};
        while (!wasPending_ && sigtimedwait(&pipe_, nullptr, &kNow) < 0 && errno == EINTR) {
        }
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    NoPipeSignal(const NoPipeSignal&) = delete;
    NoPipeSignal& operator=(const NoPipeSignal&) = delete;

  private:
    sigset_t pipe_{};
    sigset_t before_{};
    bool wasPending_ = false;
};

}  // namespace

int Descriptor::close() {
    const int number = std::exchange(number_, -1);
    return number >= 0 && ::close(number) != 0 ? errno : 0;
}

void Descriptor::take(Descriptor& other) {
    std::swap(number_, other.number_);
    (void)other.close();
}

int writeAll(int descriptor, std::string_view bytes) {
    const NoPipeSignal quiet;
    while (!bytes.empty()) {
        const ssize_t count = write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) return errno;
        if (count > 0) bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return 0;
}

}  // namespace platform
