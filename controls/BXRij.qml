// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// A row with a switch, and options that can be hidden. The options exist only
// while shown.
BXRijBasis {
    id: rij

    default property Component opties

    // Whether the row has a switch; a row that is always on has none.
    property bool schakelbaar: true

    readonly property real rand: 6
    readonly property bool zweef: boven.hovered

    implicitWidth: 300
    implicitHeight: kop.height + (vak.visible ? vak.height : 0)

    Accessible.role: Accessible.Grouping
    Accessible.name: titel

    Item {
        id: kop
        width: rij.width
        height: Math.max(titelTekst.height, statusTekst.height, schakel.height) + 2 * rij.rand

        HoverHandler { id: boven }
        BXVlak {
            objectName: "achtergrond"
            anchors.fill: parent
            kleur: rij.zweef ? BX.dek(BX.bx, 0.07) : "transparent"
        }
        BXDruk {
            id: pijl
            objectName: "pijl"
            // The frame is 9 points wide; the whole corner accepts presses.
            width: rij.rand + 9 + 4
            height: parent.height
            onGedrukt: rij.wissel()

            readonly property string hulptekst: rij.open ? "Verberg de opties" : "Toon de opties"
            Accessible.role: Accessible.Button
            Accessible.name: hulptekst + " van " + rij.titel
            Accessible.onPressAction: druk()

            BXTekst {
                x: rij.rand
                width: 9
                anchors.verticalCenter: parent.verticalCenter
                horizontalAlignment: Text.AlignHCenter
                text: rij.open ? "v" : ">"
                grootte: 12
                vet: true
                Accessible.ignored: true
            }
            BXFocusRand { anchors.margins: 2; toon: pijl.toonFocus }
        }
        BXHulp { objectName: "hulp"; bij: pijl; tekst: pijl.hulptekst }
        // The title opens and closes too; the keyboard and screen readers have the button.
        MouseArea {
            objectName: "titelvlak"
            anchors { left: pijl.right; right: statusTekst.left; top: parent.top; bottom: parent.bottom }
            onClicked: rij.wissel()
        }
        BXVlak {
            objectName: "accent"
            x: rij.rand + 9 + 6
            anchors.verticalCenter: parent.verticalCenter
            width: 3
            height: 11
            kleur: rij.aan ? BX.dek(BX.bx, 0.7) : "transparent"
        }
        BXTekst {
            id: titelTekst
            anchors { left: parent.left; leftMargin: rij.rand + 9 + 6 + 3 + 5; right: statusTekst.left; rightMargin: 8; verticalCenter: parent.verticalCenter }
            text: rij.titel
            grootte: 12
            vet: true
            wrapMode: Text.Wrap
            color: rij.aan ? BX.bx : BX.bxMiddel
            Accessible.ignored: true
        }
        // A text's own implicit width is not stable while it wraps.
        TextMetrics { id: statusMaat; font: statusTekst.font; text: rij.status }
        BXTekst {
            id: statusTekst
            // An empty text would be a nameless item to a screen reader.
            visible: text !== ""
            Accessible.ignored: !visible
            anchors { right: rij.schakelbaar ? schakel.left : parent.right; rightMargin: rij.schakelbaar ? 8 : rij.rand; verticalCenter: parent.verticalCenter }
            width: Math.min(Math.ceil(statusMaat.advanceWidth), rij.width * 0.4)
            horizontalAlignment: Text.AlignRight
            text: rij.status
            grootte: 10
            wrapMode: Text.Wrap
            color: BX.dek(BX.bxWit, 0.6)
            Accessible.role: Accessible.StaticText
            Accessible.name: rij.status
        }
        BXSchakelStijl {
            id: schakel
            objectName: "schakel"
            visible: rij.schakelbaar
            anchors { right: parent.right; rightMargin: rij.rand; verticalCenter: parent.verticalCenter }
            label: rij.titel
            aan: rij.aan
            onGewisseld: (stand) => rij.schakel(stand)
        }
    }
    Item {
        id: vak
        y: kop.height
        width: rij.width
        height: lader.height + 12
        visible: rij.open && rij.opties !== null

        BXVlak {
            objectName: "lijn"
            x: rij.rand + 4
            width: 1
            height: parent.height
            dun: true
            kleur: BX.bxMiddel
        }
        Loader {
            id: lader
            x: rij.rand + 9 + 6
            y: 6
            width: rij.width - x - rij.rand
            active: vak.visible
            sourceComponent: rij.opties
        }
    }
}
