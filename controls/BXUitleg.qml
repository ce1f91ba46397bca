// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// An explanation.
BXTekst {
    property string tekst

    text: tekst
    grootte: 10
    color: BX.bxMiddel
    wrapMode: Text.Wrap
    Accessible.role: Accessible.StaticText
    Accessible.name: tekst
}
