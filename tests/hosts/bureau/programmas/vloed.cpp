// SPDX-License-Identifier: MIT
// Calls the owner's service as fast as the bus takes it, with no regard for
// answers, until it is killed. Speaks the bus's protocol itself: what a library
// sends waits in this program's memory first. Prints a line for every thousand
// calls. Its argument is the bus's address.
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <thread>

namespace {

const std::string kNaam = "nl.groenlicht.brixtel.Bureau";
const std::string kPad = "/nl/groenlicht/brixtel/Bureau";

struct Bericht {
    std::string bytes;

    void vulTot(std::size_t veelvoud) {
        while (bytes.size() % veelvoud != 0)
            bytes += '\0';
    }
    void getal(std::uint32_t waarde) {
        vulTot(4);
        bytes.append(reinterpret_cast<const char*>(&waarde), sizeof waarde);
    }
    void tekst(const std::string& waarde) {
        getal(static_cast<std::uint32_t>(waarde.size()));
        bytes += waarde + '\0';
    }
    void veld(char code, char soort, const std::string& waarde) {
        vulTot(8);
        bytes += {code, '\1', soort, '\0'};
        if (soort != 'g') return tekst(waarde);
        bytes += static_cast<char>(waarde.size());
        bytes += waarde + '\0';
    }
};

// A call with texts for values.
std::string oproep(std::uint32_t nummer, const std::string& naar, const std::string& pad,
                   const std::string& interface, const std::string& methode,
                   const std::string& waarde = {}) {
    Bericht inhoud, kop;
    if (!waarde.empty()) inhoud.tekst(waarde);
    kop.bytes = {'l', '\1', '\0', '\1'};
    kop.getal(static_cast<std::uint32_t>(inhoud.bytes.size()));
    kop.getal(nummer);
    kop.getal(0);  // the length of the fields, known below
    constexpr std::size_t kVelden = 16;
    kop.veld(1, 'o', pad);
    kop.veld(2, 's', interface);
    kop.veld(3, 's', methode);
    kop.veld(6, 's', naar);
    if (!waarde.empty()) kop.veld(8, 'g', "s");
    const auto lengte = static_cast<std::uint32_t>(kop.bytes.size() - kVelden);
    std::memcpy(kop.bytes.data() + 12, &lengte, sizeof lengte);
    kop.vulTot(8);
    return kop.bytes + inhoud.bytes;
}

int verbind(const std::string& adres) {
    const std::size_t begin = adres.find("path=") + 5;
    const std::string pad = adres.substr(begin, adres.find(',', begin) - begin);
    sockaddr_un waar{};
    waar.sun_family = AF_UNIX;
    pad.copy(waar.sun_path, sizeof waar.sun_path - 1);
    const int deur = socket(AF_UNIX, SOCK_STREAM, 0);
    if (connect(deur, reinterpret_cast<sockaddr*>(&waar), sizeof waar) != 0) return -1;
    return deur;
}

bool stuur(int deur, const std::string& bytes) {
    for (std::size_t weg = 0; weg < bytes.size();) {
        const ssize_t deel = write(deur, bytes.data() + weg, bytes.size() - weg);
        if (deel <= 0) return false;
        weg += static_cast<std::size_t>(deel);
    }
    return true;
}

bool meldAan(int deur) {
    std::string wie;
    for (const char cijfer : std::to_string(getuid()))
        wie.append({'3', cijfer});
    std::array<char, 256> antwoord{};
    if (!stuur(deur, std::string(1, '\0') + "AUTH EXTERNAL " + wie + "\r\n")) return false;
    if (read(deur, antwoord.data(), antwoord.size()) <= 0) return false;
    const std::string bus = "org.freedesktop.DBus";
    return stuur(deur, "BEGIN\r\n" + oproep(1, bus, "/org/freedesktop/DBus", bus, "Hello"));
}

}  // namespace

int main(int, char** argv) {
    const int deur = verbind(argv[1]);
    if (deur < 0 || !meldAan(deur)) return 1;
    std::thread([deur] {
        std::array<char, 65536> antwoorden{};
        while (read(deur, antwoorden.data(), antwoorden.size()) > 0) {
        }
    }).detach();
    for (std::uint32_t duizend = 0;; ++duizend) {
        std::string bytes;
        for (std::uint32_t keer = 0; keer < 1000; keer += 4) {
            const std::uint32_t nummer = 2 + duizend * 1000 + keer;
            bytes += oproep(nummer, kNaam, kPad, kNaam, "WisselRegen");
            bytes += oproep(nummer + 1, kNaam, kPad, kNaam, "ToonZwart", "onzin");
            bytes += oproep(nummer + 2, kNaam, kPad, kNaam, "Onzin");
            bytes +=
                oproep(nummer + 3, kNaam, kPad, "org.freedesktop.DBus.Properties", "GetAll", kNaam);
        }
        if (!stuur(deur, bytes)) return 1;
        std::puts("duizend");
        std::fflush(stdout);
    }
}
