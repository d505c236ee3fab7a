// The edges that show a surface from afar: its border, and where it bends.

import {at3, cross, dot, minus, unit} from './vectors.js';

/** @import {Model, Vec3} from './types.js' */
/** @import {Surface} from './surface.js' */

/** Above this an outline would take longer than the picture. */
const MOST_TRIANGLES = 150000;
const SHARP = Math.cos(0.5);

/**
 * Segments of the outline as `lineDrawing` takes them, without displacements.
 * @param {Model} model @param {Surface[]} surfaces
 */
export function outlineSegments(model, surfaces) {
  const total = surfaces.reduce((n, s) => n + s.count, 0);
  if (total > MOST_TRIANGLES) return new Float32Array(0);
  /** @type {Map<number, {normal: Vec3, count: number, sharp: boolean}>} */
  const edges = new Map();
  for (const s of surfaces)
    for (let t = 0; t < s.count; ++t) {
      const corners = [0, 1, 2].map((k) => s.nodes[3 * t + k]);
      const [a, b, c] = corners.map((n) => at3(model.x, n));
      const normal = unit(cross(minus(b, a), minus(c, a)));
      for (let k = 0; k < 3; ++k) {
        const n = corners[k], m = corners[(k + 1) % 3];
        const key = Math.min(n, m) * model.nodes + Math.max(n, m), known = edges.get(key);
        if (!known) edges.set(key, {normal, count: 1, sharp: false});
        else {
          ++known.count;
          if (Math.abs(dot(known.normal, normal)) < SHARP) known.sharp = true;
        }
      }
    }
  /** @type {number[]} */ const out = [];
  for (const [key, {count, sharp}] of edges) {
    if (count !== 1 && !sharp) continue;
    const a = minus(at3(model.x, Math.floor(key / model.nodes)), model.centre);
    const b = minus(at3(model.x, key % model.nodes), model.centre);
    out.push(...a, 0, 0, 0, ...b, 0, 0, 0, NaN, NaN);
  }
  return new Float32Array(out);
}
