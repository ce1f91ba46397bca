// SPDX-License-Identifier: MIT
// The panel on a real screen, with a real pointer and keyboard: an X server of the
// test's own with a window manager, on a clock moved by hand.
#include <QFile>
#include <utility>

#include "BrixtelSaver/SaverInstellingen.h"
#include "platform/view/SceneView.h"
#include "tests/desktop/Bureaublad.h"
#include "tests/hosts/bureau/PaneelProef.h"
#include "tests/hosts/bureau/SchrijfTeller.h"
#include "tests/support/EigenScherm.h"

using namespace brixtel;

namespace {

// Black, and two greens of the theme.
bool isGroen(QRgb punt) {
    return qGreen(punt) > 60 && qGreen(punt) > qRed(punt) + 20;
}

class OpHetScherm : public PaneelProef {
  protected:
    std::optional<Bureaublad> bureaublad;
    std::size_t zonderPaneel = 0;  // timers

    OpHetScherm() : PaneelProef(QString()) {}
    void SetUp() override {
        PaneelProef::SetUp();
        bureaublad.emplace();
        ASSERT_TRUE(bureaublad->isKlaar());
        klok.advance(60.0);
        zonderPaneel = klok.timerCount();
    }
    // Shows it with these choices, and waits until the user could work it.
    void begin(const BureauKeuzes& keuzes) {
        bureau->zetKeuzes(keuzes);
        klok.advance(1.0);
        toon();
        ASSERT_TRUE(until([this] { return view()->isActive(); }));
        kalmeer();
    }
    void kies(std::optional<DrieSoort> soort) {
        BureauKeuzes keuzes = nu().keuzes;
        keuzes.soort = soort;
        bureau->zetKeuzes(keuzes);
    }
    static void doe(const QString& woorden) {
        Bureaublad::hulp(QStringLiteral("xdotool ") + woorden);
    }
    static QString naar(QPoint plek) {
        return QStringLiteral("mousemove %1 %2 ").arg(plek.x()).arg(plek.y());
    }
    void klik(QAccessible::Role rol, const char* naam, const char* groep = nullptr) {
        doe(naar(plaats(rol, naam, groep)) + QStringLiteral("click 1"));
    }
    // Drags that slider from its middle to its end, in steps.
    void sleep(const char* naam) {
        auto* const schuif = vind(QAccessible::Slider, naam);
        const double einde = schuif->valueInterface()->maximumValue().toDouble();
        const QRect plek = schuif->rect();
        QString woorden = naar(plek.center()) + QStringLiteral("mousedown 1 ");
        for (int x = plek.center().x(); x < plek.right(); x += 5)
            woorden += naar({x, plek.center().y()});
        doe(woorden.trimmed());
        EXPECT_TRUE(until([&] { return waarde(naam) == einde; }));
        doe(QStringLiteral("mouseup 1"));
    }
    [[nodiscard]] const Voorbeeld& voorbeeld() const { return paneel->voorbeeld(); }
    [[nodiscard]] std::shared_ptr<platform::View> inhoud() const {
        return voorbeeld().venster()->contentView();
    }
    [[nodiscard]] std::uint64_t getekend() const {
        return voorbeeld().venster()->statistics().frames;
    }

