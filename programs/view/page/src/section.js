// The section plane: what lies before it is cut off, and solids show their inside there.

import {ribbonDrawing, shared} from './scene.js';

/** @import {Mesh, Model, Quantity, Result, Vec3} from './types.js' */

/** @typedef {{axis: '' | 'x' | 'y' | 'z', at: number, flip: boolean}} Section */

/** The plane as normal and distance in places about the centre of the model. @param {Model} model
 *  @param {Section} section */
export function planeOf(model, {axis, at, flip}) {
  if (!axis) return {normal: [0, 0, 0], distance: 1, d: -1};
  const d = 'xyz'.indexOf(axis), side = flip ? -1 : 1;
  const value = model.low[d] + (model.high[d] - model.low[d]) * at - model.centre[d];
  const normal = [0, 0, 0];
  normal[d] = side;
  return {normal, distance: side * value, d};
}

/** Whether a place is cut off. @param {Model} model @param {Section} section
 *  @returns {(place: Vec3) => boolean} */
export function cutOff(model, section) {
  const {normal, distance} = planeOf(model, section), {centre} = model;
  return (p) => p.reduce((sum, v, d) => sum + normal[d] * (v - centre[d]), 0) >
                distance + 1e-9 * model.size;
}

/** @param {Model} model @param {Section} section */
export function applySection(model, section) {
  const {normal, distance} = planeOf(model, section);
  shared.section.value.set(normal[0], normal[1], normal[2], distance);
}

/** Nodal values of a quantity in a mesh of solids. @param {Model} model @param {Mesh} mesh
 *  @param {Quantity} quantity @param {Result} result */
function nodalValues(model, mesh, quantity, result) {
  const values = new Float32Array(model.nodes).fill(NaN);
  if (quantity.place === 'node' || (quantity.place === 'solid' && result.nodalStress))
    quantity.of(result, null, values);
  if (mesh.nnode === 10 && quantity.place === 'solid') fillMiddles(mesh, values);
  return values;
}

const ENDS = [[0, 1], [1, 2], [2, 0], [0, 3], [1, 3], [2, 3]];

/** @param {Mesh} mesh @param {Float32Array} values */
function fillMiddles(mesh, values) {
  for (let i = 0; i < mesh.count; ++i)
    ENDS.forEach(([a, b], k) => {
      const at = 10 * i;
      values[mesh.conn[at + 4 + k]] = (values[mesh.conn[at + a]] + values[mesh.conn[at + b]]) / 2;
    });
}

/**
 * The cut through all solids: each tetrahedron gives one or two triangles.
 * @param {Model} model @param {Section} section @param {Quantity | null} quantity
 * @param {Result} result @param {number} scale
 */
export function cutOfSolids(model, section, quantity, result, scale) {
  const {distance, d, normal} = planeOf(model, section);
  if (d < 0 || !model.meshes.some(({kind}) => kind === 'solid')) return null;
  const level = distance * normal[d] + model.centre[d];
  /** @type {number[]} */ const base = [];
  /** @type {number[]} */ const value = [];
  for (const mesh of model.meshes) {
    if (mesh.kind !== 'solid') continue;
    const values = quantity ? nodalValues(model, mesh, quantity, result) : null;
    for (let i = 0; i < mesh.count; ++i)
      cutTetrahedron(model, mesh, i, d, level, values, result.u, scale, base, value);
  }
  const places = new Float32Array(base);
  const drawn = ribbonDrawing(places, new Float32Array(places.length), new Float32Array(value));
  drawn.material.transparent = false;
  drawn.material.depthWrite = true;
  return drawn;
}

/**
 * @param {Model} model @param {Mesh} mesh @param {number} i @param {number} d
 * @param {number} level @param {Float32Array | null} values @param {ArrayLike<number>} u
 * @param {number} scale @param {number[]} base @param {number[]} value
 */
function cutTetrahedron(model, mesh, i, d, level, values, u, scale, base, value) {
  const {conn, nnode} = mesh, {x, centre} = model;
  const n = [0, 1, 2, 3].map((k) => conn[i * nnode + k]);
  const place = (/** @type {number} */ k, /** @type {number} */ c) =>
    x[3 * k + c] + scale * (u[3 * k + c] || 0);
  const over = n.filter((k) => place(k, d) > level), under = n.filter((k) => place(k, d) <= level);
  if (over.length === 0 || under.length === 0) return;
  const pairs = over.length === 2
    ? [[over[0], under[0]], [over[0], under[1]], [over[1], under[1]], [over[1], under[0]]]
    : over.flatMap((a) => under.map((b) => [a, b]));
  const corners = pairs.map(([a, b]) => {
    const t = (level - place(b, d)) / (place(a, d) - place(b, d));
    const p = [0, 1, 2].map((c) => place(b, c) + (place(a, c) - place(b, c)) * t - centre[c]);
    p[d] -= 1e-9 * model.size;  // on the side that is kept
    return {p, v: values ? values[b] + (values[a] - values[b]) * t : NaN};
  });
  for (let k = 2; k < corners.length; ++k)
    for (const {p, v} of [corners[0], corners[k - 1], corners[k]]) {
      base.push(...p);
      value.push(v);
    }
}
