// A mode of a mechanism swings, unless the user asked for less motion.

import {changed} from './state.js';

/** @import {State} from './state.js' */

const PERIOD = 2200;

/** @param {State} state */
export function animate(state) {
  let running = false;
  const still = window.matchMedia('(prefers-reduced-motion: reduce)');
  const frame = (/** @type {number} */ time) => {
    running = state.mode >= 0 && !still.matches;
    if (!running) return;
    state.phase = (time / PERIOD) * 2 * Math.PI;
    changed(state, 'scale');
    requestAnimationFrame(frame);
  };
  state.listeners.push(() => {
    if (running || state.mode < 0 || still.matches) return;
    running = true;
    requestAnimationFrame(frame);
  });
}
