// The picture: camera, controls, materials and what is drawn with them.

import {
  BufferAttribute, BufferGeometry, DataTexture, DoubleSide, FloatType, GLSL3, InstancedBufferGeometry,
  InstancedBufferAttribute, Mesh as Drawn, NearestFilter, OrthographicCamera, RawShaderMaterial,
  RGBAFormat, Scene, Vector2, Vector3, Vector4, WebGLRenderer, ColorManagement,
} from 'three';
import {OrbitControls} from 'three/examples/jsm/controls/OrbitControls.js';

import {LINE_FRAGMENT, LINE_VERTEX, RIBBON_VERTEX, SURFACE_FRAGMENT, SURFACE_VERTEX} from
  './shaders.js';

/** @import {Model, Reals, Vec3} from './types.js' */
/** @import {Surface} from './surface.js' */

ColorManagement.enabled = false;

const TEXTURE_WIDTH = 2048;

/**
 * What all materials share: one object, so that one assignment changes them all.
 */
export const shared = {
  scale: {value: 0},
  palette: {value: /** @type {DataTexture | null} */ (null)},
  low: {value: 0},
  high: {value: 1},
  bands: {value: 10},
  section: {value: new Vector4(0, 0, 0, 1)},
  viewport: {value: new Vector2(1, 1)},
  nodeX: {value: /** @type {DataTexture | null} */ (null)},
  nodeU: {value: /** @type {DataTexture | null} */ (null)},
  textureWidth: {value: TEXTURE_WIDTH},
  ink: {value: new Vector3(0, 0, 0)},
};

/**
 * @typedef {{renderer: WebGLRenderer, scene: Scene, camera: OrthographicCamera,
 *            controls: OrbitControls, canvas: HTMLCanvasElement, centre: Vec3, radius: number,
 *            width: number, height: number, draw: () => void, ask: () => void,
 *            onDraw: (() => void)[]}} Stage
 */

/** @param {Model} model @param {Reals} values @param {Vec3} origin @returns {DataTexture} */
function nodeTexture(model, values, origin) {
  const rows = Math.max(1, Math.ceil(model.nodes / TEXTURE_WIDTH));
  const data = new Float32Array(4 * TEXTURE_WIDTH * rows);
  for (let i = 0; i < model.nodes; ++i)
    for (let d = 0; d < 3; ++d) data[4 * i + d] = (values[3 * i + d] || 0) - origin[d];
  const texture = new DataTexture(data, TEXTURE_WIDTH, rows, RGBAFormat, FloatType);
  texture.minFilter = texture.magFilter = NearestFilter;
  texture.needsUpdate = true;
  return texture;
}

/** @param {Model} model @param {Reals} u */
export function setDisplacements(model, u) {
  shared.nodeU.value?.dispose();
  shared.nodeU.value = nodeTexture(model, u, [0, 0, 0]);
}

/** @param {Model} model */
export function setPlaces(model) {
  shared.nodeX.value = nodeTexture(model, model.x, model.centre);
}

/** @param {string} vertexShader @param {string} fragmentShader @param {object} own */
const materialOf = (vertexShader, fragmentShader, own) =>
  new RawShaderMaterial({
    glslVersion: GLSL3, vertexShader, fragmentShader, side: DoubleSide,
    uniforms: {...shared, plain: {value: new Vector3(0.7, 0.7, 0.7)}, coloured: {value: false},
               opacity: {value: 1}, ...own},
  });

/** @param {BufferGeometry} geometry @param {RawShaderMaterial} material */
function drawnOf(geometry, material) {
  const drawn = new Drawn(geometry, material);
  drawn.frustumCulled = false;  // places are known to the graphics card alone
  return drawn;
}

/** The triangles of shells or solids. @param {Surface} surface */
export function surfaceDrawing(surface) {
  const geometry = new BufferGeometry();
  const count = 3 * surface.count;
  const edges = new Uint8Array(count);
  for (let k = 0; k < count; ++k) edges[k] = surface.edges[Math.floor(k / 3)];
  geometry.setAttribute('node', new BufferAttribute(new Float32Array(surface.nodes), 1));
  geometry.setAttribute('edges', new BufferAttribute(edges, 1));
  geometry.setAttribute('value', new BufferAttribute(new Float32Array(count), 1));
  geometry.setDrawRange(0, count);
  const material = materialOf(SURFACE_VERTEX, SURFACE_FRAGMENT, {lines: {value: 0.5}});
  material.polygonOffset = true;
  material.polygonOffsetFactor = material.polygonOffsetUnits = 1;
  return drawnOf(geometry, material);
}

