// The program: options, refusals, files and drawings.

import assert from 'node:assert/strict';
import {chmodSync, cpSync, existsSync, mkdirSync, readdirSync, readFileSync, writeFileSync} from 'node:fs';
import {join} from 'node:path';
import {after, before, test} from 'node:test';

import {checked, deckOf, example, folder, open, openBrowser, pageOf, verification, view} from './support.mjs';

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

for (const [name, args, words = ''] of [['an unknown option', ['--colour', cantilever]], ['no deck', []],
                            ['no table of that name', ['--tables', 'few', cantilever],
                             '--tables: few is none of all, none, supports'],
                            ['no solver of that name', ['--solver', 'fast', cantilever],
                             '--solver: fast is none of deck, direct, skyline, sparse'],
                            ['no positive number', ['--max-triangles', '0', cantilever],
                             '--max-triangles: 0 is not a number above 0']])
  test(`${name}: exit 2, one line and a hint`, async () => {
    const done = await view(...args);
    assert.equal(done.status, 2);
    assert.match(done.stderr, /^kestol-view: [^\n]*try kestol-view --help\n$/);
    assert.ok(done.stderr.includes(words), done.stderr);
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

/** A shell, then a beam at its corner, on a spring. */
const MIXED = `PROBLEM beam beside a plate
TYPE 3d
units_names
  kN-m  kN  m   kPa  1     1
end
units_mesh          m
units_mat_and_load  kN-m
units_res           kN-m
mesh
  dimension = 3   elemtype Triangle   nnode = 3
  coordinates
    1  0 0 0
    2  2 0 0
    3  0 2 0
    4  4 0 0
  end coordinates
  elements
    1  1 2 3  1
  end elements
mesh
  dimension = 3   elemtype Linear   nnode = 2
  coordinates
  end coordinates
  elements
    2  2 4  2
  end elements
materials
  1  E=2e8 nu=0.3 G=8e7 t=0.1
  2  E=2e8 G=8e7 A=1e-2 Iy=1e-5 Iz=1e-5 J=1e-5
end materials
constraints
  1  111111  0 0 0 0 0 0
  3  111111  0 0 0 0 0 0
  4  002000  0 0 400 0 0 0
end constraints
global_pressure_loads
  1  0 0 -5
  2  0 0 -3
end global_pressure_loads
`;

/** One drawing of a deck. */
async function drawing(deck, name) {
  const prefix = join(folder, `drawn-${Math.random().toString(36).slice(2)}`);
  await view('--svg', prefix, deck);
  return readFileSync(`${prefix}_${name}.svg`, 'utf8');
}

const countOf = (/** @type {string} */ svg, /** @type {string} */ style) =>
  svg.split(`<path class="${style}"`).length - 1;

/** Words with their place and about their width. */
const wordsOf = (/** @type {string} */ svg) =>
  [...svg.matchAll(/<text class="m ([^"]*)" x="([\d.]+)" y="([\d.]+)">([^<]*)</g)].map(
    ([, style, x, y, text]) => ({style, x: Number(x), y: Number(y), text, half: 3.5 * text.length + 2}));

test('a drawing changes its colour where the value is 0, also right at a station', async () => {
  // V of the last beam is 0 in its middle, which is a station.
  const svg = await drawing(verification('B06-gerber-beam.dat'), 'V');
  assert.deepEqual([countOf(svg, 'plus'), countOf(svg, 'minus')], [3, 2]);
});

test('words of a drawing stand clear of the supports', async () => {
  const svg = await drawing(verification('B12-three-spans-with-settlements.dat'), 'V');
  const supports = [...svg.matchAll(/class="support" d="M([\d.]+) ([\d.]+)L/g)].map(
    ([, x, y]) => [Number(x), Number(y)]);
  assert.equal(supports.length, 4);
  const words = wordsOf(svg).filter(({style}) => /plus|minus/.test(style));
  assert.ok(words.some(({text}) => text === '−1.181'), 'the small value too');
  for (const {x, y, half, text} of words)
    for (const [sx, sy] of supports)
      assert.ok(Math.abs(x - sx) > half + 8 || y + 7 < sy || y - 7 > sy + 18, text);
});

test('a drawing without values says so; rounding is none', async () => {
  for (const [deck, name] of [['B06-gerber-beam.dat', 'N'], ['B08-truss.dat', 'M']]) {
    const svg = await drawing(verification(deck), name);
    assert.match(svg, /class="title"[^>]*>[^<]*: 0 everywhere</);
    assert.deepEqual([countOf(svg, 'plus'), countOf(svg, 'minus')], [0, 0]);
  }
});

test('a drawing of the model names settlements, springs and loads, each in its unit', async () => {
  const settled = wordsOf(await drawing(verification('B12-three-spans-with-settlements.dat'), 'model'));
  assert.deepEqual(settled.filter(({style}) => style === 'supporttext').map(({text}) => text),
                   ['uy −0.625', 'uy −1.5', 'uy −0.75']);
  const loads = wordsOf(await drawing(verification('B10-cross.dat'), 'model'));
  assert.ok(loads.some(({style, text}) => style === 'loadtext' && text === '100000'));
  // A shell comes first, then a beam; each load has the unit of what it is spread over.
  const mixed = wordsOf(await drawing(deckOf(MIXED, 'mixed.dat'), 'model'));
  assert.deepEqual(mixed.filter(({style}) => style === 'loadtext').map(({text}) => text).sort(),
                   ['3 kN/m', '5 kN/m²']);
  assert.ok(mixed.some(({style, text}) => style === 'supporttext' && text === 'k uz 400'));
});

test('supports of a deformed drawing move with what they hold', async () => {
  const svg = await drawing(verification('B12-three-spans-with-settlements.dat'), 'deformed');
  const tops = [...svg.matchAll(/class="support" d="M[\d.]+ ([\d.]+)L/g)].map(([, y]) => Number(y));
  const sunk = tops.map((y) => y - tops[0]);
  assert.ok(sunk[2] > 10, tops.join(' '));
  for (const [k, part] of [0, 0.625, 1.5, 0.75].entries())
    assert.ok(Math.abs(sunk[k] - (part / 1.5) * sunk[2]) < 0.3, tops.join(' '));
});

test('a deformed drawing holds the moved model clear of its heading, and its outline at rest', async () => {
  const ring = await drawing(verification('B20-ring-across.dat'), 'deformed');
  const ys = [...ring.matchAll(/class="moved" d="([^"]*)"/g)].flatMap(([, path]) =>
    [...path.matchAll(/[\d.]+ ([\d.]+)/g)].map(([, y]) => Number(y)));
  assert.ok(Math.min(...ys) > 40, `the highest point is at ${Math.min(...ys)}`);
  // A bar of 12 x 2 x 1 cells: 12 along each of its four edges, 2 (2 + 1) around each end.
  const bar = await drawing(verification('T06-cantilever-ten-12-z.dat'), 'deformed');
  assert.equal(countOf(bar, 'ghost'), 4 * 12 + 2 * 6);
});

test('a drawing of a support at the top of a column hangs', async () => {
  const svg = await drawing(verification('B10-cross.dat'), 'model');
  const [, , top, , foot] = /class="support" d="M([\d.]+) ([\d.]+)L([\d.]+) ([\d.]+)/.exec(svg).map(Number);
  assert.ok(foot < top, 'the foot of the only pin lies above it');
});

test('a drawing that cannot be written: exit 2', async () => {
  const done = await view('--svg', join(folder, 'no', 'such', 'x'), cantilever);
  assert.equal(done.status, 2);
});
