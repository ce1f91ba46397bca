// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace brixtel {

// The bytes as UTF-8, with U+FFFD in the place of each invalid sequence.
[[nodiscard]] std::string herstelUtf8(std::string_view bytes);

}  // namespace brixtel
