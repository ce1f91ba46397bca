// SPDX-License-Identifier: MIT
#include <QApplication>

#include "BrixtelSaver/InstellingenModule.h"
#include "BrixtelSaver/InstellingenVenster.h"

namespace brixtel {

class Instellingen final : public QObject, public InstellingenModule {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID BrixtelInstellingenModule_iid)
    Q_INTERFACES(brixtel::InstellingenModule)

  public:
    std::unique_ptr<QCoreApplication> maakToepassing(int& argc, char** argv) override {
        return std::make_unique<QApplication>(argc, argv);
    }
    std::shared_ptr<platform::Sheet> maak(std::function<void(SaverKeuze)> klaar) override {
        if (!qobject_cast<QApplication*>(QCoreApplication::instance())) return nullptr;
        return std::make_shared<InstellingenVenster>(std::move(klaar));
    }
};

}  // namespace brixtel

#include "Instellingen.moc"
