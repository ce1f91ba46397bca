/* SPDX-License-Identifier: MIT */
/* Spaces that lie over the desktop. The functions are no part of the platform's
 * interface: a caller looks them up by name while the program runs, and does
 * without them where they are not found. Where the window system has no such
 * spaces, none can be made.
 *
 * A space is a set of windows with a level. While it is shown, its windows stay
 * above all others, whatever is opened or raised later: full-screen windows,
 * panels and menus included. Only the program's own windows of a higher window
 * level, and a screen saver or lock, lie above them. Main thread. */
#pragma once

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Space ids or window numbers. The caller owns them, at least during the call. */
struct CGSNumbers {
    const uint64_t* values;
    size_t count;
};

/* No options are defined; callers pass NULL. */
struct CGSOptions;

/* The program's connection to the window server; 0 where there is none. Every
 * other function ignores a connection, a space or a window that does not exist. */
int32_t _CGSDefaultConnection(void);

/* Makes an empty, hidden space of level 0; returns 0 where there can be none. The
 * flag is 1. */
uint64_t CGSSpaceCreate(int32_t connection, int32_t flag, const struct CGSOptions* options);
/* Destroys a space. Its windows stay where they are, no longer held above others. */
void CGSSpaceDestroy(int32_t connection, uint64_t space);

/* Sets a space's level. Windows of a higher space lie above those of a lower one. */
void CGSSpaceSetAbsoluteLevel(int32_t connection, uint64_t space, int32_t level);

/* Shows spaces, or hides them. Hiding a space releases its windows as destroying it
 * does; showing it holds them again. */
void CGSShowSpaces(int32_t connection, const struct CGSNumbers* spaces);
void CGSHideSpaces(int32_t connection, const struct CGSNumbers* spaces);

/* Adds each window to every one of the spaces. */
void CGSAddWindowsToSpaces(int32_t connection, const struct CGSNumbers* windows,
                           const struct CGSNumbers* spaces);

#ifdef __cplusplus
}
#endif
