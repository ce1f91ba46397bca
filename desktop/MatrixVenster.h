// SPDX-License-Identifier: MIT
#pragma once

#include "platform/window/Window.h"

namespace brixtel {

// The window that covers one display with the black screen. Borderless, and still able to
// get the keys.
class MatrixVenster final : public platform::Window {
  public:
    using platform::Window::Window;

    [[nodiscard]] bool canBecomeKey() const override { return true; }
    [[nodiscard]] bool canBecomeMain() const override { return true; }
};

}  // namespace brixtel
