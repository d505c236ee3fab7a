// The values of a node or element, exactly as they are stored.

import {elementNumber} from './model.js';
import {extremesOver} from './results.js';
import {mises} from './tensors.js';

/** @import {Model, Reals, Result, ValueUnder} from './types.js' */
/** @import {Hit} from './picking.js' */

export const BEAM_VALUES = ['N', 'Vy', 'Vz', 'T', 'My', 'Mz'];
export const SHELL_VALUES = ['nx', 'ny', 'nxy', 'mx', 'my', 'mxy', 'qx', 'qy'];
export const SOLID_VALUES = ['sxx', 'syy', 'szz', 'sxy', 'syz', 'sxz'];

/** @param {string[]} names @param {Reals} from @param {number} at */
const named = (names, from, at) =>
  Object.fromEntries(names.map((name, c) => [name, from[at + c]]));

/** @param {Model} model @param {Result} result @param {number} i @returns {ValueUnder} */
function nodeValues(model, result, i) {
  /** @type {Record<string, number>} */
  const values = named(['ux', 'uy', 'uz'], result.u, 3 * i);
  if (result.rotation) Object.assign(values, named(['rx', 'ry', 'rz'], result.rotation, 3 * i));
  const stress = result.nodalStress;
  if (stress && Number.isFinite(stress[6 * i]))
    Object.assign(values, named(SOLID_VALUES, stress, 6 * i), {vonMises: mises(stress, 6 * i)});
  const k = result.reactionNodes.indexOf(i);
  if (k >= 0)
    Object.assign(values, named(['Fx', 'Fy', 'Fz', 'Mx', 'My', 'Mz'], result.reactions, 6 * k));
  const [x, y, z] = model.x.subarray(3 * i, 3 * i + 3);
  return {kind: 'node', number: model.nodeNumber(i), at: {x, y, z}, values};
}

/** @param {Model} model @param {Result} result @param {Hit & {kind: 'element'}} hit
 *  @returns {ValueUnder} */
function elementValues(model, result, {mesh, index, point}) {
  const own = result.meshes[mesh.index], at = index * mesh.points + point;
  /** @type {Record<string, number>} */ let values = {};
  /** @type {Record<string, number>} */ let place = {point};
  if (mesh.kind === 'beam') {
    const k = index * mesh.head.stations.length + point;
    place = {station: point, xi: mesh.head.stations[point]};
    if (own.values) values = named(BEAM_VALUES, own.values, 6 * k);
    if (own.stationU) Object.assign(values, named(['ux', 'uy', 'uz'], own.stationU, 3 * k));
  } else if (own.values && mesh.kind === 'shell') {
    values = named(SHELL_VALUES, own.values, 8 * at);
  } else if (own.values) {
    values = {...named(SOLID_VALUES, own.values, 6 * at), vonMises: mises(own.values, 6 * at)};
  }
  return {kind: 'element', type: mesh.kind, number: elementNumber(mesh, index), at: place, values};
}

/** @param {Model} model @param {Result} result @param {Hit} hit @returns {ValueUnder} */
export function valuesOf(model, result, hit) {
  const of = (/** @type {Result} */ r) =>
    (hit.kind === 'node' ? nodeValues(model, r, hit.index) : elementValues(model, r, hit));
  const found = of(result), names = Object.keys(found.values);
  const numbers = extremesOver(result, (r) => names.map((name) => Number(of(r).values[name])));
  names.forEach((name, k) => { found.values[name] = numbers[k]; });
  return found;
}
