// The answers: cases as they are stored, combinations as sums of cases, envelopes over combinations.

import {plus} from './vectors.js';

/** @import {CaseHead, Combination, Equilibrium, Loads, MeshResult, Model, Reals, Result,
 *           Vec3, Wrench} from './types.js' */

/** Names under which the envelopes stand in the menu. */
export const LARGEST = 'envelope: largest', SMALLEST = 'envelope: smallest';

/** @param {Model} model @param {CaseHead} head @param {number} r @returns {Result} */
function caseResult(model, head, r) {
  const reals = (/** @type {string} */ name) =>
    /** @type {Reals | null} */ (model.block(`r${r}.${name}`));
  const nodes = model.block(`r${r}.reactionNode`);
  return {
    name: head.name,
    kind: 'case',
    formula: '',
    get u() { return reals('u') ?? new Float64Array(3 * model.nodes); },
    get rotation() { return reals('rotation'); },
    meshes: model.meshes.map((mesh) => ({
      get values() { return reals(`m${mesh.index}.values`); },
      get stationU() { return reals(`m${mesh.index}.u`); },
    })),
    get nodalStress() { return reals('nodalStress'); },
    reactionNodes: /** @type {Uint32Array} */ (nodes ?? new Uint32Array(0)),
    get reactions() { return reals('reaction') ?? new Float64Array(0); },
    equilibrium: head.equilibrium ?? null,
    reactionRecords: head.reactions ?? null,
    loads: head.loads,
  };
}

/** @typedef {(parts: {factor: number, numbers: Reals | null}[]) => Reals | null} Merge */

/** @type {Merge} */
function sum(parts) {
  if (!parts[0]?.numbers) return null;
  const total = new Float64Array(parts[0].numbers.length);
  for (const {factor, numbers} of parts)
    for (let i = 0; numbers && i < total.length; ++i) total[i] += factor * numbers[i];
  return total;
}

/** @param {1 | -1} side @returns {Merge} */
const extreme = (side) => (parts) => {
  if (!parts[0]?.numbers) return null;
  const total = Float64Array.from(parts[0].numbers);
  for (const {numbers} of parts)
    for (let i = 0; numbers && i < total.length; ++i)
      if (side * numbers[i] > side * total[i]) total[i] = numbers[i];
  return total;
};

/** @param {() => Reals | null} make */
function once(make) {
  /** @type {Reals | null | undefined} */ let kept;
  return () => (kept === undefined ? (kept = make()) : kept);
}

/**
 * A result whose arrays come from others by `merge`, each when it is asked for.
 * @param {Pick<Result, 'name' | 'kind' | 'formula' | 'loads' | 'equilibrium'>} head
 * @param {{factor: number, result: Result}[]} parts @param {Merge} merge @returns {Result}
 */
function merged(head, parts, merge) {
  const of = (/** @type {(r: Result) => Reals | null} */ pick) =>
    once(() => merge(parts.map(({factor, result}) => ({factor, numbers: pick(result)}))));
  const u = of((r) => r.u), rotation = of((r) => r.rotation), stress = of((r) => r.nodalStress);
  const reactions = of((r) => r.reactions);
  const first = parts[0].result;
  return {
    ...head,
    get u() { return u() ?? new Float64Array(0); },
    get rotation() { return rotation(); },
    meshes: first.meshes.map((_, m) => {
      const values = of((r) => r.meshes[m].values), stationU = of((r) => r.meshes[m].stationU);
      /** @type {MeshResult} */
      const both = {
        get values() { return values(); },
        get stationU() { return stationU(); },
      };
      return both;
    }),
    get nodalStress() { return stress(); },
    reactionNodes: first.reactionNodes,
    get reactions() { return reactions() ?? new Float64Array(0); },
    reactionRecords: null,
  };
}

/** @param {Vec3} a @param {number} f @returns {Vec3} */
const scaled = (a, f) => [a[0] * f, a[1] * f, a[2] * f];

/** @param {{factor: number, result: Result}[]} parts @returns {Loads} */
function loadsOf(parts) {
  return {
    nodal: parts.flatMap(({factor, result}) => result.loads.nodal.map((group) =>
      ({...group, force: scaled(group.force, factor), moment: scaled(group.moment, factor)}))),
    elements: parts.flatMap(({factor, result}) => result.loads.elements.map((group) =>
      ({...group, value: scaled(group.value, factor), couple: group.couple * factor}))),
    weight: parts.some(({result}) => result.loads.weight),
    gravity: parts.reduce((/** @type {Vec3} */ sum, {factor, result}) =>
      (result.loads.weight ? plus(sum, scaled(result.loads.gravity, factor)) : sum), [0, 0, 0]),
  };
}

