// The node or element that was chosen, and the way to the next one.

import {elementNumber} from './model.js';
import {changed} from './state.js';

/** @import {State} from './state.js' */
/** @import {Hit} from './picking.js' */

/** @param {State} state @param {'node' | 'element'} kind @param {number} number
 *  @returns {Hit | null} */
export function hitOf(state, kind, number) {
  if (kind === 'node') {
    const index = state.model.nodeIndex(number);
    return index < 0 ? null : {kind, index, depth: 0};
  }
  const found = kind === 'element' ? state.model.elementAt(number) : null;
  return found && {kind: 'element', ...found, point: 0, depth: 0};
}

/** Elements of all meshes as one row. @param {State} state @param {Hit | null} hit
 *  @param {number} step @returns {number} the number of the next element */
function nextElement(state, hit, step) {
  const {meshes} = state.model, total = meshes.reduce((n, m) => n + m.count, 0);
  let at = step > 0 ? -1 : 0;
  if (hit?.kind === 'element')
    at = meshes.slice(0, hit.mesh.index).reduce((n, m) => n + m.count, 0) + hit.index;
  at = (at + step + total) % total;
  const mesh = meshes.find((m) => at < m.count || ((at -= m.count), false));
  return mesh ? elementNumber(mesh, at) : 0;
}

/** @param {State} state */
export function selecting(state) {
  /** @param {'node' | 'element'} kind @param {number} number */
  const select = (kind, number) => {
    const hit = hitOf(state, kind, number);
    if (!hit) return false;
    state.hit = hit;
    state.pinned = true;
    changed(state, 'selection');
    return true;
  };
  return {
    select,
    release() {
      state.hit = null;
      state.pinned = false;
      changed(state, 'selection');
    },
    /** @param {'node' | 'element'} kind @param {number} step */
    next(kind, step) {
      const {model, hit} = state, last = model.head.deckNodes;
      if (kind === 'element') select(kind, nextElement(state, hit, step));
      else {
        const at = hit?.kind === 'node' ? hit.index : step > 0 ? -1 : 0;
        select(kind, model.nodeNumber((at + step + last) % last));
      }
    },
    /** @param {number} step */
    along(step) {
      const {hit} = state;
      if (hit?.kind !== 'element') return;
      const n = hit.mesh.kind === 'beam' ? hit.mesh.head.stations.length : hit.mesh.points;
      hit.point = (hit.point + step + n) % n;
      changed(state, 'selection');
    },
  };
}
