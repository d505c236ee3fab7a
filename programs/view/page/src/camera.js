// Where one looks from: named views, the fit to the model, steps by key, and the way from a place
// in the model to a place on the page.

import {Matrix4, Vector3} from 'three';
import {minus} from './vectors.js';

/** @import {Model, Reals, Vec3} from './types.js' */
/** @import {Stage} from './scene.js' */

/** Room in pixels for words around the model, and for the key of the colours at the right. */
const MARGIN = 72, KEY_WIDTH = 150;

/** Directions from the model to the eye, and what points up. @type {Record<string, Vec3[]>} */
const VIEWS = {
  iso: [[0.62, -0.9, 0.55], [0, 0, 1]],
  front: [[0, -1, 0], [0, 0, 1]],
  right: [[1, 0, 0], [0, 0, 1]],
  top: [[0, 0, 1], [0, 1, 0]],
  back: [[0, 1, 0], [0, 0, 1]],
  left: [[-1, 0, 0], [0, 0, 1]],
  bottom: [[0, 0, -1], [0, 1, 0]],
};

/** @param {Model} model @param {Stage} stage @param {string} name */
export function lookFrom(model, stage, name) {
  const [from, up] = VIEWS[name] ?? VIEWS.iso;
  const {camera, controls} = stage;
  camera.up.set(...up);
  // Close to the pole the controls would turn the picture about the wrong axis.
  const pole = name === 'top' || name === 'bottom';
  controls.target.set(0, 0, 0);
  camera.position.set(...from).normalize().multiplyScalar(4 * model.size);
  if (pole && !model.plane) {
    camera.up.set(0, 0, 1);
    camera.position.y -= 1e-4 * model.size;
  }
  camera.near = -20 * model.size;
  camera.far = 40 * model.size;
  camera.zoom = 1;
  camera.lookAt(controls.target);
  camera.updateMatrixWorld();
  fit(model, stage);
  controls.update();
  stage.ask();
}

/** Makes the box of the model fill the picture, with a margin for labels. @param {Model} model
 *  @param {Stage} stage */
export function fit(model, stage) {
  const {camera, controls} = stage, {low, high, centre} = model;
  const corner = new Vector3(), box = [Infinity, Infinity, -Infinity, -Infinity];
  for (let k = 0; k < 8; ++k) {
    corner.set(...minus([k & 1 ? high[0] : low[0], k & 2 ? high[1] : low[1],
                         k & 4 ? high[2] : low[2]], centre));
    corner.applyMatrix4(camera.matrixWorldInverse);
    box[0] = Math.min(box[0], corner.x);
    box[1] = Math.min(box[1], corner.y);
    box[2] = Math.max(box[2], corner.x);
    box[3] = Math.max(box[3], corner.y);
  }
  const aspect = stage.width / stage.height, key = stage.width > 480 ? KEY_WIDTH : 0;
  // Diagrams stand beside their beams.
  const pad = model.meshes.some(({kind}) => kind === 'beam') ? 0.12 * model.size : 0;
  const wide = Math.max(stage.width * 0.4, stage.width - key - 2 * MARGIN);
  const tall = Math.max(stage.height * 0.4, stage.height - 2 * MARGIN);
  // Length units of a pixel, so that the box fits into what is left beside the key.
  const pixel = Math.max((box[3] - box[1] + pad) / tall, (box[2] - box[0] + 2 * pad) / wide,
                         (model.size * 0.05) / stage.height);
  const half = (pixel * stage.height) / 2;
  const shift = new Vector3((box[0] + box[2]) / 2 + (pixel * key) / 2, (box[1] + box[3]) / 2, 0);
  const move = shift.applyMatrix4(new Matrix4().extractRotation(camera.matrixWorld));
  controls.target.copy(move);
  camera.position.copy(move).add(
    new Vector3(0, 0, 4 * model.size).applyMatrix4(
      new Matrix4().extractRotation(camera.matrixWorld)));
  camera.top = half;
  camera.bottom = -half;
  camera.left = -half * aspect;
  camera.right = half * aspect;
  camera.zoom = 1;
  camera.updateProjectionMatrix();
  camera.updateMatrixWorld();
}

