// Colour scales: one for sizes, one for values of either sign; readable on light and dark ground
// and without red and green beside each other.

import {DataTexture, LinearFilter, RGBAFormat} from 'three';
import {roundUp} from './numbers.js';

/** @typedef {[number, number, number]} Rgb */

/** Dark blue over teal to light yellow. @type {Rgb[]} */
const SIZES = [[53, 42, 120], [45, 84, 158], [33, 127, 166], [36, 166, 152], [98, 196, 113],
               [178, 215, 84], [244, 226, 92]];
/** Blue over a pale grey to red. @type {Rgb[]} */
const SIGNS = [[30, 80, 160], [78, 139, 201], [150, 191, 224], [226, 229, 231], [240, 178, 144],
               [219, 103, 82], [164, 32, 48]];

/** @param {Rgb[]} stops @param {number} t @returns {Rgb} */
function between(stops, t) {
  const at = Math.max(0, Math.min(1, t)) * (stops.length - 1), i = Math.min(Math.floor(at),
                                                                           stops.length - 2);
  return /** @type {Rgb} */ ([0, 1, 2].map((c) =>
    Math.round(stops[i][c] + (stops[i + 1][c] - stops[i][c]) * (at - i))));
}

/**
 * The colour of a value on a scale: signed values have the pale middle at zero, wherever it lies.
 * @param {boolean} signed @param {number} value @param {number} low @param {number} high
 * @returns {Rgb}
 */
export function colourOf(signed, value, low, high) {
  if (!signed) return between(SIZES, (value - low) / (high - low || 1));
  return between(SIGNS, (value / (Math.max(-low, high) || 1) + 1) / 2);
}

/** @param {Rgb} rgb */
export const css = ([r, g, b]) => `rgb(${r} ${g} ${b})`;

/** The colours of a scale from its lowest to its highest value. @param {boolean} signed
 *  @param {number} low @param {number} high @returns {DataTexture} */
export function paletteTexture(signed, low, high) {
  const data = new Uint8Array(4 * 256);
  for (let i = 0; i < 256; ++i)
    data.set([...colourOf(signed, low + ((high - low) * i) / 255, low, high), 255], 4 * i);
  const texture = new DataTexture(data, 256, 1, RGBAFormat);
  texture.minFilter = texture.magFilter = LinearFilter;
  texture.needsUpdate = true;
  return texture;
}

/** Limits of a scale without bands are as round as with so many. */
const FLOWING = 10;

/**
 * Limits of a scale with round steps: those of the values, widened to whole steps.
 * @param {number} low @param {number} high @param {number} bands none where colours flow
 */
export function niceScale(low, high, bands) {
  if (!Number.isFinite(low) || !Number.isFinite(high)) return {low: 0, high: 1};
  const size = Math.max(Math.abs(low), Math.abs(high));
  if (high - low <= 1e-9 * size || size === 0) {
    const pad = roundUp(size || 1) * 0.5;
    return {low: low - pad, high: high + pad};
  }
  const step = niceStep((high - low) / (bands || FLOWING));
  return {low: Math.floor(low / step + 1e-9) * step, high: Math.ceil(high / step - 1e-9) * step};
}

/** @param {number} value */
function niceStep(value) {
  const power = 10 ** Math.floor(Math.log10(value));
  const round = [1, 1.2, 1.5, 2, 2.5, 3, 4, 5, 6, 8].find((m) => m * power >= value * (1 - 1e-9));
  return (round ?? 10) * power;
}

/** How many bands of a nice step lie between these limits. @param {number} low
 *  @param {number} high @param {number} wanted */
export function bandCount(low, high, wanted) {
  if (wanted === 0) return 0;
  const step = niceStep((high - low) / wanted), n = Math.round((high - low) / step);
  return Math.abs(n * step - (high - low)) < 1e-6 * (high - low) ? Math.max(2, n) : wanted;
}
