// The model as the page holds it: arrays of nodes and elements, and questions by number.

import {blockReader} from './data.js';
import {at3, cross, minus, unit} from './vectors.js';

/** @import {Head, Indices, Mesh, MeshHead, Model, Reals, Result, Vec3} from './types.js' */

/** @param {Reals} x @returns {{low: Vec3, high: Vec3}} */
function boxOf(x) {
  /** @type {Vec3} */ const low = [Infinity, Infinity, Infinity];
  /** @type {Vec3} */ const high = [-Infinity, -Infinity, -Infinity];
  for (let i = 0; i < x.length; i += 3)
    for (let d = 0; d < 3; ++d) {
      const value = x[i + d];
      if (value < low[d]) low[d] = value;
      if (value > high[d]) high[d] = value;
    }
  return x.length > 0 ? {low, high} : {low: [0, 0, 0], high: [0, 0, 0]};
}

/**
 * @param {Head} head @param {MeshHead} mesh @param {number} index
 * @param {(name: string) => Reals | Indices | null} block @returns {Mesh}
 */
function meshOf(head, mesh, index, block) {
  const indices = (/** @type {string} */ name) =>
    /** @type {Indices | null} */ (block(`m${index}.${name}`));
  return {
    head: mesh,
    index,
    kind: mesh.kind,
    nnode: mesh.nnode,
    count: mesh.count,
    points: mesh.points,
    conn: indices('conn') ?? new Uint32Array(0),
    numbers: indices('number'),
    materials: indices('material'),
    axes: /** @type {Reals | null} */ (block(`m${index}.axes`)),
    faces: indices('faces'),
  };
}

/** @param {Mesh} mesh @param {number} i */
export const elementNumber = (mesh, i) => (mesh.numbers ? mesh.numbers[i] : mesh.head.first + i);

/** @param {Model} model @param {Mesh} mesh @param {number} i */
export const materialOf = (model, mesh, i) =>
  model.head.materials[mesh.materials ? mesh.materials[i] : mesh.head.material] ?? {number: 0};

/** @param {Mesh} mesh @param {number} i @returns {number[]} */
export const nodesOf = (mesh, i) =>
  Array.from(mesh.conn.subarray(i * mesh.nnode, (i + 1) * mesh.nnode));

/** @param {Model} model @param {Mesh} mesh */
function elementTable(model, mesh) {
  const first = mesh.head.first;
  if (!mesh.numbers)
    return (/** @type {number} */ n) => (n >= first && n < first + mesh.count ? n - first : -1);
  /** @type {Map<number, number> | null} */
  let table = null;
  return (/** @type {number} */ n) => {
    table ??= new Map(Array.from(mesh.numbers ?? [], (number, i) => [number, i]));
    return table.get(n) ?? -1;
  };
}

/** @param {Head} head @returns {Model} */
export function readModel(head) {
  const block = blockReader(head);
  const x = /** @type {Reals} */ (block('x') ?? new Float64Array(0));
  const {low, high} = boxOf(x);
  const numbers = /** @type {Indices | null} */ (block('node'));
  const meshes = head.meshes.map((mesh, i) => meshOf(head, mesh, i, block));
  /** @type {Model} */
  const model = {
    head,
    dimension: head.dimension,
    nodes: head.nodes,
    x,
    meshes,
    low,
    high,
    centre: [(low[0] + high[0]) / 2, (low[1] + high[1]) / 2, (low[2] + high[2]) / 2],
    size: Math.hypot(high[0] - low[0], high[1] - low[1], high[2] - low[2]) || 1,
    plane: head.dimension === 2,
    block,
    nodeNumber: (i) => (numbers ? numbers[i] : i < head.deckNodes ? i + 1 : 0),
    nodeIndex: (n) =>
      numbers ? numbers.indexOf(n) : n >= 1 && n <= head.deckNodes ? n - 1 : -1,
    elementAt: () => null,
  };
  const tables = meshes.map((mesh) => elementTable(model, mesh));
  model.elementAt = (n) => {
    for (const mesh of meshes) {
      const index = tables[mesh.index](n);
      if (index >= 0) return {mesh, index};
    }
    return null;
  };
  return model;
}

/** @param {Model} model @param {Mesh} mesh @param {number} i @returns {Vec3} */
export function centroid(model, mesh, i) {
  const corners = mesh.kind === 'shell' ? 3 : mesh.kind === 'solid' ? 4 : 2;
  /** @type {Vec3} */ const sum = [0, 0, 0];
  for (let k = 0; k < corners; ++k) {
    const n = mesh.conn[i * mesh.nnode + k];
    for (let d = 0; d < 3; ++d) sum[d] += model.x[3 * n + d] / corners;
  }
  return sum;
}

/**
 * The local frame of a shell whose material gives no axes: z along the normal, x horizontal, or in
 * the plane of global x and z when the normal is vertical within 1/64.
 * @param {Model} model @param {Mesh} mesh @param {number} i @returns {[Vec3, Vec3, Vec3]}
 */
function shellFrame(model, mesh, i) {
  const [a, b, c] = nodesOf(mesh, i).map((n) => at3(model.x, n));
  const n = unit(cross(minus(b, a), minus(c, a)));
  const vertical = Math.abs(n[0]) < 1 / 64 && Math.abs(n[1]) < 1 / 64;
  const x = unit(cross(vertical ? [0, 1, 0] : [0, 0, 1], n));
  return [x, cross(n, x), n];
}

/**
 * The local axes of an element.
 * @param {Model} model @param {Mesh} mesh @param {number} i @returns {[Vec3, Vec3, Vec3]}
 */
export function axesOf(model, mesh, i) {
  if (!mesh.axes) return shellFrame(model, mesh, i);
  return [at3(mesh.axes, 3 * i), at3(mesh.axes, 3 * i + 1), at3(mesh.axes, 3 * i + 2)];
}

/** Where a node stands when displacements are drawn s times. @param {Model} model
 *  @param {Result} result @param {number} n @param {number} s @returns {Vec3} */
export function movedNode(model, result, n, s) {
  const x = at3(model.x, n), u = at3(result.u, n);
  return [x[0] + s * (u[0] || 0), x[1] + s * (u[1] || 0), x[2] + s * (u[2] || 0)];
}
