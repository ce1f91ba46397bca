// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "platform/time/Observers.h"

namespace brixtel {

// A subscription: dropping it ends it, also from inside its own receiver. Move-only; may
// outlive the value. Main thread only.
class Abonnement {
  public:
    Abonnement() = default;  // an empty subscription
    Abonnement(Abonnement&&) = default;
    Abonnement& operator=(Abonnement&&) = default;
    Abonnement(const Abonnement&) = delete;
    Abonnement& operator=(const Abonnement&) = delete;
    ~Abonnement() = default;

  private:
    template <typename T>
    friend class Gepubliceerd;
    explicit Abonnement(platform::Observation houvast) : houvast_(std::move(houvast)) {}

    platform::Observation houvast_;
};

// A value with subscribers. A subscriber receives the current value at once, while it
// subscribes, and then every value that is set, equal to the last or not, in the order in
// which the subscribers came. Only its owner sets the value; others get it by const
// reference.
//
// A receiver may subscribe, unsubscribe, set the value anew (everyone then receives the
// newer value, and the older goes no further) or destroy the owner. Main thread only.
template <typename T>
class Gepubliceerd {
  public:
    using Ontvanger = std::function<void(const T&)>;

    explicit Gepubliceerd(T waarde = T{})
        : stand_(std::make_shared<Stand>(std::make_shared<const T>(std::move(waarde)))) {}
    Gepubliceerd(const Gepubliceerd&) = delete;
    Gepubliceerd& operator=(const Gepubliceerd&) = delete;

    [[nodiscard]] const T& waarde() const { return *stand_->waarde; }

    [[nodiscard]] Abonnement volg(Ontvanger ontvanger) const {
        const auto vast = std::make_shared<Ontvanger>(std::move(ontvanger));
        Abonnement abonnement(stand_->volgers.add(
            [vast, stand = std::weak_ptr<Stand>(stand_)](const std::shared_ptr<const T>& nieuw) {
                // Another receiver may have set a newer value meanwhile.
                const auto nu = stand.lock();
                if (nu && nu->waarde == nieuw) (*vast)(*nieuw);
            }));
        const auto nu = stand_->waarde;
        (*vast)(*nu);
        return abonnement;
    }

    void zet(T waarde) {
        // A receiver may destroy the owner, so the state is held here.
        const std::shared_ptr<Stand> stand = stand_;
        const auto nieuw = std::make_shared<const T>(std::move(waarde));
        stand->waarde = nieuw;
        stand->volgers.tell(nieuw);
    }

  private:
    struct Stand {
        explicit Stand(std::shared_ptr<const T> w) : waarde(std::move(w)) {}
        std::shared_ptr<const T> waarde;
        platform::Observers<const std::shared_ptr<const T>&> volgers;
    };

    std::shared_ptr<Stand> stand_;
};

}  // namespace brixtel