    // Turns the event loop while time goes by.
    template <typename Voorwaarde>
    bool straks(Voorwaarde voorwaarde) {
        return until(
            [&] {
                klok.advance(0.02);
                return voorwaarde();
            },
            30'000);
    }
    // The part of the panel's window where the picture stands.
    [[nodiscard]] QImage beeld() {
        return scherm->picture(xcb_window_t(view()->winId()))
            .copy(blad()->property("plek").toRectF().toRect());
    }
    [[nodiscard]] double groen(const QImage& van) const {
        int aantal = 0;
        for (int y = 0; y < van.height(); ++y)
            for (int x = 0; x < van.width(); ++x)
                aantal += isGroen(van.pixel(x, y));
        return 1.0 * aantal / (van.width() * van.height());
    }
    // The picture while time stands still: drawn to the end.
    QImage stil() {
        QImage nu = beeld();
        int gelijk = 0;
        EXPECT_TRUE(until(
            [&] {
                const QImage dan = std::exchange(nu, beeld());
                gelijk = dan == nu ? gelijk + 1 : 0;
                return gelijk == 50;
            },
            30'000));
        return nu;
    }
    static double verschil(const QImage& een, const QImage& ander) {
        int aantal = 0;
        for (int y = 0; y < een.height(); ++y)
            for (int x = 0; x < een.width(); ++x)
                aantal += een.pixel(x, y) != ander.pixel(x, y);
        return 1.0 * aantal / (een.width() * een.height());
    }
};

TEST_F(OpHetScherm, ThePictureIsThatOfTheSceneChosenAndGreen) {
    begin({.soort = DrieSoort::tunnel});
    ASSERT_TRUE(voorbeeld().venster());
    // The picture stands in the panel's own scene.
    EXPECT_TRUE(view()->findChildren<QWindow*>().isEmpty());
    EXPECT_FALSE(beeld().isNull());
    std::vector<QImage> stille;
    for (const std::optional<DrieSoort> soort :
         {std::optional(DrieSoort::tunnel), std::optional(DrieSoort::kubus),
          std::optional(DrieSoort::logo), std::optional<DrieSoort>()}) {
        kies(soort);
        // A scene is a view of its own, where it could be drawn.
        EXPECT_EQ(inhoud()->subviews().size(), soort ? 1U : 0U);
        const auto voor = getekend();
        EXPECT_TRUE(straks([&] { return getekend() > voor + 2 && groen(beeld()) > 0.01; }));
        stille.push_back(stil());
        EXPECT_EQ(stille.back().size(), stille.front().size());
    }
    for (std::size_t i = 0; i < stille.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_GT(verschil(stille[i], stille[j]), 0.05) << i << " / " << j;
}

TEST_F(OpHetScherm, HiddenByAClickThereIsNoPictureAndNoFrame) {
    begin({.soort = DrieSoort::kubus});
    ASSERT_TRUE(straks([this] { return getekend() > 2 && groen(beeld()) > 0.01; }));
    klik(QAccessible::CheckBox, "Voorbeeld van het zwarte scherm");
    ASSERT_TRUE(until([this] { return !voorbeeld().venster(); }));
    EXPECT_EQ(voorbeeld().venster(), nullptr);
    doe(QStringLiteral("mousemove 700 700"));
    klok.advance(1.0);
    kalmeer();
    // No timer but the server's own, no picture drawn, and none to be seen.
    EXPECT_LE(klok.timerCount(), zonderPaneel);
    const int voor = beelden;
    const QImage toen = scherm->picture(scherm->screen().root);
    for (int keer = 0; keer < 100; ++keer) {
        klok.advance(0.1);
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(beelden, voor);
    EXPECT_EQ(scherm->picture(scherm->screen().root), toen);
    klik(QAccessible::CheckBox, "Voorbeeld van het zwarte scherm");
    EXPECT_TRUE(until([this] { return voorbeeld().venster(); }));
    EXPECT_TRUE(straks([this] { return groen(beeld()) > 0.01; }));
}

TEST_F(OpHetScherm, DraggingASliderLeavesTheSceneAsItIsAndWritesTwice) {
    begin({.dichtheid = 0.2, .soort = DrieSoort::kubus});
    ASSERT_TRUE(straks([this] { return getekend() > 2; }));
    const SchrijfTeller teller(map.path(), "nl.groenlicht.brixtel.bureau.conf");
    const auto eerste = inhoud();
    const auto scene = eerste->subviews().front();
    for (const char* naam : {"Dichtheid", "Snelheid"}) {
        // While time stands still: what came first, and what came last.
        sleep(naam);
        EXPECT_EQ(teller.geschreven(), 1) << naam;
        klok.advance(0.15);
        EXPECT_EQ(teller.geschreven(), 1) << naam;
        klok.advance(1.0);
        EXPECT_EQ(teller.geschreven(), 0) << naam;
    }
    EXPECT_NEAR(BureauInstellingen::lees().dichtheid, nu().keuzes.dichtheid, 1e-6);
    EXPECT_NEAR(BureauInstellingen::lees().snelheid, nu().keuzes.snelheid, 1e-6);
    EXPECT_EQ(inhoud(), eerste);
    EXPECT_EQ(inhoud()->subviews().front(), scene);
    // And it still moves.
    const auto voor = getekend();
    EXPECT_TRUE(straks([&] { return getekend() > voor + 2; }));
}

TEST_F(OpHetScherm, TheRainTakesItsSpeedAsItFallsAndIsSeldomMadeAnewForItsDensity) {
    begin({.dichtheid = 0.2});
    const auto regen = [this] { return inhoud()->layer()->sublayers().front(); };
    EXPECT_EQ(inhoud()->layer()->sublayers().size(), 1U);
    const auto eerste = regen();
    EXPECT_EQ(eerste->time().speed, 1.0);
    sleep("Snelheid");
    EXPECT_EQ(regen(), eerste);
    EXPECT_NEAR(eerste->time().speed, nu().keuzes.snelheid, 1e-6);
    EXPECT_GT(nu().keuzes.snelheid, 1.0);
    klok.advance(1.0);
    sleep("Dichtheid");
    const auto tweede = regen();
    EXPECT_NE(tweede, eerste);
    EXPECT_NEAR(tweede->time().speed, nu().keuzes.snelheid, 1e-6);
    klok.advance(0.149);
    EXPECT_EQ(regen(), tweede);
    klok.advance(0.001);
    const auto derde = regen();
    EXPECT_NE(derde, tweede);
    klok.advance(1.0);
    EXPECT_EQ(regen(), derde);
    EXPECT_EQ(inhoud()->layer()->sublayers().size(), 1U);
}

TEST_F(OpHetScherm, WhereNoSceneCanBeDrawnItRainsUntilAnotherIsChosen) {
    begin({.dichtheid = 0.9, .soort = DrieSoort::kubus});
    ASSERT_TRUE(straks([this] { return getekend() > 2; }));
    const auto scene = std::dynamic_pointer_cast<platform::SceneView>(inhoud()->subviews().front());
    ASSERT_NE(scene, nullptr);
    const QImage kubus = stil();
    scene->fail();
    EXPECT_TRUE(inhoud()->subviews().empty());
    ASSERT_EQ(inhoud()->layer()->sublayers().size(), 1U);
    EXPECT_TRUE(straks([&] { return groen(beeld()) > 0.01; }));
    EXPECT_GT(verschil(stil(), kubus), 0.05);
    // The preview shows the rain, to its density and speed.
    const auto regen = inhoud()->layer()->sublayers().front();
    sleep("Snelheid");
    EXPECT_NEAR(regen->time().speed, nu().keuzes.snelheid, 1e-6);
    kies(DrieSoort::tunnel);
    EXPECT_EQ(inhoud()->subviews().size(), 1U);
    EXPECT_TRUE(inhoud()->layer()->sublayers().empty() ||
                inhoud()->layer()->sublayers().front() != regen);
    const auto voor = getekend();
    EXPECT_TRUE(straks([&] { return getekend() > voor + 2; }));
}

// Another window may lie over a panel that is not active, and the rain lies above both.
TEST_F(OpHetScherm, TheRainLeavesThePanelFreeWhileItIsTheActiveWindow) {
    schermen[0].frame = {0, 0, 800, 800};
    begin({.voorbeeld = false});
    bureau->toonRegen();
    const auto& laag = *bureau->centrale().regen().front().venster->contentView()->layer();
    const auto isVrij = [&] { return laag.mask() != nullptr; };
    EXPECT_TRUE(isVrij());
    QWindow ander;
    ander.setGeometry(0, 0, 800, 800);
    ander.show();
    ander.requestActivate();
    ASSERT_TRUE(until([&] { return ander.isActive() && !view()->isActive(); }));
    EXPECT_TRUE(view()->isExposed());
    EXPECT_FALSE(isVrij());
    // A panel that moves below the other window stays below the rain.
    const QPoint plek = view()->position();
    view()->setPosition(plek + QPoint(10, 10));
    ASSERT_TRUE(until([&] { return view()->position() != plek; }));
    kalmeer();
    EXPECT_FALSE(isVrij());
    view()->requestActivate();
    ASSERT_TRUE(until([this] { return view()->isActive(); }));
    EXPECT_TRUE(isVrij());
    ander.hide();
    view()->close();
    EXPECT_FALSE(isVrij());
}

// Sees whether the picture was still drawn when the panel's window went.
class Afscheid : public QObject {
  public:
    Afscheid(QWindow& venster, const Voorbeeld& voorbeeld) : voorbeeld_(voorbeeld) {
        venster.installEventFilter(this);
    }
    int keren = 0;
    bool getekend = false;

  protected:
    bool eventFilter(QObject* wat, QEvent* event) override {
        if (event->type() == QEvent::PlatformSurface &&
            static_cast<QPlatformSurfaceEvent*>(event)->surfaceEventType() ==
                QPlatformSurfaceEvent::SurfaceAboutToBeDestroyed) {
            ++keren;
            getekend = getekend || voorbeeld_.venster();
        }
        return QObject::eventFilter(wat, event);
    }

  private:
    const Voorbeeld& voorbeeld_;
};

TEST_F(OpHetScherm, HoweverItIsClosedThePicturesDrawingEndsBeforeItsWindow) {
    const std::vector<std::function<void()>> manieren{
        [] { doe(QStringLiteral("key Escape")); },
        [this] {
            Bureaublad::vraagBeheer(xcb_window_t(view()->winId()), "_NET_CLOSE_WINDOW", {0, 2});
        },
        [this] { view()->hide(); }, [this] { paneel.reset(); }};
    for (const auto& sluit : manieren) {
        begin({.soort = DrieSoort::kubus});
        ASSERT_TRUE(straks([this] { return getekend() > 2; }));
        const Afscheid afscheid(*view(), voorbeeld());
        sluit();
        ASSERT_TRUE(until([this] { return !paneel || !paneel->isOpen(); }));
        EXPECT_EQ(afscheid.keren, 1);
        EXPECT_FALSE(afscheid.getekend);
    }
}

TEST_F(OpHetScherm, ClosedInTheMidstOfADragWithThePictureRunningTheLastValueIsKept) {
    begin({.dichtheid = 0.2});
    ASSERT_TRUE(straks([this] { return getekend() > 2; }));
    klok.advance(1.0);
    const QRect plek = vind(QAccessible::Slider, "Dichtheid")->rect();
    const QPoint midden = plek.center();
    doe(naar(midden) + QStringLiteral("mousedown 1 ") + naar(midden + QPoint(20, 0)).trimmed());
    ASSERT_TRUE(until([this] { return nu().keuzes.dichtheid > 0.2; }));
    const double eerste = nu().keuzes.dichtheid;
    doe(naar(midden + QPoint(60, 0)).trimmed());
    ASSERT_TRUE(until([&] { return nu().keuzes.dichtheid > eerste; }));
    EXPECT_LT(BureauInstellingen::lees().dichtheid, nu().keuzes.dichtheid - 1e-6);
    doe(QStringLiteral("key Escape"));
    ASSERT_TRUE(until([this] { return !paneel->isOpen(); }));
    EXPECT_NEAR(BureauInstellingen::lees().dichtheid, nu().keuzes.dichtheid, 1e-6);
    EXPECT_FALSE(voorbeeld().venster());
    doe(QStringLiteral("mouseup 1"));
}

// The saver's settings file, as another program finds it.
QByteArray saverBestand() {
    QFile bestand(qEnvironmentVariable("XDG_CONFIG_HOME") +
                  QStringLiteral("/nl.groenlicht.brixtel.saver.conf"));
    return bestand.open(QIODevice::ReadOnly) ? bestand.readAll() : QByteArray();
}

TEST_F(OpHetScherm, TheSaversModeIsChosenWithTheMouseAndWithKeys) {
    begin({.voorbeeld = false});
    EXPECT_EQ(SaverInstellingen::keuze(), SaverKeuze::wisselend);
    klik(QAccessible::RadioButton, "KUBUS", kSaver);
    EXPECT_TRUE(until([] { return SaverInstellingen::keuze() == SaverKeuze::kubus; }));
    EXPECT_TRUE(saverBestand().contains("keuze=kubus"));
    EXPECT_TRUE(isGekozen("KUBUS", kSaver));
    doe(QStringLiteral("key Right"));
    EXPECT_TRUE(until([] { return SaverInstellingen::keuze() == SaverKeuze::tunnel; }));
    EXPECT_TRUE(saverBestand().contains("keuze=tunnel"));
    doe(QStringLiteral("key Left Left"));
    EXPECT_TRUE(until([] { return SaverInstellingen::keuze() == SaverKeuze::bol; }));
    EXPECT_TRUE(isGekozen("BOL", kSaver));
    // The scene of the black screen is another choice.
    EXPECT_EQ(nu().keuzes.soort, std::nullopt);
}

}  // namespace

int main(int argc, char** argv) {
    return steun::draaiOpEigenScherm(
        argc, argv, {.scherm = "800x800x24", .omgeving = {{"LIBGL_ALWAYS_SOFTWARE", "1"}}},
        [](Xvfb& server, const QString&) { scherm = &server; });
}
