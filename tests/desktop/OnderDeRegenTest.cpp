// SPDX-License-Identifier: MIT
// The desktop rain between what lies below it and the X server: what is done with
// the mouse comes through it, and of its own windows only what changed is damaged.
#include <xcb/damage.h>
#include <xcb/xtest.h>

#include <QFile>
#include <QRegion>
#include <atomic>
#include <tuple>

#include "desktop/Bovenlaag.h"
#include "desktop/MatrixCentrale.h"
#include "platform/view/Frame.h"
#include "platform/view/FrameBuilder.h"
#include "platform/window/DesktopWorkspace.h"
#include "tests/desktop/Bureaublad.h"
#include "tests/support/DBusDaemon.h"
#include "tests/support/EigenScherm.h"
#include "tests/support/WindowSystems.h"

using brixtel::Bureaublad;
using brixtel::MatrixCentrale;
using brixtel::scherm;

namespace {

template <typename T>
struct Los {
    void operator()(T* antwoord) const { std::free(antwoord); }
};
template <typename T>
using Antwoord = std::unique_ptr<T, Los<T>>;

class Verbinding {
  public:
    Verbinding() : c_(xcb_connect(qPrintable(scherm->display()), nullptr)) {}
    ~Verbinding() { xcb_disconnect(c_); }
    Verbinding(const Verbinding&) = delete;
    Verbinding& operator=(const Verbinding&) = delete;
    [[nodiscard]] xcb_connection_t* get() const { return c_; }
    // Until the server has done all that was asked here.
    void wacht() const {
        const Antwoord<xcb_get_input_focus_reply_t> af(
            xcb_get_input_focus_reply(c_, xcb_get_input_focus(c_), nullptr));
    }

  private:
    xcb_connection_t* const c_;
};

// Moved by hand; render threads may look at it meanwhile.
class HandKlok final : public platform::MediaClock {
  public:
    [[nodiscard]] double now() const override { return nu_; }
    // Moves to the next timer, at most this far.
    void stap(double hoogstens) {
        nu_ = std::max<double>(nu_, std::min<double>(earliestDue(), nu_ + hoogstens));
        fireDue();
    }

  private:
    std::atomic<double> nu_{1000.0};
};

class OnderDeRegen : public testing::Test {
  protected:
    Bureaublad bureaublad;
    DBusDaemon bus;
    HandKlok klok;
    platform::RandomSource toeval{7};
    platform::DistributedNotificationCenter berichten{bus.address()};
    platform::WindowServer server{
        klok, {.drawer = platform::DrawerChoice::Cpu, .system = systemOn(klok)}};
    platform::DesktopWorkspace werkruimte{server, berichten};
    std::optional<MatrixCentrale> centrale;

    void SetUp() override {
        ASSERT_TRUE(bureaublad.isKlaar());
        ASSERT_TRUE(bureaublad.startCompositor());
        brixtel::Bovenlaag::begin(nullptr);
        centrale.emplace(brixtel::MatrixCentraleBronnen{
            .server = server, .werkruimte = werkruimte, .toeval = toeval});
        centrale->dichtheid = 1.0;
    }

    [[nodiscard]] const platform::Window& regen() const {
        return *centrale->regen().front().venster;
    }
    // Lets time pass until this holds.
    template <typename Waar>
    [[nodiscard]] bool metDeTijd(Waar waar) {
        return until([&] {
            klok.stap(0.01);
            return waar();
        });
    }
    [[nodiscard]] bool toonRegen() {
        return metDeTijd([this] { return werkruimte.isComposited(); }) &&
               (centrale->toonRegen(), true) && metDeTijd([this] {
                   const auto alle = scherm->mappedWindows();
                   return regen().statistics().frames > 5 && regen().alpha() == 1.0 &&
                          alle.back() == static_cast<xcb_window_t>(regen().windowNumber());
               });
    }
};

// --- what comes through ---

// One mouse action: the event, its button, and its place.
using Daad = std::tuple<int, int, int, int>;

// A program's window that keeps what is done to it.
class Hoorder {
  public:
    Hoorder() {
        xcb_connection_t* const c = verbinding_.get();
        const std::uint32_t waarden[] = {0xffffff, XCB_EVENT_MASK_BUTTON_PRESS |
                                                       XCB_EVENT_MASK_BUTTON_RELEASE |
                                                       XCB_EVENT_MASK_POINTER_MOTION};
        xcb_create_window(c, XCB_COPY_FROM_PARENT, venster_, scherm->screen().root, 0, 0, 400, 300,
                          0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, waarden);
        xcb_map_window(c, venster_);
        verbinding_.wacht();
    }

