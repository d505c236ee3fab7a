// The drawings of --svg.

import assert from 'node:assert/strict';
import {existsSync, readFileSync} from 'node:fs';
import {join} from 'node:path';
import {after, before, test} from 'node:test';

import {deckOf, example, folder, openBrowser, verification, view} from './support.mjs';

/** @type {import('playwright-core').Browser} */ let browser;
before(async () => { browser = await openBrowser(); });
after(() => browser.close());

const cantilever = example('01-cantilever.dat');
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
  assert.match(text[0], /class="m loadtext"[^>]*>10000</);
});

test('--help names the drawings', async () => {
  const [, line] = /--svg PREFIX +(.*)/.exec((await view('--help')).stdout);
  assert.deepEqual([...line.matchAll(/_(\w+)\.svg/g)].map(([, name]) => name), drawings);
});

test('--cases goes without --svg: help, guide and manual page say so', async () => {
  const read = (/** @type {string} */ name) => readFileSync(example(`../docs/${name}`), 'utf8');
  assert.match((await view('--help')).stdout, /--cases COMBINATIONS\.toml .*; not with --svg\n/);
  assert.match(read('view.md'), /\| `--cases FILE\.toml` \|.*; not with `--svg`/);
  assert.match(read('man/kestol-view.1'), /\n\.BI \\-\\-cases (?:(?!\n\.TP\n).)*\nNot with\n\.BR \\-\\-svg ,\n/s);
});

test('the first picture of the README is what the program draws', async () => {
  const prefix = join(folder, 'readme');
  await view('--solver', 'skyline', '--svg', prefix, example('portal/portal.dat'));
  assert.equal(readFileSync(`${prefix}_M.svg`, 'utf8'),
               readFileSync(example('../docs/view/portal-moments.svg'), 'utf8'));
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

/** Title and heading of each drawing, and "none" in place of a heading. */
const headings = (/** @type {string} */ prefix, /** @type {string[]} */ which) => which.map((name) => {
  const svg = readFileSync(`${prefix}_${name}.svg`, 'utf8');
  const [, title] = /<title>([^<]*)<\/title>/.exec(svg), heading = /class="title"[^>]*>([^<]*)</.exec(svg);
  return [title, heading ? heading[1] : 'none'];
});

for (const [deck, moved, ...diagrams] of [
  ['portal/portal', 'Deformed shape, × 100; largest displacement 0.006323 m', 'Axial force N [kN], tension positive',
   'Shear force V [kN]', 'Bending moment M [kN m], drawn on the tension side'],
  ['01-cantilever', 'Deformed shape, × 50; largest displacement 0.0045', 'Axial force N, tension positive: 0 everywhere',
   'Shear force V', 'Bending moment M, drawn on the tension side'],
  ['06-space-frame', 'Deformed shape, × 5; largest displacement 0.06258',
   'Axial force N, tension positive: 0 everywhere', 'Shear force V (Vy, Vz)',
   'Bending moment M (My, Mz), drawn on the tension side'],
  ['17-bar-in-tension', 'Deformed shape, × 20000; largest displacement 1.022e−5']])
  test(`headings of the drawings of ${deck}`, async () => {
    const prefix = join(folder, 'headed');
    await view('--svg', prefix, example(`${deck}.dat`));
    const wanted = [['Model with supports and loads', 'none'], ['Deformed shape', moved],
                    ...diagrams.map((heading) => [heading, heading])];
    assert.deepEqual(headings(prefix, drawings.slice(0, wanted.length)), wanted);
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
