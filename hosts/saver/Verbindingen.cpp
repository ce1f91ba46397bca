// SPDX-License-Identifier: MIT
#include "hosts/saver/Verbindingen.h"

#include <signal.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>

#include "connections/Overzicht.h"
#include "hosts/gedeeld/Signalen.h"
#include "hosts/gedeeld/Uitvoer.h"

namespace brixtel {

namespace {

const platform::ToolStop* lopende = nullptr;
volatile std::sig_atomic_t gevangen = 0;

void vang(int signaal) {
    const int bewaard = errno;
    gevangen = signaal;
    lopende->request();
    errno = bewaard;
}

// Passes the signals on to the stop for its own lifetime.
class Opvang {
  public:
    explicit Opvang(const platform::ToolStop& stop) {
        lopende = &stop;
        struct sigaction actie {};
        actie.sa_handler = vang;
        actie.sa_flags = static_cast<int>(SA_RESETHAND);  // the second ends the process at once
        for (std::size_t i = 0; i < kSignalen.size(); ++i) {
            sigaction(kSignalen[i], nullptr, &eerder_[i]);
            if (eerder_[i].sa_handler != SIG_IGN) sigaction(kSignalen[i], &actie, nullptr);
        }
    }
    ~Opvang() {
        for (std::size_t i = 0; i < kSignalen.size(); ++i)
            sigaction(kSignalen[i], &eerder_[i], nullptr);
    }
    Opvang(const Opvang&) = delete;
    Opvang& operator=(const Opvang&) = delete;

  private:
    static constexpr std::array kSignalen{SIGINT, SIGTERM, SIGHUP};
    std::array<struct sigaction, kSignalen.size()> eerder_{};
};

std::optional<std::vector<Lijn>> meet(const VerbindingWacht::Bron& bron) {
    const platform::ToolStop stop;
    const Opvang opvang(stop);
    return VerbindingWacht::probeer(bron, &stop);
}

}  // namespace

QString toonVerbindingen(bool json, const VerbindingWacht::Bron& bron) {
    const auto lijnen = meet(bron);
    if (gevangen != 0) Signalen::eindigDoor(gevangen);
    if (!lijnen)
        return QStringLiteral("de verbindingen zijn niet te meten: lsof ontbreekt of faalt");
    // A table that cannot be read has no countries. A measurement without connections does
    // not load the table.
    (void)bron.tabel.thuis();
    if (bron.tabel.landen().empty())
        return QStringLiteral("de landentabel ontbreekt of is beschadigd");
    const QByteArray tekst = json ? alsJson(*lijnen) : alsTabel(*lijnen).toUtf8();
    return drukAf(tekst);
}

}  // namespace brixtel
