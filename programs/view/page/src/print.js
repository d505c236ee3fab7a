// The print sheet: the picture as it stands, its key, the sums and the tables of the supports.

import {byId, make, table} from './dom.js';
import {bandList, captionOf} from './legend.js';
import {balanceTable} from './drawer.js';
import {tablesOf} from './tables.js';
import {counted, format} from './numbers.js';

/** @import {State} from './state.js' */
/** @import {Picture} from './picture.js' */

const MOST_ROWS = 60;

/** @param {State} state @param {Picture | null} picture */
function keyPart(state, picture) {
  const part = make('div', {class: 'key'}), {quantity} = state;
  if (!quantity || quantity.place === 'beam' || !picture?.extremes) return part;
  const {low, high, lowText, highText} = picture.extremes;
  const list = bandList(picture);
  part.append(make('strong', {}, quantity.label + (quantity.unit && ` [${quantity.unit}]`)), list,
              make('p', {}, `largest ${format(high)} ${highText && 'at ' + highText}`),
              make('p', {}, `smallest ${format(low)} ${lowText && 'at ' + lowText}`));
  return part;
}

/**
 * Fills the sheet. `shoot` gives the picture on white paper as an address.
 * @param {State} state @param {Picture | null} picture @param {() => string} shoot
 */
export function fillSheet(state, picture, shoot) {
  const {head} = state.model, sheet = byId('print-sheet');
  const errors = head.findings.filter((f) => f.severity === 'error');
  const parts = [make('h1', {}, head.title || head.deck),
                 make('p', {class: 'sub'}, [head.deck, captionOf(state)].filter(Boolean)
                   .join(' · '))];
  for (const {file, line, text} of errors.slice(0, 20))
    parts.push(make('p', {class: 'error'}, `${line > 0 ? `${file}:${line}` : file}: ${text}`));
  if (picture) {
    const image = make('img', {src: shoot(), alt: 'Picture of the model'});
    parts.push(make('figure', {}, image, keyPart(state, picture)));
  }
  const {equilibrium} = state.result;
  if (equilibrium) parts.push(make('h2', {}, 'Balance'), balanceTable(state, equilibrium));
  const supports = tablesOf(state.model, state.result)
    .filter(({id}) => id === 'reactions' || id === 'supports');
  for (const t of supports) {
    const rows = Array.from({length: Math.min(t.count, MOST_ROWS)}, (_, i) =>
      t.row(i).map((v) => (typeof v === 'number' ? format(v, 6) : v)));
    parts.push(make('h2', {}, t.name), table(t.header, rows, t.name));
    if (t.count > MOST_ROWS)
      parts.push(make('p', {}, `${counted(t.count - MOST_ROWS, 'more row')}: see the CSV file.`));
  }
  sheet.replaceChildren(...parts);
}
