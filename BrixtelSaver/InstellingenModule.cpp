// SPDX-License-Identifier: MIT
#include "BrixtelSaver/InstellingenModule.h"

#include <dlfcn.h>

#include <QFile>
#include <QFileInfo>
#include <QPluginLoader>

namespace brixtel {

InstellingenModule* InstellingenModule::laad() {
    static InstellingenModule* const module = [] {
        Dl_info info{};
        dladdr(reinterpret_cast<const void*>(&InstellingenModule::laad), &info);
        const QFileInfo eigen(QFile::decodeName(info.dli_fname));
        QPluginLoader lader(eigen.absolutePath() + QStringLiteral("/BrixtelInstellingen.so"));
        return qobject_cast<InstellingenModule*>(lader.instance());
    }();
    return module;
}

}  // namespace brixtel
