// SPDX-License-Identifier: MIT
#include "connections/Gepubliceerd.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>

using brixtel::Abonnement;
using brixtel::Gepubliceerd;
using testing::ElementsAre;

namespace {

TEST(Gepubliceerd, ASubscriberGetsTheCurrentValueAtOnceThenEveryNewOne) {
    Gepubliceerd<int> getal(7);
    std::vector<int> gezien;
    const auto abonnement = getal.volg([&](int g) { gezien.push_back(g); });
    EXPECT_THAT(gezien, ElementsAre(7));
    getal.zet(8);
    getal.zet(8);
    getal.zet(9);
    EXPECT_THAT(gezien, ElementsAre(7, 8, 8, 9));
    EXPECT_EQ(getal.waarde(), 9);
}

TEST(Gepubliceerd, TheNewValueIsThereWhenSubscribersAreTold) {
    Gepubliceerd<int> getal(1);
    int daar = 0;
    const auto abonnement = getal.volg([&](int) { daar = getal.waarde(); });
    getal.zet(2);
    EXPECT_EQ(daar, 2);
}

TEST(Gepubliceerd, DroppingTheHandleUnsubscribes) {
    Gepubliceerd<int> getal;
    int keer = 0;
    {
        const auto abonnement = getal.volg([&](int) { ++keer; });
        getal.zet(1);
    }
    getal.zet(2);
    EXPECT_EQ(keer, 2);
}

TEST(Gepubliceerd, ANewHandleInTheOldOnesPlaceEndsTheOld) {
    Gepubliceerd<int> getal;
    std::string wie;
    Abonnement abonnement = getal.volg([&](int) { wie += 'a'; });
    abonnement = getal.volg([&](int) { wie += 'b'; });
    getal.zet(1);
    abonnement = Abonnement();
    getal.zet(2);
    EXPECT_EQ(wie, "abb");
}

TEST(Gepubliceerd, SubscribersAreToldInTheOrderInWhichTheyCame) {
    Gepubliceerd<int> getal;
    std::string wie;
    const auto a = getal.volg([&](int) { wie += 'a'; });
    const auto b = getal.volg([&](int) { wie += 'b'; });
    wie.clear();
    getal.zet(1);
    EXPECT_EQ(wie, "ab");
}

TEST(Gepubliceerd, AHandleMayOutliveWhatItFollows) {
    Abonnement abonnement;
    {
        const Gepubliceerd<int> getal;
        abonnement = getal.volg([](int) {});
    }
    abonnement = Abonnement();
}

TEST(Gepubliceerd, AReceiverMayDropItself) {
    Gepubliceerd<int> getal;
    int keer = 0;
    std::optional<Abonnement> abonnement;
    abonnement = getal.volg([&](int) {
        ++keer;
        abonnement.reset();
    });
    getal.zet(1);
    getal.zet(2);
    EXPECT_EQ(keer, 2);  // the handle did not exist yet at the first call
}

TEST(Gepubliceerd, AReceiverMayDropAnotherWhichIsThenNotTold) {
    Gepubliceerd<int> getal;
    std::optional<Abonnement> tweede;
    int keer = 0;
    const auto eerste = getal.volg([&](int g) {
        if (g == 1) tweede.reset();
    });
    tweede = getal.volg([&](int) { ++keer; });
    getal.zet(1);
    EXPECT_EQ(keer, 1);
}

TEST(Gepubliceerd, AReceiverMaySubscribeAnother) {
    Gepubliceerd<int> getal;
    std::vector<Abonnement> meer;
    std::vector<int> gezien;
    const auto eerste = getal.volg([&](int) {
        if (meer.empty()) meer.push_back(getal.volg([&](int g) { gezien.push_back(g); }));
    });
    getal.zet(1);
    getal.zet(2);
    EXPECT_THAT(gezien, ElementsAre(0, 1, 2));
}

TEST(Gepubliceerd, AValueSetByAReceiverOvertakesTheOneItWasTold) {
    Gepubliceerd<int> getal;
    std::vector<int> gezien;
    const auto eerste = getal.volg([&](const int& g) {
        if (g == 1) getal.zet(2);
        EXPECT_NE(g, 0xDEAD);  // what it was told is still there to be read
    });
    const auto tweede = getal.volg([&](int g) { gezien.push_back(g); });
    getal.zet(1);
    EXPECT_THAT(gezien, ElementsAre(0, 2));
    EXPECT_EQ(getal.waarde(), 2);
}

TEST(Gepubliceerd, AReceiverMayDestroyTheOwner) {
    auto getal = std::make_unique<Gepubliceerd<std::string>>("een");
    std::string gezien;
    const auto eerste = getal->volg([&](const std::string& tekst) {
        if (tekst == "twee") getal.reset();
        gezien = tekst;
    });
    getal->zet("twee");
    EXPECT_EQ(gezien, "twee");
}

}  // namespace
