// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// A choice of one out of several, side by side. Wider than it asks for, its
// options share the room; narrower, their labels are cut. Tab stops at the option
// chosen; the arrows go to the next and choose it.
BXKeuzeBasis {
    id: keus

    // Keeps the first and the last label off the rounded ends.
    readonly property real eind: 5
    readonly property real over: width - rij.gevraagd - 2 * eind
    property bool toonFocus: false

    implicitWidth: rij.gevraagd + 2 * eind
    implicitHeight: maat.implicitHeight + 8

    function naar(index) {
        const knop = knoppen.itemAt((index + knoppen.count) % knoppen.count);
        if (!knop) return;
        knop.forceActiveFocus(Qt.TabFocusReason);
        knop.druk();
    }

    Accessible.role: Accessible.Grouping

    BXTekst { id: maat; visible: false; grootte: 10.5; text: " "; Accessible.ignored: true }

    BXKeuzeVlak {
        objectName: "vlak"
        // Asks again whenever the options are measured anew.
        readonly property Item knop: rij.gevraagd > 0 && keus.gekozen >= 0 ? knoppen.itemAt(keus.gekozen) : null
        anchors.fill: parent
        van: knop ? knop.x : 0
        tot: knop ? knop.x + knop.width : 0
    }
    Row {
        id: rij
        property real gevraagd: 0
        function meet() {
            let som = 0;
            for (let i = 0; i < knoppen.count; ++i) som += knoppen.itemAt(i)?.gevraagd ?? 0;
            gevraagd = som;
        }
        Repeater {
            id: knoppen
            model: keus.opties
            onCountChanged: rij.meet()
            delegate: BXDruk {
                id: knop
                required property int index
                required property var modelData
                readonly property bool gekozen: keus.gekozen === index
                readonly property real links: index === 0 ? keus.eind : 0
                readonly property real rechts: index === knoppen.count - 1 ? keus.eind : 0
                // As wide in bold as in regular, so that nothing shifts.
                readonly property real gevraagd: Math.ceil(vette.advanceWidth) + 4
                onGevraagdChanged: rij.meet()
                Component.onCompleted: rij.meet()

                width: links + rechts + gevraagd + (keus.over < 0 ? keus.over * gevraagd / rij.gevraagd : keus.over / knoppen.count)
                height: keus.height
                activeFocusOnTab: gekozen || activeFocus || (keus.gekozen < 0 && index === 0)
                onGedrukt: keus.kies(index)
                onToonFocusChanged: keus.toonFocus = toonFocus
                Keys.onLeftPressed: keus.naar(index - 1)
                Keys.onRightPressed: keus.naar(index + 1)

                Accessible.role: Accessible.RadioButton
                Accessible.name: modelData.label
                Accessible.checkable: true
                Accessible.checked: gekozen
                Accessible.onPressAction: druk()
                Accessible.onToggleAction: druk()

                TextMetrics { id: vette; font: BX.font(10.5, true); text: knop.modelData.label }
                BXTekst {
                    anchors { fill: parent; leftMargin: knop.links + 2; rightMargin: knop.rechts + 2 }
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    elide: Text.ElideRight
                    text: knop.modelData.label
                    grootte: 10.5
                    vet: knop.gekozen
                    color: knop.gekozen ? BX.bxZwart : BX.dek(BX.bx, 0.7)
                    Accessible.ignored: true
                }
            }
        }
    }
    BXFocusRand { toon: keus.toonFocus; ronding: height / 2 }
}
