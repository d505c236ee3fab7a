// Supports, springs and hinges as symbols.

import {circle, ground, path, zigzag} from './pen.js';
import {spacing} from './labels.js';
import {at3, indicesOf, minus, unit} from './vectors.js';

/** @import {Model, SupportGroup, Vec3} from './types.js' */
/** @import {Overlay} from './overlay.js' */
/** @import {Point} from './pen.js' */

/** Size of a symbol alone, and of one among many. */
const ALONE = 13, AMONG_MANY = 9, MANY = 60;
let size = ALONE;

/** The axes of a support as rows. @param {SupportGroup} group @returns {Vec3[]} */
const axesOfSupport = (group) =>
  group.axes ? [at3(group.axes, 0), at3(group.axes, 1), at3(group.axes, 2)]
             : [[1, 0, 0], [0, 1, 0], [0, 0, 1]];

/** @param {Overlay} o @param {Vec3} axis @returns {{dir: Point, length: number}} */
function onPage(o, axis) {
  const d = o.to.direction(axis), size = Math.hypot(...d);
  const length = size / o.to.pixels();
  return {dir: size > 1e-9 ? [d[0] / size, d[1] / size] : [0, 1], length};
}

/** For each supported node the mean direction of the beams that leave it. @param {Model} model */
export function beamDirections(model) {
  const sum = new Map();
  for (const mesh of model.meshes) {
    if (mesh.kind !== 'beam') continue;
    for (let i = 0; i < mesh.count; ++i)
      for (const end of [0, 1]) {
        const n = mesh.conn[2 * i + end], other = mesh.conn[2 * i + 1 - end];
        const d = unit(minus(at3(model.x, other), at3(model.x, n)));
        const known = sum.get(n);
        sum.set(n, known ? [known[0] + d[0], known[1] + d[1], known[2] + d[2]] : d);
      }
  }
  return sum;
}

/** @param {Overlay} o @param {Point} at @param {Point} dir from the ground to the node
 *  @param {boolean} roller */
function triangle(o, at, dir, roller) {
  const {ctx} = o, [x, y] = dir, h = size, w = size * 0.62;
  /** @type {Point} */ const a = [at[0] - x * h - y * w, at[1] - y * h + x * w];
  /** @type {Point} */ const b = [at[0] - x * h + y * w, at[1] - y * h - x * w];
  path(ctx, [at, a, b], true);
  ctx.fillStyle = o.theme.ground;
  ctx.fill();
  ctx.stroke();
  const gap = roller ? 4 : 0;
  /** @type {(p: Point, out: number) => Point} */
  const moved = (p, out) => [p[0] - x * gap - y * out, p[1] - y * gap + x * out];
  ground(ctx, moved(a, 3), moved(b, -3), [-x, -y]);
}

/** @param {Overlay} o @param {Point} at @param {Point} dir from the ground to the node */
function wall(o, at, dir) {
  const [x, y] = dir, w = size * 0.85;
  o.ctx.save();
  o.ctx.lineWidth = 2.5;
  ground(o.ctx, [at[0] - y * w, at[1] + x * w], [at[0] + y * w, at[1] - x * w], [-x, -y]);
  o.ctx.restore();
}

/** A support at the top of a column hangs, on the side where no beam is.
 *  @param {Vec3 | undefined} beam @param {Vec3} up */
const isBelow = (beam, up) => beam !== undefined && beam[0] * up[0] + beam[1] * up[1] < -0.7;

/** @param {Overlay} o @param {Point} at @param {SupportGroup} group @param {number} node */
function planeSupport(o, at, group, node) {
  const [ux, uy, turn] = [...group.codes].map((c) => c === '1');
  const axes = axesOfSupport(group);
  const x = onPage(o, axes[0]).dir, y = onPage(o, axes[1]).dir;
  const beam = o.directions.get(node);
  const up = isBelow(beam, axes[1]) ? /** @type {Point} */ ([-y[0], -y[1]]) : y;
  const out = beam && Math.hypot(...beam) > 0.3 ? onPage(o, beam).dir : y;
  if (ux && uy && turn) wall(o, at, out);
  else if (ux && uy) triangle(o, at, up, false);
  else if (uy) triangle(o, at, up, true);
  else if (ux) triangle(o, at, beam && beam[0] < 0 ? [-x[0], -x[1]] : x, true);
  if (turn && !(ux && uy)) {
    o.ctx.strokeRect(at[0] - 4, at[1] - 4, 8, 8);
  }
}

/** A cone for each held direction and a bar across it for each held rotation. @param {Overlay} o
 *  @param {Point} at @param {SupportGroup} group */
