// SPDX-License-Identifier: MIT
// The source that the precompiled header is made with.
#include "tests/support/Precompiled.h"
