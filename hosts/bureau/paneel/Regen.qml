// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// The settings of the rain, over the desktop and on the black screen.
Column {
    property var paneel
    spacing: 8

    BXUitleg {
        width: parent.width
        tekst: "Over alle vensters heen; klikken gaat er doorheen."
    }
    BXSchuif {
        width: parent.width
        naam: "Dichtheid"
        naamBreedte: 72
        stap: 0.05
        waarde: paneel.dichtheid
        onBewogen: (nu) => paneel.dichtheid = nu
        tekst: BX.bxProcent(waarde)
    }
    BXSchuif {
        width: parent.width
        naam: "Snelheid"
        naamBreedte: 72
        bereik: [paneel.langzaamst, paneel.snelst]
        stap: 0.1
        waarde: paneel.snelheid
        onBewogen: (nu) => paneel.snelheid = nu
        tekst: BX.bxGetal(waarde, 1) + " ×"
    }
}
