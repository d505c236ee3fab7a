// The largest and smallest value of everything that the menu offers, computed from the document of
// kestol-export by other means than the page's.

import assert from 'node:assert/strict';
import {after, before, test} from 'node:test';

import {example, exported, open, openBrowser, pageOf, verification} from './support.mjs';

/** @type {import('playwright-core').Browser} */ let browser;
before(async () => { browser = await openBrowser(); });
after(() => browser.close());

/** Main values of a symmetric matrix, largest first, by turning its largest off-diagonal away. */
function mainValues(matrix) {
  const a = matrix.map((row) => [...row]), n = a.length;
  for (let turns = 0; turns < 60; ++turns) {
    let [p, q] = [0, 1];
    for (let i = 0; i < n; ++i)
      for (let j = i + 1; j < n; ++j) if (Math.abs(a[i][j]) > Math.abs(a[p][q])) [p, q] = [i, j];
    if (a[p][q] === 0) break;
    const angle = 0.5 * Math.atan2(2 * a[p][q], a[p][p] - a[q][q]), [c, s] = [Math.cos(angle), Math.sin(angle)];
    for (const row of a) [row[p], row[q]] = [c * row[p] + s * row[q], c * row[q] - s * row[p]];
    [a[p], a[q]] = [a[p].map((v, k) => c * v + s * a[q][k]), a[q].map((v, k) => c * v - s * a[p][k])];
    [a[p][q], a[q][p]] = [0, 0];
  }
  return a.map((row, k) => row[k]).sort((x, y) => y - x);
}

const spatial = ([xx, yy, zz, xy, yz, xz]) => mainValues([[xx, xy, xz], [xy, yy, yz], [xz, yz, zz]]);
const plane = ([x, y, xy]) => mainValues([[x, xy], [xy, y]]);
/** Von Mises from main values. */
const mises = ([a, b, c]) => Math.sqrt(((a - b) ** 2 + (b - c) ** 2 + (c - a) ** 2) / 2);

/** What each id of the menu means at a point of the document. */
const SHELL = {
  nx: (p) => p.n[0], ny: (p) => p.n[1], nxy: (p) => p.n[2], n1: (p) => plane(p.n)[0], n2: (p) => plane(p.n)[1],
  mx: (p) => p.m[0], my: (p) => p.m[1], mxy: (p) => p.m[2], m1: (p) => plane(p.m)[0], m2: (p) => plane(p.m)[1],
  qx: (p) => p.q[0], qy: (p) => p.q[1],
};
for (const face of ['top', 'bottom']) {
  // In global axes one main value is that of the free face, 0: of a plane tensor it stands between or beside.
  const main = (/** @type {any} */ p) => {
    const all = spatial(p[face]), free = all.findIndex((v) => Math.abs(v) === Math.min(...all.map(Math.abs)));
    return all.filter((_, k) => k !== free);
  };
  Object.assign(SHELL, {[`mises-${face}`]: (p) => mises(spatial(p[face])), [`s1-${face}`]: (p) => main(p)[0],
                        [`s2-${face}`]: (p) => main(p)[1]});
}
const SOLID = {mises: (p) => mises(spatial(p.stress))};
['sxx', 'syy', 'szz', 'sxy', 'syz', 'sxz'].forEach((id, c) => { SOLID[id] = (p) => p.stress[c]; });
[0, 1, 2].forEach((k) => { SOLID[`s${k + 1}`] = (p) => spatial(p.stress)[k]; });

/** The linear function of place through values at points: its value elsewhere. */
function linearThrough(points, values) {
  if (points.length === 1) return () => values[0];
  const [o, ...rest] = points, edges = rest.map((p) => p.map((v, d) => v - o[d]));
  const dot = (/** @type {number[]} */ a, /** @type {number[]} */ b) => a.reduce((sum, v, d) => sum + v * b[d], 0);
  return (/** @type {number[]} */ x) => {
    // Parts of x along the edges, by elimination in their products.
    const to = x.map((v, d) => v - o[d]), rows = edges.map((e) => [...edges.map((f) => dot(e, f)), dot(e, to)]);
    rows.forEach((row, i) => {
      for (const other of rows) {
        if (other === row) continue;
        const factor = other[i] / row[i];
        row.forEach((v, k) => { other[k] -= factor * v; });
      }
    });
    return rows.reduce((sum, row, i) => sum + (row.at(-1) / row[i]) * (values[i + 1] - values[0]), values[0]);
  };
}

const FACES = [[0, 1, 2, 4, 5, 6], [1, 2, 3, 5, 9, 8], [2, 3, 0, 9, 7, 6], [3, 0, 1, 7, 4, 8]];

/** The places of an element that can be seen: of a solid those of faces that no other has. */
function seenNodes(elements) {
  const times = new Map(), key = (/** @type {any} */ e, /** @type {number[]} */ face) =>
    face.slice(0, 3).map((k) => e.nodes[k]).sort().join();
  for (const e of elements) for (const face of FACES) times.set(key(e, face), (times.get(key(e, face)) ?? 0) + 1);
  return (/** @type {any} */ e) => [...new Set(FACES.filter((face) => times.get(key(e, face)) === 1)
    .flatMap((face) => face.map((k) => e.nodes[k]).filter(Boolean)))];
}

for (const [deck, list, values] of [
  [example('15-stiffened-plate.dat'), 'shells', SHELL],
  [verification('S06-plate-t0.1-six-02.dat'), 'shells', SHELL],
  [example('17-bar-in-tension.dat'), 'solids', SOLID],
  [verification('T06-cantilever-ten-12-y.dat'), 'solids', SOLID]])
  test(`${deck.split('/').at(-1)}: limits of everything that the menu offers`, async () => {
    const document = await exported(deck), elements = document[list];
    const places = new Map(document.nodes.map((n) => [n.number, n.x]));
    const seen = list === 'solids' ? seenNodes(elements) : (/** @type {any} */ e) => e.nodes;
    const page = await open(browser, await pageOf(deck));
    const ids = await page.locator('#quantity option').evaluateAll((all) => all.map((o) => o.value));
    await page.getByLabel('average at nodes').uncheck();
    const of = (/** @type {string} */ id) => elements.flatMap((e) => {
      const through = linearThrough(e.points.map((p) => p.x), e.points.map(values[id]));
      return seen(e).map((n) => through(places.get(n)));
    });
    const rounding = 1e-7 * Math.max(...Object.keys(values).flatMap(of).map(Math.abs));
    for (const id of Object.keys(values)) {
      assert.ok(ids.includes(id), id);
      await page.getByLabel('Quantity').selectOption(id);
      const [, low, high] = /smallest (\S+) .*largest (\S+) /.exec(await page.locator('#legend').getAttribute('aria-label'))
        .map((text) => Number(text.replaceAll('−', '-')));
      const all = of(id), size = Math.max(...all.map(Math.abs));
      for (const [said, wanted] of [[low, Math.min(...all)], [high, Math.max(...all)]])
        assert.ok(Math.abs(said - wanted) <= 6e-4 * size + rounding, `${id}: ${said}, not ${wanted}`);
    }
    await page.close();
  });
