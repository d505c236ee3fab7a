// The page as its readers use it: by keyboard, in the dark, on paper, without a picture.

import assert from 'node:assert/strict';
import {readFileSync, statSync} from 'node:fs';
import {after, before, test} from 'node:test';

import {deckOf, drawnBox, example, open, openBrowser, pageOf, settled, verification,
        WITHOUT_DRAWING} from './support.mjs';

/** @type {import('playwright-core').Browser} */ let browser;
before(async () => { browser = await openBrowser(); });
after(() => browser.close());

const value = (page) => page.evaluate(() => window.kestol.value());
const pressed = (page) => page.locator('#presets [aria-pressed="true"]').innerText();

test('the whole way by keyboard', async () => {
  const page = await open(browser, await pageOf(example('03-gerber-beam.dat')));
  await page.locator('#drawing').focus();
  await page.keyboard.press('n');
  await page.keyboard.press('n');
  assert.equal((await value(page)).number, 2);
  await page.keyboard.press('Shift+N');
  assert.equal((await value(page)).number, 1);
  await page.keyboard.press('e');
  assert.deepEqual([(await value(page)).type, (await value(page)).at.station], ['beam', 0]);
  await page.keyboard.press('.');
  assert.equal((await value(page)).at.station, 1);
  await page.keyboard.press('Escape');
  assert.equal(await value(page), null);

  assert.equal(await pressed(page), 'Deformed');
  await page.keyboard.press('q');
  assert.equal(await pressed(page), 'N');
  await page.keyboard.press('Shift+Q');
  assert.equal(await pressed(page), 'Deformed');

  const place = () => page.evaluate(() => window.kestol.screen('node', 4));
  const start = await place();
  await page.keyboard.press('ArrowRight');
  assert.notDeepEqual(await place(), start);
  await page.keyboard.press('+');
  await page.keyboard.press('0');
  await settled(page);
  const again = await place();
  assert.ok(Math.abs(again.x - start.x) < 1 && Math.abs(again.y - start.y) < 1);

  const loads = page.getByLabel('loads', {exact: true});
  await page.keyboard.press('l');
  assert.equal(await loads.isChecked(), false);
  await page.keyboard.press('?');
  assert.ok(await page.getByRole('dialog', {name: 'Keys'}).isVisible());
  await page.keyboard.press('Escape');

  // From the picture to the tables: Tab, arrows, Enter on a row.
  await page.locator('#drawing').focus();
  await page.keyboard.press('Tab');
  assert.equal(await page.evaluate(() => document.activeElement.getAttribute('role')), 'tab');
  await page.keyboard.press('ArrowRight');
  await page.keyboard.press('ArrowRight');
  assert.equal(await page.getByRole('tab', {selected: true}).innerText(), 'Reactions');
  await page.locator('#sheet tbody tr[tabindex="0"]').nth(1).focus();
  await page.keyboard.press('Enter');
  assert.deepEqual([(await value(page)).kind, (await value(page)).number], ['node', 2]);
  assert.deepEqual(page.noise, []);
  await page.close();
});

test('roles and names for those who do not see the picture', async () => {
  const page = await open(browser, await pageOf(example('12-plate-under-pressure.dat')));
  for (const [role, name] of [['application', /85 nodes, 144 shells/], ['combobox', 'Quantity'],
                              ['slider', 'Deformation'], ['spinbutton', 'factor'],
                              ['checkbox', 'supports'], ['group', 'Views of the results'],
                              ['tablist', 'Tables and findings'], ['button', 'Print'],
                              ['region', 'Picture of the model'], ['img', /\|u\|.*largest/]])
    assert.equal(await page.getByRole(role, {name, exact: typeof name === 'string'}).count(), 1,
                 `${role} ${name}`);
  await page.getByRole('tab', {name: 'Shells'}).click();
  assert.equal(await page.getByRole('table', {name: 'Shells'}).count(), 1);
  assert.ok(await page.getByRole('columnheader').count() >= 10);
  const unnamed = await page.evaluate(() =>
    [...document.querySelectorAll('button, input, select')].filter((e) =>
      e.checkVisibility() && !e.textContent.trim() && !e.labels?.length &&
      !e.getAttribute('aria-label')).length);
  assert.equal(unnamed, 0);
  await page.close();
});

