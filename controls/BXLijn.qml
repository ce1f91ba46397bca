// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// A rule across the available width.
BXVlak {
    width: parent ? parent.width : implicitWidth
    implicitHeight: 1
    height: 1
    dun: true
    kleur: BX.bxDonker
}
