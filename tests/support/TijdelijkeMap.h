// SPDX-License-Identifier: MIT
#pragma once

#include <stdlib.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace steun {

// A temporary folder, removed with its contents at the end of the test.
class TijdelijkeMap {
  public:
    TijdelijkeMap() {
        std::string naam = (std::filesystem::temp_directory_path() / "brixtel-XXXXXX").string();
        if (!mkdtemp(naam.data())) std::abort();
        pad_ = naam;
    }
    ~TijdelijkeMap() { std::filesystem::remove_all(pad_); }
    TijdelijkeMap(const TijdelijkeMap&) = delete;
    TijdelijkeMap& operator=(const TijdelijkeMap&) = delete;

    [[nodiscard]] std::filesystem::path operator/(std::string_view naam) const {
        return pad_ / naam;
    }

    // Writes a file with this text and returns its path.
    [[nodiscard]] std::string bestand(std::string_view naam, std::string_view tekst) const {
        std::ofstream(pad_ / naam, std::ios::binary) << tekst;
        return (pad_ / naam).string();
    }
    // Writes a shell script with these lines and returns its path.
    [[nodiscard]] std::string script(std::string_view naam, std::string_view regels) const {
        const std::string pad = bestand(naam, "#!/bin/sh\n" + std::string(regels) + "\n");
        chmod(pad.c_str(), 0755);
        return pad;
    }

  private:
    std::filesystem::path pad_;
};

}  // namespace steun
