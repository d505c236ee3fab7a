// The program: options, refusals, files and drawings.

import assert from 'node:assert/strict';
import {chmodSync, cpSync, existsSync, mkdirSync, readdirSync, readFileSync, writeFileSync} from 'node:fs';
import {join} from 'node:path';
import {after, before, test} from 'node:test';

import {checked, deckOf, example, folder, open, openBrowser, pageOf, view} from './support.mjs';

/** @type {import('playwright-core').Browser} */ let browser;
before(async () => { browser = await openBrowser(); });
after(() => browser.close());

const cantilever = example('01-cantilever.dat');

test('help and version go to standard output', async () => {
  const help = await view('--help');
  assert.equal(help.status, 0);
  for (const option of ['--svg', '--max-triangles', '--tables', '--solver', '-o', '--version'])
    assert.ok(help.stdout.includes(option), option);
  const version = await view('--version');
  assert.equal(version.status, 0);
  assert.match(version.stdout, /^kestol-view \d+\.\d+\.\d+\n$/);
});

for (const [name, args] of [['an unknown option', ['--colour', cantilever]], ['no deck', []],
                            ['no table of that name', ['--tables', 'few', cantilever]],
                            ['no solver of that name', ['--solver', 'fast', cantilever]],
                            ['no positive number', ['--max-triangles', '0', cantilever]]])
  test(`${name}: exit 2, one line and a hint`, async () => {
    const done = await view(...args);
    assert.equal(done.status, 2);
    assert.match(done.stderr, /^kestol-view: [^\n]*try kestol-view --help\n$/);
  });

test('"--" ends the options and is none', async () => {
  const none = await view('--'), second = await view(cantilever, '--', '--more.dat');
  assert.deepEqual([none.status, second.status], [2, 2]);
  assert.match(none.stderr, /DECK is required; try/);
  assert.match(second.stderr, /not expected: --more\.dat/);
  assert.match((await view('--colour', '--', 'a.dat')).stderr, /unknown option --colour; try/);
  const page = await view('--', cantilever);
  assert.equal(page.status, 0);
  assert.match(page.stdout, /^<!DOCTYPE html>/);
});

test('--cases: the file must be for this deck, and without mistakes; no drawings beside it', async () => {
  const file = example('combinations/frame.toml');
  const other = await view('--cases', file, cantilever);
  assert.equal(other.status, 2);
  assert.match(other.stderr, /is for the model .*frame\.dat, not for /);
  const broken = deckOf('model = 7\n', 'broken.toml'), wrong = await view('--cases', broken, cantilever);
  assert.equal(wrong.status, 2);
  assert.match(wrong.stderr, /broken\.toml:1:/);
  const both = await view('--cases', file, '--svg', join(folder, 'x'), cantilever);
  assert.equal(both.status, 2);
  assert.match(both.stderr, /leave --cases out/);
});

test('--cases: a page on a file that is read is refused', async () => {
  const place = join(folder, 'cases');
  cpSync(example('combinations'), place, {recursive: true});
  for (const name of ['frame.toml', 'snow.dat']) {
    const file = join(place, name), text = readFileSync(file);
    const done = await view('--cases', join(place, 'frame.toml'), '-o', file, join(place, 'frame.dat'));
    assert.equal(done.status, 2);
    assert.match(done.stderr, /the output .* is the input /);
    assert.deepEqual(readFileSync(file), text);
  }
});

test('-v: the solver\'s words on standard error; -q: errors alone', async () => {
  const loud = await view('-v', '--solver', 'skyline', cantilever);
  assert.match(loud.stderr, /INFORMATION ABOUT STIFFNESS MATRIX/);
  assert.equal((await view('-q', cantilever)).stderr, '');
  const deck = deckOf(readFileSync(cantilever, 'latin1').replace('111', '110'), 'quiet.dat');
  assert.match((await view('-q', deck)).stderr, /error: .*\[rigid-motion\]/);
});

