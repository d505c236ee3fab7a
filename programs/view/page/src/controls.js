// The panel at the left: what is shown and how.

import {byId, make} from './dom.js';
import {autoFactor, changed, chooseQuantity, chooseResult} from './state.js';
import {captionOf} from './legend.js';
import {format} from './numbers.js';

/** @import {State} from './state.js' */
/** @import {Show} from './overlay.js' */

/** @type {[keyof Show, string][]} */
const SHOWS = [['supports', 'supports'], ['hinges', 'hinges'], ['loads', 'loads'],
               ['values', 'load values'], ['reactions', 'true reactions'], ['nodes', 'node numbers'],
               ['elements', 'element numbers'], ['axes', 'local axes'],
               ['directions', 'main directions'], ['edges', 'mesh'], ['ghost', 'undeformed']];

/** Views that one button gives: the quantity and whether the deformed shape is drawn.
 *  @param {State} state @returns {{name: string, id: string, quantity: string, deformed: boolean}[]} */
export function presetsOf(state) {
  const list = [{name: 'Model', id: 'model', quantity: '', deformed: false}];
  if (state.quantities.length === 0) return list;
  list.push({name: 'Deformed', id: 'deformed', quantity: 'u', deformed: true});
  for (const q of state.quantities)
    if (q.place === 'beam') list.push({name: q.label, id: q.id, quantity: q.id, deformed: false});
  const first = (/** @type {string} */ id) => state.quantities.find((q) => q.id === id);
  for (const id of ['mises', 'mises-top', 'm1', 'n1']) {
    const q = first(id);
    if (q) list.push({name: q.label, id: q.id, quantity: q.id, deformed: false});
  }
  return list;
}

/** @param {State} state @param {{quantity: string, deformed: boolean}} preset */
export function usePreset(state, preset) {
  state.mode = -1;
  state.factor = preset.deformed ? autoFactor(state) : 0;
  // Arrows would cover what diagrams and colours show.
  const place = state.quantities.find((q) => q.id === preset.quantity)?.place;
  state.show.loads = place === undefined || place === 'node';
  chooseQuantity(state, preset.quantity);
}

/** @param {State} state */
function setUpPresets(state) {
  const box = byId('presets'), presets = presetsOf(state);
  for (const preset of presets) {
    const button = make('button', {type: 'button', 'data-preset': preset.id}, preset.name);
    button.addEventListener('click', () => usePreset(state, preset));
    box.append(button);
  }
  return () => {
    for (const button of box.children) {
      const preset = presets.find(({id}) => id === button.dataset.preset);
      const on = preset && (state.quantity?.id ?? '') === preset.quantity &&
                 (preset.id !== 'model' || state.factor === 0) && state.mode < 0;
      button.setAttribute('aria-pressed', String(Boolean(on)));
    }
  };
}

/** @param {State} state */
function setUpQuantity(state) {
  const select = byId('quantity');
  select.append(make('option', {value: ''}, 'none'));
  for (const group of new Set(state.quantities.map((q) => q.group)))
    select.append(make('optgroup', {label: group}, ...state.quantities
      .filter((q) => q.group === group)
      .map((q) => make('option', {value: q.id}, q.label + (q.unit && ` [${q.unit}]`)))));
  select.addEventListener('change', () => chooseQuantity(state, select.value));
  return () => { select.value = state.quantity?.id ?? ''; };
}

/** @param {State} state */
function setUpResults(state) {
  const select = byId('result');
  byId('result-choice').hidden = state.results.length < 2;
  /** @type {[string, string][]} */
  const groups = [['case', 'Cases'], ['combination', 'Combinations'], ['envelope', 'Envelopes']];
  for (const [kind, label] of groups) {
    const members = state.results.filter((r) => r.kind === kind);
    if (members.length === 0) continue;
    select.append(make('optgroup', {label}, ...members.map((r) =>
      make('option', {value: r.name}, r.name + (r.formula ? ` = ${r.formula}` : '')))));
  }
  select.addEventListener('change', () => chooseResult(state, select.value));
  return () => { select.value = state.result.name; };
}

