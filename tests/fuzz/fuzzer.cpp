// SPDX-License-Identifier: MIT
#include <cstddef>

#include "tests/fuzz/FuzzDoelen.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t aantal) {
    fuzz::FUZZ_DOEL({bytes, aantal});
    return 0;
}
