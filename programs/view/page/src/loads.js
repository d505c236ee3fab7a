// Loads and reactions as arrows with their values.

import {arrow, path, turningArrow} from './pen.js';
import {spacing} from './labels.js';
import {axesOf, centroid} from './model.js';
import {endsOf} from './beams.js';
import {dot, indicesOf, length, plus, times, unit} from './vectors.js';

/** @import {ElementLoadGroup, Mesh, Vec3} from './types.js' */
/** @import {Overlay} from './overlay.js' */
/** @import {Point} from './pen.js' */

const LONGEST = 46, SHORTEST = 16;
/** More arrows of one kind than this cannot stand apart in a picture. */
const MOST = 8000;

/** Arrow length for a value among others. @param {number} value @param {number} largest */
const lengthFor = (value, largest) => SHORTEST + (LONGEST - SHORTEST) * (value / (largest || 1));

/**
 * One force with its head at the place.
 * @param {Overlay} o @param {Point} at @param {Vec3} force @param {number} size
 * @returns {Point} the far end
 */
function forceArrow(o, at, force, size) {
  const d = o.to.direction(unit(force)), k = size / o.to.pixels();
  /** @type {Point} */ const far = [at[0] - d[0] * k, at[1] - d[1] * k];
  if (Math.hypot(far[0] - at[0], far[1] - at[1]) < 3) {
    o.ctx.beginPath();
    o.ctx.arc(at[0], at[1], 5, 0, 2 * Math.PI);  // towards the eye or away from it
    o.ctx.stroke();
  } else {
    arrow(o.ctx, far, at);
  }
  return far;
}

/** @param {Overlay} o @param {Point} at @param {Vec3} moment */
function momentArrow(o, at, moment) {
  const [x, y] = o.to.direction(unit(moment)), p = o.to.pixels();
  const across = Math.hypot(x, y) / p;
  if (o.model.plane || across < 0.35) {
    turningArrow(o.ctx, at, 13, o.model.plane ? moment[2] > 0 : towardsEye(o, moment));
    return;
  }
  /** @type {Point} */ const tip = [at[0] + (x / p) * 36, at[1] + (y / p) * 36];
  arrow(o.ctx, at, tip);
  arrow(o.ctx, at, [at[0] + (x / p) * 29, at[1] + (y / p) * 29]);
}

/** @param {Overlay} o @param {Vec3} v */
const towardsEye = (o, v) => dot(v, o.eye) > 0;

/** @param {Overlay} o @param {Vec3} v @param {string} unit */
const sizeText = (o, v, unit) => o.format(length(v)) + (unit && ' ' + unit);

/** @param {Overlay} o */
function drawNodalLoads(o) {
  const groups = o.result.loads.nodal, apart = spacing(8);
  const largest = groups.reduce((m, g) => Math.max(m, length(g.force)), 0);
  for (const group of groups) {
    for (const node of indicesOf(group.runs, MOST)) {
      const at = o.at(node);
      if (!o.visible(node) || !o.inside(at) || !apart(at[0], at[1])) continue;
      const size = length(group.force);
      if (size > 0) {
        const far = forceArrow(o, at, group.force, lengthFor(size, largest) + 10);
        labelAt(o, sizeText(o, group.force, o.units.force), at, far);
      }
      if (length(group.moment) > 0) {
        momentArrow(o, at, group.moment);
        labelAt(o, sizeText(o, group.moment, o.units.moment), at, [at[0] - 14, at[1] - 14]);
      }
    }
  }
}

/** @param {Overlay} o @param {string} text @param {Point} at @param {Point} far */
function labelAt(o, text, at, far) {
  if (!o.show.values) return;
  const dx = far[0] - at[0], dy = far[1] - at[1];
  o.labels.write(text, far[0], far[1], {dx: dx || 0.6, dy: dy || -0.6, colour: o.theme.load,
                                        gap: 7});
}

/** The global direction and size of a load on an element. @param {Overlay} o
 *  @param {ElementLoadGroup} group @param {Mesh} mesh @param {number} i @returns {Vec3} */
function globalLoad(o, group, mesh, i) {
  if (group.kind !== 'local') return group.value;
  const axes = axesOf(o.model, mesh, i);
  return axes.reduce((/** @type {Vec3} */ sum, e, d) => plus(sum, times(e, group.value[d])),
                     [0, 0, 0]);
}

