// SPDX-License-Identifier: MIT
#pragma once

#include <QPluginLoader>
#include <QString>
#include <memory>

#include "platform/view/SaverModule.h"

namespace brixtel {

// Loads the saver module and makes views of its principal class, by name, as
// any host does. Keeps the module loaded while it lives.
class ModuleLader {
  public:
    // The module that lies beside the program's own libraries.
    ModuleLader();

    // Whether it is there and names a principal class that it knows.
    [[nodiscard]] bool isGeladen() const { return module_ != nullptr; }

    [[nodiscard]] std::shared_ptr<platform::ScreenSaverView> maak(
        const QRectF& frame, bool voorvertoning, const platform::ScreenSaverContext& context) const;

  private:
    QPluginLoader lader_;
    platform::SaverModule* module_ = nullptr;  // the plugin's, which the loader owns
    QString klasse_;
};

}  // namespace brixtel
