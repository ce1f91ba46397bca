// SPDX-License-Identifier: MIT
#include "hosts/bureau/PaneelModule.h"

#include <dlfcn.h>

#include <QFile>
#include <QFileInfo>
#include <QPluginLoader>

namespace brixtel {

PaneelModule* PaneelModule::laad() {
    static PaneelModule* const module = [] {
        Dl_info info{};
        dladdr(reinterpret_cast<const void*>(&PaneelModule::laad), &info);
        const QFileInfo eigen(QFile::decodeName(info.dli_fname));
        QPluginLoader lader(eigen.absolutePath() + QStringLiteral("/BrixtelPaneel.so"));
        return qobject_cast<PaneelModule*>(lader.instance());
    }();
    return module;
}

QString PaneelModule::toon(std::unique_ptr<BureauPaneel>& paneel, const PaneelBronnen& bronnen) {
    if (!paneel) {
        PaneelModule* const module = laad();
        if (!module) return QStringLiteral("de module BrixtelPaneel.so ontbreekt");
        paneel = module->maak(bronnen);
    }
    if (paneel->toon()) return {};
    return QStringLiteral("het paneel is niet te tonen: modules van Qt Quick ontbreken");
}

}  // namespace brixtel
