// The key of the colours, and the line that says what is drawn.

import {isNothing} from './beams.js';
import {byId, make} from './dom.js';
import {colourOf, css} from './colours.js';
import {format} from './numbers.js';
import {largestMotion} from './state.js';

/** @import {State} from './state.js' */
/** @import {Picture} from './picture.js' */

/** The bands from the top down as list items. @param {Picture} p */
export function bandList(p) {
  const {low, high, bands, signed} = p.limits, items = [];
  const n = bands || 12;
  for (let k = n; k >= 0; --k) {
    const value = low + ((high - low) * k) / n;
    const colour = css(colourOf(signed, value - (high - low) / n / 2, low, high));
    const text = Math.abs(value) < 1e-9 * Math.max(Math.abs(low), Math.abs(high)) ? 0 : value;
    items.push(make('li', {}, make('i', {style: k ? `background:${colour}` : ''}),
                    make('span', {}, bands || k === n || k === 0 || k * 2 === n ? format(text, 4)
                                                                                : '')));
  }
  return make('ol', {}, ...items);
}

/** @param {State} state @param {Picture} p */
export function drawLegend(state, p) {
  const legend = byId('legend'), {quantity} = state;
  legend.replaceChildren();
  if (!quantity || quantity.place === 'beam' || !p.extremes || !Number.isFinite(p.extremes.high))
    return;
  const unit = quantity.unit ? ` [${quantity.unit}]` : '';
  const {low, high, lowText, highText} = p.extremes;
  const smallest = `smallest ${format(low)}${lowText && ` at ${lowText}`}`;
  const largest = `largest ${format(high)}${highText && ` at ${highText}`}`;
  legend.setAttribute('aria-label', `${quantity.label}${unit}: ${smallest}, ${largest}`);
  legend.append(make('div', {class: 'name'}, quantity.label + unit), bandList(p),
                make('p', {}, largest), make('p', {}, smallest));
}

/** What is drawn, in words. @param {State} state */
export function captionOf(state) {
  const {quantity, factor, result} = state, parts = [];
  if (state.mode >= 0) return `mode ${state.mode + 1}: how the model can move without resistance`;
  if (result.kind !== 'case' || state.results.length > 1)
    parts.push(result.name + (result.formula ? `: ${result.formula}` : ''));
  if (quantity?.place === 'beam') {
    parts.push(`${quantity.label}${quantity.unit && ` [${quantity.unit}]`}`);
    if (isNothing(state.model, result, quantity, state.quantities)) parts.push('0 everywhere');
    else if (quantity.component >= 4) parts.push('drawn on the tension side');
  }
  if (factor > 0 && largestMotion(result) > 0) parts.push(`deformed × ${format(factor)}`);
  if (!state.model.head.exact)
    parts.push('values rounded for the size of this page; kestol-export writes them in full');
  return parts.join(' · ');
}
