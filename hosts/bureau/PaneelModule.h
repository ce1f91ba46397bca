// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QtPlugin>
#include <memory>

#include "hosts/bureau/Bureau.h"

namespace brixtel {

// What the panel stands on; all of it must outlive it.
struct PaneelBronnen {
    Bureau& bureau;
    platform::WindowServer& server;
    platform::RandomSource& toeval;
    QString bus;  // the session bus's address, for the programs that it starts
};

// The window with the settings. Main thread.
class BureauPaneel {
  public:
    virtual ~BureauPaneel() = default;

    // Opens it, or brings it to the front. The user closes it.
    virtual void toon() = 0;
    [[nodiscard]] virtual bool isOpen() const = 0;
};

// The panel with Qt Quick that it is built of, in a plugin of its own: an owner
// that only shows its effects never needs it, and loads nothing of it. Main thread.
class PaneelModule {
  public:
    virtual ~PaneelModule() = default;
    [[nodiscard]] virtual std::unique_ptr<BureauPaneel> maak(const PaneelBronnen& bronnen) = 0;

    // Loads it at the first call, from beside the program's own libraries; it stays
    // loaded. None if it is not there.
    static PaneelModule* laad();

    // Shows the panel, made first where there is none. Returns what went wrong;
    // empty if nothing did.
    static QString toon(std::unique_ptr<BureauPaneel>& paneel, const PaneelBronnen& bronnen);
};

}  // namespace brixtel

#define BrixtelPaneelModule_iid "brixtel.PaneelModule/1"
Q_DECLARE_INTERFACE(brixtel::PaneelModule, BrixtelPaneelModule_iid)
