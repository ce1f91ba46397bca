// SPDX-License-Identifier: MIT
#include "connections/LandenTabel.h"

#include <arpa/inet.h>
#include <unicode/locid.h>

#include <QtEndian>
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <span>
#include <string>

#include "platform/files/InputFile.h"
#include "platform/resources/ResourceFolder.h"

namespace brixtel {

namespace {

// The address of this variable identifies the module's file.
const char kHier = 0;

constexpr std::size_t kSomGrens = 64;  // bytes

// The region of the user's locale, from LC_ADDRESS, the category of postal addresses. Empty
// when the locale has none.
std::string regio() {
    for (const char* const naam : {"LC_ALL", "LC_ADDRESS", "LANG"}) {
        const char* const waarde = std::getenv(naam);
        if (waarde && *waarde) return icu::Locale(waarde).getCountry();
    }
    return {};
}

std::span<const std::uint8_t> alsBytes(const std::string& tekst) {
    return {reinterpret_cast<const std::uint8_t*>(tekst.data()), tekst.size()};
}

// Reads a file; empty when it is unreadable or fails its checksum.
std::string leesHeel(const std::string& pad) {
    std::string bytes = platform::readRegularFile(pad, kLandenGrens).bytes;
    const auto som = platform::readRegularFile(pad + std::string(kLandenSom), kSomGrens);
    if (som.error != ENOENT && som.bytes != somVan(alsBytes(bytes))) return {};
    return bytes;
}

}  // namespace

LandenTabel& LandenTabel::gedeeld() {
    static LandenTabel tabel;
    return tabel;
}

LandenInhoud LandenTabel::leesBestand() const {
    const auto pad = bestand_ ? bestand_ : platform::resourcePath(&kHier, "landen.bin");
    if (!pad) return {};
    const auto data = pakUit(alsBytes(leesHeel(pad->string())));
    if (!data) return {};
    return leesLanden(*data);
}

void LandenTabel::laad() {
    if (geladen_.load(std::memory_order_acquire)) return;
    std::call_once(eenmaal_, [this] {
        inhoud_ = leesBestand();
        zoeker4_ = BereikZoeker(inhoud_.v4);
        zoeker6_ = BereikZoeker(inhoud_.v6);
        geladen_.store(true, std::memory_order_release);
    });
}

const std::vector<Land>& LandenTabel::landen() const {
    static const std::vector<Land> geen;
    return geladen_.load(std::memory_order_acquire) ? inhoud_.landen : geen;
}

template <typename Getal>
const Land* LandenTabel::zoek(Getal sleutel, const std::vector<Getal>& starts,
                              const std::vector<std::uint8_t>& indexen,
                              const BereikZoeker<Getal>& zoeker) const {
    if (starts.empty() || sleutel < starts.front()) return nullptr;
    const std::size_t index = indexen[zoeker.zoek(sleutel, starts)];
    return index < inhoud_.landen.size() ? &inhoud_.landen[index] : nullptr;
}

const Land* LandenTabel::zoek4(const std::uint8_t* bytes) const {
    return zoek(qFromBigEndian<std::uint32_t>(bytes), inhoud_.v4, inhoud_.v4Land, zoeker4_);
}

const Land* LandenTabel::zoek6(const std::uint8_t* bytes) const {
    return zoek(qFromBigEndian<std::uint64_t>(bytes), inhoud_.v6, inhoud_.v6Land, zoeker6_);
}

const Land* LandenTabel::vind(std::string_view adres) const {
    // The buffer holds every valid address; a longer text is cut off and stays invalid.
    std::array<char, INET6_ADDRSTRLEN + 1> tekst{};
    adres.copy(tekst.data(), tekst.size() - 1);

    std::array<std::uint8_t, 16> bytes{};
    if (inet_pton(AF_INET, tekst.data(), bytes.data()) == 1) return zoek4(bytes.data());
    if (inet_pton(AF_INET6, tekst.data(), bytes.data()) != 1) return nullptr;
    constexpr std::array<std::uint8_t, 12> kV4InV6{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF};
    const bool v4InV6 = std::equal(kV4InV6.begin(), kV4InV6.end(), bytes.begin());
    return v4InV6 ? zoek4(bytes.data() + kV4InV6.size()) : zoek6(bytes.data());
}

std::optional<Land> LandenTabel::land(std::string_view adres) {
    laad();
    const Land* const gevonden = vind(adres);
    if (!gevonden) return std::nullopt;
    return *gevonden;
}

Land LandenTabel::thuis() {
    laad();
    const std::string hier = regio();
    for (const std::string_view code : {std::string_view(hier), std::string_view("NL")}) {
        const auto land = std::find_if(inhoud_.landen.begin(), inhoud_.landen.end(),
                                       [code](const Land& l) { return l.code == code; });
        if (land != inhoud_.landen.end()) return *land;
    }
    return {.code = "NL", .breedte = 52.13, .lengte = 5.29};
}

}  // namespace brixtel
