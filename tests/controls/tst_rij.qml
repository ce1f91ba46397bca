// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Brixtel.Controls

Item {
    width: 400
    height: 700

    Blad { id: blad }

    TestCase {
        name: "Rij"
        when: windowShown

        readonly property var staat: blad.staat
        readonly property var knop: blad.knop
        readonly property var rij: blad.rij
        readonly property var melding: blad.melding
        readonly property var kaal: blad.kaal
        readonly property var uitleg: blad.uitleg
        readonly property var lijn: blad.lijn

        function init() {
            failOnWarning(/.?/);
            blad.herstel();
            mouseMove(blad, 399, 699);
        }
        // Compares to eight bits a part, as a text keeps its colour.
        function gekleurd(is, moet) {
            compare(String(is), String(moet));
        }

        // The row.
        function test_row_shows_its_options_while_open_only() {
            const dicht = rij.height;
            compare(blad.deel(rij, "optie"), null);
            rij.open = true;
            verify(blad.deel(rij, "optie"));
            verify(rij.height > dicht + 10);
            rij.open = false;
            compare(rij.height, dicht);
            tryVerify(() => blad.deel(rij, "optie") === null, 10000);
        }
        function test_row_asks_its_owner_to_open_it() {
            mouseClick(rij, 8, 10);
            verify(rij.open);
            mouseClick(rij, 8, 10);
            verify(!rij.open);
        }
        function test_row_opens_and_closes_by_its_title() {
            mouseClick(blad.deel(rij, "titelvlak"), 20, 6);
            verify(rij.open);
            mouseClick(blad.deel(rij, "titelvlak"), 20, 6);
            verify(!rij.open);
        }
        function test_row_tells_what_its_button_does() {
            const pijl = rij.children[0].children[1];
            compare(pijl.Accessible.name, "Toon de opties van " + rij.titel);
            compare(blad.teksten(pijl)[0].text, ">");
            rij.open = true;
            compare(pijl.Accessible.name, "Verberg de opties van " + rij.titel);
            compare(blad.teksten(pijl)[0].text, "v");
        }
        function test_row_shows_help_where_the_pointer_rests() {
            mouseMove(rij, 8, 10);
            let hulp = null;
            tryVerify(() => {
                hulp = blad.teksten(rij.Window.window.contentItem).find(t => t.text === "Toon de opties");
                return hulp !== undefined && hulp.parent.visible;
            }, 10000);
            mouseMove(blad, 399, 699);
            verify(!hulp.parent.visible);
        }
        function test_row_is_green_when_on() {
            const titel = blad.teksten(rij).find(t => t.text === "Muziek");
            gekleurd(titel.color, BX.bxMiddel);
            compare(blad.deel(rij, "accent").kleur.a, 0);
            staat.aan = true;
            gekleurd(titel.color, BX.bx);
            gekleurd(blad.deel(rij, "accent").kleur, BX.dek(BX.bx, 0.7));
        }
        function test_row_has_a_background_under_the_pointer() {
            verify(!rij.zweef);
            mouseMove(rij, 150, 10);
            tryVerify(() => rij.zweef, 10000);
            verify(blad.deel(rij, "achtergrond").kleur.a > 0);
        }
        function test_row_stays_lit_over_its_arrow_and_its_switch_and_not_beyond() {
            const achtergrond = blad.deel(rij, "achtergrond");
            for (const x of [150, 8, rij.width - 12, 150]) {
                mouseMove(rij, x, 10);
                tryVerify(() => rij.zweef && achtergrond.kleur.a > 0, 10000, `at ${x}`);
            }
            for (const van of [8, rij.width - 12]) {
                mouseMove(rij, van, 10);
                tryVerify(() => rij.zweef, 10000);
                mouseMove(blad, 399, 699);
                tryVerify(() => !rij.zweef && achtergrond.kleur.a === 0, 10000, `left from ${van}`);
            }
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
            const [a, b] = blad.teksten(rij).filter(t => t.text.length > 20);
            const rechts = Math.max(a.x + a.width, 0), links = b.x;
            verify(rechts <= links || b.x + b.width <= a.x);
            rij.titel = titel;
            rij.status = status;
        }

        // The rest.
        function test_notice_has_a_button_when_it_is_given_one() {
            compare(blad.teksten(melding).map(t => t.text), ["Er is geen geluid.", "[ Zoek ]"]);
            compare(blad.teksten(kaal).map(t => t.text), ["Er is geen geluid."]);
            const [tekst, op] = blad.teksten(melding);
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
            compare(volgorde, ["Volg", "Regen", "Twee", "Dichtheid", "Snelheid", "Toon de opties van Muziek", "Muziek", "Zoek"]);
        }
    }
}