/** @param {State} state */
function setUpScale(state) {
  const slider = byId('deform'), box = byId('factor');
  slider.addEventListener('input', () => {
    state.factor = (autoFactor(state) * Number(slider.value)) / 100;
    changed(state, 'scale');
  });
  box.addEventListener('change', () => {
    const value = Number(box.value);
    state.factor = Number.isFinite(value) ? Math.max(0, value) : 0;
    changed(state, 'scale');
  });
  const diagram = byId('diagram');
  diagram.addEventListener('input', () => {
    state.diagram = Number(diagram.value) / 100;
    changed(state, 'scale');
  });
  return () => {
    const auto = autoFactor(state);
    byId('deform-field').hidden = state.quantities.length === 0 || state.mode >= 0;
    slider.value = String(auto ? Math.min(200, (state.factor / auto) * 100) : 0);
    slider.setAttribute('aria-valuetext', `factor ${format(state.factor)}`);
    if (document.activeElement !== box) box.value = String(Number(state.factor.toPrecision(4)));
    byId('diagram-field').hidden = state.quantity?.place !== 'beam';
    diagram.value = String(state.diagram * 100);
  };
}

/** @param {State} state */
function setUpShows(state) {
  const box = byId('shows'), surfaces = state.model.meshes.some((m) => m.kind !== 'beam');
  /** @type {Partial<Record<keyof Show, boolean>>} */
  const has = {hinges: state.model.head.hinges.length > 0, directions: surfaces, edges: surfaces,
               reactions: state.results[0].reactionNodes.length > 0,
               axes: state.model.meshes.some((m) => m.kind !== 'solid')};
  /** @type {Map<keyof Show, HTMLInputElement>} */ const inputs = new Map();
  for (const [key, name] of SHOWS) {
    if (has[key] === false) continue;
    const input = /** @type {HTMLInputElement} */ (make('input', {type: 'checkbox',
                                                                  'data-show': key}));
    input.addEventListener('change', () => {
      state.show[key] = input.checked;
      changed(state, 'show');
    });
    inputs.set(key, input);
    box.append(make('label', {class: 'check'}, input, ' ' + name));
  }
  return () => { for (const [key, input] of inputs) input.checked = state.show[key]; };
}

/** @param {State} state @param {() => {low: number, high: number}} limits */
function setUpColours(state, limits) {
  const low = byId('low'), high = byId('high'), bands = byId('bands'), average = byId('average');
  const typed = () => {
    const read = (/** @type {HTMLInputElement} */ box) =>
      (box.value === '' || !Number.isFinite(Number(box.value)) ? null : Number(box.value));
    state.low = read(low);
    state.high = read(high);
    changed(state, 'show');
  };
  low.addEventListener('change', typed);
  high.addEventListener('change', typed);
  bands.addEventListener('change', () => {
    state.bands = Math.max(0, Math.min(30, Math.round(Number(bands.value) || 0)));
    changed(state, 'show');
  });
  average.addEventListener('change', () => {
    state.average = average.checked;
    changed(state, 'quantity');
  });
  byId('auto').addEventListener('click', () => {
    state.low = state.high = null;
    changed(state, 'show');
  });
  return () => {
    byId('scale-field').hidden = !state.quantity || state.quantity.place === 'beam';
    const now = limits();
    low.value = String(Number(now.low.toPrecision(6)));
    high.value = String(Number(now.high.toPrecision(6)));
    bands.value = String(state.bands);
    average.checked = state.average;
  };
}

/** @param {State} state */
function setUpSection(state) {
  const axis = byId('axis'), cut = byId('cut'), flip = byId('flip');
  const read = () => {
    state.section = {axis: axis.value, at: Number(cut.value) / 100, flip: flip.checked};
    changed(state, 'section');
  };
  for (const box of [axis, cut, flip]) box.addEventListener('input', read);
  byId('section-field').hidden = state.model.plane;
  return () => {
    axis.value = state.section.axis;
    cut.value = String(state.section.at * 100);
    cut.hidden = !state.section.axis;
    flip.checked = state.section.flip;
  };
}

/** @param {boolean} shown */
export function showPanel(shown) {
  byId('controls').hidden = !shown;
  byId('panel-toggle').setAttribute('aria-expanded', String(shown));
  document.querySelector('main')?.classList.toggle('wide', !shown);
}

/** The whole panel; gives what brings it up to date. @param {State} state
 *  @param {() => {low: number, high: number}} limits */
export function setUpControls(state, limits) {
  const parts = [setUpPresets(state), setUpQuantity(state), setUpResults(state), setUpScale(state),
                 setUpShows(state), setUpColours(state, limits), setUpSection(state)];
  byId('panel-toggle').addEventListener('click', () => showPanel(byId('controls').hidden));
  // In a narrow window the panel lies on the picture.
  if (window.matchMedia('(max-width: 760px)').matches) showPanel(false);
  return () => {
    for (const part of parts) part();
    byId('caption').textContent = captionOf(state);
  };
}
