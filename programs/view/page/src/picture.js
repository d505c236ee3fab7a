// The model as it is drawn: surfaces, beams, diagrams and what else follows from the state.

import {
  lineDrawing, remove, ribbonDrawing, setDisplacements, setPlaces, shared, surfaceDrawing,
} from './scene.js';
import {beamMeshes, beamSegments, diagramOf, isNothing, stationValues} from './beams.js';
import {bandCount, niceScale, paletteTexture} from './colours.js';
import {cornerValues, extremesOf, surfacesOf} from './surface.js';
import {directionSegments} from './directions.js';
import {applySection, cutOfSolids} from './section.js';
import {drawnFactor} from './state.js';
import {outlineSegments} from './outline.js';
import {at3} from './vectors.js';
import {elementNumber} from './model.js';

/** @import {RawShaderMaterial, Mesh as Drawn} from 'three' */
/** @import {Vec3} from './types.js' */
/** @import {State} from './state.js' */
/** @import {Stage} from './scene.js' */
/** @import {Theme} from './overlay.js' */
/** @import {Diagram} from './beams.js' */
/** @import {Surface} from './surface.js' */

/**
 * @typedef {{place: Vec3, motion: Vec3}} Spot
 * @typedef {{low: number, high: number, lowSpot: Spot | null, highSpot: Spot | null,
 *            lowText: string, highText: string}} Extremes
 * @typedef {{surfaces: Surface[], drawnSurfaces: Drawn[], beams: Drawn | null,
 *            ghost: Drawn | null, strip: Drawn | null, stripLines: Drawn | null,
 *            crosses: Drawn | null, cut: Drawn | null, diagram: Diagram | null,
 *            diagramScale: number, extremes: Extremes | null,
 *            limits: {low: number, high: number, bands: number, signed: boolean}}} Picture
 */

/** @param {State} state @param {Stage} stage @returns {Picture} */
export function openPicture(state, stage) {
  setPlaces(state.model);
  setDisplacements(state.model, state.result.u);
  const surfaces = surfacesOf(state.model);
  const drawnSurfaces = surfaces.map(surfaceDrawing);
  for (const drawn of drawnSurfaces) stage.scene.add(drawn);
  return {surfaces, drawnSurfaces, beams: null, ghost: null, strip: null, stripLines: null,
          crosses: null, cut: null, diagram: null, diagramScale: 0, extremes: null,
          limits: {low: 0, high: 1, bands: 10, signed: false}};
}

/** @param {Drawn | null} drawn @param {string} name @param {unknown} value */
function setUniform(drawn, name, value) {
  if (drawn) /** @type {RawShaderMaterial} */ (drawn.material).uniforms[name].value = value;
}

/** @param {string} css @returns {import('three').Vector3} */
function vectorOf(css) {
  const n = parseInt(css.slice(1), 16), v = shared.ink.value.clone();
  return v.set(((n >> 16) & 255) / 255, ((n >> 8) & 255) / 255, (n & 255) / 255);
}

/** Beams with the colours of a quantity of nodes, else plain. @param {State} state
 *  @param {Stage} stage @param {Picture} p */
function drawBeams(state, stage, p) {
  const {model, result, quantity} = state;
  for (const old of [p.beams, p.ghost]) remove(stage, old);
  p.beams = p.ghost = null;
  if (beamMeshes(model).length === 0) return null;
  const coloured = quantity?.place === 'node';
  const values = coloured ? stationValues(model, result, quantity) : null;
  const segments = beamSegments(model, result, values);
  p.beams = lineDrawing(segments, 4, {coloured: {value: coloured}});
  p.ghost = lineDrawing(segments, 1.4, {scale: {value: 0}, opacity: {value: 0.55}});
  p.ghost.renderOrder = -1;
  stage.scene.add(p.beams, p.ghost);
  return values;
}

/** The grey shape of what does not move. @param {State} state @param {Stage} stage
 *  @param {Picture} p */
export function drawOutline(state, stage, p) {
  const segments = outlineSegments(state.model, p.surfaces);
  if (segments.length === 0) return;
  const outline = lineDrawing(segments, 1.2, {scale: {value: 0}, opacity: {value: 0.45}});
  outline.name = 'outline';
  stage.scene.add(outline);
}

