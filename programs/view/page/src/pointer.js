// Mouse and touch: values under the pointer, a click keeps them.

import {picker} from './picking.js';
import {drawnFactor} from './state.js';
import {cutOff} from './section.js';
import {showValues} from './details.js';
import {changed} from './state.js';

/** @import {State} from './state.js' */
/** @import {Stage} from './scene.js' */
/** @import {Picture} from './picture.js' */
/** @import {Projector} from './camera.js' */

/** A click that moved farther than this was a drag. */
const DRAG = 5;

/** @param {State} state @param {Stage} stage @param {Picture} picture @param {Projector} to */
export function setUpPointer(state, stage, picture, to) {
  const pick = picker(state.model, to), {canvas} = stage;
  stage.onDraw.push(pick.forget);
  const hitAt = (/** @type {PointerEvent} */ event) => {
    const hidden = cutOff(state.model, state.section);
    return pick.at(event.offsetX, event.offsetY, state.result, drawnFactor(state),
                   picture.surfaces, hidden);
  };
  let down = {x: 0, y: 0}, asked = false;
  canvas.addEventListener('pointerdown', (event) => {
    down = {x: event.clientX, y: event.clientY};
  });
  canvas.addEventListener('pointermove', (event) => {
    if (event.buttons || asked || state.pinned || state.mode >= 0) return;
    asked = true;
    requestAnimationFrame(() => {
      asked = false;
      if (state.pinned) return;
      state.hit = hitAt(event);
      showValues(state, {x: event.offsetX, y: event.offsetY});
    });
  });
  canvas.addEventListener('pointerup', (event) => {
    if (Math.hypot(event.clientX - down.x, event.clientY - down.y) > DRAG) return;
    state.hit = hitAt(event);
    state.pinned = state.hit !== null;
    changed(state, 'selection');
  });
  canvas.addEventListener('pointerleave', () => {
    if (state.pinned) return;
    state.hit = null;
    showValues(state, null);
  });
}
