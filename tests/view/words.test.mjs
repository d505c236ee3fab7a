// What the page says: keys, controls, quantities, sheets, captions, and sentences in place of a picture.

import assert from 'node:assert/strict';
import {readFileSync} from 'node:fs';
import {pathToFileURL} from 'node:url';
import {after, before, test} from 'node:test';

import {deckOf, example, open, openBrowser, pageOf, WITHOUT_DRAWING} from './support.mjs';

/** @type {import('playwright-core').Browser} */ let browser;
before(async () => { browser = await openBrowser(); });
after(() => browser.close());

const KEYS = [
  'ArrowLeft ArrowRight ArrowUp ArrowDown: turn the picture (plane: move)',
  'Shift+ArrowLeft Shift+ArrowRight Shift+ArrowUp Shift+ArrowDown: move the picture',
  '+ =: closer', '-: farther', '0: whole model', '1: from the front', '2: from the right', '3: from above',
  'n N: next node, previous node', 'e E: next element, previous element',
  '. ,: next station or point of the element, previous one', 'Escape: let go of the node or element',
  'q Q: next view of the results, previous one', 'd: deformed or not',
  '[ ]: smaller, larger deformation and diagrams', 's: supports', 'l: loads', 'r: true reactions',
  'a: local axes', 'm: mesh lines', 'x: main directions', 'b: numbers of nodes and elements', 'p: print',
  '?: this list'];

/** @param {string} deck */
const opened = async (deck, ...options) => open(browser, await pageOf(deck, {options}));

const sheet = async (page, /** @type {string} */ name) => {
  await page.getByRole('tab', {name}).click();
  return page.locator('#sheet').innerText();
};

/** The quantities of the menu, each group behind its name. */
const quantities = (page) => page.locator('#quantity optgroup').evaluateAll((groups) => groups.map((group) =>
  `${group.label}: ${[...group.children].map((option) => option.textContent).join(' ')}`));

test('keys, controls and quantities of beams and shells', async () => {
  const page = await opened(example('15-stiffened-plate.dat'));
  await page.keyboard.press('?');
  assert.deepEqual((await page.locator('#keys tr').allInnerTexts()).map((row) => row.replace('\t', ': ')), KEYS);
  await page.keyboard.press('Escape');
  assert.deepEqual(await page.locator('#shows label').allInnerTexts(), [
    'supports', 'loads', 'load values', 'true reactions', 'node numbers', 'element numbers', 'local axes',
    'main directions', 'mesh', 'undeformed']);
  assert.deepEqual(await page.locator('#views button').allInnerTexts(),
                   ['iso', 'front', 'right', 'top', 'back', 'left']);
  assert.deepEqual(await quantities(page), [
    'Displacements: |u| ux uy uz', 'Beams: N Vy Vz T My Mz',
    'Shell resultants: n x′ n y′ n x′y′ n₁ n₂ m x′ m y′ m x′y′ m₁ m₂ q x′ q y′',
    'Shell stresses: von Mises, top σ₁, top σ₂, top von Mises, bottom σ₁, bottom σ₂, bottom']);
  assert.equal(await page.locator('#drawing').getAttribute('aria-label'),
               'Model of 27 nodes, 32 shells and 8 beams. Press ? for the keys.');
  for (const name of ['What is shown', 'Directions of view', 'Picture of the model'])
    assert.equal(await page.locator(`[aria-label="${name}"]`).count(), 1, name);
  for (const name of ['Size of diagrams', 'average at nodes', 'other side'])
    assert.equal(await page.getByLabel(name).count(), 1, name);
  await page.close();
});

test('quantities of solids', async () => {
  const page = await opened(example('17-bar-in-tension.dat'));
  assert.deepEqual(await quantities(page), [
    'Displacements: |u| ux uy uz', 'Solid stresses: von Mises σ₁ σ₂ σ₃ σ x σ y σ z τ xy τ yz τ xz']);
  await page.close();
});

test('sheets of a sound model', async () => {
  const page = await opened(example('01-cantilever.dat'));
  assert.equal(await sheet(page, 'Findings'), 'Nothing to remark: no error, no warning.');
  assert.match(await sheet(page, 'Balance'), new RegExp(
    '^Balance of loads and reactions\\n\\tFx\\tFy\\tMz\\nloads\\t0\\t−1000\\t−3000\\nreactions\\t0\\t1000\\t3000\\n\\s*' +
    'Loads are the forces on the nodes, reactions what the supports give to the structure; moments about the ' +
    'origin\\. Relative error \\S+\\.$'));
  assert.match(await sheet(page, 'Model'), /\n1\tE = 2e11, /);
  assert.equal((await sheet(page, 'Deck')).trim(), readFileSync(example('01-cantilever.dat'), 'latin1').trim());
  await page.close();
});

