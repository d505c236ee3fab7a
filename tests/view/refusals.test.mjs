// Every refusal in its words, with its status, and no file that was not there before.

import assert from 'node:assert/strict';
import {execFileSync, spawnSync} from 'node:child_process';
import {copyFileSync, cpSync, linkSync, openSync, readdirSync, readFileSync} from 'node:fs';
import {join} from 'node:path';
import {before, test} from 'node:test';

import {deckOf, example, folder, view} from './support.mjs';

const {KESTOL_VIEW} = process.env;

before(() => {
  copyFileSync(example('01-cantilever.dat'), join(folder, 'deck.dat'));
  linkSync(join(folder, 'deck.dat'), join(folder, 'y_M.svg'));
  cpSync(example('combinations'), join(folder, 'cases'), {recursive: true});
});

const told = (/** @type {string} */ text) => `kestol-view: error: ${text}\n`;

const names = () => [folder, join(folder, 'cases')].map((place) => readdirSync(place));

/** @param {string[]} args */
async function refused(args, /** @type {string} */ words, status = 2) {
  const there = names();
  const done = await view(...args);
  assert.deepEqual([done.status, done.stderr, done.stdout], [status, words, '']);
  assert.deepEqual(names(), there);
}

for (const [line, words] of [
  ['', 'DECK is required'],
  ['--', 'DECK is required'],
  ['--colour deck.dat', 'unknown option --colour'],
  ['--colour -- deck.dat', 'unknown option --colour'],
  ['deck.dat more.dat', 'The following argument was not expected: more.dat'],
  ['deck.dat --svg', '--svg: 1 required PREFIX missing'],
  ['--tables few deck.dat', '--tables: few is none of all, none, supports'],
  ['--solver fast deck.dat', '--solver: fast is none of deck, direct, skyline, sparse'],
  ['--max-triangles 0 deck.dat', '--max-triangles: 0 is not a number above 0'],
  ['--max-triangles many deck.dat', '--max-triangles: many is not a number above 0'],
  ['--cases cases/frame.toml --svg x deck.dat', '--svg draws the loads of the deck: leave --cases out']])
  test(`command line: ${words}`, () =>
    refused(line.split(' ').filter(Boolean), `kestol-view: ${words}; try kestol-view --help\n`));

test('behind "--" stands one deck', async () => {
  for (const [words, told] of [
         [['--more.dat'], 'argument was not expected: --more.dat'],
         [['--', 'a'], 'arguments were not expected: -- a'],
         [['-b', 'a'], 'arguments were not expected: -b a']])
    await refused(['deck.dat', '--', ...words], `kestol-view: The following ${told}; try kestol-view --help\n`);
});

test('a terminal gets no page', () => {
  const script = 'import pty, sys; sys.exit(pty.spawn(sys.argv[1:]) >> 8)';
  const done = spawnSync('python3', ['-c', script, KESTOL_VIEW, 'deck.dat'], {cwd: folder, encoding: 'utf8'});
  assert.deepEqual([done.status, done.stdout],
                   [2, 'kestol-view: name the page: -o FILE.html; try kestol-view --help\r\n']);
});

test('a deck that cannot be read: exit 2 and no page', async () => {
  deckOf('', 'empty.dat');
  deckOf('PROBLEM a\0b', 'binary.dat');
  for (const [deck, words] of [['none.dat', 'can\'t open file none.dat: No such file or directory'],
                               ['.', 'can\'t open file .: Is a directory'],
                               ['/proc/self/mem', 'failed reading /proc/self/mem: Input/output error'],
                               ['empty.dat', 'empty.dat is empty'],
                               ['binary.dat', 'binary.dat is not a text file']])
    await refused(['-o', 'none.html', deck], told(words));
});

test('nothing to draw: exit 2, behind what is wrong with the deck', async () => {
  deckOf('PROBLEM empty\nTYPE 2d\n', 'nothing.dat');
  const nothing = await view('nothing.dat');
  assert.deepEqual([nothing.status, nothing.stdout], [2, '']);
  assert.equal(nothing.stderr, 'nothing.dat: error: it is necessary at least one mesh [syntax]\n' +
               told('there is nothing to draw'));
  deckOf('PROBLEM empty\nTYPE 2d\nmesh\nfoo\n', 'word.dat');
  await refused(['word.dat'], 'word.dat:4:1: error: "foo" is not known: did you mean "dimension"? [unknown-word]\n' +
                `    4 | foo\n      | ^~~\n${told('there is nothing to draw')}`);
});

test('more triangles than allowed: exit 2 and how many', async () => {
  copyFileSync(example('12-plate-under-pressure.dat'), join(folder, 'plate.dat'));
  await refused(['--max-triangles', '575', 'plate.dat'],
                told('the picture would have 576 triangles: raise --max-triangles to draw it'));
  assert.equal((await view('--max-triangles', '576', 'plate.dat')).status, 0);
});

test('what is wrong with the model is told, above the page: exit 1', async () => {
  const text = readFileSync(join(folder, 'deck.dat'), 'latin1');
  deckOf(text.replace('  111 ', '  110 '), 'loose.dat');
  deckOf(text.replace('A=1e-2', 'colour='), 'wrong.dat');
  for (const [deck, words] of [
    ['loose.dat', ': error: the supports leave the model a rigid motion [rigid-motion]\n' +
                  '  mode 1: nodes 1 and 2 turn about z at (0, 0)\n    supports at node 1 (line 32)\n'],
    ['wrong.dat', ':28:13: error: "colour" is not known [unknown-word]\n' +
                  '   28 |   1  E=2e11 colour= Iz=1e-5\n      |             ^~~~~~\n']])
    for (const options of [[], ['-q'], ['--solver', 'skyline']]) {
      const done = await view(...options, deck);
      assert.deepEqual([done.status, done.stderr], [1, deck + words]);
      assert.match(done.stdout, /^<!DOCTYPE html>/);
    }
});

