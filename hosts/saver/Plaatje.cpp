// SPDX-License-Identifier: MIT
#include "hosts/saver/Plaatje.h"

#include <QFile>

#include "hosts/gedeeld/Uitvoer.h"
#include "hosts/saver/Beeldmaker.h"
#include "hosts/saver/PngBestand.h"
#include "platform/files/OutputFile.h"

namespace brixtel {

QString maakPlaatje(const Opdracht& opdracht, const ModuleLader& module) {
    // A large picture takes seconds, and a file that cannot be written is known beforehand.
    if (const int fout =
            platform::mayReplaceFile(QFile::encodeName(opdracht.plaatje).toStdString());
        fout != 0)
        return nietTeSchrijven(opdracht.plaatje, fout);
    Beeldmaker maker(opdracht, module);
    if (!maker.mis().isEmpty()) return maker.mis();
    const auto beeld = maker.plaatje();
    if (!beeld) return Beeldmaker::geenBeeld;
    return schrijfPng(beeld->convertToFormat(QImage::Format_RGB32), opdracht.plaatje);
}

}  // namespace brixtel
