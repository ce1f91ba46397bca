// SPDX-License-Identifier: MIT
#pragma once

#include <QSizeF>
#include <optional>

#include "hosts/saver/Opdracht.h"
#include "platform/render/WorkBudget.h"

namespace brixtel {

// Whether a host's window of this size, in points, is the preview in the host's settings: both
// sides are small.
[[nodiscard]] bool isVoorbeeld(QSizeF maat);

// How much of the machine the command may take while a window of this size, in points, shows
// it; nothing for no limit. A preview, a host's or one that the command asks for, has a limit of
// its own, which full speed does not lift.
[[nodiscard]] std::optional<platform::WorkBudget::Options> werkGrens(const Opdracht& opdracht,
                                                                     QSizeF maat);

}  // namespace brixtel
