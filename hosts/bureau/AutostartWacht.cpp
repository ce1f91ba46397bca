// SPDX-License-Identifier: MIT
#include "hosts/bureau/AutostartWacht.h"

#include <QFileInfo>
#include <utility>

#include "hosts/bureau/Autostart.h"

namespace brixtel {

AutostartWacht::AutostartWacht(std::function<void()> anders) : anders_(std::move(anders)) {
    const auto zie = [this] { kijk(); };
    QObject::connect(&kijker_, &QFileSystemWatcher::fileChanged, &kijker_, zie);
    QObject::connect(&kijker_, &QFileSystemWatcher::directoryChanged, &kijker_, zie);
    volg();
    aan_ = Autostart::isAan();
}

void AutostartWacht::kijk() {
    volg();
    const bool nu = Autostart::isAan();
    if (std::exchange(aan_, nu) != nu) anders_();
}

// Watches the entry for writes, and its folder for replacement. Where the folder is missing,
// the nearest folder above tells of its making.
void AutostartWacht::volg() {
    const QStringList eerder = kijker_.files() + kijker_.directories();
    if (!eerder.isEmpty()) kijker_.removePaths(eerder);
    QString pad = Autostart::bestand();
    if (pad.isEmpty()) return;
    if (QFileInfo::exists(pad)) kijker_.addPath(pad);
    do
        pad = QFileInfo(pad).path();
    while (!QFileInfo::exists(pad) && !QFileInfo(pad).isRoot());
    kijker_.addPath(pad);
}

}  // namespace brixtel
