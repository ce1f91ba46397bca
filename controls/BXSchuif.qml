// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// A slider made of bars, between its name and its value.
BXSchuifBasis {
    id: schuif

    readonly property real tussen: 8
    readonly property real tekstBreedte: 46

    implicitWidth: naamBreedte + 2 * tussen + tekstBreedte + 124
    implicitHeight: Math.max(naamTekst.height, baan.height, waardeTekst.height)

    // Qt counts in what has a role here; BXWaarde gives the rest.
    Accessible.role: Accessible.Slider
    Accessible.name: naam
    // With a modifier a key is for others.
    Keys.onPressed: (toets) => {
        if (toets.modifiers & ~Qt.KeypadModifier) return;
        if (toets.key === Qt.Key_Home) kies(minimumValue);
        else if (toets.key === Qt.Key_End) kies(maximumValue);
        else return;
        toets.accepted = true;
    }

    BXTekst {
        id: naamTekst
        anchors.verticalCenter: parent.verticalCenter
        width: schuif.naamBreedte
        text: schuif.naam
        vet: schuif.actief
        wrapMode: Text.Wrap
        color: BX.dek(BX.bxWit, 0.9)
        Accessible.ignored: true
    }
    BXVlak {
        id: baan
        objectName: "baan"
        x: schuif.naamBreedte + schuif.tussen
        anchors.verticalCenter: parent.verticalCenter
        width: balken.width + 4
        height: balken.height + 4
        rand: schuif.actief ? BX.dek(BX.bx, 0.9) : "transparent"

        BXBalken {
            id: balken
            objectName: "balken"
            // The width equals that of the bars, so that the outline fits on both sides.
            x: 2
            y: 2
            width: implicitWidth
            height: 11
            aantal: schuif.balken(schuif.width - baan.x - 4 - schuif.tussen - schuif.tekstBreedte)
            // The function reads the range itself, so the binding must name the range too.
            gevuld: { schuif.bereik; return schuif.gevuld(schuif.waarde, aantal); }
        }
        MouseArea {
            anchors.fill: parent
            preventStealing: true
            // The steps smaller than a notch, added up; a notch is one step.
            property int rest: 0
            onWheel: (wiel) => {
                rest += wiel.angleDelta.y;
                const stappen = Math.trunc(rest / 120);
                rest -= 120 * stappen;
                if (stappen !== 0) schuif.verzet(stappen);
            }
            // A track without bars has no positions.
            function sleep(x) {
                if (balken.aantal > 0) schuif.sleep((x - balken.x) / balken.width);
            }
            onPressed: (muis) => { schuif.forceActiveFocus(Qt.MouseFocusReason); sleep(muis.x); }
            onPositionChanged: (muis) => sleep(muis.x)
        }
    }
    BXTekst {
        id: waardeTekst
        anchors { right: parent.right; verticalCenter: parent.verticalCenter }
        width: schuif.tekstBreedte
        horizontalAlignment: Text.AlignRight
        text: schuif.tekst
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }
}
