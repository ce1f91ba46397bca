// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QtPlugin>
#include <functional>
#include <memory>

#include "BrixtelSaver/SaverKeuze.h"
#include "platform/view/Sheet.h"

namespace brixtel {

// The configuration sheet and its widget library, in a plugin of its own: a running saver
// never loads it. Main thread.
class InstellingenModule {
  public:
    virtual ~InstellingenModule() = default;

    // The application in which sheets can be made, for a program that shows them.
    [[nodiscard]] virtual std::unique_ptr<QCoreApplication> maakToepassing(int& argc,
                                                                           char** argv) = 0;
    // Makes the sheet; none in a program with an application of another kind.
    [[nodiscard]] virtual std::shared_ptr<platform::Sheet> maak(
        std::function<void(SaverKeuze)> klaar) = 0;

    // Loads the plugin at the first call, from beside the module's own file; the plugin
    // stays loaded. None where the file is absent.
    static InstellingenModule* laad();
};

}  // namespace brixtel

#define BrixtelInstellingenModule_iid "brixtel.InstellingenModule/1"
Q_DECLARE_INTERFACE(brixtel::InstellingenModule, BrixtelInstellingenModule_iid)
