// Tables of everything, and each as CSV. Only the rows in sight are in the page.

import {make} from './dom.js';
import {elementNumber, materialOf, nodesOf} from './model.js';
import {format, unitsOf} from './numbers.js';
import {BEAM_VALUES, SHELL_VALUES, SOLID_VALUES} from './values.js';
import {indicesOf} from './vectors.js';

/** @import {Mesh, Model, Result} from './types.js' */

/**
 * @typedef {{id: string, name: string, header: string[], count: number,
 *            row: (i: number) => (number | string)[],
 *            select: (i: number) => {kind: 'node' | 'element', number: number}}} Table
 */

/** @param {string} name @param {string} unit */
const headed = (name, unit) => (unit ? `${name} [${unit}]` : name);

/** @param {Model} model @param {Result} result @returns {Table} */
function nodeTable(model, result) {
  const {length, angle} = unitsOf(model.head), d = model.plane ? [0, 1] : [0, 1, 2];
  const turns = !result.rotation ? [] : model.plane ? [2] : [0, 1, 2];
  return {
    id: 'nodes', name: 'Nodes', count: model.head.deckNodes,
    header: ['node', ...d.map((k) => headed('xyz'[k], length)),
             ...d.map((k) => headed('u' + 'xyz'[k], length)),
             ...turns.map((k) => headed('r' + 'xyz'[k], angle))],
    row: (i) => [model.nodeNumber(i), ...d.map((k) => model.x[3 * i + k]),
                 ...d.map((k) => result.u[3 * i + k] ?? 0),
                 ...turns.map((k) => result.rotation?.[3 * i + k] ?? 0)],
    select: (i) => ({kind: 'node', number: model.nodeNumber(i)}),
  };
}

/** @param {Model} model @param {Result} result @returns {Table} */
function reactionTable(model, result) {
  const {force, moment} = unitsOf(model.head), {reactionNodes: nodes, reactions: r} = result;
  const columns = model.plane ? [0, 1, 5] : result.rotation ? [0, 1, 2, 3, 4, 5] : [0, 1, 2];
  const names = ['Fx', 'Fy', 'Fz', 'Mx', 'My', 'Mz'];
  return {
    id: 'reactions', name: 'Reactions', count: nodes.length,
    header: ['node', ...columns.map((c) => headed(names[c], c < 3 ? force : moment))],
    row: (i) => [model.nodeNumber(nodes[i]) || 'mid-side', ...columns.map((c) => r[6 * i + c])],
    select: (i) => ({kind: 'node', number: model.nodeNumber(nodes[i])}),
  };
}

/** @param {Model} model @returns {Table} */
function supportTable(model) {
  const groups = model.head.supports;
  const all = groups.flatMap((g) => Array.from(indicesOf(g.runs), (node) => ({g, node})));
  const names = model.plane ? ['ux', 'uy', 'θz'] : ['ux', 'uy', 'uz', 'θx', 'θy', 'θz'];
  const used = names.slice(0, Math.max(0, ...groups.map((g) => g.codes.length)));
  return {
    id: 'supports', name: 'Supports', count: all.length,
    header: ['node', 'codes', ...used, 'own axes'],
    row: (i) => [model.nodeNumber(all[i].node) || 'mid-side', all[i].g.codes,
                 ...used.map((_, d) => all[i].g.values[d] ?? 0), all[i].g.axes ? 'turned' : ''],
    select: (i) => ({kind: 'node', number: model.nodeNumber(all[i].node)}),
  };
}

/** Which mesh and element a running count means. @param {Mesh[]} meshes
 *  @param {(m: Mesh) => number} rows */
function locator(meshes, rows) {
  const starts = [0];
  for (const mesh of meshes) starts.push(starts[starts.length - 1] + mesh.count * rows(mesh));
  return {
    total: starts[meshes.length],
    find(/** @type {number} */ i) {
      let m = 0;
      while (i >= starts[m + 1]) ++m;
      const n = rows(meshes[m]), k = i - starts[m];
      return {mesh: meshes[m], element: Math.floor(k / n), part: k % n};
    },
  };
}

/** @param {Model} model @param {Result} result @param {'beam' | 'shell' | 'solid'} kind
 *  @returns {Table | null} */
function elementTable(model, result, kind) {
  const meshes = model.meshes.filter((m) => m.kind === kind);
  if (meshes.length === 0 || !result.meshes[meshes[0].index]?.values) return null;
  const units = unitsOf(model.head), beam = kind === 'beam';
  const names = {beam: BEAM_VALUES, shell: SHELL_VALUES, solid: SOLID_VALUES}[kind];
  const shown = beam && model.plane ? [0, 1, 5] : names.map((_, c) => c);
  const unitOf = (/** @type {number} */ c) =>
    kind === 'solid' ? units.pressure
      : beam ? (c < 3 ? units.force : units.moment)
      : c < 3 || c > 5 ? units.perLength : units.momentPerLength;
  const rows = (/** @type {Mesh} */ m) => (beam ? m.head.stations.length : m.points);
  const {total, find} = locator(meshes, rows);
  return {
    id: kind + 's', name: kind[0].toUpperCase() + kind.slice(1) + 's', count: total,
    header: ['element', beam ? headed('x', units.length) : 'point', 'material',
             ...shown.map((c) => headed(names[c], unitOf(c)))],
    row(i) {
      const {mesh, element, part} = find(i), values = result.meshes[mesh.index].values;
      const at = (element * rows(mesh) + part) * names.length;
      const where = beam ? mesh.head.stations[part] * beamLength(model, mesh, element) : part + 1;
      return [elementNumber(mesh, element), where, materialOf(model, mesh, element).number,
              ...shown.map((c) => values?.[at + c] ?? NaN)];
    },
    select(i) {
      const {mesh, element} = find(i);
      return {kind: 'element', number: elementNumber(mesh, element)};
    },
  };
}

