// SPDX-License-Identifier: MIT
#include "hosts/bureau/muziek/SlagZoeker.h"

#include <kiss_fftr.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/time/Require.h"

namespace brixtel {

namespace {

constexpr double kBeeld = 0.023;        // seconds of a frame, as a minimum
constexpr double kStilAanBegin = 0.25;  // seconds
constexpr double kRust = 0.2;           // seconds between two beats, as a minimum
constexpr double kLaagste = 30.0;       // Hz
constexpr double kHoogste = 16'000.0;   // Hz
constexpr double kBand = 1.26;          // a third of an octave
constexpr double kBas = 200.0;          // Hz; drums lie below it, in few bands
constexpr double kBasGewicht = 2.0;
constexpr double kGevoel = 1e4;         // a band is heard from −80 dB of full scale
constexpr double kMinstens = 0.12;      // of flux above the recent mean
constexpr double kSpreidingen = 6.0;    // mean deviations above the recent mean
constexpr double kKleinstePiek = 0.5;   // the least peak that strengths are relative to
constexpr double kPiekHalvering = 8.0;  // seconds
constexpr double kUitsterven = 0.12;    // seconds, of the loudness

int lengteVoor(double monstersPerSeconde) {
    int lengte = 128;
    while (lengte < kBeeld * monstersPerSeconde)
        lengte *= 2;
    return lengte;
}

}  // namespace

// The spectrum of one frame, in bands.
struct SlagZoeker::Spectrum {
    struct Band {
        int begin, eind;  // bins
        double gewicht;
    };
    struct Weg {
        void operator()(kiss_fftr_state* p) const { kiss_fftr_free(p); }
    };

    Spectrum(int lengte, double monstersPerSeconde)
        : plan(kiss_fftr_alloc(lengte, 0, nullptr, nullptr)),
          weging(static_cast<std::size_t>(lengte)),
          gewogen(weging.size()),
          uit(weging.size() / 2 + 1) {
        for (int i = 0; i < lengte; ++i)
            weging[static_cast<std::size_t>(i)] =
                static_cast<float>(0.5 - 0.5 * std::cos(2 * std::numbers::pi * i / lengte));
        const double bin = monstersPerSeconde / lengte;
        const int laatste = std::min(lengte / 2, static_cast<int>(kHoogste / bin));
        int begin = std::max(1, static_cast<int>(std::lround(kLaagste / bin)));
        while (begin < laatste) {
            const int eind = std::clamp(static_cast<int>(begin * kBand), begin + 2, laatste);
            banden.push_back({begin, eind, begin * bin < kBas ? kBasGewicht : 1.0});
            gewichten += banden.back().gewicht;
            begin = std::max(eind, begin + 1);
        }
        for (auto& beeld : laatste4)
            beeld.resize(banden.size());
    }

    void neem(const std::vector<float>& venster) {
        std::transform(venster.begin(), venster.end(), weging.begin(), gewogen.begin(),
                       std::multiplies<>());
        kiss_fftr(plan.get(), gewogen.data(), uit.data());
        std::rotate(laatste4.begin(), laatste4.end() - 1, laatste4.end());
        const double schaal = 4.0 / static_cast<double>(weging.size());
        for (std::size_t b = 0; b < banden.size(); ++b) {
            double som = 0;
            for (int i = banden[b].begin; i < banden[b].eind; ++i) {
                const auto& x = uit[static_cast<std::size_t>(i)];
                som += std::sqrt(x.r * x.r + x.i * x.i);
            }
            const double gemiddeld = som * schaal / (banden[b].eind - banden[b].begin);
            laatste4[0][b] = std::log1p(kGevoel * gemiddeld);
        }
    }