/** @param {State} state @param {Stage} stage @param {Picture} p */
function drawDiagram(state, stage, p) {
  const {model, result, quantity} = state;
  remove(stage, p.strip);
  remove(stage, p.stripLines);
  p.strip = p.stripLines = p.diagram = null;
  if (quantity?.place !== 'beam' || isNothing(model, result, quantity, state.quantities)) return;
  const diagram = diagramOf(model, stationValues(model, result, quantity), quantity.component);
  p.diagram = diagram;
  const own = {scale: {value: 0}, palette: {value: signPalette()}, low: {value: -1e-30},
               high: {value: 1e-30}, bands: {value: 0}, coloured: {value: true}};
  p.strip = ribbonDrawing(diagram.base, diagram.tip, diagram.value,
                          {...own, opacity: {value: 0.3}});
  p.stripLines = lineDrawing(diagram.outline, 1.6, {...own});
  stage.scene.add(p.strip, p.stripLines);
  scaleDiagram(state, p);
}

/** @type {import('three').DataTexture | null} */ let signs = null;

/** Two colours, by sign. */
function signPalette() {
  if (signs) return signs;
  signs = paletteTexture(true, -1, 1);
  const data = /** @type {Uint8Array} */ (signs.image.data);
  for (let i = 0; i < 256; ++i) data.set(i < 128 ? [47, 111, 188, 255] : [201, 66, 52, 255], 4 * i);
  signs.needsUpdate = true;
  return signs;
}

/** @param {State} state @param {Picture} p */
function scaleDiagram(state, p) {
  if (!p.diagram) return;
  const largest = p.diagram.largest || 1;
  p.diagramScale = (0.11 * state.model.size * state.diagram) / largest;
  setUniform(p.strip, 'scale', p.diagramScale);
  setUniform(p.stripLines, 'scale', p.diagramScale);
}

/** @param {State} state @param {Picture} p @param {Map<unknown, Float32Array> | null} beams */
function colourSurfaces(state, p, beams) {
  const {model, quantity, result} = state;
  const coloured = quantity !== null && quantity.place !== 'beam';
  for (const drawn of p.drawnSurfaces) setUniform(drawn, 'coloured', coloured);
  p.extremes = null;
  if (!coloured || !quantity) return;
  const corners = cornerValues(model, p.surfaces, quantity, result, state.average);
  corners.forEach((values, i) => {
    const attribute = p.drawnSurfaces[i].geometry.getAttribute('value');
    /** @type {Float32Array} */ (attribute.array).set(values);
    attribute.needsUpdate = true;
  });
  p.extremes = extremesIn(state, p, corners, beams);
}

/** @param {State} state @param {Picture} p @param {Float32Array[]} corners
 *  @param {Map<unknown, Float32Array> | null} beams @returns {Extremes} */
function extremesIn(state, p, corners, beams) {
  const {model, result} = state, found = extremesOf(p.surfaces, corners);
  const spot = (/** @type {number} */ n) =>
    (n < 0 ? null : {place: at3(model.x, n), motion: at3(result.u, n)});
  const text = (/** @type {number} */ n, /** @type {number} */ e) => {
    const number = n < 0 ? 0 : model.nodeNumber(n);
    return number ? `node ${number}` : e ? `element ${e}` : '';
  };
  /** @type {Extremes} */
  const extremes = {
    low: found.low, high: found.high, lowSpot: spot(found.lowNode),
    highSpot: spot(found.highNode), lowText: text(found.lowNode, found.lowElement),
    highText: text(found.highNode, found.highElement),
  };
  for (const mesh of beamMeshes(model)) {
    const values = beams?.get(mesh), n = mesh.head.stations.length;
    const u = result.meshes[mesh.index].stationU;
    for (let k = 0; values && k < values.length; ++k) {
      const v = values[k], i = Math.floor(k / n);
      if (!(v < extremes.low) && !(v > extremes.high)) continue;
      const xi = mesh.head.stations[k % n];
      const a = at3(model.x, mesh.conn[2 * i]), b = at3(model.x, mesh.conn[2 * i + 1]);
      const at = {place: /** @type {Vec3} */ ([0, 1, 2].map((d) => a[d] + (b[d] - a[d]) * xi)),
                  motion: u ? at3(u, k) : /** @type {Vec3} */ ([0, 0, 0])};
      const name = xi === 0 || xi === 1 ? `node ${model.nodeNumber(mesh.conn[2 * i + xi])}`
                                        : `element ${elementNumber(mesh, i)}`;
      if (v < extremes.low) [extremes.low, extremes.lowSpot, extremes.lowText] = [v, at, name];
      if (v > extremes.high) [extremes.high, extremes.highSpot, extremes.highText] = [v, at, name];
    }
  }
  return extremes;
}

