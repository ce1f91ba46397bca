// SPDX-License-Identifier: MIT
// A Gaussian along one direction. Each tap but the middle one lies between two
// pixels so that it weighs both.
#version 330 core

in vec2 coord;

uniform sampler2D image;
uniform vec2 direction;  // one pixel along it
uniform int taps;        // on each side
uniform float middle;    // its weight
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
