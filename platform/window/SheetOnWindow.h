// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/view/Sheet.h"

namespace platform {

// Shows a sheet attached to a window, this program's or another's, until the sheet asks for
// its end or this object is dropped. Keeps the sheet alive meanwhile. Main thread.
class SheetOnWindow final : public SheetParent {
  public:
    SheetOnWindow(std::shared_ptr<Sheet> sheet, const WindowRef& window);
    ~SheetOnWindow();
    SheetOnWindow(const SheetOnWindow&) = delete;
    SheetOnWindow& operator=(const SheetOnWindow&) = delete;

    void endSheet(Sheet& sheet) override;

  private:
    std::shared_ptr<Sheet> sheet_;
};

}  // namespace platform
