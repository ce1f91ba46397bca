// SPDX-License-Identifier: MIT
#include "hosts/saver/Instellingen.h"

#include <QCoreApplication>
#include <cerrno>
#include <cstdio>
#include <optional>

#include "hosts/gedeeld/Signalen.h"
#include "hosts/saver/PngBestand.h"
#include "platform/window/SheetOnWindow.h"
#include "platform/window/systems/DialogFrame.h"

namespace brixtel {

QString toonInstellingen(const Opdracht& opdracht, const ModuleLader& module, int& doorSignaal) {
    platform::SystemClock klok;
    auto toeval = platform::RandomSource::fromSystem();
    platform::DistributedNotificationCenter geenBus{QString()};
    const auto view = module.maak({QPointF(0, 0), QSizeF(opdracht.maat)}, true,
                                  {.clock = klok, .random = toeval, .notifications = geenBus});
    const auto blad = view->hasConfigureSheet() ? view->configureSheet() : nullptr;
    if (!blad) return QStringLiteral("de module BrixtelInstellingen.so ontbreekt");
    if (!opdracht.instellingen.isEmpty()) return schrijfPng(blad->picture(), opdracht.instellingen);

    if (opdracht.boven && !platform::placeOf(*opdracht.boven))
        return QStringLiteral("er is geen venster %1").arg(opdracht.boven->text);
    // quit() would ask every window first, and this window refuses.
    const Signalen signalen([&](int signaal) {
        doorSignaal = signaal;
        QCoreApplication::exit();
    });
    blad->onDismissed([] { QCoreApplication::exit(); });
    std::optional<platform::SheetOnWindow> bij;
    if (opdracht.boven)
        bij.emplace(blad, *opdracht.boven);
    else
        blad->showAbove({});
    QCoreApplication::exec();
    blad->onDismissed({});
    // The program that started this process reads the picked mode here. A sheet that outlives
    // that program has no reader; the sheet has stored the mode anyway.
    const QByteArray gekozen = view->pickedInSheet().toUtf8();
    if (gekozen.isEmpty()) return {};
    const bool gedrukt = std::printf("%s\n", gekozen.constData()) > 0;
    if (gedrukt && std::fflush(stdout) == 0) return {};
    if (errno == EPIPE) return {};
    return QStringLiteral("de keuze kan niet afgedrukt worden");
}

}  // namespace brixtel