/** The scale of colours: what the user typed, else round limits. @param {State} state
 *  @param {Picture} p */
function setLimits(state, p) {
  const {quantity, extremes} = {quantity: state.quantity, extremes: p.extremes};
  if (!quantity || !extremes) return;
  const signed = quantity.signed && extremes.low < 0 && extremes.high > 0;
  const nice = niceScale(extremes.low, extremes.high, state.bands);
  const low = state.low ?? nice.low, high = state.high ?? nice.high;
  p.limits = {low, high, bands: bandCount(low, high, state.bands), signed};
  shared.low.value = low;
  shared.high.value = high;
  shared.bands.value = p.limits.bands;
  shared.palette.value?.dispose();
  shared.palette.value = paletteTexture(signed, low, high);
}

/** @param {State} state @param {Stage} stage @param {Picture} p */
function drawCrosses(state, stage, p) {
  remove(stage, p.crosses);
  p.crosses = null;
  if (!state.show.directions || state.mode >= 0) return;
  const own = {palette: {value: signPalette()}, low: {value: 0}, high: {value: 1},
               bands: {value: 0}, coloured: {value: true}};
  const values = directionSegments(state.model, state.result, state.quantity);
  p.crosses = lineDrawing(values, 1.8, own);
  /** @type {RawShaderMaterial} */ (p.crosses.material).depthTest = false;
  stage.scene.add(p.crosses);
}

/** @param {State} state @param {Stage} stage @param {Picture} p */
function drawCut(state, stage, p) {
  remove(stage, p.cut);
  applySection(state.model, state.section);
  const quantity = state.quantity?.place === 'beam' ? null : state.quantity;
  p.cut = cutOfSolids(state.model, state.section, quantity, state.result, drawnFactor(state));
  setUniform(p.cut, 'coloured', quantity !== null);
  // The cut lies in the plane: it must not cut itself away, nor move.
  setUniform(p.cut, 'scale', 0);
  if (p.cut) {
    /** @type {RawShaderMaterial} */ (p.cut.material).uniforms.section = {
      value: shared.section.value.clone().set(0, 0, 0, 1)};
    stage.scene.add(p.cut);
  }
}

/** @param {State} state @param {Picture} p @param {Stage} stage @param {Theme} theme */
export function dress(state, p, stage, theme) {
  const plain = vectorOf(theme.soft);
  for (const drawn of p.drawnSurfaces) {
    setUniform(drawn, 'plain', plain);
    setUniform(drawn, 'lines', state.show.edges ? 0.4 : 0);
  }
  setUniform(p.cut, 'plain', plain);
  setUniform(p.beams, 'plain', vectorOf(theme.ink));
  setUniform(p.ghost, 'plain', vectorOf(theme.soft));
  // Mesh lines are dark on colours in either theme.
  shared.ink.value.copy(vectorOf(state.quantity && state.quantity.place !== 'beam' ? '#14171c'
                                                                                : theme.ink));
  if (p.ghost) p.ghost.visible = state.show.ghost && state.factor !== 0;
  const outline = /** @type {Drawn | undefined} */ (stage.scene.getObjectByName('outline'));
  if (outline) {
    setUniform(outline, 'plain', vectorOf(theme.ink));
    outline.visible = state.show.ghost && state.factor !== 0;
  }
}

/** Follows a change of the state. @param {State} state @param {Stage} stage @param {Picture} p
 *  @param {import('./state.js').Change} what */
export function redraw(state, stage, p, what) {
  if (what === 'result') setDisplacements(state.model, state.result.u);
  if (what === 'result' || what === 'quantity') {
    const values = drawBeams(state, stage, p);
    drawDiagram(state, stage, p);
    colourSurfaces(state, p, values);
    if (!p.extremes && values) p.extremes = extremesIn(state, p, [], values);
  }
  shared.scale.value = drawnFactor(state);
  scaleDiagram(state, p);
  if (what !== 'selection') setLimits(state, p);
  if (what === 'result' || what === 'quantity' || what === 'show') drawCrosses(state, stage, p);
  if (what !== 'selection' && (state.section.axis || p.cut || what === 'section'))
    drawCut(state, stage, p);
}
