// The programs of the graphics card. Node places come from two textures, so that a change of the
// displacements or of their scale costs no new geometry.

export const HEAD = /* glsl */ `
precision highp float;
precision highp int;
uniform mat4 projectionMatrix;
uniform mat4 modelViewMatrix;
uniform float scale;
`;

const NODES = /* glsl */ `
uniform highp sampler2D nodeX;
uniform highp sampler2D nodeU;
uniform int textureWidth;
vec3 placeOf(float node) {
  int i = int(node);
  ivec2 at = ivec2(i % textureWidth, i / textureWidth);
  return texelFetch(nodeX, at, 0).xyz + scale * texelFetch(nodeU, at, 0).xyz;
}
`;

// The colour of a value: banded, clamped to the scale, grey where there is none.
const PALETTE = /* glsl */ `
precision highp float;
uniform sampler2D palette;
uniform float low;
uniform float high;
uniform float bands;
uniform vec3 plain;
uniform bool coloured;
vec3 colourOf(float value) {
  if (!coloured || isnan(value)) return plain;
  float t = clamp((value - low) / max(high - low, 1e-30), 0.0, 1.0);
  if (bands > 0.5) t = (min(floor(t * bands), bands - 1.0) + 0.5) / bands;
  return texture(palette, vec2(t, 0.5)).rgb;
}
`;

const SECTION = /* glsl */ `
uniform vec4 section;
void cut(vec3 place) { if (dot(section.xyz, place) > section.w) discard; }
`;

export const SURFACE_VERTEX = HEAD + NODES + /* glsl */ `
in float node;
in float value;
in float edges;
out vec3 vPlace;
out vec3 vView;
out float vValue;
out vec3 vSide;
void main() {
  vPlace = placeOf(node);
  vec4 view = modelViewMatrix * vec4(vPlace, 1.0);
  vView = view.xyz;
  vValue = value;
  int corner = gl_VertexID % 3, e = int(edges);
  // Heights over the three sides; a side that is none lies far away.
  vSide = vec3(corner == 2 || (e & 1) == 0, corner == 0 || (e & 2) == 0,
               corner == 1 || (e & 4) == 0);
  gl_Position = projectionMatrix * view;
}
`;

export const SURFACE_FRAGMENT = PALETTE + SECTION + /* glsl */ `
uniform float lines;
uniform vec3 ink;
in vec3 vPlace;
in vec3 vView;
in float vValue;
in vec3 vSide;
out vec4 colour;
void main() {
  cut(vPlace);
  vec3 normal = normalize(cross(dFdx(vView), dFdy(vView)));
  float light = 0.72 + 0.28 * abs(dot(normal, normalize(vec3(0.35, 0.5, 0.8))));
  vec3 paint = colourOf(vValue) * light;
  vec3 width = fwidth(vSide);
  vec3 near = smoothstep(vec3(0.4), vec3(1.3), vSide / max(width, vec3(1e-9)));
  float line = 1.0 - min(near.x, min(near.y, near.z));
  // Lines fade out where the elements are too small to show them.
  float small = max(width.x, max(width.y, width.z));
  line *= lines * clamp(1.25 - 5.0 * small, 0.0, 1.0);
  colour = vec4(mix(paint, ink, line), 1.0);
}
`;

// A line of some pixels: one instance for each segment, four corners each.
export const LINE_VERTEX = HEAD + /* glsl */ `
uniform vec2 viewport;
uniform float width;
in vec2 corner;
in vec3 fromX;
in vec3 fromU;
in vec3 toX;
in vec3 toU;
in vec2 values;
out vec3 vPlace;
out float vValue;
void main() {
  vec3 from = fromX + scale * fromU, to = toX + scale * toU;
  vec4 a = projectionMatrix * modelViewMatrix * vec4(from, 1.0);
  vec4 b = projectionMatrix * modelViewMatrix * vec4(to, 1.0);
  vec2 along = (b.xy - a.xy) * viewport;
  vec2 dir = length(along) > 1e-6 ? normalize(along) : vec2(1.0, 0.0);
  vec2 side = vec2(-dir.y, dir.x);
  vec4 at = corner.x < 0.5 ? a : b;
  float overlap = (corner.x - 0.5) * width * 0.5;
  at.xy += (side * corner.y * width + dir * overlap) / viewport;
  gl_Position = at;
  vPlace = corner.x < 0.5 ? from : to;
  vValue = corner.x < 0.5 ? values.x : values.y;
}
`;

export const LINE_FRAGMENT = PALETTE + SECTION + /* glsl */ `
uniform float opacity;
in vec3 vPlace;
in float vValue;
out vec4 colour;
void main() {
  cut(vPlace);
  colour = vec4(colourOf(vValue), opacity);
}
`;

// Triangles with places of their own: diagrams and the cut of solids.
export const RIBBON_VERTEX = HEAD + /* glsl */ `
in vec3 base;
in vec3 tip;
in float value;
out vec3 vPlace;
out float vValue;
void main() {
  vPlace = base;
  vValue = value;
  gl_Position = projectionMatrix * modelViewMatrix * vec4(base + scale * tip, 1.0);
}
`;
