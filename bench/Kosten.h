// SPDX-License-Identifier: MIT
// The cost of processes, as the kernel counts it.
#pragma once

#include <unistd.h>

#include <QFile>

// User and system time of a process so far, in seconds (fields 14 and 15 of proc(5)).
inline double cpuVan(qint64 proces) {
    QFile bestand(QStringLiteral("/proc/%1/stat").arg(proces));
    if (!bestand.open(QIODevice::ReadOnly)) return 0.0;
    const QByteArray regel = bestand.readAll();
    const QList<QByteArray> velden = regel.mid(regel.lastIndexOf(')') + 2).split(' ');
    return (velden[11].toDouble() + velden[12].toDouble()) /
           static_cast<double>(sysconf(_SC_CLK_TCK));
}
