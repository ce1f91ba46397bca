// SPDX-License-Identifier: MIT
// Reads the command lines of the programs: long options with one dash or two, a value after
// `=` or as the next word, and one Dutch line for an error.
#pragma once

#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <algorithm>
#include <functional>
#include <optional>
#include <vector>

namespace brixtel {

// The error of a command line, as one line for the user.
struct Fout {
    QString regel;
};

enum class Waarde { Geen, Nodig, Mag };

// One option of a program whose command line is read into an `Opdracht`.
template <typename Opdracht>
struct Optie {
    QLatin1String naam;
    Waarde waarde;
    // The pattern of an optional value; a next word that does not match is no value.
    QString vorm;
    // Returns the error; empty on success.
    std::function<QString(Opdracht&, const QString& waarde)> zet;
    // The calls that the option belongs to, as bits that the program defines; 0 for any call.
    unsigned bij = 0;
};

// Makes an error of one line from any text.
[[nodiscard]] Fout foutVan(QLatin1String programma, const QString& wat);

// Reads a number with a comma or a point, from `laag` to `hoog`; none for any other text.
[[nodiscard]] std::optional<double> leesGetal(const QString& tekst, double laag, double hoog);

// Digits alone.
[[nodiscard]] std::optional<int> leesHeelGetal(const QString& tekst, int laag, int hoog);

// Each function returns the error; empty on success.
QString zetGetal(std::optional<double>& doel, const QString& waarde, QLatin1String naam,
                 double laag, double hoog);
QString zetGetal(double& doel, const QString& waarde, QLatin1String naam, double laag, double hoog);
// Sets `doel` to one of the names; "auto" leaves `doel` empty.
QString zetNaam(QString& doel, const QString& waarde, QLatin1String naam, const QStringList& namen);

// The name in a word that is an option; empty for another word.
[[nodiscard]] QString optieNaam(const QString& woord);

// A question for the words of `woorden` that `woord` probably means, each with `voor` before
// it: the end of an error. Empty where none is near.
[[nodiscard]] QString bedoeldVraag(const QString& woord, const QStringList& woorden,
                                   QLatin1String voor = {});

// The error for a value of the option `naam` that is none of `woorden`, with the nearest word.
[[nodiscard]] QString kentNiet(QLatin1String naam, const QStringList& woorden,
                               const QString& waarde);

// The error for a word that names no option.
[[nodiscard]] QString onbekend(const QString& woord, const QStringList& namen);

// Reads the option at `plaats`, and its value if that is the next word. Returns the error.
template <typename Opdracht>
QString neemOptie(const std::vector<Optie<Opdracht>>& opties, const QStringList& woorden,
                  qsizetype& plaats, Opdracht& opdracht,
                  std::vector<const Optie<Opdracht>*>& gegeven) {
    const QString& woord = woorden[plaats];
    const QString naam = optieNaam(woord);
    const qsizetype is = woord.indexOf(u'=');
    for (const Optie<Opdracht>& optie : opties) {
        if (optie.naam != naam) continue;
        gegeven.push_back(&optie);
        if (is >= 0 && optie.waarde == Waarde::Geen)
            return QStringLiteral("--%1 heeft geen waarde").arg(naam);
        if (is >= 0) {
            const QString waarde = woord.mid(is + 1);
            if (waarde.isEmpty()) return QStringLiteral("--%1 mist zijn waarde").arg(naam);
            return optie.zet(opdracht, waarde);
        }
        if (optie.waarde == Waarde::Geen) return optie.zet(opdracht, {});
        const bool volgt = plaats + 1 < woorden.size();
        if (optie.waarde == Waarde::Nodig) {
            if (!volgt) return QStringLiteral("--%1 mist zijn waarde").arg(naam);
            return optie.zet(opdracht, woorden[++plaats]);
        }
        const bool past =
            volgt && QRegularExpression(optie.vorm).match(woorden[plaats + 1]).hasMatch();
        return optie.zet(opdracht, past ? woorden[++plaats] : QString());
    }
    QStringList namen;
    for (const Optie<Opdracht>& optie : opties)
        namen << optie.naam;
    return onbekend(woord, namen);
}

// Chooses what to do by the option `naam`. Returns the error where an earlier option chose
// another task.
template <typename Opdracht>
QString zetTaak(Opdracht& opdracht, typename Opdracht::Taak taak, QLatin1String naam) {
    if (!opdracht.taakDoor.isEmpty() && opdracht.taak != taak)
        return QStringLiteral("--%1 gaat niet samen met --%2").arg(naam, opdracht.taakDoor);
    opdracht.taak = taak;
    opdracht.taakDoor = naam;
    return {};
}

// Makes an option that chooses what to do; `naam` may be short for `voluit`.
template <typename Opdracht>
Optie<Opdracht> taakOptie(QLatin1String naam, typename Opdracht::Taak taak,
                          QLatin1String voluit = {}) {
    const QLatin1String gemeld = voluit.isEmpty() ? naam : voluit;
    return {naam, Waarde::Geen, {}, [=](Opdracht& opdracht, const QString&) {
                return zetTaak(opdracht, taak, gemeld);
            }};
}

// Whether the option was given.
template <typename Opdracht>
bool heeft(const std::vector<const Optie<Opdracht>*>& gegeven, const char* naam) {
    return std::any_of(gegeven.begin(), gegeven.end(), [&](const Optie<Opdracht>* optie) {
        return optie->naam == QLatin1String(naam);
    });
}

// Reads all options, and stores the given ones in `gegeven`. Returns the first error; empty on
// success.
template <typename Opdracht>
QString neemOpties(const std::vector<Optie<Opdracht>>& opties, const QStringList& woorden,
                   Opdracht& opdracht, std::vector<const Optie<Opdracht>*>& gegeven) {
    for (qsizetype plaats = 0; plaats < woorden.size(); ++plaats) {
        const QString mis = neemOptie(opties, woorden, plaats, opdracht, gegeven);
        if (!mis.isEmpty()) return mis;
    }
    return {};
}

}  // namespace brixtel
