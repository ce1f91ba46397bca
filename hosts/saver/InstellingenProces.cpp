// SPDX-License-Identifier: MIT
#include "hosts/saver/InstellingenProces.h"

#include <signal.h>
#include <sys/prctl.h>

#include <utility>

namespace brixtel {

InstellingenProces::InstellingenProces(const QString& programma, QString bus)
    : bus_(std::move(bus)) {
    proces_.setProgram(programma);
    proces_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    proces_.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    const auto meld = [this](bool goed) {
        const Afloop afloop{
            .goed = goed, .gekozen = QString::fromUtf8(proces_.readAllStandardOutput().trimmed())};
        if (const auto klaar = std::exchange(klaar_, nullptr)) klaar(afloop);
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

void InstellingenProces::toon(const QStringList& argumenten,
                              std::function<void(const Afloop&)> klaar) {
    if (isOpen()) return;
    klaar_ = std::move(klaar);
    QProcessEnvironment omgeving = QProcessEnvironment::systemEnvironment();
    // This program may have hidden the bus from itself.
    omgeving.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus_);
    proces_.setProcessEnvironment(omgeving);
    proces_.setArguments(argumenten);
    proces_.start();
}

}  // namespace brixtel
