// SPDX-License-Identifier: MIT
#include "hosts/saver/InstellingenProces.h"

#include <signal.h>
#include <sys/prctl.h>

#include <QCoreApplication>
#include <utility>

namespace brixtel {

InstellingenProces::InstellingenProces(QString bus) : bus_(std::move(bus)) {
    proces_.setProgram(QCoreApplication::applicationFilePath());
    proces_.setProcessChannelMode(QProcess::ForwardedChannels);
    proces_.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    const auto meld = [this](bool gekozen) {
        if (const auto klaar = std::exchange(klaar_, nullptr)) klaar(gekozen);
    };
    QObject::connect(&proces_, &QProcess::finished, &proces_,
                     [meld](int uitgang, QProcess::ExitStatus hoe) {
                         meld(hoe == QProcess::NormalExit && uitgang == 0);
                     });
    QObject::connect(&proces_, &QProcess::errorOccurred, &proces_,
                     [meld](QProcess::ProcessError fout) {
                         if (fout == QProcess::FailedToStart) meld(false);
                     });
}

InstellingenProces::~InstellingenProces() {
    klaar_ = nullptr;
    if (!isOpen()) return;
    proces_.kill();
    proces_.waitForFinished();
}

void InstellingenProces::toon(std::uint32_t boven, std::function<void(bool)> klaar) {
    if (isOpen()) return;
    klaar_ = std::move(klaar);
    QProcessEnvironment omgeving = QProcessEnvironment::systemEnvironment();
    omgeving.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus_);
    proces_.setProcessEnvironment(omgeving);
    proces_.setArguments(
        {QStringLiteral("--instellingen"), QStringLiteral("--boven=%1").arg(boven)});
    proces_.start();
}

}  // namespace brixtel
