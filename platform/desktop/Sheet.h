// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

// A dialog that belongs to something else, such as a saver's configuration.
// Main thread. Whoever asked for it keeps it alive while it shows.
struct Sheet {
    virtual ~Sheet() = default;

    // Shows it, and returns at once; it closes by itself.
    virtual void open() = 0;
};

}  // namespace platform