function spaceSupport(o, at, group) {
  const {ctx} = o, held = [...group.codes].map((c) => c === '1'), axes = axesOfSupport(group);
  if (held.length === 6 && held.every(Boolean)) {
    ctx.fillStyle = o.theme.support;
    ctx.fillRect(at[0] - 5, at[1] - 5, 10, 10);
    return;
  }
  axes.forEach((axis, d) => {
    const {dir, length} = onPage(o, axis), h = Math.max(3, size * length), w = size * 0.36;
    const [x, y] = dir;
    /** @type {Point} */ const foot = [at[0] - x * h, at[1] - y * h];
    if (held[d]) {
      path(ctx, [at, [foot[0] - y * w, foot[1] + x * w], [foot[0] + y * w, foot[1] - x * w]], true);
      ctx.fillStyle = o.theme.ground;
      ctx.fill();
      ctx.stroke();
    }
    if (held[d + 3]) {
      /** @type {Point} */ const bar = [at[0] - x * (h + 4), at[1] - y * (h + 4)];
      path(ctx, [[bar[0] - y * 6, bar[1] + x * 6], [bar[0] + y * 6, bar[1] - x * 6]]);
      ctx.save();
      ctx.lineWidth = 3;
      ctx.stroke();
      ctx.restore();
    }
  });
}

/** @param {Overlay} o @param {Point} at @param {SupportGroup} group */
function springs(o, at, group) {
  const axes = axesOfSupport(group), n = group.codes.length;
  const translations = o.model.plane ? 2 : 3;
  for (let d = 0; d < n; ++d) {
    if (group.codes[d] !== '2') continue;
    if (d < translations) {
      const {dir: [x, y], length} = onPage(o, axes[d]), l = Math.max(8, 26 * length);
      /** @type {Point} */ const end = [at[0] - x * l, at[1] - y * l];
      zigzag(o.ctx, at, end);
      ground(o.ctx, [end[0] - y * 7, end[1] + x * 7], [end[0] + y * 7, end[1] - x * 7], [-x, -y]);
    } else {
      o.ctx.beginPath();
      for (let k = 0; k <= 30; ++k) {
        const r = 3 + k * 0.35, a = (k / 30) * 4 * Math.PI;
        o.ctx.lineTo(at[0] + r * Math.cos(a), at[1] + r * Math.sin(a));
      }
      o.ctx.stroke();
    }
  }
}

/** A prescribed displacement that is not zero, in words. @param {Overlay} o
 *  @param {SupportGroup} group */
function settlementText(o, group) {
  const names = o.model.plane ? ['ux', 'uy', 'θz'] : ['ux', 'uy', 'uz', 'θx', 'θy', 'θz'];
  const {length} = o.units;
  return [...group.codes].flatMap((c, d) => {
    const value = group.values[d];
    if (!value || (c !== '1' && c !== '2')) return [];
    const turning = names[d]?.startsWith('θ');
    if (c === '2') return [`k ${names[d]} ${o.format(value)}`];
    return [`${names[d]} ${o.format(value)}${turning ? '' : length && ' ' + length}`];
  }).join(', ');
}

/** @param {number[]} runs */
const runLength = (runs) => runs.reduce((n, v, i) => n + (i % 2 ? v : 0), 0);

/** @param {Overlay} o */
export function drawSupports(o) {
  const {ctx} = o, count = o.model.head.supports.reduce((n, g) => n + runLength(g.runs), 0);
  const apart = spacing(count > MANY ? 17 : 9);
  size = count > MANY ? AMONG_MANY : ALONE;
  ctx.lineWidth = count > MANY ? 1.1 : 1.5;
  ctx.strokeStyle = o.theme.support;
  for (const group of o.model.head.supports) {
    const text = settlementText(o, group);
    for (const node of indicesOf(group.runs, 8000)) {
      const at = o.at(node);
      if (!o.visible(node) || !o.inside(at) || !apart(at[0], at[1])) continue;
      if (o.model.plane) planeSupport(o, at, group, node);
      else spaceSupport(o, at, group);
      if (group.codes.includes('2')) springs(o, at, group);
      o.labels.take({x: at[0] - 12, y: at[1] - 6, width: 24, height: 26});
      if (text && o.show.values)
        o.labels.write(text, at[0], at[1], {dx: 1, dy: 1, gap: 16, colour: o.theme.support});
    }
  }
}

/** @param {Overlay} o */
export function drawHinges(o) {
  const {ctx, model} = o;
  ctx.lineWidth = 1.6;
  ctx.strokeStyle = o.theme.ink;
  ctx.fillStyle = o.theme.ground;
  for (const {element, end} of model.head.hinges) {
    const found = model.elementAt(element);
    if (!found) continue;
    const n = found.mesh.conn[2 * found.index + end];
    const a = o.at(n), b = o.at(found.mesh.conn[2 * found.index + 1 - end]);
    const l = Math.hypot(b[0] - a[0], b[1] - a[1]), gap = Math.min(9, l / 4);
    if (l < 12 || !o.inside(a)) continue;
    circle(ctx, [a[0] + ((b[0] - a[0]) / l) * gap, a[1] + ((b[1] - a[1]) / l) * gap], 4.2);
    ctx.fill();
    ctx.stroke();
  }
}

