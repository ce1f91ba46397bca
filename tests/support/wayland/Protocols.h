// SPDX-License-Identifier: MIT
// The servers' side of every protocol that the compositor speaks.
#pragma once

#include <wayland-server-core.h>
#include <wayland-server-protocol.h>

#include "ext-idle-notify-v1-server.h"
#include "fractional-scale-v1-server.h"
#include "kde-idle-server.h"
#include "presentation-time-server.h"
#include "viewporter-server.h"
#include "wlr-foreign-toplevel-management-unstable-v1-server.h"
#include "wlr-layer-shell-unstable-v1-server.h"
#include "xdg-decoration-unstable-v1-server.h"
#include "xdg-output-unstable-v1-server.h"
#include "xdg-shell-server.h"
