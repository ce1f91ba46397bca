// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <functional>
#include <utility>

#include "platform/view/WindowRef.h"

namespace platform {

class Sheet;

// The holder of a sheet, which takes the sheet away again.
class SheetParent {
  public:
    virtual void endSheet(Sheet& sheet) = 0;

  protected:
    ~SheetParent() = default;
};

// A dialog that belongs to something else, such as a saver's configuration.
// Main thread. Whoever asked for it keeps it alive while it shows. Closes by
// itself: through its parent where it has one, and by ordering itself out
// otherwise.
class Sheet {
  public:
    Sheet() = default;
    virtual ~Sheet() = default;
    Sheet(const Sheet&) = delete;
    Sheet& operator=(const Sheet&) = delete;

    // Shows the sheet and returns at once: above the window, which may be another
    // program's, or by itself in the middle of the screen for none.
    virtual void orderFront(const WindowRef& above) = 0;
    virtual void orderOut() = 0;
    [[nodiscard]] virtual bool isShown() const = 0;

    // The sheet's look, in the pixels of the screen.
    [[nodiscard]] virtual QImage picture() = 0;

    [[nodiscard]] SheetParent* sheetParent() const { return parent_; }
    void setSheetParent(SheetParent* parent) { parent_ = parent; }

    // Called each time it has been ordered out.
    void onOrderedOut(std::function<void()> action) { orderedOut_ = std::move(action); }

  protected:
    void tellOrderedOut() const {
        // The action may drop the sheet.
        if (const auto action = orderedOut_) action();
    }

  private:
    SheetParent* parent_ = nullptr;
    std::function<void()> orderedOut_;
};

}  // namespace platform
