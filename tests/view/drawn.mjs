// What a page draws, as lines of text: the symbols and words over the picture with their places, the
// colours of the picture square by square, and the words around it.

import {settled} from './support.mjs';

/** The picture has this size whatever the fonts of the machine make of the page around it. */
const SIZE = {width: 900, height: 600};

/** Lets a page keep what it draws over its picture. Runs in the page, before its script. */
function keepDrawing() {
  const prototype = CanvasRenderingContext2D.prototype;
  const round = (/** @type {unknown} */ v) => (typeof v === 'number' ? v.toFixed(1) : String(v));
  let path = [];
  window.drawn = [];
  const around = (/** @type {string} */ name, /** @type {(ctx: any, args: any[]) => void} */ note) => {
    const own = prototype[name];
    prototype[name] = function (...args) {
      if (this.canvas.id === 'overlay') note(this, args);
      return own.apply(this, args);
    };
  };
  around('clearRect', () => { window.drawn = []; });
  around('beginPath', () => { path = []; });
  for (const [name, short] of [['moveTo', 'M'], ['lineTo', 'L'], ['arc', 'arc'], ['closePath', 'Z']])
    around(name, (_, args) => path.push([short, ...args.map(round)].join(' ')));
  const put = (/** @type {any} */ ctx, /** @type {any} */ style, /** @type {string[]} */ ...words) =>
    window.drawn.push([...words, style, ...ctx.globalAlpha === 1 ? [] : [round(ctx.globalAlpha)]].join(' '));
  around('stroke', (ctx) => put(ctx, ctx.strokeStyle, 'stroke', round(ctx.lineWidth), ...path));
  around('fill', (ctx) => put(ctx, ctx.fillStyle, 'fill', ...path));
  around('strokeRect', (ctx, args) => put(ctx, ctx.strokeStyle, 'box', round(ctx.lineWidth), ...args.map(round)));
  around('fillRect', (ctx, args) => put(ctx, ctx.fillStyle, 'block', ...args.map(round)));
  // The ground around a word is written before it, in the same place.
  let halo = '';
  around('strokeText', (ctx, [text, x, y]) => {
    halo = `on ${ctx.strokeStyle} ${round(ctx.lineWidth)} "${text}" ${round(x)} ${round(y)}`;
  });
  around('fillText', (ctx, [text, x, y]) => {
    const place = `"${text}" ${round(x)} ${round(y)}`;
    put(ctx, ctx.fillStyle, 'word', place, ctx.textAlign, ctx.textBaseline, `"${ctx.font.split('px')[0]}"`,
        halo.replace(place, 'there'));
    halo = '';
  });
  // As wide as in no font of a machine in particular.
  prototype.measureText = function (text) {
    return {width: 0.55 * Number(/([\d.]+)px/.exec(this.font)[1]) * text.length};
  };
}

/** Colours of the picture, averaged over squares; "." is an empty one. Runs in the page. */
function squares() {
  const side = 30, canvas = document.getElementById('drawing'), copy = document.createElement('canvas');
  [copy.width, copy.height] = [canvas.width, canvas.height];
  const ctx = copy.getContext('2d', {willReadFrequently: true});
  ctx.drawImage(canvas, 0, 0);
  const lines = [];
  for (let y = 0; y < copy.height; y += side) {
    const line = [];
    for (let x = 0; x < copy.width; x += side) {
      const {data} = ctx.getImageData(x, y, side, side), sum = [0, 0, 0, 0];
      for (let k = 0; k < data.length; k += 4) {
        for (let c = 0; c < 3; ++c) sum[c] += data[k + c] * data[k + 3] / 255;
        sum[3] += data[k + 3];
      }
      line.push(sum[3] === 0 ? '.' : sum.map((v) => Math.round(v / side ** 2).toString(16).padStart(2, '0')).join(''));
    }
    lines.push(line.join(' '));
  }
  return lines;
}

/** Options of `open` for a page whose drawing is looked at. */
export async function keeping(browser, options = {}) {
  const context = await browser.newContext({viewport: {width: 1300, height: 900}, reducedMotion: 'reduce', ...options});
  await context.addInitScript(keepDrawing);
  return context;
}

/** Gives the picture its size. */
export async function frame(page) {
  await page.addStyleTag({content: `#picture {position: fixed !important; left: 300px; top: 80px;
    width: ${SIZE.width}px !important; height: ${SIZE.height}px !important} #legend {width: 120px !important;
    height: 220px !important; overflow: hidden; padding: 0 !important; box-sizing: border-box}`});
  await settled(page);
  await settled(page);
}

/** All that stands in and around the picture. */
export async function drawnOn(page) {
  await settled(page);
  const words = async (/** @type {string} */ id) =>
    (await page.locator(id).innerText()).split('\n').filter(Boolean).map((line) => `${id} "${line}"`);
  return [...await words('#caption'), ...await words('#legend'), ...await words('#details'),
          ...await page.evaluate(() => window.drawn), ...await page.evaluate(squares)];
}
