// SPDX-License-Identifier: MIT
// Runs the tests that are written in QML.
#include <QtQuickTest/quicktest.h>

#include "controls/BX.h"

class Opstelling : public QObject {
    Q_OBJECT

  public Q_SLOTS:
    void qmlEngineAvailable(QQmlEngine* machine) { brixtel::bxBereid(*machine); }
};

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    Opstelling opstelling;
    return quick_test_main_with_setup(argc, argv, "controls", nullptr, &opstelling);
}

#include "qml_hoofd.moc"
