// Words on the picture: each is placed where it covers no other, the important ones first.

/** @typedef {{x: number, y: number, width: number, height: number}} Box */

/**
 * A sheet of labels for one picture.
 * @param {CanvasRenderingContext2D} ctx @param {number} width @param {number} height
 * @param {{ink: string, ground: string}} theme
 */
export function labelSheet(ctx, width, height, theme) {
  /** @type {Map<number, Box[]>} */ const taken = new Map();
  const CELL = 64, COLUMNS = 1000;
  const cells = (/** @type {Box} */ b) => {
    const found = [];
    for (let x = Math.floor(b.x / CELL); x <= (b.x + b.width) / CELL; ++x)
      for (let y = Math.floor(b.y / CELL); y <= (b.y + b.height) / CELL; ++y)
        found.push(y * COLUMNS + x);
    return found;
  };
  const meet = (/** @type {Box} */ a, /** @type {Box} */ b) =>
    a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
  const free = (/** @type {Box} */ b) =>
    b.x >= 0 && b.y >= 0 && b.x + b.width <= width && b.y + b.height <= height &&
    cells(b).every((c) => !taken.get(c)?.some((other) => meet(b, other)));
  const take = (/** @type {Box} */ b) => {
    for (const c of cells(b)) taken.set(c, [...(taken.get(c) ?? []), b]);
  };

  return {
    take,
    /**
     * Writes text near (x, y): in the direction (dx, dy) first, else around the place; what is bold
     * or `far` rather farther off than not at all; gives whether there was room.
     * @param {string} text @param {number} x @param {number} y
     * @param {{dx?: number, dy?: number, colour?: string, bold?: boolean, size?: number,
     *          gap?: number, far?: boolean}} options
     */
    write(text, x, y, {dx = 1, dy = -1, colour = theme.ink, bold = false, size = 12, gap = 6,
                       far = bold} = {}) {
      ctx.font = `${bold ? 600 : 400} ${size}px system-ui, "DejaVu Sans", sans-serif`;
      const w = ctx.measureText(text).width + 4, h = size + 3;
      const places = [[dx, dy], [-dx, dy], [dx, -dy], [-dx, -dy], [0, -1], [0, 1], [1, 0], [-1, 0]];
      const gaps = far ? [gap, gap + 14, gap + 28] : [gap];
      for (const out of gaps) for (const [px, py] of places) {
        const length = Math.hypot(px, py) || 1, ux = px / length, uy = py / length;
        const box = {x: x + ux * out - (w / 2) * (1 - ux), y: y + uy * out - (h / 2) * (1 - uy),
                     width: w, height: h};
        if (!free(box)) continue;
        take(box);
        ctx.save();
        ctx.textBaseline = 'middle';
        ctx.textAlign = 'center';
        ctx.lineJoin = 'round';
        ctx.lineWidth = 3.5;
        ctx.strokeStyle = theme.ground;
        ctx.strokeText(text, box.x + w / 2, box.y + h / 2 + 0.5);
        ctx.fillStyle = colour;
        ctx.fillText(text, box.x + w / 2, box.y + h / 2 + 0.5);
        ctx.restore();
        return true;
      }
      return false;
    },
  };
}

/** @typedef {ReturnType<typeof labelSheet>} Labels */

/**
 * Keeps symbols apart: true for the first that falls into a cell of so many pixels.
 * @param {number} cell
 */
export function spacing(cell) {
  const seen = new Set();
  return (/** @type {number} */ x, /** @type {number} */ y) => {
    const key = Math.floor(x / cell) * 65536 + Math.floor(y / cell);
    if (seen.has(key)) return false;
    seen.add(key);
    return true;
  };
}
