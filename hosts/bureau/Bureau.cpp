// SPDX-License-Identifier: MIT
#include "hosts/bureau/Bureau.h"

#include <cerrno>
#include <utility>

#include "hosts/gedeeld/Reden.h"

namespace brixtel {

namespace {
// The shortest time between two writes: a dragged slider changes a choice many times.
constexpr double kSamennemen = 0.15;  // seconds
}  // namespace

QString uitleg(RegenStand stand) {
    if (stand == RegenStand::geenCompositor)
        return QStringLiteral(
            "er draait geen compositor, dus door vensters heen kijken kan hier niet; "
            "de regen komt zodra er een is");
    if (stand == RegenStand::geenBovenlaag)
        return QStringLiteral(
            "dit bureaublad heeft geen plaats boven alle vensters, dus regen erover kan hier niet");
    if (stand == RegenStand::geenDoorklik)
        return QStringLiteral(
            "klikken zouden de vensters eronder niet bereiken, dus regen erover kan hier niet; "
            "zonder --venstersysteem kan het misschien wel");
    if (stand == RegenStand::schermbeveiliging)
        return QStringLiteral("de schermbeveiliging is aan; de regen komt daarna terug");
    if (stand == RegenStand::leeg)
        return QStringLiteral("de dichtheid is 0, dus er valt geen druppel");
    return {};
}

Bureau::Bureau(const MatrixCentraleBronnen& bronnen, platform::MonitorRecorderOptions geluid)
    : klok_(bronnen.server.clock()),
      werkruimte_(bronnen.werkruimte),
      keuzes_(BureauInstellingen::lees()),
      bewaring_(klok_, kSamennemen, [this] { bewaarFout_ = BureauInstellingen::bewaar(keuzes_); }),
      muziek_(klok_, std::move(geluid)),
      centrale_(bronnen) {
    centrale_.dichtheid = keuzes_.dichtheid;
    centrale_.snelheid = keuzes_.snelheid;
    centrale_.opMuziek = keuzes_.muziek;
    centrale_.flitsDeel = flitsDeel(keuzes_.flits);
    centrale_.muziekStand = [this] { return muziek_.stand(); };
    // The user, too, can close the black screen.
    centrale_.onZwart = [this](bool) { meld(); };
    regen_ = centrale_.regenStand().volg([this](RegenStand) { meld(); });
    beveiliging_ = werkruimte_.observe([this](platform::Workspace::Change wat) {
        if (wat == platform::Workspace::Change::Saver) meld();
    });
}

Bureau::~Bureau() {
    bewaar();
}

template <typename Doe>
void Bureau::na(Doe doe) {
    ++bezig_;
    doe();
    --bezig_;
    meld();
}

void Bureau::meld() {
    const bool volgt = centrale_.zwartAan() && centrale_.muziekKlok().isValid();
    // Nobody sees effects under a saver or lock.
    muziek_.luister(keuzes_.muziek && (volgt || luisterMee_) && !werkruimte_.isSaverActive());
    if (bezig_ > 0) return;
    const BureauStand nu{.zwart = centrale_.zwartAan(),
                         .soort = centrale_.zwartAan() ? soort_ : std::nullopt,
                         .regen = centrale_.regenAan(),
                         .regenStand = centrale_.regenStand().waarde(),
                         .keuzes = keuzes_,
                         .rustUitleg = rustUitleg()};
    if (nu != stand_.waarde()) stand_.zet(nu);
}

QString Bureau::rustUitleg() const {
    if (keuzes_.rust == 0 || rustBewaakt_) return {};
    return QStringLiteral("dit bureaublad zegt niet wanneer er niemand is");
}

void Bureau::zetRustBewaakt(bool bewaakt) {
    rustBewaakt_ = bewaakt;
    meld();
}

QString Bureau::zwartBeletsel() const {
    if (centrale_.zwartAan() || !werkruimte_.isSaverActive()) return {};
    return QStringLiteral(
        "de schermbeveiliging of vergrendeling is aan; een zwart scherm kan pas daarna");
}

QString Bureau::regenWeigering() const {
    return centrale_.isRegenGeweigerd() ? uitleg(centrale_.regenStand().waarde()) : QString();
}

void Bureau::toonZwart(std::optional<DrieSoort> soort) {
    if (!zwartBeletsel().isEmpty()) return;
    na([&] {
        if (!centrale_.zwartAan()) soort_ = soort;
        centrale_.toonZwart(soort);
    });
}

void Bureau::sluitZwart() {
    na([&] { centrale_.sluitZwart(); });
}

void Bureau::wisselZwart(std::optional<DrieSoort> soort) {
    if (centrale_.zwartAan())
        sluitZwart();
    else
        toonZwart(soort);
}

void Bureau::toonRegen() {
    na([&] { centrale_.toonRegen(); });
}

void Bureau::sluitRegen() {
    na([&] { centrale_.sluitRegen(); });
}

void Bureau::wisselRegen() {
    na([&] { centrale_.wisselRegen(); });
}

void Bureau::sluitAlles() {
    na([&] { centrale_.sluitAlles(); });
}

void Bureau::luisterMee(bool aan) {
    luisterMee_ = aan;
    meld();
}

void Bureau::zetKeuzes(const BureauKeuzes& keuzes) {
    if (keuzes == keuzes_) return;
    const bool andereRegen =
        keuzes.dichtheid != keuzes_.dichtheid || keuzes.snelheid != keuzes_.snelheid;
    keuzes_ = keuzes;
    bewaring_.vraag();
    centrale_.dichtheid = keuzes.dichtheid;
    centrale_.snelheid = keuzes.snelheid;
    centrale_.opMuziek = keuzes.muziek;
    centrale_.flitsDeel = flitsDeel(keuzes.flits);
    na([&] {
        if (andereRegen) centrale_.pasRegenAan();
    });
}

QString Bureau::bewaarMis() const {
    if (bewaarFout_ == 0) return {};
    return QStringLiteral("de keuze geldt, maar is niet te bewaren: ") +
           (bewaarFout_ == ENOENT ? QStringLiteral("er is geen map voor instellingen")
                                  : reden(bewaarFout_));
}

}  // namespace brixtel
