// Numbers and units as text.

/** @import {Head} from './types.js' */

/**
 * A number with so many significant digits, without trailing zeros, with a real minus sign.
 * @param {number} value
 */
export function format(value, digits = 4) {
  if (!Number.isFinite(value)) return '–';
  if (value === 0) return '0';
  const size = Math.abs(value);
  if (size >= 10 ** (digits - 1) && size < 1e6) return String(Math.round(value)).replace('-', '−');
  let text = size >= 1e6 || size < 1e-4 ? value.toExponential(digits - 1)
                                       : value.toPrecision(digits);
  // The zeros of 1.50e−10 behind its 5, not that of the power.
  if (text.includes('.')) text = text.replace(/(?:\.|(\.\d*?[1-9]))0+(?=e|$)/, '$1');
  return text.replace('e+', 'e').replace('-', '−').replace('e-', 'e−');
}

/** @param {number} value @param {string} unit */
export const withUnit = (value, unit, digits = 4) =>
  format(value, digits) + (unit ? ' ' + unit : '');

/** "1 beam", "3 beams". @param {number} count @param {string} noun */
export const counted = (count, noun) => `${count} ${noun}${count === 1 ? '' : 's'}`;

/** Names of derived units; empty where the deck names none. @param {Head} head */
export function unitsOf(head) {
  const {force, length, pressure} = head.units;
  const both = force && length;
  return {
    force,
    length,
    pressure,
    angle: 'rad',
    moment: both ? `${force} ${length}` : '',
    perLength: both ? `${force}/${length}` : '',
    perArea: both ? `${force}/${length}²` : '',
    perVolume: both ? `${force}/${length}³` : '',
    momentPerLength: both ? `${force} ${length}/${length}` : '',
  };
}

/** A round number of 1, 2 or 5 times a power of ten, not below `value`. @param {number} value */
export function roundUp(value) {
  if (!(value > 0) || !Number.isFinite(value)) return 1;
  const power = 10 ** Math.floor(Math.log10(value));
  return ([1, 2, 5].find((m) => m * power >= value * (1 - 1e-12)) ?? 10) * power;
}
