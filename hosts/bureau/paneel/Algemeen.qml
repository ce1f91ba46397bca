// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// The settings of the program as a whole, side by side where there is room.
Flow {
    property var paneel
    spacing: 8

    BXVinkStijl {
        objectName: "bijAanmelden"
        width: Math.min(Math.max(implicitWidth, parent.width - standaard.implicitWidth - parent.spacing), parent.width)
        height: Math.max(implicitHeight, standaard.implicitHeight)
        label: "Start bij het aanmelden"
        aan: paneel.autostart
        onGewisseld: (nu) => paneel.autostart = nu
    }
    BXKnop {
        id: standaard
        width: Math.min(implicitWidth, parent.width)
        titel: "Standaard"
        onActie: paneel.zetStandaard()
    }
}
