// The drawer below the picture: findings, sums, tables and the text of the deck.

import {byId, make, table} from './dom.js';
import {counted, format, unitsOf} from './numbers.js';
import {tablesOf, tableSheet} from './tables.js';
import {chooseMode} from './state.js';
import {hitOf} from './selection.js';

/** @import {Equilibrium, Finding, Vec3} from './types.js' */
/** @import {State} from './state.js' */

/** @typedef {(kind: 'node' | 'element', number: number) => void} Select */

/** The list of findings: the worst first. @param {State} state @param {Select} select */
function findingSheet(state, select) {
  const {findings, mechanisms, modes} = state.model.head;
  const ordered = [...findings].sort((a, b) =>
    Number(a.severity !== 'error') - Number(b.severity !== 'error'));
  const items = ordered.map((finding) => findingItem(state, finding, select));
  const parts = [];
  if (mechanisms.length > 0) parts.push(mechanismPart(state, modes));
  if (items.length > 0) parts.push(make('ul', {class: 'findings'}, ...items));
  else if (parts.length === 0)
    parts.push(make('p', {class: 'note'}, 'Nothing to remark: no error, no warning.'));
  return parts;
}

/** @param {State} state @param {Finding} finding @param {Select} select */
function findingItem(state, {code, severity, line, column, text, nodes, elements, file}, select) {
  // What is missing cannot be shown.
  const places = [...nodes.map((n) => /** @type {const} */ (['node', n])),
                  ...elements.map((n) => /** @type {const} */ (['element', n]))]
    .filter(([kind, number]) => hitOf(state, kind, number));
  const where = line > 0 ? `${file}:${line}:${column}` : file;
  const buttons = places.slice(0, 12).flatMap(([kind, number]) => {
    const button = make('button', {type: 'button'}, `${kind} ${number}`);
    button.addEventListener('click', () => select(kind, number));
    return [' ', button];
  });
  return make('li', {}, make('span', {class: severity}, severity), ' ', make('span', {class: 'text'}, text),
              ' ', make('span', {class: 'where'}, `[${code}] ${where}`), ...buttons);
}

/** @param {State} state @param {number} modes */
function mechanismPart(state, modes) {
  const {mechanisms} = state.model.head, part = make('div');
  part.append(make('p', {class: 'error'}, `The model is a mechanism in ${counted(modes, 'way')}.`));
  mechanisms.forEach((mechanism, k) => {
    const button = make('button', {type: 'button', 'aria-pressed': String(state.mode === k)},
                        `Show mode ${k + 1}`);
    button.addEventListener('click', () => chooseMode(state, state.mode === k ? -1 : k));
    part.append(make('p', {}, button, ' ', mechanism.text.join('; ')));
  });
  return part;
}

/** Sums of loads and reactions. @param {State} state @param {Equilibrium} sums */
function balanceSheet(state, sums) {
  return [balanceTable(state, sums), make('p', {class: 'note'},
    'Loads are the forces on the nodes, reactions what the supports give to the structure; ' +
    'moments about the origin. Relative error ' + format(sums.relativeError, 2) + '.')];
}

/** Sums below this share of the largest one are what rounding leaves of 0; the relative error tells
 *  of them. */
const ROUNDING = 1e-10;

/** @param {State} state @param {Equilibrium} sums */
export function balanceTable(state, {loads, reactions, drilling}) {
  const {force, moment} = unitsOf(state.model.head);
  const d = state.model.plane ? [0, 1] : [0, 1, 2], m = state.model.plane ? [2] : [0, 1, 2];
  const name = (/** @type {string} */ n, /** @type {string} */ u) => (u ? `${n} [${u}]` : n);
  const header = ['', ...d.map((k) => name('F' + 'xyz'[k], force)),
                  ...m.map((k) => name('M' + 'xyz'[k], moment))];
  const cell = (/** @type {Vec3} */ of, /** @type {number} */ k, /** @type {number} */ largest) =>
    format(Math.abs(of[k]) > ROUNDING * largest ? of[k] : 0, 6);
  const largest = (/** @type {'force' | 'moment'} */ what) =>
    Math.max(...[...loads[what], ...reactions[what]].map(Math.abs));
  const row = (/** @type {string} */ title, /** @type {{force: Vec3, moment: Vec3}} */ w) =>
    [title, ...d.map((k) => cell(w.force, k, largest('force'))),
     ...m.map((k) => cell(w.moment, k, largest('moment')))];
  const rows = [row('loads', loads), row('reactions', reactions)];
  if (drilling?.some((m) => m !== 0))
    rows.push(row('drilling', {force: [0, 0, 0], moment: drilling}));
  return table(header, rows, 'Balance of loads and reactions');
}

