// SPDX-License-Identifier: MIT
// The targets of the fuzzers and of the corpus test. Each takes any bytes, and
// stops the process when something is not as it should be.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <span>

#include <QByteArray>

namespace fuzz {

using Bytes = std::span<const std::uint8_t>;

void regels(Bytes bytes);        // what lsof prints
void adres(Bytes bytes);         // an address to look up
void bestand(Bytes bytes);       // a landen.bin, before packing
void json(Bytes bytes);          // a file for --lijnen
void instellingen(Bytes bytes);  // a settings file of ours
void gastheer(Bytes bytes);      // the host's settings file
void opdracht(Bytes bytes);      // a command line; a zero byte ends each word
void bus(Bytes bytes);           // a call on the session bus: path, interface, method, words
void kaart(Bytes bytes);         // a PNG file with the map of the world

inline void eis(bool waar) {
    if (!waar) std::abort();
}

inline QByteArray alsArray(Bytes bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}

}  // namespace fuzz
