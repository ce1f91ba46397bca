// SPDX-License-Identifier: MIT
// The module of the sheet in a program without any application object.
#include <gtest/gtest.h>

#include <QApplication>

#include "BrixtelSaver/InstellingenModule.h"

using brixtel::InstellingenModule;

namespace {

TEST(ZonderToepassing, TheModuleIsThereAndMakesNoSheet) {
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    InstellingenModule* const module = InstellingenModule::laad();
    ASSERT_NE(module, nullptr);
    bool geroepen = false;
    EXPECT_EQ(module->maak([&](brixtel::SaverKeuze) { geroepen = true; }), nullptr);
    EXPECT_FALSE(geroepen);
}

TEST(ZonderToepassing, OnlyAnApplicationForWidgetsGivesASheet) {
    InstellingenModule* const module = InstellingenModule::laad();
    ASSERT_NE(module, nullptr);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    int aantal = 1;
    char naam[] = "proef";
    char* woorden[] = {naam, nullptr};
    {
        const QCoreApplication kaal(aantal, woorden);
        EXPECT_EQ(module->maak({}), nullptr);
    }
    {
        const QGuiApplication zonderVensters(aantal, woorden);
        EXPECT_EQ(module->maak({}), nullptr);
    }
    const auto eigen = module->maakToepassing(aantal, woorden);
    ASSERT_TRUE(qobject_cast<QApplication*>(eigen.get()));
    EXPECT_NE(module->maak({}), nullptr);
}

}  // namespace
