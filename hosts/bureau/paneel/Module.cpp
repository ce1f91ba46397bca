// SPDX-License-Identifier: MIT
#include <QObject>

#include "hosts/bureau/PaneelModule.h"
#include "hosts/bureau/paneel/PaneelVenster.h"

namespace brixtel {

class Paneel final : public QObject, public PaneelModule {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID BrixtelPaneelModule_iid)
    Q_INTERFACES(brixtel::PaneelModule)

  public:
    std::unique_ptr<BureauPaneel> maak(const PaneelBronnen& bronnen) override {
        return std::make_unique<PaneelVenster>(bronnen);
    }
};

}  // namespace brixtel

#include "Module.moc"
