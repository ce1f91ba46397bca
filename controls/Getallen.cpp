// SPDX-License-Identifier: MIT
#include "controls/Getallen.h"

#include <QLocale>
#include <algorithm>
#include <cmath>

#include "platform/time/Require.h"

namespace brixtel {

QString bxGetal(double waarde, int decimalen) {
    static const QLocale nederlands(QLocale::Dutch, QLocale::Netherlands);
    return nederlands.toString(waarde, 'f', std::max(0, decimalen));
}

QString bxProcent(double fractie) {
    const double procent = std::round(fractie * 100.0);
    platform::require(procent >= -0x1p63 && procent < 0x1p63);  // NaN fails as well
    return QString::number(static_cast<qint64>(procent)) + u'%';
}

}  // namespace brixtel