    // Whether the window has reached its final place, in its frame if it has one.
    [[nodiscard]] bool staatVast() {
        const auto plek = plaats();
        return isManaged() && plek == std::exchange(vorige_, plek);
    }
    // Where its zero is on the screen.
    [[nodiscard]] QPoint plaats() const {
        const Antwoord<xcb_translate_coordinates_reply_t> plek(xcb_translate_coordinates_reply(
            verbinding_.get(),
            xcb_translate_coordinates(verbinding_.get(), venster_, scherm->screen().root, 0, 0),
            nullptr));
        return {plek->dst_x, plek->dst_y};
    }
    const std::vector<Daad>& hoor() {
        while (const Antwoord<xcb_generic_event_t> bericht{xcb_poll_for_event(verbinding_.get())}) {
            const int soort = bericht->response_type & 0x7f;
            if (soort != XCB_BUTTON_PRESS && soort != XCB_BUTTON_RELEASE &&
                soort != XCB_MOTION_NOTIFY)
                continue;
            // The three are laid out alike.
            const auto& e = reinterpret_cast<const xcb_button_press_event_t&>(*bericht);
            gehoord_.emplace_back(soort, soort == XCB_MOTION_NOTIFY ? 0 : e.detail, e.event_x,
                                  e.event_y);
        }
        return gehoord_;
    }
    void vergeet() {
        verbinding_.wacht();
        hoor();
        gehoord_.clear();
    }

  private:
    // The window manager says so on it.
    [[nodiscard]] bool isManaged() const {
        const Antwoord<xcb_get_property_reply_t> staat(xcb_get_property_reply(
            verbinding_.get(),
            xcb_get_property(verbinding_.get(), 0, venster_, Bureaublad::atoom("WM_STATE"),
                             XCB_GET_PROPERTY_TYPE_ANY, 0, 2),
            nullptr));
        return staat && staat->type != XCB_NONE;
    }

    const Verbinding verbinding_;
    const xcb_window_t venster_ = xcb_generate_id(verbinding_.get());
    std::vector<Daad> gehoord_;
    QPoint vorige_{-1, -1};
};

// A hand on the mouse over it, that also says what must be heard of it. It holds a
// button until the program knows: a window manager looks at a press first, and of
// what waits for that the server says, rain or no rain, that it was where the mouse
// is by then.
class Hand {
  public:
    explicit Hand(Hoorder& hoorder) : hoorder_(hoorder), nul_(hoorder.plaats()) {}

    void beweeg(int x, int y) {
        doe(XCB_MOTION_NOTIFY, 0, nul_.x() + x, nul_.y() + y);
        plek_ = {x, y};
        gedaan.emplace_back(XCB_MOTION_NOTIFY, 0, x, y);
    }
    void druk(int knop) {
        met(XCB_BUTTON_PRESS, knop);
        until([this] { return hoorder_.hoor().size() >= gedaan.size(); });
    }
    void los(int knop) { met(XCB_BUTTON_RELEASE, knop); }
    void klik(int knop) {
        druk(knop);
        los(knop);
    }

    std::vector<Daad> gedaan;

  private:
    void met(int soort, int knop) {
        doe(soort, knop, 0, 0);
        gedaan.emplace_back(soort, knop, plek_.x(), plek_.y());
    }
    void doe(int soort, int knop, int x, int y) const {
        xcb_test_fake_input(verbinding_.get(), static_cast<std::uint8_t>(soort),
                            static_cast<std::uint8_t>(knop), 0, scherm->screen().root,
                            static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0);
        verbinding_.wacht();
    }

    Hoorder& hoorder_;
    const QPoint nul_;
    QPoint plek_;
    const Verbinding verbinding_;
};

class DoorDeRegen : public OnderDeRegen {
  protected:
    std::optional<Hoorder> hoorder;
    std::optional<Hand> hand;

