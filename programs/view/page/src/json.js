// The answer that is shown, in the form that kestol-export writes (kestol-result/1).

import {axesOf, elementNumber, materialOf, nodesOf} from './model.js';
import {faceStress} from './quantities.js';
import {extremesOver} from './results.js';
import {isSolved} from './state.js';
import {at3, minus, plus, times} from './vectors.js';
import {mises} from './tensors.js';

/** @import {Mesh, Model, Reals, Result, Vec3} from './types.js' */
/** @import {State} from './state.js' */

/** @param {Reals} a @param {number} from @param {number} n */
const part = (a, from, n) => Array.from(a.subarray(from, from + n));

/** @param {Model} model @param {Mesh} mesh @param {number} i */
const heading = (model, mesh, i) => ({
  element: elementNumber(mesh, i), material: materialOf(model, mesh, i).number,
  nodes: nodesOf(mesh, i).map(model.nodeNumber).filter((n) => n !== 0),
});

/** @param {Model} model @param {Result} result @param {Mesh} mesh @param {number} i */
function beamJson(model, result, mesh, i) {
  const {values, stationU} = result.meshes[mesh.index], {stations} = mesh.head;
  const [a, b] = nodesOf(mesh, i).map((n) => at3(model.x, n));
  const d = minus(b, a), length = Math.sqrt(d[0] * d[0] + d[1] * d[1] + d[2] * d[2]);
  return {
    ...heading(model, mesh, i), length, axes: axesOf(model, mesh, i),
    ...values && {stations: stations.map((xi, s) => {
      const k = i * stations.length + s;
      const [N, Vy, Vz, T, My, Mz] = part(values, 6 * k, 6);
      return {x: xi * length, N, Vy, Vz, T, My, Mz, u: stationU && part(stationU, 3 * k, 3)};
    })},
  };
}

/** A stress of a face in global axes: xx yy zz xy yz xz. @param {number[]} local x, y, xy
 *  @param {[Vec3, Vec3, Vec3]} axes */
function toGlobal([xx, yy, xy], [x, y]) {
  return [[0, 0], [1, 1], [2, 2], [0, 1], [1, 2], [0, 2]].map(([i, j]) =>
    xx * x[i] * x[j] + yy * y[i] * y[j] + xy * (x[i] * y[j] + y[i] * x[j]));
}

/** Where a point of a shell lies: the centroid, or a mid-side node. @param {Model} model
 *  @param {Mesh} mesh @param {number} i @param {number} p @returns {Vec3} */
function shellPoint(model, mesh, i, p) {
  const nodes = nodesOf(mesh, i).map((n) => at3(model.x, n));
  return mesh.nnode === 6 ? nodes[p + 3] : times(plus(plus(nodes[0], nodes[1]), nodes[2]), 1 / 3);
}

/** @param {Model} model @param {Result} result @param {Mesh} mesh @param {number} i */
function shellJson(model, result, mesh, i) {
  const {values} = result.meshes[mesh.index], axes = axesOf(model, mesh, i);
  const t = Number(materialOf(model, mesh, i).t);
  const face = (/** @type {number} */ at, /** @type {1 | -1} */ side) => extremesOver(result, (r) =>
    toGlobal(faceStress(/** @type {Reals} */ (r.meshes[mesh.index].values), at, t, side), axes));
  return {
    ...heading(model, mesh, i), axes,
    ...values && {points: Array.from({length: mesh.points}, (_, p) => {
      const at = 8 * (i * mesh.points + p);
      return {x: shellPoint(model, mesh, i, p),
              n: part(values, at, 3), m: part(values, at + 3, 3), q: part(values, at + 6, 2),
              top: face(at, 1), bottom: face(at, -1)};
    })},
  };
}

const NEAR = 0.5854102, FAR = 0.1381966;
const TET_POINTS = [[FAR, FAR, FAR], [NEAR, FAR, FAR], [FAR, NEAR, FAR], [FAR, FAR, NEAR]];

/** Shape functions of ten nodes at a point. @param {number[]} natural */
function tenShapes([b, c, d]) {
  const a = 1 - b - c - d;
  return [a * (2 * a - 1), b * (2 * b - 1), c * (2 * c - 1), d * (2 * d - 1), 4 * a * b,
          4 * b * c, 4 * c * a, 4 * a * d, 4 * b * d, 4 * c * d];
}

/** Where a point of a solid lies. @param {Model} model @param {Mesh} mesh @param {number} i
 *  @param {number} p @returns {Vec3} */
function solidPoint(model, mesh, i, p) {
  const shapes = mesh.nnode === 10 ? tenShapes(TET_POINTS[p]) : [0.25, 0.25, 0.25, 0.25];
  return nodesOf(mesh, i).reduce((/** @type {Vec3} */ x, n, k) =>
    plus(x, times(at3(model.x, n), shapes[k])), [0, 0, 0]);
}

/** @param {Model} model @param {Result} result @param {Mesh} mesh @param {number} i */
function solidJson(model, result, mesh, i) {
  const {values} = result.meshes[mesh.index];
  return {
    ...heading(model, mesh, i),
    ...values && {points: Array.from({length: mesh.points}, (_, p) =>
      ({x: solidPoint(model, mesh, i, p), stress: part(values, 6 * (i * mesh.points + p), 6)}))},
  };
}

/** The answer; of a model without a solution, whose modes are no displacements, the model alone.
 *  @param {State} state */
export function resultJson(state) {
  const {model} = state, {head} = model, solved = isSolved(model);
  const result = solved ? state.result : state.results[0];
  /** @type {<T>(kind: string, one: (m: Model, r: Result, mesh: Mesh, i: number) => T) => T[]} */
  const all = (kind, one) =>
    model.meshes.filter((m) => m.kind === kind).flatMap((mesh) =>
      Array.from({length: mesh.count}, (_, i) => one(model, result, mesh, i)));
  return {
    schema: 'kestol-result/1', deck: head.deck, units: head.units,
    nodes: Array.from({length: head.deckNodes}, (_, i) => ({
      number: model.nodeNumber(i), x: at3(model.x, i),
      ...solved && {u: at3(result.u, i),
                    rotation: result.rotation ? at3(result.rotation, i) : [0, 0, 0]}})),
    beams: all('beam', beamJson),
    shells: all('shell', shellJson),
    solids: all('solid', solidJson),
    ...solved && answerOf(state.model, result),
  };
}

/** What belongs to no element. @param {Model} model @param {Result} result */
function answerOf(model, result) {
  const stress = result.nodalStress;
  return {
    nodalStresses: stress ? Array.from({length: model.head.deckNodes}, (_, i) => ({
      number: model.nodeNumber(i), stress: part(stress, 6 * i, 6),
      vonMises: extremesOver(result, (r) => [mises(/** @type {Reals} */ (r.nodalStress), 6 * i)])[0]}))
      : [],
    reactions: result.reactionRecords ?? Array.from(result.reactionNodes, (n, k) => ({
      node: model.nodeNumber(n), force: part(result.reactions, 6 * k, 3),
      moment: part(result.reactions, 6 * k + 3, 3)})),
    equilibrium: result.equilibrium,
  };
}
