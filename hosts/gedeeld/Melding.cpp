// SPDX-License-Identifier: MIT
#include "hosts/gedeeld/Melding.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace brixtel {

QString eenRegel(QString tekst) {
    const auto breekt = [](QChar teken) {
        // Other_Format contains the characters that reverse a terminal's writing direction.
        return teken.category() == QChar::Other_Control ||
               teken.category() == QChar::Other_Format || teken == QChar::LineSeparator ||
               teken == QChar::ParagraphSeparator;
    };
    std::replace_if(tekst.begin(), tekst.end(), breekt, QChar(u' '));
    return tekst.trimmed();
}

int meld(const QString& tekst, int uitgang) {
    std::fprintf(stderr, "%s\n", qUtf8Printable(eenRegel(tekst)));
    return uitgang;
}

QString waaromQtOpgeeft(const QString& bericht) {
    // Qt's own advice is to install the program again, which changes nothing.
    if (bericht.contains(QLatin1String("Qt platform plugin")))
        return QStringLiteral("Qt kan zijn deel voor het scherm niet openen");
    return QStringLiteral("Qt geeft het op: ") + bericht.section(u'\n', 0, 0);
}

void laatHoofddraadEindigen() {
    while (gettid() != getpid())
        pause();
}

QString schermVerbroken() {
    return QStringLiteral("het scherm verbrak de verbinding");
}

}  // namespace brixtel
