// SPDX-License-Identifier: MIT
#include "connections/LandenBestand.h"

#include <zlib.h>

#include <QtEndian>
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "connections/Utf8.h"

namespace brixtel {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr int kRauw = -15;  // raw DEFLATE, the largest window
constexpr std::size_t kRuimte = std::size_t{64} * 1024;

template <typename T>
T getal(Bytes data, std::size_t plaats) {
    return qFromLittleEndian<T>(data.data() + plaats);
}

// Removes the next `aantal` numbers from the front of the data and returns them.
template <typename T>
std::vector<T> neem(Bytes& data, std::size_t aantal) {
    std::vector<T> getallen(aantal);
    if (aantal == 0) return getallen;
    qFromLittleEndian<T>(data.data(), static_cast<qsizetype>(aantal), getallen.data());
    data = data.subspan(aantal * sizeof(T));
    return getallen;
}

Land leesLand(Bytes data) {
    return {.code = herstelUtf8({reinterpret_cast<const char*>(data.data()), 2}),
            .breedte = static_cast<double>(getal<float>(data, 2)),
            .lengte = static_cast<double>(getal<float>(data, 6))};
}

// Unpacks as much as possible, and grows the buffer up to the limit.
bool vul(z_stream& z, std::vector<std::uint8_t>& uit) {
    int stand = Z_OK;
    while (stand == Z_OK) {
        if (z.total_out == uit.size()) {
            if (uit.size() >= kLandenGrens) return false;
            uit.resize(std::min(uit.size() * 2, kLandenGrens));
        }
        z.next_out = uit.data() + z.total_out;
        z.avail_out = static_cast<uInt>(uit.size() - z.total_out);
        stand = inflate(&z, Z_NO_FLUSH);
    }
    return stand == Z_STREAM_END;
}

}  // namespace

std::uint64_t LandenKop::maat() const {
    return kLandenKopMaat + kLandMaat * std::uint64_t{landenTal} +
           (sizeof(std::uint32_t) + 1) * std::uint64_t{v4Tal} +
           (sizeof(std::uint64_t) + 1) * std::uint64_t{v6Tal};
}

std::optional<std::vector<std::uint8_t>> pakUit(Bytes stroom) {
    if (stroom.size() > kLandenGrens) return std::nullopt;
    z_stream z{};
    if (inflateInit2(&z, kRauw) != Z_OK) return std::nullopt;
    z.next_in = const_cast<Bytef*>(stroom.data());
    z.avail_in = static_cast<uInt>(stroom.size());
    // A packed table is about a third of its size, so the first guess is mostly large
    // enough.
    std::vector<std::uint8_t> uit(std::clamp(stroom.size() * 4, kRuimte, kLandenGrens));
    const bool goed = vul(z, uit);
    uit.resize(z.total_out);
    inflateEnd(&z);
    if (!goed) return std::nullopt;
    return uit;
}

std::optional<LandenKop> leesKop(Bytes data) {
    if (data.size() <= kLandenKopMaat) return std::nullopt;
    if (std::memcmp(data.data(), kLandenMerk.data(), kLandenMerk.size()) != 0) return std::nullopt;
    return LandenKop{.landenTal = getal<std::uint16_t>(data, 6),
                     .v4Tal = getal<std::uint32_t>(data, 8),
                     .v6Tal = getal<std::uint32_t>(data, 12)};
}

std::string somVan(Bytes stroom) {
    std::array<char, 16> tekst{};
    const uLong som = crc32_z(0, stroom.data(), stroom.size());
    std::snprintf(tekst.data(), tekst.size(), "%08lx\n", som);
    return tekst.data();
}

LandenInhoud leesLanden(Bytes data) {
    const auto kop = leesKop(data);
    if (!kop) return {};
    if (data.size() < kop->maat()) {
        std::fputs("brixtel: de landentabel is korter dan zij zelf zegt\n", stderr);
        std::abort();
    }
    LandenInhoud inhoud;
    data = data.subspan(kLandenKopMaat);
    inhoud.landen.reserve(kop->landenTal);
    for (std::size_t i = 0; i < kop->landenTal; ++i, data = data.subspan(kLandMaat))
        inhoud.landen.push_back(leesLand(data));
    inhoud.v4 = neem<std::uint32_t>(data, kop->v4Tal);
    inhoud.v4Land = neem<std::uint8_t>(data, kop->v4Tal);
    inhoud.v6 = neem<std::uint64_t>(data, kop->v6Tal);
    inhoud.v6Land = neem<std::uint8_t>(data, kop->v6Tal);
    return inhoud;
}

}  // namespace brixtel
