// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Brixtel.Controls

// Long Dutch texts in little room: they wrap, what holds them grows, and nothing is
// cut or lies over anything else.
Item {
    width: 400
    height: 1400

    readonly property string lang: "Schermbeveiligingsinstellingen die zonder tussenkomst van de gebruiker worden bijgewerkt"

    Blad { id: hulp; visible: false }

    Column {
        id: kolom
        width: 300
        spacing: 4

        BXKnop { id: knop; width: Math.min(implicitWidth, parent.width); titel: lang }
        BXKnop { id: kort; titel: "Toon nu" }
        BXSchakelStijl { label: lang }
        BXVinkStijl { id: vink; width: parent.width; label: lang }
        BXKeuze {
            id: tijden
            width: parent.width
            opties: [
                { waarde: 1, label: "Nooit vanzelf" }, { waarde: 2, label: "Na een half uur zonder toetsen" },
                { waarde: 3, label: "Alleen bij stilte" }
            ]
            keuze: 1
        }
        BXSchuif { id: schuif; width: parent.width; naam: "Regendruppelsnelheid over het bureaublad"; waarde: 0.4; tekst: "honderdvijftig druppels per seconde" }
        BXRij {
            id: rij
            width: parent.width
            titel: lang
            status: "wordt onmiddellijk bijgewerkt zodra de muziek weer begint"
            open: true
            Column {
                spacing: 4
                BXSchuif { width: parent.width; naam: "Gevoeligheid van de microfoon"; waarde: 0.4; tekst: "buitengewoon gevoelig" }
                BXKeuze { width: parent.width; opties: tijden.opties; keuze: 3 }
                BXVinkStijl { width: parent.width; label: lang }
            }
        }
        BXMelding { id: melding; width: parent.width; tekst: lang; knop: lang }
        BXUitleg { id: uitleg; width: parent.width; tekst: lang }
        BXLijn {}
    }

    TestCase {
        name: "Lang"
        when: windowShown

        function init() { failOnWarning(/.?/); }
        function cleanup() {
            kolom.width = 300;
            knop.titel = lang;
            tijden.keuze = 1;
        }

        function plek(item) { return item.mapToItem(kolom, 0, 0, item.width, item.height); }
        // All that was laid out is where it will stay.
        function gelegd() {
            for (const item of [kolom, melding.children[0], rij]) waitForItemPolished(item);
        }
        function controleer() {
            gelegd();
            const teksten = hulp.teksten(kolom);
            verify(teksten.length > 20);
            for (const een of teksten) {
                verify(!een.truncated, een.text);
                const waar = plek(een);
                // The text fits in its item, and the item in the column.
                verify(een.contentWidth <= een.width + 0.01, een.text);
                verify(een.contentHeight <= een.height + 0.01, een.text);
                verify(waar.x >= 0 && waar.x + waar.width <= kolom.width + 0.01, een.text);
                verify(waar.y >= 0 && waar.y + waar.height <= kolom.height + 0.01, een.text);
            }
            for (let i = 0; i < teksten.length; ++i)
                for (let j = 0; j < i; ++j) {
                    const a = plek(teksten[i]), b = plek(teksten[j]);
                    const naast = a.x + a.width <= b.x + 0.01 || b.x + b.width <= a.x + 0.01;
                    const onder = a.y + a.height <= b.y + 0.01 || b.y + b.height <= a.y + 0.01;
                    verify(naast || onder, teksten[i].text + " / " + teksten[j].text);
                }
        }

        function test_nothing_is_cut_or_overlaps_data() {
            return [{ tag: "300", breed: 300 }, { tag: "320", breed: 320 }, { tag: "400", breed: 400 }];
        }
        function test_nothing_is_cut_or_overlaps(data) {
            kolom.width = data.breed;
            controleer();
        }
        function test_texts_do_not_lie_over_tracks_and_switches() {
            gelegd();
            for (const een of [schuif, rij]) {
                const vast = hulp.deel(een, een === rij ? "schakel" : "baan");
                const a = plek(vast);
                for (const woorden of hulp.teksten(een)) {
                    const b = plek(woorden);
                    const naast = a.x + a.width <= b.x || b.x + b.width <= a.x;
                    verify(naast || a.y + a.height <= b.y || b.y + b.height <= a.y, woorden.text);
                }
            }
        }
        function test_button_wraps_and_grows() {
            gelegd();
            const woorden = hulp.teksten(knop)[0];
            verify(woorden.lineCount >= 3);
            compare(knop.width, 300);
            compare(knop.height, woorden.contentHeight + 6);
            verify(knop.height > 2 * kort.height);
        }
        function test_button_keeps_its_brackets_with_the_words_beside_them() {
            compare(hulp.teksten(knop)[0].text, "[\u00a0" + lang + "\u00a0]");
            compare(hulp.teksten(kort)[0].text, "[ Toon nu ]");
            knop.titel = "Toon nu";
            compare(hulp.teksten(knop)[0].text, "[ Toon nu ]");
            compare(knop.width, kort.width);
        }
        function test_choice_wraps_and_grows() {
            gelegd();
            const lijnen = hulp.teksten(tijden).map(t => t.lineCount);
            verify(Math.max(...lijnen) >= 2);
            compare(tijden.height, tijden.implicitHeight);
            verify(tijden.height >= Math.max(...hulp.teksten(tijden).map(t => t.contentHeight)) + 8);
            kolom.width = 700;
            compare(Math.max(...hulp.teksten(tijden).map(t => t.lineCount)), 1);
            compare(tijden.height, hulp.teksten(tijden)[0].contentHeight + 8);
        }
        function test_choice_keeps_its_labels_inside_its_rounded_ends() {
            gelegd();
            const straal = tijden.height / 2;
            for (const een of hulp.teksten(tijden)) {
                const x = een.mapToItem(tijden, 0, 0).x + (een.width - een.contentWidth) / 2;
                const hoog = een.contentHeight / 2;
                const rand = straal - Math.sqrt(straal * straal - hoog * hoog);
                verify(x >= rand - 0.51, een.text);
                verify(x + een.contentWidth <= tijden.width - rand + 0.51, een.text);
            }
        }
        function test_choice_does_not_break_words_it_has_room_for() {
            gelegd();
            for (const een of hulp.teksten(tijden))
                verify(een.lineCount <= een.text.split(" ").length, een.text);
        }
        function test_choice_is_as_high_whatever_is_chosen() {
            const hoog = tijden.height;
            for (const een of [1, 2, 3, 4]) {
                tijden.keuze = een;
                compare(tijden.height, hoog);
            }
        }
        function test_choice_follows_its_options() {
            // A copy: the property's own list changes with it.
            const eerst = tijden.opties.map(een => een);
            const hoog = tijden.height;
            tijden.opties = [{ waarde: 1, label: "Aan" }, { waarde: 2, label: "Uit" }];
            verify(tijden.height < hoog);
            compare(hulp.teksten(tijden).map(t => t.text), ["Aan", "Uit"]);
            tijden.opties = eerst;
            compare(tijden.height, hoog);
        }
        function test_choice_without_room_comes_back() {
            const hoog = tijden.height;
            for (const breed of [0, 5, 40, 300]) {
                kolom.width = breed;
                verify(isFinite(tijden.height) && tijden.height > 0);
            }
            compare(tijden.height, hoog);
        }
        function test_slider_wraps_its_value_and_grows() {
            gelegd();
            const waarde = hulp.teksten(schuif)[1];
            compare(waarde.text, "honderdvijftig druppels per seconde");
            verify(waarde.lineCount >= 4);
            compare(waarde.width, 46);
            verify(schuif.height >= waarde.contentHeight);
        }
        function test_notice_wraps_its_button_too() {
            gelegd();
            const druk = hulp.deel(melding, "druk");
            verify(hulp.teksten(druk)[0].lineCount >= 3);
            compare(druk.width, melding.width - 16);
            const onder = druk.mapToItem(melding, 0, druk.height).y;
            compare(melding.height, onder + 8);
        }
    }
}
