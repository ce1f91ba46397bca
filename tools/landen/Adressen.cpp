// SPDX-License-Identifier: MIT
#include "tools/landen/Adressen.h"

#include <arpa/inet.h>

#include <array>
#include <charconv>
#include <istream>
#include <optional>
#include <stdexcept>
#include <string_view>

namespace brixtel {

namespace {

using Lezer = std::optional<Adres> (*)(const std::string&);

std::optional<Adres> leesGetal(const std::string& tekst) {
    std::uint32_t getal = 0;
    const char* const einde = tekst.data() + tekst.size();
    const auto [tot, fout] = std::from_chars(tekst.data(), einde, getal);
    if (fout != std::errc() || tot != einde) return std::nullopt;
    return getal;
}

std::optional<Adres> leesAdres6(const std::string& tekst) {
    std::array<std::uint8_t, 16> bytes{};
    if (inet_pton(AF_INET6, tekst.c_str(), bytes.data()) != 1) return std::nullopt;
    Adres adres = 0;
    for (const std::uint8_t byte : bytes)
        adres = adres << 8 | byte;
    return adres;
}

std::optional<AdresRij> leesRij(const std::string& regel, Lezer lezer) {
    const std::size_t een = regel.find(',');
    if (een == std::string::npos) return std::nullopt;
    const std::size_t twee = regel.find(',', een + 1);
    if (twee == std::string::npos) return std::nullopt;
    const auto eerste = lezer(regel.substr(0, een));
    const auto laatste = lezer(regel.substr(een + 1, twee - een - 1));
    if (!eerste || !laatste || *laatste < *eerste) return std::nullopt;
    return AdresRij{*eerste, *laatste, regel.substr(twee + 1)};
}

std::vector<AdresRij> lees(std::istream& in, Lezer lezer) {
    std::vector<AdresRij> rijen;
    std::string regel;
    for (int nummer = 1; std::getline(in, regel); ++nummer) {
        if (regel.empty() || regel.front() == '#') continue;
        auto rij = leesRij(regel, lezer);
        if (!rij || (!rijen.empty() && rij->eerste <= rijen.back().laatste))
            throw std::runtime_error("regel " + std::to_string(nummer) + ": " + regel);
        rijen.push_back(std::move(*rij));
    }
    return rijen;
}

}  // namespace

std::vector<AdresRij> leesAdressen4(std::istream& in) {
    return lees(in, leesGetal);
}
std::vector<AdresRij> leesAdressen6(std::istream& in) {
    return lees(in, leesAdres6);
}

}  // namespace brixtel
