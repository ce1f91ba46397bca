// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// One kind of control, under its name. A picture can be taken of each kind.
Column {
    property string naam

    objectName: "vak"
    width: parent ? parent.width : 0
    spacing: 8

    BXTekst {
        text: parent.naam
        vet: true
        color: BX.bxCijfer
    }
}
