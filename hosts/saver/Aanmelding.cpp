// SPDX-License-Identifier: MIT
#include "hosts/saver/Aanmelding.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <cerrno>
#include <cstdlib>
#include <functional>
#include <memory>
#include <utility>

#include "hosts/gedeeld/Reden.h"
#include "hosts/saver/ProgrammaLijst.h"

namespace brixtel {

namespace {

using programmalijst::Staat;

constexpr off_t kGrootste = 1 << 20;

// An open file, closed when dropped.
class Open {
  public:
    explicit Open(int nummer) : nummer_(nummer) {}
    ~Open() {
        if (nummer_ >= 0) ::close(nummer_);
    }
    Open(const Open&) = delete;
    Open& operator=(const Open&) = delete;
    [[nodiscard]] int nummer() const { return nummer_; }
    [[nodiscard]] bool isOpen() const { return nummer_ >= 0; }

  private:
    const int nummer_;
};

// An error for the user; caught within this file.
struct Mis {
    QString wat;
};

[[noreturn]] void mis(const char* wat) {
    throw Mis{QString::fromUtf8(wat)};
}

[[noreturn]] void misDoor(const char* wat, int nummer) {
    throw Mis{QString::fromUtf8(wat) + QStringLiteral(": ") + reden(nummer)};
}

// The present settings file.
struct Bestand {
    QByteArray naam;  // behind any links
    bool bestaat = false;
    struct stat stand {};
    QByteArray tekst;
};

QByteArray doelVan(const QByteArray& naam) {
    struct stat stand {};
    if (::lstat(naam.constData(), &stand) != 0) {
        if (errno == ENOENT) return naam;
        misDoor("is niet te bereiken", errno);
    }
    if (!S_ISLNK(stand.st_mode)) return naam;
    const std::unique_ptr<char, decltype(&std::free)> doel(::realpath(naam.constData(), nullptr),
                                                           &std::free);
    if (doel) return doel.get();
    if (errno == ENOENT) mis("is een verwijzing naar iets dat er niet is");
    misDoor("is een verwijzing die niet te volgen is", errno);
}

QByteArray allesUit(int nummer) {
    QByteArray tekst;
    char stuk[16384];
    for (;;) {
        const ssize_t aantal = ::read(nummer, stuk, sizeof stuk);
        if (aantal < 0 && errno == EINTR) continue;
        if (aantal < 0) misDoor("is niet te lezen", errno);
        if (aantal == 0) return tekst;
        tekst.append(stuk, aantal);
        if (tekst.size() > kGrootste) mis("is te groot voor instellingen van xscreensaver");
    }
}

Bestand lees(const QByteArray& naam) {
    Bestand bestand{.naam = doelVan(naam)};
    // Opening a pipe would wait for its writer without end.
    const Open open(::open(bestand.naam.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!open.isOpen()) {
        if (errno == ENOENT) return bestand;
        misDoor("is niet te lezen", errno);
    }
    if (::fstat(open.nummer(), &bestand.stand) != 0) misDoor("is niet te lezen", errno);
    if (S_ISDIR(bestand.stand.st_mode)) mis("is een map, geen bestand");
    if (!S_ISREG(bestand.stand.st_mode)) mis("is geen gewoon bestand");
    if (::faccessat(AT_FDCWD, bestand.naam.constData(), W_OK, AT_EACCESS) != 0)
        misDoor("mag niet veranderd worden", errno);
    bestand.bestaat = true;
    bestand.tekst = allesUit(open.nummer());
    const int regel = programmalijst::onleesbareRegel(bestand.tekst);
    if (regel > 0)
        throw Mis{QStringLiteral("is op regel %1 geen bestand van xscreensaver").arg(regel)};
    return bestand;
}

bool isOngewijzigd(const Bestand& bestand) {
    struct stat nu {};
    if (::stat(bestand.naam.constData(), &nu) != 0) return !bestand.bestaat && errno == ENOENT;
    const struct stat& toen = bestand.stand;
    return bestand.bestaat && nu.st_dev == toen.st_dev && nu.st_ino == toen.st_ino &&
           nu.st_size == toen.st_size && nu.st_mtim.tv_sec == toen.st_mtim.tv_sec &&
           nu.st_mtim.tv_nsec == toen.st_mtim.tv_nsec;
}

void schrijf(int nummer, const QByteArray& tekst) {
    for (qsizetype plaats = 0; plaats < tekst.size();) {
        const ssize_t aantal = ::write(nummer, tekst.constData() + plaats,
                                       static_cast<std::size_t>(tekst.size() - plaats));
        if (aantal < 0 && errno != EINTR) misDoor("is niet te schrijven", errno);
        if (aantal > 0) plaats += aantal;
    }
}

// Gives a new file the mode and owner of the file that it replaces. A file that replaces
// none gets the folder's owner, for a run as root.
void geefRechten(int nummer, const Bestand& naar, const QByteArray& map) {
    struct stat eigen {};
    struct stat voorbeeld = naar.stand;
    if (!naar.bestaat && ::stat(map.constData(), &voorbeeld) != 0)
        misDoor("is niet te schrijven", errno);
    if (::fstat(nummer, &eigen) != 0) misDoor("is niet te schrijven", errno);
    const bool anders = naar.bestaat
                            ? eigen.st_uid != voorbeeld.st_uid || eigen.st_gid != voorbeeld.st_gid
                            : eigen.st_uid != voorbeeld.st_uid && ::geteuid() == 0;
    if (anders && ::fchown(nummer, voorbeeld.st_uid, voorbeeld.st_gid) != 0)
        misDoor("is van een ander", errno);
    const mode_t rechten = naar.bestaat ? naar.stand.st_mode & 07777 : 0644;
    if (::fchmod(nummer, rechten) != 0) misDoor("is niet te schrijven", errno);
}

// Puts `tekst` at `naam` in one step, after a last check that the file may be replaced.
void vervang(const QByteArray& naam, const QByteArray& tekst, const Bestand& naar,
             const std::function<void()>& kijkNog) {
    const QByteArray map = naam.left(naam.lastIndexOf('/'));
    QByteArray tijdelijk = naam + ".XXXXXX";
    const Open open(::mkostemp(tijdelijk.data(), O_CLOEXEC));
    if (!open.isOpen()) misDoor("kan niet vervangen worden", errno);
    try {
        schrijf(open.nummer(), tekst);
        geefRechten(open.nummer(), naar, map);
        if (::fsync(open.nummer()) != 0) misDoor("is niet te schrijven", errno);
        kijkNog();
        if (::rename(tijdelijk.constData(), naam.constData()) != 0)
            misDoor("kan niet vervangen worden", errno);
    } catch (const Mis&) {
        ::unlink(tijdelijk.constData());
        throw;
    }
}

void wissel(const QByteArray& naam, const Bestand& bestand, const QByteArray& tekst) {
    const auto kijk = [&] {
        if (!isOngewijzigd(bestand)) mis("werd tegelijk door een ander veranderd");
    };
    if (programmalijst::isLeegNieuw(tekst)) {
        kijk();
        if (::unlink(bestand.naam.constData()) != 0) misDoor("kan niet weg", errno);
        return;
    }
    if (bestand.bestaat) vervang(naam + ".voor-brixtel", bestand.tekst, bestand, [] {});
    vervang(bestand.naam, tekst, bestand, kijk);
}

// Reads the file and carries out the result of `doe`.
Bericht metBestand(const QString& thuis,
                   const std::function<QString(const QByteArray& naam, const Bestand&)>& doe) {
    if (thuis.isEmpty()) return {false, QStringLiteral("de thuismap is niet bekend: HOME is leeg")};
    const QByteArray naam = QFile::encodeName(thuis) + "/.xscreensaver";
    const Open slot(
        ::open(QFile::encodeName(thuis).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // Where a folder cannot be locked, the last check before the change is the only guard.
    if (slot.isOpen()) ::flock(slot.nummer(), LOCK_EX);
    try {
        return {true, doe(naam, lees(naam))};
    } catch (const Mis& fout) {
        return {false, QStringLiteral("'%1' %2; er is niets veranderd")
                           .arg(QFile::decodeName(naam), fout.wat)};
    }
}

}  // namespace

Bericht meldAan(const QString& thuis, const QByteArray& opdracht) {
    if (opdracht.isEmpty())
        return {false,
                QStringLiteral("xscreensaver kan een programma op deze plaats niet starten")};
    return metBestand(thuis, [&](const QByteArray& naam, const Bestand& bestand) {
        switch (programmalijst::staat(bestand.tekst)) {
            case Staat::Aanwezig:
                return QStringLiteral("Brixtel stond al in de lijst van xscreensaver");
            case Staat::Uitgezet:
                return QStringLiteral(
                    "Brixtel stond al in de lijst van xscreensaver, maar is daar uitgezet");
            case Staat::Afwezig:
                break;
        }
        wissel(naam, bestand,
               bestand.bestaat ? programmalijst::metOns(bestand.tekst, opdracht)
                               : programmalijst::nieuw(opdracht));
        return QStringLiteral("Brixtel staat nu in de lijst van xscreensaver");
    });
}

Bericht meldAf(const QString& thuis) {
    return metBestand(thuis, [](const QByteArray& naam, const Bestand& bestand) {
        const QByteArray tekst = programmalijst::zonderOns(bestand.tekst);
        if (tekst == bestand.tekst)
            return QStringLiteral("Brixtel stond niet in de lijst van xscreensaver");
        wissel(naam, bestand, tekst);
        return QStringLiteral("Brixtel staat niet meer in de lijst van xscreensaver");
    });
}

QByteArray opdrachtVoorGastheer(const QString& programma) {
    static const QRegularExpression gewoon(QStringLiteral("^[A-Za-z0-9/._+,@%~-]+$"));
    static const QRegularExpression onmogelijk(QStringLiteral("['\\\\\\p{Cc}]"));
    const QString eigen = QFileInfo(programma).canonicalFilePath();
    const QString einde = QStringLiteral(" --root");
    for (const char* map : {"/usr/libexec/xscreensaver", "/usr/bin", "/usr/local/bin"}) {
        const QString daar = QLatin1String(map) + QStringLiteral("/brixtel-saver");
        if (!eigen.isEmpty() && QFileInfo(daar).canonicalFilePath() == eigen)
            return QByteArrayLiteral("brixtel-saver --root");
    }
    if (eigen.isEmpty() || eigen.contains(onmogelijk)) return {};
    const QString woord = eigen.contains(gewoon) ? eigen : u'\'' + eigen + u'\'';
    return QFile::encodeName(woord + einde);
}

}  // namespace brixtel
