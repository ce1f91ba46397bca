// SPDX-License-Identifier: MIT
// Keeps every library loaded, for tests under a sanitizer: a library's leaks
// are then attributed to it, and tests/lsan.supp can name it.

extern "C" int dlclose(void*) {
    return 0;
}
