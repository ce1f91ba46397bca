// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// The choice of the black screen's scene.
Column {
    property var paneel
    spacing: 8

    BXUitleg {
        width: parent.width
        tekst: "Op elk scherm, tot een toets, klik of muisbeweging."
    }
    BXKeuze {
        width: parent.width
        opties: paneel.soorten
        gescheiden: true
        keuze: paneel.soort
        onGewisseld: (nu) => paneel.soort = nu
        Accessible.name: "Scène van het zwarte scherm"
    }
    BXUitleg { objectName: "soortUitleg"; width: parent.width; tekst: paneel.soortUitleg }
    BXKnop {
        width: Math.min(implicitWidth, parent.width)
        titel: "Toon nu"
        onActie: paneel.zwart = true
    }
}
