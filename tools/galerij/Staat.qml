// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// One state of a control, beside the state's name. Shows `zweef` and `focus`
// without a pointer and a keyboard.
Item {
    id: staat

    property string naam
    property bool vol: false  // as wide as there is room for
    default property alias inhoud: plek.data
    readonly property Item wat: plek.children.length > 0 ? plek.children[0] : null

    width: parent ? parent.width : 0
    height: wat ? Math.max(wat.height, etiket.height) : 0

    BXTekst {
        id: etiket
        anchors.verticalCenter: parent.verticalCenter
        text: staat.naam
        grootte: 10
        color: BX.bxMiddel
    }
    Item {
        id: plek
        x: 76
        width: staat.width - x
        height: staat.height
    }
    Binding {
        target: staat.wat
        property: "width"
        value: plek.width
        when: staat.vol
    }
}
