// SPDX-License-Identifier: MIT
// Pictures as sprites want them; private to platform/render.
#pragma once

#include <QImage>
#include <glm/vec4.hpp>
#include <vector>

namespace platform {

// A picture whose rows can be averaged over any stretch of them at once. Each row
// is a chain of straight pieces between the middles of its texels, and is kept
// with its integral. Equal rows that follow one another are kept once, and a
// picture of one colour keeps only how much of it there is.
struct SpritePicture {
    // Whether it is only added: what it covers does not matter then.
    SpritePicture(const QImage& picture, bool additive);

    // Whether there is nothing to be seen of a box of its texels.
    [[nodiscard]] bool isEmpty(double left, double top, double right, double bottom) const;

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
    glm::vec4 colour{1.0F};        // of which there is more or less; alpha multiplied in
    std::size_t channels = 1;      // 1 where there is one colour, else 4
    std::vector<int> runOf;        // by the picture's row
    std::vector<bool> runIsEmpty;  // by the run
    std::vector<float> data;

  private:
    // Whether there is something in each of kBlocks × kBlocks parts of it.
    static constexpr int kBlocks = 16;
    std::vector<char> filled_;
};

// One pixel row or column of a sprite and what of the picture it shows: how much
// of each of some runs.
struct RunShare {
    int run = 0;
    float share = 0.0F;
};

}  // namespace platform
