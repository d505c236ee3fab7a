// What the page shows: one object, and one way to change it.

import {quantitiesOf} from './quantities.js';
import {modeOf, readResults} from './results.js';
import {roundUp} from './numbers.js';

/** @import {Model, Quantity, Result} from './types.js' */
/** @import {Show} from './overlay.js' */
/** @import {Section} from './section.js' */
/** @import {Hit} from './picking.js' */

/**
 * @typedef {{model: Model, results: Result[], result: Result, quantities: Quantity[],
 *            quantity: Quantity | null, factor: number, diagram: number, show: Show,
 *            section: Section, bands: number, low: number | null, high: number | null,
 *            average: boolean, mode: number, phase: number, hit: Hit | null, pinned: boolean,
 *            listeners: ((what: Change) => void)[]}} State
 * @typedef {'result' | 'quantity' | 'scale' | 'show' | 'section' | 'selection' | 'theme'} Change
 */

/** The result of a page without a solution. @param {Model} model @returns {Result} */
function noResult(model) {
  return {
    name: '', kind: 'case', formula: '', u: new Float64Array(3 * model.nodes), rotation: null,
    meshes: model.meshes.map(() => ({values: null, stationU: null})), nodalStress: null,
    reactionNodes: new Uint32Array(0), reactions: new Float64Array(0), equilibrium: null,
    reactionRecords: null,
    loads: {nodal: [], elements: [], weight: false, gravity: [0, 0, 0]},
  };
}

/** @param {Model} model */
export const isSolved = (model) => Boolean(model.head.blocks['r0.u']);

/** @param {Model} model @returns {State} */
export function firstState(model) {
  const results = readResults(model), solved = results.length > 0 && isSolved(model);
  const result = solved ? results[0] : {...noResult(model), loads: results[0]?.loads ??
                                        noResult(model).loads};
  const quantities = solved ? quantitiesOf(model) : [];
  /** @type {State} */
  const state = {
    model, results: solved ? results : [result], result, quantities,
    quantity: quantities[0] ?? null, factor: 0, diagram: 1,
    show: {supports: true, hinges: true, loads: true, values: true, reactions: false,
           nodes: model.nodes <= 40, elements: false, axes: false, directions: false, edges: true,
           ghost: true},
    section: {axis: '', at: 0.5, flip: false}, bands: 10, low: null, high: null, average: true,
    mode: -1, phase: 0, hit: null, pinned: false, listeners: [],
  };
  state.factor = autoFactor(state);
  return state;
}

/** @type {WeakMap<Result, number>} */ const motions = new WeakMap();

/** The largest displacement of a result, beams between their nodes included. @param {Result} r */
export function largestMotion(r) {
  const known = motions.get(r);
  if (known !== undefined) return known;
  let largest = 0;
  for (const u of [r.u, ...r.meshes.map((m) => m.stationU)])
    for (let i = 0; u && i + 2 < u.length; i += 3)
      largest = Math.max(largest, u[i] * u[i] + u[i + 1] * u[i + 1] + u[i + 2] * u[i + 2] || 0);
  motions.set(r, Math.sqrt(largest));
  return Math.sqrt(largest);
}

/** A round factor that shows the largest displacement as about a twelfth of the model.
 *  @param {State} state */
export function autoFactor({model, result}) {
  const largest = largestMotion(result);
  if (!(largest > 0)) return 0;
  return roundUp((0.055 * model.size) / largest);
}

/** What is told to everybody who shows a part of the state. @param {State} state
 *  @param {Change} what */
export function changed(state, what) {
  for (const listener of state.listeners) listener(what);
}

/** @param {State} state @param {string} name @returns {boolean} whether there is such a result */
export function chooseResult(state, name) {
  const found = state.results.find((r) => r.name === name);
  if (!found) return false;
  const scaled = state.factor !== 0;
  state.result = found;
  state.mode = -1;
  state.low = state.high = null;
  state.factor = scaled ? autoFactor(state) : 0;
  changed(state, 'result');
  return true;
}

/** @param {State} state @param {string} id */
export function chooseQuantity(state, id) {
  state.quantity = state.quantities.find((q) => q.id === id) ?? null;
  state.low = state.high = null;
  changed(state, 'quantity');
}

/** Shows one of the modes of a mechanism; -1 ends it. @param {State} state @param {number} k */
export function chooseMode(state, k) {
  state.mode = k;
  if (k >= 0) {
    const {u, rotation} = modeOf(state.model, k);
    state.result = {...noResult(state.model), loads: state.result.loads, u, rotation};
    state.quantity = null;
    const largest = largestMotion(state.result);
    // A mode of rotations alone moves beams, not nodes.
    state.factor = (0.08 * state.model.size) / (largest || Math.max(...rotation.map(Math.abs)) *
                                                state.model.size * 0.2 || 1);
  } else {
    state.result = state.results[0];
    state.quantity = state.quantities[0] ?? null;
    state.factor = autoFactor(state);
  }
  changed(state, 'result');
}

/** The factor that is drawn: a mode swings. @param {State} state */
export const drawnFactor = (state) =>
  state.mode >= 0 ? state.factor * Math.cos(state.phase) : state.factor;
