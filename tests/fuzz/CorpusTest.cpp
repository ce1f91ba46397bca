// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/fuzz/FuzzDoelen.h"
#include "tests/support/Paden.h"

namespace {

// Each file of the corpus through the target; how many there were.
int draai(const char* naam, void (*doel)(fuzz::Bytes)) {
    int aantal = 0;
    const std::filesystem::path map = std::filesystem::path(BRIXTEL_TEST_DATA) / "fuzz" / naam;
    for (const auto& bestand : std::filesystem::directory_iterator(map)) {
        SCOPED_TRACE(bestand.path().string());
        std::ifstream in(bestand.path(), std::ios::binary);
        std::ostringstream tekst;
        tekst << in.rdbuf();
        const std::string bytes = tekst.str();
        // On the heap, to its very size, so that the sanitizer sees its end.
        const std::vector<std::uint8_t> precies(bytes.begin(), bytes.end());
        doel(precies);
        ++aantal;
    }
    return aantal;
}

TEST(Corpus, LsofLines) {
    EXPECT_GT(draai("regels", fuzz::regels), 5);
}
TEST(Corpus, Addresses) {
    EXPECT_GT(draai("adres", fuzz::adres), 5);
}
TEST(Corpus, TableFiles) {
    EXPECT_GT(draai("bestand", fuzz::bestand), 5);
}
TEST(Corpus, LinesAsJson) {
    EXPECT_GT(draai("json", fuzz::json), 5);
}
TEST(Corpus, Settings) {
    EXPECT_GT(draai("instellingen", fuzz::instellingen), 5);
}
TEST(Corpus, TheHostsSettings) {
    EXPECT_GT(draai("gastheer", fuzz::gastheer), 5);
}
TEST(Corpus, CommandLines) {
    EXPECT_GT(draai("opdracht", fuzz::opdracht), 5);
}
TEST(Corpus, CallsOnTheBus) {
    EXPECT_GT(draai("bus", fuzz::bus), 5);
}
TEST(Corpus, MapsOfTheWorld) {
    EXPECT_GT(draai("kaart", fuzz::kaart), 5);
}

}  // namespace