test('numbers keep the zeros of their powers of ten', async () => {
  const text = readFileSync(example('01-cantilever.dat'), 'latin1');
  for (const [load, said] of [['12340000000', '1.234e10'], ['1.5e-10', '1.5e−10'], ['-2e20', '−2e20'], ['1050000', '1.05e6'],
                              ['0.5', '0.5'], ['0.00123', '0.00123'], ['-105.5', '−105.5'], ['200', '200']]) {
    const page = await opened(deckOf(text.replace('0 -1000 0', `0 ${load} 0`), 'power.dat'));
    assert.match(await sheet(page, 'Balance'), new RegExp(`\nloads\t0\t${said.replace('.', '\\.')}\t`), load);
    await page.close();
  }
});

test('sheet and caption of a mechanism', async () => {
  const loose = deckOf(readFileSync(example('01-cantilever.dat'), 'latin1').replace('111', '110'), 'swings.dat');
  const page = await open(browser, await pageOf(loose, {status: 1}));
  assert.match(await page.locator('#sheet').innerText(), /^The model is a mechanism in 1 way\.\n/);
  assert.equal(await page.locator('#caption').innerText(),
               'mode 1: how the model can move without resistance');
  await page.close();
});

test('the sheet of a long deck says what it leaves out', async () => {
  const text = readFileSync(example('01-cantilever.dat'), 'latin1');
  const loads = Array.from({length: 20_000}, () => '  2  0 0.1 0\n').join('');
  const page = await opened(deckOf(text.replace('  2  0 -1000 0\n', loads), 'lines.dat'));
  assert.match(await sheet(page, 'Deck'), /^19990 lines of long lists are left out\.\n/);
  await page.close();
});

test('one of a kind is told as one', async () => {
  const text = readFileSync(example('01-cantilever.dat'), 'latin1');
  const loads = `  2  0 0.1 0${' '.repeat(19_000)}\n`.repeat(11);
  const page = await opened(deckOf(text.replace('  2  0 -1000 0\n', loads), 'line.dat'));
  assert.match(await sheet(page, 'Deck'), /^1 line of long lists is left out\.\n[^]*\n {2}\.\.\. 1 line \.\.\.\n/);
  assert.match(await sheet(page, 'Model'), /^2 nodes; 1 2-noded beam\.\n/);
  assert.equal(await page.locator('#drawing').getAttribute('aria-label'),
               'Model of 2 nodes, 1 beam. Press ? for the keys.');
  await page.close();
});

/** A row of beams on so many supports. @param {number} n */
const supported = (n) => {
  const rows = (/** @type {(k: number) => string} */ row, from = 1) =>
    Array.from({length: n + 1 - from}, (_, k) => `${row(k + from)}\n`).join('');
  return 'PROBLEM row\nTYPE 2d\nmesh dimension = 2 elemtype Linear nnode = 2\n' +
    `coordinates\n${rows((k) => `${k} ${k} 0`)}end coordinates\n` +
    `elements\n${rows((k) => `${k - 1} ${k - 1} ${k} 1`, 2)}end elements\n` +
    'materials\n1 E=2e11 A=1e-2 Iz=1e-5\nend materials\n' +
    `constraints\n${rows((k) => `${k} 111 0 0 0`)}end constraints\n`;
};

test('the print sheet says how many supports it leaves to the file', async () => {
  for (const [count, words] of [[60, []], [61, ['1 more row: see the CSV file.']],
                                [62, ['2 more rows: see the CSV file.']]]) {
    const page = await opened(deckOf(supported(count), `row${count}.dat`));
    await page.evaluate(() => window.dispatchEvent(new Event('beforeprint')));
    await page.emulateMedia({media: 'print'});
    const lines = await page.locator('#print-sheet > p').allInnerTexts();
    assert.deepEqual([...new Set(lines.filter((line) => line.includes('CSV')))], words);
    await page.close();
  }
});

test('captions of cases, combinations and envelopes', async () => {
  const page = await opened(example('combinations/frame.dat'), '--cases', example('combinations/frame.toml'));
  const caption = page.locator('#caption');
  assert.match(await caption.innerText(), /^G · deformed × \d+$/);
  for (const [name, formula] of [['erection', '1.1 G + 1.2 WL'],
                                 ['envelope: largest', 'largest of 43 combinations, each value by itself'],
                                 ['envelope: smallest', 'smallest of 43 combinations, each value by itself']]) {
    await page.evaluate((result) => window.kestol.setResult(result), name);
    assert.ok((await caption.innerText()).startsWith(`${name}: ${formula}`), await caption.innerText());
  }
  await assert.rejects(page.evaluate(() => window.kestol.setScale(NaN)), /TypeError: a scale is a finite number/);
  await page.close();
});

test('a sentence in place of the picture, and one without scripts', async () => {
  const file = await pageOf(example('01-cantilever.dat')), plain = await openBrowser(WITHOUT_DRAWING);
  const page = await open(plain, file);
  assert.equal(await page.locator('#no-drawing').innerText(),
               'This browser cannot draw in three dimensions (WebGL 2 is missing or switched off). ' +
               'The tables, findings and sums below are complete.');
  await page.close();
  await plain.close();
  const silent = await (await browser.newContext({javaScriptEnabled: false})).newPage();
  await silent.goto(pathToFileURL(file).href);
  assert.equal(await silent.locator('noscript').innerText(),
               'This page draws with a script: allow scripts for this file.');
  await silent.context().close();
});
