// SPDX-License-Identifier: MIT
// The program whole, over a display whose size changes under it.
#include <gtest/gtest.h>
#include <signal.h>

#include <array>

#include "tests/hosts/saver/Programma.h"

using brixtel::Programma;

namespace {

// A display of its own in a window of another, whose size is the window's.
class VensterScherm {
  public:
    explicit VensterScherm(const Xvfb& buiten) : buiten_(buiten) {
        QProcessEnvironment omgeving = QProcessEnvironment::systemEnvironment();
        omgeving.insert(QStringLiteral("DISPLAY"), buiten.display());
        proces_.setProcessEnvironment(omgeving);
        proces_.setStandardErrorFile(QProcess::nullDevice());
        proces_.start(QStringLiteral("Xephyr"),
                      QStringLiteral("-displayfd 1 -resizeable -screen 640x480 -nolisten tcp -ac "
                                     "-noreset")
                          .split(u' '));
        if (!until([this] { return proces_.canReadLine(); })) return;
        naam_ = u':' + QString::fromLatin1(proces_.readLine()).trimmed();
        verbinding_ = xcb_connect(naam_.toLatin1().constData(), nullptr);
    }
    ~VensterScherm() {
        if (verbinding_) xcb_disconnect(verbinding_);
        proces_.kill();
        proces_.waitForFinished();
    }
    VensterScherm(const VensterScherm&) = delete;
    VensterScherm& operator=(const VensterScherm&) = delete;

    [[nodiscard]] bool isEr() const {
        return verbinding_ && xcb_connection_has_error(verbinding_) == 0;
    }
    [[nodiscard]] const QString& naam() const { return naam_; }
    // Without waiting until the display has that size.
    void zetMaat(QSize maat) const {
        for (const xcb_window_t venster : buiten_.mappedWindows())
            buiten_.resize(venster, maat.width(), maat.height());
    }
    void zetMuis(QPoint plaats) const {
        xcb_warp_pointer(verbinding_, XCB_NONE, wortel(), 0, 0, 0, 0,
                         static_cast<std::int16_t>(plaats.x()),
                         static_cast<std::int16_t>(plaats.y()));
        xcb_flush(verbinding_);
    }
    // Moves the mouse to a far corner, and a little more: the first place of a new display
    // is where a movement begins.
    void zetMuisInHoek() const {
        for (const int weg : {40, 30})
            zetMuis({maat().width() - weg, maat().height() - weg});
    }
    [[nodiscard]] QSize maat() const { return maatVan(wortel()); }
    // Whether a window covers the whole of it.
    [[nodiscard]] bool isBedekt() const {
        xcb_query_tree_reply_t* const boom =
            xcb_query_tree_reply(verbinding_, xcb_query_tree(verbinding_, wortel()), nullptr);
        if (!boom) return false;
        bool bedekt = false;
        for (int i = 0; i < xcb_query_tree_children_length(boom); ++i)
            bedekt = bedekt || maatVan(xcb_query_tree_children(boom)[i]) == maat();
        std::free(boom);
        return bedekt;
    }

  private:
    [[nodiscard]] xcb_window_t wortel() const {
        return xcb_setup_roots_iterator(xcb_get_setup(verbinding_)).data->root;
    }
    [[nodiscard]] QSize maatVan(xcb_window_t venster) const {
        xcb_get_geometry_reply_t* const vorm =
            xcb_get_geometry_reply(verbinding_, xcb_get_geometry(verbinding_, venster), nullptr);
        const QSize maat = vorm ? QSize(vorm->width, vorm->height) : QSize();
        std::free(vorm);
        return maat;
    }

    const Xvfb& buiten_;
    QProcess proces_;
    QString naam_;
    xcb_connection_t* verbinding_ = nullptr;
};

TEST(MaatWissel, ASaverOverADisplayThatChangesItsSizeManyTimesStays) {
    const Xvfb buiten("1280x1024x24");
    ASSERT_TRUE(buiten.isRunning());
    const VensterScherm binnen(buiten);
    ASSERT_TRUE(binnen.isEr());
    binnen.zetMuis({600, 440});
    Programma saver(binnen.naam());
    saver.start({QStringLiteral("--keuze=regen")});
    ASSERT_TRUE(until([&] { return binnen.isBedekt(); }));
    // The saver sees the mouse where it is; a smaller display then moves it.
    binnen.zetMuisInHoek();
    constexpr std::array kMaten{QSize(800, 600), QSize(200, 200), QSize(1200, 240), QSize(640, 480),
                                QSize(320, 1000)};
    for (int keer = 0; keer < 15; ++keer) {
        const QSize maat = kMaten.at(static_cast<std::size_t>(keer) % kMaten.size());
        SCOPED_TRACE(keer);
        binnen.zetMaat(maat);
        // Some changes come before the saver has followed the last.
        if (keer % 3 == 0) continue;
        ASSERT_TRUE(until([&] { return binnen.maat() == maat || !saver.loopt(); }));
        EXPECT_TRUE(until([&] { return binnen.isBedekt() || !saver.loopt(); }));
        ASSERT_TRUE(saver.loopt()) << saver.uitgang() << saver.fouten().constData();
        // The next two changes come at once.
        if (keer % 3 == 2) binnen.zetMuisInHoek();
    }
    ::kill(static_cast<pid_t>(saver.nummer()), SIGTERM);
    EXPECT_TRUE(saver.wacht());
    EXPECT_TRUE(saver.doorSignaal());
    EXPECT_EQ(saver.uitgang(), SIGTERM);
}

}  // namespace
