// What pages draw, symbol by symbol and square by square, against pictures/*.txt, which were looked at
// as pictures. KESTOL_KEEP_PICTURES=1 writes them anew.

import assert from 'node:assert/strict';
import {readFileSync, writeFileSync} from 'node:fs';
import {basename, join} from 'node:path';
import {after, before, test} from 'node:test';

import {drawnOn, frame, keeping} from './drawn.mjs';
import {deckOf, example, open, openBrowser, pageOf, verification} from './support.mjs';

/** @type {import('playwright-core').Browser} */ let browser;
before(async () => { browser = await openBrowser(); });
after(() => browser.close());

const {KESTOL_SOURCE, KESTOL_KEEP_PICTURES} = process.env;

const UNITS = `units_names
  kN-m  kN  m   kPa  1     1
end
units_mesh          m
units_mat_and_load  kN-m
units_res           kN-m
`;

/** Beams with every kind of support and load of the plane. */
const PLANE = `PROBLEM supports and loads of the plane
TYPE 2d
${UNITS}mesh
  dimension = 2   elemtype Linear   nnode = 2
  coordinates
    1  0 0
    2  0 3
    3  4 3
    4  8 3
    5  8 0
    6  12 3
    7  16 3
    8  16 6
    9  0 6
  end coordinates
  elements
    1  1 2  1
    2  2 3  1
    3  3 4  1
    4  4 5  1
    5  4 6  1
    6  6 7  1
    7  7 8  1
    8  2 9  1
  end elements
materials
  1  E=2e8 A=1e-2 Iz=2e-4
end materials
constraints
  1  111  0 0 0
  5  110  0 -0.01 0
  6  010  0 0 0  Euler3=0.3
  8  102  0 0 500
  7  020  0 800 0
  9  101  0 0 0
  3  002  0 0 300
end constraints
rotules
  4
end rotules
nodal_point_loads
  2  12 0 0
  3  0 -20 15
  6  0 0 -8
end nodal_point_loads
global_pressure_loads
  2  0 -6
  7  0 -4
end global_pressure_loads
global_projected_pressure_loads
  5  0 -3
end global_projected_pressure_loads
local_pressure_loads
  1  0 -2
  6  3 0
end local_pressure_loads
`;

/** Beams, a shell and supports of every kind in space. */
const SPACE = `PROBLEM supports and loads in space
TYPE 3d
${UNITS}mesh
  dimension = 3   elemtype Triangle   nnode = 3
  coordinates
    1  0 0 0
    2  3 0 0
    3  3 2 0.5
    4  0 2 0.5
    5  3 0 3
    6  6 0 0
    7  6 2 0
  end coordinates
  elements
    1  1 2 3  1
    2  1 3 4  1
  end elements
mesh
  dimension = 3   elemtype Linear   nnode = 2
  coordinates
  end coordinates
  elements
    3  2 5  2
    4  2 6  2
    5  6 7  2
    6  5 6  2
  end elements
materials
  1  E=2e8 nu=0.3 G=8e7 t=0.1
  2  E=2e8 G=8e7 A=1e-2 Iy=1e-4 Iz=2e-4 J=1e-4  Weight=80
end materials
GravityDirection 0 0 -1
constraints
  1  111111  0 0 0 0 0 0
  4  111000  0 0 -0.02 0 0 0
  6  002020  0 0 400 0 90 0
  7  101101  0 0 0 0 0 0  Euler3=0.4
  5  010000  0 0.01 0 0 0 0
end constraints
nodal_point_loads
  5  10 0 0 0 0 6
  3  0 0 -5 4 0 0
end nodal_point_loads
global_pressure_loads
  1  0 0 -5
  4  0 0 -3
  6  2 0 0
end global_pressure_loads
global_projected_pressure_loads
  3  1.5 0 0
end global_projected_pressure_loads
local_pressure_loads
  2  0 0 -4
  5  0 2 1
end local_pressure_loads
face_loads
  2  1  0 3 0
end face_loads
`;

const key = (/** @type {string} */ name) => (/** @type {any} */ page) => page.keyboard.press(name);
const pressing = (/** @type {string} */ name) => (/** @type {any} */ page) =>
  page.getByRole('button', {name, exact: true}).click();
const quantity = (/** @type {string} */ id) => (/** @type {any} */ page) =>
  page.getByLabel('Quantity').selectOption(id);
const chosen = (/** @type {string} */ kind, /** @type {number} */ number) => (/** @type {any} */ page) =>
  page.evaluate(([k, n]) => window.kestol.select(k, n), [kind, number]);
const ticked = (/** @type {string} */ name, on = true) => (/** @type {any} */ page) =>
  page.getByLabel(name, {exact: true}).setChecked(on);

