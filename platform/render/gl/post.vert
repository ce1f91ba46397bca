// SPDX-License-Identifier: MIT
// One triangle that covers the whole target.
#version 330 core

out vec2 coord;  // 0 to 1 across the target

void main() {
    vec2 corner = vec2(gl_VertexID == 1 ? 3.0 : -1.0, gl_VertexID == 2 ? 3.0 : -1.0);
    coord = 0.5 * corner + 0.5;
    gl_Position = vec4(corner, 0.0, 1.0);
}
