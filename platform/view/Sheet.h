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
// itself: through its parent where it has one, and by dismissing itself
// otherwise.
class Sheet {
  public:
    Sheet() = default;
    virtual ~Sheet() = default;
    Sheet(const Sheet&) = delete;
    Sheet& operator=(const Sheet&) = delete;

    // Shows the sheet and returns at once: above the window, which may be another
    // program's, or by itself in the middle of the screen for none.
    virtual void showAbove(const WindowRef& above) = 0;
    virtual void dismiss() = 0;
    [[nodiscard]] virtual bool isShown() const = 0;

    // The sheet's look, in the pixels of the screen.
    [[nodiscard]] virtual QImage picture() = 0;

    [[nodiscard]] SheetParent* sheetParent() const { return parent_; }
    void setSheetParent(SheetParent* parent) { parent_ = parent; }

    // Called each time the sheet has been dismissed.
    void onDismissed(std::function<void()> action) { dismissed_ = std::move(action); }

  protected:
    void tellDismissed() const {
        // The action may drop the sheet.
        if (const auto action = dismissed_) action();
    }

  private:
    SheetParent* parent_ = nullptr;
    std::function<void()> dismissed_;
};

}  // namespace platform
