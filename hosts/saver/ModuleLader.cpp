// SPDX-License-Identifier: MIT
#include "hosts/saver/ModuleLader.h"

#include <dlfcn.h>

#include <QFileInfo>
#include <QJsonObject>

namespace brixtel {

namespace {

QString moduleBestand() {
    Dl_info info{};
    dladdr(reinterpret_cast<const void*>(&moduleBestand), &info);
    const QFileInfo eigen(QFile::decodeName(info.dli_fname));
    return eigen.absolutePath() + QStringLiteral("/BrixtelSaver.so");
}

}  // namespace

ModuleLader::ModuleLader() : lader_(moduleBestand()) {
    const QJsonObject meta = lader_.metaData().value(QLatin1String("MetaData")).toObject();
    klasse_ = meta.value(QLatin1String("principalClass")).toString();
    if (!klasse_.isEmpty()) module_ = qobject_cast<platform::SaverModule*>(lader_.instance());
}

std::shared_ptr<platform::ScreenSaverView> ModuleLader::maak(
    const QRectF& frame, bool voorvertoning, const platform::ScreenSaverContext& context) const {
    return module_->make(klasse_, frame, voorvertoning, context);
}

}  // namespace brixtel