/** Arrows along a beam under a line that joins their tails. @param {Overlay} o @param {Mesh} mesh
 *  @param {number} i @param {Vec3} load @param {number} size */
function beamLoad(o, mesh, i, load, size) {
  const [a, b] = endsOf(o.model, mesh, i).map((x) => o.place(x));
  const d = o.to.direction(unit(load)), k = size / o.to.pixels();
  /** @type {Point} */ const back = [-d[0] * k, -d[1] * k];
  const along = Math.hypot(b[0] - a[0], b[1] - a[1]);
  const cross = Math.abs((b[0] - a[0]) * back[1] - (b[1] - a[1]) * back[0]) / (along || 1);
  if (cross < 4) return lengthwiseLoad(o, a, b, load);
  const n = Math.max(1, Math.round(along / 26));
  for (let s = 0; s <= n; ++s) {
    /** @type {Point} */
    const p = [a[0] + ((b[0] - a[0]) * s) / n, a[1] + ((b[1] - a[1]) * s) / n];
    arrow(o.ctx, [p[0] + back[0], p[1] + back[1]], p, 6);
  }
  path(o.ctx, [[a[0] + back[0], a[1] + back[1]], [b[0] + back[0], b[1] + back[1]]]);
  o.ctx.stroke();
  return [(a[0] + b[0]) / 2 + back[0], (a[1] + b[1]) / 2 + back[1]];
}

/** A load along its beam: arrows beside it. @param {Overlay} o @param {Point} a @param {Point} b
 *  @param {Vec3} load @returns {Point} */
function lengthwiseLoad(o, a, b, load) {
  const d = o.to.direction(load), same = d[0] * (b[0] - a[0]) + d[1] * (b[1] - a[1]) >= 0;
  const l = Math.hypot(b[0] - a[0], b[1] - a[1]) || 1;
  const x = (b[0] - a[0]) / l, y = (b[1] - a[1]) / l, n = Math.max(1, Math.round(l / 44));
  for (let s = 0; s < n; ++s) {
    const from = ((s + 0.15) * l) / n, to = ((s + 0.85) * l) / n;
    /** @type {(t: number) => Point} */ const p = (t) => [a[0] + x * t + y * 7, a[1] + y * t - x * 7];
    if (same) arrow(o.ctx, p(from), p(to), 6);
    else arrow(o.ctx, p(to), p(from), 6);
  }
  return [(a[0] + b[0]) / 2 + y * 12, (a[1] + b[1]) / 2 - x * 12];
}

/** @param {Overlay} o @param {ElementLoadGroup} group @param {Mesh} mesh */
const unitOfLoad = (o, group, mesh) =>
  mesh.kind === 'beam' ? o.units.perLength
                       : mesh.kind === 'shell' ? (group.face >= 0 ? o.units.perLength
                                                                  : o.units.perArea)
                                               : group.face >= 0 ? o.units.perArea
                                                                 : o.units.perVolume;

const SHELL_EDGES = [[0, 1], [1, 2], [2, 0]];
const SOLID_FACES = [[0, 1, 2], [1, 2, 3], [2, 3, 0], [3, 0, 1]];

/** Where the arrow of a load on a shell or solid points. @param {Overlay} o @param {Mesh} mesh
 *  @param {number} i @param {number} face @returns {Point} */
function loadPlace(o, mesh, i, face) {
  if (face < 0) return o.place(centroid(o.model, mesh, i));
  const corners = (mesh.kind === 'shell' ? SHELL_EDGES : SOLID_FACES)[face] ?? [0];
  const points = corners.map((k) => o.at(mesh.conn[i * mesh.nnode + k]));
  return [points.reduce((s, p) => s + p[0], 0) / points.length,
          points.reduce((s, p) => s + p[1], 0) / points.length];
}

