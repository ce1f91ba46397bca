// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// A rule over the width there is.
BXVlak {
    width: parent ? parent.width : implicitWidth
    implicitHeight: 1
    height: 1
    dun: true
    kleur: BX.bxDonker
}
