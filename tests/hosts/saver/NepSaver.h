// SPDX-License-Identifier: MIT
// A stand-in for the saver's program: each start is a sheet that stays until the test
// ends it.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QTemporaryDir>

#include "tests/support/Until.h"

namespace brixtel {

class NepSaver {
  public:
    NepSaver() {
        mkfifo(QFile::encodeName(in("einde")).constData(), 0600);
        QFile programma(in("brixtel-saver"));
        if (!programma.open(QIODevice::WriteOnly)) return;
        programma.write(kProgramma);
        programma.setPermissions(programma.permissions() | QFile::ExeOwner);
    }
    ~NepSaver() { static_cast<void>(zeg("- 0\n")); }
    NepSaver(const NepSaver&) = delete;
    NepSaver& operator=(const NepSaver&) = delete;

    [[nodiscard]] QString programma() const { return in("brixtel-saver"); }
    // A line for each start: what it was started with.
    [[nodiscard]] QByteArray woorden() const { return inhoud("woorden"); }
    [[nodiscard]] int keren() const { return int(woorden().count('\n')); }

    // Whether a sheet waits for its end; it then ends with status 9.
    [[nodiscard]] bool wacht() const { return zeg({}); }
    // Ends the sheet that is open, or comes, with that mode printed ("-" for none) and
    // that exit status. Whether there was one.
    [[nodiscard]] bool eindig(const char* keuze, int uitgang = 0) const {
        const QByteArray regel = QByteArray(keuze) + ' ' + QByteArray::number(uitgang) + '\n';
        const auto voor = inhoud("klaar").size();
        return until([&] { return zeg(regel); }) &&
               until([&] { return inhoud("klaar").size() > voor; });
    }

  private:
    static constexpr const char* kProgramma = R"sh(#!/bin/sh
cd "$(dirname "$0")" || exit 9
echo "$*" >> woorden
read -r keuze uitgang < einde || exit 9
[ "$keuze" = - ] || echo "$keuze"
echo >> klaar
exit "$uitgang"
)sh";

    [[nodiscard]] QString in(const char* naam) const { return map_.filePath(QLatin1String(naam)); }
    [[nodiscard]] QByteArray inhoud(const char* naam) const {
        QFile bestand(in(naam));
        return bestand.open(QIODevice::ReadOnly) ? bestand.readAll() : QByteArray();
    }
    [[nodiscard]] bool zeg(const QByteArray& regel) const {
        const int pijp =
            open(QFile::encodeName(in("einde")).constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
        if (pijp < 0) return false;
        const bool goed = write(pijp, regel.constData(), std::size_t(regel.size())) == regel.size();
        close(pijp);
        return goed;
    }

    const QTemporaryDir map_;
};

}  // namespace brixtel
