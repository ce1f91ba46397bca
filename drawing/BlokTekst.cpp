// SPDX-License-Identifier: MIT
#include "drawing/BlokTekst.h"

#include <QHash>
#include <QTextBoundaryFinder>
#include <algorithm>

namespace brixtel {

namespace {

const QHash<char16_t, Glief>& letters() {
    static const QHash<char16_t, Glief> tabel{
        {u'A', {0b01110, 0b10001, 0b10001, 0b11111, 0b10001, 0b10001, 0b10001}},
        {u'B', {0b11110, 0b10001, 0b10001, 0b11110, 0b10001, 0b10001, 0b11110}},
        {u'C', {0b01111, 0b10000, 0b10000, 0b10000, 0b10000, 0b10000, 0b01111}},
        {u'D', {0b11110, 0b10001, 0b10001, 0b10001, 0b10001, 0b10001, 0b11110}},
        {u'E', {0b11111, 0b10000, 0b10000, 0b11110, 0b10000, 0b10000, 0b11111}},
        {u'F', {0b11111, 0b10000, 0b10000, 0b11110, 0b10000, 0b10000, 0b10000}},
        {u'G', {0b01111, 0b10000, 0b10000, 0b10011, 0b10001, 0b10001, 0b01111}},
        {u'H', {0b10001, 0b10001, 0b10001, 0b11111, 0b10001, 0b10001, 0b10001}},
        {u'I', {0b11111, 0b00100, 0b00100, 0b00100, 0b00100, 0b00100, 0b11111}},
        {u'J', {0b00111, 0b00010, 0b00010, 0b00010, 0b00010, 0b10010, 0b01100}},
        {u'K', {0b10001, 0b10010, 0b10100, 0b11000, 0b10100, 0b10010, 0b10001}},
        {u'L', {0b10000, 0b10000, 0b10000, 0b10000, 0b10000, 0b10000, 0b11111}},
        {u'M', {0b10001, 0b11011, 0b10101, 0b10101, 0b10001, 0b10001, 0b10001}},
        {u'N', {0b10001, 0b11001, 0b10101, 0b10011, 0b10001, 0b10001, 0b10001}},
        {u'O', {0b01110, 0b10001, 0b10001, 0b10001, 0b10001, 0b10001, 0b01110}},
        {u'P', {0b11110, 0b10001, 0b10001, 0b11110, 0b10000, 0b10000, 0b10000}},
        {u'Q', {0b01110, 0b10001, 0b10001, 0b10001, 0b10101, 0b10010, 0b01101}},
        {u'R', {0b11110, 0b10001, 0b10001, 0b11110, 0b10100, 0b10010, 0b10001}},
        {u'S', {0b01111, 0b10000, 0b10000, 0b01110, 0b00001, 0b00001, 0b11110}},
        {u'T', {0b11111, 0b00100, 0b00100, 0b00100, 0b00100, 0b00100, 0b00100}},
        {u'U', {0b10001, 0b10001, 0b10001, 0b10001, 0b10001, 0b10001, 0b01110}},
        {u'V', {0b10001, 0b10001, 0b10001, 0b10001, 0b10001, 0b01010, 0b00100}},
        {u'W', {0b10001, 0b10001, 0b10001, 0b10101, 0b10101, 0b11011, 0b10001}},
        {u'X', {0b10001, 0b10001, 0b01010, 0b00100, 0b01010, 0b10001, 0b10001}},
        {u'Y', {0b10001, 0b10001, 0b01010, 0b00100, 0b00100, 0b00100, 0b00100}},
        {u'Z', {0b11111, 0b00001, 0b00010, 0b00100, 0b01000, 0b10000, 0b11111}},
        {u'0', BlokCijfer::nul},
        {u'1', BlokCijfer::een},
        {u'2', {0b01110, 0b10001, 0b00001, 0b00110, 0b01000, 0b10000, 0b11111}},
        {u'3', {0b11110, 0b00001, 0b00001, 0b01110, 0b00001, 0b00001, 0b11110}},
        {u'4', {0b00010, 0b00110, 0b01010, 0b10010, 0b11111, 0b00010, 0b00010}},
        {u'5', {0b11111, 0b10000, 0b11110, 0b00001, 0b00001, 0b10001, 0b01110}},
        {u'6', {0b00110, 0b01000, 0b10000, 0b11110, 0b10001, 0b10001, 0b01110}},
        {u'7', {0b11111, 0b00001, 0b00010, 0b00100, 0b01000, 0b01000, 0b01000}},
        {u'8', {0b01110, 0b10001, 0b10001, 0b01110, 0b10001, 0b10001, 0b01110}},
        {u'9', {0b01110, 0b10001, 0b10001, 0b01111, 0b00001, 0b00010, 0b01100}},
        {u' ', {0b00000, 0b00000, 0b00000, 0b00000, 0b00000, 0b00000, 0b00000}},
        {u'!', {0b00100, 0b00100, 0b00100, 0b00100, 0b00100, 0b00000, 0b00100}},
        {u'?', {0b01110, 0b10001, 0b00001, 0b00110, 0b00100, 0b00000, 0b00100}},
        {u'.', {0b00000, 0b00000, 0b00000, 0b00000, 0b00000, 0b01100, 0b01100}},
        {u'-', {0b00000, 0b00000, 0b00000, 0b11111, 0b00000, 0b00000, 0b00000}},
        {u'+', {0b00000, 0b00100, 0b00100, 0b11111, 0b00100, 0b00100, 0b00000}},
    };
    return tabel;
}

// Calls `doe` with each character of the text and its index.
template <typename Doe>
int elkKarakter(const QString& tekst, Doe doe) {
    QTextBoundaryFinder grens(QTextBoundaryFinder::Grapheme, tekst);
    int k = 0;
    qsizetype van = 0;
    while (grens.toNextBoundary() > van) {
        const qsizetype tot = grens.position();
        doe(QStringView(tekst).mid(van, tot - van), k++);
        van = tot;
    }
    return k;
}

}  // namespace

bool BlokTekst::kent(QStringView karakter) {
    return karakter.size() == 1 && letters().contains(karakter.front().unicode());
}

double BlokTekst::breedte(const QString& tekst, BlokMaat maat) {
    const int n = elkKarakter(tekst, [](QStringView, int) {});
    return n * BlokCijfer::maat(maat).width() + std::max(n - 1, 0) * (maat.blok + 2 * maat.spleet);
}

std::vector<QRectF> BlokTekst::vakken(const QString& tekst, const BlokPlaats& plaats) {
    std::vector<QRectF> alle;
    const double stap = 6 * plaats.blok + 6 * plaats.spleet;
    elkKarakter(tekst.toUpper(), [&](QStringView karakter, int k) {
        if (!kent(karakter)) return;
        BlokPlaats cel = plaats;
        cel.bij.rx() += k * stap;
        const auto vakken = BlokCijfer::vakken(letters()[karakter.front().unicode()], cel);
        alle.insert(alle.end(), vakken.begin(), vakken.end());
    });
    return alle;
}

}  // namespace brixtel
