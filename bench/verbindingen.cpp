// SPDX-License-Identifier: MIT
// The country table and the reader of lsof's output. The inet_pton lines are
// the floor: the cost of turning the text into a number.
#include <arpa/inet.h>
#include <benchmark/benchmark.h>

#include <QtEndian>
#include <algorithm>
#include <array>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "connections/LandenBestand.h"
#include "connections/LandenTabel.h"
#include "connections/LsofTekst.h"
#include "connections/VerbindingWacht.h"
#include "platform/time/RandomSource.h"
#include "tests/support/Processen.h"

namespace {

using namespace brixtel;

// The number of addresses: enough to reach the whole table, and too few to push
// the table out of the cache.
constexpr std::size_t kAdressen = 1U << 13;
using Tekst = std::array<char, INET6_ADDRSTRLEN>;

std::string adres4(platform::RandomSource& lot) {
    const auto getal = htonl(static_cast<std::uint32_t>(lot.bits()));
    std::array<char, INET_ADDRSTRLEN> tekst{};
    return inet_ntop(AF_INET, &getal, tekst.data(), tekst.size());
}

// The content of the shipped file, decoded.
const LandenInhoud& meegeleverd() {
    static const LandenInhoud inhoud = [] {
        std::ifstream bestand(BRIXTEL_LANDEN, std::ios::binary);
        std::ostringstream tekst;
        tekst << bestand.rdbuf();
        const std::string bytes = tekst.str();
        const auto data =
            pakUit({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
        return data ? leesLanden(*data) : LandenInhoud{};
    }();
    return inhoud;
}

// An address in the first part of a random range, since most addresses belong to no country.
std::string adres6(platform::RandomSource& lot) {
    const auto& starts = meegeleverd().v6;
    const std::uint64_t boven =
        starts.empty() ? 0 : starts[lot.bits() % starts.size()] + lot.below(16);
    std::array<std::uint64_t, 2> bytes{qToBigEndian(boven), lot.bits()};
    std::array<char, INET6_ADDRSTRLEN> tekst{};
    return inet_ntop(AF_INET6, bytes.data(), tekst.data(), tekst.size());
}

std::vector<Tekst> adressen(std::string (*maak)(platform::RandomSource&)) {
    platform::RandomSource lot(1);
    std::vector<Tekst> lijst(kAdressen);
    for (auto& adres : lijst) {
        const std::string tekst = maak(lot);
        std::copy(tekst.begin(), tekst.end(), adres.begin());
    }
    return lijst;
}

template <int familie>
void vloer(benchmark::State& state) {
    const auto lijst = adressen(familie == AF_INET ? adres4 : adres6);
    std::array<std::uint8_t, 16> bytes{};
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(inet_pton(familie, lijst[i].data(), bytes.data()));
        i = (i + 1) % kAdressen;
    }
}
BENCHMARK(vloer<AF_INET>)->Name("inet_pton/v4");
BENCHMARK(vloer<AF_INET6>)->Name("inet_pton/v6");

template <int familie>
void zoek(benchmark::State& state) {
    const auto lijst = adressen(familie == AF_INET ? adres4 : adres6);
    LandenTabel& tabel = LandenTabel::gedeeld();
    std::size_t gevonden = 0;
    for (const auto& adres : lijst)
        gevonden += tabel.land(adres.data()).has_value();
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(tabel.land(lijst[i].data()));
        i = (i + 1) % kAdressen;
    }
    state.counters["met_land"] = static_cast<double>(gevonden) / kAdressen;
    if (gevonden == 0) state.SkipWithError("no table");
}
BENCHMARK(zoek<AF_INET>)->Name("land/v4");
BENCHMARK(zoek<AF_INET6>)->Name("land/v6");

void laad(benchmark::State& state) {
    std::size_t landen = 0;
    for (auto _ : state) {
        LandenTabel tabel;
        benchmark::DoNotOptimize(tabel.land("8.8.8.8"));
        landen = tabel.landen().size();
    }
    if (landen == 0) state.SkipWithError("no table");
    const auto voor = steun::geheugenInGebruik();
    LandenTabel tabel;
    (void)tabel.land("8.8.8.8");
    state.counters["MB"] = static_cast<double>(steun::geheugenInGebruik() - voor) * 1e-6;
}
BENCHMARK(laad)->Name("laden")->Unit(benchmark::kMillisecond);

// Text in lsof's format: 50 programs with some 6,600 connections, three lines each.
std::string lsofTekst(std::size_t regels) {
    platform::RandomSource lot(2);
    std::ostringstream tekst;
    std::size_t programma = 0;
    for (std::size_t i = 0; i < regels;) {
        if (i >= programma * 400) {
            tekst << 'p' << 1000 + i << "\ncprogramma\\x20" << programma++ << '\n';
            i += 2;
        }
        const std::string ver = lot.coin() ? adres4(lot) : '[' + adres6(lot) + ']';
        tekst << 'f' << i % 1000 << "\nn192.168.1.2:" << 32768 + i % 30000 << "->" << ver
              << ":443\nTST=ESTABLISHED\n";
        i += 3;
    }
    return tekst.str();
}

void ontleed(benchmark::State& state) {
    const std::string tekst = lsofTekst(20'000);
    std::int64_t totaal = 0;
    for (auto _ : state) {
        const auto lijnen = groepeer(tekst, LandenTabel::gedeeld());
        totaal = totaalVan(lijnen);
    }
    state.counters["verbindingen"] = static_cast<double>(totaal);
    if (totaal == 0) state.SkipWithError("no connections");
}
BENCHMARK(ontleed)->Name("groeperen/20000 regels")->Unit(benchmark::kMillisecond);

// The machine's real tool, from its start to the result.
void meet(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(VerbindingWacht::meet());
}
BENCHMARK(meet)->Name("meten/lsof")->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
