// The data of the page: inert script elements become typed arrays.

/** @import {BlockHead, Head, Reals, Indices} from './types.js' */

/** @param {string} text @returns {Uint8Array} */
function bytesOfBase64(text) {
  const native = /** @type {any} */ (Uint8Array).fromBase64;
  if (native) return native.call(Uint8Array, text);
  const raw = atob(text);
  const bytes = new Uint8Array(raw.length);
  for (let i = 0; i < raw.length; ++i) bytes[i] = raw.charCodeAt(i);
  return bytes;
}

/**
 * Whole numbers as zigzag differences of seven bits a byte, lowest first.
 * @param {Uint8Array} bytes @param {number} count @returns {Indices}
 */
export function decodeDelta(bytes, count) {
  const numbers = new Uint32Array(count);
  let at = 0, last = 0;
  for (let i = 0; i < count; ++i) {
    let word = 0, shift = 1;
    for (; bytes[at] & 128; shift *= 128) word += (bytes[at++] & 127) * shift;
    word += bytes[at++] * shift;
    last += word % 2 === 0 ? word / 2 : -(word + 1) / 2;
    numbers[i] = last;
  }
  return numbers;
}

/**
 * Steps between limits, one pair of limits for each component in turn.
 * @param {Uint16Array} steps @param {BlockHead} head @returns {Reals}
 */
function decodeSteps(steps, head) {
  const low = head.low ?? [0], step = head.step ?? [1], width = low.length;
  const numbers = new Float32Array(head.count);
  for (let i = 0, c = 0; i < head.count; ++i, c = c + 1 === width ? 0 : c + 1)
    numbers[i] = low[c] + step[c] * steps[i];
  return numbers;
}

/** @param {Uint8Array} bytes @param {BlockHead} head @returns {Reals | Indices} */
export function decodeBlock(bytes, head) {
  const {buffer, byteOffset} = bytes;
  switch (head.type) {
    case 'f64':
      return new Float64Array(buffer, byteOffset, head.count);
    case 'f32':
      return new Float32Array(buffer, byteOffset, head.count);
    case 'u16':
      return decodeSteps(new Uint16Array(buffer, byteOffset, head.count), head);
    default:
      return decodeDelta(bytes, head.count);
  }
}

/** @returns {Head} */
export function readHead() {
  return JSON.parse(document.getElementById('kestol-model')?.textContent ?? '{}');
}

/**
 * A reader of blocks by name: each is decoded when it is first asked for, and its text is then
 * dropped from the page.
 * @param {Head} head @returns {(name: string) => Reals | Indices | null}
 */
export function blockReader(head) {
  /** @type {Map<string, Reals | Indices>} */
  const known = new Map();
  return (name) => {
    const block = head.blocks[name];
    if (!block) return null;
    let numbers = known.get(name);
    if (!numbers) {
      const element = document.getElementById('block-' + name);
      numbers = decodeBlock(bytesOfBase64(element?.textContent ?? ''), block);
      known.set(name, numbers);
      element?.remove();
    }
    return numbers;
  };
}
