// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "hosts/saver/HostView.h"
#include "hosts/saver/InstellingenProces.h"
#include "hosts/saver/ModuleLader.h"
#include "hosts/saver/Opdracht.h"
#include "platform/render/WorkBudget.h"
#include "platform/time/Timer.h"
#include "platform/window/Screen.h"
#include "platform/window/Window.h"

namespace brixtel {

// The running saver: its windows, each with a started view of the module's. The command
// determines the windows. Views in the program's own windows start again when a lock of the
// desktop ends; a host itself restarts the saver in its window. Dropping the object stops the
// views and then takes the windows down. Main thread.
class Voorstelling {
  public:
    // `bus` is the session bus's address, for the sheet.
    Voorstelling(const Opdracht& opdracht, const ModuleLader& module,
                 platform::WindowServer& server, const platform::ScreenSaverContext& context,
                 const QString& bus);
    ~Voorstelling();
    Voorstelling(const Voorstelling&) = delete;
    Voorstelling& operator=(const Voorstelling&) = delete;

    // Sets the action for the saver's own end: input, the end of a host's window, or a window
    // that the user closes. The action may be called more than once.
    void onEinde(std::function<void()> actie) { onEinde_ = std::move(actie); }

    // Stops every view and starts it with the choice that is stored now.
    void begin();

    // Whether the host's window did not exist at the start.
    [[nodiscard]] bool zonderVenster() const { return zonderVenster_; }

    // The statistics of the first window, the main screen's.
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
    // Moves the view into a window of that style, in a later turn of the event loop.
    void straksAls(platform::WindowStyle stijl);
    void maakVenster(Doek& doek, platform::WindowStyle stijl, const QRectF& frame);
    // Names the window after the scene that shows.
    void volgTitel(Doek& doek);
    void toonBijGastheer();
    void vul(Doek& doek, const QRectF& vlak, bool voorvertoning);
    // Keeps the program to what a window of this size may take.
    void begrens(QSizeF maat);
    // Does so at every change of the view's size, in a later turn of the event loop.
    void volgMaat(HostView& view);
    void toonInstellingen(const platform::Window& bij);
    void bladIsOpen(bool open);
    void neemKeuze(const QString& keuze);
    void einde();

    const Opdracht opdracht_;
    const ModuleLader& module_;
    platform::WindowServer& server_;
    const platform::ScreenSaverContext context_;
    std::function<void()> onEinde_;
    bool zonderVenster_ = false;
    std::optional<platform::WorkBudget::Options> grens_;  // what the window server holds
    QString titel_;          // of the program's own window; the desktop adds the program's name
    bool volledig_ = false;  // the program's own window fills the screen
    QRectF eigenFrame_;      // the own window's frame outside full screen
    std::shared_ptr<Voorstelling*> zelf_ = std::make_shared<Voorstelling*>(this);
    std::vector<Doek> doeken_;
    InstellingenProces instellingen_;
    platform::Timer herstartKlok_;
    std::unique_ptr<platform::ScreenObserver> schermen_;
};

}  // namespace brixtel
