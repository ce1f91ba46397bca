// SPDX-License-Identifier: MIT
// For tests under a sanitizer: no library is ever unloaded, so that what one has
// left behind is still traced to it and tests/lsan.supp knows it.

extern "C" int dlclose(void*) {
    return 0;
}
