// SPDX-License-Identifier: MIT
// A desktop that does what a test says, and remembers what was asked of it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/window/Workspace.h"

namespace brixtel {

class Werkruimte final : public platform::Workspace {
  public:
    std::optional<platform::RunningApplication> voor =
        platform::RunningApplication{.window = {QStringLiteral("11")}, .process = 22};
    std::vector<platform::RunningApplication> geactiveerd;
    int zelfGeactiveerd = 0;
    int verborgen = 0;  // hidings less showings
    QPointF muis;
    bool doorzichtig = true;
    bool beveiligd = false;
    // Called with each request as it comes.
    std::function<void(const std::string&)> bij = [](const std::string&) {};

    void zetDoorzichtig(bool aan) {
        doorzichtig = aan;
        observers_.tell(Change::Compositor);
    }
    void zetBeveiligd(bool aan) {
        beveiligd = aan;
        observers_.tell(Change::Saver);
    }
    void meldVoorgrond() { observers_.tell(Change::FrontmostApplication); }

    std::optional<platform::RunningApplication> frontmostApplication() override { return voor; }
    void activate(const platform::RunningApplication& app) override {
        geactiveerd.push_back(app);
        bij("activate");
    }
    void activateIgnoringOthers() override {
        ++zelfGeactiveerd;
        bij("activateIgnoringOthers");
    }
    void hideCursor() override {
        ++verborgen;
        bij("hideCursor");
    }
    void unhideCursor() override {
        --verborgen;
        bij("unhideCursor");
    }
    [[nodiscard]] QPointF mouseLocation() const override { return muis; }
    [[nodiscard]] bool isComposited() const override { return doorzichtig; }
    [[nodiscard]] bool isSaverActive() const override { return beveiligd; }
    [[nodiscard]] platform::Observation observe(std::function<void(Change)> actie) override {
        return observers_.add(std::move(actie));
    }

  private:
    platform::Observers<Change> observers_;
};

}  // namespace brixtel
