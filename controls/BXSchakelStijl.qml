// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// A toggle that looks like a switch. Its label is not shown, but named to
// assistive technology.
BXTweestand {
    id: schakel

    readonly property int duur: 120

    implicitWidth: 34
    implicitHeight: 16

    Accessible.role: Accessible.CheckBox
    Accessible.name: label
    Accessible.description: aan ? "aan" : "uit"
    Accessible.checkable: true
    Accessible.checked: aan
    Accessible.onPressAction: druk()
    Accessible.onToggleAction: druk()

    component Verloop: Behavior {
        ColorAnimation { duration: schakel.duur; easing.type: Easing.BezierSpline; easing.bezierCurve: [0, 0, 0.58, 1, 1, 1] }
    }

    Item {
        width: 34
        height: 16
        anchors.centerIn: parent

        BXVlak {
            objectName: "baan"
            anchors.fill: parent
            kleur: schakel.aan ? BX.dek(BX.bx, 0.22) : BX.dek(BX.bx, 0)
            rand: schakel.aan ? BX.dek(BX.bx, 0.9) : BX.bxDonker
            Verloop on kleur {}
            Verloop on rand {}
        }
        BXVlak {
            objectName: "knop"
            x: schakel.aan ? parent.width - width - 2.5 : 2.5
            y: 2.5
            width: 13
            height: 11
            kleur: schakel.aan ? BX.bx : BX.bxDonker
            Verloop on kleur {}
            Behavior on x {
                NumberAnimation { duration: schakel.duur; easing.type: Easing.BezierSpline; easing.bezierCurve: [0, 0, 0.58, 1, 1, 1] }
            }
        }
        BXFocusRand { toon: schakel.toonFocus }
    }
}
