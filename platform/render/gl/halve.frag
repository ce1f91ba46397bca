// SPDX-License-Identifier: MIT
// The same picture at half the size: a tap between four pixels averages them.
#version 330 core

uniform sampler2D image;
uniform vec2 texel;  // of the larger picture

out vec4 result;

void main() {
    result = textureLod(image, gl_FragCoord.xy * 2.0 * texel, 0.0);
}
