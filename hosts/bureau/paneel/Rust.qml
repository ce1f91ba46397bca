// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// The time without input after which the saver's choice comes as a black screen.
Column {
    property var paneel
    spacing: 8

    BXUitleg {
        width: parent.width
        tekst: "Zo lang zonder toets of muis, en de schermbeveiliging komt als zwart scherm."
    }
    BXSchuif {
        width: parent.width
        naam: "Minuten"
        naamBreedte: 72
        bereik: [0, paneel.langsteRust]
        stap: 1
        waarde: paneel.rust
        onBewogen: (nu) => paneel.rust = nu
        tekst: paneel.rustStatus
    }
}
