// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// A toggle that looks like a check box, with "[x]" before its label.
BXTweestand {
    id: vink

    implicitWidth: hok.implicitWidth + tekst.anchors.leftMargin + tekst.implicitWidth
    implicitHeight: Math.max(hok.implicitHeight, tekst.height)

    // Assistive technology is told of what is shown alone.
    Accessible.ignored: !visible
    Accessible.role: Accessible.CheckBox
    Accessible.name: label
    Accessible.description: aan ? "aan" : "uit"
    Accessible.checkable: true
    Accessible.checked: aan
    Accessible.onPressAction: druk()
    Accessible.onToggleAction: druk()

    BXTekst {
        id: hok
        anchors.verticalCenter: parent.verticalCenter
        text: vink.aan ? "[x]" : "[ ]"
        vet: true
        color: vink.aan ? BX.bx : BX.bxMiddel
        Accessible.ignored: true
    }
    BXTekst {
        id: tekst
        anchors { left: hok.right; leftMargin: 6; right: parent.right; verticalCenter: parent.verticalCenter }
        text: vink.label
        wrapMode: Text.Wrap
        color: BX.dek(BX.bxWit, 0.9)
        Accessible.ignored: true
    }
    BXFocusRand { anchors { leftMargin: -3; rightMargin: -3 } toon: vink.toonFocus }
}
