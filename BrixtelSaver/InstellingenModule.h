// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QtPlugin>
#include <functional>
#include <memory>

#include "BrixtelSaver/SaverKeuze.h"
#include "platform/view/Sheet.h"

namespace brixtel {

// The configuration sheet with the widget library that it is built of, in a
// plugin of its own: a saver at work never needs it, and loads nothing of it.
// Main thread.
class InstellingenModule {
  public:
    virtual ~InstellingenModule() = default;

    // The one in which sheets can be made, for a program that shows them.
    [[nodiscard]] virtual std::unique_ptr<QCoreApplication> maakToepassing(int& argc,
                                                                           char** argv) = 0;
    // None in a program whose application is of another kind.
    [[nodiscard]] virtual std::shared_ptr<platform::Sheet> maak(
        std::function<void(SaverKeuze)> klaar) = 0;

    // Loads it at the first call, from beside the module's own file; it stays
    // loaded. None if it is not there.
    static InstellingenModule* laad();
};

}  // namespace brixtel

#define BrixtelInstellingenModule_iid "brixtel.InstellingenModule/1"
Q_DECLARE_INTERFACE(brixtel::InstellingenModule, BrixtelInstellingenModule_iid)
