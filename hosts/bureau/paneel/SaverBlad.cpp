// SPDX-License-Identifier: MIT
#include "hosts/bureau/paneel/SaverBlad.h"

#include <signal.h>
#include <sys/prctl.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <utility>

namespace brixtel {

namespace {

QString saver() {
    const QString naam = QStringLiteral("brixtel-saver");
    const QString ernaast = QCoreApplication::applicationDirPath() + u'/' + naam;
    return QFileInfo(ernaast).isExecutable() ? ernaast : naam;
}

}  // namespace

SaverBlad::SaverBlad(QString bus) : bus_(std::move(bus)) {
    proces_.setProcessChannelMode(QProcess::ForwardedChannels);
    proces_.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    const auto meld = [this](bool getoond) {
        if (const auto klaar = std::exchange(klaar_, nullptr)) klaar(getoond);
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

SaverBlad::~SaverBlad() {
    klaar_ = nullptr;
    if (!isOpen()) return;
    proces_.kill();
    proces_.waitForFinished();
}

void SaverBlad::toon(std::function<void(bool)> klaar) {
    if (isOpen()) return;
    klaar_ = std::move(klaar);
    QProcessEnvironment omgeving = QProcessEnvironment::systemEnvironment();
    // The owner has kept it from itself.
    omgeving.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus_);
    proces_.setProcessEnvironment(omgeving);
    proces_.setProgram(saver());
    proces_.setArguments({QStringLiteral("--instellingen")});
    proces_.start();
}

}  // namespace brixtel
