// Everything by keyboard: one table of keys, which is also the help.

import {byId, make} from './dom.js';
import {lookFrom, pan, turn, zoom} from './camera.js';
import {autoFactor, changed} from './state.js';
import {presetsOf, usePreset} from './controls.js';

/** @import {State} from './state.js' */
/** @import {Stage} from './scene.js' */
/** @import {Show} from './overlay.js' */

const STEP = 0.05;

/**
 * What keys need from the page.
 * @typedef {{state: State, stage: Stage, next: (kind: 'node' | 'element', step: number) => void,
 *            along: (step: number) => void, release: () => void, print: () => void}} Hands
 * @typedef {{keys: string[], text: string, run: (h: Hands, key: string) => void}} Key
 */

/** @param {Hands} h @param {keyof Show} what */
const toggle = (h, what) => {
  h.state.show[what] = !h.state.show[what];
  changed(h.state, 'show');
};

/** @param {Hands} h @param {number} across @param {number} over */
const step = (h, across, over) =>
  (h.state.model.plane ? pan(h.stage, across, over) : turn(h.stage, across * 3, -over * 3));

/** @param {Hands} h @param {string} view */
const look = (h, view) => { if (!h.state.model.plane) lookFrom(h.state.model, h.stage, view); };

/** @type {Key[]} */
const KEYS = [
  {keys: ['ArrowLeft', 'ArrowRight', 'ArrowUp', 'ArrowDown'], text: 'turn the picture (plane: move)',
    run: (h, key) => step(h, {ArrowLeft: -STEP, ArrowRight: STEP}[key] ?? 0,
                          {ArrowUp: STEP, ArrowDown: -STEP}[key] ?? 0)},
  {keys: ['Shift+ArrowLeft', 'Shift+ArrowRight', 'Shift+ArrowUp', 'Shift+ArrowDown'],
    text: 'move the picture',
    run: (h, key) => pan(h.stage, {'Shift+ArrowLeft': -STEP, 'Shift+ArrowRight': STEP}[key] ?? 0,
                         {'Shift+ArrowUp': STEP, 'Shift+ArrowDown': -STEP}[key] ?? 0)},
  {keys: ['+', '='], text: 'closer', run: (h) => zoom(h.stage, 1.25)},
  {keys: ['-'], text: 'farther', run: (h) => zoom(h.stage, 0.8)},
  {keys: ['0'], text: 'whole model', run: (h) =>
    lookFrom(h.state.model, h.stage, h.state.model.plane ? 'top' : 'iso')},
  {keys: ['1'], text: 'from the front', run: (h) => look(h, 'front')},
  {keys: ['2'], text: 'from the right', run: (h) => look(h, 'right')},
  {keys: ['3'], text: 'from above', run: (h) => look(h, 'top')},
  {keys: ['n', 'N'], text: 'next node, previous node', run: (h, key) =>
    h.next('node', key === 'n' ? 1 : -1)},
  {keys: ['e', 'E'], text: 'next element, previous element', run: (h, key) =>
    h.next('element', key === 'e' ? 1 : -1)},
  {keys: ['.', ','], text: 'next station or point of the element, previous one', run: (h, key) =>
    h.along(key === '.' ? 1 : -1)},
  {keys: ['Escape'], text: 'let go of the node or element', run: (h) => h.release()},
  {keys: ['q', 'Q'], text: 'next view of the results, previous one', run: (h, key) => {
    const all = presetsOf(h.state), id = h.state.quantity?.id ?? '';
    const at = all.findIndex((p) => p.quantity === id);
    usePreset(h.state, all[(at + (key === 'q' ? 1 : -1) + all.length) % all.length]);
  }},
  {keys: ['d'], text: 'deformed or not', run: (h) => {
    h.state.factor = h.state.factor ? 0 : autoFactor(h.state);
    changed(h.state, 'scale');
  }},
  {keys: ['[', ']'], text: 'smaller, larger deformation and diagrams', run: (h, key) => {
    const by = key === ']' ? 1.25 : 0.8;
    if (h.state.quantity?.place === 'beam') h.state.diagram *= by;
    else h.state.factor *= by;
    changed(h.state, 'scale');
  }},
  {keys: ['s'], text: 'supports', run: (h) => toggle(h, 'supports')},
  {keys: ['l'], text: 'loads', run: (h) => toggle(h, 'loads')},
  {keys: ['r'], text: 'true reactions', run: (h) => toggle(h, 'reactions')},
  {keys: ['a'], text: 'local axes', run: (h) => toggle(h, 'axes')},
  {keys: ['m'], text: 'mesh lines', run: (h) => toggle(h, 'edges')},
  {keys: ['x'], text: 'main directions', run: (h) => toggle(h, 'directions')},
  {keys: ['b'], text: 'numbers of nodes and elements', run: (h) => {
    h.state.show.elements = h.state.show.nodes = !h.state.show.nodes;
    changed(h.state, 'show');
  }},
  {keys: ['p'], text: 'print', run: (h) => h.print()},
  {keys: ['?'], text: 'this list', run: () => byId('keys').showModal()},
];

/** @param {KeyboardEvent} event */
const nameOf = (event) =>
  (event.shiftKey && event.key.startsWith('Arrow') ? 'Shift+' : '') + event.key;

/** @param {Hands} hands */
export function setUpKeys(hands) {
  const rows = byId('keys').querySelector('tbody');
  for (const {keys, text} of KEYS)
    rows.append(make('tr', {}, make('td', {}, ...keys.flatMap((k) => [make('kbd', {}, k), ' '])),
                     make('td', {}, text)));
  byId('help').addEventListener('click', () => byId('keys').showModal());
  document.addEventListener('keydown', (event) => {
    const target = /** @type {HTMLElement} */ (event.target);
    if (event.ctrlKey || event.metaKey || event.altKey || byId('keys').open) return;
    if (/^(INPUT|SELECT|TEXTAREA)$/.test(target.tagName)) return;
    const arrows = event.key.startsWith('Arrow');
    if (arrows && target.id !== 'drawing' && target !== document.body) return;
    const name = nameOf(event), found = KEYS.find(({keys}) => keys.includes(name));
    if (!found) return;
    found.run(hands, name);
    event.preventDefault();
  });
}