test('names of a deck are text, whatever they hold', async () => {
  const evil = `</script><img src=x onerror="document.title='broken'">&lt;`;
  const deck = readFileSync(example('01-cantilever.dat'), 'latin1')
    .replace(/^PROBLEM.*$/m, `PROBLEM ${evil}`);
  const page = await open(browser, await pageOf(deckOf(deck, "<b>it's & so.dat")));
  assert.equal(await page.locator('h1').innerText(), evil);
  assert.equal(await page.locator('#deck-name').innerText(), "<b>it's & so.dat");
  assert.notEqual(await page.title(), 'broken');
  assert.equal(await page.locator('img').count(), 0);
  await page.getByRole('tab', {name: 'Deck'}).click();
  assert.match(await page.locator('#sheet pre').innerText(), /<\/script><img src=x/);
  assert.deepEqual(page.noise, []);
  await page.close();
});

test('the policy of the page forbids every load', async () => {
  const page = await open(browser, await pageOf(example('01-cantilever.dat')));
  const policy = page.locator('meta[http-equiv="Content-Security-Policy"]');
  assert.equal(await policy.getAttribute('content'),
               "default-src 'none'; script-src 'unsafe-inline'; style-src 'unsafe-inline'; " +
               'img-src data: blob:');
  const blocked = await page.evaluate(() => fetch('https://example.invalid/').then(
    () => false, () => true));
  assert.ok(blocked);
  await page.close();
});

test('without a way to draw there are the tables and a sentence', async () => {
  const plain = await openBrowser(WITHOUT_DRAWING);
  try {
    const page = await open(plain, await pageOf(example('02-portal-frame.dat')));
    assert.match(await page.locator('#no-drawing').innerText(), /cannot draw in three dimensions/);
    assert.equal(await page.locator('#drawing').isVisible(), false);
    assert.equal(await page.getByRole('tab', {selected: true}).innerText(), 'Balance');
    await page.getByRole('tab', {name: 'Reactions'}).click();
    assert.match(await page.locator('#sheet table').innerText(), /−5000/);
    assert.equal(await page.evaluate(() => window.kestol.result.nodes.length), 4);
    await page.close();
  } finally {
    await plain.close();
  }
});

test('a window of another size keeps the picture in shape', async () => {
  const page = await open(browser, await pageOf(example('02-portal-frame.dat')));
  const shape = async () => {
    const [a, b, c] = await page.evaluate(() =>
      [1, 2, 4].map((n) => window.kestol.screen('node', n)));
    return (a.y - b.y) / (c.x - a.x);
  };
  await page.evaluate(() => window.kestol.setScale(0));
  assert.ok(Math.abs(await shape() - 4 / 6) < 1e-3);
  await page.setViewportSize({width: 820, height: 900});
  await settled(page);
  assert.ok(Math.abs(await shape() - 4 / 6) < 1e-3);
  const canvas = await page.locator('#drawing').boundingBox();
  assert.ok(canvas.width < 600);
  assert.ok((await drawnBox(page)).count > 200);
  await page.setViewportSize({width: 400, height: 700});
  await settled(page);
  assert.equal(await page.evaluate(() => document.documentElement.scrollWidth), 400);
  await page.close();
});

test('without the panel the picture takes its place, beside tables too', async () => {
  const page = await open(browser, await pageOf(example('02-portal-frame.dat')));
  const width = async (/** @type {string} */ what) => (await page.locator(what).boundingBox()).width;
  const toggle = page.getByRole('button', {name: 'Controls'});
  await page.getByRole('tab', {name: 'Reactions'}).click();
  await toggle.click();
  await settled(page);
  assert.equal(await toggle.getAttribute('aria-expanded'), 'false');
  assert.deepEqual([await width('#drawing'), await width('#drawer')], [1280, 1280]);
  assert.ok((await drawnBox(page)).count > 200);
  await toggle.click();
  await settled(page);
  assert.deepEqual([await width('#drawing'), await width('#drawer')], [1280 - 246, 1280 - 246]);
  await page.close();
});

