// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Brixtel.Controls

Item {
    width: 400
    height: 700

    Blad { id: blad }

    TestCase {
        name: "Schuif"
        when: windowShown

        readonly property var staat: blad.staat
        readonly property var knop: blad.knop
        readonly property var schuif: blad.schuif
        readonly property var tweede: blad.tweede

        function init() {
            failOnWarning(/.?/);
            blad.herstel();
            mouseMove(blad, 399, 699);
        }
        // Compares to eight bits a part, as a text keeps its colour.
        function gekleurd(is, moet) {
            compare(String(is), String(moet));
        }

        // The slider.
        function test_slider_at_its_lower_bound_lights_no_bars() {
            staat.waarde = 0;
            const balken = blad.deel(schuif, "balken");
            compare(balken.gevuld, 0);
            verify(balken.aantal > 20);
        }
        function test_slider_at_its_upper_bound_lights_all_bars() {
            staat.waarde = 1;
            const balken = blad.deel(schuif, "balken");
            compare(balken.gevuld, balken.aantal);
        }
        function test_slider_has_its_measures() {
            const balken = blad.deel(schuif, "balken");
            const baan = blad.deel(schuif, "baan");
            compare(balken.height, 11);
            compare([balken.x, balken.y], [2, 2]);
            compare([baan.width, baan.height], [balken.width + 4, 15]);
            compare(balken.aantal, (balken.width + 1) / 4);
            const [naam, tekst] = blad.teksten(schuif);
            compare(naam.width, 92);
            compare(tekst.width, 46);
            compare(tekst.x + tekst.width, schuif.width);
        }
        function test_slider_goes_a_step_with_each_notch_of_the_wheel() {
            staat.waarde = 0.5;
            const baan = blad.deel(schuif, "baan");
            mouseWheel(baan, 10, 5, 0, 120);
            fuzzyCompare(staat.waarde, 0.5 + schuif.stepSize, 1e-9);
            mouseWheel(baan, 10, 5, 0, -240);
            fuzzyCompare(staat.waarde, 0.5 - schuif.stepSize, 1e-9);
            // A fine wheel adds up.
            for (let i = 0; i < 4; ++i) mouseWheel(baan, 10, 5, 0, 30);
            fuzzyCompare(staat.waarde, 0.5, 1e-9);
        }
        function test_slider_goes_to_its_ends_with_home_and_end() {
            staat.waarde = 0.5;
            schuif.forceActiveFocus();
            keyClick(Qt.Key_End);
            compare(staat.waarde, 1);
            keyClick(Qt.Key_Home);
            compare(staat.waarde, 0);
            keyClick(Qt.Key_End, Qt.ControlModifier);
            compare(staat.waarde, 0);
        }
        function test_slider_is_dragged_from_anywhere_on_its_track() {
            const balken = blad.deel(schuif, "balken");
            const baan = blad.deel(schuif, "baan");
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
            const naam = blad.teksten(schuif)[0];
            verify(!naam.font.bold);
            schuif.forceActiveFocus(Qt.TabFocusReason);
            compare(SchuifFocus.actief, "Dichtheid");
            verify(naam.font.bold);
            gekleurd(blad.deel(schuif, "baan").rand, BX.dek(BX.bx, 0.9));
            keyClick(Qt.Key_Tab);
            compare(SchuifFocus.actief, "Snelheid");
            verify(!naam.font.bold);
            compare(blad.deel(schuif, "baan").rand.a, 0);
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
        function test_slider_that_is_disabled_is_not_moved_by_assistive_technology() {
            schuif.enabled = false;
            schuif.verhoog();
            schuif.verlaag();
            schuif.kies(0.9);
            compare(schuif.waarde, 0.25);
            compare(staat.waarde, 0.25);
            // The owner can still move the slider.
            staat.waarde = 0.5;
            compare(schuif.waarde, 0.5);
            schuif.enabled = true;
            schuif.verhoog();
            fuzzyCompare(staat.waarde, 0.55, 1e-9);
        }
        function test_slider_without_room_has_no_bars_and_is_not_dragged_data() {
            return [{ tag: "100", breed: 100 }, { tag: "1", breed: 1 }, { tag: "just too little", breed: 92 + 46 + 16 + 4 + 2.9 }];
        }
        function test_slider_without_room_has_no_bars_and_is_not_dragged(data) {
            const balken = blad.deel(schuif, "balken");
            const baan = blad.deel(schuif, "baan");
            schuif.width = data.breed;
            compare([balken.aantal, balken.gevuld, balken.width], [0, 0, 0]);
            compare(baan.width, 4);
            mouseClick(baan, 1, 5);
            compare(staat.waarde, 0.25);
            mousePress(baan, 2, 5);
            mouseMove(baan, 50, 5);
            mouseMove(baan, -50, 5);
            compare(staat.waarde, 0.25);
            mouseRelease(baan, -50, 5);
            keyClick(Qt.Key_Right);
            fuzzyCompare(staat.waarde, 0.26, 1e-9);
            schuif.width = Qt.binding(() => schuif.parent.width);
            verify(balken.aantal > 20);
        }
        function test_slider_with_room_for_one_bar_is_dragged() {
            const baan = blad.deel(schuif, "baan");
            schuif.width = 92 + 46 + 16 + 4 + 3;
            compare(blad.deel(schuif, "balken").aantal, 1);
            mouseClick(baan, 6, 5);
            compare(staat.waarde, 1);
            mouseClick(baan, 1, 5);
            compare(staat.waarde, 0);
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
            mouseClick(blad.deel(tweede, "baan"), 30, 5);
            const balken = blad.deel(tweede, "balken");
            verify(balken.gevuld >= 0 && balken.gevuld <= balken.aantal);
            verify(tweede.waarde >= tweede.minimumValue && tweede.waarde <= tweede.maximumValue);
            tweede.bereik = eerst;
        }
        function test_slider_follows_its_range() {
            const eerst = tweede.bereik;
            const waarde = tweede.waarde;
            const balken = blad.deel(tweede, "balken");
            tweede.bereik = [0, 10];
            tweede.waarde = 5;
            verify(balken.gevuld > 0 && balken.gevuld < balken.aantal);
            tweede.bereik = [0, 5];
            compare(balken.gevuld, balken.aantal);
            tweede.bereik = [5, 10];
            compare(balken.gevuld, 0);
            tweede.bereik = eerst;
            tweede.waarde = waarde;
        }
    }
}
