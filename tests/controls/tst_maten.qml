// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Brixtel.Controls

// The measures, fonts and opacities of every control.
Item {
    width: 400
    height: 700

    Blad { id: blad }

    TestCase {
        name: "Maten"
        when: windowShown

        function init() {
            failOnWarning(/.?/);
            blad.herstel();
            mouseMove(blad, 399, 699);
        }
        // Compares to eight bits a part, as a text keeps its colour.
        function gekleurd(is, moet) { compare(String(is), String(moet)); }
        // Half a unit of eight bits.
        function gedekt(is, dekking) { fuzzyCompare(is.a, dekking, 0.5 / 255 + 1e-6); }
        // A text's size, weight and colour at its opacity.
        function gezet(tekst, grootte, vet, kleur, dekking) {
            compare(tekst.font.pixelSize, grootte);
            compare(tekst.font.bold, vet);
            gekleurd(Qt.rgba(tekst.color.r, tekst.color.g, tekst.color.b, 1), kleur);
            gedekt(tekst.color, dekking);
        }
        function tekst(item, woorden) {
            const gevonden = blad.teksten(item).find(t => t.text === woorden);
            verify(gevonden, woorden);
            return gevonden;
        }

        function test_button_data() {
            return [{ tag: "green", kleur: BX.bx }, { tag: "orange", kleur: BX.bxOranje }];
        }
        function test_button(data) {
            const knop = blad.knop;
            const vlak = blad.deel(knop, "vlak");
            const label = blad.teksten(knop)[0];
            knop.kleur = data.kleur;
            gezet(label, 11, true, data.kleur, 1);
            gekleurd(vlak.kleur, BX.dek(data.kleur, 0.08));
            gedekt(vlak.kleur, 0.08);
            compare([vlak.x, vlak.y, vlak.width, vlak.height], [0, 0, knop.width, knop.height]);
            compare([label.x, label.y], [5, 3]);
            compare([knop.width - label.width, knop.height - label.height], [10, 6]);
            mouseMove(knop, 5, 5);
            gezet(label, 11, true, BX.bxZwart, 1);
            gekleurd(vlak.kleur, data.kleur);
            gedekt(vlak.kleur, 1);
            knop.kleur = BX.bx;
        }
        function test_check_box() {
            const [hok, label] = blad.teksten(blad.vink);
            compare(hok.text, "[ ]");
            gezet(hok, 11, true, BX.bxMiddel, 1);
            gezet(label, 11, false, BX.bxWit, 0.9);
            blad.staat.aan = true;
            compare(hok.text, "[x]");
            gezet(hok, 11, true, BX.bx, 1);
            gezet(label, 11, false, BX.bxWit, 0.9);
            compare(hok.y + hok.height / 2, label.y + label.height / 2);
        }
        function test_choice() {
            const scene = blad.scene;
            const knoppen = blad.deel(scene, "rij").children;
            const [een, twee, drie] = blad.teksten(scene);
            // 10.5, in the whole sizes there are.
            gezet(een, 11, false, BX.bx, 0.7);
            gezet(twee, 11, true, BX.bxZwart, 1);
            gezet(drie, 11, false, BX.bx, 0.7);
            compare([een.x, een.y], [2, 0]);
            compare(een.width, knoppen[0].width - 4);
            compare(scene.height, Math.ceil(twee.implicitHeight) + 8);
            let x = 0;
            for (let i = 0; i < 3; ++i) {
                compare(knoppen[i].x, x, "there is no spacing");
                x += knoppen[i].width;
            }
            compare(x, scene.width, "and nothing beyond the labels and their padding");
            fuzzyCompare(knoppen[1].width, twee.implicitWidth + 4, 1);
        }
        function test_slider() {
            const schuif = blad.schuif;
            const [naam, waarde] = blad.teksten(schuif);
            const baan = blad.deel(schuif, "baan");
            const balken = blad.deel(schuif, "balken");
            gezet(naam, 11, false, BX.bxWit, 0.9);
            gezet(waarde, 11, false, BX.bx, 1);
            compare([naam.x, naam.width, naam.horizontalAlignment], [0, 92, Text.AlignLeft]);
            compare([waarde.width, waarde.horizontalAlignment], [46, Text.AlignRight]);
            compare([balken.x, balken.y, balken.height, baan.height], [2, 2, 11, 15]);
            gedekt(baan.rand, 0);
            for (const deel of [naam, baan, waarde]) fuzzyCompare(deel.y + deel.height / 2, schuif.height / 2, 0.51);
            schuif.forceActiveFocus(Qt.TabFocusReason);
            gezet(naam, 11, true, BX.bxWit, 0.9);
            gekleurd(baan.rand, BX.dek(BX.bx, 0.9));
            gedekt(baan.rand, 0.9);
        }
        function test_slider_has_the_bars_there_is_room_for_data() {
            return [
                { tag: "54", baan: 54, balken: 13 }, { tag: "55", baan: 55, balken: 14 }, { tag: "56", baan: 56, balken: 14 },
                { tag: "58", baan: 58, balken: 14 }, { tag: "59", baan: 59, balken: 15 },
                { tag: "2", baan: 2, balken: 0 }, { tag: "3", baan: 3, balken: 1 }
            ];
        }
        function test_slider_has_the_bars_there_is_room_for(data) {
            const schuif = blad.schuif;
            const balken = blad.deel(schuif, "balken");
            // Name, value, what is between, and the track's padding.
            schuif.width = 92 + 46 + 2 * 8 + 4 + data.baan;
            compare(balken.aantal, data.balken);
            compare(balken.width, data.balken === 0 ? 0 : 4 * data.balken - 1);
            schuif.width = Qt.binding(() => schuif.parent.width);
        }
        function test_row_data() {
            return [{ tag: "off", aan: false }, { tag: "on", aan: true }];
        }
        function test_row(data) {
            const rij = blad.rij;
            blad.staat.aan = data.aan;
            const pijl = tekst(rij, ">");
            gezet(pijl, 12, true, BX.bx, 1);
            compare(pijl.width, 9);
            gezet(tekst(rij, "Muziek"), 12, true, data.aan ? BX.bx : BX.bxMiddel, 1);
            gezet(tekst(rij, "stil"), 10, false, BX.bxWit, 0.6);
            const accent = blad.deel(rij, "accent");
            gekleurd(accent.kleur, data.aan ? BX.dek(BX.bx, 0.7) : "#00000000");
            gedekt(accent.kleur, data.aan ? 0.7 : 0);
            gedekt(blad.deel(rij, "achtergrond").kleur, 0);
            const schakel = blad.deel(rij, "schakel");
            compare([schakel.width, schakel.height], [34, 16]);
            const kop = schakel.parent;
            compare(pijl.mapToItem(rij, 0, 0).x, 6);
            compare(kop.width - schakel.x - schakel.width, 6);
            compare(kop.height, Math.max(tekst(rij, "Muziek").height, 16) + 12);
        }
        function test_row_rule_is_one_point_of_medium_green_along_its_options() {
            const rij = blad.rij;
            const dicht = rij.height;
            rij.open = true;
            const lijn = blad.deel(rij, "lijn");
            compare([lijn.width, lijn.dun], [1, true]);
            compare(lijn.mapToItem(rij, 0, 0).y, dicht);
            compare(lijn.height, rij.height - dicht);
            gekleurd(lijn.kleur, BX.bxMiddel);
            const optie = blad.deel(rij, "optie");
            const plek = optie.mapToItem(rij, 0, 0);
            compare([plek.x, plek.y], [21, dicht + 6]);
            compare(rij.height, plek.y + optie.height + 6);
        }
        function test_row_without_a_switch_gives_its_room_to_the_status() {
            const rij = blad.rij;
            const status = tekst(rij, "stil");
            const schakel = blad.deel(rij, "schakel");
            const hoog = rij.height;
            compare(status.x + status.width, schakel.x - 8);
            rij.schakelbaar = false;
            verify(!schakel.visible);
            compare(status.x + status.width, rij.width - 6);
            compare(rij.height, hoog);
            mouseClick(rij, rij.width - 12, 14);
            verify(!blad.staat.aan, "what is not there cannot be pressed");
            blad.deel(rij, "pijl").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Tab);
            verify(!schakel.activeFocus);
            rij.schakelbaar = true;
            compare(status.x + status.width, schakel.x - 8);
        }
        function test_notice() {
            const melding = blad.melding;
            const woorden = blad.teksten(melding)[0];
            const druk = blad.deel(melding, "druk");
            // 10.5, in the whole sizes there are.
            gezet(woorden, 11, false, BX.bxOranje, 1);
            gekleurd(melding.rand, BX.dek(BX.bxOranje, 0.7));
            gedekt(melding.rand, 0.7);
            gedekt(melding.kleur, 0);
            compare(melding.ronding, 6);
            const plek = woorden.mapToItem(melding, 0, 0);
            compare([plek.x, plek.y, woorden.width], [8, 8, melding.width - 16]);
            const onder = druk.mapToItem(melding, 0, 0);
            compare([onder.x, onder.y], [8, plek.y + woorden.height + 6]);
            compare(melding.height, onder.y + druk.height + 8);
            compare(blad.kaal.height, blad.teksten(blad.kaal)[0].height + 16);
            gekleurd(druk.kleur, BX.bxOranje);
        }
        function test_explanation() {
            gezet(blad.uitleg, 10, false, BX.bxMiddel, 1);
        }
        function test_rule() {
            compare([blad.lijn.height, blad.lijn.dun], [1, true]);
            compare(blad.lijn.width, blad.lijn.parent.width);
            gekleurd(blad.lijn.kleur, BX.bxDonker);
        }
    }
}
