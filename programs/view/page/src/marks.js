// Where the largest and smallest value of a colour map are.

import {format, withUnit} from './numbers.js';
import {drawnFactor} from './state.js';
import {plus, times} from './vectors.js';

/** @import {Vec3} from './types.js' */
/** @import {State} from './state.js' */
/** @import {Picture, Spot} from './picture.js' */

/** @param {State} state @param {Picture} picture @returns {{place: Vec3, text: string}[]} */
export function markPlaces(state, picture) {
  const {extremes} = picture, {quantity} = state;
  if (!extremes || !quantity || quantity.place === 'beam') return [];
  const drawn = (/** @type {Spot} */ s) => plus(s.place, times(s.motion, drawnFactor(state)));
  const marks = [];
  if (extremes.highSpot && extremes.high !== 0)
    marks.push({place: drawn(extremes.highSpot), text: withUnit(extremes.high, quantity.unit)});
  // The smallest size of something is rarely of interest; the smallest signed value is.
  if (quantity.signed && extremes.lowSpot && extremes.low < 0)
    marks.push({place: drawn(extremes.lowSpot), text: format(extremes.low)});
  return marks;
}
