// SPDX-License-Identifier: MIT
#include "hosts/saver/ProgrammaLijst.h"

#include <QList>
#include <algorithm>
#include <optional>

namespace brixtel::programmalijst {

namespace {

const QByteArray kKop(
    "# Instellingen van xscreensaver, gemaakt door brixtel-saver --aanmelden\n\n");
const QByteArray kMerk("# Toegevoegd door brixtel-saver --aanmelden\n");
const QByteArray kSleutel("programs:\t\\\n");
// The separator ends the program before ours. The separator may make an empty program, which
// the host skips.
const QByteArray kScheiding(" \\n\\\n");

QByteArray onzeRegel(const QByteArray& opdracht) {
    return "  \"Brixtel\"  " + opdracht;
}

bool isWit(char teken) {
    return teken == ' ' || (teken >= '\t' && teken <= '\r');
}

// A line as the host reads it: up to a line feed without a backslash.
struct Regel {
    qsizetype begin;
    qsizetype einde;    // before its line end
    qsizetype volgend;  // behind it
    int nummer;
};

struct Stuk {
    qsizetype begin;
    qsizetype einde;
};

QList<Regel> regels(const QByteArray& tekst) {
    QList<Regel> alle;
    int nummer = 1;
    for (qsizetype begin = 0; begin < tekst.size();) {
        const int eerste = nummer;
        qsizetype lengte = 0;  // of the line as read by the host so far
        qsizetype vanaf = begin;
        qsizetype nieuweRegel = 0;
        for (;; vanaf = nieuweRegel + 1) {
            nieuweRegel = tekst.indexOf('\n', vanaf);
            if (nieuweRegel < 0) break;
            ++nummer;
            lengte += nieuweRegel + 1 - vanaf;
            const bool gaatDoor =
                nieuweRegel > vanaf && tekst[nieuweRegel - 1] == '\\' && lengte > 2;
            if (!gaatDoor) break;
            lengte -= 2;
        }
        const qsizetype einde = nieuweRegel < 0 ? tekst.size() : nieuweRegel;
        const qsizetype volgend = nieuweRegel < 0 ? tekst.size() : nieuweRegel + 1;
        alle.push_back({begin, einde, volgend, eerste});
        begin = volgend;
    }
    return alle;
}

// The place of the line's first character of meaning; `einde` for a blank line or a comment.
qsizetype sleutelBegin(const QByteArray& tekst, const Regel& regel) {
    qsizetype plaats = regel.begin;
    while (plaats < regel.einde && isWit(tekst[plaats]))
        ++plaats;
    if (plaats == regel.einde) return plaats;
    const char eerste = tekst[plaats];
    const bool opmerking = eerste == '#' || eerste == '!' || eerste == ';';
    const bool leeg = eerste == '\\' && plaats + 1 == regel.einde;
    return opmerking || leeg ? regel.einde : plaats;
}

bool isLetter(char teken) {
    return (teken >= 'a' && teken <= 'z') || (teken >= 'A' && teken <= 'Z');
}

// The value of the setting `programs`, if the line holds it.
std::optional<Stuk> programmas(const QByteArray& tekst, const Regel& regel) {
    static const QByteArray sleutel("programs:");
    const qsizetype begin = sleutelBegin(tekst, regel);
    if (begin + sleutel.size() > regel.einde) return std::nullopt;
    if (tekst.mid(begin, sleutel.size()).toLower() != sleutel) return std::nullopt;
    return Stuk{begin + sleutel.size(), regel.einde};
}

enum class Soort { Wit, Vervolg, Einde, Teken };

// The token at `plaats` in a value, and its number of bytes.
std::pair<Soort, qsizetype> lees(const QByteArray& tekst, qsizetype plaats, qsizetype einde) {
    if (isWit(tekst[plaats])) return {Soort::Wit, 1};
    if (tekst[plaats] != '\\' || plaats + 1 == einde) return {Soort::Teken, 1};
    switch (tekst[plaats + 1]) {
        case '\n':
            return {Soort::Vervolg, 2};
        case 'n':
            return {Soort::Einde, 2};
        default:
            return {Soort::Teken, 2};
    }
}

// The programs of a value: each from its first character to behind its last.
QList<Stuk> lijst(const QByteArray& tekst, const Stuk& waarde) {
    QList<Stuk> alle;
    std::optional<Stuk> nu;
    for (qsizetype plaats = waarde.begin; plaats < waarde.einde;) {
        const auto [soort, lengte] = lees(tekst, plaats, waarde.einde);
        if (soort == Soort::Teken) nu = Stuk{nu ? nu->begin : plaats, plaats + lengte};
        if (soort == Soort::Einde && nu) {
            alle.push_back(*nu);
            nu.reset();
        }
        plaats += lengte;
    }
    if (nu) alle.push_back(*nu);
    return alle;
}

// A program as the host reads it, without line feeds and escapes.
QByteArray ontcijferd(const QByteArray& tekst, const Stuk& stuk) {
    QByteArray uit;
    for (qsizetype plaats = stuk.begin; plaats < stuk.einde;) {
        const auto [soort, lengte] = lees(tekst, plaats, stuk.einde);
        if (soort != Soort::Vervolg) uit += tekst[plaats + lengte - 1];
        plaats += lengte;
    }
    return uit;
}

// The file name of the program that a command runs.
QByteArray programmaVan(QByteArray opdracht) {
    const char eerste = opdracht.isEmpty() ? '\0' : opdracht[0];
    const bool citaat = eerste == '\'' || eerste == '"';
    if (citaat) opdracht.remove(0, 1);
    const auto slot = std::find_if(opdracht.begin(), opdracht.end(), [&](char teken) {
        return citaat ? teken == eerste : isWit(teken);
    });
    opdracht.truncate(slot - opdracht.begin());
    return opdracht.mid(opdracht.lastIndexOf('/') + 1);
}

// The state of our program; nothing for another program. The host's form: [-] [visual:]
// ["name"] command.
std::optional<Staat> onzeStaat(QByteArray programma) {
    const bool uit = programma.startsWith('-');
    if (uit) programma.remove(0, 1);
    programma = programma.trimmed();
    const auto dubbel = std::find_if(programma.begin(), programma.end(), [](char teken) {
        return teken == ':' || teken == '"' || isWit(teken);
    });
    if (dubbel != programma.end() && *dubbel == ':')
        programma = programma.mid(dubbel - programma.begin() + 1).trimmed();
    if (programma.startsWith('"')) {
        const qsizetype slot = programma.indexOf('"', 1);
        programma = slot < 0 ? QByteArray() : programma.mid(slot + 1).trimmed();
    }
    if (programmaVan(programma) != "brixtel-saver") return std::nullopt;
    return uit ? Staat::Uitgezet : Staat::Aanwezig;
}

std::optional<Stuk> onsStuk(const QByteArray& tekst, const Stuk& waarde) {
    for (const Stuk& stuk : lijst(tekst, waarde))
        if (onzeStaat(ontcijferd(tekst, stuk))) return stuk;
    return std::nullopt;
}

std::optional<Stuk> laatsteWaarde(const QByteArray& tekst) {
    std::optional<Stuk> gevonden;
    for (const Regel& regel : regels(tekst))
        if (const auto waarde = programmas(tekst, regel)) gevonden = waarde;
    return gevonden;
}

// Whether the file ends within the value, with a backslash that escapes nothing. It would
// escape what is put behind it.
bool eindigtOpen(const QByteArray& tekst, const Stuk& waarde) {
    qsizetype eerste = waarde.einde;
    while (eerste > waarde.begin && tekst[eerste - 1] == '\\')
        --eerste;
    return waarde.einde == tekst.size() && (waarde.einde - eerste) % 2 == 1;
}

// The begin of the line that contains `plaats`.
qsizetype regelBegin(const QByteArray& tekst, qsizetype plaats) {
    return plaats == 0 ? 0 : tekst.lastIndexOf('\n', plaats - 1) + 1;
}

// The part of a value to remove for our program.
Stuk weg(const QByteArray& tekst, const Stuk& waarde, const Stuk& ons) {
    qsizetype na = ons.einde;
    while (na < waarde.einde && isWit(tekst[na]))
        ++na;
    const qsizetype voor = regelBegin(tekst, ons.begin);
    const bool vooraan =
        voor > waarde.begin && tekst.mid(voor, ons.begin - voor).trimmed().isEmpty();
    if (na < waarde.einde && lees(tekst, na, waarde.einde).first == Soort::Einde) {
        na += 2;
        const bool heleRegel =
            vooraan && na < waarde.einde && lees(tekst, na, waarde.einde).first == Soort::Vervolg;
        return heleRegel ? Stuk{voor, na + 2} : Stuk{ons.begin, na};
    }
    const qsizetype scheiding = voor - kScheiding.size();
    const bool aangehangen = vooraan && scheiding >= waarde.begin &&
                             tekst.mid(scheiding, kScheiding.size()) == kScheiding;
    return {aangehangen ? scheiding : ons.begin, ons.einde};
}

}  // namespace

int onleesbareRegel(const QByteArray& tekst) {
    for (const Regel& regel : regels(tekst)) {
        const qsizetype begin = sleutelBegin(tekst, regel);
        const auto raar =
            std::find_if(tekst.begin() + regel.begin, tekst.begin() + regel.einde, [](char teken) {
                return (static_cast<unsigned char>(teken) < ' ' && !isWit(teken)) || teken == 127;
            });
        if (raar != tekst.begin() + regel.einde) return regel.nummer;
        if (begin == regel.einde) continue;
        if (const auto waarde = programmas(tekst, regel); waarde && eindigtOpen(tekst, *waarde))
            return regel.nummer;
        qsizetype plaats = begin;
        while (plaats < regel.einde &&
               (isLetter(tekst[plaats]) || QByteArray("0123456789_.*-").contains(tekst[plaats])))
            ++plaats;
        if (plaats == begin || plaats == regel.einde || tekst[plaats] != ':') return regel.nummer;
    }
    return 0;
}

Staat staat(const QByteArray& tekst) {
    const auto waarde = laatsteWaarde(tekst);
    const auto ons = waarde ? onsStuk(tekst, *waarde) : std::nullopt;
    return ons ? onzeStaat(ontcijferd(tekst, *ons)).value_or(Staat::Afwezig) : Staat::Afwezig;
}

QByteArray metOns(const QByteArray& tekst, const QByteArray& opdracht) {
    if (staat(tekst) != Staat::Afwezig) return tekst;
    const QByteArray eigenRegel = onzeRegel(opdracht) + "  \\n\\\n";
    const auto waarde = laatsteWaarde(tekst);
    // The setting goes first, where no earlier line can continue into it.
    if (!waarde) return kMerk + kSleutel + eigenRegel + '\n' + tekst;
    qsizetype achter = waarde->begin;
    Soort laatste = Soort::Einde;
    qsizetype nieuweRegel = -1;  // the first line after the visible characters
    for (qsizetype plaats = waarde->begin; plaats < waarde->einde;) {
        const auto [soort, lengte] = lees(tekst, plaats, waarde->einde);
        plaats += lengte;
        if (soort == Soort::Vervolg && nieuweRegel < 0) nieuweRegel = plaats;
        if (soort != Soort::Teken && soort != Soort::Einde) continue;
        achter = plaats;
        laatste = soort;
        nieuweRegel = -1;
    }
    // The host reads on at a line feed behind any backslash, an escaped one too. The two stay
    // together.
    if (laatste == Soort::Teken && achter < waarde->einde && tekst[achter] == '\n') ++achter;
    QByteArray uit = tekst;
    if (nieuweRegel >= 0 && laatste == Soort::Einde) return uit.insert(nieuweRegel, eigenRegel);
    return uit.insert(achter, kScheiding + onzeRegel(opdracht));
}

QByteArray zonderOns(const QByteArray& tekst) {
    for (const Regel& regel : regels(tekst)) {
        const auto waarde = programmas(tekst, regel);
        const auto ons = waarde ? onsStuk(tekst, *waarde) : std::nullopt;
        if (!ons) continue;
        QByteArray uit = tekst;
        const qsizetype merk = regel.begin - kMerk.size();
        const bool eigenWaarde = merk >= 0 && tekst.mid(merk, kMerk.size()) == kMerk &&
                                 tekst.mid(regel.begin, kSleutel.size()) == kSleutel &&
                                 lijst(tekst, *waarde).size() == 1;
        const Stuk snede = eigenWaarde ? Stuk{merk, regel.volgend} : weg(tekst, *waarde, *ons);
        return zonderOns(uit.remove(snede.begin, snede.einde - snede.begin));
    }
    return tekst;
}

QByteArray nieuw(const QByteArray& opdracht) {
    return kKop + metOns({}, opdracht);
}

bool isLeegNieuw(const QByteArray& tekst) {
    return tekst == kKop;
}

}  // namespace brixtel::programmalijst
