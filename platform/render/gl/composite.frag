// SPDX-License-Identifier: MIT
// Adds scene and bloom, clamps, encodes (sRGB, IEC 61966-2-1), and dithers to eight
// bits without bands (interleaved gradient noise; J. Jimenez, SIGGRAPH 2014).
#version 330 core

in vec2 coord;

uniform sampler2D scene;
uniform float inputScale;
#ifdef BLOOM
uniform sampler2D bloom;
uniform vec2 bloomCoord;  // the part of the bloom's image that the scene covers
uniform float intensity;
#endif

out vec4 result;

#ifdef SMOOTH
// A cubic B-spline in four taps (C. Sigg, M. Hadwiger, GPU Gems 2, 2005) hides the grid.
vec3 smoothly(sampler2D image, vec2 at) {
    vec2 size = vec2(textureSize(image, 0));
    vec2 position = at * size - 0.5;
    vec2 base = floor(position);
    vec2 f = position - base;
    vec2 f2 = f * f;
    vec2 f3 = f2 * f;
    vec2 w0 = (1.0 - 3.0 * f + 3.0 * f2 - f3) / 6.0;
    vec2 w1 = (4.0 - 6.0 * f2 + 3.0 * f3) / 6.0;
    vec2 w3 = f3 / 6.0;
    vec2 low = w0 + w1;
    vec2 high = 1.0 - low;
    vec2 a = (base - 0.5 + w1 / low) / size;
    vec2 b = (base + 1.5 + w3 / high) / size;
    return low.y * (low.x * textureLod(image, a, 0.0).rgb +
                    high.x * textureLod(image, vec2(b.x, a.y), 0.0).rgb) +
           high.y * (low.x * textureLod(image, vec2(a.x, b.y), 0.0).rgb +
                     high.x * textureLod(image, b, 0.0).rgb);
}
#else
vec3 smoothly(sampler2D image, vec2 at) {
    return textureLod(image, at, 0.0).rgb;
}
#endif

vec3 encoded(vec3 light) {
    return mix(light * 12.92, 1.055 * pow(light, vec3(1.0 / 2.4)) - 0.055,
               step(0.0031308, light));
}

void main() {
    vec4 colour = textureLod(scene, coord, 0.0);
    vec3 light = colour.rgb * inputScale;
#ifdef BLOOM
    light += intensity * smoothly(bloom, coord * bloomCoord);
#endif
    light = encoded(clamp(light, 0.0, 1.0));
    float noise = fract(52.9829189 * fract(dot(gl_FragCoord.xy, vec2(0.06711056, 0.00583715))));
    result = vec4(light + (noise - 0.5) / 255.0, colour.a);
}
