// SPDX-License-Identifier: MIT
#include "hosts/bureau/Autostart.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include "hosts/gedeeld/Uitvoer.h"

namespace brixtel {

namespace {

QString map() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/autostart");
}

QString bestand() {
    return map() + QStringLiteral("/nl.groenlicht.brixtel.bureau.desktop");
}

// Any text as a string of the file.
QString ontsnapt(QString woord) {
    return woord.replace(u'\\', QStringLiteral("\\\\"));
}

// Any text as a word of an Exec line.
QString aangehaald(QString woord) {
    for (const char teken : {'\\', '"', '`', '$'})
        woord.replace(QLatin1Char(teken), QStringLiteral("\\") + QLatin1Char(teken));
    // The line is itself a string, in which a backslash is written twice.
    woord.replace(u'\\', QStringLiteral("\\\\"));
    return u'"' + woord.replace(u'%', QStringLiteral("%%")) + u'"';
}

}  // namespace

bool Autostart::isAan() {
    return QFile::exists(bestand());
}

QString Autostart::zet(bool aan, const QString& programma) {
    if (!aan) {
        if (!isAan() || QFile::remove(bestand())) return {};
        return QStringLiteral("'%1' is niet te verwijderen").arg(bestand());
    }
    const QString tekst =
        QStringLiteral(
            "[Desktop Entry]\nType=Application\nName=Brixtel\n"
            "Comment=Effects over the desktop\nComment[nl]=Effecten over het bureaublad\n"
            "TryExec=%2\nExec=%1 "
            "--dienst\nIcon=brixtel-saver\nTerminal=false\nX-GNOME-Autostart-Delay=2\n")
            .arg(aangehaald(programma), ontsnapt(programma));
    QDir().mkpath(map());
    return schrijfBestand(bestand(), tekst.toUtf8());
}

}  // namespace brixtel
