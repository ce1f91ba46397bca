// SPDX-License-Identifier: MIT
// Pictures as sprites want them; private to platform/render.
#pragma once

#include <QImage>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>
#include <memory>
#include <optional>
#include <vector>

namespace platform {

// The linear colour of a picture that is one colour behind a stencil.
[[nodiscard]] std::optional<glm::vec3> stencilColour(const QImage& picture);

// A picture that gives the average of any stretch of a row at once. A row is a chain of
// straight pieces between the middles of its texels, stored with its integral. Equal
// successive rows are stored once. A picture of one colour stores only the colour's
// strength.
struct SpritePicture {
    // `additive`: the picture only adds light, so its coverage is not needed.
    SpritePicture(const QImage& picture, bool additive);

    // The picture itself, or, of one with many runs, a half, a quarter, … of it that has texels
    // enough for sprites of this size in pixels. Makes what is missing, and keeps it.
    [[nodiscard]] const SpritePicture& forSize(glm::dvec2 size);

    // Whether a box of the picture's texels is invisible.
    [[nodiscard]] bool isEmpty(double left, double top, double right, double bottom) const;

    // Whether few rows are alike.
    [[nodiscard]] bool hasManyRuns() const { return runs * 2 > height; }

    [[nodiscard]] int nodes() const { return width + 2; }
    [[nodiscard]] const float* values(std::size_t channel, int run) const {
        return data.data() +
               (channel * static_cast<std::size_t>(runs) + static_cast<std::size_t>(run)) * 2 *
                   static_cast<std::size_t>(stride);
    }
    [[nodiscard]] const float* integrals(std::size_t channel, int run) const {
        return values(channel, run) + stride;
    }

    int width = 0;
    int height = 0;
    int stride = 0;  // of a row's values, and of its integrals
    int runs = 0;
    bool hasOneColour = false;
    glm::vec4 colour{1.0F};        // the picture's only colour; alpha multiplied in
    std::size_t channels = 1;      // 1 where there is one colour, else 4
    std::vector<int> runOf;        // by the picture's row
    std::vector<bool> runIsEmpty;  // by the run
    std::vector<float> data;

  private:
    struct Half {};
    SpritePicture(const SpritePicture& whole, Half);
    template <typename Same>
    void findRuns(const Same& isSame);
    template <typename Value>
    void fillRuns(const Value& valueAt);

    std::unique_ptr<SpritePicture> half_;
    // Whether each of the picture's kBlocks × kBlocks parts is visible.
    static constexpr int kBlocks = 32;
    std::vector<char> filled_;
};

// The share that one run of a picture has in one pixel row or column of a
// sprite.
struct RunShare {
    int run = 0;
    float share = 0.0F;
};

}  // namespace platform
