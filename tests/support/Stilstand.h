// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <system_error>

namespace steun {

// Measures how long a process stands still: none of its threads ran, or waited for a
// processor. A busy machine makes a process slow, and does not make it stand still.
class Stilstand {
  public:
    explicit Stilstand(pid_t proces) : taken_("/proc/" + std::to_string(proces) + "/task") {}

    // Looks, where the last look was long enough ago. Returns the longest standstill so far, in
    // seconds of the clock that tells the time.
    double kijk(double nu) {
        constexpr double kTussenpoos = 0.02;
        if (nu - gekeken_ < kTussenpoos) return langste_;
        gekeken_ = nu;
        const unsigned long long beurten = kijkNaar();
        if (beurten != beurten_ || isBezig_) sinds_ = nu;
        beurten_ = beurten;
        langste_ = std::max(langste_, nu - std::max(sinds_, 0.0));
        return langste_;
    }
    [[nodiscard]] double langste() const { return langste_; }

  private:
    // The times that the threads left a processor.
    unsigned long long kijkNaar() {
        unsigned long long alle = 0;
        isBezig_ = false;
        std::error_code weg;
        for (std::filesystem::directory_iterator een(taken_, weg), einde; !weg && een != einde;
             een.increment(weg)) {
            std::ifstream stand(een->path() / "status");
            for (std::string regel; std::getline(stand, regel);) {
                if (regel.starts_with("State:\tR") || regel.starts_with("State:\tD"))
                    isBezig_ = true;
                // Both kinds, each with its number after a tab.
                const auto wissels = regel.find("voluntary_ctxt_switches:\t");
                if (wissels != std::string::npos)
                    alle += std::stoull(regel.substr(regel.find('\t')));
            }
        }
        return alle;
    }

    const std::filesystem::path taken_;
    bool isBezig_ = false;
    unsigned long long beurten_ = std::numeric_limits<unsigned long long>::max();
    double gekeken_ = 0.0, sinds_ = 0.0, langste_ = 0.0;
};

}  // namespace steun
