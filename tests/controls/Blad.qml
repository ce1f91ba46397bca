// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// One of each control, for the tests of their behaviour, and ways to look inside.
Item {
    id: blad

    property alias staat: staat
    property alias knop: knop
    property alias vink: vink
    property alias schakel: schakel
    property alias scene: scene
    property alias schuif: schuif
    property alias tweede: tweede
    property alias rij: rij
    property alias melding: melding
    property alias kaal: kaal
    property alias uitleg: uitleg
    property alias lijn: lijn

    width: 400
    height: 700

    function herstel() {
        staat.aan = false;
        staat.waarde = 0.25;
        staat.keuze = "b";
        staat.gedrukt = 0;
        tweede.waarde = 5;
        rij.open = false;
        rij.forceActiveFocus();  // which is no control
    }
    // The item of that objectName within another.
    function deel(item, naam) {
        for (let i = 0; i < item.children.length; ++i) {
            const kind = item.children[i];
            if (kind.objectName === naam) return kind;
            const verder = deel(kind, naam);
            if (verder) return verder;
        }
        return null;
    }
    // The texts that are seen within an item.
    function teksten(item) {
        let alle = [];
        for (let i = 0; i < item.children.length; ++i) {
            const kind = item.children[i];
            if (kind instanceof Text && kind.visible) alle.push(kind);
            alle = alle.concat(teksten(kind));
        }
        return alle;
    }

    QtObject {
        id: staat
        property bool aan: false
        property real waarde: 0.25
        property string keuze: "b"
        property int gedrukt: 0
    }
    Column {
        id: kolom
        x: 10
        y: 10
        width: 380
        spacing: 8

        BXKnop { id: knop; titel: "Toon nu"; onActie: ++staat.gedrukt }
        BXVinkStijl { id: vink; label: "Volg"; aan: staat.aan; onAanChanged: staat.aan = aan }
        BXSchakelStijl { id: schakel; label: "Regen"; aan: staat.aan; onAanChanged: staat.aan = aan }
        BXKeuze {
            id: scene
            opties: [{ waarde: "a", label: "Een" }, { waarde: "b", label: "Twee" }, { waarde: "c", label: "Drie" }]
            keuze: staat.keuze
            onKeuzeChanged: staat.keuze = keuze
        }
        BXSchuif {
            id: schuif
            width: parent.width
            naam: "Dichtheid"
            waarde: staat.waarde
            onWaardeChanged: staat.waarde = waarde
            tekst: BX.bxProcent(waarde)
        }
        BXSchuif { id: tweede; width: parent.width; naam: "Snelheid"; bereik: [0, 10]; stap: 1; tekst: BX.bxGetal(waarde, 0) }
        BXRij {
            id: rij
            width: parent.width
            titel: "Muziek"
            status: "stil"
            aan: staat.aan
            onAanChanged: staat.aan = aan
            onWissel: open = !open
            BXVinkStijl { objectName: "optie"; label: "Ook bij stilte" }
        }
        BXMelding { id: melding; width: parent.width; tekst: "Er is geen geluid."; knop: "Zoek"; onActie: ++staat.gedrukt }
        BXMelding { id: kaal; width: parent.width; tekst: "Er is geen geluid." }
        BXUitleg { id: uitleg; width: parent.width; tekst: "Uitleg" }
        BXLijn { id: lijn }
    }
}
