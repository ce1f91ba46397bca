// SPDX-License-Identifier: MIT
#include "hosts/gedeeld/Opsomming.h"

namespace brixtel {

namespace {
constexpr qsizetype kBreedte = 79;  // columns
}

QString opsomming(const QStringList& woorden, QLatin1String voegwoord) {
    if (woorden.size() < 2) return woorden.join(QString());
    return woorden.mid(0, woorden.size() - 1).join(QStringLiteral(", ")) + u' ' + voegwoord + u' ' +
           woorden.last();
}

QString vouw(const QString& tekst, int inspringing) {
    QString klaar;
    qsizetype kolom = inspringing;
    for (const QString& woord : tekst.split(u' ')) {
        if (!klaar.isEmpty() && kolom + 1 + woord.size() > kBreedte) {
            klaar += u'\n' + QString(inspringing, u' ');
            kolom = inspringing;
        } else if (!klaar.isEmpty()) {
            klaar += u' ';
            ++kolom;
        }
        klaar += woord;
        kolom += woord.size();
    }
    return klaar;
}

}  // namespace brixtel
