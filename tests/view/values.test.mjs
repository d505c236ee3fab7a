// What the page says is what kestol-export writes, bit for bit.

import assert from 'node:assert/strict';
import {copyFileSync, readdirSync, readFileSync} from 'node:fs';
import {basename, join} from 'node:path';
import {after, before, test} from 'node:test';

import {combined, deckOf, drawnBox, example, exported, folder, open, openBrowser, pageOf, settled}
  from './support.mjs';

/** @type {import('playwright-core').Browser} */ let browser;
before(async () => { browser = await openBrowser(); });
after(() => browser.close());

for (const name of readdirSync(example('')).filter((f) => f.endsWith('.dat')).sort())
  test(`${name}: its result equals kestol-export, drawn in one request`, async () => {
    const deck = example(name), page = await open(browser, await pageOf(deck));
    const result = await page.evaluate(() => window.kestol.result);
    assert.deepEqual(result, {...await exported(deck), deck: name});

    // All that is drawn lies around the nodes and their displacements, and there is something.
    const nodes = await page.evaluate(() =>
      window.kestol.result.nodes.map(({number}) => window.kestol.screen('node', number)));
    const box = await drawnBox(page), x = nodes.map((n) => n.x), y = nodes.map((n) => n.y);
    assert.ok(box.count > 200, `${box.count} pixels`);
    const room = 60;
    assert.ok(box.left > Math.min(...x) - room && box.right < Math.max(...x) + room);
    assert.ok(box.top > Math.min(...y) - room && box.bottom < Math.max(...y) + room);
    assert.deepEqual(page.noise, []);
    await page.close();
  });

test('under the pointer: the node that stands there, with the values of the document', async () => {
  const deck = example('02-portal-frame.dat'), page = await open(browser, await pageOf(deck));
  const {nodes, reactions} = await exported(deck);
  for (const number of [2, 4]) {
    const at = await page.evaluate((n) => window.kestol.screen('node', n), number);
    await page.mouse.move(at.x + 2, at.y - 1);
    await settled(page);
    const found = await page.evaluate(() => window.kestol.value());
    const {u, rotation} = nodes.find((n) => n.number === number);
    assert.equal(found.kind, 'node');
    assert.equal(found.number, number);
    assert.deepEqual([found.values.ux, found.values.uy, found.values.uz], u);
    assert.deepEqual([found.values.rx, found.values.ry, found.values.rz], rotation);
    const reaction = reactions.find((r) => r.node === number);
    if (reaction)
      assert.deepEqual([found.values.Fx, found.values.Fy, found.values.Mz],
                       [reaction.force[0], reaction.force[1], reaction.moment[2]]);
    const tip = await page.locator('#tip').innerText();
    assert.match(tip, new RegExp(`node ${number}`));
  }
  await page.mouse.move(700, 780);
  await settled(page);
  assert.equal(await page.evaluate(() => window.kestol.value()), null);
  await page.close();
});

test('a click keeps a beam: the values of the nearest station', async () => {
  const deck = example('03-gerber-beam.dat'), page = await open(browser, await pageOf(deck));
  const {beams} = await exported(deck);
  const at = await page.evaluate(() => window.kestol.screen('element', 3));
  await page.mouse.click(at.x, at.y);
  await page.mouse.move(400, 700);
  await settled(page);
  const found = await page.evaluate(() => window.kestol.value());
  assert.equal(found.type, 'beam');
  assert.equal(found.number, 3);
  const station = beams.find((b) => b.element === 3).stations[found.at.station];
  assert.ok(Math.abs(found.at.station - 10) <= 1);
  for (const name of ['N', 'Vy', 'Vz', 'T', 'My', 'Mz'])
    assert.equal(found.values[name], station[name]);
  assert.deepEqual([found.values.ux, found.values.uy, found.values.uz], station.u);
  assert.match(await page.locator('#details').innerText(), /beam 3/);
  await page.close();
});

for (const [name, type, list] of [['14-cylindrical-roof.dat', 'shell', 'shells'],
                                  ['20-solid-cantilever.dat', 'solid', 'solids']])
  test(`under the pointer: the nearest point of a ${type}`, async () => {
    const deck = example(name), page = await open(browser, await pageOf(deck));
    const document = await exported(deck);
    const hits = await page.evaluate((numbers) =>
      numbers.map((n) => ({n, at: window.kestol.screen('element', n)})),
      document[list].slice(0, 40).map((e) => e.element));
    let seen = 0;
    for (const {at} of hits) {
      await page.mouse.move(at.x, at.y);
      await settled(page);
      const found = await page.evaluate(() => window.kestol.value());
      if (found?.kind !== 'element') continue;
      ++seen;
      const point = document[list].find((e) => e.element === found.number).points[found.at.point];
      const values = Object.values(found.values);
      assert.deepEqual(values.slice(0, type === 'shell' ? 8 : 6),
                       type === 'shell' ? [...point.n, ...point.m, ...point.q] : point.stress);
    }
    assert.ok(seen > 5, `${seen} elements were found`);
    await page.close();
  });

