// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// The help text of `bij`, shown below the item after the pointer has rested there.
Item {
    id: hulp

    property BXDruk bij
    property string tekst
    readonly property Item blad: bij && bij.Window.window ? bij.Window.window.contentItem : null

    readonly property bool aangewezen: bij !== null && bij.zweef

    visible: false
    onAangewezenChanged: {
        vak.visible = false;
        if (aangewezen) wacht.restart();
        else wacht.stop();
    }

    // Opens below the control, or above it where there is no room.
    function toon() {
        const plek = bij.mapToItem(blad, 0, bij.height + 4);
        vak.x = Math.max(0, Math.min(plek.x, blad.width - vak.width));
        vak.y = plek.y + vak.height > blad.height ? plek.y - bij.height - 8 - vak.height : plek.y;
        vak.visible = true;
    }

    Timer { id: wacht; interval: 700; onTriggered: hulp.toon() }
    BXVlak {
        id: vak
        parent: hulp.blad
        z: 1000
        visible: false
        width: woorden.implicitWidth + 10
        height: woorden.implicitHeight + 6
        kleur: BX.bxZwart
        rand: BX.bxMiddel
        BXTekst {
            id: woorden
            anchors.centerIn: parent
            text: hulp.tekst
            grootte: 10
            color: BX.bxWit
            Accessible.ignored: true
        }
    }
}
