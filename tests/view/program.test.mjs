// The program: options, files, and what a page says of a deck with mistakes.

import assert from 'node:assert/strict';
import {chmodSync, mkdirSync, readdirSync, readFileSync, writeFileSync} from 'node:fs';
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

test('"--" ends the options', async () => {
  const page = await view('--', cantilever);
  assert.equal(page.status, 0);
  assert.match(page.stdout, /^<!DOCTYPE html>/);
});

test('-v: the solver\'s words on standard error; -q: errors alone', async () => {
  const loud = await view('-v', '--solver', 'skyline', cantilever);
  assert.match(loud.stderr, /^\nINFORMATION ABOUT STIFFNESS MATRIX\nSky matrix storage with Txolesky\n/);
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

test('nothing is written beside the deck', async () => {
  const place = join(folder, 'read-only');
  mkdirSync(place);
  writeFileSync(join(place, 'model.dat'), readFileSync(cantilever));
  await pageOf(join(place, 'model.dat'));
  assert.deepEqual(readdirSync(place), ['model.dat']);
  chmodSync(place, 0o755);
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

test('the text of a large deck keeps the ends of its lists, and says how many lines it leaves out', async () => {
  const lines = readFileSync(cantilever, 'latin1').split('\n'), at = lines.findIndex((l) => l.includes('nodal_point'));
  const loads = Array.from({length: 20_000}, (_, k) => `  2  0 ${k % 7} 0`);
  lines.splice(at + 1, 1, ...loads);
  const done = await view(deckOf(lines.join('\n'), 'long.dat'));
  assert.equal(done.status, 0);
  const [, json] = /<script type="application\/json" id="kestol-model">\n(.*?)\n<\/script>/s.exec(done.stdout);
  const {text, omittedLines, title} = JSON.parse(json);
  assert.equal(omittedLines, 20_000 - 10);
  assert.equal(title, 'cantilever');
  assert.equal(text, [...lines.slice(0, at + 6), '  ... 19990 lines ...', ...lines.slice(at + 20_000 - 4)].join('\n'));
});
