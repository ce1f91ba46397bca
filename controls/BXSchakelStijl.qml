// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// A toggle that looks like a switch. The label is not shown; assistive
// technology reads it.
BXTweestand {
    id: schakel

    readonly property int duur: 120
    // Eases out: begins at full speed and comes to rest.
    readonly property list<real> uitlopend: [0, 0, 0.58, 1, 1, 1]

    implicitWidth: 34
    implicitHeight: 16

    // Assistive technology is told of what is shown alone.
    Accessible.ignored: !visible
    Accessible.role: Accessible.CheckBox
    Accessible.name: label
    Accessible.description: aan ? "aan" : "uit"
    Accessible.checkable: true
    Accessible.checked: aan
    Accessible.onPressAction: druk()
    Accessible.onToggleAction: druk()

    component Kleurverloop: Behavior {
        ColorAnimation { duration: schakel.duur; easing.type: Easing.BezierSpline; easing.bezierCurve: schakel.uitlopend }
    }

    Item {
        width: 34
        height: 16
        anchors.centerIn: parent

        BXVlak {
            objectName: "baan"
            anchors.fill: parent
            kleur: BX.dek(BX.bx, schakel.aan ? 0.22 : 0)
            rand: schakel.aan ? BX.bx : BX.bxDonker
            Kleurverloop on kleur {}
            Kleurverloop on rand {}
        }
        BXVlak {
            objectName: "knop"
            x: schakel.aan ? parent.width - width - 2.5 : 2.5
            y: 2.5
            width: 13
            height: 11
            kleur: BX.bxDonker
            Behavior on x {
                NumberAnimation { duration: schakel.duur; easing.type: Easing.BezierSpline; easing.bezierCurve: schakel.uitlopend }
            }
            // The light behind the knob.
            BXVlak {
                objectName: "licht"
                anchors.fill: parent
                kleur: BX.dek(BX.bx, schakel.aan ? 0.9 : 0)
                Kleurverloop on kleur {}
            }
        }
        BXFocusRand { toon: schakel.toonFocus }
    }
}
