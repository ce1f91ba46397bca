// SPDX-License-Identifier: MIT
#include "hosts/bureau/Autostart.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>

#include "hosts/gedeeld/Uitvoer.h"
#include "platform/files/InputFile.h"
#include "platform/session/ConfigurationFolder.h"

namespace brixtel {

namespace {

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

// Whether the text is an entry that starts its program. Desktops write either key to switch an
// entry off; of a key that comes twice the last counts.
bool isStart(const QByteArray& tekst) {
    bool inGroep = false, isIngang = false, verborgen = false, gebruikt = true;
    for (const QByteArray& ruw : tekst.split('\n')) {
        const QByteArray regel = ruw.trimmed();
        if (regel.startsWith('[')) inGroep = regel == "[Desktop Entry]";
        isIngang = isIngang || inGroep;
        const auto is = regel.indexOf('=');
        if (!inGroep || is < 0) continue;
        const QByteArray sleutel = regel.left(is).trimmed(), waarde = regel.mid(is + 1).trimmed();
        if (sleutel == "Hidden") verborgen = waarde == "true" || waarde == "1";
        if (sleutel == "X-GNOME-Autostart-enabled") gebruikt = waarde != "false" && waarde != "0";
    }
    return isIngang && !verborgen && gebruikt;
}

}  // namespace

QString Autostart::bestand() {
    const QString map = platform::configurationFolder();
    if (map.isEmpty()) return {};
    return map + QStringLiteral("/autostart/nl.groenlicht.brixtel.bureau.desktop");
}

bool Autostart::isAan() {
    const platform::FileContent gelezen =
        platform::readRegularFile(QFile::encodeName(bestand()).toStdString(), kGrootste);
    if (gelezen.error == EFBIG) return true;
    return gelezen.error == 0 && isStart(QByteArray::fromStdString(gelezen.bytes));
}

QString Autostart::zet(bool aan, const QString& programma) {
    if (bestand().isEmpty())
        return aan ? QStringLiteral("de thuismap is niet bekend: HOME is leeg") : QString();
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
    QDir().mkpath(QFileInfo(bestand()).path());
    return schrijfBestand(bestand(), tekst.toUtf8());
}

}  // namespace brixtel
