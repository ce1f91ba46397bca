// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace platform {

// Being told of something; dropping it ends that, also from inside the action.
using Observation = std::shared_ptr<void>;

// A list of observers, told in the order in which they came. An action may add
// and drop observers, the list's owner included. Main thread.
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
