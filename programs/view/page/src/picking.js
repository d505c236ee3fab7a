// What lies under the pointer: nodes, beams and triangles, tried in the plane of the picture.

import {beamMeshes, endsOf} from './beams.js';
import {elementNumber, movedNode} from './model.js';

/** @import {Mesh, Model, Result, Vec3} from './types.js' */
/** @import {Projector} from './camera.js' */
/** @import {Surface} from './surface.js' */

const NODE_REACH = 9, BEAM_REACH = 7;

/**
 * A hit: `station` of a beam, `point` of another element, `place` in the undeformed model.
 * @typedef {{kind: 'node', index: number, depth: number}
 *           | {kind: 'element', mesh: Mesh, index: number, point: number, depth: number}} Hit
 */

/**
 * The picture in pixels, kept until the view or the displacements change.
 * @param {Model} model @param {Projector} to
 */
export function picker(model, to) {
  /** @type {Float32Array | null} */ let screen = null;

  /** @param {Result} result @param {number} scale */
  function project(result, scale) {
    if (screen) return screen;
    screen = new Float32Array(3 * model.nodes);
    to.set();
    const {x} = model, {u} = result;
    for (let k = 0; k < screen.length; k += 3)
      to.project(x[k] + scale * (u[k] || 0), x[k + 1] + scale * (u[k + 1] || 0),
                 x[k + 2] + scale * (u[k + 2] || 0), screen, k);
    return screen;
  }

  return {
    forget() { screen = null; },
    /**
     * @param {number} x @param {number} y @param {Result} result @param {number} scale
     * @param {Surface[]} surfaces @param {(place: Vec3) => boolean} hidden @returns {Hit | null}
     */
    at(x, y, result, scale, surfaces, hidden) {
      const p = project(result, scale);
      const shown = (/** @type {number} */ n) =>
        !hidden(movedNode(model, result, n, scale));
      const face = triangleAt(p, x, y, surfaces, shown);
      const node = nodeAt(model, p, x, y, face ? face.depth : Infinity, shown);
      if (node) return node;
      const beam = beamAt(model, to, x, y, result, scale);
      return beam && (!face || beam.depth <= face.depth + 1e-4) ? beam : face ?? beam;
    },
  };
}

/** @typedef {ReturnType<typeof picker>} Picker */

/** @param {Model} model @param {Float32Array} p @param {number} x @param {number} y
 *  @param {number} front @param {(n: number) => boolean} shown @returns {Hit | null} */
function nodeAt(model, p, x, y, front, shown) {
  let best = -1, nearest = NODE_REACH * NODE_REACH, depth = Infinity;
  for (let n = 0; n < model.nodes; ++n) {
    const dx = p[3 * n] - x, dy = p[3 * n + 1] - y, far = dx * dx + dy * dy;
    if (far > nearest || p[3 * n + 2] > front + 2e-3 || model.nodeNumber(n) === 0) continue;
    if (far > nearest - 1 && p[3 * n + 2] >= depth) continue;
    if (!shown(n)) continue;
    [best, nearest, depth] = [n, far, p[3 * n + 2]];
  }
  return best < 0 ? null : {kind: 'node', index: best, depth};
}

/** @param {Float32Array} p @param {number} x @param {number} y @param {Surface[]} surfaces
 *  @param {(n: number) => boolean} shown @returns {Hit & {kind: 'element'} | null} */
