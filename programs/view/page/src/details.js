// The values under the pointer and those of what was chosen.

import {byId, make} from './dom.js';
import {format, unitsOf} from './numbers.js';
import {at3} from './vectors.js';
import {movedNode, nodesOf} from './model.js';
import {valuesOf} from './values.js';
import {governing} from './results.js';

/** @import {Model, ValueUnder, Vec3} from './types.js' */
/** @import {State} from './state.js' */
/** @import {Hit} from './picking.js' */

/** @param {Model} model @param {string | undefined} type @param {string} name */
function unitOf(model, type, name) {
  const u = unitsOf(model.head);
  if (/^[xyz]$|^u[xyz]$/.test(name)) return u.length;
  if (/^r[xyz]$/.test(name)) return u.angle;
  if (/^F[xyz]$/.test(name) || (type === 'beam' && ['N', 'Vy', 'Vz'].includes(name))) return u.force;
  if (/^M[xyz]$/.test(name) || name === 'T') return u.moment;
  if (/^[nq]/.test(name)) return u.perLength;
  if (/^m[xy]/.test(name)) return u.momentPerLength;
  return /^s|vonMises/.test(name) ? u.pressure : '';
}

/** Components that a plane model does not have. */
const SPATIAL = new Set(['z', 'uz', 'rx', 'ry', 'Fz', 'Mx', 'My', 'Vz', 'T']);

/** @param {State} state @param {ValueUnder} found @param {Hit} hit */
function rowsOf(state, found, hit) {
  const {model, result} = state, rows = [];
  const all = {...(found.kind === 'node' ? found.at : {}), ...found.values};
  for (const [name, value] of Object.entries(all)) {
    if (model.plane && SPATIAL.has(name)) continue;
    const by = result.kind === 'envelope' && name in found.values
      ? governing(state.results, result, (r) =>
        Number(valuesOf(model, r, hit).values[name])) : '';
    rows.push([name, format(Number(value), 6),
               unitOf(model, found.type, name) + (by && `  ${by}`)]);
  }
  return rows;
}

/** @param {ValueUnder} found */
function headingOf(found) {
  if (found.kind === 'node') return `node ${found.number}`;
  const xi = found.at?.xi;
  const where = xi === undefined ? '' : ` at ${format(xi, 3)} L`;
  return `${found.type ?? 'element'} ${found.number}${where}`;
}

/** @param {State} state @param {Hit} hit */
function contentsOf(state, hit) {
  const found = valuesOf(state.model, state.result, hit);
  const body = rowsOf(state, found, hit).map((row) =>
    make('tr', {}, ...row.map((cell) => make('td', {}, cell))));
  const parts = [make('strong', {}, headingOf(found))];
  if (hit.kind === 'element') {
    const nodes = nodesOf(hit.mesh, hit.index).map(state.model.nodeNumber).filter(Boolean);
    parts.push(make('span', {}, `nodes ${nodes.join(' ')}`));
  }
  return [...parts, make('table', {}, make('tbody', {}, ...body))];
}

/** @param {State} state @param {{x: number, y: number} | null} pointer */
export function showValues(state, pointer) {
  const tip = byId('tip'), details = byId('details');
  tip.hidden = details.hidden = true;
  if (!state.hit) return;
  const box = state.pinned ? details : tip;
  box.replaceChildren(...contentsOf(state, state.hit));
  box.hidden = false;
  if (box !== tip || !pointer) return;
  const {clientWidth, clientHeight} = tip.parentElement;
  const left = pointer.x + 16 + tip.offsetWidth > clientWidth ? pointer.x - 12 - tip.offsetWidth
                                                              : pointer.x + 16;
  const top = Math.min(pointer.y + 14, clientHeight - tip.offsetHeight - 4);
  tip.style.left = `${Math.max(2, left)}px`;
  tip.style.top = `${Math.max(2, top)}px`;
}

/** The places that mark the selection. @param {State} state @param {number} scale
 *  @returns {Vec3[] | null} */
export function selectionPlaces(state, scale) {
  const {hit, model, result} = state;
  if (!hit || !state.pinned) return null;
  const moved = (/** @type {number} */ n) => movedNode(model, result, n, scale);
  if (hit.kind === 'node') return [moved(hit.index)];
  const {mesh, index} = hit;
  if (mesh.kind === 'beam') {
    const ends = [0, 1].map((k) => at3(model.x, mesh.conn[2 * index + k]));
    const u = result.meshes[mesh.index]?.stationU, n = mesh.head.stations.length;
    return mesh.head.stations.map((xi, s) => /** @type {Vec3} */ ([0, 1, 2].map((d) =>
      ends[0][d] + (ends[1][d] - ends[0][d]) * xi +
      scale * (u ? u[3 * (index * n + s) + d] : 0))));
  }
  const corners = nodesOf(mesh, index).slice(0, mesh.kind === 'shell' ? 3 : 4).map(moved);
  return mesh.kind === 'shell' ? [...corners, corners[0]]
                               : [0, 1, 2, 0, 3, 1, 2, 3].map((k) => corners[k]);
}
