// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Brixtel.Controls

Item {
    width: 400
    height: 700

    Blad { id: blad }

    TestCase {
        name: "Knoppen"
        when: windowShown

        readonly property var staat: blad.staat
        readonly property var knop: blad.knop
        readonly property var vink: blad.vink
        readonly property var schakel: blad.schakel
        readonly property var scene: blad.scene
        readonly property var schuif: blad.schuif

        function init() {
            failOnWarning(/.?/);
            blad.herstel();
            mouseMove(blad, 399, 699);
        }
        // Compares to eight bits a part, as a text keeps its colour.
        function gekleurd(is, moet) {
            compare(String(is), String(moet));
        }

        // The button.
        function test_button_is_bracketed_in_bold_11() {
            const tekst = blad.teksten(knop)[0];
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
            const tekst = blad.teksten(knop)[0];
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
            const [hok, label] = blad.teksten(vink);
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
            const baan = blad.deel(schakel, "baan");
            const bol = blad.deel(schakel, "knop");
            compare([baan.width, baan.height], [34, 16]);
            compare([bol.width, bol.height, bol.y], [13, 11, 2.5]);
            const licht = blad.deel(bol, "licht");
            compare([licht.x, licht.y, licht.width, licht.height], [0, 0, 13, 11]);
            tryCompare(bol, "x", 2.5, 10000);
            staat.aan = true;
            tryCompare(bol, "x", 34 - 13 - 2.5, 10000);
        }
        function test_switch_changes_colour() {
            const baan = blad.deel(schakel, "baan");
            const bol = blad.deel(schakel, "knop");
            const licht = blad.deel(bol, "licht");
            tryCompare(licht, "kleur", BX.dek(BX.bx, 0), 10000);
            tryCompare(baan, "rand", BX.bxDonker, 10000);
            tryCompare(baan, "kleur", BX.dek(BX.bx, 0), 10000);
            gekleurd(bol.kleur, BX.bxDonker);
            staat.aan = true;
            tryCompare(licht, "kleur", BX.dek(BX.bx, 0.9), 10000);
            tryCompare(baan, "kleur", BX.dek(BX.bx, 0.22), 10000);
            tryCompare(baan, "rand", BX.bx, 10000);
        }

        // The choice.
        function test_choice_is_the_option_pressed() {
            const knoppen = blad.deel(scene, "rij").children;
            mouseClick(knoppen[2]);
            compare(staat.keuze, "c");
            mouseClick(knoppen[0]);
            compare(staat.keuze, "a");
            staat.keuze = "b";
            compare(scene.gekozen, 1);
        }
        function test_choice_shows_the_chosen_one_in_bold_black() {
            const [een, twee] = blad.teksten(scene);
            verify(!een.font.bold);
            fuzzyCompare(een.color.a, 0.7, 0.01);
            verify(twee.font.bold);
            gekleurd(twee.color, BX.bxZwart);
        }
        function test_choice_fills_the_part_of_the_chosen_one() {
            const vlak = blad.deel(scene, "vlak");
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
            const vlak = blad.deel(scene, "vlak");
            compare(vlak.van, vlak.tot);
            staat.keuze = "b";
        }
        function test_choice_does_not_shift_when_it_changes() {
            const breed = scene.implicitWidth;
            staat.keuze = "c";
            compare(scene.implicitWidth, breed);
        }
        function test_choice_leaves_arrows_with_a_modifier_to_others_data() {
            return [
                { tag: "Ctrl", bij: Qt.ControlModifier, kiest: false },
                { tag: "Alt", bij: Qt.AltModifier, kiest: false },
                { tag: "Meta", bij: Qt.MetaModifier, kiest: false },
                { tag: "the keypad", bij: Qt.KeypadModifier, kiest: true },
                { tag: "the keypad with Ctrl", bij: Qt.KeypadModifier | Qt.ControlModifier, kiest: false }
            ];
        }
        function test_choice_leaves_arrows_with_a_modifier_to_others(data) {
            blad.deel(scene, "rij").children[1].forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Right, data.bij);
            compare(staat.keuze, data.kiest ? "c" : "b");
            staat.keuze = "b";
            blad.deel(scene, "rij").children[1].forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Left, data.bij);
            compare(staat.keuze, data.kiest ? "a" : "b");
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
    }
}