/** @param {State} state */
function deckSheet(state) {
  const {text, omittedLines} = state.model.head;
  const parts = [make('pre', {}, text)];
  if (omittedLines > 0)
    parts.unshift(make('p', {class: 'note'}, `${counted(omittedLines, 'line')} of long lists ` +
                       `${omittedLines === 1 ? 'is' : 'are'} left out.`));
  return parts;
}

/** @param {State} state */
function summarySheet(state) {
  const {model} = state, {head} = model;
  const kinds = model.meshes.map((m) => counted(m.count, `${m.nnode}-noded ${m.kind}`));
  const rows = head.materials.slice(0, 200).map((m) =>
    [m.number ? String(m.number) : 'inline', Object.entries(m).filter(([k]) => k !== 'number')
      .map(([k, v]) => `${k} = ${typeof v === 'number' ? format(v, 6) : v}`).join(', ')]);
  return [make('p', {}, `${counted(head.deckNodes, 'node')}; ${kinds.join(', ')}.`),
          table(['material', 'values'], rows, 'Materials')];
}

/**
 * @param {State} state @param {Select} select
 * @returns {{show: (id: string) => void, refresh: () => void}}
 */
export function setUpDrawer(state, select) {
  const tabs = byId('tabs'), sheet = byId('sheet');
  let shown = '';

  /** @returns {{id: string, name: string, fill: () => Node[]}[]} */
  const sheets = () => {
    const {head} = state.model, errors = head.findings.filter((f) => f.severity === 'error').length;
    const count = head.findings.length + (head.mechanisms.length > 0 && errors === 0 ? 1 : 0);
    const list = [{id: 'findings', name: `Findings (${count})`,
                   fill: () => findingSheet(state, select)}];
    const {equilibrium} = state.result;
    if (equilibrium)
      list.push({id: 'balance', name: 'Balance', fill: () => balanceSheet(state, equilibrium)});
    for (const t of tablesOf(state.model, state.result))
      list.push({id: t.id, name: t.name, fill: () => tableSheet(t, head.deck, sheet, select)});
    list.push({id: 'materials', name: 'Model', fill: () => summarySheet(state)},
              {id: 'deck', name: 'Deck', fill: () => deckSheet(state)});
    return list;
  };

  const refresh = () => {
    const list = sheets(), open = list.find(({id}) => id === shown);
    tabs.replaceChildren(...list.map(({id, name}) => {
      const on = id === shown;
      const tab = make('button', {type: 'button', role: 'tab', id: `tab-${id}`,
                                  'aria-selected': String(on), 'aria-controls': 'sheet',
                                  tabindex: on || (!open && id === list[0].id) ? '0' : '-1'}, name);
      tab.addEventListener('click', () => show(id === shown ? '' : id));
      return tab;
    }));
    sheet.onscroll = null;
    sheet.hidden = !open;
    if (open) sheet.setAttribute('aria-labelledby', `tab-${open.id}`);
    sheet.replaceChildren(...(open?.fill() ?? []));
  };
  const show = (/** @type {string} */ id) => {
    const focused = document.activeElement?.getAttribute('role') === 'tab';
    shown = id;
    refresh();
    sheet.scrollTop = 0;
    if (focused) byId(`tab-${id}`)?.focus();
  };
  tabs.addEventListener('keydown', (/** @type {KeyboardEvent} */ event) => {
    const step = {ArrowRight: 1, ArrowLeft: -1}[event.key];
    if (!step) return;
    const all = [...tabs.children], at = all.indexOf(/** @type {Element} */ (event.target));
    const next = all[(at + step + all.length) % all.length];
    next.focus();
    show(next.id.slice(4));
    event.preventDefault();
  });
  refresh();
  return {show, refresh};
}
