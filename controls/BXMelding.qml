// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// A notice, with a button where the user can act on it.
BXVlak {
    id: melding

    property string tekst
    property string knop
    signal actie()

    implicitWidth: Math.max(woorden.implicitWidth, druk.visible ? druk.implicitWidth : 0) + 16
    implicitHeight: inhoud.height + 16
    ronding: 6
    rand: BX.dek(BX.bxOranje, 0.7)

    // Assistive technology is told of what is shown alone.
    Accessible.ignored: !visible
    Accessible.role: Accessible.AlertMessage
    Accessible.name: tekst

    Column {
        id: inhoud
        x: 8
        y: 8
        width: melding.width - 16
        spacing: 6

        BXTekst {
            id: woorden
            width: parent.width
            text: melding.tekst
            grootte: 10.5
            color: BX.bxOranje
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
        BXKnop {
            id: druk
            objectName: "druk"
            width: Math.min(implicitWidth, parent.width)
            visible: melding.knop !== ""
            titel: melding.knop
            kleur: BX.bxOranje
            onActie: melding.actie()
        }
    }
}
