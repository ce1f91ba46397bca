// One instance is one rectangle of whole pixels, origin at the lower left.
#version 330 core

uniform isamplerBuffer records;
uniform int firstRect;   // the rectangles' first record; two records each
uniform vec2 pixelSize;  // the size of one pixel, in the unit square of the framebuffer

// The paint of the rectangle; see rects.frag.
flat out ivec4 head, form, extra;

void main() {
    int rect = firstRect + 2 * gl_InstanceID;
    ivec4 edges = texelFetch(records, rect);  // left, low, right, high
    int paint = texelFetch(records, rect + 1).x;
    head = texelFetch(records, paint);
    form = texelFetch(records, paint + 1);
    extra = texelFetch(records, paint + 2);
    ivec2 corner = ivec2((gl_VertexID & 1) == 0 ? edges.x : edges.z,
                         (gl_VertexID & 2) == 0 ? edges.y : edges.w);
    gl_Position = vec4(vec2(corner) * pixelSize * 2.0 - 1.0, 0.0, 1.0);
}
