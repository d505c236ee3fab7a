// Which nodes of solids can be seen: those on the surface that face the eye.

import {centroid} from './model.js';
import {at3, cross, dot, minus, times} from './vectors.js';

/** @import {Model, Vec3} from './types.js' */
/** @import {Surface} from './surface.js' */

/**
 * Outward normals of the surface at the nodes of solids, not of unit length; null without solids.
 * @param {Model} model @param {Surface[]} surfaces
 */
export function outwardNormals(model, surfaces) {
  const solids = surfaces.filter((s) => s.mesh.kind === 'solid');
  if (solids.length === 0) return null;
  const normals = new Float32Array(3 * model.nodes);
  for (const s of solids)
    for (let t = 0; t < s.count; ++t) {
      const [a, b, c] = [0, 1, 2].map((k) => at3(model.x, s.nodes[3 * t + k]));
      const normal = cross(minus(b, a), minus(c, a));
      const inside = dot(normal, minus(centroid(model, s.mesh, s.element[t]), a)) > 0;
      const outward = times(normal, inside ? -1 : 1);
      for (let k = 0; k < 3; ++k)
        for (let d = 0; d < 3; ++d) normals[3 * s.nodes[3 * t + k] + d] += outward[d];
    }
  return normals;
}

/** @param {Float32Array | null} normals @param {number} n @param {Vec3} eye */
export function faces(normals, n, eye) {
  if (!normals) return true;
  const v = at3(normals, n), size = Math.hypot(...v);
  return size > 0 && dot(v, eye) > -0.2 * size;
}
