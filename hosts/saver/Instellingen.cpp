// SPDX-License-Identifier: MIT
#include "hosts/saver/Instellingen.h"

#include <QCoreApplication>
#include <QSaveFile>
#include <optional>

#include "hosts/gedeeld/Signalen.h"
#include "platform/window/SheetOnWindow.h"

namespace brixtel {

namespace {

QString schrijf(const QImage& beeld, const QString& naam) {
    QSaveFile bestand(naam);
    if (bestand.open(QIODevice::WriteOnly) && beeld.save(&bestand, "PNG") && bestand.commit())
        return {};
    return QStringLiteral("'%1' kan niet geschreven worden").arg(naam);
}

}  // namespace

QString toonInstellingen(const Opdracht& opdracht, const ModuleLader& module, int& doorSignaal) {
    platform::SystemClock klok;
    auto toeval = platform::RandomSource::fromSystem();
    platform::DistributedNotificationCenter geenBus{QString()};
    const auto view = module.maak({QPointF(0, 0), QSizeF(opdracht.maat)}, true,
                                  {.clock = klok, .random = toeval, .notifications = geenBus});
    const auto blad = view->configureSheet();
    if (!blad) return QStringLiteral("de module BrixtelInstellingen.so ontbreekt");
    if (!opdracht.instellingen.isEmpty()) return schrijf(blad->picture(), opdracht.instellingen);

    // Not quit(), which asks every window first; this one does not close for that.
    const Signalen signalen([&](int signaal) {
        doorSignaal = signaal;
        QCoreApplication::exit();
    });
    blad->onOrderedOut([] { QCoreApplication::exit(); });
    std::optional<platform::SheetOnWindow> bij;
    if (opdracht.boven)
        bij.emplace(blad, *opdracht.boven);
    else
        blad->orderFront({});
    QCoreApplication::exec();
    blad->onOrderedOut({});
    return {};
}

}  // namespace brixtel
