// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// Every control of the kit in every state.
Rectangle {
    id: blad

    implicitWidth: 760
    implicitHeight: Math.max(links.height, rechts.height) + 32
    color: BX.bxZwart

    // The 3D scenes, as { waarde, label }.
    required property var scenes

    readonly property var standen: [
        { waarde: "nooit", label: "Nooit" }, { waarde: "half", label: "Half uur" }, { waarde: "uur", label: "Heel uur" }
    ]

    readonly property var tijden: [
        { waarde: "nooit", label: "Nooit vanzelf" }, { waarde: "tien", label: "Na tien minuten" },
        { waarde: "uur", label: "Na een half uur zonder toetsen" }
    ]

    Column {
        id: links
        x: 16
        y: 16
        width: 340
        spacing: 20

        Vak {
            naam: "BXKnop"
            Staat { naam: "gewoon"; BXKnop { titel: "Toon nu" } }
            Staat { naam: "zweef"; BXKnop { objectName: "zweef"; titel: "Toon nu" } }
            Staat { naam: "focus"; BXKnop { objectName: "focus"; titel: "Toon nu" } }
            Staat { naam: "kleur"; BXKnop { titel: "Stop de regen"; kleur: BX.bxOranje } }
            Staat { naam: "met zweef"; BXKnop { objectName: "zweef"; titel: "Stop de regen"; kleur: BX.bxOranje } }
            Staat { naam: "met focus"; BXKnop { objectName: "focus"; titel: "Stop de regen"; kleur: BX.bxOranje } }
            Staat { naam: "lang"; vol: true; BXKnop { titel: "Open de instellingen van de schermbeveiliging" } }
        }
        Vak {
            naam: "BXSchakelStijl"
            Staat { naam: "uit"; BXSchakelStijl { label: "Regen" } }
            Staat { naam: "aan"; BXSchakelStijl { label: "Regen"; aan: true } }
            Staat { naam: "uit, focus"; BXSchakelStijl { objectName: "focus"; label: "Regen" } }
            Staat { naam: "aan, focus"; BXSchakelStijl { objectName: "focus"; label: "Regen"; aan: true } }
        }
        Vak {
            naam: "BXVinkStijl"
            Staat { naam: "uit"; BXVinkStijl { label: "Volg de muziek" } }
            Staat { naam: "aan"; BXVinkStijl { label: "Volg de muziek"; aan: true } }
            Staat { naam: "focus"; BXVinkStijl { objectName: "focus"; label: "Volg de muziek"; aan: true } }
            Staat { naam: "lang"; vol: true; BXVinkStijl { label: "Laat het scherm zwart zodra er een half uur lang niemand iets heeft gedaan" } }
        }
        Vak {
            naam: "BXKeuze"
            Staat { naam: "eerste"; BXKeuze { opties: blad.scenes; keuze: "bol" } }
            Staat { naam: "midden"; BXKeuze { opties: blad.scenes; keuze: blad.scenes[2].waarde } }
            Staat { naam: "laatste"; BXKeuze { opties: blad.scenes; keuze: "logo" } }
            Staat { naam: "geen"; BXKeuze { opties: blad.scenes } }
            Staat { naam: "focus"; BXKeuze { opties: blad.scenes; keuze: blad.scenes[1].waarde; toonFocus: true } }
            Staat { naam: "ruim"; vol: true; BXKeuze { opties: blad.scenes; keuze: blad.scenes[1].waarde } }
            Staat { naam: "krap"; BXKeuze { opties: blad.standen; keuze: "half"; width: 150 } }
            Staat { naam: "lang"; vol: true; BXKeuze { opties: blad.tijden; keuze: "nooit" } }
        }
        Vak {
            naam: "BX"
            Row {
                spacing: 6
                Repeater {
                    model: [BX.bx, BX.bxMiddel, BX.bxDonker, BX.bxWit, BX.bxZwart, BX.bxOranje, BX.bxCijfer]
                    delegate: BXVlak { required property color modelData; width: 24; height: 16; kleur: modelData; rand: BX.bxDonker }
                }
            }
        }
    }
    Column {
        id: rechts
        anchors { right: parent.right; rightMargin: 16 }
        y: 16
        width: 360
        spacing: 20

        Vak {
            naam: "BXSchuif"
            BXSchuif { width: parent.width; naam: "ondergrens"; waarde: 0; tekst: BX.bxProcent(waarde) }
            BXSchuif { width: parent.width; naam: "midden"; waarde: 0.256; tekst: BX.bxProcent(waarde) }
            BXSchuif { width: parent.width; naam: "bovengrens"; waarde: 1; tekst: BX.bxProcent(waarde) }
            BXSchuif { width: parent.width; objectName: "schuiffocus"; naam: "focus"; waarde: 12.5; bereik: [0, 20]; tekst: BX.bxGetal(waarde, 1) }
            BXSchuif { width: parent.width; naam: "Snelheid van de regen"; waarde: 0.7; tekst: BX.bxProcent(waarde) }
            BXSchuif { width: parent.width; naam: "Overgang"; waarde: 0.4; tekst: "heel snel" }
        }
        Vak {
            naam: "BXRij"
            spacing: 2
            BXRij { width: parent.width; titel: "Regen"; status: "uit"; onWissel: open = !open }
            BXRij { width: parent.width; objectName: "wijsaan"; titel: "Zwart scherm"; status: "na 10 minuten"; aan: true; onWissel: open = !open }
            BXRij {
                width: parent.width
                titel: "Muziek"
                status: "volgt de muziek"
                aan: true
                open: true
                onWissel: open = !open
                Column {
                    spacing: 8
                    BXUitleg { width: parent.width; tekst: "De regen valt op de maat." }
                    BXSchuif { width: parent.width; naam: "Gevoelig"; naamBreedte: 72; waarde: 0.6; tekst: BX.bxProcent(waarde) }
                    BXVinkStijl { label: "Ook bij stilte"; aan: true }
                }
            }
            BXRij {
                width: parent.width
                titel: "Open en uit"
                status: "stil"
                open: true
                onWissel: open = !open
                BXVinkStijl { label: "Ook bij stilte" }
            }
            BXRij { width: parent.width; objectName: "focus pijl"; titel: "Focus op de pijl"; status: "uit"; onWissel: open = !open }
            BXRij { width: parent.width; objectName: "focus schakel"; titel: "Focus op de schakelaar"; aan: true; status: "aan"; onWissel: open = !open }
            BXRij { width: parent.width; titel: "Zonder schakelaar"; status: "Wereldbol"; aan: true; schakelbaar: false; onWissel: open = !open }
            BXRij { width: parent.width; titel: "Een titel die te lang is voor één regel in dit paneel"; status: "en een toestand die dat ook is"; onWissel: open = !open }
            BXRij { width: parent.width; objectName: "hulp"; titel: "Met hulp bij de pijl"; status: "uit"; onWissel: open = !open }
            // Room for the help text.
            Item { width: 1; height: 20 }
        }
        Vak {
            naam: "BXMelding"
            BXMelding { width: parent.width; tekst: "Er is geen geluid om te volgen." }
            BXMelding { width: parent.width; tekst: "Dit bureaublad toont geen doorzichtige vensters. Zonder die kan de regen niet over uw werk vallen."; knop: "Hoe kan dat wel?" }
            BXMelding { width: parent.width; objectName: "zweef druk"; tekst: "Met de muis op de knop."; knop: "Hoe kan dat wel?" }
            BXMelding { width: parent.width; objectName: "focus druk"; tekst: "Met het toetsenbord op de knop."; knop: "Hoe kan dat wel?" }
        }
        Vak {
            naam: "BXUitleg"
            BXUitleg { width: parent.width; tekst: "De regen valt over alle vensters heen. U kunt er doorheen klikken, en met elke toets gaat hij gewoon door." }
        }
        Vak {
            naam: "BXLijn"
            BXLijn {}
        }
    }
}
