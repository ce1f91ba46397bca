// SPDX-License-Identifier: MIT
import QtQuick
import Brixtel.Controls

// A text in the kit's font.
Text {
    property real grootte: 11
    property bool vet: false

    color: BX.bx
    font: BX.font(grootte, vet)
    textFormat: Text.PlainText
    // Native rendering is sharp at these sizes, and the same with and without a GPU.
    renderType: Text.NativeRendering
}
