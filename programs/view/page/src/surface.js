// Shells and solids as triangles, and values of points or nodes as values of their corners.

import {elementNumber} from './model.js';

/** @import {Mesh, Model, Quantity, Result} from './types.js' */

/**
 * Triangles of one mesh. `local` are places of the corners within the element, `edges` which sides
 * are sides of an element (bit k: from corner k to the next).
 * @typedef {{mesh: Mesh, count: number, nodes: Uint32Array, element: Uint32Array,
 *            local: Uint8Array, edges: Uint8Array}} Surface
 */

// Corners, and mid-sides 4 on 1-2, 5 on 2-3, 6 on 3-1: three triangles at the corners, one inside.
const SIX = [[0, 3, 5], [3, 1, 4], [5, 4, 2], [3, 4, 5]];
const SIX_EDGES = [0b101, 0b011, 0b110, 0];
// Faces of a tetrahedron from its corners: outside is where the fourth corner is not.
const FACES = [[0, 1, 2], [1, 2, 3], [2, 3, 0], [3, 0, 1]];
// The mid-side between two corners of a ten-noded tetrahedron.
const MIDDLE = [[-1, 4, 6, 7], [4, -1, 5, 8], [6, 5, -1, 9], [7, 8, 9, -1]];

/** @param {Mesh} mesh @param {number} triangles @returns {Surface} */
const emptySurface = (mesh, triangles) => ({
  mesh,
  count: triangles,
  nodes: new Uint32Array(3 * triangles),
  element: new Uint32Array(triangles),
  local: new Uint8Array(3 * triangles),
  edges: new Uint8Array(triangles),
});

/** @param {Surface} s @param {number} t @param {number} element @param {number[]} local
 *  @param {number} edges */
function setTriangle(s, t, element, local, edges) {
  const {conn, nnode} = s.mesh;
  s.element[t] = element;
  s.edges[t] = edges;
  for (let k = 0; k < 3; ++k) {
    s.local[3 * t + k] = local[k];
    s.nodes[3 * t + k] = conn[element * nnode + local[k]];
  }
}

/** @param {Mesh} mesh @returns {Surface} */
function shellSurface(mesh) {
  const parts = mesh.nnode === 6 ? SIX : [[0, 1, 2]];
  const surface = emptySurface(mesh, mesh.count * parts.length);
  if (mesh.nnode === 3) {
    surface.nodes.set(mesh.conn);
    for (let e = 0; e < mesh.count; ++e) {
      surface.element[e] = e;
      surface.local[3 * e + 1] = 1;
      surface.local[3 * e + 2] = 2;
    }
    surface.edges.fill(0b111);
    return surface;
  }
  for (let e = 0, t = 0; e < mesh.count; ++e)
    for (let p = 0; p < parts.length; ++p) setTriangle(surface, t++, e, parts[p], SIX_EDGES[p]);
  return surface;
}

/** @param {number} face @param {number} nnode */
function faceParts(face, nnode) {
  const [a, b, c] = FACES[face];
  if (nnode === 4) return [[a, b, c]];
  const ab = MIDDLE[a][b], bc = MIDDLE[b][c], ca = MIDDLE[c][a];
  return [[a, ab, ca], [ab, b, bc], [ca, bc, c], [ab, bc, ca]];
}

/** @param {Mesh} mesh @returns {Surface} */
function solidSurface(mesh) {
  const faces = mesh.faces ?? new Uint32Array(0);
  const table = FACES.map((_, f) => faceParts(f, mesh.nnode));
  const parts = table[0].length;
  const surface = emptySurface(mesh, faces.length * parts);
  for (let f = 0, t = 0; f < faces.length; ++f)
    for (let p = 0; p < parts; ++p)
      setTriangle(surface, t++, faces[f] >> 2, table[faces[f] & 3][p],
                  parts === 1 ? 0b111 : SIX_EDGES[p]);
  return surface;
}

/** The triangles of everything but beams, mesh by mesh. @param {Model} model */
export const surfacesOf = (model) =>
  model.meshes.filter(({kind}) => kind !== 'beam')
              .map((mesh) => (mesh.kind === 'shell' ? shellSurface(mesh) : solidSurface(mesh)));

// The points a, b, c of a six-noded triangle are the mid-points of 1-2, 2-3 and 3-1; a linear field
// through them has these values at the corners and mid-sides.
/** @param {number} local @param {number} a @param {number} b @param {number} c */
export function linearInTriangle(local, a, b, c) {
  switch (local) {
    case 0: return a + c - b;
    case 1: return a + b - c;
    case 2: return b + c - a;
    case 3: return a;
    case 4: return b;
    default: return c;
  }
}