test('--cases: a file that is not for this deck, that cannot be read, or that has mistakes', async () => {
  deckOf('model = "deck.dat"\n[cases.G]\nloads = "modl"\n', 'mistake.toml');
  for (const [file, words] of [
    ['cases/frame.toml', told('cases/frame.toml is for the model cases/frame.dat, not for deck.dat')],
    ['none.toml', told('can\'t open file none.toml: No such file or directory')],
    ['.', told('can\'t open file .: Is a directory')],
    ['/proc/self/mem', told('failed reading /proc/self/mem: Input/output error')],
    ['mistake.toml', 'mistake.toml:3:9: error: can\'t open file modl: No such file or directory [file]\n' +
                     '    3 | loads = "modl"\n      |         ^~~~~~\n']])
    await refused(['--cases', file, '-o', 'cases.html', 'deck.dat'], words);
});

test('--cases: what a case says wrongly, at its line', async () => {
  deckOf('model = "deck.dat"\n[cases.G]\nloads = "model"\n[cases.W]\nloads = "wind.dat"\n', 'wind.toml');
  deckOf('rotules\n 2\nend\n', 'wind.dat');
  await refused(['--cases', 'wind.toml', '-o', 'cases.html', 'deck.dat'],
                'wind.dat:1: error: \'rotules\' does not belong in a load case, which holds load sections, ' +
                'constraints with settlements and units keywords [syntax]\n    1 | rotules\n');
});

test('--cases: a loaded beam that is hinged at its first node is told, above a page without results', async () => {
  const text = `${readFileSync(example('02-portal-frame.dat'), 'latin1')}\nrotules\n2\nend\n`;
  const load = 'global_pressure_loads\n2 0 -1\nend\n';
  const line = text.slice(0, text.indexOf('    2  2 3')).split('\n').length;
  const words = 'element 2 is loaded and hinged at its first node 2: write "3 2"';
  deckOf(load, 'load.dat');
  for (const [deck, loads] of [[text + load, 'model'], [text, 'load.dat']]) {
    deckOf(deck, 'hinged.dat');
    deckOf(`model = "hinged.dat"\n[cases.G]\nloads = "${loads}"\n`, 'hinged.toml');
    const done = await view('--cases', 'hinged.toml', 'hinged.dat');
    assert.deepEqual([done.status, done.stderr],
                     [1, `hinged.dat:${line}:5: error: ${words} [hinge-first]\n` +
                         `${String(line).padStart(5)} | ${text.split('\n')[line - 1]}\n      |     ^\n`]);
    const page = JSON.parse(/id="kestol-model">(.*?)<\/script>/s.exec(done.stdout)?.[1] ?? '');
    const told = page.findings.filter((/** @type {{code: string}} */ f) => f.code === 'hinge-first');
    assert.deepEqual(told.map((/** @type {any} */ f) => [f.severity, f.line, f.column, f.text, f.elements]),
                     [['error', line, 5, words, [2]]]);
    assert.deepEqual(page.cases.map((/** @type {{name: string}} */ c) => c.name), ['loads of the deck']);
  }
});

test('--cases: a page holds at most 1000 combinations', async () => {
  const head = 'model = "deck.dat"\n[cases.G]\nloads = "model"\n[combinations]\n';
  const combinations = Array.from({length: 1001}, (_, k) => `C${k} = { G = ${k} }\n`);
  deckOf(head + combinations.join(''), 'many.toml');
  await refused(['--cases', 'many.toml', '-o', 'cases.html', 'deck.dat'],
                told('many.toml gives 1001 combinations: a page holds at most 1000'));
  deckOf(head + combinations.slice(1).join(''), 'many.toml');
  assert.equal((await view('--cases', 'many.toml', 'deck.dat')).status, 0);
});

test('an output on a file that is read', async () => {
  const text = readFileSync(join(folder, 'deck.dat'));
  await refused(['-o', 'deck.dat', 'deck.dat'], told('the output deck.dat is the input deck.dat'));
  await refused(['--svg', 'y', 'deck.dat'], told('the output y_M.svg is the input deck.dat'));
  assert.deepEqual(readFileSync(join(folder, 'deck.dat')), text);
  for (const name of ['frame.toml', 'snow.dat', 'frame.dat']) {
    const file = `cases/${name}`, before = readFileSync(join(folder, file));
    await refused(['--cases', 'cases/frame.toml', '-o', file, 'cases/frame.dat'],
                  told(`the output ${file} is the input ${file}`));
    assert.deepEqual(readFileSync(join(folder, file)), before);
  }
});

test('outputs of one name', () =>
  refused(['--svg', 'x', '-o', 'x_N.svg', 'deck.dat'], told('two outputs have the name x_N.svg')));

test('outputs that cannot be written', async () => {
  await refused(['-o', 'no/page', 'deck.dat'], told('can\'t open file no/page: No such file or directory'));
  await refused(['--svg', 'no/x', 'deck.dat'], told('can\'t open file no/x_model.svg: No such file or directory'));
  await refused(['-o', '/dev/full', 'deck.dat'], told('failed writing to /dev/full: No space left on device'));
  const full = openSync('/dev/full', 'w');
  for (const argument of ['deck.dat', '--help', '--version'])
    assert.throws(() => execFileSync(KESTOL_VIEW, [argument], {cwd: folder, stdio: ['ignore', full, 'pipe']}),
                  {status: 2, stderr: Buffer.from(told('failed writing to standard output: No space left on device'))});
});
