// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <memory>
#include <optional>

namespace platform {

// A module's settings between runs: strings by key, in the INI file
// `<the user's configuration folder>/<module's name>.conf`. A file that is
// missing, unreadable or damaged holds nothing; where nothing can be written,
// writing silently does nothing. A file is replaced as a whole or not at all.
// Each object owns its store. Main thread.
class Preferences {
  public:
    // None where the user has no configuration folder.
    [[nodiscard]] static std::unique_ptr<Preferences> forModule(const QString& name);

    // From now on every store of this process answers `value` for the key,
    // whatever is in its file, and nothing of it is written: what a command line
    // asks for one run.
    static void setArgument(const QString& key, const QString& value);
    // The file's own value counts again.
    static void clearArgument(const QString& key);

    ~Preferences();
    Preferences(const Preferences&) = delete;
    Preferences& operator=(const Preferences&) = delete;

    [[nodiscard]] std::optional<QString> string(const QString& key) const;

    // Shows in string() at once, and is in the file after synchronize().
    void setString(const QString& key, const QString& value);
    void synchronize();

  private:
    explicit Preferences(const QString& path);
    struct Store;
    std::unique_ptr<Store> store_;
};

}  // namespace platform
