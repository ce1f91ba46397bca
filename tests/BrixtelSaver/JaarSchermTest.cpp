// SPDX-License-Identifier: MIT
// Minutes unattended on a real X server, on a clock that runs 200 times as fast as
// the pictures: the server keeps no more for the saver at the end than at the start.
#include <xcb/res.h>

#include <QCoreApplication>
#include <cstdlib>
#include <map>
#include <thread>

#include "platform/window/Window.h"
#include "tests/BrixtelSaver/SaverOpstelling.h"
#include "tests/support/WindowSystems.h"
#include "tests/support/Xvfb.h"

namespace {

using brixtel::alleKeuzes;
using steun::SaverKeuze;

constexpr double kBeeld = 200.0 / 60.0;  // seconds of the clock between two pictures
constexpr int kVooraf = 30;              // pictures until the window has all its buffers
constexpr int kBeelden = 100;

template <class T>
using Antwoord = std::unique_ptr<T, decltype(&std::free)>;

// The resources of all clients of the server.
struct Bewaard {
    std::map<std::uint32_t, std::uint32_t> aantallen;  // by the resource's type
    std::uint64_t beeldpunten = 0;                     // bytes of pixmaps

    bool operator==(const Bewaard&) const = default;

    static Bewaard bij(xcb_connection_t* lijn) {
        Bewaard alles;
        const Antwoord<xcb_res_query_clients_reply_t> klanten(
            xcb_res_query_clients_reply(lijn, xcb_res_query_clients(lijn), nullptr), &std::free);
        if (!klanten) return alles;
        auto klant = xcb_res_query_clients_clients_iterator(klanten.get());
        for (; klant.rem > 0; xcb_res_client_next(&klant))
            alles.tel(lijn, klant.data->resource_base);
        return alles;
    }

  private:
    void tel(xcb_connection_t* lijn, std::uint32_t klant) {
        const Antwoord<xcb_res_query_client_resources_reply_t> soorten(
            xcb_res_query_client_resources_reply(lijn, xcb_res_query_client_resources(lijn, klant),
                                                 nullptr),
            &std::free);
        if (!soorten) return;
        auto soort = xcb_res_query_client_resources_types_iterator(soorten.get());
        for (; soort.rem > 0; xcb_res_type_next(&soort))
            aantallen[soort.data->resource_type] += soort.data->count;
        const Antwoord<xcb_res_query_client_pixmap_bytes_reply_t> bytes(
            xcb_res_query_client_pixmap_bytes_reply(
                lijn, xcb_res_query_client_pixmap_bytes(lijn, klant), nullptr),
            &std::free);
        if (bytes) beeldpunten += bytes->bytes;
    }
};

class JaarOpHetScherm : public steun::SaverView, public testing::WithParamInterface<SaverKeuze> {
  protected:
    const Xvfb x{"640x480x24"};
    platform::WindowServer server{
        klok, {.drawer = platform::DrawerChoice::Cpu, .system = systemOn(klok, x.display())}};

    // Whether the saver's next picture came on the screen. The clock stands still while a
    // picture is drawn.
    bool beeld(platform::Window& venster) {
        const auto eerst = venster.statistics().frames;
        const auto kwam = [&] { return venster.statistics().frames > eerst; };
        klok.advance(kBeeld);
        for (int slagen = 0; slagen < 600 && !kwam(); ++slagen) {
            for (int i = 0; i < 1000 && !kwam(); ++i) {
                QCoreApplication::processEvents();
                std::this_thread::yield();
            }
            klok.advance(1.0 / 60.0);
        }
        return kwam();
    }
};

TEST_P(JaarOpHetScherm, TheServerKeepsNoMore) {
    ASSERT_TRUE(x.isRunning());
    const xcb_window_t id = x.makeWindow({.width = 300, .height = 200});
    platform::Window venster(server, hostRef(id));
    const auto view = gestart(GetParam());
    venster.setContentView(view);
    // Each scene has been there, and the window's buffers with it.
    for (int i = 0; i < kVooraf; ++i)
        ASSERT_TRUE(beeld(venster));
    const Bewaard eerst = Bewaard::bij(x.connection());
    ASSERT_FALSE(eerst.aantallen.empty()) << "the server tells what it keeps";
    for (int i = 0; i < kBeelden; ++i)
        ASSERT_TRUE(beeld(venster));
    EXPECT_EQ(Bewaard::bij(x.connection()).aantallen, eerst.aantallen);
    EXPECT_EQ(Bewaard::bij(x.connection()).beeldpunten, eerst.beeldpunten);
    view->stopAnimation();
}

INSTANTIATE_TEST_SUITE_P(Keuzes, JaarOpHetScherm, testing::ValuesIn(alleKeuzes),
                         [](const auto& keuze) { return ruweWaarde(keuze.param).toStdString(); });

// A pixmap that nobody frees is seen.
TEST(WatDeServerBewaart, OnePixmapMoreIsSeen) {
    const Xvfb x("640x480x24");
    ASSERT_TRUE(x.isRunning());
    const Bewaard eerst = Bewaard::bij(x.connection());
    xcb_create_pixmap(x.connection(), 24, xcb_generate_id(x.connection()), x.screen().root, 8, 8);
    const Bewaard later = Bewaard::bij(x.connection());
    EXPECT_NE(later.aantallen, eerst.aantallen);
    EXPECT_GT(later.beeldpunten, eerst.beeldpunten);
}

}  // namespace
