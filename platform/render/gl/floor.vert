// SPDX-License-Identifier: MIT
// The endless floor: the part of its plane that the camera can see.
#version 330 core

uniform mat4 viewProjection;
uniform mat4 world;
uniform vec3 cameraPosition;
uniform vec3 under;   // the camera's foot in the floor's own space
uniform float reach;  // the visible distance, in the floor's own space
uniform float textureSpan;
uniform mat4 contentsTransform;
uniform vec4 colour;

out vec3 fromCamera;
flat out vec4 tint;
#ifdef LAMBERT
out vec3 worldNormal;
#endif
#ifdef TEXTURED
out vec2 pictureCoord;
#endif

void main() {
    vec2 corner = vec2(gl_VertexID & 1, gl_VertexID >> 1) * 2.0 - 1.0;
    vec3 local = under + vec3(corner.x * reach, 0.0, -corner.y * reach);
    vec4 place = world * vec4(local, 1.0);
    tint = vec4(colour.rgb * colour.a, colour.a);
    fromCamera = place.xyz - cameraPosition;
#ifdef LAMBERT
    worldNormal = cross(world[2].xyz, world[0].xyz);
#endif
#ifdef TEXTURED
    pictureCoord = (contentsTransform * vec4(local.xz / textureSpan, 0.0, 1.0)).xy;
#endif
    gl_Position = viewProjection * place;
}