test('a narrow window opens with the picture, not with the panel upon it', async () => {
  const page = await open(browser, await pageOf(example('02-portal-frame.dat')),
                          {viewport: {width: 390, height: 780}});
  const controls = page.locator('#controls'), toggle = page.getByRole('button', {name: 'Controls'});
  assert.equal(await controls.isVisible(), false);
  assert.equal((await page.locator('#drawing').boundingBox()).width, 390);
  await toggle.click();
  assert.ok(await controls.isVisible());
  await toggle.click();
  await page.getByRole('tab', {name: 'Reactions'}).click();
  assert.equal((await page.locator('#drawer').boundingBox()).width, 390);
  assert.ok((await drawnBox(page)).count > 100);
  await page.close();
});

/** Words that the picture holds after `then`. */
async function wordsAfter(page, then) {
  await page.evaluate(() => {
    window.words = [];
    const write = CanvasRenderingContext2D.prototype.fillText;
    CanvasRenderingContext2D.prototype.fillText = function (text, ...rest) {
      window.words.push(text);
      return write.call(this, text, ...rest);
    };
  });
  await then();
  await settled(page);
  return page.evaluate(() => window.words);
}

test('rounding is no diagram: moments of a truss are 0 everywhere', async () => {
  const page = await open(browser, await pageOf(verification('B08-truss.dat')));
  const words = await wordsAfter(page, () =>
    page.getByRole('button', {name: 'M', exact: true}).click());
  assert.equal(await page.locator('#caption').innerText(), 'M · 0 everywhere');
  assert.deepEqual(words.filter((text) => /e−/.test(text)), []);
  await page.getByRole('button', {name: 'N', exact: true}).click();
  assert.equal(await page.locator('#caption').innerText(), 'N');
  await page.close();
});

test('the largest value is written, also where symbols stand', async () => {
  const page = await open(browser, await pageOf(example('14-cylindrical-roof.dat')));
  const words = await wordsAfter(page, () => page.evaluate(() => window.kestol.setScale(5)));
  const largest = /largest ([\d.]+) at/.exec(await page.locator('#legend').innerText())[1];
  assert.ok(words.includes(largest), words.join(' '));
  await page.close();
});

test('a support at the top of a column hangs', async () => {
  const page = await open(browser, await pageOf(verification('B10-cross.dat')));
  await page.getByLabel('node numbers').uncheck();
  await page.getByRole('button', {name: 'Model'}).click();
  await settled(page);
  const rows = await page.evaluate(() => {
    const at = window.kestol.screen('node', 4), sheet = document.getElementById('overlay');
    const box = sheet.getBoundingClientRect(), x = at.x - box.left, y = at.y - box.top;
    const used = (/** @type {number} */ from) =>
      sheet.getContext('2d').getImageData(x - 14, from, 28, 6).data.filter((v, i) => i % 4 === 3 && v).length;
    return {above: used(y - 16), below: used(y + 10)};
  });
  assert.ok(rows.above > 20, JSON.stringify(rows));
  assert.equal(rows.below, 0);
  await page.close();
});

test('findings lead to what is there, not to what is missing', async () => {
  const text = readFileSync(example('portal/portal.dat'), 'latin1').replace(/^ {2}4 {2}110/m, '  14  110');
  const page = await open(browser, await pageOf(deckOf(text, 'missing.dat'), {status: 1}));
  const item = page.locator('.findings li', {hasText: 'node 14 does not exist'});
  assert.equal(await item.getByRole('button').count(), 0);
  await page.close();
});

test('the key of the colours does not lie on the model', async () => {
  const file = await pageOf(example('14-cylindrical-roof.dat'));
  for (const width of [1280, 900, 780]) {
    const page = await open(browser, file, {viewport: {width, height: 540}});
    const key = await page.locator('#legend').boundingBox();
    const nodes = await page.evaluate(() =>
      window.kestol.result.nodes.map(({number}) => window.kestol.screen('node', number)));
    const covered = nodes.filter(({x, y}) => x > key.x && y < key.y + key.height);
    assert.deepEqual(covered, [], `${width} pixels`);
    await page.close();
  }
});

