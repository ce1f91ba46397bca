// SPDX-License-Identifier: MIT
#include "hosts/bureau/Klant.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>

#include "hosts/bureau/Autostart.h"
#include "hosts/bureau/BureauDienst.h"
#include "hosts/bureau/GetalTekst.h"

namespace brixtel {

namespace {

constexpr int kGeduld = 10'000;  // milliseconds

QString regel(const char* wat, const QString& hoe) {
    return QStringLiteral("%1: %2\n").arg(QLatin1String(wat), hoe);
}

QString aanUit(bool aan) {
    return aan ? QStringLiteral("aan") : QStringLiteral("uit");
}

QString rustTekst(int minuten, const QString& waarom) {
    if (minuten == 0) return aanUit(false);
    const QString na =
        minuten == 1 ? QStringLiteral("1 minuut") : QStringLiteral("%1 minuten").arg(minuten);
    return waarom.isEmpty() ? na : na + QStringLiteral(", maar ") + waarom;
}

}  // namespace

QString foutTekst(const QDBusMessage& antwoord, Vraagt vraagt) {
    if (antwoord.errorName() == u"org.freedesktop.DBus.Error.NoReply") {
        const QString stil = QStringLiteral("de draaiende brixtel-bureau antwoordt niet");
        return vraagt == Vraagt::Stand
                   ? stil
                   : stil + QStringLiteral("; wat gevraagd is kan later nog gebeuren");
    }
    if (antwoord.errorName() == u"org.freedesktop.DBus.Error.ServiceUnknown")
        return QStringLiteral("brixtel-bureau draait niet meer");
    if (antwoord.errorName() == u"org.freedesktop.DBus.Error.Disconnected")
        return QStringLiteral("de verbinding met de sessiebus is verbroken");
    return antwoord.errorMessage();
}

QString standTekst(const QVariantMap& eigenschappen, bool autostart) {
    const auto waarde = [&](const char* naam) { return eigenschappen.value(QLatin1String(naam)); };
    QString zwart = aanUit(waarde("ZwartAan").toBool());
    if (waarde("ZwartAan").toBool())
        zwart += QStringLiteral(" (%1)").arg(waarde("ZwartSoort").toString());
    QString regen = aanUit(waarde("RegenAan").toBool());
    const QString waarom = waarde("RegenUitleg").toString();
    if (!waarom.isEmpty()) regen += QStringLiteral(", maar niet te zien: ") + waarom;
    return regel("zwart scherm", zwart) + regel("regen", regen) +
           regel("dichtheid", procentTekst(waarde("Dichtheid").toDouble())) +
           regel("snelheid", keerTekst(waarde("Snelheid").toDouble())) +
           regel("muziek", aanUit(waarde("Muziek").toBool())) +
           regel("na rust", rustTekst(waarde("Rust").toInt(), waarde("RustUitleg").toString())) +
           regel("start bij het aanmelden", aanUit(autostart));
}

bool Klant::isEr() const {
    return verbinding_.interface() &&
           verbinding_.interface()->isServiceRegistered(kDienstNaam).value();
}

// Qt's bus thread still logs an error after it has woken the caller, and a process that
// ends in that moment destroys what the thread reads. A second call returns only once the
// thread is done with the first.
QDBusMessage Klant::roep(const QDBusMessage& bericht) const {
    const QDBusMessage antwoord = verbinding_.call(bericht, QDBus::Block, kGeduld);
    if (antwoord.type() == QDBusMessage::ErrorMessage) (void)isEr();
    return antwoord;
}

std::optional<BusFout> Klant::vraag(const Verzoek& verzoek) const {
    QDBusMessage bericht =
        QDBusMessage::createMethodCall(kDienstNaam, kDienstPad, kDienstNaam, verzoek.methode);
    bericht.setArguments(verzoek.waarden);
    const QDBusMessage antwoord = roep(bericht);
    if (antwoord.type() != QDBusMessage::ErrorMessage) return std::nullopt;
    return BusFout{antwoord.errorName(), foutTekst(antwoord, Vraagt::Daad)};
}

QString Klant::stand(QString& mis) const {
    QDBusMessage bericht = QDBusMessage::createMethodCall(
        kDienstNaam, kDienstPad, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("GetAll"));
    bericht << kDienstNaam;
    const QDBusMessage antwoord = roep(bericht);
    if (antwoord.type() == QDBusMessage::ErrorMessage) {
        mis = foutTekst(antwoord, Vraagt::Stand);
        return {};
    }
    return standTekst(qdbus_cast<QVariantMap>(antwoord.arguments().value(0)), Autostart::isAan());
}

}  // namespace brixtel
