// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <cstddef>
#include <memory>
#include <optional>

namespace platform {

// A module's settings between runs: strings by key, in the INI file
// `<the user's configuration folder>/<module's name>.conf`. A file that is
// missing, unreadable or damaged, that is no regular file or larger than
// kLargest, holds nothing. Where nothing can be written, writing silently does
// nothing. A file is replaced as a whole or not at all.
// The stores of one module share what is not written yet. Main thread.
class Preferences {
  public:
    static constexpr std::size_t kLargest = std::size_t{1} << 20;  // bytes

    // None where the user has no configuration folder.
    [[nodiscard]] static std::unique_ptr<Preferences> forModule(const QString& name);

    // Why the module's file cannot be read, as the error's number; 0 where it can,
    // or is not there. The file's path is left in `path`.
    [[nodiscard]] static int problem(const QString& name, QString& path);

    // From now on every store of this process answers `value` for the key,
    // whatever is in its file, and nothing of it is written: what a command line
    // asks for one run.
    static void setArgument(const QString& key, const QString& value);
    // The file's own value counts again.
    static void clearArgument(const QString& key);

    Preferences(const Preferences&) = delete;
    Preferences& operator=(const Preferences&) = delete;

    [[nodiscard]] std::optional<QString> string(const QString& key) const;

    // Shows at once in string() of every store of the module, and is in the file
    // after synchronize() of any.
    void setString(const QString& key, const QString& value);
    // Returns 0, or the number of the error for which the file is as it was.
    int synchronize();

  private:
    explicit Preferences(QString path);

    const QString path_;
};

}  // namespace platform
