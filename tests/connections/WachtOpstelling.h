// SPDX-License-Identifier: MIT
// A watcher on a clock that is moved by hand and a stand-in for lsof.
#pragma once

#include <gtest/gtest.h>

#include <QEventLoop>
#include <QTimer>
#include <QtGlobal>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "connections/VerbindingWacht.h"
#include "tests/connections/Tabellen.h"
#include "tests/support/Paden.h"
#include "tests/support/Processen.h"
#include "tests/support/TijdelijkeMap.h"

namespace steun {

inline const std::string kProgrammas = BRIXTEL_BUILD_DIR "/tests/programmas/";
inline const std::string kStandin = kProgrammas + "lsof_standin";

// Runs the main loop until it is so, or far too long. Returns whether it is so.
inline bool draaiTot(const std::function<bool()>& klaar) {
    QTimer uiterlijk;
    uiterlijk.setSingleShot(true);
    uiterlijk.start(60'000);
    QEventLoop lus;
    while (!klaar() && uiterlijk.isActive())
        lus.processEvents(QEventLoop::WaitForMoreEvents);
    return klaar();
}

class WachtOpstelling : public testing::Test {
  protected:
    WachtOpstelling() { qputenv("STANDIN_GESTART", gestart_.c_str()); }
    ~WachtOpstelling() override {
        wacht_.reset();
        EXPECT_FALSE(heeftKinderen());
        for (const char* naam : {"STANDIN_GESTART", "STANDIN_HANGT", "STANDIN_TEKST"})
            qunsetenv(naam);
    }

    brixtel::VerbindingWacht& maakWacht(const std::string& lsof = kStandin) {
        wacht_ = std::make_unique<brixtel::VerbindingWacht>(
            klok_, brixtel::VerbindingWacht::Bron{.tabel = *tabel_, .lsof = lsof});
        // The subscriber gets the present value at once, before any measurement.
        abonnement_ = wacht_->lijnen().volg([this](const auto&) { ++gepubliceerd_; });
        gepubliceerd_ = 0;
        return *wacht_;
    }

    [[nodiscard]] bool wachtOp(int publicaties) {
        return draaiTot([=, this] { return gepubliceerd_ >= publicaties; });
    }

    // Waits until the watcher has nothing under way and all of it has been told.
    void leeg() {
        auto klaar = std::make_shared<bool>(false);
        wacht_->daarna([klaar] { *klaar = true; });
        EXPECT_TRUE(draaiTot([klaar] { return *klaar; }));
    }

    // The number of starts of the stand-in.
    [[nodiscard]] int starts() const {
        std::ifstream bestand(gestart_);
        int aantal = 0;
        for (std::string regel; std::getline(bestand, regel);)
            ++aantal;
        return aantal;
    }

    TijdelijkeMap map_;
    const std::string gestart_ = (map_ / "gestart").string();
    platform::ManualClock klok_;
    Tabel tabel_{kleineTabel()};
    std::unique_ptr<brixtel::VerbindingWacht> wacht_;
    brixtel::Abonnement abonnement_;
    int gepubliceerd_ = 0;
};

}  // namespace steun
