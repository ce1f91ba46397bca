// SPDX-License-Identifier: MIT
#include "platform/render/CpuDrawer.h"
