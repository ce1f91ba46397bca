// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Brixtel.Controls

Item {
    id: blad
    width: 400
    height: 700

    QtObject {
        id: staat
        property bool aan: false
        property real waarde: 0.25
        property string keuze: "b"
        property int gedrukt: 0
    }
    Column {
        id: kolom
        x: 10
        y: 10
        width: 380
        spacing: 8

        BXKnop { id: knop; titel: "Toon nu"; onActie: ++staat.gedrukt }
        BXVinkStijl { id: vink; label: "Volg"; aan: staat.aan; onAanChanged: staat.aan = aan }
        BXSchakelStijl { id: schakel; label: "Regen"; aan: staat.aan; onAanChanged: staat.aan = aan }
        BXKeuze {
            id: scene
            opties: [{ waarde: "a", label: "Een" }, { waarde: "b", label: "Twee" }, { waarde: "c", label: "Drie" }]
            keuze: staat.keuze
            onKeuzeChanged: staat.keuze = keuze
        }
        BXSchuif {
            id: schuif
            width: parent.width
            naam: "Dichtheid"
            waarde: staat.waarde
            onWaardeChanged: staat.waarde = waarde
            tekst: BX.bxProcent(waarde)
        }
        BXSchuif { id: tweede; width: parent.width; naam: "Snelheid"; bereik: [0, 10]; stap: 1; tekst: BX.bxGetal(waarde, 0) }
        BXRij {
            id: rij
            width: parent.width
            titel: "Muziek"
            status: "stil"
            aan: staat.aan
            onAanChanged: staat.aan = aan
            onWissel: open = !open
            BXVinkStijl { objectName: "optie"; label: "Ook bij stilte" }
        }
        BXMelding { id: melding; width: parent.width; tekst: "Er is geen geluid."; knop: "Zoek"; onActie: ++staat.gedrukt }
        BXMelding { id: kaal; width: parent.width; tekst: "Er is geen geluid." }
        BXUitleg { id: uitleg; width: parent.width; tekst: "Uitleg" }
        BXLijn { id: lijn }
    }

    TestCase {
        name: "Bediening"
        when: windowShown

        function init() {
            failOnWarning(/.?/);
            staat.aan = false;
            staat.waarde = 0.25;
            staat.keuze = "b";
            staat.gedrukt = 0;
            tweede.waarde = 5;
            rij.open = false;
            rij.forceActiveFocus();  // which is no control
            mouseMove(blad, 399, 699);
        }
        function deel(item, naam) {
            for (let i = 0; i < item.children.length; ++i) {
                const kind = item.children[i];
                if (kind.objectName === naam) return kind;
                const verder = deel(kind, naam);
                if (verder) return verder;
            }
            return null;
        }
        // To eight bits a part, as a text keeps its colour.
        function gekleurd(is, moet) {
            compare(String(is), String(moet));
        }
        function teksten(item) {
            let alle = [];
            for (let i = 0; i < item.children.length; ++i) {
                const kind = item.children[i];
                if (kind instanceof Text && kind.visible) alle.push(kind);
                alle = alle.concat(teksten(kind));
            }
            return alle;
        }

        // The button.
        function test_button_is_bracketed_in_bold_11() {
            const tekst = teksten(knop)[0];
            compare(tekst.text, "[ Toon nu ]");
            compare(tekst.font.pixelSize, 11);
            verify(tekst.font.bold);
            compare(knop.width, tekst.implicitWidth + 10);
            compare(knop.height, tekst.implicitHeight + 6);
        }
        function test_button_acts_when_pressed_anywhere_on_it() {
            mouseClick(knop, 1, 1);
            mouseClick(knop, knop.width - 1, knop.height - 1);
            compare(staat.gedrukt, 2);
        }
        function test_button_does_not_act_when_the_pointer_leaves_it() {
            mousePress(knop, 5, 5);
            mouseRelease(knop, 5, knop.height + 20);
            compare(staat.gedrukt, 0);
        }
        function test_button_turns_round_under_the_pointer() {
            const tekst = teksten(knop)[0];
            verify(!knop.zweef);
            gekleurd(tekst.color, BX.bx);
            mouseMove(knop, 5, 5);
            verify(knop.zweef);
            gekleurd(tekst.color, BX.bxZwart);
            mouseMove(blad, 399, 699);
            verify(!knop.zweef);
        }
        function test_button_hidden_under_the_pointer_is_not_hovered() {
            mouseMove(knop, 5, 5);
            verify(knop.zweef);
            knop.visible = false;
            verify(!knop.zweef);
            knop.visible = true;
        }
        function test_space_and_return_press_data() {
            return [{ tag: "space", toets: Qt.Key_Space }, { tag: "Return", toets: Qt.Key_Return }, { tag: "Enter", toets: Qt.Key_Enter }];
        }
        function test_space_and_return_press(data) {
            knop.forceActiveFocus(Qt.TabFocusReason);
            keyClick(data.toets);
            compare(staat.gedrukt, 1);
            vink.forceActiveFocus(Qt.TabFocusReason);
            keyClick(data.toets);
            verify(vink.aan);
            schakel.forceActiveFocus(Qt.TabFocusReason);
            keyClick(data.toets);
            verify(!schakel.aan);
        }
        function test_focus_shows_when_it_came_by_the_keyboard_only() {
            knop.forceActiveFocus(Qt.TabFocusReason);
            verify(knop.toonFocus);
            mouseClick(vink);
            verify(vink.activeFocus);
            verify(!vink.toonFocus);
            verify(!knop.toonFocus);
        }

        // The toggles.
        function test_check_box_shows_its_state() {
            const [hok, label] = teksten(vink);
            compare(hok.text, "[ ]");
            gekleurd(hok.color, BX.bxMiddel);
            mouseClick(vink);
            compare(hok.text, "[x]");
            gekleurd(hok.color, BX.bx);
            verify(hok.font.bold);
            verify(!label.font.bold);
            compare(label.text, "Volg");
        }
        function test_check_box_can_be_pressed_on_its_label() {
            mouseClick(vink, vink.width - 1, vink.height / 2);
            verify(vink.aan);
        }
        function test_toggle_names_its_state_aan_or_uit() {
            compare(schakel.Accessible.description, "uit");
            mouseClick(schakel);
            compare(schakel.Accessible.description, "aan");
        }
        function test_toggle_keeps_what_it_is_bound_to() {
            mouseClick(schakel);
            verify(staat.aan);
            verify(vink.aan, "what hangs on the same state follows");
            staat.aan = false;
            verify(!schakel.aan, "and so does the toggle that was pressed");
            mouseClick(vink);
            verify(schakel.aan);
        }
        function test_switch_has_its_measures() {
            const baan = deel(schakel, "baan");
            const bol = deel(schakel, "knop");
            compare([baan.width, baan.height], [34, 16]);
            compare([bol.width, bol.height, bol.y], [13, 11, 2.5]);
            tryCompare(bol, "x", 2.5, 10000);
            staat.aan = true;
            tryCompare(bol, "x", 34 - 13 - 2.5, 10000);
        }
        function test_switch_changes_colour() {
            const baan = deel(schakel, "baan");
            const bol = deel(schakel, "knop");
            tryCompare(bol, "kleur", BX.bxDonker, 10000);
            tryCompare(baan, "rand", BX.bxDonker, 10000);
            compare(baan.kleur.a, 0);
            staat.aan = true;
            tryCompare(bol, "kleur", BX.bx, 10000);
            tryCompare(baan, "kleur", BX.dek(BX.bx, 0.22), 10000);
            tryCompare(baan, "rand", BX.dek(BX.bx, 0.9), 10000);
        }
        function test_switch_moves_in_a_twelfth_of_a_second() {
            compare(schakel.duur, 120);
        }

        // The choice.
        function test_choice_is_the_option_pressed() {
            const knoppen = deel(scene, "vlak").parent.children[2].children;
            mouseClick(knoppen[2]);
            compare(staat.keuze, "c");
            mouseClick(knoppen[0]);
            compare(staat.keuze, "a");
            staat.keuze = "b";
            compare(scene.gekozen, 1);
        }
        function test_choice_shows_the_chosen_one_in_bold_black() {
            const [een, twee] = teksten(scene);
            verify(!een.font.bold);
            fuzzyCompare(een.color.a, 0.7, 0.01);
            verify(twee.font.bold);
            gekleurd(twee.color, BX.bxZwart);
        }
        function test_choice_fills_the_part_of_the_chosen_one() {
            const vlak = deel(scene, "vlak");
            staat.keuze = "a";
            compare(vlak.van, 0);
            verify(vlak.tot > 10);
            const tot = vlak.tot;
            staat.keuze = "c";
            verify(vlak.van > tot);
            compare(vlak.tot, scene.width);
        }
        function test_choice_of_what_is_no_option_fills_nothing() {
            staat.keuze = "z";
            const vlak = deel(scene, "vlak");
            compare(vlak.van, vlak.tot);
            staat.keuze = "b";
        }
        function test_choice_does_not_shift_when_it_changes() {
            const breed = scene.implicitWidth;
            staat.keuze = "c";
            compare(scene.implicitWidth, breed);
        }
        function test_choice_is_one_stop_and_its_arrows_choose() {
            vink.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Tab);
            verify(schakel.activeFocus);
            keyClick(Qt.Key_Tab);
            verify(scene.toonFocus);
            keyClick(Qt.Key_Right);
            compare(staat.keuze, "c");
            keyClick(Qt.Key_Right);
            compare(staat.keuze, "a");
            keyClick(Qt.Key_Left);
            compare(staat.keuze, "c");
            keyClick(Qt.Key_Tab);
            verify(schuif.activeFocus);
            verify(!scene.toonFocus);
            keyClick(Qt.Key_Backtab);
            verify(scene.toonFocus);
        }

        // The slider.
        function test_slider_at_its_lower_bound_lights_no_bars() {
            staat.waarde = 0;
            const balken = deel(schuif, "balken");
            compare(balken.gevuld, 0);
            verify(balken.aantal > 20);
        }
        function test_slider_at_its_upper_bound_lights_all_bars() {
            staat.waarde = 1;
            const balken = deel(schuif, "balken");
            compare(balken.gevuld, balken.aantal);
        }
        function test_slider_has_its_measures() {
            const balken = deel(schuif, "balken");
            const baan = deel(schuif, "baan");
            compare(balken.height, 11);
            compare([balken.x, balken.y], [2, 2]);
            compare([baan.width, baan.height], [balken.width + 4, 15]);
            compare(balken.aantal, (balken.width + 1) / 4);
            const [naam, tekst] = teksten(schuif);
            compare(naam.width, 92);
            compare(tekst.width, 46);
            compare(tekst.x + tekst.width, schuif.width);
        }
        function test_slider_is_dragged_from_anywhere_on_its_track() {
            const balken = deel(schuif, "balken");
            const baan = deel(schuif, "baan");
            mousePress(baan, balken.x + balken.width / 2, 5);
            fuzzyCompare(staat.waarde, 0.5, 0.01);
            mouseMove(baan, balken.x + balken.width * 0.75, 50);
            fuzzyCompare(staat.waarde, 0.75, 0.01);
            mouseMove(baan, baan.width + 200, 5);
            compare(staat.waarde, 1);
            mouseMove(baan, -200, 5);
            compare(staat.waarde, 0);
            mouseRelease(baan, -200, 5);
            verify(schuif.activeFocus);
        }
        function test_slider_is_not_dragged_by_its_name() {
            mouseClick(schuif, 10, schuif.height / 2);
            compare(staat.waarde, 0.25);
        }
        function test_slider_keeps_what_it_is_bound_to() {
            schuif.verzet(1);
            fuzzyCompare(staat.waarde, 0.26, 1e-9);
            staat.waarde = 0.5;
            compare(schuif.waarde, 0.5);
            compare(schuif.tekst, "50%");
        }
        function test_slider_with_the_keyboard_is_bold_and_outlined() {
            const naam = teksten(schuif)[0];
            verify(!naam.font.bold);
            schuif.forceActiveFocus(Qt.TabFocusReason);
            compare(SchuifFocus.actief, "Dichtheid");
            verify(naam.font.bold);
            gekleurd(deel(schuif, "baan").rand, BX.dek(BX.bx, 0.9));
            keyClick(Qt.Key_Tab);
            compare(SchuifFocus.actief, "Snelheid");
            verify(!naam.font.bold);
            compare(deel(schuif, "baan").rand.a, 0);
            knop.forceActiveFocus(Qt.TabFocusReason);
            compare(SchuifFocus.actief, "");
        }
        function test_arrows_move_one_step_and_with_shift_ten() {
            tweede.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Right);
            compare(tweede.waarde, 6);
            keyClick(Qt.Key_Down);
            compare(tweede.waarde, 5);
            keyClick(Qt.Key_Up, Qt.ShiftModifier);
            compare(tweede.waarde, 10);
            keyClick(Qt.Key_Left, Qt.ShiftModifier);
            compare(tweede.waarde, 0);
        }
        function test_slider_without_room_has_no_bars() {
            schuif.width = 100;
            compare(deel(schuif, "balken").aantal, 0);
            mouseClick(deel(schuif, "baan"), 1, 5);
            schuif.width = Qt.binding(() => schuif.parent.width);
        }
        function test_slider_of_an_odd_range_shows_data() {
            return [
                { tag: "empty", bereik: [3, 3] }, { tag: "reversed", bereik: [9, 1] },
                { tag: "none", bereik: [] }, { tag: "not numbers", bereik: [NaN, Infinity] }
            ];
        }
        function test_slider_of_an_odd_range_shows(data) {
            const eerst = tweede.bereik;
            tweede.bereik = data.bereik;
            tweede.forceActiveFocus();
            keyClick(Qt.Key_Right, Qt.ShiftModifier);
            keyClick(Qt.Key_Left);
            mouseClick(deel(tweede, "baan"), 30, 5);
            const balken = deel(tweede, "balken");
            verify(balken.gevuld >= 0 && balken.gevuld <= balken.aantal);
            verify(tweede.waarde >= tweede.minimumValue && tweede.waarde <= tweede.maximumValue);
            tweede.bereik = eerst;
        }

        // The row.
        function test_row_shows_its_options_while_open_only() {
            const dicht = rij.height;
            compare(deel(rij, "optie"), null);
            rij.open = true;
            verify(deel(rij, "optie"));
            verify(rij.height > dicht + 10);
            rij.open = false;
            compare(rij.height, dicht);
            tryVerify(() => deel(rij, "optie") === null, 10000);
        }
        function test_row_asks_its_owner_to_open_it() {
            mouseClick(rij, 8, 10);
            verify(rij.open);
            mouseClick(rij, 8, 10);
            verify(!rij.open);
        }
        function test_row_tells_what_its_button_does() {
            const pijl = rij.children[0].children[1];
            compare(pijl.Accessible.name, "Toon de opties");
            compare(teksten(pijl)[0].text, ">");
            rij.open = true;
            compare(pijl.Accessible.name, "Verberg de opties");
            compare(teksten(pijl)[0].text, "v");
        }
        function test_row_shows_help_where_the_pointer_rests() {
            mouseMove(rij, 8, 10);
            let hulp = null;
            tryVerify(() => {
                hulp = teksten(rij.Window.window.contentItem).find(t => t.text === "Toon de opties");
                return hulp !== undefined && hulp.parent.visible;
            }, 10000);
            mouseMove(blad, 399, 699);
            verify(!hulp.parent.visible);
        }
        function test_row_is_green_when_on() {
            const titel = teksten(rij).find(t => t.text === "Muziek");
            gekleurd(titel.color, BX.bxMiddel);
            compare(deel(rij, "accent").kleur.a, 0);
            staat.aan = true;
            gekleurd(titel.color, BX.bx);
            gekleurd(deel(rij, "accent").kleur, BX.dek(BX.bx, 0.7));
        }
        function test_row_has_a_background_under_the_pointer() {
            verify(!rij.zweef);
            mouseMove(rij, 150, 10);
            tryVerify(() => rij.zweef, 10000);
            verify(deel(rij, "achtergrond").kleur.a > 0);
        }
        function test_row_switch_keeps_what_it_is_bound_to() {
            mouseClick(rij, rij.width - 12, 14);
            verify(staat.aan);
            staat.aan = false;
            verify(!rij.aan);
            mouseClick(rij, rij.width - 12, 14);
            verify(staat.aan);
        }
        function test_row_wraps_texts_that_are_too_long() {
            const titel = rij.titel, status = rij.status;
            const hoog = rij.height;
            rij.titel = "Een titel die veel te lang is om naast de toestand op één regel te passen";
            rij.status = "en een toestand die dat zelf ook al lang niet meer kan";
            verify(rij.height > hoog + 10);
            const [a, b] = teksten(rij).filter(t => t.text.length > 20);
            const rechts = Math.max(a.x + a.width, 0), links = b.x;
            verify(rechts <= links || b.x + b.width <= a.x);
            rij.titel = titel;
            rij.status = status;
        }

        // The rest.
        function test_notice_has_a_button_when_it_is_given_one() {
            compare(teksten(melding).map(t => t.text), ["Er is geen geluid.", "[ Zoek ]"]);
            compare(teksten(kaal).map(t => t.text), ["Er is geen geluid."]);
            const [tekst, op] = teksten(melding);
            gekleurd(tekst.color, BX.bxOranje);
            mouseClick(op);
            compare(staat.gedrukt, 1);
        }
        function test_notice_grows_with_its_text() {
            const hoog = kaal.height;
            kaal.tekst = "Er is geen geluid. ".repeat(10);
            tryVerify(() => kaal.height > 2 * hoog, 10000);
            kaal.tekst = "Er is geen geluid.";
            tryCompare(kaal, "height", hoog, 10000);
        }
        function test_explanation_is_medium_green_10() {
            gekleurd(uitleg.color, BX.bxMiddel);
            compare(uitleg.font.pixelSize, 10);
        }
        function test_rule_fills_the_width() {
            compare([lijn.width, lijn.height], [380, 1]);
            gekleurd(lijn.kleur, BX.bxDonker);
        }
        function test_tab_goes_from_control_to_control() {
            knop.forceActiveFocus(Qt.TabFocusReason);
            const volgorde = [];
            for (let i = 0; i < 8; ++i) {
                keyClick(Qt.Key_Tab);
                volgorde.push(blad.Window.window.activeFocusItem.Accessible.name);
            }
            compare(volgorde, ["Volg", "Regen", "Twee", "Dichtheid", "Snelheid", "Toon de opties", "Muziek", "Zoek"]);
        }
    }
}
