// The sheet over the picture: symbols, loads and words, drawn anew after each picture.

import {byId} from './dom.js';
import {at3, indicesOf, unit} from './vectors.js';
import {format, unitsOf} from './numbers.js';
import {elementNumber, axesOf, centroid} from './model.js';
import {labelSheet, spacing} from './labels.js';
import {arrow, circle} from './pen.js';
import {beamDirections, drawHinges, drawSupports} from './supports.js';
import {drawLoads, drawReactions} from './loads.js';
import {faces} from './facing.js';

/** @import {Model, Result, Vec3} from './types.js' */
/** @import {Labels} from './labels.js' */
/** @import {Projector} from './camera.js' */
/** @import {Stage} from './scene.js' */
/** @import {Point} from './pen.js' */
/** @import {Peak} from './beams.js' */

/**
 * @typedef {{ink: string, ground: string, soft: string, support: string, load: string,
 *            reaction: string, accent: string, positive: string, negative: string}} Theme
 * @typedef {{supports: boolean, hinges: boolean, loads: boolean, values: boolean,
 *            reactions: boolean, nodes: boolean, elements: boolean, axes: boolean,
 *            directions: boolean, edges: boolean, ghost: boolean}} Show
 */

/**
 * What the drawing functions need to know.
 * @typedef {{ctx: CanvasRenderingContext2D, model: Model, result: Result, to: Projector,
 *            labels: Labels, theme: Theme, show: Show, width: number, height: number, eye: Vec3,
 *            units: ReturnType<typeof unitsOf>, format: typeof format,
 *            directions: Map<number, Vec3>, at: (node: number) => Point,
 *            place: (x: Vec3) => Point, inside: (p: Point) => boolean,
 *            visible: (node: number) => boolean}} Overlay
 */

/**
 * @typedef {{model: Model, result: Result, show: Show, scale: number, theme: Theme,
 *            peaks: {list: Peak[], scale: number, unit: string} | null,
 *            marks: {place: Vec3, text: string}[], selected: Vec3[] | null,
 *            hidden: (place: Vec3) => boolean}} OverlayInput
 */

/**
 * @param {Stage} stage @param {HTMLCanvasElement} canvas @param {Projector} to
 * @param {Float32Array | null} normals of the surface of solids
 */
export function openOverlay(stage, canvas, to, normals) {
  const ctx = /** @type {CanvasRenderingContext2D} */ (canvas.getContext('2d'));
  /** @type {Map<number, Vec3> | null} */ let directions = null;
  return (/** @type {OverlayInput} */ input) => {
    const {model, result} = input, {width, height} = stage;
    const ratio = Math.min(window.devicePixelRatio || 1, 2);
    canvas.width = Math.round(width * ratio);
    canvas.height = Math.round(height * ratio);
    ctx.setTransform(ratio, 0, 0, ratio, 0, 0);
    ctx.clearRect(0, 0, width, height);
    directions ??= beamDirections(model);
    to.set();
    const p = [0, 0, 0], x = model.x, u = result.u;
    const away = stage.camera.position.clone().sub(stage.controls.target);
    const eye = unit([away.x, away.y, away.z]);
    /** @type {Overlay} */
    const overlay = {
      ctx, model, result, to, width, height, theme: input.theme, show: input.show,
      labels: labelSheet(ctx, width, height, input.theme), units: unitsOf(model.head), format,
      directions, eye, visible: (n) => faces(normals, n, eye) && !input.hidden(at3(x, n)),
      at(n) {
        const s = input.scale, k = 3 * n;
        to.project(x[k] + s * (u[k] || 0), x[k + 1] + s * (u[k + 1] || 0),
                   x[k + 2] + s * (u[k + 2] || 0), p);
        return [p[0], p[1]];
      },
      place(q) {
        to.project(q[0], q[1], q[2], p);
        return [p[0], p[1]];
      },
      inside: (q) => q[0] > -40 && q[1] > -40 && q[0] < width + 40 && q[1] < height + 40,
    };
    const {offsetLeft, offsetTop, offsetWidth, offsetHeight} = byId('legend');
    overlay.labels.take({x: offsetLeft, y: offsetTop, width: offsetWidth, height: offsetHeight});
    drawAll(overlay, input);
  };
}

