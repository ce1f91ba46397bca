// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <functional>
#include <utility>

#include "platform/view/WindowRef.h"

namespace platform {

class Sheet;

// Holds a shown sheet, and takes the sheet away at the sheet's request. Main thread.
class SheetParent {
  public:
    virtual void endSheet(Sheet& sheet) = 0;

  protected:
    ~SheetParent() = default;
};

// A dialog that belongs to something else, such as a saver's configuration. The caller of
// showAbove() keeps the sheet alive while the sheet shows. A sheet that the user closes asks
// its parent to take it away, or dismisses itself without a parent. Main
// thread.
class Sheet {
  public:
    Sheet() = default;
    virtual ~Sheet() = default;
    Sheet(const Sheet&) = delete;
    Sheet& operator=(const Sheet&) = delete;

    // Shows the sheet and returns at once. The sheet lies above the window, of any program;
    // for an empty reference, in the middle of the screen.
    virtual void showAbove(const WindowRef& above) = 0;
    virtual void dismiss() = 0;
    [[nodiscard]] virtual bool isShown() const = 0;

    // The sheet's present look, in pixels of its screen.
    [[nodiscard]] virtual QImage picture() = 0;

    [[nodiscard]] SheetParent* sheetParent() const { return parent_; }
    void setSheetParent(SheetParent* parent) { parent_ = parent; }

    // Sets the action that is called after each dismissal.
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
