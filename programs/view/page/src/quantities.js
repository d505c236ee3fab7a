// What can be shown: the names, units and values of displacements, resultants and stresses.

import {unitsOf} from './numbers.js';
import {materialOf} from './model.js';
import {mainValues, mises, planeMain, planeMises} from './tensors.js';

/** @import {Model, Quantity, Reals, Result} from './types.js' */

/** @typedef {(s: Reals, at: number, t: number) => number} PointValue */

const BEAM_NAMES = ['N', 'Vy', 'Vz', 'T', 'My', 'Mz'];

/** @param {Model} model @returns {Quantity[]} */
function displacements(model) {
  const {length, angle} = unitsOf(model.head);
  /** @type {(id: string, label: string, get: (r: Result) => Reals | null, d: number) => Quantity} */
  const one = (id, label, get, d) => ({
    id, label, group: 'Displacements', signed: d >= 0, place: 'node', component: d,
    unit: id.startsWith('r') ? angle : length,
    of(result, _, out) {
      const a = get(result);
      if (!a) return;
      for (let i = 0; i < out.length; ++i)
        out[i] = d >= 0 ? a[3 * i + d] : Math.hypot(a[3 * i], a[3 * i + 1], a[3 * i + 2]);
    },
  });
  const list = [one('u', '|u|', (r) => r.u, -1), one('ux', 'ux', (r) => r.u, 0),
                one('uy', 'uy', (r) => r.u, 1)];
  if (!model.plane) list.push(one('uz', 'uz', (r) => r.u, 2));
  return list;
}

/** @param {Model} model @returns {Quantity[]} */
function beamQuantities(model) {
  if (!model.meshes.some(({kind}) => kind === 'beam')) return [];
  const {force, moment} = unitsOf(model.head);
  const shown = model.plane ? [0, 1, 5] : [0, 1, 2, 3, 4, 5];
  return shown.map((c) => ({
    id: BEAM_NAMES[c], label: model.plane && c ? BEAM_NAMES[c][0] : BEAM_NAMES[c],
    unit: c < 3 ? force : moment, group: 'Beams', signed: true, place: 'beam', component: c,
    of(result, mesh, out) {
      const values = mesh && result.meshes[mesh.index].values;
      for (let i = 0; values && i < out.length; ++i) out[i] = values[6 * i + c];
    },
  }));
}

/**
 * A value at each point of shells from its eight resultants and the thickness.
 * @param {Model} model @param {string} id @param {string} label @param {string} unit
 * @param {string} group @param {boolean} signed @param {PointValue} value @returns {Quantity}
 */
function shellQuantity(model, id, label, unit, group, signed, value) {
  return {
    id, label, unit, group, signed, place: 'shell', component: 0,
    of(result, mesh, out) {
      const values = mesh && result.meshes[mesh.index].values;
      for (let i = 0; values && i < out.length; ++i) {
        const t = materialOf(model, mesh, Math.floor(i / mesh.points)).t;
        out[i] = value(values, 8 * i, Number(t));
      }
    },
  };
}

/** Stress x, y, xy of a face: n/t + side 6m/t². @param {Reals} s @param {number} at
 *  @param {number} t @param {1 | -1} side */
export function faceStress(s, at, t, side) {
  return [0, 1, 2].map((c) => s[at + c] / t + (side * 6 * s[at + 3 + c]) / (t * t));
}

