// SPDX-License-Identifier: MIT
// A user without a home and so without a configuration folder, for one test.
#pragma once

#include <QByteArray>
#include <utility>

namespace steun {

class ZonderThuis {
  public:
    ZonderThuis() {
        for (const auto& [naam, waarde] : toen_)
            qunsetenv(naam);
    }
    ~ZonderThuis() {
        for (const auto& [naam, waarde] : toen_)
            if (!waarde.isNull()) qputenv(naam, waarde);
    }
    ZonderThuis(const ZonderThuis&) = delete;
    ZonderThuis& operator=(const ZonderThuis&) = delete;

  private:
    const std::pair<const char*, QByteArray> toen_[2] = {
        {"HOME", qgetenv("HOME")}, {"XDG_CONFIG_HOME", qgetenv("XDG_CONFIG_HOME")}};
};

}  // namespace steun
