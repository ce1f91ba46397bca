// SPDX-License-Identifier: MIT
#include "hosts/saver/Film.h"

#include <unistd.h>

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>

#include "hosts/gedeeld/Reden.h"
#include "hosts/gedeeld/Uitvoer.h"
#include "hosts/saver/Beeldmaker.h"
#include "platform/files/OutputFile.h"
#include "platform/files/ScratchFile.h"
#include "worlds/DrieSoort.h"

namespace brixtel {

namespace {

// The capacity of the pipe, in pictures.
constexpr qint64 kWachtend = 2;

// The start of what ffmpeg says that is kept, in bytes.
constexpr qsizetype kGezegd = 4096;

// The longest reason that is passed on, in letters.
constexpr qsizetype kLangsteReden = 200;

// The number of lines of progress in a file.
constexpr int kRegels = 20;

// Where the command gives no rate.
constexpr int kBeelden = 30;

int beeldenPerSeconde(const Opdracht& opdracht) {
    return opdracht.filmTempo.value_or(kBeelden);
}

struct Vorm {
    QLatin1String einde;
    QLatin1String woorden;  // ffmpeg's words between the input and the file
    bool isVideo = false;   // in kVideo's colours
};

// Both sides are even, since most players need halved colour in both directions. The film
// names its colours, since players take BT.709 for large pictures and BT.601 for small ones.
constexpr QLatin1String kVideo(
    "-vf scale=out_color_matrix=bt709:out_range=tv,pad=ceil(iw/2)*2:ceil(ih/2)*2 -pix_fmt yuv420p "
    "-colorspace bt709 -color_primaries bt709 -color_trc bt709 -color_range tv");

constexpr std::array kVormen{
    Vorm{QLatin1String(".webm"), QLatin1String("-c:v libvpx-vp9 -crf 24 -b:v 0 -row-mt 1 -f webm"),
         true},
    Vorm{QLatin1String(".mp4"),
         QLatin1String("-c:v libx264 -crf 18 -preset slow -movflags +faststart -f mp4"), true},
    Vorm{QLatin1String(".gif"),
         QLatin1String("-vf split[a][b];[a]palettegen[p];[b][p]paletteuse=dither=none "
                       "-loop 0 -f gif")},
    Vorm{QLatin1String(".webp"),
         QLatin1String("-c:v libwebp_anim -quality 55 -compression_level 6 -loop 0 -f webp")},
};

class Ffmpeg {
  public:
    bool start(const QString& programma, const QStringList& woorden) {
        proces_.setStandardOutputFile(QProcess::nullDevice());
        proces_.start(programma, woorden);
        return proces_.waitForStarted(-1);
    }
    // Sends a picture; false once ffmpeg has gone.
    bool neem(const QImage& beeld) {
        const qint64 bytes = beeld.sizeInBytes();
        if (proces_.write(reinterpret_cast<const char*>(beeld.constBits()), bytes) != bytes)
            return false;
        while (proces_.bytesToWrite() > kWachtend * bytes) {
            if (!proces_.waitForBytesWritten(-1)) return false;
            luister();
        }
        return proces_.state() == QProcess::Running;
    }
    // Ends ffmpeg; true if it made the film.
    bool einde() {
        proces_.closeWriteChannel();
        proces_.waitForFinished(-1);
        luister();
        return proces_.exitStatus() == QProcess::NormalExit && proces_.exitCode() == 0;
    }

    // The first line that ffmpeg said, without the part and the address that it begins with;
    // empty for none.
    [[nodiscard]] QString gezegd() const {
        static const QRegularExpression deel(QStringLiteral("^\\[[^\\]]*\\] *"));
        const QString regel = QString::fromLocal8Bit(gezegd_).section(u'\n', 0, 0);
        return QString(regel).remove(deel).trimmed().left(kLangsteReden);
    }

  private:
    // Reads all that ffmpeg says, so that it never waits for a reader.
    void luister() {
        gezegd_ += proces_.readAllStandardError();
        gezegd_.truncate(kGezegd);
    }

    QProcess proces_;
    QByteArray gezegd_;
};

// Reports progress on standard error: in a terminal on one line that is overwritten, and that
// a line break ends; elsewhere on some lines.
class Voortgang {
  public:
    explicit Voortgang(int van) : van_(van) {}
    void meld(int beeld) {
        if (terminal_) {
            std::fprintf(stderr, "\rbeeld %d van %d", beeld, van_);
            open_ = true;
            if (beeld == van_) sluit();
        } else if (isMijlpaal(beeld, van_)) {
            std::fprintf(stderr, "beeld %d van %d\n", beeld, van_);
        }
        std::fflush(stderr);
    }
    // Ends a line that is open.
    void sluit() {
        if (open_) std::fputc('\n', stderr);
        open_ = false;
    }