/** @param {Model} model @returns {Quantity[]} */
function shellQuantities(model) {
  if (!model.meshes.some(({kind}) => kind === 'shell')) return [];
  const {pressure, perLength, momentPerLength} = unitsOf(model.head);
  /** @type {(id: string, label: string, c: number, unit: string) => Quantity} */
  const raw = (id, label, c, unit) => shellQuantity(model, id, label, unit, 'Shell resultants',
                                                    true, (s, at) => s[at + c]);
  /** @type {(id: string, label: string, from: number, unit: string, which: 'first'|'second')
   *  => Quantity} */
  const main = (id, label, from, unit, which) =>
    shellQuantity(model, id, label, unit, 'Shell resultants', true,
                  (s, at) => planeMain(s[at + from], s[at + from + 1], s[at + from + 2])[which]);
  /** @type {Quantity[]} */ const faces = [];
  for (const [name, side] of /** @type {['top' | 'bottom', 1 | -1][]} */ ([['top', 1],
                                                                       ['bottom', -1]])) {
    faces.push(shellQuantity(model, `mises-${name}`, `von Mises, ${name}`, pressure,
      'Shell stresses', false, (s, at, t) => {
        const [x, y, xy] = faceStress(s, at, t, side);
        return planeMises(x, y, xy);
      }));
    for (const which of /** @type {('first' | 'second')[]} */ (['first', 'second']))
      faces.push(shellQuantity(model, `s${which === 'first' ? 1 : 2}-${name}`,
        `σ${which === 'first' ? '₁' : '₂'}, ${name}`, pressure, 'Shell stresses', true,
        (s, at, t) => {
          const [x, y, xy] = faceStress(s, at, t, side);
          return planeMain(x, y, xy)[which];
        }));
  }
  return [
    raw('nx', 'n x′', 0, perLength), raw('ny', 'n y′', 1, perLength),
    raw('nxy', 'n x′y′', 2, perLength), main('n1', 'n₁', 0, perLength, 'first'),
    main('n2', 'n₂', 0, perLength, 'second'),
    raw('mx', 'm x′', 3, momentPerLength), raw('my', 'm y′', 4, momentPerLength),
    raw('mxy', 'm x′y′', 5, momentPerLength), main('m1', 'm₁', 3, momentPerLength, 'first'),
    main('m2', 'm₂', 3, momentPerLength, 'second'),
    raw('qx', 'q x′', 6, perLength), raw('qy', 'q y′', 7, perLength), ...faces,
  ];
}

/** @param {Model} model @returns {Quantity[]} */
function solidQuantities(model) {
  if (!model.meshes.some(({kind}) => kind === 'solid')) return [];
  const {pressure} = unitsOf(model.head);
  /** @type {(id: string, label: string, signed: boolean, value: PointValue) => Quantity} */
  const one = (id, label, signed, value) => ({
    id, label, unit: pressure, group: 'Solid stresses', signed, place: 'solid', component: 0,
    of(result, mesh, out) {
      const values = mesh ? result.meshes[mesh.index].values : result.nodalStress;
      for (let i = 0; values && i < out.length; ++i) out[i] = value(values, 6 * i, 0);
    },
  });
  const names = ['xx', 'yy', 'zz', 'xy', 'yz', 'xz'];
  return [
    one('mises', 'von Mises', false, (s, at) => mises(s, at)),
    ...[0, 1, 2].map((k) => one(`s${k + 1}`, `σ${'₁₂₃'[k]}`, true,
                                (s, at) => mainValues(s, at)[k])),
    ...names.map((name, c) => one(`s${name}`, (c < 3 ? 'σ ' : 'τ ') + (c < 3 ? name[0] : name),
                                  true, (s, at) => s[at + c])),
  ];
}

/**
 * The same quantity, of an envelope the extreme of its members: a stress that is computed from the
 * extremes of components would be that of no combination. @param {Quantity} quantity
 * @returns {Quantity}
 */
const withEnvelopes = (quantity) => ({
  ...quantity,
  of(result, mesh, out) {
    const {members, side = 1} = result;
    if (!members) {
      quantity.of(result, mesh, out);
      return;
    }
    const start = Float32Array.from(out), one = new Float32Array(out.length);
    members.forEach((member, k) => {
      one.set(start);
      quantity.of(member, mesh, one);
      for (let i = 0; i < out.length; ++i)
        if (k === 0 || side * one[i] > side * out[i]) out[i] = one[i];
    });
  },
});

/** Everything that this model has, in the order of the menu. @param {Model} model */
export function quantitiesOf(model) {
  return [...displacements(model), ...beamQuantities(model), ...shellQuantities(model),
          ...solidQuantities(model)].map(withEnvelopes);
}
