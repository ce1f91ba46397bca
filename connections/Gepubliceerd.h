// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace brixtel {

// A subscription: dropping it ends it, also from inside its own receiver.
// Move-only; may outlive what it follows. Main thread only.
class Abonnement {
  public:
    Abonnement() = default;  // of nothing

  private:
    template <typename T>
    friend class Gepubliceerd;
    explicit Abonnement(std::unique_ptr<void, void (*)(void*)> houvast)
        : houvast_(std::move(houvast)) {}

    std::unique_ptr<void, void (*)(void*)> houvast_{nullptr, [](void*) {}};
};

// A value that others follow. A subscriber is told the current value at once,
// while it subscribes, and then every value that is set, equal to the last or
// not, in the order in which the subscribers came. Only its owner sets it;
// others get it by const reference.
//
// A receiver may subscribe, unsubscribe, set the value anew (everyone is then
// told the newer value, and the older goes no further) or destroy the owner.
// Main thread only.
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
        using Vast = std::shared_ptr<Ontvanger>;
        auto vast = std::make_unique<Vast>(std::make_shared<Ontvanger>(std::move(ontvanger)));
        const Vast roep = *vast;
        stand_->volgers.push_back(*vast);
        const auto nu = stand_->waarde;
        (*roep)(*nu);
        return Abonnement({vast.release(), [](void* v) { delete static_cast<Vast*>(v); }});
    }

    void zet(T waarde) {
        const std::shared_ptr<Stand> stand = stand_;
        const auto nieuw = std::make_shared<const T>(std::move(waarde));
        stand->waarde = nieuw;
        std::erase_if(stand->volgers, [](const auto& volger) { return volger.expired(); });
        const auto volgers = stand->volgers;
        for (const auto& volger : volgers) {
            if (stand->waarde != nieuw) return;
            if (const auto roep = volger.lock()) (*roep)(*nieuw);
        }
    }

  private:
    struct Stand {
        explicit Stand(std::shared_ptr<const T> w) : waarde(std::move(w)) {}
        std::shared_ptr<const T> waarde;
        std::vector<std::weak_ptr<Ontvanger>> volgers;
    };

    std::shared_ptr<Stand> stand_;
};

}  // namespace brixtel
