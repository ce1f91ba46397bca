// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// The settings of the program as a whole.
Column {
    property var paneel
    spacing: 8

    BXVinkStijl {
        width: parent.width
        label: "Start bij het aanmelden"
        aan: paneel.autostart
        onGewisseld: (nu) => paneel.autostart = nu
    }
    BXKnop {
        width: Math.min(implicitWidth, parent.width)
        titel: "Standaard"
        onActie: paneel.zetStandaard()
    }
}