/** @param {Overlay} o */
function drawElementLoads(o) {
  const groups = o.result.loads.elements, apart = spacing(30);
  const kinds = {beam: 0, shell: 0, solid: 0};
  for (const g of groups) {
    const {kind} = o.model.meshes[g.mesh];
    kinds[kind] = Math.max(kinds[kind], length(g.value));
  }
  const labelled = new Set();
  for (const group of groups) {
    const mesh = o.model.meshes[group.mesh], unit = unitOfLoad(o, group, mesh);
    for (const i of indicesOf(group.runs, MOST)) {
      const load = globalLoad(o, group, mesh, i), value = length(load);
      if (value === 0) continue;
      const size = lengthFor(value, kinds[mesh.kind]) * 0.7;
      const text = (group.kind === 'projected' ? '⊥ ' : '') + sizeText(o, load, unit);
      if (mesh.kind === 'beam') {
        const middle = beamLoad(o, mesh, i, load, size);
        const d = o.to.direction(load);
        if (o.show.values)
          o.labels.write(text, middle[0], middle[1], {dx: -d[0], dy: -d[1], colour: o.theme.load});
        continue;
      }
      const at = loadPlace(o, mesh, i, group.face);
      if (mesh.kind === 'solid' && !o.visible(mesh.conn[i * mesh.nnode + Math.max(0, group.face)]))
        continue;
      if (!o.inside(at) || !apart(at[0], at[1])) continue;
      const far = forceArrow(o, at, load, size * 0.8);
      // One word for a field of equal arrows.
      if (!labelled.has(group) && (labelled.add(group), labelled.size <= 12))
        labelAt(o, text, at, far);
    }
  }
}

/** The direction of the weight, in a corner. @param {Overlay} o */
function drawWeight(o) {
  if (!o.result.loads.weight) return;
  const d = o.to.direction(unit(o.result.loads.gravity)), k = 26 / o.to.pixels();
  const x = 110, y = o.height - 60;
  arrow(o.ctx, [x, y], [x + d[0] * k, y + d[1] * k]);
  o.labels.write('own weight', x, y, {dx: 1, dy: 0, gap: 10, colour: o.theme.load});
}

/** @param {Overlay} o */
export function drawLoads(o) {
  o.ctx.lineWidth = 1.4;
  o.ctx.strokeStyle = o.ctx.fillStyle = o.theme.load;
  drawElementLoads(o);
  drawNodalLoads(o);
  drawWeight(o);
}

/** True reactions: what each support gives to the structure. @param {Overlay} o */
export function drawReactions(o) {
  const {reactionNodes: nodes, reactions: r} = o.result, apart = spacing(16);
  o.ctx.lineWidth = 1.8;
  o.ctx.strokeStyle = o.ctx.fillStyle = o.theme.reaction;
  let largest = 0, turning = 0;
  for (let k = 0; k < nodes.length; ++k) {
    largest = Math.max(largest, Math.hypot(r[6 * k], r[6 * k + 1], r[6 * k + 2]));
    turning = Math.max(turning, Math.hypot(r[6 * k + 3], r[6 * k + 4], r[6 * k + 5]));
  }
  for (let k = 0; k < nodes.length; ++k) {
    const at = o.at(nodes[k]);
    if (!o.visible(nodes[k]) || !o.inside(at) || !apart(at[0], at[1])) continue;
    for (let d = 0; d < 3; ++d) {
      const value = r[6 * k + d];
      if (Math.abs(value) <= 1e-9 * largest) continue;
      /** @type {Vec3} */ const force = [0, 0, 0];
      force[d] = value;
      const far = forceArrow(o, at, force, lengthFor(Math.abs(value), largest) + 14);
      reactionLabel(o, o.format(Math.abs(value)) + (o.units.force && ' ' + o.units.force), at, far);
    }
    /** @type {Vec3} */ const moment = [r[6 * k + 3], r[6 * k + 4], r[6 * k + 5]];
    if (length(moment) <= 1e-9 * (turning + largest * o.model.size)) continue;
    momentArrow(o, at, moment);
    reactionLabel(o, sizeText(o, moment, o.units.moment), at, [at[0] + 15, at[1] + 11]);
  }
}

/** @param {Overlay} o @param {string} text @param {Point} at @param {Point} far */
function reactionLabel(o, text, at, far) {
  o.labels.write(text, far[0], far[1], {dx: far[0] - at[0], dy: far[1] - at[1],
                                        colour: o.theme.reaction, bold: true});
}

