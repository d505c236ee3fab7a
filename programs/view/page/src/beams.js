// Beams as curves over their stations, and the diagrams of what they carry.

import {axesOf, elementNumber} from './model.js';
import {at3, minus, plus, times} from './vectors.js';

/** @import {Mesh, Model, Quantity, Result, Vec3} from './types.js' */

/** @param {Model} model */
export const beamMeshes = (model) => model.meshes.filter(({kind}) => kind === 'beam');

/** @param {Model} model @param {Mesh} mesh @param {number} i @returns {[Vec3, Vec3]} */
export const endsOf = (model, mesh, i) => [at3(model.x, mesh.conn[2 * i]),
                                           at3(model.x, mesh.conn[2 * i + 1])];

/**
 * The displacement at station s of a beam: as computed, or, where there is none (a mode), the cubic
 * of the motions of its ends; a hinged end turns with the chord.
 * @param {Mesh} mesh @param {number} i @param {number} s @param {Result} result
 * @param {(mesh: Mesh, i: number, s: number) => Vec3} otherwise @returns {Vec3}
 */
function displacementAt(mesh, i, s, result, otherwise) {
  const u = result.meshes[mesh.index]?.stationU;
  return u ? at3(u, i * mesh.head.stations.length + s) : otherwise(mesh, i, s);
}

/**
 * @param {Model} model @param {Result} result
 * @returns {(mesh: Mesh, i: number, s: number) => Vec3}
 */
export function cubicMotion(model, result) {
  const hinged = new Set(model.head.hinges.map(({element, end}) => 2 * element + end));
  return (mesh, i, s) => {
    const [a, b] = endsOf(model, mesh, i), [ex, ey, ez] = axesOf(model, mesh, i);
    const xi = mesh.head.stations[s], eta = 1 - xi, L = Math.hypot(...minus(b, a));
    const n = [mesh.conn[2 * i], mesh.conn[2 * i + 1]], number = elementNumber(mesh, i);
    const u = n.map((k) => at3(result.u, k));
    const turn = n.map((k) => (result.rotation ? at3(result.rotation, k) : [0, 0, 0]));
    const local = (/** @type {number[]} */ v, /** @type {Vec3} */ e) =>
      v[0] * e[0] + v[1] * e[1] + v[2] * e[2];
    const across = (/** @type {Vec3} */ e, /** @type {Vec3} */ about, /** @type {number} */ sign) => {
      const [d1, d2] = u.map((v) => local(v, e));
      const slope = [0, 1].map((end) => (hinged.has(2 * number + end)
        ? d2 - d1 : sign * L * local(turn[end], about)));
      return d1 * (1 - xi * xi * (3 - 2 * xi)) + d2 * xi * xi * (3 - 2 * xi) +
             slope[0] * xi * eta * eta - slope[1] * xi * xi * eta;
    };
    const x = eta * local(u[0], ex) + xi * local(u[1], ex);
    const y = across(ey, ez, 1), z = across(ez, ey, -1);
    return plus(plus(times(ex, x), times(ey, y)), times(ez, z));
  };
}

/**
 * Segments of all beams as `lineDrawing` takes them. Values are those of the quantity at stations.
 * @param {Model} model @param {Result} result @param {Map<Mesh, Float32Array> | null} values
 */
export function beamSegments(model, result, values) {
  const meshes = beamMeshes(model), centre = model.centre;
  const total = meshes.reduce((n, m) => n + m.count * (m.head.stations.length - 1), 0);
  const out = new Float32Array(14 * total), otherwise = cubicMotion(model, result);
  let at = 0;
  for (const mesh of meshes) {
    const {stations} = mesh.head, own = values?.get(mesh);
    for (let i = 0; i < mesh.count; ++i) {
      const [a, b] = endsOf(model, mesh, i);
      const place = (/** @type {number} */ s) =>
        [0, 1, 2].map((d) => a[d] + (b[d] - a[d]) * stations[s] - centre[d]);
      let from = place(0), fromU = displacementAt(mesh, i, 0, result, otherwise);
      for (let s = 1; s < stations.length; ++s, at += 14) {
        const to = place(s), toU = displacementAt(mesh, i, s, result, otherwise);
        out.set(from, at);
        out.set(fromU, at + 3);
        out.set(to, at + 6);
        out.set(toU, at + 9);
        const k = i * stations.length + s;
        out[at + 12] = own ? own[k - 1] : NaN;
        out[at + 13] = own ? own[k] : NaN;
        [from, fromU] = [to, toU];
      }
    }
  }
  return out;
}

/** @param {Model} model @param {Result} result @param {Quantity} quantity */
export function stationValues(model, result, quantity) {
  /** @type {Map<Mesh, Float32Array>} */ const values = new Map();
  for (const mesh of beamMeshes(model)) {
    const out = new Float32Array(mesh.count * mesh.head.stations.length);
    if (quantity.place === 'beam') quantity.of(result, mesh, out);
    else nodeQuantityAtStations(mesh, result, quantity, out);
    values.set(mesh, out);
  }
  return values;
}

/** @param {Mesh} mesh @param {Result} result @param {Quantity} quantity
 *  @param {Float32Array} out */
function nodeQuantityAtStations(mesh, result, quantity, out) {
  if (quantity.place !== 'node' || quantity.id.startsWith('r') ||
      !result.meshes[mesh.index].stationU) {
    out.fill(NaN);
    return;
  }
  /** @type {(r: Result) => Result} */
  const alongBeams = (r) => Object.create(r, {
    u: {value: r.meshes[mesh.index].stationU},
    members: {value: r.members?.map(alongBeams)},
  });
  quantity.of(alongBeams(result), null, out);
}

