// SPDX-License-Identifier: MIT
#include "controls/SchuifFocus.h"

#include <QJSEngine>

namespace brixtel {

namespace {

constexpr int kGroteStap = 10;

int richting(int toets) {
    switch (toets) {
        case Qt::Key_Right:
        case Qt::Key_Up:
            return 1;
        case Qt::Key_Left:
        case Qt::Key_Down:
            return -1;
        default:
            return 0;
    }
}

}  // namespace

SchuifFocus& SchuifFocus::gedeeld() {
    static SchuifFocus focus;
    return focus;
}

SchuifFocus* SchuifFocus::create(QQmlEngine*, QJSEngine*) {
    QJSEngine::setObjectOwnership(&gedeeld(), QJSEngine::CppOwnership);
    return &gedeeld();
}

void SchuifFocus::neem(const QString& naam, Verzet verzet) {
    verzet_ = std::move(verzet);
    if (actief_ == naam) return;
    actief_ = naam;
    Q_EMIT actiefGewijzigd();
}

void SchuifFocus::laatLos(const std::optional<QString>& naam) {
    if (naam && actief_ && *actief_ != *naam) return;
    verzet_ = nullptr;
    if (!actief_) return;
    actief_.reset();
    Q_EMIT actiefGewijzigd();
}

bool SchuifFocus::toets(int toets, int bijtoetsen) {
    const int kant = richting(toets);
    const int anders = bijtoetsen & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    if (kant == 0 || anders != 0 || !verzet_) return false;
    const Verzet verzet = verzet_;  // a copy: the call may give the keyboard up
    verzet(kant * (bijtoetsen & Qt::ShiftModifier ? kGroteStap : 1));
    return true;
}

}  // namespace brixtel
