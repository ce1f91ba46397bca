// SPDX-License-Identifier: MIT
#include "tools/landen/LandenSchrijf.h"

#include <zlib.h>

#include <QtEndian>
#include <stdexcept>

namespace brixtel {

namespace {

class Schrijver {
  public:
    template <typename T>
    void getal(T waarde) {
        const std::size_t plaats = bytes_.size();
        bytes_.resize(plaats + sizeof(T));
        qToLittleEndian<T>(waarde, bytes_.data() + plaats);
    }
    void tekst(std::string_view tekst) { bytes_.insert(bytes_.end(), tekst.begin(), tekst.end()); }
    std::vector<std::uint8_t> bytes() && { return std::move(bytes_); }

  private:
    std::vector<std::uint8_t> bytes_;
};

}  // namespace

std::vector<std::uint8_t> schrijfLanden(const LandenInhoud& inhoud) {
    Schrijver uit;
    uit.tekst(kLandenMerk);
    uit.getal(static_cast<std::uint16_t>(inhoud.landen.size()));
    uit.getal(static_cast<std::uint32_t>(inhoud.v4.size()));
    uit.getal(static_cast<std::uint32_t>(inhoud.v6.size()));
    for (const Land& land : inhoud.landen) {
        if (land.code.size() != 2) throw std::runtime_error("geen landcode: " + land.code);
        uit.tekst(land.code);
        uit.getal(static_cast<float>(land.breedte));
        uit.getal(static_cast<float>(land.lengte));
    }
    for (const std::uint32_t start : inhoud.v4)
        uit.getal(start);
    for (const std::uint8_t index : inhoud.v4Land)
        uit.getal(index);
    for (const std::uint64_t start : inhoud.v6)
        uit.getal(start);
    for (const std::uint8_t index : inhoud.v6Land)
        uit.getal(index);
    return std::move(uit).bytes();
}

std::vector<std::uint8_t> pakIn(std::span<const std::uint8_t> data) {
    constexpr int kRauw = -15;
    constexpr int kGeheugen = 9;
    z_stream z{};
    // The middle level packs this data as well as the highest, and unpacks faster.
    if (deflateInit2(&z, 6, Z_DEFLATED, kRauw, kGeheugen, Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::runtime_error("zlib");
    std::vector<std::uint8_t> uit(deflateBound(&z, data.size()));
    z.next_in = const_cast<Bytef*>(data.data());
    z.avail_in = static_cast<uInt>(data.size());
    z.next_out = uit.data();
    z.avail_out = static_cast<uInt>(uit.size());
    const int stand = deflate(&z, Z_FINISH);
    uit.resize(z.total_out);
    deflateEnd(&z);
    if (stand != Z_STREAM_END) throw std::runtime_error("zlib");
    return uit;
}

}  // namespace brixtel
