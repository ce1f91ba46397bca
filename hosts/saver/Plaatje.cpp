// SPDX-License-Identifier: MIT
#include "hosts/saver/Plaatje.h"

#include "hosts/saver/Beeldmaker.h"
#include "hosts/saver/PngBestand.h"

namespace brixtel {

QString maakPlaatje(const Opdracht& opdracht, const ModuleLader& module) {
    Beeldmaker maker(opdracht, module);
    if (!maker.mis().isEmpty()) return maker.mis();
    const auto beeld = maker.plaatje();
    if (!beeld) return Beeldmaker::geenBeeld;
    return schrijfPng(beeld->convertToFormat(QImage::Format_RGB32), opdracht.plaatje);
}

}  // namespace brixtel
