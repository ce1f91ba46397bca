// SPDX-License-Identifier: MIT
#include "desktop/Bovenlaag.h"

#include <dlfcn.h>

#include <memory>
#include <mutex>

namespace brixtel {

namespace {

constexpr std::int32_t kVlag = 1;
constexpr std::int32_t kNiveau = 1;

void* zoekOveral(const char* naam) {
    return dlsym(RTLD_DEFAULT, naam);
}

template <typename Functie>
class Opgezocht {
  public:
    explicit Opgezocht(const char* naam) : naam_(naam) {}

    Functie neem(Bovenlaag::Zoek zoek) {
        std::call_once(eenmaal_, [&] { functie_ = reinterpret_cast<Functie>(zoek(naam_)); });
        return functie_;
    }

  private:
    const char* const naam_;
    std::once_flag eenmaal_;
    Functie functie_ = nullptr;
};

struct Staat {
    explicit Staat(Bovenlaag::Zoek z) : zoek(z) {}

    Bovenlaag::Zoek zoek;
    Opgezocht<Bovenlaag::Verbinding> verbinding{"_CGSDefaultConnection"};
    Opgezocht<Bovenlaag::Maak> maak{"CGSSpaceCreate"};
    Opgezocht<Bovenlaag::ZetNiveau> zetNiveau{"CGSSpaceSetAbsoluteLevel"};
    Opgezocht<Bovenlaag::Toon> toon{"CGSShowSpaces"};
    Opgezocht<Bovenlaag::Verberg> verberg{"CGSHideSpaces"};
    Opgezocht<Bovenlaag::Voeg> voeg{"CGSAddWindowsToSpaces"};
    Opgezocht<Bovenlaag::Sloop> sloop{"CGSSpaceDestroy"};
    std::uint64_t ruimte = 0;
};

std::unique_ptr<Staat>& huidige() {
    static auto staat = std::make_unique<Staat>(zoekOveral);
    return staat;
}

Staat& staat() {
    return *huidige();
}

CGSNumbers lijst(const std::uint64_t& getal) {
    return {.values = &getal, .count = 1};
}

}  // namespace

Bovenlaag::Verbinding Bovenlaag::verbinding() {
    return staat().verbinding.neem(staat().zoek);
}
Bovenlaag::Maak Bovenlaag::maak() {
    return staat().maak.neem(staat().zoek);
}
Bovenlaag::ZetNiveau Bovenlaag::zetNiveau() {
    return staat().zetNiveau.neem(staat().zoek);
}
Bovenlaag::Toon Bovenlaag::toon() {
    return staat().toon.neem(staat().zoek);
}
Bovenlaag::Verberg Bovenlaag::verberg() {
    return staat().verberg.neem(staat().zoek);
}
Bovenlaag::Voeg Bovenlaag::voeg() {
    return staat().voeg.neem(staat().zoek);
}
Bovenlaag::Sloop Bovenlaag::sloop() {
    return staat().sloop.neem(staat().zoek);
}

std::uint64_t Bovenlaag::ruimte() {
    return staat().ruimte;
}

void Bovenlaag::begin(Zoek zoek) {
    huidige() = std::make_unique<Staat>(zoek != nullptr ? zoek : zoekOveral);
}

void Bovenlaag::zet(platform::Window& venster) {
    const std::int64_t nummer = venster.windowNumber();
    if (nummer <= 0) return;
    if (!verbinding() || !maak() || !zetNiveau() || !toon() || !voeg()) return;
    const std::int32_t c = verbinding()();
    std::uint64_t& ruimte = staat().ruimte;
    if (ruimte == 0) {
        ruimte = maak()(c, kVlag, nullptr);
        if (ruimte == 0) return;
        zetNiveau()(c, ruimte, kNiveau);
        const CGSNumbers ruimten = lijst(ruimte);
        toon()(c, &ruimten);
    }
    const auto getal = static_cast<std::uint64_t>(nummer);
    const CGSNumbers vensters = lijst(getal), ruimten = lijst(ruimte);
    voeg()(c, &vensters, &ruimten);
}

void Bovenlaag::ruimOp() {
    std::uint64_t& ruimte = staat().ruimte;
    if (ruimte == 0) return;
    if (!verbinding()) return;
    const std::int32_t c = verbinding()();
    const CGSNumbers ruimten = lijst(ruimte);
    if (verberg()) verberg()(c, &ruimten);
    if (sloop()) sloop()(c, ruimte);
    ruimte = 0;
}

}  // namespace brixtel
