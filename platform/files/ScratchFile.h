// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/files/Descriptor.h"

namespace platform {

// A file without a name, for what another program writes before it is whole. The system
// frees the file with its last descriptor, however the program ends. Owns its descriptor.
// Any thread, one at a time.
class ScratchFile {
  public:
    // Makes the file in folder(). A refusal shows in error().
    ScratchFile();

    // The folder of scratch files: that of TMPDIR, or /tmp.
    [[nodiscard]] static std::string folder();

    // The error's number; 0 where the file is there.
    [[nodiscard]] int error() const { return error_; }
    // The path by which processes of the same user open it while this object lives.
    [[nodiscard]] std::string path() const;

    // Makes the bytes of this file the whole content of another, as replaceFile() does: 0, or
    // the error's number. Waits for the disk.
    [[nodiscard]] int copyOver(const std::string& path) const;

  private:
    int error_ = 0;
    Descriptor file_;
};

}  // namespace platform
