// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// The flash on a beat, and the meter of the music's loudness and beats.
Column {
    property var paneel
    spacing: 8

    BXUitleg {
        width: parent.width
        tekst: "Het zwarte scherm beweegt op de maat van wat er klinkt. Zonder microfoon, en er wordt niets bewaard."
    }
    Item {
        width: parent.width
        height: Math.max(flitsLabel.height, flits.height)

        BXTekst {
            id: flitsLabel
            anchors.verticalCenter: parent.verticalCenter
            width: 72
            text: "Flits"
            color: BX.dek(BX.bxWit, 0.9)
            Accessible.ignored: true
        }
        BXKeuze {
            id: flits
            x: 72 + 8
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - x
            opties: paneel.flitsen
            keuze: paneel.flits
            onGewisseld: (nu) => paneel.flits = nu
            Accessible.name: "Flits op de maat"
        }
    }
    Item {
        id: regel
        width: parent.width
        height: Math.max(label.height, meter.height)
        // The dimmest at which its texts can be read.
        opacity: paneel.muziek ? 1 : 0.8

        BXTekst {
            id: label
            anchors.verticalCenter: parent.verticalCenter
            width: 72
            text: "Niveau"
            color: BX.dek(BX.bxWit, 0.9)
            Accessible.ignored: true
        }
        BXMeter {
            id: meter
            objectName: "niveau"
            x: 72 + 8 + 2
            anchors.verticalCenter: parent.verticalCenter
            width: implicitWidth
            height: 11
            // Each bar takes four points; the row ends before the text at the right.
            aantal: Math.max(4, Math.floor((maat.x - 10 - x) / 4))
            waarde: paneel.niveau
            naam: "Niveau"
            tekst: BX.bxProcent(paneel.niveau)
            Accessible.role: Accessible.ProgressBar
        }
        BXTekst {
            id: maat
            anchors { right: lamp.left; rightMargin: 6; verticalCenter: parent.verticalCenter }
            text: "maat"
            grootte: 10
            color: BX.bxMiddel
            Accessible.ignored: true
        }
        BXMeter {
            id: lamp
            objectName: "maat"
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            width: implicitWidth
            height: 11
            aantal: 3
            lamp: true
            waarde: paneel.slag ? 1 : 0
            naam: "Maat"
            tekst: paneel.slag ? "aan" : "uit"
            Accessible.role: Accessible.Graphic
        }
    }
}
