// SPDX-License-Identifier: MIT
#include "hosts/bureau/NaRust.h"

#include <map>

#include "BrixtelSaver/SaverInstellingen.h"
#include "hosts/bureau/ZwartSoort.h"
#include "tests/hosts/bureau/BureauProef.h"

namespace brixtel {
namespace {

struct RustProef : BureauProef {
    std::vector<NaRustBronnen::Wens> wensen;
    std::weak_ptr<void> wacht;
    std::optional<NaRust> rust;

    void SetUp() override {
        BureauProef::SetUp();
        maak();
    }
    void maak() {
        rust.emplace(*bureau, NaRustBronnen{.werkruimte = werkruimte,
                                            .toeval = toeval,
                                            .maakWacht = [this](const NaRustBronnen::Wens& wens) {
                                                wensen.push_back(wens);
                                                auto nieuw = std::make_shared<int>(0);
                                                wacht = nieuw;
                                                return nieuw;
                                            }});
    }
    void rustVan(int minuten) { bureau->kies(&BureauKeuzes::rust, minuten); }
};

TEST_F(RustProef, NothingIsWatchedUnlessAsked) {
    EXPECT_TRUE(wensen.empty());
    rustVan(5);
    ASSERT_EQ(wensen.size(), 1U);
    EXPECT_EQ(wensen[0].seconden, 300.0);
    EXPECT_FALSE(wacht.expired());
    bureau->kies(&BureauKeuzes::dichtheid, 0.2);
    EXPECT_EQ(wensen.size(), 1U);
    rustVan(7);
    ASSERT_EQ(wensen.size(), 2U);
    EXPECT_EQ(wensen[1].seconden, 420.0);
    rustVan(0);
    EXPECT_EQ(wensen.size(), 2U);
    EXPECT_TRUE(wacht.expired());
}

TEST_F(RustProef, TheSaversChoiceComesAsABlackScreen) {
    SaverInstellingen::zetKeuze(SaverKeuze::tunnel);
    rustVan(1);
    wensen[0].bijRust();
    EXPECT_TRUE(nu().zwart);
    EXPECT_EQ(nu().soort, DrieSoort::tunnel);
    // The choice of that moment counts.
    bureau->sluitZwart();
    SaverInstellingen::zetKeuze(SaverKeuze::regen);
    wensen[0].bijRust();
    EXPECT_TRUE(nu().zwart);
    EXPECT_EQ(nu().soort, std::nullopt);
}

// Each bound is four standard deviations of an even choice.
TEST_F(RustProef, TheRotatingChoiceGivesEveryKindEvenly) {
    SaverInstellingen::zetKeuze(SaverKeuze::wisselend);
    rustVan(1);
    std::map<std::optional<DrieSoort>, int> gezien;
    std::map<std::pair<std::optional<DrieSoort>, std::optional<DrieSoort>>, int> paren;
    constexpr int kZaden = 1000;
    std::optional<DrieSoort> vorige;
    for (int zaad = 0; zaad < kZaden; ++zaad) {
        toeval = platform::RandomSource(static_cast<std::uint64_t>(zaad));
        wensen[0].bijRust();
        ASSERT_TRUE(nu().zwart);
        ++gezien[nu().soort];
        ++paren[{vorige, nu().soort}];
        vorige = nu().soort;
        bureau->sluitZwart();
        klok.advance(1.0);
    }
    ASSERT_EQ(gezien.size(), 5U);
    for (const auto& [soort, aantal] : gezien)
        EXPECT_NEAR(aantal, kZaden / 5, 50) << qPrintable(ruweWaarde(soort));
    // A black screen may be followed by one of the same kind.
    ASSERT_EQ(paren.size(), 25U);
    for (const auto& [paar, aantal] : paren)
        EXPECT_NEAR(aantal, kZaden / 25, 25);
}

TEST_F(RustProef, ABlackScreenThatShowsStaysAsItIs) {
    SaverInstellingen::zetKeuze(SaverKeuze::tunnel);
    bureau->toonZwart(DrieSoort::bol);
    rustVan(1);
    wensen[0].bijRust();
    EXPECT_EQ(nu().soort, DrieSoort::bol);
    // The black screen was the user's: a lock leaves it there.
    werkruimte.zetBeveiligd(true);
    EXPECT_TRUE(nu().zwart);
}

TEST_F(RustProef, NothingStartsUnderALock) {
    rustVan(1);
    werkruimte.zetBeveiligd(true);
    wensen[0].bijRust();
    EXPECT_FALSE(nu().zwart);
    werkruimte.zetBeveiligd(false);
    EXPECT_FALSE(nu().zwart);
}

TEST_F(RustProef, ALockThatComesEndsItAndItDoesNotComeBack) {
    rustVan(1);
    wensen[0].bijRust();
    ASSERT_TRUE(nu().zwart);
    werkruimte.zetBeveiligd(true);
    EXPECT_FALSE(nu().zwart);
    werkruimte.zetBeveiligd(false);
    EXPECT_FALSE(nu().zwart);
    wensen[0].bijRust();
    EXPECT_TRUE(nu().zwart);
}

TEST_F(RustProef, TheTimeIsKeptBetweenRuns) {
    rustVan(12);
    rust.reset();
    bureau.reset();
    wensen.clear();
    begin();
    maak();
    ASSERT_EQ(wensen.size(), 1U);
    EXPECT_EQ(wensen[0].seconden, 720.0);
}

TEST_F(RustProef, WhereNobodyTellsOfRestItIsSaid) {
    rustVan(5);
    EXPECT_TRUE(nu().rustUitleg.isEmpty());
    wensen[0].bijBewaking(false);
    EXPECT_EQ(nu().rustUitleg, QStringLiteral("dit bureaublad zegt niet wanneer er niemand is"));
    rustVan(0);
    EXPECT_TRUE(nu().rustUitleg.isEmpty());
    rustVan(5);
    wensen[1].bijBewaking(true);
    EXPECT_TRUE(nu().rustUitleg.isEmpty());
}

TEST_F(RustProef, AStoredTimeOutOfRangeIsNever) {
    for (const char* waarde : {"-1", "121", "5.5", "vijf", "", "1e2", "+3"}) {
        {
            const auto winkel = platform::Preferences::forModule(BureauInstellingen::moduleNaam);
            ASSERT_TRUE(winkel);
            winkel->setString(QLatin1String("rust"), QLatin1String(waarde));
            ASSERT_EQ(winkel->synchronize(), 0);
        }
        EXPECT_EQ(BureauInstellingen::lees().rust, 0) << waarde;
    }
}

}  // namespace
}  // namespace brixtel