    void SetUp() override {
        OnderDeRegen::SetUp();
        hoorder.emplace();
        ASSERT_TRUE(until([&] { return hoorder->staatVast(); }));
        ASSERT_TRUE(toonRegen());
        hand.emplace(*hoorder);
        // Away from where it happens to be.
        hand->beweeg(3, 4);
        ASSERT_TRUE(until([&] { return !hoorder->hoor().empty(); }));
        hoorder->vergeet();
        hand->gedaan.clear();
    }
    // The rain goes on meanwhile.
    void laatRegenen() {
        const auto toen = regen().statistics().frames;
        ASSERT_TRUE(metDeTijd([&] { return regen().statistics().frames > toen; }));
    }
};

TEST_F(DoorDeRegen, ClicksAndScrollsComeInOrderAndComplete) {
    for (int i = 0; i < 40; ++i) {
        hand->beweeg(10 + 9 * i, 10 + 7 * i);
        hand->klik(1 + i % 5);
        if (i % 4 == 0) laatRegenen();
    }
    EXPECT_TRUE(until([&] { return hoorder->hoor().size() >= hand->gedaan.size(); }));
    EXPECT_EQ(hoorder->hoor(), hand->gedaan);
}

TEST_F(DoorDeRegen, ADragComesInOrderAndComplete) {
    hand->beweeg(30, 40);
    hand->druk(1);
    for (int i = 1; i <= 60; ++i) {
        hand->beweeg(30 + 5 * i, 40 + 3 * i);
        if (i % 5 == 0) laatRegenen();
    }
    hand->los(1);
    EXPECT_TRUE(until([&] { return hoorder->hoor().size() >= hand->gedaan.size(); }));
    EXPECT_EQ(hoorder->hoor(), hand->gedaan);
}

// --- what is damaged ---

// The server's damage reports of a window: every rectangle as drawn.
class Schade {
  public:
    explicit Schade(xcb_window_t venster) {
        xcb_connection_t* const c = verbinding_.get();
        const Antwoord<xcb_damage_query_version_reply_t> versie(
            xcb_damage_query_version_reply(c, xcb_damage_query_version(c, 1, 1), nullptr));
        bericht_ = xcb_get_extension_data(c, &xcb_damage_id)->first_event + XCB_DAMAGE_NOTIFY;
        xcb_damage_create(c, xcb_generate_id(c), venster, XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
        // At first the server tells of the whole window.
        if (leesAlles().empty())
            ADD_FAILURE() << "no word of damage";
        else
            rechthoeken_.erase(rechthoeken_.begin());
    }

    // All of it so far, in order.
    const std::vector<QRect>& lees() {
        while (const Antwoord<xcb_generic_event_t> bericht{xcb_poll_for_event(verbinding_.get())}) {
            if ((bericht->response_type & 0x7f) != bericht_) continue;
            const auto& e = reinterpret_cast<const xcb_damage_notify_event_t&>(*bericht);
            rechthoeken_.emplace_back(e.area.x, e.area.y, e.area.width, e.area.height);
        }
        return rechthoeken_;
    }
    // Reads everything, messages on their way included.
    const std::vector<QRect>& leesAlles() {
        verbinding_.wacht();
        return lees();
    }

  private:
    const Verbinding verbinding_;
    int bericht_ = 0;
    std::vector<QRect> rechthoeken_;
};

QRegion samen(const std::vector<QRect>& rechthoeken) {
    QRegion alles;
    for (const QRect& rechthoek : rechthoeken)
        alles += rechthoek;
    return alles;
}

qint64 oppervlak(const QRegion& vlak) {
    qint64 som = 0;
    for (const QRect& rechthoek : vlak)
        som += qint64{rechthoek.width()} * rechthoek.height();
    return som;
}

// Finds out when its window builds a frame, and what the rain looks like then.
class Kijker : public platform::View {
  public:
    Kijker(const platform::MediaClock& klok, std::shared_ptr<platform::Layer> wortel, QSize maat)
        : View(QRectF(0, 0, 1, 1)), klok_(klok), wortel_(std::move(wortel)) {
        frame_.grid = {.scale = 1.0, .size = maat};
    }

    // The difference between the last two frames.
    std::vector<QRect> anders;
    int gebouwd = 0;

  protected:
    void build(platform::FrameBuilder& builder, QPointF oorsprong) override {
        View::build(builder, oorsprong);
        std::swap(vorige_, frame_);
        frame_.grid = vorige_.grid;
        {
            platform::FrameBuilder eigen(frame_, klok_.now());
            eigen.addLayers(*wortel_, {0.0, 0.0});
        }
        platform::findFrameDamage(vorige_, frame_, anders);
        ++gebouwd;
    }

