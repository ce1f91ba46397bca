// SPDX-License-Identifier: MIT
#include "platform/window/systems/DialogFrame.h"

#include "platform/window/systems/Kinds.h"

namespace platform {

void askForDarkFrame(QWindow& window) {
    if (const WindowSystemKind* const kind = qtsKind()) kind->askForDarkFrame(window);
}

void askForTitleOnly(QWindow& window) {
    if (const WindowSystemKind* const kind = qtsKind()) kind->askForTitleOnly(window);
}

std::optional<QRect> placeOf(const WindowRef& window) {
    const WindowSystemKind* const kind = qtsKind();
    return kind ? kind->placeOf(window) : std::nullopt;
}

std::shared_ptr<void> attach(QWindow& dialog, const WindowRef& owner) {
    const WindowSystemKind* const kind = qtsKind();
    return kind ? kind->attach(dialog, owner) : nullptr;
}

WindowRef refOf(QWindow& window) {
    return programsKind().refOf(window);
}

}  // namespace platform
