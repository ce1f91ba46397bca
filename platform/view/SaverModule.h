// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <memory>

#include "platform/view/ScreenSaverView.h"

namespace platform {

// A saver module, as its host sees it: a Qt plugin whose metadata names, under
// "principalClass", the view to make. The host keeps that view. Main thread.
class SaverModule {
  public:
    virtual ~SaverModule() = default;

    // A new view of the class of that name; none if the module has no such
    // class. The context must outlive it.
    [[nodiscard]] virtual std::shared_ptr<ScreenSaverView> make(
        const QString& className, const QRectF& frame, bool isPreview,
        const ScreenSaverContext& context) = 0;
};

}  // namespace platform

#define BrixtelSaverModule_iid "brixtel.SaverModule/1"
Q_DECLARE_INTERFACE(platform::SaverModule, BrixtelSaverModule_iid)