/** Two tetrahedra with loads on faces that look at the eye, away from it, and on their volume. */
const SOLIDS = `PROBLEM loads on solids
TYPE 3d
mesh
  dimension = 3   elemtype Tetrahedra   nnode = 4
  coordinates
    1  0 0 0
    2  2 0 0
    3  0 2 0
    4  0 0 2
    5  2 2 2
  end coordinates
  elements
    1  1 2 3 4  1
    2  2 3 4 5  1
  end elements
materials
  1  E=2e8 nu=0.3
end materials
constraints
  1  111  0 0 0
  2  111  0 0 0
  3  111  0 0 0
end constraints
global_pressure_loads
  2  -1  0 0 -3
end global_pressure_loads
face_loads
  1  0  0 0 5
  1  3  0 4 0
  2  2  -2 0 0
  2  3  0 3 0
end face_loads
`;

/** For what lies under the frame of the picture. @param {string} name */
const showing = (name) => (/** @type {any} */ page) => page.evaluate((text) => {
  [...document.querySelectorAll('#sheet button')].find((b) => b.textContent === text).click();
}, name);

/** A beam whose last hinges leave parts of it loose, from its first node on. */
const LOOSE = `PROBLEM loose ends
TYPE 2d
mesh
  dimension = 2   elemtype Linear   nnode = 2
  coordinates
    1  0 0
    2  3 0
    3  6 0
    4  8 1
  end coordinates
  elements
    1  1 2  1
    2  2 3  1
    3  3 4  1
  end elements
materials
  1  E=2e8 A=1e-2 Iz=2e-4
end materials
constraints
  2  110  0 0 0
end constraints
rotules
  2
  3
end rotules
nodal_point_loads
  4  0 -1 0
end nodal_point_loads
`;

/** Decks that are no models: the page tells of them with this status. */
const STATUS = {loose: 1};

/** @type {[string, () => string, object, [string, ((page: any) => Promise<any>)[]][]][]} */
const PICTURES = [
  ['plane', () => deckOf(PLANE, 'plane.dat'), {}, [
    ['deformed', []],
    ['the model with its axes and numbers', [pressing('Model'), key('a'), ticked('element numbers')]],
    ['bending moments', [key('a'), pressing('M'), chosen('element', 3), key('.')]],
    ['shear forces, larger', [pressing('V'), key(']'), chosen('node', 3)]],
    ['reactions of the moved model', [pressing('Deformed'), key('r'), key('l'), quantity('uy'), key('['),
                                      key('Shift+ArrowLeft'), key('+')]]]],
  ['space', () => deckOf(SPACE, 'space.dat'), {}, [
    ['deformed', []],
    ['the model from another side', [pressing('Model'), pressing('right'), key('a'), ticked('element numbers')]],
    ['bending moments about z, turned', [key('a'), quantity('Mz'), pressing('iso'), key('ArrowRight'), key('ArrowUp'),
                                         chosen('element', 6)]],
    ['moments of the shell with main directions', [quantity('m1'), key('x'), key('r'), chosen('element', 1)]],
    ['from above', [pressing('top'), quantity('mises-top'), key('s'), ticked('average at nodes', false)]]]],
  ['hinged', () => verification('B07-three-hinged-portal.dat'), {colorScheme: 'dark'}, [
    ['in the dark', [pressing('N')]]]],
  ['loose', () => deckOf(LOOSE, 'loose.dat'), {}, [
    ['its first mode', []],
    ['its second mode', [showing('Show mode 2')]],
    ['its third mode', [showing('Show mode 3')]]]],
  ['folded', () => example('13-folded-plate.dat'), {}, [
    ['displacements', [key('r')]],
    ['stresses below', [quantity('s1-bottom'), key('b'), key('r')]],
    ['cut', [quantity('nx'), (page) => page.getByLabel('across').selectOption('y')]]]],
  ['solid', () => example('20-solid-cantilever.dat'), {}, [
    ['a section through stresses', [quantity('sxx'), (page) => page.getByLabel('across').selectOption('x'), key('x')]],
    ['its other side', [quantity('mises'), ticked('other side'), key('x'), chosen('element', 5)]],
    ['from the left', [pressing('left'), (page) => page.getByLabel('across').selectOption(''), key('b')]]]],
  ['solids', () => deckOf(SOLIDS, 'solids.dat'), {}, [
    ['loads on faces', [pressing('front')]],
    ['loads on faces from behind', [pressing('back'), quantity('s1'), key('x')]]]],
  ['block', () => example('18-block-under-own-weight.dat'), {}, [
    ['displacements and weight', [key('r')]],
    ['between limits', [quantity('szz'), (page) => page.getByLabel('from', {exact: true}).fill('-2'),
                        (page) => page.getByLabel('from', {exact: true}).blur(), key('d')]]]],
];

