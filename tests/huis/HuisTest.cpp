// SPDX-License-Identifier: MIT
// The order of the house: what the linker cannot prove about its floors.
#include <gtest/gtest.h>

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <map>

namespace {

const QString kWortel = QStringLiteral(BRIXTEL_SOURCE_DIR "/");

// Which folders each folder may include from, beside itself. Lowest first.
const std::map<QString, QStringList>& vloeren() {
    static const std::map<QString, QStringList> regels = [] {
        std::map<QString, QStringList> r;
        const auto zet = [&r](const char* map, std::initializer_list<const char*> onder) {
            QStringList alle;
            for (const char* m : onder) {
                const QString naam = QLatin1String(m);
                alle << naam << r.at(naam);
            }
            alle.removeDuplicates();
            r[QLatin1String(map)] = alle;
        };
        zet("platform/time", {});
        zet("platform/resources", {});
        zet("platform/process", {"platform/time"});
        zet("platform/sound", {});
        zet("platform/animation", {"platform/time"});
        zet("platform/layers", {"platform/animation"});
        zet("platform/scene", {"platform/animation"});
        zet("platform/render", {"platform/layers", "platform/scene"});
        zet("platform/session", {"platform/time"});
        zet("platform/view", {"platform/layers", "platform/scene", "platform/session"});
        zet("platform/window", {"platform/view", "platform/render"});
        zet("drawing", {"platform/window"});
        zet("connections", {"platform/window", "platform/resources", "platform/process"});
        zet("rain", {"connections", "drawing"});
        zet("worlds", {"connections", "drawing"});
        zet("tafereel", {"worlds", "rain"});
        zet("BrixtelSaver", {"tafereel"});
        zet("desktop", {"tafereel"});
        zet("controls", {"drawing"});
        zet("hosts/gedeeld", {});
        zet("hosts/saver", {"BrixtelSaver", "hosts/gedeeld"});
        zet("hosts/bureau",
            {"hosts/gedeeld", "BrixtelSaver", "desktop", "controls", "platform/sound"});
        return r;
    }();
    return regels;
}

QString mapVan(const QString& pad) {
    for (const auto& [map, onder] : vloeren())
        if (pad.startsWith(map + u'/')) return map;
    return {};
}

// Calls `doe` with the path (from the root) and the text of every source of the
// house itself.
template <typename Doe>
void elkeBron(Doe doe) {
    int gezien = 0;
    for (const auto& [map, onder] : vloeren()) {
        QDirIterator bestanden(
            kWortel + map,
            {QStringLiteral("*.h"), QStringLiteral("*.cpp"), QStringLiteral("*.qml")}, QDir::Files,
            QDirIterator::Subdirectories);
        while (bestanden.hasNext()) {
            QFile bestand(bestanden.next());
            ASSERT_TRUE(bestand.open(QIODevice::ReadOnly));
            doe(bestand.fileName().mid(kWortel.size()), QString::fromUtf8(bestand.readAll()));
            ++gezien;
        }
    }
    ASSERT_GT(gezien, 50);
}

QStringList gevonden(const QString& tekst, const QString& patroon) {
    QStringList alle;
    auto treffers =
        QRegularExpression(patroon, QRegularExpression::MultilineOption).globalMatch(tekst);
    while (treffers.hasNext())
        alle << treffers.next().captured(1);
    return alle;
}

TEST(Huis, NothingIncludesUpward) {
    elkeBron([](const QString& pad, const QString& tekst) {
        const QString map = mapVan(pad);
        for (const QString& naam : gevonden(tekst, QStringLiteral("^#include \"([^\"]+)\""))) {
            const QString van = mapVan(naam);
            if (van.isEmpty() || van == map) continue;
            EXPECT_TRUE(vloeren().at(map).contains(van))
                << qPrintable(pad) << " includes " << qPrintable(naam);
        }
    });
}

TEST(Huis, OpenGlStaysInRenderAndTheWindowGlue) {
    elkeBron([](const QString& pad, const QString& tekst) {
        if (pad.startsWith(QLatin1String("platform/render/")) ||
            pad.startsWith(QLatin1String("platform/window/")))
            return;
        EXPECT_TRUE(
            gevonden(tekst, QStringLiteral("^#include <((?:epoxy|GL|GLES|EGL)/[^>]+)>")).isEmpty())
            << qPrintable(pad);
    });
}

TEST(Huis, OnlyThePlatformKnowsTheWindowSystem) {
    elkeBron([](const QString& pad, const QString& tekst) {
        if (pad.startsWith(QLatin1String("platform/"))) return;
        EXPECT_TRUE(gevonden(tekst, QStringLiteral("^#include <((?:xcb|X11)/[^>]+)>")).isEmpty())
            << qPrintable(pad);
    });
}

TEST(Huis, OneClockAndOneSourceOfRandomness) {
    const QString patroon = QStringLiteral(
        "(sleep_for|usleep\\(|qWait|steady_clock::now|system_clock::now|clock_gettime|"
        "QElapsedTimer|random_device|QRandomGenerator)");
    elkeBron([&](const QString& pad, const QString& tekst) {
        if (pad.startsWith(QLatin1String("platform/time/"))) return;
        EXPECT_TRUE(gevonden(tekst, patroon).isEmpty()) << qPrintable(pad);
    });
}

TEST(Huis, AFileCanBeHeldInTheHead) {
    elkeBron([](const QString& pad, const QString& tekst) {
        EXPECT_LE(tekst.count(u'\n'), 400) << qPrintable(pad);
    });
}

}  // namespace
