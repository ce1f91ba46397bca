// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// The mark around the item that has the keyboard, just outside the item.
BXVlak {
    property bool toon: false

    anchors { fill: parent; margins: -2 }
    rand: toon ? BX.dek(BX.bx, 0.9) : "transparent"
}
