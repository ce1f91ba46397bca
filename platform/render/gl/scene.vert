// SPDX-License-Identifier: MIT
// Places the vertices of triangles, LINES or POINTS; MIRRORED in the floor's
// plane. Passes on positions relative to the camera, in world axes.
#version 330 core

layout(location = 0) in vec3 position;
layout(location = 1) in vec3 normal;    // for a line: its other end
layout(location = 2) in vec2 texcoord;  // for a line: its side and its end; for a
                                        // point: its size, and its share of the height
layout(location = 3) in float slot;

uniform samplerBuffer instances;  // four texels each: the world matrix's rows, the colour
uniform int firstInstance;
uniform mat4 viewProjection;
uniform vec3 cameraPosition;
uniform mat4 contentsTransform;
uniform vec2 halfViewport;  // pixels
uniform float thickness;    // pixels, of lines
uniform vec3 dots;          // pixels per point, the height that a share is of, a shown pixel's size
uniform float zNear;
uniform vec3 middle;  // of a FADING mesh
uniform vec4 floorPlane;  // world; the normal, and minus the distance

out vec3 fromCamera;
flat out vec4 tint;  // alpha multiplied in
#ifdef LAMBERT
out vec3 worldNormal;
#endif
#ifdef TEXTURED
out vec2 pictureCoord;
#endif
#ifdef LINES
noperspective out float across;  // pixels from the line's middle
#endif
#ifdef POINTS
flat out float dotSize;   // pixels
flat out float dotLight;  // the share of light left
flat out vec2 dotMiddle;  // pixels, as gl_FragCoord
#endif
#ifdef MIRRORED
out float height;  // the reflected thing's, above the floor
#endif

vec3 mirrored(vec3 world) {
#ifdef MIRRORED
    return world - 2.0 * (dot(floorPlane.xyz, world) + floorPlane.w) * floorPlane.xyz;
#else
    return world;
#endif
}

#ifdef LINES
// Cuts the line from `a` to `b` at the near plane.
vec4 beforeCamera(vec4 a, vec4 b) {
    if (a.w >= zNear || b.w <= zNear) return a;
    return mix(a, b, (zNear - a.w) / (b.w - a.w));
}
#endif

#ifdef FADING
// Grows a flat picture by at least the half pixel at its rim that it covers in part.
// Its sides may be as unequal as one to two.
float growth(vec4 centre, vec4 corner) {
    if (min(centre.w, corner.w) < zNear) return 1.0;
    vec2 apart = (corner.xy / corner.w - centre.xy / centre.w) * halfViewport;
    return 1.0 + 1.2 / max(length(apart), 0.3);
}
#endif

void main() {
    int at = 4 * (firstInstance + gl_InstanceID + int(slot));
    vec4 x = texelFetch(instances, at);
    vec4 y = texelFetch(instances, at + 1);
    vec4 z = texelFetch(instances, at + 2);
    vec4 colour = texelFetch(instances, at + 3);
    tint = vec4(colour.rgb * colour.a, colour.a);

    vec4 local = vec4(position, 1.0);
    vec3 world = vec3(dot(x, local), dot(y, local), dot(z, local));
#ifdef FADING
    local = vec4(middle, 1.0);
    vec3 centre = vec3(dot(x, local), dot(y, local), dot(z, local));
    float grown = growth(viewProjection * vec4(mirrored(centre), 1.0),
                         viewProjection * vec4(mirrored(world), 1.0));
    world = mix(centre, world, grown);
#endif
#ifdef MIRRORED
    height = dot(floorPlane.xyz, world) + floorPlane.w;
#endif
    world = mirrored(world);
    fromCamera = world - cameraPosition;
    gl_Position = viewProjection * vec4(world, 1.0);

#ifdef LAMBERT
    // The cofactor matrix keeps normals upright under any scale along each axis.
    vec3 n = vec3(dot(cross(y.xyz, z.xyz), normal), dot(cross(z.xyz, x.xyz), normal),
                  dot(cross(x.xyz, y.xyz), normal));
    if (dot(x.xyz, cross(y.xyz, z.xyz)) < 0.0) n = -n;
#ifdef MIRRORED
    n -= 2.0 * dot(floorPlane.xyz, n) * floorPlane.xyz;
#endif
    worldNormal = n;
#endif
#ifdef TEXTURED
#ifdef FADING
    pictureCoord = (contentsTransform * vec4(mix(vec2(0.5), texcoord, grown), 0.0, 1.0)).xy;
#else
    pictureCoord = (contentsTransform * vec4(texcoord, 0.0, 1.0)).xy;
#endif
#endif
#ifdef POINTS
    // A dot is at least one shown pixel wide, and one of the image. Where its share of
    // the height or a pixel of the image is less, it has less light instead.
    float size = max(texcoord.x * dots.x, dots.z);
    if (texcoord.y > 0.0) size = min(size, texcoord.y * dots.y);
    dotSize = max(size, max(dots.z, 1.0));
    dotLight = (size / dotSize) * (size / dotSize);
    dotMiddle = (gl_Position.xy / gl_Position.w + 1.0) * halfViewport;
    // Drivers place the square of a dot up to half a pixel away.
    gl_PointSize = dotSize + 2.0;
#endif
#ifdef LINES
    vec4 end = vec4(normal, 1.0);
    vec3 worldEnd = mirrored(vec3(dot(x, end), dot(y, end), dot(z, end)));
    vec4 other = viewProjection * vec4(worldEnd, 1.0);
    vec4 here = beforeCamera(gl_Position, other);
    other = beforeCamera(other, gl_Position);
    vec2 along = (other.xy / other.w - here.xy / here.w) * halfViewport;
    float far = length(along);
    along = far > 1e-6 ? along / far : vec2(1.0, 0.0);
    float reach = 0.5 * thickness + 0.5;
    across = texcoord.x * texcoord.y * reach;
    vec2 aside = vec2(-along.y, along.x) * (texcoord.x * reach);
    gl_Position = here + vec4(aside / halfViewport * here.w, 0.0, 0.0);
#endif
}
