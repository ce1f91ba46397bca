// SPDX-License-Identifier: MIT
#include "hosts/gedeeld/InstellingenProces.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "tests/hosts/gedeeld/NepSaver.h"

using namespace brixtel;

namespace {

class InstellingenProcesTest : public testing::Test {
  protected:
    using Einde = InstellingenProces::Einde;

    const QTemporaryDir thuis;
    NepSaver saver;
    std::optional<InstellingenProces> proces;
    std::vector<bool> afloop;
    QStringList gekozen;

    void SetUp() override { qputenv("XDG_CONFIG_HOME", QFile::encodeName(thuis.path())); }
    void toon(Einde einde) {
        proces.emplace(saver.programma(), QString(), einde);
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
    [[nodiscard]] QByteArray bewaard() const {
        QFile bestand(thuis.filePath(QStringLiteral("nl.groenlicht.brixtel.saver.conf")));
        return bestand.open(QIODevice::ReadOnly) ? bestand.readAll() : QByteArray();
    }
};

TEST_F(InstellingenProcesTest, IsOneSheetAtATimeAndTellsOnceHowItEnded) {
    toon(Einde::Mee);
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
    toon(Einde::Mee);
    ASSERT_TRUE(saver.eindig("kubus"));
    ASSERT_TRUE(until([this] { return !proces->isOpen(); }));
    vraag();
    ASSERT_TRUE(saver.eindig("-"));
    ASSERT_TRUE(until([this] { return !proces->isOpen(); }));
    EXPECT_EQ(gekozen, (QStringList{QStringLiteral("kubus"), QString()}));
}

TEST_F(InstellingenProcesTest, ASheetThatEndsWithItsOwnerIsGoneAndNobodyIsTold) {
    toon(Einde::Mee);
    proces.reset();
    EXPECT_FALSE(saver.wacht());
    EXPECT_TRUE(afloop.empty());
}

TEST_F(InstellingenProcesTest, ASheetThatStaysOutlivesItsOwnerAndNobodyIsTold) {
    toon(Einde::Blijft);
    proces.reset();
    ASSERT_TRUE(saver.eindig("kubus"));
    EXPECT_TRUE(bewaard().contains("keuze=kubus"));
    EXPECT_TRUE(afloop.empty());
}

}  // namespace
