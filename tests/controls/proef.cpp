// SPDX-License-Identifier: MIT
// Shows the QML file it is given, as a program that is built with the kit would.
#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickView>

#include "controls/BX.h"

int main(int argc, char** argv) {
    const QGuiApplication programma(argc, argv);
    QQuickView venster;
    brixtel::bxBereid(*venster.engine());
    venster.setSource(QUrl::fromLocalFile(QString::fromLocal8Bit(argv[1])));
    if (venster.status() != QQuickView::Ready) return 1;
    venster.show();
    return QGuiApplication::exec();
}
