// SPDX-License-Identifier: MIT
// A Gaussian along one direction. Each tap except the middle lies between two
// pixels, and so weighs both.
#version 330 core

in vec2 coord;

uniform sampler2D image;
uniform vec2 direction;  // the step to the next pixel
uniform int taps;        // on each side
uniform float middle;    // the middle tap's weight
uniform vec2 tap[16];    // pixels away, weight

out vec4 result;

void main() {
    vec3 sum = textureLod(image, coord, 0.0).rgb * middle;
    for (int i = 0; i < taps; ++i) {
        vec2 away = direction * tap[i].x;
        sum += (textureLod(image, coord + away, 0.0).rgb +
                textureLod(image, coord - away, 0.0).rgb) * tap[i].y;
    }
    result = vec4(sum, 1.0);
}
