// SPDX-License-Identifier: MIT
#include "hosts/saver/PngBestand.h"

#include <QBuffer>

#include "hosts/gedeeld/Uitvoer.h"

namespace brixtel {

QString schrijfPng(const QImage& beeld, const QString& naam) {
    QBuffer bytes;
    if (!bytes.open(QIODevice::WriteOnly) || !beeld.save(&bytes, "PNG"))
        return QStringLiteral("er is geen geheugen voor zo'n beeld");
    return schrijfBestand(naam, bytes.data());
}

}  // namespace brixtel