test('the page goes to standard output when nothing names it', async () => {
  const done = await view(cantilever);
  assert.equal(done.status, 0);
  assert.match(done.stdout, /^<!DOCTYPE html>/);
  assert.match(done.stdout, /<\/html>\s*$/);
  assert.equal((await view('-o', '-', cantilever)).stdout, done.stdout);
});

test('a deck that is not there: exit 2 and no page', async () => {
  const file = join(folder, 'none.html'), done = await view('-o', file, 'none.dat');
  assert.equal(done.status, 2);
  assert.match(done.stderr, /can't open file none\.dat/);
  assert.equal(existsSync(file), false);
});

test('a page on the deck is refused', async () => {
  const deck = deckOf(readFileSync(cantilever), 'own.dat');
  const done = await view('-o', deck, deck);
  assert.equal(done.status, 2);
  assert.deepEqual(readFileSync(deck), readFileSync(cantilever));
});

test('a full disk: exit 2 and the reason', async () => {
  const done = await view('-o', '/dev/full', cantilever);
  assert.equal(done.status, 2);
  assert.match(done.stderr, /No space left on device/);
});

test('nothing is written beside the deck', async () => {
  const place = join(folder, 'read-only');
  mkdirSync(place);
  writeFileSync(join(place, 'model.dat'), readFileSync(cantilever));
  await pageOf(join(place, 'model.dat'));
  assert.deepEqual(readdirSync(place), ['model.dat']);
  chmodSync(place, 0o755);
});

test('more triangles than allowed: exit 2 and how many', async () => {
  const done = await view('--max-triangles', '100', example('12-plate-under-pressure.dat'));
  assert.equal(done.status, 2);
  assert.match(done.stderr, /the picture would have 576 triangles: raise --max-triangles/);
});

test('nothing to draw: exit 2', async () => {
  const done = await view(deckOf('PROBLEM empty\nTYPE 2d\n', 'empty.dat'));
  assert.equal(done.status, 2);
  assert.equal(done.stdout, '');
  assert.match(done.stderr, /there is nothing to draw/);
  const wrong = await view(deckOf('PROBLEM empty\nTYPE 2d\nmesh\nfoo\n', 'wrong-word.dat'));
  assert.equal(wrong.status, 2);
  assert.match(wrong.stderr, /wrong-word\.dat:4:1: error: "foo" is not known/);
});

for (const [tables, tabs] of [['none', []], ['supports', ['Reactions', 'Supports']],
                              ['all', ['Reactions', 'Supports', 'Nodes', 'Beams']]])
  test(`--tables ${tables}`, async () => {
    const page = await open(browser, await pageOf(cantilever, {options: ['--tables', tables]}));
    const names = await page.getByRole('tab').allInnerTexts();
    assert.deepEqual(names, ['Findings (0)', 'Balance', ...tabs, 'Model', 'Deck']);
    await page.close();
  });

test('every solver gives a page; the digits are those of the solver', async () => {
  for (const solver of ['deck', 'skyline', 'sparse']) {
    const page = await open(browser, await pageOf(cantilever, {options: ['--solver', solver]}));
    const uy = await page.evaluate(() => window.kestol.result.nodes[1].u[1]);
    assert.ok(Math.abs(uy + 0.0045) < 1e-9, `${solver}: ${uy}`);
    await page.close();
  }
});

test('a deck with an error opens with the finding, and draws what was read', async () => {
  const text = readFileSync(example('02-portal-frame.dat'), 'latin1')
    .replace('1  E=2.1e11', '1  E=2.1e11 colour=');
  const page = await open(browser, await pageOf(deckOf(text, 'wrong.dat'), {status: 1}));
  const findings = await page.evaluate(() => window.kestol.findings);
  assert.equal(findings.length, 1);
  assert.equal(findings[0].severity, 'error');
  assert.ok(findings[0].line > 0);
  assert.match(await page.getByRole('tab', {selected: true}).innerText(), /Findings \(1\)/);
  assert.match(await page.locator('#sheet').innerText(), /error/);
  assert.ok(await page.evaluate(() => window.kestol.screen('node', 3)));
  assert.deepEqual(page.noise, []);
  await page.close();
});

test('a deck with several mistakes opens with all of them, as kestol-check tells them', async () => {
  const text = readFileSync(example('02-portal-frame.dat'), 'latin1')
    .replace('1  E=2.1e11', '1  E=2.1e11 colour=').replace('3  6 4', '3  6 4 0')
    .replace('end constraints', 'end constraints\nnodal_point_loads\n77 1 0 0\nend nodal_point_loads');
  const deck = deckOf(text, 'several.dat');
  const page = await open(browser, await pageOf(deck, {status: 1}));
  const findings = await page.evaluate(() => window.kestol.findings), wanted = await checked(deck);
  assert.ok(wanted.length >= 3, `${wanted.length} findings`);
  assert.deepEqual(new Set(wanted.map((f) => f.severity)), new Set(['error', 'warning']));
  assert.deepEqual(findings, wanted.map((f) => ({...f, file: 'several.dat'})));
  assert.equal(await page.getByRole('tab', {selected: true}).innerText(),
               `Findings (${wanted.length})`);
  const sheet = await page.locator('#sheet').innerText();
  for (const {text: said, code, line} of wanted)
    for (const part of [said.split('\n')[0], code, String(line)])
      assert.ok(sheet.includes(part), part);
  assert.deepEqual(page.noise, []);
  await page.close();
});

test('warnings stand in the page and are no failure', async () => {
  const text = readFileSync(cantilever, 'latin1').replace(
    'materials', 'materials\n7 E=2.1e11 A=1e-2 Iz=1e-5');
  const page = await open(browser, await pageOf(deckOf(text, 'unused.dat'), {status: 0}));
  const findings = await page.evaluate(() => window.kestol.findings);
  assert.deepEqual(findings.map((f) => [f.code, f.severity]), [['unused', 'warning']]);
  await page.getByRole('tab', {name: 'Findings (1)'}).click();
  assert.match(await page.locator('#sheet').innerText(), /material 7/);
  await page.close();
});

test('a mechanism opens with its modes, which move: exit 1', async () => {
  const text = readFileSync(cantilever, 'latin1').replace('111', '110');
  const page = await open(browser, await pageOf(deckOf(text, 'loose.dat'), {status: 1}));
  const findings = await page.evaluate(() => window.kestol.findings);
  assert.deepEqual(findings.map((f) => f.code), ['rigid-motion']);
  assert.match(await page.locator('#sheet').innerText(), /a mechanism in 1 way/);
  const place = () => page.evaluate(() => window.kestol.screen('node', 2));
  const seen = new Set();
  for (let k = 0; k < 20; ++k) {
    seen.add(Math.round((await place()).y));
    await page.waitForTimeout(100);
  }
  assert.ok(seen.size > 3, `the free end was seen at ${[...seen]}`);
  const held = await page.evaluate(() => window.kestol.screen('node', 1));
  await page.getByRole('button', {name: 'Show mode 1'}).click();
  await page.waitForTimeout(200);
  const still = await place();
  await page.waitForTimeout(300);
  assert.deepEqual(await place(), still);
  assert.deepEqual(await page.evaluate(() => window.kestol.screen('node', 1)), held);
  assert.deepEqual(page.noise, []);
  await page.close();
});

const drawings = ['model', 'deformed', 'N', 'V', 'M'];

test('--svg writes the drawings and no page', async () => {
  const prefix = join(folder, 'portal'), deck = example('02-portal-frame.dat');
  const done = await view('--svg', prefix, deck);
  assert.deepEqual([done.status, done.stdout], [0, '']);
  const text = drawings.map((name) => readFileSync(`${prefix}_${name}.svg`, 'utf8'));
  const page = await browser.newPage();
  for (const svg of text) {
    assert.match(svg, /^<svg xmlns="http:\/\/www\.w3\.org\/2000\/svg"/);
    const wrong = await page.evaluate((s) =>
      new DOMParser().parseFromString(s, 'image/svg+xml').querySelectorAll('parsererror').length,
      svg);
    assert.equal(wrong, 0);
  }
  await page.close();
  // H h/2 (3k+1)/(6k+1) = 12000 at the feet, of either sign, in bold.
  assert.match(text[4], /class="m plustext extreme"[^>]*>12000</);
  assert.match(text[4], /class="m minustext extreme"[^>]*>−12000</);
  assert.match(text[4], /drawn on the tension side/);
  assert.match(text[0], /class="m loadtext"[^>]*>10000</);
});

test('the first picture of the README is what the program draws', async () => {
  const prefix = join(folder, 'readme');
  await view('--solver', 'skyline', '--svg', prefix, example('portal/portal.dat'));
  assert.equal(readFileSync(`${prefix}_M.svg`, 'utf8'),
               readFileSync(example('../docs/view/portal-moments.svg'), 'utf8'));
});

test('a drawing on the deck is refused before any is written; so is one on the page', async () => {
  const place = join(folder, 'drawings'), deck = join(place, 'x_M.svg');
  mkdirSync(place);
  writeFileSync(deck, readFileSync(cantilever));
  const done = await view('--svg', join(place, 'x'), deck);
  assert.equal(done.status, 2);
  assert.match(done.stderr, /the output .*x_M\.svg is the input /);
  const page = await view('--svg', join(place, 'y'), '-o', join(place, 'y_N.svg'), deck);
  assert.equal(page.status, 2);
  assert.match(page.stderr, /two outputs have the name .*y_N\.svg/);
  assert.deepEqual(readdirSync(place), ['x_M.svg']);
  assert.deepEqual(readFileSync(deck), readFileSync(cantilever));
});

test('with -o the drawings and the page are written', async () => {
  const prefix = join(folder, 'both'), done = await view('--svg', prefix, '-o', `${prefix}.html`, cantilever);
  assert.deepEqual([done.status, done.stdout], [0, '']);
  for (const name of [...drawings.map((one) => `_${one}.svg`), '.html'])
    assert.ok(existsSync(prefix + name), name);
});

test('a model that moves is drawn without results: exit 1', async () => {
  const prefix = join(folder, 'moves');
  const deck = deckOf(readFileSync(cantilever, 'latin1').replace('111', '110'), 'moves.dat');
  const done = await view('--svg', prefix, deck);
  assert.equal(done.status, 1);
  assert.match(done.stderr, /\[rigid-motion\]/);
  assert.deepEqual(drawings.map((name) => existsSync(`${prefix}_${name}.svg`)),
                   [true, false, false, false, false]);
});

test('shells have no diagrams', async () => {
  const prefix = join(folder, 'plate');
  await view('--svg', prefix, example('12-plate-under-pressure.dat'));
  assert.deepEqual(drawings.map((name) => existsSync(`${prefix}_${name}.svg`)),
                   [true, true, false, false, false]);
});

test('drawings lie on the tension side: above a cantilever that is loaded downwards', async () => {
  const prefix = join(folder, 'cantilever');
  await view('--svg', prefix, cantilever);
  const svg = readFileSync(`${prefix}_M.svg`, 'utf8');
  const area = /class="minus" d="M([\d.]+) ([\d.]+)/.exec(svg);
  const beam = /class="beam" d="M([\d.]+) ([\d.]+)/.exec(svg);
  assert.ok(Number(area[2]) < Number(beam[2]) - 20);
});

test('a drawing that cannot be written: exit 2', async () => {
  const done = await view('--svg', join(folder, 'no', 'such', 'x'), cantilever);
  assert.equal(done.status, 2);
});