test('light and dark follow the system and the button', async () => {
  const file = await pageOf(example('02-portal-frame.dat'));
  const ground = (page) => page.evaluate(() => getComputedStyle(document.body).backgroundColor);
  const page = await open(browser, file, {colorScheme: 'dark'});
  assert.equal(await ground(page), 'rgb(20, 23, 28)');
  await page.getByRole('button', {name: 'Theme: auto'}).click();
  assert.equal(await ground(page), 'rgb(255, 255, 255)');
  await page.emulateMedia({colorScheme: 'light'});
  await page.getByRole('button', {name: 'Theme: light'}).click();
  assert.equal(await ground(page), 'rgb(20, 23, 28)');
  await page.getByRole('button', {name: 'Theme: dark'}).click();
  assert.equal(await ground(page), 'rgb(255, 255, 255)');
  await page.close();
});

test('the print sheet holds the picture, the sums and the reactions', async () => {
  const page = await open(browser, await pageOf(example('02-portal-frame.dat')),
                          {colorScheme: 'dark'});
  const pdf = await page.pdf({preferCSSPageSize: true});
  assert.equal(pdf.subarray(0, 5).toString(), '%PDF-');
  await page.evaluate(() => window.dispatchEvent(new Event('beforeprint')));
  await page.emulateMedia({media: 'print'});
  const sheet = page.locator('#print-sheet');
  assert.ok(await sheet.isVisible());
  assert.equal(await page.locator('main').isVisible(), false);
  const text = await sheet.innerText();
  for (const part of ['portal frame with fixed feet', 'Balance', 'Reactions', '12000'])
    assert.ok(text.includes(part), part);
  // On paper the ground is white, whatever the screen shows.
  const corner = await page.evaluate(async () => {
    const image = document.querySelector('#print-sheet img');
    await image.decode();
    const canvas = document.createElement('canvas');
    [canvas.width, canvas.height] = [image.naturalWidth, image.naturalHeight];
    const ctx = canvas.getContext('2d');
    ctx.drawImage(image, 0, 0);
    return [...ctx.getImageData(3, 3, 1, 1).data];
  });
  assert.deepEqual(corner, [255, 255, 255, 255]);
  await page.close();
});

test('the print sheet of a mechanism: the finding in lines and in ink, no place that is none', async () => {
  const deck = readFileSync(example('01-cantilever.dat'), 'latin1').replace('111', '110');
  const page = await open(browser, await pageOf(deckOf(deck, 'loose.dat'), {status: 1}),
                          {colorScheme: 'dark'});
  await page.evaluate(() => window.dispatchEvent(new Event('beforeprint')));
  await page.emulateMedia({media: 'print'});
  const finding = page.locator('#print-sheet .error');
  assert.match(await finding.innerText(), /^loose\.dat: the supports leave .*\n\s*mode 1: /);
  assert.equal(await finding.evaluate((p) => getComputedStyle(p).color), 'rgb(179, 38, 30)');
  assert.deepEqual(await page.locator('#print-sheet h2').allInnerTexts(), ['Supports']);
  await page.close();
});

test('tables call a created mid-side so, and the balance does not show rounding', async () => {
  const page = await open(browser, await pageOf(example('14-cylindrical-roof.dat')));
  const cells = async (/** @type {string} */ tab) => {
    await page.getByRole('tab', {name: tab}).click();
    return page.locator('#sheet tbody tr').allInnerTexts();
  };
  const supports = await cells('Supports');
  assert.ok(supports.some((row) => row.startsWith('mid-side')));
  assert.ok(!supports.some((row) => /^0\t/.test(row)));
  const [loads, reactions] = (await cells('Balance')).map((row) => row.split('\t'));
  assert.deepEqual(reactions.slice(1, 3), ['0', '0']);
  assert.equal(Number(reactions[3]), 39257.4);
  assert.equal(loads[3], '−39257.4');
  await page.close();
});

test('a section shows the inside of a solid', async () => {
  const page = await open(browser, await pageOf(example('20-solid-cantilever.dat')));
  await page.evaluate(() => window.kestol.setScale(0));
  await settled(page);
  const whole = await drawnBox(page);
  await page.getByLabel('across').selectOption('x');
  await page.getByLabel('Place of the section').fill('25');
  await settled(page);
  const part = await drawnBox(page);
  assert.ok(part.right - part.left < 0.5 * (whole.right - whole.left));
  assert.ok(part.count > 200);
  await page.close();
});

