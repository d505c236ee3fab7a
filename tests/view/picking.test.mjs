// What lies under the pointer: the right element, its nearest station or point, and what stands in front.

import assert from 'node:assert/strict';
import {after, before, test} from 'node:test';

import {deckOf, example, exported, open, openBrowser, pageOf, settled, verification} from './support.mjs';

/** @type {import('playwright-core').Browser} */ let browser;
before(async () => { browser = await openBrowser(); });
after(() => browser.close());

/** The page of a deck as it stands without loads, looked at from a side. */
async function opened(deck, view) {
  const page = await open(browser, await pageOf(deck));
  await page.evaluate(() => window.kestol.setScale(0));
  if (view) await page.getByRole('button', {name: view, exact: true}).click();
  await settled(page);
  return page;
}

const screen = (page, /** @type {string} */ kind, /** @type {number[]} */ numbers) =>
  page.evaluate(([k, all]) => all.map((n) => window.kestol.screen(k, n)), [kind, numbers]);

/** What the page tells of a place. */
async function under(page, x, y) {
  await page.mouse.move(x, y);
  await settled(page);
  return page.evaluate(() => window.kestol.value());
}

test('a beam: the station next to the pointer, and how far it reaches', async () => {
  const page = await opened(example('02-portal-frame.dat')), [a, b] = await screen(page, 'node', [2, 3]);
  for (const part of [0.07, 0.29, 0.52, 0.81, 0.94])
    for (const [aside, found] of [[0, true], [-5, true], [5, true], [8.5, false], [-8.5, false]]) {
      const value = await under(page, Math.round(a.x + (b.x - a.x) * part), Math.round(a.y + (b.y - a.y) * part) + aside);
      assert.equal(Boolean(value), found, `${part} ${aside}`);
      if (found) assert.deepEqual([value.type, value.number, value.at.station], ['beam', 2, Math.round(20 * part)]);
    }
  // Nothing leads from the corner of the picture to the first beam.
  const corner = await page.locator('#drawing').boundingBox(), [first] = await screen(page, 'node', [1]);
  assert.equal(await under(page, (corner.x + first.x) / 2, (corner.y + first.y) / 2), null);
  for (const [away, kind] of [[6, 'node'], [8, 'node'], [11, 'element']])
    assert.equal((await under(page, Math.round(a.x) + away, Math.round(a.y))).kind, kind, `${away} pixels from a node`);
  await page.close();
});

test('a deformed beam is where it is drawn', async () => {
  const page = await opened(example('02-portal-frame.dat'));
  const rest = await screen(page, 'element', [1]);
  await page.evaluate(() => window.kestol.setScale(30));
  await settled(page);
  const [moved] = await screen(page, 'element', [1]);
  assert.ok(Math.abs(moved.x - rest[0].x) > 20);
  const value = await under(page, moved.x, moved.y);
  assert.deepEqual([value?.number, value?.at.station], [1, 10]);
  assert.equal(await under(page, rest[0].x, rest[0].y), null);
  await page.close();
});

/** Where places of the plane x, y are on the page, from three nodes that are no line. */
async function planeMap(page, nodes) {
  const [o, p, q] = nodes, at = await screen(page, 'node', nodes.map((n) => n.number));
  const [e, f] = [p, q].map((n) => [n.x[0] - o.x[0], n.x[1] - o.x[1]]), det = e[0] * f[1] - e[1] * f[0];
  return ([x, y]) => {
    const [dx, dy] = [x - o.x[0], y - o.x[1]], s = (dx * f[1] - dy * f[0]) / det, t = (e[0] * dy - e[1] * dx) / det;
    return [at[0].x + s * (at[1].x - at[0].x) + t * (at[2].x - at[0].x),
            at[0].y + s * (at[1].y - at[0].y) + t * (at[2].y - at[0].y)];
  };
}