function triangleAt(p, x, y, surfaces, shown) {
  /** @type {Hit & {kind: 'element'} | null} */ let best = null;
  for (const s of surfaces) {
    const nodes = s.nodes;
    for (let t = 0; t < s.count; ++t) {
      const a = 3 * nodes[3 * t], b = 3 * nodes[3 * t + 1], c = 3 * nodes[3 * t + 2];
      const ax = p[a] - x, ay = p[a + 1] - y, bx = p[b] - x, by = p[b + 1] - y;
      const cx = p[c] - x, cy = p[c + 1] - y;
      const w0 = bx * cy - by * cx, w1 = cx * ay - cy * ax, w2 = ax * by - ay * bx;
      if (!((w0 >= 0 && w1 >= 0 && w2 >= 0) || (w0 <= 0 && w1 <= 0 && w2 <= 0))) continue;
      const sum = w0 + w1 + w2;
      if (sum === 0) continue;
      const depth = (w0 * p[a + 2] + w1 * p[b + 2] + w2 * p[c + 2]) / sum;
      if ((best && depth >= best.depth) || !shown(nodes[3 * t])) continue;
      const weights = [w0 / sum, w1 / sum, w2 / sum];
      best = {kind: 'element', mesh: s.mesh, index: s.element[t], depth,
              point: nearestPoint(s, t, weights)};
    }
  }
  return best;
}

/** The integration point nearest to a place in a triangle. @param {Surface} s @param {number} t
 *  @param {number[]} weights */
function nearestPoint(s, t, weights) {
  if (s.mesh.points === 1) return 0;
  if (s.mesh.points === 4) return s.local[3 * t + weights.indexOf(Math.max(...weights))] % 4;
  // Natural coordinates of the corners and mid-sides, and of the points on 1-2, 2-3 and 3-1.
  const at = [[0, 0], [1, 0], [0, 1], [0.5, 0], [0.5, 0.5], [0, 0.5]];
  const q = [0, 1].map((d) =>
    weights.reduce((sum, w, k) => sum + w * at[s.local[3 * t + k]][d], 0));
  const far = at.slice(3).map(([r, u]) => (r - q[0]) ** 2 + (u - q[1]) ** 2);
  return far.indexOf(Math.min(...far));
}

/** @param {Model} model @param {Projector} to @param {number} x @param {number} y
 *  @param {Result} result @param {number} scale @returns {Hit & {kind: 'element'} | null} */
function beamAt(model, to, x, y, result, scale) {
  /** @type {Hit & {kind: 'element'} | null} */ let best = null;
  let nearest = BEAM_REACH;
  const p = [0, 0, 0], q = [0, 0, 0];
  for (const mesh of beamMeshes(model)) {
    const {stations} = mesh.head, n = stations.length, u = result.meshes[mesh.index]?.stationU;
    for (let i = 0; i < mesh.count; ++i) {
      const [a, b] = endsOf(model, mesh, i);
      for (let s = 0; s < n; ++s) {
        const k = 3 * (i * n + s), node = 3 * mesh.conn[2 * i + (s === 0 ? 0 : 1)];
        const move = (/** @type {number} */ d) =>
          scale * (u ? u[k + d] : (s === 0 || s === n - 1) ? result.u[node + d] || 0 : 0);
        to.project(a[0] + (b[0] - a[0]) * stations[s] + move(0),
                   a[1] + (b[1] - a[1]) * stations[s] + move(1),
                   a[2] + (b[2] - a[2]) * stations[s] + move(2), q);
        if (s > 0) {
          const {far, along} = toSegment(p, q, x, y);
          if (far < nearest) {
            nearest = far;
            best = {kind: 'element', mesh, index: i, point: along < 0.5 ? s - 1 : s,
                    depth: p[2] + (q[2] - p[2]) * along};
          }
        }
        [p[0], p[1], p[2]] = q;
      }
    }
  }
  return best;
}

/** @param {number[]} p @param {number[]} q @param {number} x @param {number} y */
function toSegment(p, q, x, y) {
  const dx = q[0] - p[0], dy = q[1] - p[1], l2 = dx * dx + dy * dy;
  const along = l2 ? Math.max(0, Math.min(1, ((x - p[0]) * dx + (y - p[1]) * dy) / l2)) : 0;
  return {far: Math.hypot(p[0] + dx * along - x, p[1] + dy * along - y), along};
}

/** The number of what was hit. @param {Model} model @param {Hit} hit */
export const numberOf = (model, hit) =>
  hit.kind === 'node' ? model.nodeNumber(hit.index) : elementNumber(hit.mesh, hit.index);
