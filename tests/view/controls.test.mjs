// The panel and the keys by hand: what each changes, and where it ends.

import assert from 'node:assert/strict';
import {readFileSync} from 'node:fs';
import {after, before, test} from 'node:test';

import {deckOf, drawnBox, example, exported, open, openBrowser, pageOf, settled, verification} from './support.mjs';

/** @type {import('playwright-core').Browser} */ let browser;
before(async () => { browser = await openBrowser(); });
after(() => browser.close());

const caption = (page) => page.locator('#caption').innerText();
const value = (page) => page.evaluate(() => window.kestol.value());

test('the size of the deformation: slider, number and keys', async () => {
  const page = await open(browser, await pageOf(example('02-portal-frame.dat')));
  const slider = page.getByLabel('Deformation'), box = page.getByLabel('factor');
  const auto = Number(await box.inputValue());
  assert.equal(await slider.inputValue(), '100');
  await slider.fill('200');
  assert.equal(await caption(page), `deformed × ${2 * auto}`);
  assert.equal(await slider.getAttribute('aria-valuetext'), `factor ${2 * auto}`);
  assert.equal(await box.inputValue(), String(2 * auto));
  await box.fill('12');
  await box.blur();
  assert.equal(await caption(page), 'deformed × 12');
  await box.fill('1e9');
  await box.blur();
  assert.equal(await slider.inputValue(), '200');
  await box.fill('-3');
  await box.blur();
  assert.deepEqual([await caption(page), await slider.inputValue()], ['', '0']);
  await page.keyboard.press('d');
  assert.equal(await caption(page), `deformed × ${auto}`);
  await page.keyboard.press(']');
  assert.equal(await caption(page), `deformed × ${1.25 * auto}`);
  await page.keyboard.press('[');
  await page.keyboard.press('[');
  assert.equal(await caption(page), `deformed × ${0.8 * auto}`);
  await page.keyboard.press('d');
  assert.equal(await caption(page), '');
  await page.close();
});

test('the size of diagrams: slider and keys', async () => {
  const page = await open(browser, await pageOf(example('01-cantilever.dat')));
  await page.getByRole('button', {name: 'M', exact: true}).click();
  const slider = page.getByLabel('Size of diagrams');
  const axis = await page.evaluate(() => window.kestol.screen('node', 1).y);
  const height = async () => {
    await settled(page);
    return axis - (await drawnBox(page)).top;
  };
  const whole = await height();
  assert.equal(await slider.inputValue(), '100');
  await slider.fill('50');
  assert.ok(Math.abs(await height() - whole / 2) < 3);
  await slider.fill('100');
  await page.locator('#drawing').focus();
  await page.keyboard.press(']');
  assert.ok(Math.abs(await height() - 1.25 * whole) < 3);
  assert.equal(await slider.inputValue(), '125');
  await page.close();
});

test('bands and limits of colours; averages at nodes', async () => {
  const page = await open(browser, await pageOf(example('13-folded-plate.dat')));
  await page.getByLabel('Quantity').selectOption('nx');
  const keys = () => page.locator('#legend li').count(), words = () => page.locator('#legend li span:not(:empty)').count();
  const bands = page.getByLabel('bands');
  for (const [typed, kept, lines, named] of [['5', '5', 6, 6], ['0', '0', 13, 3], ['99', '30', null, null], ['-2', '0', 13, 3]]) {
    await bands.fill(typed);
    await bands.blur();
    assert.equal(await bands.inputValue(), kept);
    if (lines) assert.deepEqual([await keys(), await words()], [lines, named], typed);
  }
  const label = () => page.locator('#legend').getAttribute('aria-label');
  const mean = await label();
  await page.getByLabel('average at nodes').uncheck();
  const own = await label(), largest = (/** @type {string} */ text) => Number(/largest (\S+)/.exec(text)[1]);
  assert.ok(largest(own) > largest(mean), `${own} ${mean}`);
  await page.getByLabel('average at nodes').check();
  assert.equal(await label(), mean);
  const [from, to] = [page.getByLabel('from', {exact: true}), page.getByLabel('to', {exact: true})];
  await from.fill('-10');
  await from.blur();
  await to.fill('30');
  await to.blur();
  assert.deepEqual([await from.inputValue(), await to.inputValue()], ['-10', '30']);
  await from.fill('');
  await from.blur();
  assert.notEqual(await from.inputValue(), '-10');
  assert.equal(await to.inputValue(), '30');
  await page.close();
});

