// Small drawing commands for symbols over the picture, in pixels.

/** @typedef {[number, number]} Point */

/** @param {CanvasRenderingContext2D} ctx @param {Point[]} points @param {boolean} [closed] */
export function path(ctx, points, closed = false) {
  ctx.beginPath();
  points.forEach(([x, y], i) => (i ? ctx.lineTo(x, y) : ctx.moveTo(x, y)));
  if (closed) ctx.closePath();
}

/** An arrow with its head at `to`. @param {CanvasRenderingContext2D} ctx @param {Point} from
 *  @param {Point} to @param {number} [head] */
export function arrow(ctx, from, to, head = 7) {
  const dx = to[0] - from[0], dy = to[1] - from[1], l = Math.hypot(dx, dy);
  if (l < 1) return;
  const h = Math.min(head, l), x = dx / l, y = dy / l;
  path(ctx, [from, [to[0] - x * h * 0.8, to[1] - y * h * 0.8]]);
  ctx.stroke();
  path(ctx, [to, [to[0] - x * h - y * h * 0.42, to[1] - y * h + x * h * 0.42],
             [to[0] - x * h + y * h * 0.42, to[1] - y * h - x * h * 0.42]], true);
  ctx.fill();
}

/** A turning arrow, positive against the clock. @param {CanvasRenderingContext2D} ctx
 *  @param {Point} at @param {number} radius @param {boolean} positive */
export function turningArrow(ctx, at, radius, positive) {
  const from = positive ? 0.35 * Math.PI : 0.65 * Math.PI;
  const to = positive ? -1.15 * Math.PI : 2.15 * Math.PI;
  ctx.beginPath();
  ctx.arc(at[0], at[1], radius, from, to, positive);
  ctx.stroke();
  const x = at[0] + radius * Math.cos(to), y = at[1] + radius * Math.sin(to);
  const side = positive ? -1 : 1;
  const tx = -Math.sin(to) * side, ty = Math.cos(to) * side;
  path(ctx, [[x + tx * 6, y + ty * 6], [x - ty * 3.5, y + tx * 3.5], [x + ty * 3.5, y - tx * 3.5]],
       true);
  ctx.fill();
}

/** @param {CanvasRenderingContext2D} ctx @param {Point} at @param {number} radius */
export function circle(ctx, at, radius) {
  ctx.beginPath();
  ctx.arc(at[0], at[1], radius, 0, 2 * Math.PI);
}

/** Short strokes on the far side of a ground line. @param {CanvasRenderingContext2D} ctx
 *  @param {Point} a @param {Point} b @param {Point} away */
export function ground(ctx, a, b, away) {
  path(ctx, [a, b]);
  ctx.stroke();
  const n = Math.max(2, Math.round(Math.hypot(b[0] - a[0], b[1] - a[1]) / 5));
  const lean = [(b[0] - a[0]) / n, (b[1] - a[1]) / n];
  ctx.save();
  ctx.lineWidth = 1;
  for (let i = 0; i <= n; ++i) {
    const x = a[0] + lean[0] * i, y = a[1] + lean[1] * i;
    path(ctx, [[x, y], [x + away[0] * 5 - lean[0] * 0.7, y + away[1] * 5 - lean[1] * 0.7]]);
    ctx.stroke();
  }
  ctx.restore();
}

/** A zigzag. @param {CanvasRenderingContext2D} ctx @param {Point} from @param {Point} to */
export function zigzag(ctx, from, to) {
  const dx = to[0] - from[0], dy = to[1] - from[1], l = Math.hypot(dx, dy) || 1;
  const sx = (-dy / l) * 4, sy = (dx / l) * 4;
  /** @type {Point[]} */ const points = [from];
  for (let k = 1; k < 8; ++k) {
    const t = k / 8, s = k === 1 || k === 7 ? 0 : k % 2 ? 1 : -1;
    points.push([from[0] + dx * t + sx * s, from[1] + dy * t + sy * s]);
  }
  path(ctx, [...points, to]);
  ctx.stroke();
}
