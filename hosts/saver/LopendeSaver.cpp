// SPDX-License-Identifier: MIT
#include "hosts/saver/LopendeSaver.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <QByteArray>
#include <QFile>
#include <QRegularExpression>

namespace brixtel {

namespace {

// The C library's header has these for C alone.
int openProces(pid_t wie) {
    return static_cast<int>(syscall(SYS_pidfd_open, wie, 0));
}
bool stuur(int proces, int signaal) {
    return syscall(SYS_pidfd_send_signal, proces, signaal, nullptr, 0) == 0;
}

// The number of the process that wrote the file; 0 for none.
pid_t nummerIn(int bestand) {
    char tekst[32] = {};
    const ssize_t gelezen = pread(bestand, tekst, sizeof tekst - 1, 0);
    return gelezen > 0 ? QByteArray(tekst).trimmed().toInt() : 0;
}

}  // namespace

LopendeSaver::LopendeSaver(const QString& map, const QString& scherm) {
    static const QRegularExpression vreemd(QStringLiteral("[^A-Za-z0-9.-]"));
    const QString naam = QString(scherm).replace(vreemd, QStringLiteral("_"));
    if (!map.isEmpty() && !naam.isEmpty())
        pad_ = QFile::encodeName(map + QStringLiteral("/brixtel-saver-") + naam);
}

LopendeSaver::~LopendeSaver() {
    laatLos();
    sluit();
}

void LopendeSaver::sluit() {
    if (bestand_ >= 0) close(bestand_);
    bestand_ = -1;
}

// Whether the open file is the one of that name still: its holder may have removed it.
bool LopendeSaver::isOpPad() const {
    struct stat open {
    }, opPad{};
    return fstat(bestand_, &open) == 0 && lstat(pad_.constData(), &opPad) == 0 &&
           open.st_dev == opPad.st_dev && open.st_ino == opPad.st_ino;
}

LopendeSaver::Greep LopendeSaver::grijp() {
    if (heeft_) return Greep::Gehad;
    // A lock on a removed file keeps nobody out.
    for (;;) {
        sluit();
        if (pad_.isEmpty()) return Greep::Geen;
        bestand_ = ::open(pad_.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
        if (bestand_ < 0) return Greep::Geen;
        if (flock(bestand_, LOCK_EX | LOCK_NB) != 0) return Greep::Bezet;
        heeft_ = isOpPad();
        // The number of a saver that was killed may be another process's by now.
        if (heeft_) {
            [[maybe_unused]] const int leeg = ftruncate(bestand_, 0);
            return Greep::Gehad;
        }
    }
}

bool LopendeSaver::neem() {
    const Greep greep = grijp();
    if (greep != Greep::Gehad) return greep == Greep::Geen;
    const QByteArray nummer = QByteArray::number(getpid()) + '\n';
    // A saver that cannot write its number is not found by another call, and shows all the
    // same.
    [[maybe_unused]] const auto geschreven =
        pwrite(bestand_, nummer.constData(), std::size_t(nummer.size()), 0);
    return true;
}

void LopendeSaver::laatLos() {
    if (!heeft_) return;
    unlink(pad_.constData());
    heeft_ = false;
    sluit();
}

QString LopendeSaver::beeindig(std::chrono::milliseconds geduld,
                               const std::function<void()>& zonder) {
    const Greep greep = grijp();
    if (greep == Greep::Gehad && zonder) zonder();
    laatLos();
    if (greep != Greep::Bezet) return {};
    const pid_t wie = nummerIn(bestand_);
    // The holder may not have written its number yet.
    if (wie <= 1 && zonder) {
        zonder();
        return beeindig(geduld, {});
    }
    const int proces = wie > 1 ? openProces(wie) : -1;
    // The saver may have ended meanwhile.
    if (proces < 0) return {};
    // The number may belong to another process if the lock is free.
    const bool isHet = flock(bestand_, LOCK_EX | LOCK_NB) != 0;
    pollfd einde{.fd = proces, .events = POLLIN, .revents = 0};
    const bool weg = !isHet || (stuur(proces, SIGTERM) &&
                                poll(&einde, 1, static_cast<int>(geduld.count())) == 1);
    close(proces);
    return weg ? QString() : QStringLiteral("de schermbeveiliging houdt niet op");
}

}  // namespace brixtel
