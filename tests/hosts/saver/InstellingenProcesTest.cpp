// SPDX-License-Identifier: MIT
#include "hosts/saver/InstellingenProces.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "tests/hosts/saver/NepSaver.h"

using namespace brixtel;

namespace {

class InstellingenProcesTest : public testing::Test {
  protected:
    NepSaver saver;
    std::optional<InstellingenProces> proces;
    std::vector<bool> afloop;
    QStringList gekozen;

    void toon() {
        proces.emplace(saver.programma(), QString());
        vraag();
        ASSERT_TRUE(until([this] { return saver.keren() == 1; }));
    }
    void vraag() {
        proces->toon({QStringLiteral("--een"), QStringLiteral("twee")},
                     [this](const InstellingenProces::Afloop& einde) {
                         afloop.push_back(einde.goed);
                         gekozen.push_back(einde.gekozen);
                     });
    }
};

TEST_F(InstellingenProcesTest, IsOneSheetAtATimeAndTellsOnceHowItEnded) {
    toon();
    EXPECT_EQ(saver.woorden(), "--een twee\n");
    vraag();
    ASSERT_TRUE(saver.eindig("-"));
    ASSERT_TRUE(until([this] { return !proces->isOpen(); }));
    EXPECT_EQ(afloop, std::vector{true});
    EXPECT_EQ(saver.keren(), 1);
    vraag();
    ASSERT_TRUE(saver.eindig("-", 3));
    ASSERT_TRUE(until([this] { return !proces->isOpen(); }));
    EXPECT_EQ(afloop, (std::vector{true, false}));
    EXPECT_EQ(saver.keren(), 2);
}

TEST_F(InstellingenProcesTest, TellsWhatTheSheetPrinted) {
    toon();
    ASSERT_TRUE(saver.eindig("kubus"));
    ASSERT_TRUE(until([this] { return !proces->isOpen(); }));
    vraag();
    ASSERT_TRUE(saver.eindig("-"));
    ASSERT_TRUE(until([this] { return !proces->isOpen(); }));
    EXPECT_EQ(gekozen, (QStringList{QStringLiteral("kubus"), QString()}));
}

TEST_F(InstellingenProcesTest, ASheetIsGoneWithItsOwnerAndNobodyIsTold) {
    toon();
    proces.reset();
    EXPECT_FALSE(saver.wacht());
    EXPECT_TRUE(afloop.empty());
}

}  // namespace
