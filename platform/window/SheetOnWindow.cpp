// SPDX-License-Identifier: MIT
#include "platform/window/SheetOnWindow.h"

#include <utility>

namespace platform {

SheetOnWindow::SheetOnWindow(std::shared_ptr<Sheet> sheet, const WindowRef& window)
    : sheet_(std::move(sheet)) {
    sheet_->setSheetParent(this);
    sheet_->showAbove(window);
}

SheetOnWindow::~SheetOnWindow() {
    if (sheet_) endSheet(*sheet_);
}

void SheetOnWindow::endSheet(Sheet& sheet) {
    if (&sheet != sheet_.get()) return;
    // The sheet's end may drop this object.
    const auto ended = std::exchange(sheet_, nullptr);
    ended->setSheetParent(nullptr);
    ended->dismiss();
}

}  // namespace platform
