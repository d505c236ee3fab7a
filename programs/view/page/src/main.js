// The page: reads its data, sets up the picture and what stands around it.

import {byId, make} from './dom.js';
import {readHead} from './data.js';
import {counted} from './numbers.js';
import {readModel} from './model.js';
import {changed, chooseMode, drawnFactor, firstState} from './state.js';
import {openStage, resize} from './scene.js';
import {lookFrom, projector} from './camera.js';
import {dress, drawOutline, openPicture, redraw} from './picture.js';
import {openOverlay} from './overlay.js';
import {outwardNormals} from './facing.js';
import {paperTheme, setUpTheme, theme} from './theme.js';
import {drawLegend} from './legend.js';
import {setUpControls, showPanel} from './controls.js';
import {setUpDrawer} from './drawer.js';
import {setUpPointer} from './pointer.js';
import {showValues, selectionPlaces} from './details.js';
import {setUpKeys} from './keys.js';
import {fillSheet} from './print.js';
import {selecting} from './selection.js';
import {publish} from './api.js';
import {markPlaces} from './marks.js';
import {cutOff} from './section.js';
import {animate} from './animation.js';

/** @import {State} from './state.js' */
/** @import {Stage} from './scene.js' */
/** @import {Model} from './types.js' */

/** @param {Model} model */
function writeTitle(model) {
  const {title, deck} = model.head;
  document.title = `${title || deck} – kestol`;
  byId('title').textContent = title || deck;
  byId('deck-name').textContent = title ? deck : '';
}

/** @param {State} state @param {Stage} stage */
function setUpViews(state, stage) {
  const box = byId('views');
  const names = state.model.plane ? ['fit'] : ['iso', 'front', 'right', 'top', 'back', 'left'];
  for (const name of names) {
    const button = make('button', {type: 'button'}, name);
    button.addEventListener('click', () =>
      lookFrom(state.model, stage, state.model.plane ? 'top' : name));
    box.append(button);
  }
}

/** The picture and its sheet of symbols; null where the browser cannot draw.
 *  @param {State} state @param {Stage} stage */
function setUpPicture(state, stage) {
  const {model} = state, to = projector(model, stage);
  const picture = openPicture(state, stage);
  const normals = outwardNormals(model, picture.surfaces);
  const overlay = openOverlay(stage, byId('overlay'), to, normals);
  let paper = false;
  const look = () => (paper ? paperTheme() : theme());
  redraw(state, stage, picture, 'result');
  stage.onDraw.push(() => overlay({
    model, result: state.result, show: shownNow(state), scale: drawnFactor(state), theme: look(),
    peaks: picture.diagram && state.quantity
      ? {list: picture.diagram.peaks, scale: picture.diagramScale, unit: state.quantity.unit} : null,
    marks: markPlaces(state, picture), selected: selectionPlaces(state, drawnFactor(state)),
    hidden: cutOff(model, state.section),
  }));
  const refresh = (/** @type {import('./state.js').Change} */ what) => {
    redraw(state, stage, picture, what);
    dress(state, picture, stage, look());
    drawLegend(state, picture);
    stage.ask();
  };
  /** The picture on white paper. */
  const shoot = () => {
    paper = true;
    dress(state, picture, stage, look());
    stage.draw();
    const canvas = document.createElement('canvas'), gl = stage.canvas;
    [canvas.width, canvas.height] = [gl.width, gl.height];
    const ctx = /** @type {CanvasRenderingContext2D} */ (canvas.getContext('2d'));
    ctx.fillStyle = '#ffffff';
    ctx.fillRect(0, 0, gl.width, gl.height);
    for (const layer of [gl, byId('overlay')]) ctx.drawImage(layer, 0, 0, gl.width, gl.height);
    paper = false;
    dress(state, picture, stage, look());
    stage.draw();
    return canvas.toDataURL('image/png');
  };
  return {picture, to, refresh, shoot};
}

/** Loads hide where they would cover what is looked at: under a diagram they are half of it.
 *  @param {State} state */
function shownNow(state) {
  if (state.mode < 0) return state.show;
  return {...state.show, loads: false, reactions: false, values: false};
}

/** @param {State} state @param {Stage} stage */
function setUpSize(state, stage) {
  let first = true;
  const fitted = () => {
    resize(stage);
    if (!first) return;
    first = false;
    lookFrom(state.model, stage, state.model.plane ? 'top' : 'iso');
  };
  new ResizeObserver(fitted).observe(/** @type {Element} */ (stage.canvas.parentElement));
  fitted();
  stage.controls.enableRotate = !state.model.plane;
  if (state.model.plane) stage.controls.mouseButtons.LEFT = 2;  // drag moves a plane model
  if (state.model.plane) stage.controls.touches.ONE = 1;
}

function start() {
  const model = readModel(readHead()), state = firstState(model);
  writeTitle(model);
  const stage = model.nodes > 0 ? openStage(byId('drawing'), model) : null;
  byId('no-drawing').hidden = stage !== null || model.nodes === 0;
  const view = stage ? (resize(stage), setUpPicture(state, stage)) : null;
  const picture = view?.picture ?? null;
  const hands = selecting(state);
  const drawer = setUpDrawer(state, hands.select);
  const controls = setUpControls(state, () => picture?.limits ?? {low: 0, high: 1});
  state.listeners.push((what) => {
    view?.refresh(what);
    controls();
    if (what === 'result') drawer.refresh();
    showValues(state, null);
  });
  const print = () => window.print();
  byId('print').addEventListener('click', print);
  window.addEventListener('beforeprint', () =>
    fillSheet(state, picture, view ? view.shoot : () => ''));
  if (stage && view) {
    setUpViews(state, stage);
    setUpSize(state, stage);
    setUpPointer(state, stage, view.picture, view.to);
    setUpKeys({state, stage, ...hands, print});
    animate(state);
  } else {
    byId('drawing').hidden = byId('overlay').hidden = true;
    byId('panel-toggle').hidden = byId('help').hidden = true;
    showPanel(false);
  }
  setUpTheme(() => changed(state, 'theme'));
  describe(state);
  openWithFindings(state, drawer.show, stage !== null);
  publish(state, stage, view?.to ?? null, hands);
  if (stage && view) afterFirst(stage, () => {
    drawOutline(state, stage, view.picture);
    view.refresh('theme');
  });
}

/** Runs what can wait until the first picture stands. @param {Stage} stage
 *  @param {() => void} then */
function afterFirst(stage, then) {
  let done = false;
  stage.onDraw.push(() => {
    if (done) return;
    done = true;
    setTimeout(then, 0);
  });
}

/** What the picture is, for those who do not see it. @param {State} state */
function describe(state) {
  const {model} = state;
  const kinds = model.meshes.map((m) => counted(m.count, m.kind)).join(' and ');
  byId('drawing').setAttribute('aria-label',
    `Model of ${counted(model.head.deckNodes, 'node')}, ${kinds}. Press ? for the keys.`);
}

/** @param {State} state @param {(id: string) => void} show @param {boolean} drawn */
function openWithFindings(state, show, drawn) {
  const {findings, mechanisms} = state.model.head;
  if (findings.some((f) => f.severity === 'error') || mechanisms.length > 0) show('findings');
  else if (!drawn) show(state.result.equilibrium ? 'balance' : 'findings');
  if (mechanisms.length > 0 && drawn) chooseMode(state, 0);
}

start();
