// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <cstddef>
#include <memory>
#include <optional>

namespace platform {

// A module's settings between runs: strings by key, in the INI file
// `<the user's configuration folder>/<module's name>.conf`. A file that is missing,
// unreadable or damaged, that is no regular file or larger than kLargest, counts as empty.
// Writing where nothing can be written does nothing. A file is replaced as a whole or not at
// all. The stores of one module share the values that are not written yet. The caller owns a
// store. Main thread.
class Preferences {
  public:
    static constexpr std::size_t kLargest = std::size_t{1} << 20;  // bytes

    // Null where the user has no configuration folder: neither XDG_CONFIG_HOME nor HOME names one.
    [[nodiscard]] static std::unique_ptr<Preferences> forModule(const QString& name);

    // The number of the error for which the module's file cannot be read; 0 for a readable or
    // missing file. Stores the file's path in `path`.
    [[nodiscard]] static int problem(const QString& name, QString& path);

    // Overrides the key's value in every store of this process, until clearArgument(). The
    // override is never written. For a command line's option that holds for one
    // run.
    static void setArgument(const QString& key, const QString& value);
    // Ends the override of the key's value.
    static void clearArgument(const QString& key);

    Preferences(const Preferences&) = delete;
    Preferences& operator=(const Preferences&) = delete;

    [[nodiscard]] std::optional<QString> string(const QString& key) const;

    // Sets the value for string() of every store of the module at once; the next synchronize()
    // of any of them writes it.
    void setString(const QString& key, const QString& value);
    // Writes the set values. Returns 0, or the number of the error that left the file unchanged.
    int synchronize();

  private:
    explicit Preferences(QString path);

    const QString path_;
};

}  // namespace platform
