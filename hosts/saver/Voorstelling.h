// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "hosts/gedeeld/InstellingenProces.h"
#include "hosts/saver/HostView.h"
#include "hosts/saver/ModuleLader.h"
#include "hosts/saver/Opdracht.h"
#include "platform/time/Timer.h"
#include "platform/window/Screen.h"
#include "platform/window/Window.h"

namespace brixtel {

// The saver at work: its windows, each with a view of the module's, started. Views in
// windows of the program's own start again once a lock of the desktop has gone; for those
// in a host's window the host decides.
// Where they are follows from the command. Dropping it stops the views and takes
// the windows down, in that order. Main thread.
class Voorstelling {
  public:
    // `bus` is the session bus's address, for the sheet.
    Voorstelling(const Opdracht& opdracht, const ModuleLader& module,
                 platform::WindowServer& server, const platform::ScreenSaverContext& context,
                 const QString& bus);
    ~Voorstelling();
    Voorstelling(const Voorstelling&) = delete;
    Voorstelling& operator=(const Voorstelling&) = delete;

    // Called when it is over by itself: input that ends it, the host's window
    // gone, the user closing the window. May be called more than once.
    void onEinde(std::function<void()> actie) { onEinde_ = std::move(actie); }

    // Every view stops and starts, with the choice as it is stored now.
    void begin();

    // Of the first window: the main screen's.
    [[nodiscard]] platform::WindowStatistics stand() const;

  private:
    struct Doek {
        platform::Screen scherm;
        std::unique_ptr<platform::Window> venster;
        std::shared_ptr<HostView> view;
    };
    void volgSchermen();
    void toonOp(const platform::Screen& scherm);
    void toonVenster();
    void toonBijGastheer();
    void vul(Doek& doek, const QRectF& vlak, bool voorvertoning);
    void toonInstellingen(const platform::Window& bij);
    void bladIsOpen(bool open);
    void neemKeuze(const QString& keuze);
    void einde();

    const Opdracht opdracht_;
    const ModuleLader& module_;
    platform::WindowServer& server_;
    const platform::ScreenSaverContext context_;
    std::function<void()> onEinde_;
    std::vector<Doek> doeken_;
    InstellingenProces instellingen_;
    platform::Timer opnieuw_;
    std::unique_ptr<platform::ScreenObserver> schermen_;
};

}  // namespace brixtel
