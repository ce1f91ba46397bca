// SPDX-License-Identifier: MIT
#include "hosts/gedeeld/Uitvoer.h"

#include <QFile>
#include <QFileInfo>
#include <cerrno>

#include "hosts/gedeeld/Melding.h"
#include "hosts/gedeeld/Reden.h"
#include "platform/files/OutputFile.h"
#include "platform/files/StandardOutput.h"
#include "platform/session/Preferences.h"

namespace brixtel {

QString schrijfBestand(const QString& naam, const QByteArray& bytes) {
    const int fout =
        platform::replaceFile(QFile::encodeName(naam).toStdString(),
                              {bytes.constData(), static_cast<std::size_t>(bytes.size())});
    return fout == 0 ? QString() : nietTeSchrijven(naam, fout);
}

QString nietTeSchrijven(const QString& naam, int fout) {
    const QString map = QFileInfo(naam).path();
    if (fout == ENOENT && !QFileInfo::exists(map))
        return QStringLiteral("'%1' kan niet geschreven worden: de map '%2' is er niet")
            .arg(naam, map);
    return QStringLiteral("'%1' kan niet geschreven worden: %2").arg(naam, reden(fout));
}

QString drukAf(const QByteArray& tekst) {
    const int fout =
        platform::printOut({tekst.constData(), static_cast<std::size_t>(tekst.size())});
    if (fout == 0) return {};
    return QStringLiteral("de uitvoer is niet te schrijven: ") + reden(fout);
}

void meldInstellingen(const QString& programma, const QString& module) {
    QString pad;
    const int fout = platform::Preferences::problem(module, pad);
    if (fout == 0) return;
    meld(QStringLiteral("%1: de instellingen in '%2' zijn niet te lezen, dus gelden de "
                        "gewone: %3")
             .arg(programma, pad, reden(fout)),
         0);
}

}  // namespace brixtel