test('colours are clamped to the limits that are typed', async () => {
  const page = await open(browser, await pageOf(example('12-plate-under-pressure.dat')));
  const keys = () => page.locator('#legend li span').allInnerTexts();
  const before = await keys();
  await page.getByLabel('to', {exact: true}).fill('20');
  await page.getByLabel('to', {exact: true}).blur();
  await settled(page);
  const after = await keys();
  assert.notDeepEqual(after, before);
  assert.equal(after[0], '20');
  assert.equal(after.at(-1), '0');
  await page.getByRole('button', {name: 'Automatic'}).click();
  assert.deepEqual(await keys(), before);
  await page.close();
});

test('a table as CSV reads back to the doubles of the page', async () => {
  const page = await open(browser, await pageOf(example('08-mixed-units.dat')));
  await page.getByRole('tab', {name: 'Nodes'}).click();
  const [download] = await Promise.all([page.waitForEvent('download'),
                                        page.getByRole('button', {name: /CSV/}).click()]);
  assert.equal(download.suggestedFilename(), '08-mixed-units_nodes.csv');
  const lines = readFileSync(await download.path(), 'utf8').trim().split('\n');
  assert.match(lines[0], /^node,x \[m\],y \[m\],ux \[m\],uy \[m\],rz \[rad\]$/);
  const nodes = await page.evaluate(() => window.kestol.result.nodes);
  assert.deepEqual(lines.slice(1).map((line) => line.split(',').map(Number)),
                   nodes.map(({number, x, u, rotation}) =>
                     [number, x[0], x[1], u[0], u[1], rotation[2]]));
  await page.close();
});

test('bending moments are drawn on the tension side, and the page says so', async () => {
  // A cantilever with a force down at its tip is pulled at its upper side.
  const page = await open(browser, await pageOf(example('01-cantilever.dat')));
  await page.getByRole('button', {name: 'M', exact: true}).click();
  await settled(page);
  const axis = await page.evaluate(() => window.kestol.screen('node', 1).y);
  const box = await drawnBox(page);
  assert.ok(axis - box.top > 30, 'the diagram stands above the beam');
  assert.ok(box.bottom - axis < 5, 'and not below it');
  assert.match(await page.locator('#caption').innerText(), /drawn on the tension side/);
  await page.close();
});

test('100 352 triangles: at most 6 MB, first picture within seconds', async () => {
  const n = 224, lines = [];
  const put = (...words) => lines.push(words.join(' '));
  put('PROBLEM plate');
  put('TYPE 3d');
  put('mesh\ndimension = 3 elemtype Triangle nnode = 3\ncoordinates');
  for (let j = 0; j <= n; ++j)
    for (let i = 0; i <= n; ++i)
      put(j * (n + 1) + i + 1, i / 10, j / 10, Math.sin(i / 20).toFixed(6));
  put('end coordinates\nelements');
  for (let e = 0; e < 2 * n * n; ++e) {
    const cell = e >> 1, a = Math.floor(cell / n) * (n + 1) + (cell % n) + 1;
    put(e + 1, a, ...(e % 2 ? [a + n + 2, a + n + 1] : [a + 1, a + n + 2]), 1);
  }
  put('end elements\nmaterials\n1 E=2e8 nu=0.3 G=7.7e7 t=0.05\nend materials\nconstraints');
  for (let i = 0; i <= n; ++i) put(i + 1, '111111', 0, 0, 0, 0, 0, 0);
  put('end constraints\nglobal_pressure_loads');
  for (let e = 1; e <= 2 * n * n; ++e) put(e, 0, 0, -1);
  put('end global_pressure_loads\nSolverSparse 1 10 20');
  const deck = deckOf(lines.join('\n'), 'large.dat');
  const file = await pageOf(deck, {options: ['--solver', 'deck']});
  assert.ok(statSync(file).size <= 6e6, `${statSync(file).size} bytes`);
  const start = Date.now(), page = await open(browser, file);
  const seconds = (Date.now() - start) / 1000;
  console.log(`first picture of 100 352 triangles after ${seconds} s`);
  assert.ok(seconds < 20);  // the machine of a test may be busy
  assert.match(await page.locator('#caption').innerText(), /values rounded/);
  assert.ok((await drawnBox(page)).count > 10000);
  assert.deepEqual(page.noise, []);
  await page.close();
});
