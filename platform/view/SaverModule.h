// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <memory>

#include "platform/view/ScreenSaverView.h"

namespace platform {

// A saver module as its host sees it: a Qt plugin. The plugin's metadata names the class of
// its view under "principalClass". The host owns the views. Main thread.
class SaverModule {
  public:
    virtual ~SaverModule() = default;

    // Makes a view of the named class; null if the module has no such class. The context
    // outlives the view.
    [[nodiscard]] virtual std::shared_ptr<ScreenSaverView> make(
        const QString& className, const QRectF& frame, bool isPreview,
        const ScreenSaverContext& context) = 0;
};

}  // namespace platform

#define BrixtelSaverModule_iid "brixtel.SaverModule/1"
Q_DECLARE_INTERFACE(platform::SaverModule, BrixtelSaverModule_iid)