const COORDINATE = /(?<=[ ,])-?\d+\.\d(?![\w"])/g;

/** Whether a line says the same, its places within a fifth of a pixel and its colours within `8/255`. */
function same(line, wanted) {
  if (line === wanted) return true;
  const quoted = /"[^"]*"/g, rest = (/** @type {string} */ s) => s.replace(quoted, '""');
  if (String(line.match(quoted)) !== String(wanted.match(quoted))) return false;
  const [a, b] = [rest(line), rest(wanted)];
  if (/^(\.|[0-9a-f]{8})( |$)/.test(b)) return sameSquares(a, b);
  const [p, q] = [a, b].map((s) => (s.match(COORDINATE) ?? []).map(Number));
  return a.replace(COORDINATE, '') === b.replace(COORDINATE, '') && p.length === q.length &&
         p.every((v, k) => Math.abs(v - q[k]) < 0.25);
}

function sameSquares(line, wanted) {
  const [a, b] = [line, wanted].map((s) => s.split(' '));
  const parts = (/** @type {string} */ s) => (s === '.' ? [0, 0, 0, 0]
    : [0, 2, 4, 6].map((k) => parseInt(s.slice(k, k + 2), 16)));
  return a.length === b.length && a.every((square, k) => {
    const other = parts(b[k]);
    return parts(square).every((v, c) => Math.abs(v - other[c]) <= 8);
  });
}

for (const [name, deck, options, states] of PICTURES)
  test(`${name}: its pictures`, async () => {
    const context = await keeping(browser, options);
    const page = await open(context, await pageOf(deck(), {status: STATUS[name] ?? 0}));
    await frame(page);
    await page.keyboard.press('0');
    const file = join(KESTOL_SOURCE, 'tests/view/pictures', `${basename(name)}.txt`), lines = [];
    for (const [state, actions] of states) {
      for (const act of actions) await act(page);
      lines.push(`== ${state}`, ...await drawnOn(page));
      if (KESTOL_KEEP_PICTURES) await page.screenshot({path: join(KESTOL_KEEP_PICTURES, `${name}-${states.findIndex(([s]) => s === state)}.png`)});
    }
    assert.deepEqual(page.noise, []);
    await page.close();
    if (KESTOL_KEEP_PICTURES) writeFileSync(file, lines.join('\n') + '\n');
    const wanted = readFileSync(file, 'utf8').trimEnd().split('\n');
    const other = lines.findIndex((line, k) => !same(line, wanted[k] ?? ''));
    assert.equal(other < 0 ? '' : lines[other], other < 0 ? '' : wanted[other], `line ${other + 1}`);
    assert.equal(lines.length, wanted.length);
  });

/** A row of beams on so many rollers. @param {number} n */
const onRollers = (n) => {
  const rows = (/** @type {(k: number) => string} */ row, from = 1) =>
    Array.from({length: n + 1 - from}, (_, k) => `${row(k + from)}\n`).join('');
  return 'PROBLEM row\nTYPE 2d\nmesh dimension = 2 elemtype Linear nnode = 2\n' +
    `coordinates\n${rows((k) => `${k} ${k} 0`)}end coordinates\n` +
    `elements\n${rows((k) => `${k - 1} ${k - 1} ${k} 1`, 2)}end elements\n` +
    'materials\n1 E=2e11 A=1e-2 Iz=1e-5\nend materials\n' +
    `constraints\n${rows((k) => `${k} ${k === 1 ? 110 : '010'} 0 0 0`)}end constraints\n`;
};

test('the symbols of more than 60 supports are smaller', async () => {
  const context = await keeping(browser);
  for (const [count, width, height] of [[60, '1.5', 13], [61, '1.1', 9]]) {
    const page = await open(context, await pageOf(deckOf(onRollers(count), `rollers${count}.dat`)));
    const lines = await drawnOn(page), triangles = lines.filter((line) => line.startsWith(`stroke ${width} M`) && line.includes(' Z '));
    assert.ok(triangles.length > 20, `${triangles.length} triangles of ${count}`);
    const [, top, foot] = /M [-\d.]+ ([-\d.]+) L [-\d.]+ ([-\d.]+)/.exec(triangles[3]).map(Number);
    assert.ok(Math.abs(foot - top - height) < 0.25, `${count}: ${foot - top}`);
    await page.close();
  }
});

test('a mode swings to and fro within 2.2 seconds', async () => {
  const context = await browser.newContext({viewport: {width: 1280, height: 800}});
  await context.clock.install();
  const page = await open(context, await pageOf(deckOf(LOOSE, 'swings.dat'), {status: 1}));
  await page.clock.pauseAt(Date.now() + 60_000);
  const at = [];
  for (let k = 0; k < 6; ++k) {
    at.push(await page.evaluate(() => [1, 4].map((n) => window.kestol.screen('node', n)).flatMap(({x, y}) => [x, y])));
    await page.clock.runFor(550);
  }
  const middle = at[0].map((v, k) => (v + at[2][k]) / 2);
  const swing = (/** @type {number} */ t) => at[t].map((v, k) => v - middle[k]);
  assert.ok(Math.hypot(...swing(0), ...swing(1)) > 15, JSON.stringify(at));
  for (const t of [0, 1, 2, 3])
    swing(t).forEach((v, k) => assert.ok(Math.abs(v + (at[t + 2][k] - middle[k])) < 2.5, JSON.stringify(at)));
  await page.close();
});
