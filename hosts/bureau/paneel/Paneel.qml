// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// The settings, with a running picture of the chosen scene above them.
Rectangle {
    id: blad

    property var paneel
    readonly property real rand: 12
    // Lines longer than this are hard to read: a wide window has room at both sides.
    readonly property real breed: Math.min(width - 2 * rand, 560)
    readonly property real kant: Math.round((width - breed) / 2)
    // Where the picture stands in the window; empty where there is no room for it.
    readonly property rect plek: beeld.visible ? Qt.rect(beeld.x + 1, beeld.y + 1, beeld.width - 2, beeld.height - 2) : Qt.rect(0, 0, 0, 0)

    color: BX.bxZwart
    Accessible.role: Accessible.Pane
    Accessible.name: "Instellingen"

    Shortcut { sequences: ["Escape"]; onActivated: blad.paneel.sluit() }

    Shortcut { sequences: ["PgDown"]; onActivated: blad.blader(1) }
    Shortcut { sequences: ["PgUp"]; onActivated: blad.blader(-1) }
    function blader(kant) {
        rol.contentY = Math.max(0, Math.min(rol.contentY + kant * rol.height * 0.9, rol.contentHeight - rol.height));
    }

    // Scrolls an item of the rows into sight. Of an item that is higher than the room, the
    // upper part is in sight.
    function schuif(wat) {
        const y = wat.mapToItem(rol.contentItem, 0, 0).y;
        const onder = Math.min(y + wat.height + 6, rol.contentHeight) - rol.height;
        rol.contentY = Math.max(0, Math.min(Math.max(rol.contentY, onder), y - 6));
    }
    // The last row stands at the lower edge, and the answer to a click on it stands below it.
    function schuifMelding(melding) {
        rijen.forceLayout();
        schuif(melding);
    }
    // Scrolls the control with keyboard focus into sight. A control that was pressed is in
    // sight already, and must not move while the pointer holds it.
    function toon(wat) {
        if (wat?.toonFocus === false) return;
        for (let boven = wat; boven; boven = boven.parent)
            if (boven === rijen) {
                schuif(wat);
                return;
            }
    }
    // Opens or closes a row. The last rows open below the edge, so that an opened row scrolls.
    function wissel(rij) {
        rij.open = !rij.open;
        rijen.forceLayout();
        if (rij.open) schuif(rij);
    }
    Connections {
        target: blad.Window.window
        function onActiveFocusItemChanged() { blad.toon(blad.Window.activeFocusItem); }
    }

    BXVlak {
        id: beeld
        x: blad.kant
        y: blad.rand
        width: blad.breed
        height: Math.round(Math.min(width * 9 / 16, blad.height * 0.24))
        visible: blad.paneel.voorbeeld && height >= 90
        rand: BX.dek(BX.bxMiddel, 0.65)
    }
    BXVinkStijl {
        id: vink
        x: blad.kant
        y: beeld.visible ? beeld.y + beeld.height + 8 : blad.rand
        width: blad.breed
        label: "Voorbeeld van het zwarte scherm"
        aan: blad.paneel.voorbeeld
        onGewisseld: (nu) => blad.paneel.voorbeeld = nu
    }
    BXLijn { id: streep; x: blad.kant; y: vink.y + vink.height + 8; width: blad.breed }

    Flickable {
        id: rol
        objectName: "rol"
        anchors { left: parent.left; right: parent.right; top: streep.bottom; bottom: parent.bottom }
        contentWidth: width
        contentHeight: rijen.height + 2 * rijen.y
        boundsBehavior: Flickable.StopAtBounds
        clip: true

        Column {
            id: rijen
            x: blad.kant
            y: 6
            width: blad.breed
            spacing: 4

            BXRij {
                id: regenRij
                width: parent.width
                titel: "Regen over het bureaublad"
                status: blad.paneel.regenStatus
                aan: blad.paneel.regen
                onGewisseld: (nu) => blad.paneel.regen = nu
                open: true
                onWissel: blad.wissel(regenRij)
                Regen { width: parent.width; paneel: blad.paneel }
            }
            BXMelding {
                objectName: "regenMelding"
                width: parent.width
                visible: tekst !== ""
                tekst: blad.paneel.regenMelding
            }
            BXRij {
                id: zwartRij
                width: parent.width
                titel: "Zwart scherm"
                status: blad.paneel.zwartStatus
                aan: blad.paneel.zwart
                onGewisseld: (nu) => blad.paneel.zwart = nu
                open: true
                onWissel: blad.wissel(zwartRij)
                Zwart { width: parent.width; paneel: blad.paneel }
            }
            BXRij {
                id: muziekRij
                width: parent.width
                titel: "Muziek volgen"
                status: blad.paneel.muziek ? "aan" : "uit"
                aan: blad.paneel.muziek
                onGewisseld: (nu) => blad.paneel.muziek = nu
                open: true
                onWissel: blad.wissel(muziekRij)
                Muziek { width: parent.width; paneel: blad.paneel }
            }
            BXMelding {
                objectName: "geluidMelding"
                width: parent.width
                visible: blad.paneel.zonderGeluid
                tekst: "Er is geen geluidsserver, dus er is geen muziek om te volgen. Zodra er een is, gaat het vanzelf."
            }
            BXRij {
                id: saverRij
                width: parent.width
                titel: "Schermbeveiliging"
                status: blad.paneel.saver
                aan: true
                schakelbaar: false
                open: true
                onWissel: blad.wissel(saverRij)
                Saver { width: parent.width; paneel: blad.paneel }
            }
            BXRij {
                id: rustRij
                width: parent.width
                titel: "Na rust"
                status: blad.paneel.rustStatus
                aan: true
                schakelbaar: false
                open: false
                onWissel: blad.wissel(rustRij)
                Rust { width: parent.width; paneel: blad.paneel }
            }
            BXMelding {
                objectName: "rustMelding"
                width: parent.width
                visible: tekst !== ""
                tekst: blad.paneel.rustMelding
            }
            BXRij {
                id: brixtelRij
                width: parent.width
                titel: "Brixtel"
                status: blad.paneel.autostart ? "start mee" : "start niet mee"
                aan: true
                schakelbaar: false
                open: false
                onWissel: blad.wissel(brixtelRij)
                Algemeen { width: parent.width; paneel: blad.paneel }
            }
            BXMelding {
                id: startMelding
                objectName: "autostartMelding"
                width: parent.width
                visible: tekst !== ""
                tekst: blad.paneel.autostartMelding
                // The notice gets its height after it is shown.
                property bool nieuw: false
                onVisibleChanged: {
                    nieuw = visible;
                    if (visible) blad.schuifMelding(startMelding);
                }
                onHeightChanged: {
                    if (nieuw) blad.schuifMelding(startMelding);
                    nieuw = false;
                }
            }
        }
    }
    BXVlak {
        objectName: "schuifbalk"
        visible: rol.contentHeight > rol.height
        x: blad.width - 6
        y: rol.y + rol.visibleArea.yPosition * rol.height
        width: 3
        height: Math.max(12, rol.visibleArea.heightRatio * rol.height)
        kleur: BX.dek(BX.bxMiddel, 0.65)
    }
}
