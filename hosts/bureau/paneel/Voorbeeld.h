// SPDX-License-Identifier: MIT
#pragma once

#include <QQuickItem>
#include <QRect>
#include <memory>
#include <optional>

#include "hosts/bureau/GedoseerdeActie.h"
#include "platform/window/PicturePlace.h"
#include "platform/window/Window.h"
#include "tafereel/Tafereel.h"

namespace brixtel {

class VoorbeeldVlak;

// A small running picture of the black screen's content, at preview quality, in the scene of
// another window. The picture exists while it is shown, and passes the mouse through. Main
// thread; server and source must outlive it.
class Voorbeeld {
  public:
    struct Inhoud {
        std::optional<DrieSoort> soort;  // none for the rain
        double dichtheid = 0.7;          // of the rain
        double snelheid = 1.0;
        friend bool operator==(const Inhoud&, const Inhoud&) = default;
    };

    Voorbeeld(platform::WindowServer& server, platform::RandomSource& toeval);
    ~Voorbeeld();
    Voorbeeld(const Voorbeeld&) = delete;
    Voorbeeld& operator=(const Voorbeeld&) = delete;

    // Shows the content at `plek` in the item, in points from the upper left corner. An
    // empty place shows nothing. Only another kind makes a new picture. The rain takes a
    // new speed while it falls, and is made anew for a new density at most every 0.15 s. A
    // scene has neither.
    void toon(QQuickItem& in, const QRect& plek, const Inhoud& inhoud);
    void weg();

    // The picture's window; null while nothing is shown.
    [[nodiscard]] const platform::Window* venster() const { return venster_.get(); }

  private:
    void vul();
    [[nodiscard]] MatrixRegenOpties regenOpties() const;
    void zetSnelheid();

    platform::WindowServer& server_;
    platform::RandomSource& toeval_;
    GedoseerdeActie andereRegen_;
    Inhoud inhoud_;
    std::unique_ptr<VoorbeeldVlak> vak_;
    std::unique_ptr<platform::Window> venster_;  // draws in it
    std::shared_ptr<platform::View> view_;
    std::unique_ptr<Tafereel> tafereel_;
};

}  // namespace brixtel
