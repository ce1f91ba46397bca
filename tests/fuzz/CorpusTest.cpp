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

}  // namespace
