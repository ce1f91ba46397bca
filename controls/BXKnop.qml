// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// A button: "[ titel ]" in `kleur`, the other way round under the pointer.
BXDruk {
    id: knop

    property string titel
    property color kleur: BX.bx
    signal actie()

    onGedrukt: actie()
    implicitWidth: tekst.implicitWidth + 10
    implicitHeight: tekst.implicitHeight + 6

    Accessible.role: Accessible.Button
    Accessible.name: titel
    Accessible.onPressAction: druk()

    BXVlak {
        anchors.fill: parent
        kleur: knop.zweef ? knop.kleur : BX.dek(knop.kleur, 0.08)
    }
    BXTekst {
        id: tekst
        anchors { left: parent.left; right: parent.right; leftMargin: 5; rightMargin: 5; verticalCenter: parent.verticalCenter }
        text: "[ " + knop.titel + " ]"
        vet: true
        elide: Text.ElideMiddle
        color: knop.zweef ? BX.bxZwart : knop.kleur
        Accessible.ignored: true
    }
    BXFocusRand { toon: knop.toonFocus }
}