/**
 * Lines of some pixels. `segments` holds for each: from, its displacement, to, its displacement,
 * and the two values (14 numbers).
 * @param {Float32Array} segments @param {number} width @param {object} own
 */
export function lineDrawing(segments, width, own = {}) {
  const n = segments.length / 14;
  const geometry = new InstancedBufferGeometry();
  geometry.instanceCount = n;
  geometry.setIndex([0, 1, 2, 2, 1, 3]);
  geometry.setAttribute('corner',
                        new BufferAttribute(new Float32Array([0, -1, 1, -1, 0, 1, 1, 1]), 2));
  const column = (/** @type {number} */ from, /** @type {number} */ size) => {
    const data = new Float32Array(size * n);
    for (let i = 0; i < n; ++i)
      for (let c = 0; c < size; ++c) data[size * i + c] = segments[14 * i + from + c];
    return new InstancedBufferAttribute(data, size);
  };
  geometry.setAttribute('fromX', column(0, 3));
  geometry.setAttribute('fromU', column(3, 3));
  geometry.setAttribute('toX', column(6, 3));
  geometry.setAttribute('toU', column(9, 3));
  geometry.setAttribute('values', column(12, 2));
  const material = materialOf(LINE_VERTEX, LINE_FRAGMENT, {width: {value: width}, ...own});
  material.transparent = true;
  return drawnOf(geometry, material);
}

/**
 * Triangles with places of their own.
 * @param {Float32Array} base @param {Float32Array} tip @param {Float32Array} value
 * @param {object} own
 */
export function ribbonDrawing(base, tip, value, own = {}) {
  const geometry = new BufferGeometry();
  geometry.setAttribute('base', new BufferAttribute(base, 3));
  geometry.setAttribute('tip', new BufferAttribute(tip, 3));
  geometry.setAttribute('value', new BufferAttribute(value, 1));
  geometry.setDrawRange(0, value.length);
  const material = materialOf(RIBBON_VERTEX, LINE_FRAGMENT, own);
  material.transparent = true;
  material.depthWrite = false;
  return drawnOf(geometry, material);
}

/** @param {Stage} stage @param {Drawn | null} old */
export function remove(stage, old) {
  if (!old) return;
  stage.scene.remove(old);
  old.geometry.dispose();
  /** @type {RawShaderMaterial} */ (old.material).dispose();
}

/** @param {HTMLCanvasElement} canvas @param {Model} model @returns {Stage | null} */
export function openStage(canvas, model) {
  /** @type {WebGLRenderer} */ let renderer;
  try {
    if (!canvas.getContext('webgl2', {antialias: true, alpha: true, preserveDrawingBuffer: true}))
      return null;
    renderer = new WebGLRenderer({canvas, antialias: true, alpha: true,
                                  preserveDrawingBuffer: true});
  } catch {
    return null;
  }
  renderer.setPixelRatio(Math.min(window.devicePixelRatio || 1, 2));
  renderer.setClearColor(0, 0);
  const camera = new OrthographicCamera(-1, 1, 1, -1, -1e6, 1e6);
  camera.up.set(0, 0, 1);
  const controls = new OrbitControls(camera, canvas);
  controls.zoomToCursor = true;
  controls.enableDamping = false;
  let asked = false;
  /** @type {Stage} */
  const stage = {
    renderer, scene: new Scene(), camera, controls, canvas, centre: [0, 0, 0],
    radius: model.size / 2, width: 1, height: 1, onDraw: [],
    draw() {
      asked = false;
      renderer.render(stage.scene, camera);
      for (const after of stage.onDraw) after();
    },
    ask() {
      if (asked) return;
      asked = true;
      requestAnimationFrame(() => stage.draw());
    },
  };
  controls.addEventListener('change', stage.ask);
  return stage;
}

/** @param {Stage} stage */
export function resize(stage) {
  const box = stage.canvas.parentElement?.getBoundingClientRect();
  if (!box || box.width < 2 || box.height < 2) return;
  stage.width = box.width;
  stage.height = box.height;
  stage.renderer.setSize(box.width, box.height, false);
  shared.viewport.value.set(box.width, box.height);
  const {camera} = stage, half = (camera.top - camera.bottom) / 2;
  const wide = (half * box.width) / box.height;
  camera.left = -wide;
  camera.right = wide;
  camera.updateProjectionMatrix();
  stage.ask();
}