for (const [deck, list] of [[verification('S06-plate-t0.1-six-02.dat'), 'shells'], [example('18-block-under-own-weight.dat'), 'solids'],
                            [example('12-plate-under-pressure.dat'), 'shells'], [example('17-bar-in-tension.dat'), 'solids']])
  test(`${deck.split('/').at(-1)}: the element and its point from above`, async () => {
    const document = await exported(deck), top = Math.max(...document.nodes.map((n) => n.x[2]));
    const places = new Map(document.nodes.map((n) => [n.number, n.x]));
    const page = await opened(deck, 'top');
    const high = document.nodes.filter((n) => n.x[2] === top), [o, p] = high;
    const q = high.find((n) => Math.abs((p.x[0] - o.x[0]) * (n.x[1] - o.x[1]) - (p.x[1] - o.x[1]) * (n.x[0] - o.x[0])) > 1e-6);
    const map = await planeMap(page, [o, p, q]);
    let seen = 0;
    for (const element of document[list].slice(0, 12)) {
      const corners = element.nodes.slice(0, list === 'shells' ? 3 : 4).map((n) => places.get(n)).filter((x) => x[2] === top);
      if (corners.length < 3) continue;
      const mean = [0, 1].map((d) => corners.reduce((sum, x) => sum + x[d] / 3, 0));
      const wanted = element.points.map((point) => point.x);
      const targets = list === 'shells' && wanted.length === 3 ? wanted : wanted.length > 1 ? corners : [mean];
      for (const target of targets) {
        const place = [0, 1].map((d) => target[d] + (mean[d] - target[d]) * 0.35), [x, y] = map(place);
        const value = await under(page, x, y);
        const far = wanted.map((w) => Math.hypot(...w.map((v, d) => v - [...target, top][d])));
        assert.deepEqual([value?.number, value?.at.point], [element.element, far.indexOf(Math.min(...far))], `${place}`);
        ++seen;
      }
    }
    assert.ok(seen >= 1, `${seen} places`);
    await page.close();
  });

/** Two plates above each other, beams above, between and below. */
const LAYERS = `PROBLEM layers
TYPE 3d
mesh
  dimension = 3   elemtype Triangle   nnode = 3
  coordinates
    1  0 0 0
    2  6 0 0
    3  0 6 0
    4  0 0 2
    5  6 0 2
    6  0 6 2
    7  0.5 1 3
    8  4.5 1 3
    9  0.5 2 1
    10 3.5 2 1
    11 7 0 0
  end coordinates
  elements
    1  1 2 3  1
    2  4 5 6  1
  end elements
mesh
  dimension = 3   elemtype Linear   nnode = 2
  coordinates
  end coordinates
  elements
    3  7 8  2
    4  9 10 2
    5  2 11 2
  end elements
materials
  1  E=2e8 nu=0.3 G=8e7 t=0.1
  2  E=2e8 G=8e7 A=1e-2 Iy=1e-5 Iz=1e-5 J=1e-5
end materials
constraints
${[1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11].map((n) => `  ${n}  111111  0 0 0 0 0 0`).join('\n')}
end constraints
`;

test('what stands in front hides what lies behind', async () => {
  const deck = deckOf(LAYERS, 'layers.dat'), page = await opened(deck, 'top'), {nodes} = await exported(deck);
  const map = await planeMap(page, [nodes[3], nodes[4], nodes[5]]);
  for (const [place, kind, number] of [
    [[2, 2.6], 'element', 2], [[2, 1], 'element', 3], [[2, 2], 'element', 2], [[3.5, 2], 'element', 2],
    [[4.5, 1], 'node', 8], [[0, 0], 'node', 4], [[6.5, 0], 'element', 5], [[4, 4], null, 0]]) {
    const value = await under(page, ...map(place));
    assert.deepEqual([value?.kind ?? null, value?.number ?? 0], [kind, number], `${place}`);
  }
  // From below the other plate is in front.
  await page.getByLabel('across').selectOption('z');
  await settled(page);
  const value = await under(page, ...map([2, 2.6]));
  assert.equal(value?.number, 1, 'the upper plate is cut off');
  await page.close();
});
