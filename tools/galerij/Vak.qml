// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// One kind of control, under its name. Each can be taken as a picture by itself.
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
