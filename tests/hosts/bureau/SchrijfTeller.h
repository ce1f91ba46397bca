// SPDX-License-Identifier: MIT
// Counts how often the kernel sees a file put in its place.
#pragma once

#include <sys/inotify.h>
#include <unistd.h>

#include <QString>
#include <array>

namespace brixtel {

class SchrijfTeller {
  public:
    SchrijfTeller(const QString& map, const char* bestand)
        : bestand_(bestand), kijker_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        inotify_add_watch(kijker_, map.toLocal8Bit().constData(), IN_MOVED_TO | IN_CREATE);
    }
    ~SchrijfTeller() { close(kijker_); }
    SchrijfTeller(const SchrijfTeller&) = delete;
    SchrijfTeller& operator=(const SchrijfTeller&) = delete;

    // Since the last time.
    [[nodiscard]] int geschreven() const {
        alignas(inotify_event) std::array<char, 65536> buffer{};
        const ssize_t lengte = read(kijker_, buffer.data(), buffer.size());
        int aantal = 0;
        for (ssize_t plaats = 0; plaats < lengte;) {
            const auto* const wat = reinterpret_cast<const inotify_event*>(buffer.data() + plaats);
            aantal += wat->len > 0 && QLatin1String(wat->name) == bestand_;
            plaats += ssize_t(sizeof(inotify_event)) + wat->len;
        }
        return aantal;
    }

  private:
    const QLatin1String bestand_;
    const int kijker_;
};

}  // namespace brixtel
