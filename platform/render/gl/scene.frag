// SPDX-License-Identifier: MIT
// The light from a scene's surfaces towards the camera, linear, alpha
// multiplied in. Variants: LAMBERT or constant; TEXTURED, with FADING picture
// edges or not; ADDITIVE, which fog only dims.
#version 330 core

in vec3 fromCamera;
flat in vec4 tint;
#ifdef LAMBERT
in vec3 worldNormal;
#endif
#ifdef TEXTURED
in vec2 pictureCoord;
#endif
#ifdef LINES
noperspective in float across;
#endif
#ifdef POINTS
flat in float dotSize;
flat in float dotLight;
flat in vec2 dotMiddle;
#endif
#ifdef MIRRORED
in float height;
#endif

uniform sampler2D picture;
uniform vec3 emission;
uniform vec3 ambient;
uniform int lightCount;
uniform vec3 lightPosition[8];  // from the camera, as fromCamera
uniform vec3 lightColour[8];
uniform vec3 fogColour;
uniform vec2 fogRange;     // the fog's start, and its growth per unit
uniform vec2 reflection;   // the mirror's share, and its loss per unit of height
uniform float thickness;   // pixels, of lines
uniform float strength;    // of the lines' light
uniform float outputScale;

out vec4 result;

void main() {
#ifdef MIRRORED
    if (height < 0.0) discard;
#endif
    vec4 colour = tint;
#ifdef TEXTURED
    // The limit shows the picture's average where a pixel spans many repeats. With
    // an unlimited span, software OpenGL looks at every repeat and takes seconds.
    vec2 span = fwidth(pictureCoord);
    float few = min(1.0, 4.0 / max(max(span.x, span.y), 1e-6));
#ifdef FADING
    // Half a level finer than the driver's choice, which blurs digits. A whole level would be
    // sharper still, but digits of two pixels would twinkle, as a far wall does by half a one.
    colour *= texture(picture, pictureCoord * few, -0.5);
#else
    colour *= texture(picture, pictureCoord * few);
#endif
#endif
#ifdef FADING
    // The share of the pixel that the picture covers, on each of its axes. A picture of a
    // few pixels then glides instead of jumping from pixel to pixel, and keeps its light.
    vec2 size = inversesqrt(max(dFdx(pictureCoord) * dFdx(pictureCoord) +
                                dFdy(pictureCoord) * dFdy(pictureCoord), 1e-12));  // pixels
    vec2 at = pictureCoord * size;
    vec2 share = clamp(min(at + 0.5, size) - max(at - 0.5, 0.0), 0.0, 1.0);
    colour *= share.x * share.y;
#endif
#ifdef LAMBERT
    vec3 n = normalize(gl_FrontFacing ? worldNormal : -worldNormal);
    vec3 light = ambient;
    for (int i = 0; i < lightCount; ++i)
        light += lightColour[i] * max(dot(n, normalize(lightPosition[i] - fromCamera)), 0.0);
    colour.rgb = colour.rgb * light + emission * colour.a;
#endif
#ifdef FOG
    float fog = clamp((length(fromCamera) - fogRange.x) * fogRange.y, 0.0, 1.0);
#ifdef ADDITIVE
    colour.rgb *= 1.0 - fog;
#else
    colour.rgb = mix(colour.rgb, fogColour * colour.a, fog);
#endif
#endif
#ifdef LINES
    colour *= strength * clamp(0.5 * thickness + 0.5 - abs(across), 0.0, 1.0);
#endif
#ifdef POINTS
    // With multisampling, software OpenGL is half a pixel off in gl_PointCoord.
    float away = length(gl_FragCoord.xy - dotMiddle);
    float covered = clamp(0.5 * dotSize + 0.5 - away, 0.0, 1.0);
    if (covered == 0.0) discard;
    colour *= dotLight * covered;
#endif
#ifdef MIRRORED
    colour.rgb *= reflection.x * clamp(1.0 - height * reflection.y, 0.0, 1.0);
#endif
    result = vec4(colour.rgb * outputScale, colour.a);
}
