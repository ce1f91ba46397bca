// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace platform {

// A subscription, owned by its holder. Dropping it ends it, also from inside the action.
using Observation = std::shared_ptr<void>;

// A list of actions, called in the order of their adding. The holders of the subscriptions
// own the actions. An action may add and drop observers, and drop the list. Main thread.
template <typename... Told>
class Observers {
  public:
    using Action = std::function<void(Told...)>;

    [[nodiscard]] Observation add(Action action) {
        auto kept = std::make_shared<Action>(std::move(action));
        all_.push_back(kept);
        return kept;
    }

    void tell(Told... told) {
        std::erase_if(all_, [](const auto& action) { return action.expired(); });
        const auto now = all_;
        for (const auto& action : now)
            if (const auto call = action.lock()) (*call)(told...);
    }

  private:
    std::vector<std::weak_ptr<Action>> all_;
};

}  // namespace platform
