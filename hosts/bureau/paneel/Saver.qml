// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// The controls of the screen saver, which is a separate program.
Column {
    property var paneel
    spacing: 8

    BXUitleg { width: parent.width; tekst: paneel.saverNaam }
    BXKeuze {
        width: parent.width
        opties: paneel.saverKeuzes
        gescheiden: true
        keuze: paneel.saver
        onGewisseld: (nu) => paneel.saver = nu
        Accessible.name: "Wat de schermbeveiliging toont"
    }
}
