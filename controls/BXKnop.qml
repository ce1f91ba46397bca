// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// A button: "[ titel ]" in `kleur`, inverted under the pointer. The title wraps
// in a narrow button.
BXDruk {
    id: knop

    property string titel
    property color kleur: BX.bx
    signal actie()

    // On several lines, each bracket stays with the word beside it.
    readonly property string wit: width - 10 < regel.advanceWidth - 0.5 ? "\u00a0" : " "

    onGedrukt: actie()
    implicitWidth: regel.advanceWidth + 10
    implicitHeight: tekst.implicitHeight + 6

    // Assistive technology is told of what is shown alone.
    Accessible.ignored: !visible
    Accessible.role: Accessible.Button
    Accessible.name: titel
    Accessible.onPressAction: druk()

    TextMetrics { id: regel; font: tekst.font; text: "[ " + knop.titel + " ]" }
    BXVlak {
        objectName: "vlak"
        anchors.fill: parent
        kleur: knop.zweef ? knop.kleur : BX.dek(knop.kleur, 0.08)
    }
    BXTekst {
        id: tekst
        anchors { left: parent.left; right: parent.right; leftMargin: 5; rightMargin: 5; verticalCenter: parent.verticalCenter }
        text: "[" + knop.wit + knop.titel + knop.wit + "]"
        vet: true
        wrapMode: Text.Wrap
        color: knop.zweef ? BX.bxZwart : knop.kleur
        Accessible.ignored: true
    }
    BXFocusRand { toon: knop.toonFocus }
}
