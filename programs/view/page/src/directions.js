// Main directions as crosses: two lines in each shell element, three in each solid on the surface.

import {axesOf, centroid, materialOf} from './model.js';
import {mainDirection, mainValues, planeMain} from './tensors.js';
import {faceStress} from './quantities.js';
import {plus, times} from './vectors.js';

/** @import {Mesh, Model, Quantity, Result, Vec3} from './types.js' */

const MOST = 20000;

/** @typedef {{direction: Vec3, value: number}} Line */

/** Which resultants of shells the crosses show beside this quantity. @param {Quantity | null} q */
function shellTensor(q) {
  if (q?.id.startsWith('m') && !q.id.startsWith('mises')) return 'moments';
  if (q?.id.endsWith('top')) return 'top';
  if (q?.id.endsWith('bottom')) return 'bottom';
  return 'forces';
}

/** @param {Model} model @param {Mesh} mesh @param {number} i @param {Result} result
 *  @param {ReturnType<typeof shellTensor>} which @returns {Line[]} */
function shellLines(model, mesh, i, result, which) {
  const values = result.meshes[mesh.index].values;
  if (!values) return [];
  const mean = new Float64Array(8);
  for (let p = 0; p < mesh.points; ++p)
    for (let c = 0; c < 8; ++c) mean[c] += values[8 * (i * mesh.points + p) + c] / mesh.points;
  const from = which === 'moments' ? 3 : 0, t = Number(materialOf(model, mesh, i).t);
  const tensor = which === 'top' || which === 'bottom'
    ? faceStress(mean, 0, t, which === 'top' ? 1 : -1)
    : Array.from(mean.subarray(from, from + 3));
  const {first, second, angle} = planeMain(tensor[0], tensor[1], tensor[2]);
  const [ex, ey] = axesOf(model, mesh, i), c = Math.cos(angle), s = Math.sin(angle);
  return [{direction: plus(times(ex, c), times(ey, s)), value: first},
          {direction: plus(times(ex, -s), times(ey, c)), value: second}];
}

/** @param {Mesh} mesh @param {number} i @param {Result} result @returns {Line[]} */
function solidLines(mesh, i, result) {
  const values = result.meshes[mesh.index].values;
  if (!values) return [];
  const at = 6 * i * mesh.points;
  return mainValues(values, at).map((value) => ({direction: mainDirection(values, at, value),
                                                 value}));
}

/** The elements that get a cross. @param {Mesh} mesh */
function crossed(mesh) {
  const all = mesh.kind === 'solid'
    ? [...new Set(Array.from(mesh.faces ?? [], (f) => f >> 2))]
    : Array.from({length: mesh.count}, (_, i) => i);
  const step = Math.ceil(all.length / MOST);
  return all.filter((_, k) => k % step === 0);
}

/**
 * Segments of all crosses as `lineDrawing` takes them: as long as the element where the value is
 * the largest, coloured by sign.
 * @param {Model} model @param {Result} result @param {Quantity | null} quantity
 */
export function directionSegments(model, result, quantity) {
  if (result.kind === 'envelope') return new Float32Array(0);  // its components belong to no tensor
  const which = shellTensor(quantity);
  /** @type {{at: Vec3, u: Vec3, size: number, lines: Line[]}[]} */ const crosses = [];
  let largest = 0;
  for (const mesh of model.meshes) {
    if (mesh.kind === 'beam') continue;
    for (const i of crossed(mesh)) {
      const lines = mesh.kind === 'shell' ? shellLines(model, mesh, i, result, which)
                                          : solidLines(mesh, i, result);
      for (const {value} of lines) largest = Math.max(largest, Math.abs(value));
      crosses.push({at: centroid(model, mesh, i), u: meanMotion(mesh, i, result),
                    size: sizeOf(model, mesh, i), lines});
    }
  }
  /** @type {number[]} */ const out = [];
  for (const {at, u, size, lines} of crosses)
    for (const {direction, value} of lines) {
      const half = times(direction, (0.5 * size * Math.abs(value)) / (largest || 1));
      const from = at.map((x, d) => x - half[d] - model.centre[d]);
      const to = at.map((x, d) => x + half[d] - model.centre[d]);
      const sign = value < 0 ? 0 : 1;
      out.push(...from, ...u, ...to, ...u, sign, sign);
    }
  return new Float32Array(out);
}

/** @param {Mesh} mesh @param {number} i @param {Result} result @returns {Vec3} */
function meanMotion(mesh, i, {u}) {
  const corners = mesh.kind === 'shell' ? 3 : 4;
  /** @type {Vec3} */ const sum = [0, 0, 0];
  for (let k = 0; k < corners; ++k)
    for (let d = 0; d < 3; ++d) sum[d] += (u[3 * mesh.conn[i * mesh.nnode + k] + d] || 0) / corners;
  return sum;
}

/** @param {Model} model @param {Mesh} mesh @param {number} i */
function sizeOf(model, mesh, i) {
  const a = 3 * mesh.conn[i * mesh.nnode], b = 3 * mesh.conn[i * mesh.nnode + 1], {x} = model;
  return Math.hypot(x[a] - x[b], x[a + 1] - x[b + 1], x[a + 2] - x[b + 2]) * 0.8;
}
