// What the tests share: the programs, a browser, and pages in it.

import {execFile} from 'node:child_process';
import {mkdirSync, mkdtempSync, readFileSync, rmSync, writeFileSync} from 'node:fs';
import {tmpdir} from 'node:os';
import {basename, join} from 'node:path';
import {pathToFileURL} from 'node:url';
import {promisify} from 'node:util';

import {chromium} from 'playwright-core';

const run = promisify(execFile);
const {KESTOL_VIEW, KESTOL_CHECK, KESTOL_EXPORT, KESTOL_COMBINE, KESTOL_SOURCE, CHROMIUM,
       KESTOL_PAGE_SCRIPT, KESTOL_PAGE_COVERAGE} = process.env;

export const folder = mkdtempSync(join(tmpdir(), 'kestol-view-'));
process.on('exit', () => rmSync(folder, {recursive: true, force: true}));

export const example = (/** @type {string} */ name) => join(KESTOL_SOURCE, 'examples', name);
export const verification = (/** @type {string} */ name) =>
  join(KESTOL_SOURCE, 'verification/decks', name);

/** Runs kestol-view; gives its status and what it wrote. */
export async function view(...args) {
  try {
    const {stdout, stderr} = await run(KESTOL_VIEW, args, {maxBuffer: 1 << 28, cwd: folder});
    return {status: 0, stdout, stderr};
  } catch (error) {
    return {status: error.code, stdout: error.stdout, stderr: error.stderr};
  }
}

/** A deck of this text in the folder of the test. */
export function deckOf(text, name = 'model.dat') {
  const file = join(folder, name);
  writeFileSync(file, text);
  return file;
}

/** The page of a deck as a file; the status that the program must end with. */
export async function pageOf(deck, {status = 0, options = []} = {}) {
  const file = join(folder, `${basename(deck)}-${Math.random().toString(36).slice(2)}.html`);
  const done = await view(...options, '-o', file, deck);
  if (done.status !== status) throw new Error(`exit ${done.status}: ${done.stderr}`);
  return file;
}

/** The document of kestol-export for the same deck. */
export async function exported(deck, ...options) {
  const file = join(folder, `${basename(deck)}.json`);
  await run(KESTOL_EXPORT, [...options, '--json', file, deck]);
  return JSON.parse(readFileSync(file, 'utf8'));
}

/** The findings of kestol-check for the same deck. */
export async function checked(deck) {
  const file = join(folder, `${basename(deck)}.findings.json`);
  await run(KESTOL_CHECK, ['--format', 'json', '-o', file, deck]).catch(({code}) => {
    if (code !== 1) throw new Error(`kestol-check ends with ${code}`);
  });
  return JSON.parse(readFileSync(file, 'utf8')).findings;
}

/** The document of kestol-combine for a combination file. */
export async function combined(file) {
  const name = join(folder, 'combined.json');
  await run(KESTOL_COMBINE, ['--json', name, file]);
  return JSON.parse(readFileSync(name, 'utf8'));
}

const SOFTWARE = ['--use-angle=swiftshader', '--enable-unsafe-swiftshader', '--no-sandbox',
                  '--disable-background-networking', '--disable-component-update'];

export const openBrowser = (extra = SOFTWARE) =>
  chromium.launch({executablePath: CHROMIUM, args: extra});

export const WITHOUT_DRAWING = ['--no-sandbox', '--disable-gpu', '--disable-3d-apis',
                                '--disable-software-rasterizer'];

let watched = 0;

/** Lets the page leave a file of what ran of its script when it is closed. */
async function watch(page) {
  await page.coverage.startJSCoverage();
  const close = page.close.bind(page);
  page.close = async () => {
    const scripts = await page.coverage.stopJSCoverage();
    mkdirSync(KESTOL_PAGE_COVERAGE, {recursive: true});
    writeFileSync(join(KESTOL_PAGE_COVERAGE, `${process.pid}-${++watched}.json`),
                  JSON.stringify(scripts));
    await close();
  };
}

/** Puts another build of the page's script behind the data: a readable one, a mutant. */
function exchangeScript(file) {
  const [page, tail] = [file, KESTOL_PAGE_SCRIPT].map((name) => readFileSync(name, 'utf8'));
  const script = (/** @type {string} */ text) => text.lastIndexOf('<script>');
  writeFileSync(file, page.slice(0, script(page)) + tail.slice(script(tail)));
}

/**
 * Opens a page and waits for its picture. `noise` collects requests beside the file, errors of the
 * console and of scripts.
 */
export async function open(browser, file, options = {}) {
  const page = await browser.newPage({viewport: {width: 1280, height: 800}, ...options});
  if (KESTOL_PAGE_SCRIPT) exchangeScript(file);
  if (KESTOL_PAGE_COVERAGE) await watch(page);
  page.noise = [];
  page.on('request', (r) => {
    if (r.url() !== pathToFileURL(file).href && !/^(data|blob):/.test(r.url()))
      page.noise.push(r.url());
  });
  page.on('console', (m) => { if (m.type() === 'error') page.noise.push(m.text()); });
  page.on('pageerror', (e) => page.noise.push(e.message));
  await page.goto(pathToFileURL(file).href);
  await page.evaluate(() => Promise.race([window.kestol.ready, new Promise((_, fail) => {
    setTimeout(() => fail(new Error('no picture in half a minute')), 30_000);
  })]));
  return page;
}

/** Waits until changes are drawn. */
export const settled = (page) =>
  page.evaluate(() => new Promise((done) =>
    requestAnimationFrame(() => requestAnimationFrame(done))));

/** The box of pixels that are not empty, in page pixels, and how many there are. */
export const drawnBox = (page) => page.evaluate(() => {
  const canvas = document.getElementById('drawing'), box = canvas.getBoundingClientRect();
  const copy = document.createElement('canvas');
  [copy.width, copy.height] = [canvas.width, canvas.height];
  const ctx = copy.getContext('2d');
  ctx.drawImage(canvas, 0, 0);
  const {data} = ctx.getImageData(0, 0, copy.width, copy.height);
  const found = {left: Infinity, top: Infinity, right: -Infinity, bottom: -Infinity, count: 0};
  const scale = box.width / copy.width;
  for (let y = 0; y < copy.height; ++y)
    for (let x = 0; x < copy.width; ++x) {
      if (data[4 * (y * copy.width + x) + 3] === 0) continue;
      ++found.count;
      found.left = Math.min(found.left, box.left + x * scale);
      found.right = Math.max(found.right, box.left + x * scale);
      found.top = Math.min(found.top, box.top + y * scale);
      found.bottom = Math.max(found.bottom, box.top + y * scale);
    }
  return found;
});
