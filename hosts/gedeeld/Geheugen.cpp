// SPDX-License-Identifier: MIT
// The program's end where no memory is left. Many libraries use the result of an allocation
// without a look, and crash or wait for ever. A small allocation that is refused
// therefore ends the program with one line; a large one, as for a picture, is refused to
// its caller, who can do with less.
//
// Part of each program itself, since the first definition that the loader finds counts.
// Any thread.
#include <dlfcn.h>

#include <cerrno>
#include <cstddef>

#include "hosts/gedeeld/Voorraad.h"

extern "C" {
void* __libc_malloc(std::size_t bytes);
void* __libc_calloc(std::size_t count, std::size_t bytes);
void* __libc_realloc(void* old, std::size_t bytes);
void* __libc_memalign(std::size_t alignment, std::size_t bytes);
}

namespace {

constexpr std::size_t kGroot = std::size_t{1} << 20;  // bytes

void* of(void* gekregen, std::size_t bytes) {
    if (gekregen == nullptr && bytes != 0 && bytes < kGroot) brixtel::eindigZonderGeheugen();
    return gekregen;
}

// The C library's own, until a library that the user put before it is found.
decltype(&__libc_malloc) volgendeMalloc = __libc_malloc;
decltype(&__libc_calloc) volgendeCalloc = __libc_calloc;
decltype(&__libc_realloc) volgendeRealloc = __libc_realloc;
decltype(&__libc_memalign) volgendeMemalign = __libc_memalign;

template <typename Functie>
void zoek(Functie*& functie, const char* naam) {
    if (void* const gevonden = dlsym(RTLD_NEXT, naam))
        functie = reinterpret_cast<Functie*>(gevonden);
}

__attribute__((constructor)) void zoekVolgende() {
    zoek(volgendeMalloc, "malloc");
    zoek(volgendeCalloc, "calloc");
    zoek(volgendeRealloc, "realloc");
    zoek(volgendeMemalign, "memalign");
}

}  // namespace

extern "C" {

void* malloc(std::size_t bytes) {
    return of(volgendeMalloc(bytes), bytes);
}

void* calloc(std::size_t aantal, std::size_t bytes) {
    // Where the product is too large for a number, the caller is told.
    std::size_t samen = 0;
    const bool past = !__builtin_mul_overflow(aantal, bytes, &samen);
    return of(volgendeCalloc(aantal, bytes), past ? samen : kGroot);
}

void* realloc(void* oud, std::size_t bytes) {
    return of(volgendeRealloc(oud, bytes), bytes);
}

void* memalign(std::size_t veelvoud, std::size_t bytes) {
    return of(volgendeMemalign(veelvoud, bytes), bytes);
}

void* aligned_alloc(std::size_t veelvoud, std::size_t bytes) {
    return memalign(veelvoud, bytes);
}

int posix_memalign(void** waar, std::size_t veelvoud, std::size_t bytes) {
    const bool macht = veelvoud >= sizeof(void*) && (veelvoud & (veelvoud - 1)) == 0;
    if (!macht) return EINVAL;
    void* const gekregen = memalign(veelvoud, bytes);
    if (gekregen == nullptr) return ENOMEM;
    *waar = gekregen;
    return 0;
}

}  // extern "C"
