// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// A choice of one option out of several, side by side. In a wide place the
// options share the extra room; in a narrow one their labels wrap. Tab stops at
// the chosen option; the arrow keys choose its neighbour.
BXKeuzeBasis {
    id: keus

    property bool toonFocus: false

    readonly property var labels: opties.map(optie => String(optie.label ?? ""))
    // The bold width counts for regular labels too, so that nothing shifts.
    readonly property var gevraagd: labels.map(label => breed(label, vet) + 4)
    readonly property var minst: labels.map(label => woordbreed(label, vet))
    property var breedtes: []
    // Whether labels that stand so close that they read as one text are set apart: by smaller
    // letters, and by a thin line where smaller letters are not enough.
    property bool gescheiden: false
    // The size of the letters, and its metrics: the largest that leaves room between the words.
    readonly property real grootte: vet === gewoon ? 10.5 : vet === kleiner ? 10 : 9
    readonly property FontMetrics vet: !gescheiden || ruim(gewoon) ? gewoon : ruim(kleiner) ? kleiner : kleinst
    readonly property bool krap: gescheiden && breedtes.some((breed, i) => breed - gevraagd[i] < 4)

    // The inset of the first and last label from the ends, which are rounder
    // with more lines. A single line needs no inset.
    property real links: 0
    property real rechts: 0
    property real hoogste: vet.height

    // The width that the labels ask for in letters of the first size, whatever the width is.
    implicitWidth: labels.reduce((som, label) => som + breed(label, gewoon) + 4, 0)
    implicitHeight: Math.ceil(hoogste) + 8
    onWidthChanged: schik()
    onMinstChanged: schik()
    Component.onCompleted: schik()

    // A text's width. Reading the font makes a binding measure again once the font is set, since
    // advanceWidth reports no change.
    function breed(tekst, maat) { return maat.font ? Math.ceil(maat.advanceWidth(tekst)) : 0; }
    // The width of the longest word, with the label's padding.
    function woordbreed(label, maat) { return Math.max(...label.split(" ").map(woord => breed(woord, maat))) + 4; }
    function ruim(maat) { return width <= 0 || labels.reduce((som, label) => som + woordbreed(label, maat) + 4, 0) <= width; }

    function leg(af, tot) {
        links = af;
        rechts = tot;
        breedtes = verdeel(gevraagd, minst, width - af - tot);
        let hoog = vet.height;
        for (let i = 0; i < knoppen.count; ++i) hoog = Math.max(hoog, hoogte(i));
        hoogste = hoog;
    }
    function hoogte(index) { return knoppen.itemAt(index)?.hoog ?? 0; }
    // The depth of the end's curve at the label's corners, beyond the label's padding.
    function bocht(index) {
        const straal = hoogste / 2 + 4;
        const half = hoogte(index) / 2;
        return Math.max(0, Math.ceil(straal - Math.sqrt(straal * straal - half * half)) - 1);
    }
    // An inset takes width, so labels may need more lines, which need a larger
    // inset; a few rounds settle the layout.
    property bool bezig: false
    function schik() {
        if (bezig || !(width > 0)) return;
        bezig = true;
        leg(0, 0);
        for (let ronde = 0; ronde < 4 && hoogste > 1.5 * vet.height; ++ronde) {
            const af = Math.max(links, bocht(0)), tot = Math.max(rechts, bocht(labels.length - 1));
            if (af === links && tot === rechts) break;
            leg(af, tot);
        }
        bezig = false;
    }
    // An arrow key with Ctrl, Alt or Meta is not for this control.
    function pijl(toets, index) {
        toets.accepted = !(toets.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier));
        if (toets.accepted) naar(index);
    }
    function naar(index) {
        const knop = knoppen.itemAt((index + knoppen.count) % knoppen.count);
        if (!knop) return;
        knop.forceActiveFocus(Qt.TabFocusReason);
        knop.druk();
    }

    Accessible.role: Accessible.Grouping

    FontMetrics { id: gewoon; font: BX.font(10.5, true) }
    FontMetrics { id: kleiner; font: BX.font(10, true) }
    FontMetrics { id: kleinst; font: BX.font(9, true) }

    BXKeuzeVlak {
        objectName: "vlak"
        // The binding is evaluated again whenever the options are laid out anew.
        readonly property Item knop: keus.breedtes.length > 0 && keus.gekozen >= 0 ? knoppen.itemAt(keus.gekozen) : null
        anchors.fill: parent
        van: knop ? knop.x : 0
        tot: knop ? knop.x + knop.width : 0
    }
    Row {
        objectName: "rij"
        Repeater {
            id: knoppen
            model: keus.opties
            onItemAdded: keus.schik()
            delegate: BXDruk {
                id: knop
                required property int index
                required property var modelData
                readonly property bool gekozen: keus.gekozen === index
                readonly property real links: index === 0 ? keus.links : 0
                readonly property real rechts: index === keus.labels.length - 1 ? keus.rechts : 0
                readonly property real hoog: maat.implicitHeight
                onHoogChanged: keus.schik()

                width: links + (keus.breedtes[index] ?? 0) + rechts
                height: keus.height
                activeFocusOnTab: gekozen || activeFocus || (keus.gekozen < 0 && index === 0)
                onGedrukt: keus.kies(index)
                onToonFocusChanged: keus.toonFocus = toonFocus
                Keys.onLeftPressed: (toets) => keus.pijl(toets, index - 1)
                Keys.onRightPressed: (toets) => keus.pijl(toets, index + 1)

                Accessible.role: Accessible.RadioButton
                Accessible.name: keus.labels[index] ?? ""
                Accessible.focusable: true
                Accessible.checkable: true
                Accessible.checked: gekozen
                Accessible.onPressAction: druk()
                Accessible.onToggleAction: druk()

                BXVlak {
                    objectName: "scheiding"
                    visible: keus.krap && knop.index > 0 && keus.gekozen !== knop.index && keus.gekozen !== knop.index - 1
                    anchors.verticalCenter: parent.verticalCenter
                    width: 1
                    height: Math.round(parent.height / 2)
                    dun: true
                    kleur: BX.dek(BX.bxMiddel, 0.65)
                }

                component Label: BXTekst {
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.Wrap
                    grootte: keus.grootte
                    Accessible.ignored: true
                }
                // The bold height counts for every label, chosen or not.
                Label { id: maat; visible: false; width: tekst.width; text: tekst.text; vet: true }
                Label {
                    id: tekst
                    anchors { fill: parent; leftMargin: knop.links + 2; rightMargin: knop.rechts + 2 }
                    verticalAlignment: Text.AlignVCenter
                    text: keus.labels[knop.index] ?? ""
                    vet: knop.gekozen
                    color: knop.gekozen ? BX.bxZwart : BX.dek(BX.bx, 0.7)
                }
            }
        }
    }
    BXFocusRand { toon: keus.toonFocus; ronding: height / 2 }
}