test('scripts choose, scale and ask', async () => {
  const page = await open(browser, await pageOf(example('02-portal-frame.dat')));
  assert.deepEqual(await page.evaluate(() => Object.keys(window.kestol)), [
    'ready', 'result', 'findings', 'screen', 'value', 'setResult', 'setScale', 'select']);
  const at = () => page.evaluate(() => window.kestol.screen('node', 3));
  await page.evaluate(() => window.kestol.setScale(0));
  const still = await at();
  await page.evaluate(() => window.kestol.setScale(40));
  assert.ok((await at()).x > still.x + 20);
  assert.equal(await page.evaluate(() => window.kestol.select('element', 2)), true);
  assert.equal(await page.evaluate(() => window.kestol.value().number), 2);
  assert.equal(await page.evaluate(() => window.kestol.select('node', 99)), false);
  assert.equal(await page.evaluate(() => window.kestol.screen('node', 99)), null);
  assert.equal(await page.evaluate(() => window.kestol.setResult('no such case')), false);
  assert.deepEqual(await page.evaluate(() =>
    [window.kestol.select('beam', 2), window.kestol.screen('beam', 2)]), [false, null]);
  const moved = await at();
  for (const scale of [NaN, Infinity, undefined])
    await assert.rejects(page.evaluate((s) => window.kestol.setScale(s), scale), /finite number/);
  assert.deepEqual(await at(), moved);
  assert.deepEqual(await page.evaluate(() =>
    window.kestol.findings.map((f) => [f.code, f.severity])), [['magnitude', 'warning']]);
  await page.close();
});

/** Differences beside rounding: the page sums up the cases itself. */
function near(actual, expected, scale, path = '') {
  if (typeof expected === 'number')
    assert.ok(Math.abs(actual - expected) <= 1e-9 * scale, `${path}: ${actual} ${expected}`);
  else if (expected && typeof expected === 'object')
    for (const key of Object.keys(expected)) near(actual[key], expected[key], scale, `${path}.${key}`);
  else assert.equal(actual, expected, path);
}

test('without a solution scripts get the model, not a mode or zeros', async () => {
  const hinge = /^ {2}3$/m, loose = readFileSync(example('03-gerber-beam.dat'), 'latin1');
  const shells = readFileSync(example('12-plate-under-pressure.dat'), 'latin1');
  for (const [name, text] of [['gerber.dat', loose.replace(hinge, '  2\n  3')],
                              ['free.dat', shells.replaceAll(/^( +\d+ +)[01]{6}( .*)$/gm, '$1000000$2')]]) {
    const deck = deckOf(text, name), page = await open(browser, await pageOf(deck, {status: 1}));
    const model = await exported(deck, '--mesh-only');
    const {schema, units, nodes, beams, shells, solids} = model;
    assert.deepEqual(await page.evaluate(() => window.kestol.result),
                     {schema, deck: name, units, nodes, beams, shells, solids});
    await page.close();
  }
});

test('--cases: cases, combinations and envelopes are those of kestol-combine', async () => {
  const deck = example('combinations/frame.dat'), file = example('combinations/frame.toml');
  const page = await open(browser, await pageOf(deck, {options: ['--cases', file]}));
  const document = await combined(file);
  const shown = async (name) => {
    assert.ok(await page.evaluate((n) => window.kestol.setResult(n), name), name);
    return page.evaluate(() => window.kestol.result);
  };
  for (const {name, result} of document.cases) {
    const {nodes, beams, reactions} = await shown(name);
    assert.deepEqual({nodes, beams}, {nodes: result.nodes, beams: result.beams});
    assert.deepEqual(reactions.map((r) => r.force), result.reactions.map((r) => r.force));
  }
  assert.ok(document.combinations.length > 10);
  for (const {name, result} of document.combinations) {
    const {nodes, beams, reactions} = await shown(name);
    near(nodes, result.nodes, 1);
    near(beams, result.beams, 1e3);
    near(reactions.map((r) => r.force), result.reactions.map((r) => r.force), 1e3);
  }
  const largest = await shown('envelope: largest'), {beams} = document.envelopes;
  beams.forEach((beam, b) => beam.stations.forEach((station, s) =>
    near(largest.beams[b].stations[s].Mz, station.Mz.max, 1e3, `beam ${b} station ${s}`)));

  // The combination that gives the value stands beside it, and the menu has them all.
  await page.evaluate(() => window.kestol.select('element', 1));
  const by = beams.find((b) => b.element === 1).stations[0].Mz.maxBy;
  assert.match(await page.locator('#details').innerText(), new RegExp(by.replaceAll('.', '\\.')));
  assert.equal(await page.locator('#result option').count(),
               document.cases.length + document.combinations.length + 2);
  assert.deepEqual(page.noise, []);
  await page.close();
});

