// SPDX-License-Identifier: MIT
#include "platform/window/SpaceFunctions.h"

#include <span>

#include "platform/window/WindowServer.h"
#include "platform/window/WindowSystem.h"

namespace {

platform::OverlaySpaces* spacesOf(std::int32_t connection) {
    platform::WindowServer* const server = platform::WindowServer::numbered(connection);
    return server && server->isConnected() ? server->system().overlaySpaces() : nullptr;
}

std::span<const std::uint64_t> all(const CGSNumbers* numbers) {
    if (!numbers || !numbers->values) return {};
    return {numbers->values, numbers->count};
}

void setShown(std::int32_t connection, const CGSNumbers* spaces, bool shown) {
    platform::OverlaySpaces* const known = spacesOf(connection);
    if (!known) return;
    for (const std::uint64_t space : all(spaces))
        known->setShown(space, shown);
}

}  // namespace

std::int32_t _CGSDefaultConnection() {
    return platform::WindowServer::defaultNumber();
}

std::uint64_t CGSSpaceCreate(std::int32_t connection, std::int32_t, const CGSOptions*) {
    platform::OverlaySpaces* const spaces = spacesOf(connection);
    return spaces ? spaces->create() : 0;
}

void CGSSpaceDestroy(std::int32_t connection, std::uint64_t space) {
    if (auto* const spaces = spacesOf(connection)) spaces->destroy(space);
}

void CGSSpaceSetAbsoluteLevel(std::int32_t connection, std::uint64_t space, std::int32_t level) {
    if (auto* const spaces = spacesOf(connection)) spaces->setLevel(space, level);
}

void CGSShowSpaces(std::int32_t connection, const CGSNumbers* spaces) {
    setShown(connection, spaces, true);
}

void CGSHideSpaces(std::int32_t connection, const CGSNumbers* spaces) {
    setShown(connection, spaces, false);
}

void CGSAddWindowsToSpaces(std::int32_t connection, const CGSNumbers* windows,
                           const CGSNumbers* spaces) {
    platform::OverlaySpaces* const known = spacesOf(connection);
    if (!known) return;
    for (const std::uint64_t window : all(windows))
        for (const std::uint64_t space : all(spaces))
            known->add(window, space);
}
