// The one global of the page, for tests and scripts: window.kestol.

import {centroid, movedNode} from './model.js';
import {chooseResult, changed, drawnFactor} from './state.js';
import {resultJson} from './json.js';
import {valuesOf} from './values.js';

/** @import {State} from './state.js' */
/** @import {Stage} from './scene.js' */
/** @import {Projector} from './camera.js' */

/**
 * @param {State} state @param {Stage | null} stage @param {Projector | null} to
 * @param {{select: (kind: 'node' | 'element', n: number) => boolean}} hands
 */
export function publish(state, stage, to, hands) {
  /** Fulfilled when the first picture stands, or at once where none can be drawn. */
  const ready = new Promise((done) => {
    if (!stage) done(true);
    stage?.onDraw.push(() => done(true));
  });
  /** Where a node or element stands on the page, in pixels; null where it does not exist.
   *  @param {'node' | 'element'} kind @param {number} n */
  const screen = (kind, n) => {
    if (!stage || !to) return null;
    const {model, result} = state, p = [0, 0, 0];
    to.set();
    if (kind === 'node') {
      const i = model.nodeIndex(n);
      if (i < 0) return null;
      to.project(...movedNode(model, result, i, drawnFactor(state)), p);
    } else {
      const found = kind === 'element' ? model.elementAt(n) : null;
      if (!found) return null;
      to.project(...centroidAsDrawn(state, found), p);
    }
    const box = stage.canvas.getBoundingClientRect();
    return {x: p[0] + box.left, y: p[1] + box.top};
  };
  Object.defineProperty(window, 'kestol', {value: Object.freeze({
    ready,
    get result() { return resultJson(state); },
    get findings() { return state.model.head.findings; },
    screen,
    value: () => (state.hit ? valuesOf(state.model, state.result, state.hit) : null),
    setResult: (/** @type {string} */ name) => chooseResult(state, name),
    setScale(/** @type {number} */ s) {
      if (!Number.isFinite(s)) throw new TypeError('a scale is a finite number');
      state.factor = s;
      changed(state, 'scale');
    },
    select: hands.select,
  })});
}

/** @param {State} state @param {{mesh: import('./types.js').Mesh, index: number}} found */
function centroidAsDrawn(state, {mesh, index}) {
  const {model, result} = state, c = centroid(model, mesh, index), s = drawnFactor(state);
  const corners = mesh.kind === 'beam' ? 2 : mesh.kind === 'shell' ? 3 : 4;
  const own = result.meshes[mesh.index]?.stationU, n = mesh.head.stations.length;
  if (mesh.kind === 'beam' && own && n % 2 === 1) {
    const k = 3 * (index * n + (n - 1) / 2);
    return /** @type {const} */ ([c[0] + s * own[k], c[1] + s * own[k + 1], c[2] + s * own[k + 2]]);
  }
  for (let k = 0; k < corners; ++k)
    for (let d = 0; d < 3; ++d)
      c[d] += (s * (result.u[3 * mesh.conn[index * mesh.nnode + k] + d] || 0)) / corners;
  return c;
}