/** @param {Model} model @param {Mesh} mesh @param {number} i */
function beamLength(model, mesh, i) {
  const [a, b] = nodesOf(mesh, i), {x} = model;
  return Math.hypot(x[3 * b] - x[3 * a], x[3 * b + 1] - x[3 * a + 1], x[3 * b + 2] - x[3 * a + 2]);
}

/** The tables that the page offers. @param {Model} model @param {Result} result */
export function tablesOf(model, result) {
  const {tables} = model.head;
  if (tables === 'none') return [];
  const few = [reactionTable(model, result), supportTable(model)];
  if (tables === 'supports') return few.filter((t) => t.count > 0);
  const kinds = /** @type {const} */ (['beam', 'shell', 'solid']);
  const all = [...few, nodeTable(model, result),
               ...kinds.map((kind) => elementTable(model, result, kind))];
  return /** @type {Table[]} */ (all.filter((t) => t && t.count > 0));
}

/** @param {number | string} value */
const cellText = (value) => (typeof value === 'number' ? format(value, 6) : value);

/** All rows as CSV: a point in numbers, a comma between them. @param {Table} t */
export function csvOf(t) {
  const lines = [t.header.map((h) => (/[",]/.test(h) ? `"${h.replaceAll('"', '""')}"` : h))
                         .join(',')];
  for (let i = 0; i < t.count; ++i) lines.push(t.row(i).join(','));
  return lines.join('\n') + '\n';
}

/** @param {Table} t @param {string} deck */
function saveCsv(t, deck) {
  const url = URL.createObjectURL(new Blob([csvOf(t)], {type: 'text/csv'}));
  const link = make('a', {href: url, download: `${deck.replace(/\.[^.]*$/, '')}_${t.id}.csv`});
  link.click();
  setTimeout(() => URL.revokeObjectURL(url), 1000);
}

const ROW = 22, AROUND = 10;

/**
 * A table in the page. Rows out of sight are two empty rows of their height.
 * @param {Table} t @param {HTMLElement} scroller
 * @param {(kind: 'node' | 'element', number: number) => void} select
 */
function sheetOf(t, scroller, select) {
  const body = make('tbody'), before = make('tr', {'aria-hidden': 'true'});
  const after = make('tr', {'aria-hidden': 'true'});
  const fill = () => {
    const top = Math.max(0, scroller.scrollTop - 70);
    const first = Math.max(0, Math.floor(top / ROW) - AROUND);
    const last = Math.min(t.count, first + Math.ceil((scroller.clientHeight || 300) / ROW) +
                                   2 * AROUND);
    before.style.height = `${first * ROW}px`;
    after.style.height = `${(t.count - last) * ROW}px`;
    const rows = [];
    for (let i = first; i < last; ++i) {
      const tr = make('tr', {style: `height:${ROW}px`, 'data-number': '1', tabindex: '0',
                             'aria-rowindex': String(i + 2)},
                      ...t.row(i).map((v) => make('td', {}, cellText(v))));
      const choose = () => {
        const {kind, number} = t.select(i);
        select(kind, number);
      };
      tr.addEventListener('click', choose);
      tr.addEventListener('keydown', (event) => { if (event.key === 'Enter') choose(); });
      rows.push(tr);
    }
    body.replaceChildren(before, ...rows, after);
  };
  scroller.onscroll = fill;
  // At once, so that no table is ever seen empty, and again where its place is known.
  fill();
  requestAnimationFrame(fill);
  return make('table', {class: 'data', 'aria-rowcount': String(t.count + 1)},
              make('caption', {class: 'hidden'}, t.name),
              make('thead', {}, make('tr', {}, ...t.header.map((h) =>
                make('th', {scope: 'col'}, h)))), body);
}

/** @param {Table} t @param {string} deck @param {HTMLElement} scroller
 *  @param {(kind: 'node' | 'element', number: number) => void} select */
export function tableSheet(t, deck, scroller, select) {
  const save = make('button', {type: 'button'}, 'CSV');
  save.setAttribute('aria-label', `Save ${t.name} as CSV`);
  save.addEventListener('click', () => saveCsv(t, deck));
  const bar = make('div', {class: 'bar'}, save, make('span', {class: 'note'},
    `${t.count} ${t.count === 1 ? 'row' : 'rows'}; a click shows the place`));
  return [bar, sheetOf(t, scroller, select)];
}
