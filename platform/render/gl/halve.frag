// SPDX-License-Identifier: MIT
// Halves the picture: a tap between four pixels averages them.
#version 330 core

uniform sampler2D image;
uniform vec2 texel;  // the size of a pixel of the larger picture

out vec4 result;

void main() {
    result = textureLod(image, gl_FragCoord.xy * 2.0 * texel, 0.0);
}