    const std::unique_ptr<kiss_fftr_state, Weg> plan;
    std::vector<float> weging;
    std::vector<float> gewogen;
    std::vector<kiss_fft_cpx> uit;
    std::vector<Band> banden;
    double gewichten = 0;
    std::array<std::vector<double>, 4> laatste4;  // newest first
};

SlagZoeker::SlagZoeker(double monstersPerSeconde) : monstersPerSeconde_(monstersPerSeconde) {
    platform::require(monstersPerSeconde >= 8'000 && monstersPerSeconde <= 192'000);
    const int lengte = lengteVoor(monstersPerSeconde);
    spectrum_ = std::make_unique<Spectrum>(lengte, monstersPerSeconde);
    venster_.resize(static_cast<std::size_t>(lengte));
}

SlagZoeker::~SlagZoeker() = default;

double SlagZoeker::level() const {
    return std::min(1.0, std::sqrt(2.0 * vermogen_));
}

void SlagZoeker::voeg(std::span<const float> monsters) {
    while (!monsters.empty()) {
        const std::size_t past = std::min(monsters.size(), venster_.size() - gevuld_);
        std::transform(monsters.begin(), monsters.begin() + static_cast<std::ptrdiff_t>(past),
                       venster_.begin() + static_cast<std::ptrdiff_t>(gevuld_), [](float monster) {
                           return std::isfinite(monster) ? std::clamp(monster, -1.0F, 1.0F) : 0.0F;
                       });
        gevuld_ += past;
        monsters_ += static_cast<std::int64_t>(past);
        monsters = monsters.subspan(past);
        if (gevuld_ < venster_.size()) return;
        beeld();
        const std::size_t stap = venster_.size() / 2;
        std::copy(venster_.begin() + static_cast<std::ptrdiff_t>(stap), venster_.end(),
                  venster_.begin());
        gevuld_ = stap;
    }
}

void SlagZoeker::beeld() {
    double som = 0;
    const std::size_t stap = venster_.size() / 2;
    for (std::size_t i = stap; i < venster_.size(); ++i)
        som += static_cast<double>(venster_[i]) * venster_[i];
    const double nu = som / static_cast<double>(stap);
    const double rest = std::exp(-static_cast<double>(stap) / monstersPerSeconde_ / kUitsterven);
    vermogen_ = nu > vermogen_ ? nu : nu + (vermogen_ - nu) * rest;

    spectrum_->neem(venster_);
    fluxen_[static_cast<std::size_t>(beelden_) % kTerugblik] = flux();
    ++beelden_;
    oordeel();
}

// Compares the frame with frames that share no samples with it. A frame that overlaps would
// split one onset into two halves.
double SlagZoeker::flux() {
    const auto& [nu, half, vorig, eerder] = spectrum_->laatste4;
    double som = 0;
    for (std::size_t b = 0; b < nu.size(); ++b)
        som += spectrum_->banden[b].gewicht * std::max(0.0, nu[b] - std::max(vorig[b], eerder[b]));
    return som / spectrum_->gewichten;
}

// Judges whether the previous frame was a beat. A peak is known only from the frame after
// it.
void SlagZoeker::oordeel() {
    const double stap = static_cast<double>(venster_.size() / 2) / monstersPerSeconde_;
    piek_ *= std::exp2(-stap / kPiekHalvering);
    const auto terug = [&](std::int64_t n) {
        return fluxen_[static_cast<std::size_t>(beelden_ - 1 - n) % kTerugblik];
    };
    const std::int64_t beeldNummer = beelden_ - 2;
    if (static_cast<double>(beeldNummer) * stap < kStilAanBegin || beeldNummer < wacht_) return;
    const double hier = terug(1);
    if (hier <= kMinstens || hier < terug(0) || hier <= terug(2)) return;

    std::array<double, kTerugblik> gesorteerd{};
    const auto eind =
        gesorteerd.begin() + std::min<std::int64_t>(beelden_, std::int64_t{kTerugblik});
    const auto midden = gesorteerd.begin() + (eind - gesorteerd.begin()) / 2;
    std::copy(fluxen_.begin(), fluxen_.begin() + (eind - gesorteerd.begin()), gesorteerd.begin());
    std::nth_element(gesorteerd.begin(), midden, eind);
    const double gewoon = *midden;
    std::transform(gesorteerd.begin(), eind, gesorteerd.begin(),
                   [gewoon](double f) { return std::abs(f - gewoon); });
    std::nth_element(gesorteerd.begin(), midden, eind);
    const double meer = hier - gewoon;
    if (meer < kMinstens + kSpreidingen * *midden) return;

    piek_ = std::max({piek_, meer, kKleinstePiek});
    ++aantal_;
    laatste_.plaats = monsters_ - static_cast<std::int64_t>(venster_.size());
    laatste_.sterkte = std::min(1.0, meer / piek_);
    wacht_ = beeldNummer + static_cast<std::int64_t>(std::ceil(kRust / stap));
}

}  // namespace brixtel
