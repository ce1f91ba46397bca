// What GlRecords writes down is read here; both must agree. A paint is four
// records:
//   0  kind, opacity
//   1  colour: itself                      gradient: along x, along y, offset
//      picture, pixel for pixel: left, high edge, width, first texel
//      picture, stretched: along x, offset, along y, offset
//   2  gradient: first stop, how many      stretched: first texel, width, height
//   3  item: its mask, -1 for none         piece of a mask: left, low, right, high
// A mask is one record (the mask around it, how many pieces) and then its
// pieces; a stop is two (location; colour).
#version 330 core

const int kColour = 0, kGradient = 1, kExact = 2;

uniform isamplerBuffer records;
uniform samplerBuffer pictures;

flat in int paint;
out vec4 result;

vec4 numbers(int record) {
    return intBitsToFloat(texelFetch(records, record));
}

vec4 texel(int index) {
    return texelFetch(pictures, index).bgra;
}

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

vec4 value(int at) {
    ivec4 head = texelFetch(records, at);
    ivec4 form = texelFetch(records, at + 1);
    vec4 f = intBitsToFloat(form);
    vec4 colour;
    if (head.x == kColour) {
        colour = f;
    } else if (head.x == kGradient) {
        colour = gradient(texelFetch(records, at + 2).xy, dot(f.xyz, vec3(gl_FragCoord.xy, 1.0)));
    } else if (head.x == kExact) {
        ivec2 pixel = ivec2(gl_FragCoord.xy);
        colour = texel(form.w + (form.y - 1 - pixel.y) * form.z + pixel.x - form.x);
    } else {
        colour = stretched(texelFetch(records, at + 2).xyz, gl_FragCoord.xy * f.xz + f.yw);
    }
    return colour * intBitsToFloat(head.y);
}

// The alpha of the pieces of a mask, one over the other.
float coverage(int first, int count) {
    ivec2 pixel = ivec2(gl_FragCoord.xy);
    float clear = 1.0;
    for (int piece = first; piece < first + 4 * count; piece += 4) {
        ivec4 edges = texelFetch(records, piece + 3);
        if (all(greaterThanEqual(pixel, edges.xy)) && all(lessThan(pixel, edges.zw)))
            clear *= 1.0 - value(piece).a;
    }
    return 1.0 - clear;
}

void main() {
    float shown = 1.0;
    int mask = texelFetch(records, paint + 3).x;
    while (mask >= 0) {
        ivec4 head = texelFetch(records, mask);
        shown *= coverage(mask + 1, head.y);
        mask = head.x;
    }
    result = value(paint) * shown;
}