  private:
    // Whether the picture completes another part of the film.
    static bool isMijlpaal(int beeld, int van) {
        const auto deel = [van](int tot) { return std::int64_t{tot} * kRegels / van; };
        return deel(beeld) != deel(beeld - 1);
    }

    const int van_;
    const bool terminal_ = isatty(STDERR_FILENO) == 1;
    bool open_ = false;
};

QString schrijf(const Opdracht& opdracht, const FilmLengte& lengte, Beeldmaker& maker,
                Ffmpeg& ffmpeg) {
    Voortgang voortgang(lengte.beelden);
    for (int i = 0; i < lengte.beelden; ++i) {
        const double tijd = static_cast<double>(i) / beeldenPerSeconde(opdracht);
        const auto beeld = maker.beeld(lengte.begin + tijd);
        if (!beeld || !ffmpeg.neem(beeld->convertToFormat(QImage::Format_RGB32))) {
            voortgang.sluit();
            if (!beeld) return Beeldmaker::geenBeeld;
            break;
        }
        voortgang.meld(i + 1);
    }
    if (ffmpeg.einde()) return {};
    const QString mis = QStringLiteral("ffmpeg kan '%1' niet maken").arg(opdracht.film);
    const QString waarom = ffmpeg.gezegd();
    return waarom.isEmpty() ? mis : mis + QStringLiteral(": ") + waarom;
}

}  // namespace

FilmLengte filmLengte(const Opdracht& opdracht) {
    FilmLengte lengte{.begin = opdracht.na, .duur = opdracht.seconden.value_or(0.0)};
    const auto soort = soortUitRuw(opdracht.keuze);
    if (opdracht.lus && soort) {
        lengte.begin = std::max(opdracht.na, start(*soort).lus.begin);
        lengte.duur = start(*soort).lus.duur;
    }
    lengte.beelden =
        std::max(1, static_cast<int>(std::lround(lengte.duur * beeldenPerSeconde(opdracht))));
    return lengte;
}

QStringList ffmpegWoorden(const QString& naam, const QString& bestand, QSize maat, int tempo) {
    QStringList woorden =
        QStringLiteral(
            "-hide_banner -loglevel error -xerror -y -f rawvideo -pix_fmt bgr0 -s %1x%2 "
            "-r %3 -i -")
            .arg(maat.width())
            .arg(maat.height())
            .arg(tempo)
            .split(QLatin1Char(' '));
    for (const Vorm& vorm : kVormen) {
        if (!naam.endsWith(vorm.einde, Qt::CaseInsensitive)) continue;
        if (vorm.isVideo) woorden += QString(kVideo).split(QLatin1Char(' '));
        woorden += QString(vorm.woorden).split(QLatin1Char(' '));
    }
    return woorden << QStringLiteral("file:") + bestand;
}

QString maakFilm(const Opdracht& opdracht, const ModuleLader& module) {
    const QString programma = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
    if (programma.isEmpty())
        return QStringLiteral("--film heeft het programma ffmpeg nodig, en dat ontbreekt");
    Beeldmaker maker(opdracht, module);
    if (!maker.mis().isEmpty()) return maker.mis();

    const std::string naam = QFile::encodeName(opdracht.film).toStdString();
    const auto geweigerd = [&](int fout) { return nietTeSchrijven(opdracht.film, fout); };
    if (const int fout = platform::mayReplaceFile(naam); fout != 0) return geweigerd(fout);
    const platform::ScratchFile klad;
    if (klad.error() != 0)
        return QStringLiteral("in de tijdelijke map '%1' is geen bestand te maken: %2")
            .arg(QString::fromStdString(platform::ScratchFile::folder()), reden(klad.error()));
    Ffmpeg ffmpeg;
    if (!ffmpeg.start(programma, ffmpegWoorden(opdracht.film, QString::fromStdString(klad.path()),
                                               maker.maat(), beeldenPerSeconde(opdracht))))
        return QStringLiteral("ffmpeg wil niet starten");
    if (QString mis = schrijf(opdracht, filmLengte(opdracht), maker, ffmpeg); !mis.isEmpty())
        return mis;
    const int fout = klad.copyOver(naam);
    return fout == 0 ? QString() : geweigerd(fout);
}

}  // namespace brixtel