  private:
    const platform::MediaClock& klok_;
    const std::shared_ptr<platform::Layer> wortel_;
    platform::Frame vorige_, frame_;
};

class SchadeVanDeRegen : public OnderDeRegen {
  protected:
    std::optional<Schade> schade;
    std::shared_ptr<Kijker> kijker;
    std::uint64_t getekend = 0;
    std::vector<QRect> vooraf;  // what may still be told of, of the frame before

    void SetUp() override {
        OnderDeRegen::SetUp();
        ASSERT_TRUE(metDeTijd([this] { return werkruimte.isComposited(); }));
        centrale->toonRegen();
        const auto inhoud = regen().contentView();
        kijker = std::make_shared<Kijker>(klok, inhoud->layer(), inhoud->frame().size().toSize());
        inhoud->addSubview(kijker);
        // Nothing moves on until the first frame is on the screen; from then on no
        // two are shown as one.
        ASSERT_TRUE(until([this] {
            if (kijker->gebouwd == 0) klok.stap(0.01);
            return kijker->gebouwd == 1 && beelden() == 1;
        }));
        getekend = 1;
        // The server asks for all of a new window once.
        for (int i = 0; i < 40; ++i)
            ASSERT_TRUE(volgende());
        vooraf = kijker->anders;
        schade.emplace(static_cast<xcb_window_t>(regen().windowNumber()));
    }
    [[nodiscard]] std::uint64_t beelden() const { return regen().statistics().frames; }
    // On to the next frame that looks different, and until it is drawn.
    [[nodiscard]] bool volgende() {
        const int toen = kijker->gebouwd;
        for (int i = 0; i < 1000; ++i) {
            klok.stap(0.01);
            if (kijker->gebouwd == toen || kijker->anders.empty()) continue;
            ++getekend;
            return until([this] { return beelden() == getekend; });
        }
        return false;
    }
    // Whether this is what the server was told of, in this order, and nothing else.
    void isGeheel(const std::vector<QRect>& verwacht) {
        const auto compleet = [&] {
            const std::vector<QRect>& gemeld = schade->lees();
            return gemeld.size() >= verwacht.size() &&
                   std::equal(verwacht.rbegin(), verwacht.rend(), gemeld.rbegin());
        };
        EXPECT_TRUE(until(compleet));
        schade->leesAlles();
        EXPECT_TRUE(compleet());
        const std::vector<QRect>& gemeld = schade->lees();
        ASSERT_LE(gemeld.size() - verwacht.size(), vooraf.size());
        // The last of the frame before, if any of it.
        EXPECT_TRUE(std::equal(gemeld.rbegin() + static_cast<std::ptrdiff_t>(verwacht.size()),
                               gemeld.rend(), vooraf.rbegin()));
    }
};

TEST_F(SchadeVanDeRegen, IsInEveryFrameWhatTheChangedCellsCoverAndNoMore) {
    const QRectF venster = regen().contentView()->frame();
    const double breed =
        centrale->regen().front().regen->kolommen().front().staart->bounds().width();
    constexpr int kBeelden = 90;
    std::vector<QRect> alles;
    double som = 0.0;
    for (int beeld = 0; beeld < kBeelden; ++beeld) {
        ASSERT_TRUE(volgende());
        alles.insert(alles.end(), kijker->anders.begin(), kijker->anders.end());
        som += oppervlak(samen(kijker->anders));
    }
    isGeheel(alles);
    // No rectangle spans two columns.
    for (const QRect& rechthoek : alles)
        EXPECT_LE(rechthoek.width(), breed);
    EXPECT_LT(som / kBeelden, 0.25 * venster.width() * venster.height());
}

TEST_F(SchadeVanDeRegen, IsNothingWhileNothingChanges) {
    brixtel::MatrixRegen& druppels = *centrale->regen().front().regen;
    druppels.stop();
    druppels.zetTempo(0.0F);
    const int gebouwd = kijker->gebouwd;
    for (int i = 0; i < 1000; ++i) {
        klok.stap(0.01);
        EXPECT_TRUE(kijker->gebouwd == gebouwd || kijker->anders.empty());
    }
    // One frame may be built for the change of tempo.
    EXPECT_LE(kijker->gebouwd, gebouwd + 1);
    // Anything more would have to come before the next frame's.
    druppels.zetTempo(1.0F);
    ASSERT_TRUE(volgende());
    isGeheel(kijker->anders);
}

}  // namespace

int main(int argc, char** argv) {
    return steun::draaiOpEigenScherm(argc, argv, {.scherm = "1280x720x24"},
                                     [](Xvfb& server, const QString&) { scherm = &server; });
}