// Four points of a ten-noded tetrahedron, at (a, b, b, b) and so on: a linear field at the corners.
const TET_A = 0.585410196624968, TET_B = 0.138196601125011;
/** @param {number} local @param {Float32Array} v @param {number} at */
export function linearInTetrahedron(local, v, at) {
  const sum = v[at] + v[at + 1] + v[at + 2] + v[at + 3];
  const corner = (/** @type {number} */ k) => (v[at + k] - TET_B * sum) / (TET_A - TET_B);
  if (local < 4) return corner(local);
  const [p, q] = [[0, 1], [1, 2], [2, 0], [0, 3], [1, 3], [2, 3]][local - 4];
  return (corner(p) + corner(q)) / 2;
}

/**
 * Values at the corners of all triangles from the values at the points of the elements.
 * @param {Surface} s @param {Float32Array} points @param {Float32Array} out
 */
function pointsToCorners(s, points, out) {
  const n = s.mesh.points;
  for (let t = 0; t < s.count; ++t) {
    const at = s.element[t] * n;
    for (let k = 3 * t; k < 3 * t + 3; ++k) {
      if (n === 1) out[k] = points[at];
      else if (n === 3)
        out[k] = linearInTriangle(s.local[k], points[at], points[at + 1], points[at + 2]);
      else out[k] = linearInTetrahedron(s.local[k], points, at);
    }
  }
}

/** @param {Model} model @param {Surface[]} surfaces @param {Float32Array[]} corners */
function averageAtNodes(model, surfaces, corners) {
  const sum = new Float64Array(model.nodes), count = new Uint32Array(model.nodes);
  surfaces.forEach((s, i) => {
    for (let k = 0; k < 3 * s.count; ++k) {
      sum[s.nodes[k]] += corners[i][k];
      ++count[s.nodes[k]];
    }
  });
  surfaces.forEach((s, i) => {
    for (let k = 0; k < 3 * s.count; ++k) corners[i][k] = sum[s.nodes[k]] / count[s.nodes[k]];
  });
}

/**
 * The values of a quantity at the corners of all triangles, one array for each surface; NaN where
 * the elements have no such value.
 * @param {Model} model @param {Surface[]} surfaces @param {Quantity} quantity
 * @param {Result} result @param {boolean} average
 */
export function cornerValues(model, surfaces, quantity, result, average) {
  const nodal = quantity.place === 'node' ||
                (quantity.place === 'solid' && average && result.nodalStress);
  if (nodal) {
    const values = new Float32Array(model.nodes).fill(NaN);
    quantity.of(result, null, values);
    return surfaces.map((s) => {
      const out = new Float32Array(3 * s.count).fill(NaN);
      if (quantity.place === 'node' || s.mesh.kind === 'solid')
        for (let k = 0; k < out.length; ++k) out[k] = values[s.nodes[k]];
      return out;
    });
  }
  const own = surfaces.filter((s) => s.mesh.kind === quantity.place);
  const corners = own.map((s) => {
    const points = new Float32Array(s.mesh.count * s.mesh.points).fill(NaN);
    quantity.of(result, s.mesh, points);
    const out = new Float32Array(3 * s.count);
    pointsToCorners(s, points, out);
    return out;
  });
  if (average) averageAtNodes(model, own, corners);
  return surfaces.map((s) => corners[own.indexOf(s)] ?? new Float32Array(3 * s.count).fill(NaN));
}

/**
 * The smallest and largest of these values and where they are.
 * @param {Surface[]} surfaces @param {Float32Array[]} corners
 */
export function extremesOf(surfaces, corners) {
  const found = {low: Infinity, high: -Infinity, lowNode: -1, highNode: -1, lowElement: 0,
                 highElement: 0};
  surfaces.forEach((s, i) => {
    const values = corners[i];
    for (let k = 0; k < values.length; ++k) {
      const v = values[k];
      if (v < found.low) {
        found.low = v;
        found.lowNode = s.nodes[k];
        found.lowElement = elementNumber(s.mesh, s.element[Math.floor(k / 3)]);
      }
      if (v > found.high) {
        found.high = v;
        found.highNode = s.nodes[k];
        found.highElement = elementNumber(s.mesh, s.element[Math.floor(k / 3)]);
      }
    }
  });
  return found;
}
