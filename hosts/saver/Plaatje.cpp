// SPDX-License-Identifier: MIT
#include "hosts/saver/Plaatje.h"

#include <QSaveFile>

#include "hosts/saver/Beeldmaker.h"

namespace brixtel {

namespace {

QString schrijf(const QImage& beeld, const QString& naam) {
    QSaveFile bestand(naam);
    const bool gelukt = bestand.open(QIODevice::WriteOnly) &&
                        beeld.convertToFormat(QImage::Format_RGB32).save(&bestand, "PNG") &&
                        bestand.commit();
    if (gelukt) return {};
    return QStringLiteral("'%1' kan niet geschreven worden").arg(naam);
}

}  // namespace

QString maakPlaatje(const Opdracht& opdracht, const ModuleLader& module) {
    Beeldmaker maker(opdracht, module);
    if (!maker.mis().isEmpty()) return maker.mis();
    const auto beeld = maker.beeld(opdracht.na);
    return beeld ? schrijf(*beeld, opdracht.plaatje) : QString(Beeldmaker::geenBeeld);
}

}  // namespace brixtel
