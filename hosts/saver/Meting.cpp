// SPDX-License-Identifier: MIT
#include "hosts/saver/Meting.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cmath>

#include "platform/time/ProcessUsage.h"

namespace brixtel {

namespace {

constexpr std::size_t kMeesteMonsters = 4096;

double afgerond(double waarde, double op) {
    return std::round(waarde * op) / op;
}

}  // namespace

Meting::Meting(platform::MediaClock& klok, double begin, Stand stand)
    : klok_(klok), begin_(begin), start_(klok.now()), stand_(std::move(stand)) {
    monsters_.reserve(kMeesteMonsters);
    monsters_.push_back({start_, 0.0});
    timer_ = platform::Timer(klok, {.interval = 0.5, .repeats = true}, [this] { bemonster(); });
}

void Meting::bemonster() {
    if (++blik_ % elke_ != 0) return;
    // A long run halves its sampling rate, also for the samples taken so far.
    if (monsters_.size() == kMeesteMonsters) {
        for (std::size_t i = 0; i < kMeesteMonsters / 2; ++i)
            monsters_[i] = monsters_[2 * i];
        monsters_.resize(kMeesteMonsters / 2);
        elke_ *= 2;
    }
    monsters_.push_back({klok_.now(), static_cast<double>(stand_().frames)});
}

double Meting::perSeconde(const Monster& laatste) const {
    const double helft = (start_ + laatste.tijd) / 2.0;
    const auto van = std::find_if(monsters_.rbegin(), monsters_.rend(),
                                  [helft](const Monster& m) { return m.tijd <= helft; });
    if (van == monsters_.rend() || laatste.tijd <= van->tijd) return 0.0;
    return (laatste.beelden - van->beelden) / (laatste.tijd - van->tijd);
}

QByteArray Meting::regel(const QString& keuze) const {
    const platform::WindowStatistics stand = stand_();
    const platform::ProcessUsage verbruik = platform::processUsage();
    const Monster laatste{klok_.now(), static_cast<double>(stand.frames)};
    const QJsonObject velden{
        {QStringLiteral("keuze"), keuze},
        {QStringLiteral("beelden"), laatste.beelden},
        {QStringLiteral("seconden"), afgerond(laatste.tijd - start_, 1000)},
        {QStringLiteral("beelden_per_seconde"), afgerond(perSeconde(laatste), 100)},
        {QStringLiteral("cpu_seconden"), afgerond(verbruik.cpuSeconds, 1000)},
        {QStringLiteral("eerste_beeld_ms"),
         stand.firstFrameTime ? QJsonValue(afgerond((*stand.firstFrameTime - begin_) * 1000, 1))
                              : QJsonValue()},
        {QStringLiteral("geheugen_mb"), afgerond(verbruik.peakMemoryMb, 10)},
        {QStringLiteral("tekenaar"), stand.drawer},
        {QStringLiteral("sport"), stand.rung},
    };
    return QJsonDocument(velden).toJson(QJsonDocument::Compact) + '\n';
}

}  // namespace brixtel
