// Reads the records of GlRecords; GlRecords.h gives their layout.
//
// EVERYTHING is defined for lists with more than pictures pixel for pixel,
// colours and slopes. Most lists have no more, and software renderers pay for
// every branch, taken or not.
#version 330 core

const int kColour = 0, kGradient = 1, kExact = 2, kStretched = 3, kSlope = 4;

uniform isamplerBuffer records;
uniform samplerBuffer pictures;

flat in ivec4 head, form, extra;
out vec4 result;

vec4 numbers(int record) {
    return intBitsToFloat(texelFetch(records, record));
}

vec4 texel(int index) {
    return texelFetch(pictures, index).bgra;
}

vec4 exact(ivec4 picture) {
    ivec2 pixel = ivec2(gl_FragCoord.xy);
    return texel(picture.w + (picture.y - 1 - pixel.y) * picture.z + pixel.x - picture.x);
}

#ifdef EVERYTHING
vec4 gradient(ivec2 stops, float t) {
    float at = numbers(stops.x).x;
    vec4 colour = numbers(stops.x + 1);
    if (t <= at) return colour;
    for (int i = 1; i < stops.y; ++i) {
        float nextAt = numbers(stops.x + 2 * i).x;
        vec4 next = numbers(stops.x + 2 * i + 1);
        if (t <= nextAt) return mix(colour, next, (t - at) / (nextAt - at));
        at = nextAt;
        colour = next;
    }
    return colour;
}

vec4 stretched(ivec3 picture, vec2 position) {
    ivec2 last = picture.yz - 1;
    ivec2 low = ivec2(floor(position));
    ivec2 a = clamp(low, ivec2(0), last);
    ivec2 b = clamp(low + 1, ivec2(0), last);
    ivec2 rows = picture.x + ivec2(a.y, b.y) * picture.y;
    vec2 share = fract(position);
    vec4 upper = mix(texel(rows.x + a.x), texel(rows.x + b.x), share.x);
    vec4 lower = mix(texel(rows.y + a.x), texel(rows.y + b.x), share.x);
    return mix(upper, lower, share.y);
}
#endif

vec4 value(int kind, ivec4 itsForm, ivec4 itsExtra) {
    vec4 f = intBitsToFloat(itsForm);
#ifdef EVERYTHING
    if (kind == kGradient)
        return gradient(itsExtra.xy, dot(f.xyz, vec3(gl_FragCoord.xy, 1.0)));
    if (kind == kStretched) return stretched(itsExtra.xyz, gl_FragCoord.xy * f.xz + f.yw);
#endif
    return kind == kExact ? exact(itsForm) : f;
}

float slope(vec4 f, ivec2 rises) {
    float along = dot(f.xyz, vec3(gl_FragCoord.xy, 1.0));
    float alpha = f.w;
    for (int i = rises.x; i < rises.x + rises.y; ++i) {
        vec4 rise = numbers(i);
        alpha += rise.z * clamp((along - rise.x) * rise.y, 0.0, 1.0);
    }
    return alpha;
}

// The combined alpha of a mask's pieces.
float coverage(int first, int count) {
    ivec2 pixel = ivec2(gl_FragCoord.xy);
    float clear = 1.0;
    for (int piece = first; piece < first + 4 * count; piece += 4) {
        ivec4 edges = texelFetch(records, piece);
        ivec4 itsForm = texelFetch(records, piece + 1);
        ivec4 itsExtra = texelFetch(records, piece + 2);
        float alpha = slope(intBitsToFloat(itsForm), itsExtra.xy);
#ifdef EVERYTHING
        ivec4 itsHead = texelFetch(records, piece + 3);
        if (itsHead.x != kSlope)
            alpha = value(itsHead.x, itsForm, itsExtra).a * intBitsToFloat(itsHead.y);
#endif
        bool inside = all(greaterThanEqual(pixel, edges.xy)) && all(lessThan(pixel, edges.zw));
        clear *= inside ? 1.0 - alpha : 1.0;
    }
    return 1.0 - clear;
}

void main() {
    float shown = intBitsToFloat(head.y);
    for (int mask = head.z; mask >= 0;) {
        ivec4 around = texelFetch(records, mask);
        shown *= coverage(mask + 1, around.y);
        mask = around.x;
    }
    result = value(head.x, form, extra) * shown;
}
