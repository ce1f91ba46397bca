// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace brixtel {

// Finds a number's range among many by their ascending starts. A plain binary search of
// such a long list waits for memory at every step. This search first turns to the page of
// the number's highest bits. In a page with many starts, such as the crowded pages of IPv6,
// it halves its way through every 32nd start, which lie together. A list that does not
// ascend gives some place in it, never one outside.
template <typename Getal>
class BereikZoeker {
  public:
    // A searcher of an empty list.
    BereikZoeker() = default;

    explicit BereikZoeker(const std::vector<Getal>& starts) {
        if (starts.empty()) return;
        const int breedte = std::bit_width(*std::max_element(starts.begin(), starts.end()));
        verschuif_ = std::max(0, breedte - kBits);
        // The number of starts before each page: counted, then added up.
        voor_.resize((std::size_t{1} << std::min(breedte, kBits)) + 1);
        for (const Getal start : starts)
            ++voor_[static_cast<std::size_t>(start >> verschuif_) + 1];
        for (std::size_t blad = 1; blad < voor_.size(); ++blad)
            voor_[blad] += voor_[blad - 1];
        mijlpalen_.reserve(starts.size() / kStap + 1);
        for (std::size_t i = 0; i < starts.size(); i += kStap)
            mijlpalen_.push_back(starts[i]);
    }

    // The place of the last of `starts` that is not above `sleutel`. `sleutel` is not below
    // the first start; `starts` is the list given to the constructor.
    [[nodiscard]] std::size_t zoek(Getal sleutel, const std::vector<Getal>& starts) const {
        const auto blad = static_cast<std::size_t>(sleutel >> verschuif_);
        if (blad >= voor_.size() - 1) return starts.size() - 1;
        // The last start of an earlier page may reach into this one.
        std::size_t laag = voor_[blad] > 0 ? voor_[blad] - 1 : 0;
        std::size_t hoog = voor_[blad + 1];
        if (hoog - laag > kStap) {
            const std::size_t paal =
                kStap * halveer(mijlpalen_, laag / kStap, (hoog - 1) / kStap + 1, sleutel);
            laag = std::max(laag, paal);
            hoog = std::min(hoog, paal + kStap);
        }
        return halveer(starts, laag, hoog, sleutel);
    }

  private:
    static constexpr int kBits = 16;
    static constexpr std::size_t kStap = 32;

    // The place of the last number from `laag` up to `hoog` that is not above `sleutel`;
    // the first never is. The loop has no branches, since none could be predicted.
    static std::size_t halveer(const std::vector<Getal>& lijst, std::size_t laag, std::size_t hoog,
                               Getal sleutel) {
        const Getal* begin = lijst.data() + laag;
        for (std::size_t over = hoog - laag; over > 1;) {
            const std::size_t helft = over / 2;
            begin += begin[helft] <= sleutel ? helft : 0;
            over -= helft;
        }
        return static_cast<std::size_t>(begin - lijst.data());
    }

    std::vector<std::uint32_t> voor_;
    std::vector<Getal> mijlpalen_;  // every kStap-th start
    int verschuif_ = 0;
};

}  // namespace brixtel
