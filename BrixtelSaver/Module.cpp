// SPDX-License-Identifier: MIT
#include <QObject>

#include "BrixtelSaver/BrixtelSaver.h"
#include "platform/view/SaverModule.h"

namespace brixtel {

class Module final : public QObject, public platform::SaverModule {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID BrixtelSaverModule_iid FILE "module.json")
    Q_INTERFACES(platform::SaverModule)

  public:
    std::shared_ptr<platform::ScreenSaverView> make(
        const QString& className, const QRectF& frame, bool isPreview,
        const platform::ScreenSaverContext& context) override {
        if (className != QLatin1String("BrixtelSaverView")) return nullptr;
        return std::make_shared<BrixtelSaverView>(frame, isPreview, context);
    }
};

}  // namespace brixtel

#include "Module.moc"