/** @param {Overlay} o @param {OverlayInput} input */
function drawAll(o, input) {
  if (input.selected) drawSelection(o, input.selected);
  if (o.show.supports) drawSupports(o);
  if (o.show.hinges) drawHinges(o);
  if (input.peaks) drawPeaks(o, input.peaks);
  for (const mark of input.marks) drawMark(o, mark);
  if (o.show.loads) drawLoads(o);
  if (o.show.reactions) drawReactions(o);
  if (o.show.axes) drawLocalAxes(o);
  if (o.show.nodes) drawNodeNumbers(o);
  if (o.show.elements) drawElementNumbers(o);
  drawTriad(o);
}

/** So many of the largest values are written, if need be farther off. */
const ALWAYS = 24;

/** @param {Overlay} o @param {{list: Peak[], scale: number, unit: string}} peaks */
function drawPeaks(o, {list, scale, unit: name}) {
  const centre = o.model.centre, written = new Set();
  list.forEach((peak, k) => {
    const at = /** @type {Vec3} */ ([0, 1, 2].map((d) => peak.place[d] + centre[d]));
    const tip = /** @type {Vec3} */ ([0, 1, 2].map((d) =>
      at[d] + peak.direction[d] * peak.value * scale));
    const a = o.place(at), b = o.place(tip);
    if (!o.inside(b)) return;
    const dx = b[0] - a[0], dy = b[1] - a[1];
    const first = k === 0, text = o.format(peak.value) + (first && name ? ' ' + name : '');
    // Beams that meet say the same of their common node: one word is enough.
    const key = `${o.format(Math.abs(peak.value))} ${a.map((v) => Math.round(v / 24))}`;
    if (written.has(key)) return;
    written.add(key);
    const placed = o.labels.write(text, b[0], b[1], {dx: dx || 0, dy: dy || -1, bold: first, gap: 5, far: k < ALWAYS,
                                  colour: peak.value < 0 ? o.theme.negative : o.theme.positive});
    if (placed) {
      o.ctx.fillStyle = peak.value < 0 ? o.theme.negative : o.theme.positive;
      circle(o.ctx, b, first ? 3 : 2);
      o.ctx.fill();
    }
  });
}

/** @param {Overlay} o @param {{place: Vec3, text: string}} mark */
function drawMark(o, {place, text}) {
  const [x, y] = o.place(place);
  if (!o.inside([x, y])) return;
  o.ctx.fillStyle = o.theme.ink;
  o.ctx.strokeStyle = o.theme.ground;
  o.ctx.lineWidth = 2;
  circle(o.ctx, [x, y], 4);
  o.ctx.stroke();
  o.ctx.fill();
  o.labels.write(text, x, y, {bold: true, gap: 8});
}

/** @param {Overlay} o @param {Vec3[]} points */
function drawSelection(o, points) {
  const {ctx} = o;
  ctx.strokeStyle = o.theme.accent;
  ctx.lineWidth = points.length === 1 ? 2.5 : 5;
  ctx.globalAlpha = points.length === 1 ? 1 : 0.75;
  ctx.beginPath();
  const first = o.place(points[0]);
  if (points.length === 1) ctx.arc(first[0], first[1], 8, 0, 2 * Math.PI);
  points.forEach((p, i) => {
    const [x, y] = o.place(p);
    if (i) ctx.lineTo(x, y);
    else if (points.length > 1) ctx.moveTo(x, y);
  });
  ctx.stroke();
  ctx.globalAlpha = 1;
}

/** More words than this cannot stand apart in a picture. */
const MOST = 20000;

