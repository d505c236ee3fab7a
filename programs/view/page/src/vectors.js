// Arithmetic of three components.

/** @import {Vec3} from './types.js' */

/** @param {ArrayLike<number>} a @param {number} i @returns {Vec3} */
export const at3 = (a, i) => [a[3 * i], a[3 * i + 1], a[3 * i + 2]];
/** @param {Vec3} a @param {Vec3} b @returns {Vec3} */
export const plus = (a, b) => [a[0] + b[0], a[1] + b[1], a[2] + b[2]];
/** @param {Vec3} a @param {Vec3} b @returns {Vec3} */
export const minus = (a, b) => [a[0] - b[0], a[1] - b[1], a[2] - b[2]];
/** @param {Vec3} a @param {number} s @returns {Vec3} */
export const times = (a, s) => [a[0] * s, a[1] * s, a[2] * s];
/** @param {Vec3} a @param {Vec3} b */
export const dot = (a, b) => a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
/** @param {Vec3} a @param {Vec3} b @returns {Vec3} */
export const cross = (a, b) => [a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2],
                                a[0] * b[1] - a[1] * b[0]];
/** @param {Vec3} a */
export const length = (a) => Math.hypot(a[0], a[1], a[2]);
/** @param {Vec3} a @returns {Vec3} */
export const unit = (a) => times(a, 1 / (length(a) || 1));

/**
 * The indices of runs (first, how many, first, how many, ...); with `most`, evenly chosen ones when
 * there are more.
 * @param {number[]} runs @param {number} [most] @returns {Generator<number>}
 */
export function* indicesOf(runs, most = Infinity) {
  let total = 0;
  for (let r = 1; r < runs.length; r += 2) total += runs[r];
  const step = Math.ceil(total / most) || 1;
  let skip = 0;
  for (let r = 0; r < runs.length; r += 2) {
    for (; skip < runs[r + 1]; skip += step) yield runs[r] + skip;
    skip -= runs[r + 1];
  }
}