test('keys turn, move and enlarge by their steps', async () => {
  const page = await open(browser, await pageOf(example('06-space-frame.dat')));
  await page.evaluate(() => window.kestol.setScale(0));
  await page.locator('#drawing').focus();
  const {nodes} = await exported(example('06-space-frame.dat')), last = nodes.at(-1).number;
  const ends = () => page.evaluate((all) => all.map((n) => window.kestol.screen('node', n)), [1, last]);
  const span = ([a, b]) => [b.x - a.x, b.y - a.y];
  const {width, height} = await page.locator('#drawing').boundingBox();
  const start = await ends();
  const moved = async (/** @type {string} */ key) => {
    const before = await ends();
    await page.keyboard.press(key);
    const now = await ends();
    return [now[0].x - before[0].x, now[0].y - before[0].y];
  };
  const near = (/** @type {number[]} */ a, /** @type {number[]} */ b) =>
    a.forEach((v, k) => assert.ok(Math.abs(v - b[k]) < 0.6, `${a}, not ${b}`));
  near(await moved('Shift+ArrowRight'), [-0.05 * width, 0]);
  near(await moved('Shift+ArrowLeft'), [0.05 * width, 0]);
  near(await moved('Shift+ArrowUp'), [0, 0.05 * height]);
  near(await moved('Shift+ArrowDown'), [0, -0.05 * height]);
  near(span(await ends()), span(start));
  await page.keyboard.press('+');
  near(span(await ends()), span(start).map((v) => 1.25 * v));
  await page.keyboard.press('-');
  near(span(await ends()), span(start));
  for (const [there, back] of [['ArrowLeft', 'ArrowRight'], ['ArrowUp', 'ArrowDown']]) {
    await page.keyboard.press(there);
    assert.ok(Math.hypot(...span(await ends()).map((v, k) => v - span(start)[k])) > 3, there);
    await page.keyboard.press(back);
    near(span(await ends()), span(start));
  }
  // Views along an axis: two points of the model lie there as in its plane.
  const far = nodes.map((n) => n.x).map((x) => x.map((v, d) => v - nodes[0].x[d]));
  for (const [key, across, up] of [['1', [1, 0, 0], [0, 0, 1]], ['2', [0, 1, 0], [0, 0, 1]], ['3', [1, 0, 0], [0, 1, 0]]]) {
    await page.keyboard.press(key);
    const at = await page.evaluate((all) => all.map((n) => window.kestol.screen('node', n)), nodes.map((n) => n.number));
    const dot = (/** @type {number[]} */ a, /** @type {number[]} */ b) => a.reduce((sum, v, d) => sum + v * b[d], 0);
    const right = far.map((x) => dot(x, across)), above = far.map((x) => dot(x, up));
    const scale = Math.hypot(...at.map((p) => p.x - at[0].x), ...at.map((p) => p.y - at[0].y)) / Math.hypot(...right, ...above);
    at.forEach((p, k) => near([p.x - at[0].x, at[0].y - p.y], [scale * right[k], scale * above[k]]));
  }
  await page.close();
});

test('from one to the next through all meshes, and round', async () => {
  const page = await open(browser, await pageOf(example('09-two-meshes.dat')));
  const {beams, shells, nodes} = await exported(example('09-two-meshes.dat'));
  const all = [...beams, ...shells].map((e) => e.element), seen = [];
  await page.locator('#drawing').focus();
  for (let k = 0; k <= all.length; ++k) {
    await page.keyboard.press('e');
    seen.push((await value(page)).number);
  }
  assert.equal(new Set(seen).size, all.length);
  assert.equal(seen.at(-1), seen[0]);
  await page.keyboard.press('E');
  assert.equal((await value(page)).number, seen.at(-2));
  await page.keyboard.press('Escape');
  await page.keyboard.press('N');
  assert.equal((await value(page)).number, nodes.length);
  await page.keyboard.press('n');
  assert.equal((await value(page)).number, 1);
  await page.keyboard.press('Escape');
  await page.keyboard.press('E');
  assert.equal((await value(page)).number, seen.at(-2));
  await page.keyboard.press(',');
  const {at} = await value(page);
  assert.ok((at.station ?? at.point) > 0, JSON.stringify(at));
  await page.close();
});

test('elements with numbers of their own; their table leads to them', async () => {
  const text = readFileSync(example('02-portal-frame.dat'), 'latin1')
    .replace(/(\n {2}elements\n)([^]*?)(\n {2}end elements)/, (_, a, list, b) =>
      a + list.replaceAll(/^( +)(\d+)/gm, '$1$20') + b)
    .replace(/(global_pressure_loads\n)([^]*?)(\nend)/, (_, a, list, b) => a + list.replaceAll(/^( +)(\d+)/gm, '$1$20') + b);
  const deck = deckOf(text, 'tens.dat'), page = await open(browser, await pageOf(deck));
  const {beams} = await exported(deck), numbers = beams.map((b) => b.element);
  assert.ok(numbers.every((n) => n % 10 === 0), numbers.join(' '));
  assert.deepEqual(await page.evaluate((all) => all.map((n) => window.kestol.select('element', n)), [...numbers, 1, 15]),
                   [...numbers.map(() => true), false, false]);
  await page.getByRole('tab', {name: 'Beams'}).click();
  // The heading is the first row.
  await page.locator(`#sheet tr[aria-rowindex="${beams[0].stations.length + 2}"]`).click();
  assert.equal((await value(page)).number, numbers[1]);
  assert.equal(await page.locator('#sheet caption').textContent(), 'Beams');
  const [download] = await Promise.all([page.waitForEvent('download'), page.getByRole('button', {name: /CSV/}).click()]);
  const lines = readFileSync(await download.path(), 'utf8').trim().split('\n').slice(1).map((l) => l.split(',').map(Number));
  const wanted = beams.flatMap((b) => b.stations.map((s) => [b.element, s.x, b.material, s.N, s.Vy, s.Mz]));
  assert.equal(lines.length, wanted.length);
  lines.forEach((line, k) => line.forEach((v, c) =>
    assert.ok(Math.abs(v - wanted[k][c]) <= 1e-12 * Math.max(1, Math.abs(v)), `${line}, not ${wanted[k]}`)));
  await page.close();
});

test('a browser that does not know how to read base64 by itself', async () => {
  const context = await browser.newContext(), deck = verification('B08-truss.dat');
  await context.addInitScript(() => { delete Uint8Array.fromBase64; });
  const page = await open(context, await pageOf(deck));
  assert.deepEqual(await page.evaluate(() => window.kestol.result), {...await exported(deck), deck: 'B08-truss.dat'});
  await page.close();
  await context.close();
});
