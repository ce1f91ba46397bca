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
uniform int mostSamples;     // of the picture, in one pixel
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

#ifdef TEXTURED
// The picture within the ellipse that a pixel covers: samples of the ellipse's width, side by
// side along its length. Every driver has an anisotropic filter of its own, and their light
// differs by up to a tenth.
vec4 pictureLight() {
    vec2 size = vec2(textureSize(picture, 0));
    mat2 grows = mat2(dFdx(pictureCoord) * size, dFdy(pictureCoord) * size);  // texels a pixel
    mat2 square = grows * transpose(grows);
    float middle = 0.5 * (square[0][0] + square[1][1]);
    float halfApart = 0.5 * (square[0][0] - square[1][1]);
    float apart = length(vec2(halfApart, square[0][1]));
    vec2 along = halfApart > 0.0 ? vec2(halfApart + apart, square[0][1])
                             : vec2(square[0][1], apart - halfApart);
    float longer = sqrt(middle + apart);
    float wide = max(sqrt(max(middle - apart, 0.0)), 1.0);
    // A circle's rounding errors are no length.
    float count = clamp(ceil(longer / wide - 0.01), 1.0, float(mostSamples));
    float level = log2(max(longer / count, wide));
#ifdef FADING
    // Half a level finer, which blurs digits less. A whole level would be sharper still, but
    // digits of two pixels would twinkle, as a far wall does by half a one.
    level -= 0.5;
#endif
    vec2 toNext = count > 1.0 ? normalize(along) * longer / (count * size) : vec2(0.0);
    vec2 at = pictureCoord - 0.5 * (count - 1.0) * toNext;
    vec4 sum = vec4(0.0);
    for (float i = 0.0; i < count; ++i)
        sum += textureLod(picture, at + i * toNext, level);
    return sum / count;
}
#endif

void main() {
    vec4 colour = tint;
#ifdef TEXTURED
    colour *= pictureLight();
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
#ifdef MIRRORED
    if (height < 0.0) discard;
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