/** Turns the eye about the target by so many radians. @param {Stage} stage
 *  @param {number} across @param {number} over */
export function turn(stage, across, over) {
  const {camera, controls} = stage;
  const away = camera.position.clone().sub(controls.target);
  const r = away.length();
  const height = Math.asin(Math.max(-1, Math.min(1, away.z / r)));
  const round = Math.atan2(away.y, away.x) + across;
  const limit = Math.PI / 2 - 1e-3;
  const up = Math.max(-limit, Math.min(limit, height + over));
  away.set(Math.cos(up) * Math.cos(round), Math.cos(up) * Math.sin(round), Math.sin(up));
  camera.position.copy(controls.target).addScaledVector(away, r);
  camera.lookAt(controls.target);
  controls.update();
  stage.ask();
}

/** Moves the picture by parts of its size. @param {Stage} stage @param {number} right
 *  @param {number} up */
export function pan(stage, right, up) {
  const {camera, controls} = stage;
  const rotation = new Matrix4().extractRotation(camera.matrixWorld);
  const move = new Vector3(((camera.right - camera.left) / camera.zoom) * right,
                           ((camera.top - camera.bottom) / camera.zoom) * up, 0)
    .applyMatrix4(rotation);
  camera.position.add(move);
  controls.target.add(move);
  controls.update();
  stage.ask();
}

/** @param {Stage} stage @param {number} factor */
export function zoom(stage, factor) {
  stage.camera.zoom *= factor;
  stage.camera.updateProjectionMatrix();
  stage.controls.update();
  stage.ask();
}

/**
 * The way from the model to the picture, for many points: call `set` after a change of the view.
 * @param {Model} model @param {Stage} stage
 */
export function projector(model, stage) {
  const all = new Matrix4(), e = all.elements;
  const [cx, cy, cz] = model.centre;
  return {
    set() {
      stage.camera.updateMatrixWorld();
      all.multiplyMatrices(stage.camera.projectionMatrix, stage.camera.matrixWorldInverse);
    },
    /** Page pixels from the corner of the picture, and depth from the eye (-1 to 1).
     *  @param {number} x @param {number} y @param {number} z @param {{[i: number]: number}} out
     *  @param {number} at */
    project(x, y, z, out, at = 0) {
      const a = x - cx, b = y - cy, c = z - cz;
      out[at] = ((e[0] * a + e[4] * b + e[8] * c + e[12] + 1) / 2) * stage.width;
      out[at + 1] = ((1 - (e[1] * a + e[5] * b + e[9] * c + e[13])) / 2) * stage.height;
      out[at + 2] = e[2] * a + e[6] * b + e[10] * c + e[14];
    },
    /** A direction of the model in pixels. @param {Vec3} d @returns {[number, number]} */
    direction(d) {
      return [((e[0] * d[0] + e[4] * d[1] + e[8] * d[2]) / 2) * stage.width,
              -((e[1] * d[0] + e[5] * d[1] + e[9] * d[2]) / 2) * stage.height];
    },
    /** Pixels of one length unit of the model. */
    pixels: () => (stage.camera.zoom * stage.height) / (stage.camera.top - stage.camera.bottom),
  };
}

/** @typedef {ReturnType<typeof projector>} Projector */

/** The part of the picture that all nodes fill, for tests and the print sheet.
 *  @param {Reals} x @param {Projector} to */
export function spread(x, to) {
  const box = [Infinity, Infinity, -Infinity, -Infinity], p = [0, 0, 0];
  for (let i = 0; i < x.length; i += 3) {
    to.project(x[i], x[i + 1], x[i + 2], p);
    box[0] = Math.min(box[0], p[0]);
    box[1] = Math.min(box[1], p[1]);
    box[2] = Math.max(box[2], p[0]);
    box[3] = Math.max(box[3], p[1]);
  }
  return box;
}