/**
 * @param {{factor: number, result: Result}[]} parts @param {'loads' | 'reactions'} side
 * @returns {Wrench}
 */
function wrenchOf(parts, side) {
  /** @type {Wrench} */ const total = {force: [0, 0, 0], moment: [0, 0, 0]};
  for (const {factor, result} of parts) {
    const wrench = result.equilibrium?.[side];
    if (!wrench) continue;
    for (let d = 0; d < 3; ++d) {
      total.force[d] += factor * wrench.force[d];
      total.moment[d] += factor * wrench.moment[d];
    }
  }
  return total;
}

/** @param {{factor: number, result: Result}[]} parts @returns {Equilibrium | null} */
function equilibriumOf(parts) {
  if (!parts.every(({result}) => result.equilibrium)) return null;
  const loads = wrenchOf(parts, 'loads'), reactions = wrenchOf(parts, 'reactions');
  const size = Math.hypot(...loads.force) || 1;
  const rest = Math.hypot(...loads.force.map((f, d) => f + reactions.force[d]));
  return {loads, reactions, relativeError: rest / size};
}

/** @param {Combination} head @param {Result[]} cases @returns {Result} */
function combinationResult(head, cases) {
  const parts = cases.filter(({name}) => head.factors[name])
                     .map((result) => ({factor: head.factors[result.name], result}));
  if (parts.length === 0) parts.push({factor: 0, result: cases[0]});
  const {name, formula} = head;
  return merged({name, kind: 'combination', formula, loads: loadsOf(parts),
                 equilibrium: equilibriumOf(parts)}, parts, sum);
}

/** @param {string} name @param {1 | -1} side @param {Result[]} members @returns {Result} */
function envelopeResult(name, side, members) {
  const parts = members.map((result) => ({factor: 1, result}));
  const formula = `${side > 0 ? 'largest' : 'smallest'} of ${members.length} combinations, ` +
                  'each value by itself';
  /** @type {Loads} */ const loads = {nodal: [], elements: [], weight: false, gravity: [0, 0, 0]};
  const envelope = merged({name, kind: 'envelope', formula, equilibrium: null, loads}, parts,
                          extreme(side));
  return Object.assign(envelope, {members, side});  // a spread would compute all arrays at once
}

/**
 * Numbers of a result; of an envelope the extremes of those of its members, each by itself.
 * @param {Result} result @param {(r: Result) => number[]} get
 */
export function extremesOver(result, get) {
  const {members, side = 1} = result;
  if (!members) return get(result);
  const [first, ...others] = members.map(get);
  return first.map((value, c) =>
    others.reduce((best, list) => (side * list[c] > side * best ? list[c] : best), value));
}

/**
 * Everything that the menu offers, cases first.
 * @param {Model} model @returns {Result[]}
 */
export function readResults(model) {
  const {head} = model;
  const cases = head.cases.map((one, r) => caseResult(model, one, r));
  const combinations = head.combinations.map((one) => combinationResult(one, cases));
  if (combinations.length < 2) return [...cases, ...combinations];
  return [...cases, ...combinations, envelopeResult(LARGEST, 1, combinations),
          envelopeResult(SMALLEST, -1, combinations)];
}

/**
 * The combination that gives one value of an envelope.
 * @param {Result[]} results @param {Result} envelope @param {(r: Result) => number} pick
 */
export function governing(results, envelope, pick) {
  const value = pick(envelope);
  return results.find((r) => r.kind === 'combination' && pick(r) === value)?.name ?? '';
}

/** The displacements of a mode: zero where it does not say. @param {Model} model @param {number} k
 *  @returns {{u: Float64Array, rotation: Float64Array}} */
export function modeOf(model, k) {
  const u = new Float64Array(3 * model.nodes), rotation = new Float64Array(3 * model.nodes);
  for (const [number, motion] of Object.entries(model.head.mechanisms[k].motion)) {
    const i = model.nodeIndex(Number(number));
    if (i < 0) continue;
    u.set(motion.u, 3 * i);
    rotation.set(motion.rotation, 3 * i);
  }
  return {u, rotation};
}