/**
 * The direction in which a positive value of a component is drawn. Bending moments lie on the
 * tension side: a positive one bends the beam towards local y or z and stretches the other side.
 * @param {[Vec3, Vec3, Vec3]} axes @param {number} component N Vy Vz T My Mz from 0
 * @returns {Vec3}
 */
export function diagramDirection(axes, component) {
  const axis = component === 2 || component === 4 ? axes[2] : axes[1];
  return component >= 4 ? times(axis, -1) : axis;
}

/** Values below this share of the largest force of a result are rounding. */
const ROUNDING = 1e-9;

/** @type {WeakMap<Result, Map<string, number>>} */ const largestValues = new WeakMap();

/** The largest value of a component in all beams. @param {Model} model @param {Result} result
 *  @param {Quantity} quantity */
function largestOf(model, result, quantity) {
  const known = largestValues.get(result) ?? new Map();
  largestValues.set(result, known);
  if (!known.has(quantity.id)) {
    let largest = 0;
    for (const values of stationValues(model, result, quantity).values())
      for (const v of values) largest = Math.max(largest, Math.abs(v) || 0);
    known.set(quantity.id, largest);
  }
  return known.get(quantity.id) ?? 0;
}

/** Whether a diagram would show nothing, or rounding blown up. Moments are judged by forces as far
 *  apart as the model is large.
 *  @param {Model} model @param {Result} result @param {Quantity} quantity
 *  @param {Quantity[]} quantities all that can be shown */
export function isNothing(model, result, quantity, quantities) {
  const asForce = (/** @type {Quantity} */ q) =>
    largestOf(model, result, q) / (q.component >= 3 ? model.size : 1);
  const largest = quantities.reduce((v, q) => (q.place === 'beam' ? Math.max(v, asForce(q)) : v), 0);
  return asForce(quantity) <= ROUNDING * largest;
}

/**
 * @typedef {{base: Float32Array, tip: Float32Array, value: Float32Array, outline: Float32Array,
 *            largest: number, peaks: Peak[]}} Diagram
 * @typedef {{place: Vec3, direction: Vec3, value: number, element: number, rank: number}} Peak
 */

/** Extremes of one beam that are worth a label: its ends and the turning points between.
 *  @param {Float32Array} v @param {number} from @param {number} n */
function peaksOf(v, from, n) {
  let low = 0, high = 0;
  for (let s = 1; s < n; ++s) {
    if (v[from + s] < v[from + low]) low = s;
    if (v[from + s] > v[from + high]) high = s;
  }
  return [...new Set([low, high, 0, n - 1])];
}

/**
 * The strips of one component over all beams; tips are for a scale of one length unit per unit of
 * value.
 * @param {Model} model @param {Map<Mesh, Float32Array>} values @param {number} component
 * @returns {Diagram}
 */
export function diagramOf(model, values, component) {
  /** @type {number[]} */ const base = [];
  /** @type {number[]} */ const tip = [];
  /** @type {number[]} */ const value = [];
  /** @type {number[]} */ const outline = [];
  /** @type {Peak[]} */ const peaks = [];
  let largest = 0;
  const centre = model.centre;
  for (const [mesh, v] of values) {
    const {stations} = mesh.head, n = stations.length;
    for (let i = 0; i < mesh.count; ++i) {
      const [a, b] = endsOf(model, mesh, i);
      const direction = diagramDirection(axesOf(model, mesh, i), component);
      const place = (/** @type {number} */ xi) =>
        /** @type {Vec3} */ ([0, 1, 2].map((d) => a[d] + (b[d] - a[d]) * xi - centre[d]));
      const put = (/** @type {Vec3} */ p, /** @type {number} */ t, /** @type {number} */ q) => {
        base.push(...p);
        tip.push(...times(direction, t));
        value.push(q);
      };
      const edge = (/** @type {Vec3} */ p, /** @type {number} */ t, /** @type {Vec3} */ q,
                    /** @type {number} */ w, /** @type {number} */ sign) =>
        outline.push(...p, ...times(direction, t), ...q, ...times(direction, w), sign, sign);
      for (let s = 1; s < n; ++s) {
        const p = place(stations[s - 1]), q = place(stations[s]);
        const t = v[i * n + s - 1], w = v[i * n + s];
        if (t * w < 0) {
          const zero = place(stations[s - 1] + (stations[s] - stations[s - 1]) * (t / (t - w)));
          put(p, 0, t); put(p, t, t); put(zero, 0, t);
          put(q, 0, w); put(q, w, w); put(zero, 0, w);
          edge(p, t, zero, 0, t);
          edge(zero, 0, q, w, w);
        } else {
          const sign = t + w;
          put(p, 0, sign); put(p, t, sign); put(q, w, sign);
          put(p, 0, sign); put(q, w, sign); put(q, 0, sign);
          edge(p, t, q, w, sign);
        }
      }
      edge(place(0), 0, place(0), v[i * n], v[i * n]);
      edge(place(1), 0, place(1), v[i * n + n - 1], v[i * n + n - 1]);
      for (const s of peaksOf(v, i * n, n)) {
        const q = v[i * n + s];
        largest = Math.max(largest, Math.abs(q));
        peaks.push({place: place(stations[s]), direction, value: q,
                    element: elementNumber(mesh, i), rank: Math.abs(q)});
      }
    }
  }
  peaks.sort((p, q) => q.rank - p.rank);
  return {base: new Float32Array(base), tip: new Float32Array(tip),
          value: new Float32Array(value), outline: new Float32Array(outline), largest,
          peaks: peaks.filter(({rank}) => rank > 1e-6 * largest).slice(0, 4000)};
}
