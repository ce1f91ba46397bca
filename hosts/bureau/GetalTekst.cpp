// SPDX-License-Identifier: MIT
#include "hosts/bureau/GetalTekst.h"

#include <QLocale>

namespace brixtel {

QString procentTekst(double fractie) {
    return QString::number(qRound(fractie * 100.0)) + u'%';
}

QString keerTekst(double factor) {
    static const QLocale nederlands(QLocale::Dutch, QLocale::Netherlands);
    return nederlands.toString(factor, 'f', 1) + QStringLiteral(" ×");
}

}  // namespace brixtel