/** @param {Overlay} o */
function drawNodeNumbers(o) {
  const apart = spacing(26);
  const supported = new Set(o.show.supports && o.model.nodes < MOST
    ? o.model.head.supports.flatMap((g) => [...indicesOf(g.runs)]) : []);
  for (let n = 0; n < o.model.nodes; n += Math.ceil(o.model.nodes / MOST)) {
    const number = o.model.nodeNumber(n);
    if (number === 0 || !o.visible(n)) continue;
    const at = o.at(n);
    if (!o.inside(at) || !apart(at[0], at[1])) continue;
    // Away from the beams that meet there; across a beam that ends there.
    const beams = o.directions.get(n), [x, y] = beams ? unitOf(o.to.direction(beams)) : [1, 1];
    const ends = beams && Math.abs(Math.hypot(...beams) - 1) < 1e-6;
    const side = x > 0 ? 0.8 : -0.8;
    o.labels.write(String(number), at[0], at[1],
                   {size: 11, gap: supported.has(n) ? 17 : 8, dx: -x - (ends ? y * side : 0),
                    dy: -y + (ends ? x * side : 0)});
  }
}

/** @param {Point} v @returns {Point} one of length 1, up and to the left where there is none */
function unitOf([x, y]) {
  const size = Math.hypot(x, y);
  return size > 1e-9 ? [x / size, y / size] : [0.7, 0.7];
}

/** @param {Overlay} o */
function drawElementNumbers(o) {
  const apart = spacing(30);
  for (const mesh of o.model.meshes)
    for (let i = 0; i < mesh.count; i += Math.ceil(mesh.count / MOST)) {
      const at = o.place(centroid(o.model, mesh, i));
      if (!o.inside(at) || !apart(at[0], at[1])) continue;
      o.labels.write(String(elementNumber(mesh, i)), at[0], at[1],
                     {size: 11, colour: o.theme.accent, dx: 0, dy: -1, gap: 4});
    }
}

const AXIS_COLOURS = ['#d9342b', '#1f9d47', '#3478f6'];

/** @param {Overlay} o */
function drawLocalAxes(o) {
  const apart = spacing(48), length = 22 / o.to.pixels();
  for (const mesh of o.model.meshes) {
    if (mesh.kind === 'solid') continue;
    for (let i = 0; i < mesh.count; i += Math.ceil(mesh.count / MOST)) {
      const c = centroid(o.model, mesh, i), at = o.place(c);
      if (!o.inside(at) || !apart(at[0], at[1])) continue;
      axesOf(o.model, mesh, i).forEach((e, d) => {
        if (o.model.plane && d === 2) return;
        const v = o.to.direction(e);
        o.ctx.strokeStyle = o.ctx.fillStyle = AXIS_COLOURS[d];
        o.ctx.lineWidth = 1.5;
        /** @type {Point} */ const tip = [at[0] + v[0] * length, at[1] + v[1] * length];
        arrow(o.ctx, at, tip, 5);
        o.labels.write('xyz'[d] + '′', tip[0], tip[1],
                       {size: 10, dx: v[0], dy: v[1], gap: 3, colour: AXIS_COLOURS[d]});
      });
    }
  }
}

/** The global axes in the corner. @param {Overlay} o */
function drawTriad(o) {
  /** @type {Point} */ const at = [44, o.height - 44];
  const length = 28 / o.to.pixels();
  o.ctx.lineWidth = 2;
  for (let d = 0; d < (o.model.plane ? 2 : 3); ++d) {
    /** @type {Vec3} */ const e = [0, 0, 0];
    e[d] = 1;
    const v = o.to.direction(e);
    if (Math.hypot(...v) * length < 4) continue;
    o.ctx.strokeStyle = o.ctx.fillStyle = AXIS_COLOURS[d];
    /** @type {Point} */ const tip = [at[0] + v[0] * length, at[1] + v[1] * length];
    arrow(o.ctx, at, tip, 6);
    o.ctx.font = '600 12px system-ui, "DejaVu Sans", sans-serif';
    o.ctx.textAlign = 'center';
    o.ctx.textBaseline = 'middle';
    const far = Math.hypot(...v) * length;
    o.ctx.fillText('xyz'[d], tip[0] + (v[0] * length * 9) / far,
                   tip[1] + (v[1] * length * 9) / far);
  }
}

