// SPDX-License-Identifier: MIT
// The bright pass of the scene: computed per pixel, then averaged over squares
// of `factor` pixels a side.
#version 330 core

uniform sampler2D scene;
uniform int factor;
uniform float threshold;
uniform float inputScale;

out vec4 result;

void main() {
    ivec2 first = ivec2(gl_FragCoord.xy) * factor;
    ivec2 last = textureSize(scene, 0) - 1;
    vec3 sum = vec3(0.0);
    for (int y = 0; y < factor; ++y)
        for (int x = 0; x < factor; ++x) {
            vec3 colour = texelFetch(scene, min(first + ivec2(x, y), last), 0).rgb * inputScale;
            sum += max(colour - threshold, vec3(0.0));
        }
    result = vec4(sum / float(factor * factor), 1.0);
}
