// SPDX-License-Identifier: MIT
#pragma once

#include <QPluginLoader>
#include <QString>
#include <memory>

#include "platform/view/SaverModule.h"

namespace brixtel {

// Loads the saver module and makes views of its principal class by name, as any host does.
// The module stays loaded for the loader's lifetime.
class ModuleLader {
  public:
    // Loads the module beside the program's own libraries.
    ModuleLader();

    // Whether the module was found and names a principal class that it knows.
    [[nodiscard]] bool isGeladen() const { return module_ != nullptr; }

    [[nodiscard]] std::shared_ptr<platform::ScreenSaverView> maak(
        const QRectF& frame, bool voorvertoning, const platform::ScreenSaverContext& context) const;

  private:
    QPluginLoader lader_;
    platform::SaverModule* module_ = nullptr;  // owned by the plugin, which the loader owns
    QString klasse_;
};

}  // namespace brixtel
