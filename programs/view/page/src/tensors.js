// Main values and von Mises of stresses, in the plane and in space.

/** @import {Vec3} from './types.js' */

/**
 * Main values of a plane tensor, largest first, and the angle of the first from x.
 * @param {number} x @param {number} y @param {number} xy
 */
export function planeMain(x, y, xy) {
  const mean = (x + y) / 2, radius = Math.hypot((x - y) / 2, xy);
  return {first: mean + radius, second: mean - radius, angle: Math.atan2(2 * xy, x - y) / 2};
}

/** @param {number} x @param {number} y @param {number} xy */
export const planeMises = (x, y, xy) => Math.sqrt(Math.max(0, x * x + y * y - x * y + 3 * xy * xy));

/**
 * Von Mises of a tensor in the order xx yy zz xy yz xz.
 * @param {ArrayLike<number>} s @param {number} at
 */
export function mises(s, at) {
  // In the order of kestol's own sums, so that the last digit agrees.
  const xy = s[at] - s[at + 1], yz = s[at + 1] - s[at + 2], zx = s[at + 2] - s[at];
  const shears = s[at + 3] * s[at + 3] + s[at + 5] * s[at + 5] + s[at + 4] * s[at + 4];
  return Math.sqrt(0.5 * (xy * xy + yz * yz + zx * zx + 6 * shears));
}

/**
 * Main values of a tensor in the order xx yy zz xy yz xz, largest first.
 * @param {ArrayLike<number>} s @param {number} at @returns {Vec3}
 */
export function mainValues(s, at) {
  const mean = (s[at] + s[at + 1] + s[at + 2]) / 3;
  const x = s[at] - mean, y = s[at + 1] - mean, z = s[at + 2] - mean;
  const xy = s[at + 3], yz = s[at + 4], xz = s[at + 5];
  const j2 = (x * x + y * y + z * z) / 2 + xy * xy + yz * yz + xz * xz;
  const r = Math.sqrt(j2 / 3);
  if (r === 0) return [mean, mean, mean];
  const det = x * (y * z - yz * yz) - xy * (xy * z - yz * xz) + xz * (xy * yz - y * xz);
  const angle = Math.acos(Math.max(-1, Math.min(1, det / (2 * r ** 3)))) / 3;
  const third = (2 * Math.PI) / 3;
  return [mean + 2 * r * Math.cos(angle), mean + 2 * r * Math.cos(angle - third),
          mean + 2 * r * Math.cos(angle + third)];
}

/**
 * A direction of a main value of that tensor: the longest row product of (S - value I).
 * @param {ArrayLike<number>} s @param {number} at @param {number} value @returns {Vec3}
 */
export function mainDirection(s, at, value) {
  const xy = s[at + 3], yz = s[at + 4], xz = s[at + 5];
  /** @type {Vec3[]} */
  const rows = [[s[at] - value, xy, xz], [xy, s[at + 1] - value, yz], [xz, yz, s[at + 2] - value]];
  /** @type {Vec3} */ let best = [1, 0, 0];
  let longest = 0;
  for (const [a, b] of [[0, 1], [1, 2], [2, 0]]) {
    const [p, q] = [rows[a], rows[b]];
    /** @type {Vec3} */
    const c = [p[1] * q[2] - p[2] * q[1], p[2] * q[0] - p[0] * q[2], p[0] * q[1] - p[1] * q[0]];
    const size = Math.hypot(...c);
    if (size > longest) [longest, best] = [size, [c[0] / size, c[1] / size, c[2] / size]];
  }
  return best;
}
