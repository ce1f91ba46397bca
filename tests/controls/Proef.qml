// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// One of each control, for a client of assistive technology.
Column {
    width: 400
    spacing: 8

    BXKnop { id: knop; property int keren: 0; titel: "Toon nu"; onActie: ++keren }
    BXUitleg { tekst: knop.keren + " keer gedrukt" }
    BXSchakelStijl { label: "Regen" }
    BXVinkStijl { label: "Ook bij stilte"; aan: true }
    BXKeuze { opties: [{ waarde: 1, label: "Bol" }, { waarde: 2, label: "Kubus" }]; keuze: 1 }
    BXSchuif { width: parent.width; naam: "Dichtheid"; bereik: [0, 2]; waarde: 0.5; tekst: BX.bxProcent(waarde / 2) }
    BXRij {
        width: parent.width
        titel: "Muziek"
        status: "stil"
        onWissel: open = !open
        BXSchuif { naam: "Gevoelig"; tekst: BX.bxGetal(waarde, 1) }
    }
    BXMelding { width: parent.width; tekst: "Er is geen geluid."; knop: "Zoek" }
}
