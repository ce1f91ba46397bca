// SPDX-License-Identifier: MIT
// The sheet on a real display, under a window manager, with a real pointer and
// keyboard, and the saver at work beside it in the same process.
#include <gtest/gtest.h>

#include <QApplication>
#include <QProcess>
#include <QRadioButton>
#include <QScreen>
#include <QWindow>

#include "BrixtelSaver/BrixtelSaver.h"
#include "BrixtelSaver/InstellingenVenster.h"
#include "platform/window/SheetOnWindow.h"
#include "platform/window/Window.h"
#include "tests/BrixtelSaver/Instellingen.h"
#include "tests/support/EigenScherm.h"
#include "tests/support/Openbox.h"
#include "tests/support/Until.h"
#include "tests/support/WindowSystems.h"
#include "tests/support/Xvfb.h"

using brixtel::alleKeuzes;
using brixtel::BrixtelSaverView;
using brixtel::InstellingenVenster;
using brixtel::SaverInstellingen;
using brixtel::SaverKeuze;

namespace {

// Runs a tool to its end without keeping its windows waiting meanwhile.
QByteArray hulp(const QString& woorden) {
    QProcess proces;
    QStringList lijst = woorden.split(u' ');
    proces.start(lijst.takeFirst(), lijst);
    EXPECT_TRUE(until([&] { return proces.state() == QProcess::NotRunning; }, 20'000));
    return proces.readAllStandardOutput();
}

class Blad : public testing::Test {
  protected:
    brixtel::EigenInstellingen eigen;
    Openbox beheer;
    platform::SystemClock klok;
    platform::RandomSource toeval{3};
    platform::DistributedNotificationCenter berichten{QString()};
    platform::WindowServer server{
        klok, {.drawer = platform::DrawerChoice::Cpu, .system = systemOn(klok)}};
    std::optional<platform::Window> venster;
    std::shared_ptr<BrixtelSaverView> view;
    std::shared_ptr<InstellingenVenster> blad;
    std::optional<platform::SheetOnWindow> bij;

    void SetUp() override {
        ASSERT_TRUE(beheer.isReady());
        const QRectF vlak(200, 200, 640, 400);
        venster.emplace(
            server, platform::WindowOptions{.frame = vlak, .style = platform::WindowStyle::Titled});
        view = std::make_shared<BrixtelSaverView>(
            QRectF(QPointF(0, 0), vlak.size()), false,
            platform::ScreenSaverContext{
                .clock = klok, .random = toeval, .notifications = berichten});
        venster->setContentView(view);
        venster->showWithKeyboard();
        SaverInstellingen::zetKeuze(SaverKeuze::logo);
        view->startAnimation();
        ASSERT_TRUE(until([this] { return venster->statistics().frames > 0; }, 20'000));
    }
    void TearDown() override {
        bij.reset();
        blad.reset();
        view->stopAnimation();
        venster.reset();
        beheer.stop();
    }
    void toon() {
        blad = std::dynamic_pointer_cast<InstellingenVenster>(view->configureSheet());
        ASSERT_TRUE(blad);
        bij.emplace(blad, venster->reference());
        ASSERT_TRUE(until([this] { return blad->isActiveWindow(); }, 20'000));
    }
    void klik(const QWidget& op, QPoint plaats) const {
        const QPoint punt = op.mapToGlobal(plaats);
        hulp(QStringLiteral("xdotool mousemove %1 %2 click 1").arg(punt.x()).arg(punt.y()));
    }
    void toets(const char* naam) const {
        hulp(QStringLiteral("xdotool key ") + QLatin1String(naam));
    }
    [[nodiscard]] bool gemerkt(std::size_t plaats) const {
        return until([&] {
            int aantal = 0;
            for (const QRadioButton* knop : blad->knoppen())
                aantal += knop->isChecked();
            return aantal == 1 && blad->knoppen()[plaats]->isChecked();
        });
    }
    // The saver beside it shows the choice at once, and it is stored.
    void verwacht(SaverKeuze keuze) const {
        EXPECT_TRUE(until([this] { return !blad->isShown(); }));
        EXPECT_EQ(blad->sheetParent(), nullptr);
        EXPECT_EQ(view->nu(), keuze);
        EXPECT_TRUE(keuze == SaverKeuze::wisselend || view->huidige() == keuze);
        EXPECT_EQ(view->wisselKlok().isValid(), keuze == SaverKeuze::wisselend);
        EXPECT_EQ(SaverInstellingen::keuze(), keuze);
        EXPECT_TRUE(eigen.lees().contains("keuze=" + ruweWaarde(keuze).toLatin1()));
    }
};

TEST_F(Blad, APointerClicksThroughAllSixChoices) {
    for (std::size_t i = 0; i < alleKeuzes.size(); ++i) {
        toon();
        // Alternately on the mark and on the text.
        klik(*blad->knoppen()[i], i % 2 == 0 ? QPoint(7, 11) : QPoint(60, 11));
        ASSERT_TRUE(gemerkt(i)) << i;
        // A marked mode does not count yet.
        EXPECT_EQ(view->nu(), i > 0 ? alleKeuzes[i - 1] : SaverKeuze::logo);
        klik(*blad, QPoint(315, 286 - 31));
        verwacht(alleKeuzes[i]);
    }
}

TEST_F(Blad, AKeyboardAloneReachesAllSixChoices) {
    // From the logo, which is stored, up to the first.
    for (std::size_t i = alleKeuzes.size(); i-- > 0;) {
        toon();
        if (i + 1 < alleKeuzes.size()) toets("Up");
        ASSERT_TRUE(gemerkt(i)) << i;
        toets(i % 2 == 0 ? "Return" : "KP_Enter");
        verwacht(alleKeuzes[i]);
    }
    toon();
    toets("Down");
    ASSERT_TRUE(gemerkt(1));
    // The button has a place in the round, and takes the space bar too.
    toets("Tab");
    toets("space");
    verwacht(SaverKeuze::regen);
}

TEST_F(Blad, EscapeAndTheWindowManagersClosingLeaveItOpen) {
    toon();
    toets("Escape");
    toets("alt+F4");
    toets("Up");
    ASSERT_TRUE(gemerkt(4));
    EXPECT_TRUE(blad->isShown());
    toets("Return");
    verwacht(SaverKeuze::tunnel);
}

// The numbers that xprop prints after the equals sign.
QList<QByteArray> woorden(const QByteArray& regel) {
    QList<QByteArray> alle;
    for (const QByteArray& woord : regel.mid(regel.indexOf('=') + 1).split(','))
        alle << woord.trimmed();
    return alle;
}

TEST_F(Blad, TheWindowManagerIsAskedForATitleAloneAndAFixedSize) {
    toon();
    const auto eigenschap = [this](const char* naam) {
        return hulp(
            QStringLiteral("xprop -id %1 -notype %2").arg(blad->winId()).arg(QLatin1String(naam)));
    };
    // Functions and decorations given; moved, with a border and a title, and no more.
    EXPECT_EQ(woorden(eigenschap("_MOTIF_WM_HINTS")),
              (QList<QByteArray>{"0x3", "0x4", "0xa", "0x0", "0x0"}));
    EXPECT_EQ(woorden(eigenschap("_NET_WM_WINDOW_TYPE")).first(), "_NET_WM_WINDOW_TYPE_DIALOG");
    const QByteArray maten = eigenschap("WM_NORMAL_HINTS");
    EXPECT_TRUE(maten.contains("minimum size: 380 by 286")) << maten.data();
    EXPECT_TRUE(maten.contains("maximum size: 380 by 286")) << maten.data();
    const QByteArray mag = eigenschap("_NET_WM_ALLOWED_ACTIONS");
    EXPECT_TRUE(mag.contains("_NET_WM_ACTION_MOVE")) << mag.data();
    EXPECT_FALSE(mag.contains("_NET_WM_ACTION_RESIZE")) << mag.data();
    EXPECT_FALSE(mag.contains("_NET_WM_ACTION_MAXIMIZE")) << mag.data();
}

TEST_F(Blad, MinimisedAllTheSameItComesBack) {
    toon();
    int keer = 0;
    QObject::connect(blad->windowHandle(), &QWindow::windowStateChanged,
                     [&](Qt::WindowState stand) { keer += stand == Qt::WindowMinimized; });
    hulp(QStringLiteral("xdotool windowminimize %1").arg(blad->winId()));
    EXPECT_TRUE(until([&] { return keer > 0 && !blad->isMinimized(); }, 20'000));
    EXPECT_TRUE(until(
        [this] {
            return hulp(QStringLiteral("xwininfo -id %1").arg(blad->winId()))
                .contains("IsViewable");
        },
        20'000));
    toets("Return");
    verwacht(SaverKeuze::logo);
}

TEST_F(Blad, ItLiesInTheMiddleOfItsWindowAndBelongsToIt) {
    toon();
    const QByteArray ouder =
        hulp(QStringLiteral("xprop -id %1 WM_TRANSIENT_FOR").arg(blad->winId()));
    EXPECT_TRUE(ouder.contains("0x" + QByteArray::number(qlonglong(venster->windowNumber()), 16)))
        << ouder.data();
    const QRectF onder = venster->frame();
    const QPointF midden(onder.center().x(), QGuiApplication::primaryScreen()->geometry().height() -
                                                 onder.center().y());
    EXPECT_TRUE(until([&] {
        const QPointF weg = QRectF(blad->geometry()).center() - midden;
        return std::abs(weg.x()) < 12 && std::abs(weg.y()) < 24;
    }));
}

}  // namespace

int main(int argc, char** argv) {
    return steun::draaiOpEigenScherm<QApplication>(argc, argv, {.scherm = "1280x800x24"});
}
