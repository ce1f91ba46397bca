// SPDX-License-Identifier: MIT
// The order of the house: what the linker cannot prove about its floors.
#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <map>

namespace {

const QString kWortel = QStringLiteral(BRIXTEL_SOURCE_DIR "/");
const QStringList kKamers{QStringLiteral("platform"),     QStringLiteral("connections"),
                          QStringLiteral("drawing"),      QStringLiteral("rain"),
                          QStringLiteral("worlds"),       QStringLiteral("desktop"),
                          QStringLiteral("BrixtelSaver"), QStringLiteral("tafereel"),
                          QStringLiteral("controls"),     QStringLiteral("hosts")};

QString lees(const QString& naam) {
    QFile bestand(naam);
    EXPECT_TRUE(bestand.open(QIODevice::ReadOnly)) << qPrintable(naam);
    return QString::fromUtf8(bestand.readAll());
}

// Calls `doe` with the path, from the root, of every file of those names in the rooms.
template <typename Doe>
void elkBestand(const QStringList& namen, Doe doe, const QStringList& kamers = kKamers) {
    for (const QString& kamer : kamers) {
        QDirIterator bestanden(kWortel + kamer, namen, QDir::Files, QDirIterator::Subdirectories);
        while (bestanden.hasNext())
            doe(bestanden.next().mid(kWortel.size()));
    }
}

// A library as its folder's build file makes it.
struct Bibliotheek {
    QString map;
    QStringList open;      // what it links, and those who link it with it
    QStringList besloten;  // what it links for itself
};

std::map<QString, Bibliotheek> bibliotheken() {
    std::map<QString, Bibliotheek> alle;
    static const QRegularExpression vloer(QStringLiteral("brixtel_floor\\((\\w+)([^)]*)\\)"));
    elkBestand({QStringLiteral("CMakeLists.txt")}, [&](const QString& pad) {
        auto treffers = vloer.globalMatch(lees(kWortel + pad));
        while (treffers.hasNext()) {
            const auto treffer = treffers.next();
            Bibliotheek& nieuw = alle[treffer.captured(1)];
            nieuw.map = pad.section(u'/', 0, -2);
            QStringList* lijst = nullptr;
            for (const QString& woord : treffer.captured(2).split(
                     QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts)) {
                if (woord == QLatin1String("LINKS"))
                    lijst = &nieuw.open;
                else if (woord == QLatin1String("PRIVATE_LINKS"))
                    lijst = &nieuw.besloten;
                else if (woord == QLatin1String("SOURCES") || woord == QLatin1String("MOC"))
                    lijst = nullptr;
                else if (lijst)
                    *lijst << woord;
            }
        }
    });
    return alle;
}

void voegToe(const std::map<QString, Bibliotheek>& alle, const QString& naam,
             QSet<QString>& mappen) {
    const auto gevonden = alle.find(naam);
    if (gevonden == alle.end()) return;
    mappen.insert(gevonden->second.map);
    for (const QString& onder : gevonden->second.open)
        voegToe(alle, onder, mappen);
}

// The folders that each folder with libraries may include from: those that the build
// links for it.
const std::map<QString, QSet<QString>>& vloeren() {
    static const auto regels = [] {
        std::map<QString, QSet<QString>> r;
        const auto alle = bibliotheken();
        for (const auto& [naam, bibliotheek] : alle) {
            QSet<QString>& mappen = r[bibliotheek.map];
            mappen.insert(bibliotheek.map);
            for (const QString& onder : bibliotheek.open + bibliotheek.besloten)
                voegToe(alle, onder, mappen);
        }
        return r;
    }();
    return regels;
}

// The deepest folder with libraries that the file lies in; empty for none.
QString mapVan(const QString& pad) {
    QString diepste;
    for (const auto& [map, onder] : vloeren())
        if (pad.startsWith(map + u'/') && map.size() > diepste.size()) diepste = map;
    return diepste;
}

// Calls `doe` with the path (from the root) and the text of every source in the rooms;
// without more, of the house itself.
template <typename Doe>
void elkeBron(Doe doe, const QStringList& kamers = kKamers) {
    int gezien = 0;
    elkBestand(
        {QStringLiteral("*.h"), QStringLiteral("*.cpp"), QStringLiteral("*.qml")},
        [&](const QString& pad) {
            doe(pad, lees(kWortel + pad));
            ++gezien;
        },
        kamers);
    ASSERT_GT(gezien, 300);
}

QStringList gevonden(const QString& tekst, const QString& patroon) {
    QStringList alle;
    auto treffers =
        QRegularExpression(patroon, QRegularExpression::MultilineOption).globalMatch(tekst);
    while (treffers.hasNext())
        alle << treffers.next().captured(1);
    return alle;
}

bool ligtIn(const QString& pad, std::initializer_list<const char*> mappen) {
    return std::any_of(mappen.begin(), mappen.end(),
                       [&](const char* map) { return pad.startsWith(QLatin1String(map) + u'/'); });
}

TEST(Huis, EveryFolderOfThePlatformIsAFloor) {
    EXPECT_GT(vloeren().size(), 20U);
    EXPECT_TRUE(
        vloeren().at(QStringLiteral("platform/window")).contains(QStringLiteral("platform/time")));
    EXPECT_FALSE(vloeren()
                     .at(QStringLiteral("platform/window"))
                     .contains(QStringLiteral("platform/window/x11")));
    EXPECT_FALSE(
        vloeren().at(QStringLiteral("connections")).contains(QStringLiteral("platform/window")));
    EXPECT_FALSE(vloeren().at(QStringLiteral("rain")).contains(QStringLiteral("connections")));
    elkeBron([](const QString& pad, const QString&) {
        EXPECT_FALSE(mapVan(pad).isEmpty()) << qPrintable(pad);
    });
}

TEST(Huis, NothingIncludesWhatItsFolderDoesNotLink) {
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

// Prototypes of OpenGL would lead to a library that links OpenGL.
TEST(Huis, OpenGlStaysBehindItsPointers) {
    const QStringList tabellen{QStringLiteral("platform/render/egl/EglCalls.h"),
                               QStringLiteral("platform/render/gl/GlCalls.h")};
    elkeBron([&](const QString& pad, const QString& tekst) {
        const QString koppen = QStringLiteral("^#include <((?:epoxy|GL|GLES|EGL)/[^>]+)>");
        EXPECT_EQ(gevonden(tekst, koppen).isEmpty(), !tabellen.contains(pad)) << qPrintable(pad);
    });
}

TEST(Huis, OpenGlStaysInItsFoldersAndInTheGlueOfWindows) {
    elkeBron([](const QString& pad, const QString& tekst) {
        if (ligtIn(pad, {"platform/render/gl", "platform/render/egl", "platform/window/x11"}))
            return;
        const QString tabellen =
            QStringLiteral("^#include \"(platform/render/(?:egl/Egl|gl/Gl)Calls\\.h)\"");
        EXPECT_TRUE(gevonden(tekst, tabellen).isEmpty()) << qPrintable(pad);
    });
}

// The name of no window system, of its libraries, or of what they hand out.
TEST(Huis, OnlyItsOwnFolderKnowsTheWindowSystemOfCompositors) {
    const QString patroon =
        QStringLiteral("((?i:wayland)|\\b(?:wl|xdg|zwlr|zwp|wp|ext|xkb)_[a-z]\\w+|\\bxkbcommon)");
    elkeBron([&](const QString& pad, const QString& tekst) {
        // X11 knows whether its server is a compositor's client.
        if (ligtIn(pad, {"platform/window/wayland", "platform/window/x11"})) return;
        EXPECT_EQ(gevonden(tekst, patroon), QStringList()) << qPrintable(pad);
    });
}

TEST(Huis, OnlyAWindowSystemsOwnFolderKnowsIt) {
    const QString patroon = QStringLiteral(
        "((?i:xcb|x11)|\\bX(?:lib|Open|id\\b)| X id|\\b_(?:NET|MOTIF|GTK)_\\w+|"
        "QNativeInterface|qpa/qplatform|[wW]inId\\(|fromWinId|X "
        "server|\"DISPLAY\"|QT_QPA_PLATFORM)");
    elkeBron([&](const QString& pad, const QString& tekst) {
        if (ligtIn(pad, {"platform/window/x11"})) return;
        // WindowSystems.cpp alone chooses the plugin, and asks the systems for its name.
        if (pad == QLatin1String("platform/window/systems/WindowSystems.cpp")) {
            EXPECT_EQ(gevonden(tekst, patroon), QStringList{QStringLiteral("QT_QPA_PLATFORM")});
            return;
        }
        EXPECT_EQ(gevonden(tekst, patroon), QStringList()) << qPrintable(pad);
    });
}

TEST(Huis, OneClockAndOneSourceOfRandomness) {
    const QString patroon = QStringLiteral(
        "(sleep_for|usleep\\(|nanosleep|poll\\(nullptr|qWait|steady_clock::now|system_clock::now|"
        "clock_gettime|"
        "QElapsedTimer|random_device|QRandomGenerator)");
    elkeBron([&](const QString& pad, const QString& tekst) {
        if (ligtIn(pad, {"platform/time"})) return;
        EXPECT_TRUE(gevonden(tekst, patroon).isEmpty()) << qPrintable(pad);
    });
}

TEST(Huis, AFileCanBeHeldInTheHead) {
    elkeBron([](const QString& pad, const QString& tekst) {
        EXPECT_LE(tekst.count(u'\n'), 400) << qPrintable(pad);
    });
}

// The text of a source's comments: C++ and QML alike, code left out.
QString commentaar(const QString& tekst) {
    return gevonden(tekst, QStringLiteral("(?:(?:^|\\s)//|^\\s*/?\\*)\\s?(.*)$")).join(u'\n');
}

// Calls `doe` with the path and the comments of every public header of platform/.
template <typename Doe>
void elkePubliekeKop(Doe doe) {
    int gezien = 0;
    elkeBron([&](const QString& pad, const QString& tekst) {
        if (!pad.startsWith(QLatin1String("platform/")) || !pad.endsWith(QLatin1String(".h")))
            return;
        const QString woorden = commentaar(tekst);
        if (woorden.contains(QRegularExpression(QStringLiteral("rivate\\s+to\\s+platform/"))))
            return;
        doe(pad, woorden);
        ++gezien;
    });
    EXPECT_GT(gezien, 80);
}

TEST(Huis, EveryHeaderOfThePlatformSaysOnWhichThread) {
    const QRegularExpression regel(
        QStringLiteral("\\b([Mm]ain|[Aa]ny|[Oo]ne|[Rr]ender|calling)\\s+thread\\b"));
    elkePubliekeKop([&](const QString& pad, const QString& woorden) {
        EXPECT_TRUE(woorden.contains(regel)) << qPrintable(pad);
    });
}

TEST(Huis, EveryHeaderOfThePlatformSaysWhoOwnsWhat) {
    const QRegularExpression regel(QStringLiteral(
        "\\b([Oo]wns?|owned|[Oo]wners?|ownership|[Ss]hares?|shared|[Kk]eeps?|outlives?|"
        "[Aa]\\s+(plain\\s+)?value|[Vv]alues only)\\b"));
    elkePubliekeKop([&](const QString& pad, const QString& woorden) {
        EXPECT_TRUE(woorden.contains(regel)) << qPrintable(pad);
    });
}

TEST(Huis, ACommentBeginsWithItsSubject) {
    const QRegularExpression regel(QStringLiteral("^\\s*//\\s?(.*)$"));
    const QRegularExpression opening(QStringLiteral(
        "^(Of|So|Whoever|What|Which|Nor|Those|Such|It is that|The one|Each that)\\b"));
    int begonnen = 0;
    const auto leest = [&](const QString& pad, const QString& tekst) {
        bool inAlinea = false;
        for (const QString& lijn : tekst.split(u'\n')) {
            const auto gezien = regel.match(lijn);
            const QString woorden = gezien.captured(1);
            if (!inAlinea && !woorden.isEmpty()) {
                EXPECT_FALSE(opening.match(woorden).hasMatch())
                    << qPrintable(pad) << ": " << qPrintable(woorden);
                ++begonnen;
            }
            inAlinea = !woorden.isEmpty() && !woorden.startsWith(QLatin1String("SPDX-"));
        }
    };
    elkeBron(leest, kKamers + QStringList{QStringLiteral("tests"), QStringLiteral("bench"),
                                          QStringLiteral("tools")});
    EXPECT_GT(begonnen, 2500);
}

}  // namespace