/** The largest or smallest of each number, whatever stands around it. */
function extremes(side, documents) {
  const [first] = documents;
  if (typeof first === 'number') return side > 0 ? Math.max(...documents) : Math.min(...documents);
  if (Array.isArray(first)) return first.map((_, k) => extremes(side, documents.map((d) => d[k])));
  if (!first || typeof first !== 'object') return first;
  return Object.fromEntries(Object.keys(first).map((key) =>
    [key, extremes(side, documents.map((d) => d[key]))]));
}

for (const [name, load, quantity, stresses] of [
  ['12-plate-under-pressure.dat', '45 500 300 40 0 0 0', 'mises-top',
   ({shells}) => shells.map(({points}) => points.map(({top, bottom}) => [top, bottom]))],
  ['20-solid-cantilever.dat', '354 5 0 3', 'mises',
   ({solids, nodalStresses}) => [solids.map(({points}) => points.map((p) => p.stress)),
                                 nodalStresses.map((n) => [n.stress, n.vonMises])]]])
  test(`${name}: envelopes are those of each combination's stresses`, async () => {
    // The two combinations have stresses of opposite sign: their extremes together belong to none.
    const deck = join(folder, basename(name));
    copyFileSync(example(name), deck);
    deckOf(`nodal_point_loads\n${load}\nend nodal_point_loads\n`, 'other.dat');
    const file = deckOf(`model = "${name}"\n[cases.G]\nloads = "model"\n[cases.Q]\n` +
      'loads = "other.dat"\n[combinations]\nA = {G = 1, Q = 0.5}\nB = {G = -1, Q = 1}\n', 'two.toml');
    const page = await open(browser, await pageOf(deck, {options: ['--cases', file]}));
    const document = await combined(file);
    const results = document.combinations.map(({result}) => result);
    const show = async (one) => {
      assert.ok(await page.evaluate((n) => window.kestol.setResult(n), one));
      return page.evaluate(() => window.kestol.result);
    };
    const size = Math.max(...results.flatMap((r) => stresses(r).flat(9)).map(Math.abs));
    const largestIn = async () => {
      await page.getByLabel('Quantity').selectOption(quantity);
      await settled(page);
      return page.locator('#legend').getAttribute('aria-label');
    };
    const legends = [];
    for (const one of ['A', 'B']) {
      await show(one);
      legends.push(await largestIn());
    }
    const number = (text) => Number(/largest ([−\d.e+-]+)/.exec(text)[1].replaceAll('−', '-'));
    for (const [one, side] of [['envelope: largest', 1], ['envelope: smallest', -1]]) {
      const {nodes, equilibrium, schema, ...rest} = await show(one);
      assert.deepEqual([schema, equilibrium], ['kestol-result/1', null]);
      near(nodes.map((n) => n.u), extremes(side, results.map((r) => r.nodes.map((n) => n.u))), 1);
      near(stresses(rest), extremes(side, results.map(stresses)), size);
      const text = await largestIn();
      if (side > 0) assert.equal(number(text), Math.max(...legends.map(number)));
    }

    // What a click keeps is the same number, and the name of its combination stands beside it.
    await show('envelope: largest');
    if (document.combinations[0].result.nodalStresses.length) {
      await page.evaluate(() => window.kestol.select('node', 1));
      const node = (r) => r.nodalStresses.find((n) => n.number === 1).vonMises;
      const {values} = await page.evaluate(() => window.kestol.value());
      near(values.vonMises, Math.max(...results.map(node)), size);
      const by = document.combinations[node(results[0]) > node(results[1]) ? 0 : 1].name;
      assert.match(await page.locator('#details').innerText(), new RegExp(`vonMises.*\\s${by}$`, 'm'));
    }
    assert.deepEqual(page.noise, []);
    await page.close();
  });
