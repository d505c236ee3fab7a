"""Small pictures as SVG: curves over meshes."""

WIDTH, HEIGHT = 480.0, 300.0
PLAIN = "#9aa4b0"
CURVES = ("#c8402a", "#2f6db3", "#3d8a4e", "#8a5aa8")


class Drawing:
    """Shapes in pixels, y downwards."""

    def __init__(self, width=WIDTH, height=HEIGHT):
        self.width, self.height, self.shapes = width, height, []

    def line(self, points, color, width=1.0, dashes=""):
        path = " ".join(f"{x:.1f},{y:.1f}" for x, y in points)
        dashed = f' stroke-dasharray="{dashes}"' if dashes else ""
        self.shapes.append(f'<polyline points="{path}" stroke="{color}" '
                           f'stroke-width="{width:.1f}"{dashed}/>')

    def dot(self, x, y, color, radius=2.5):
        self.shapes.append(f'<circle cx="{x:.1f}" cy="{y:.1f}" r="{radius:.1f}" fill="{color}"/>')

    def label(self, x, y, text, anchor="middle", color="#333"):
        self.shapes.append(f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" '
                           f'fill="{color}">{text}</text>')

    def text(self):
        return "\n".join([
            f'<svg xmlns="http://www.w3.org/2000/svg" width="{self.width:.0f}" '
            f'height="{self.height:.0f}" viewBox="0 0 {self.width:.0f} {self.height:.0f}" '
            'fill="none" font-family="sans-serif" font-size="12">',
            f'<rect width="{self.width:.0f}" height="{self.height:.0f}" fill="#fff"/>',
            *self.shapes, "</svg>"]) + "\n"


def ratios(x_label, curves, low=0.9, high=1.02):
    """Curves [(name, [(mesh, ratio)])] over meshes in equal steps, the target at 1; ratios below
    `low` stand at the lower border."""
    drawing = Drawing()
    meshes = sorted({m for _, curve in curves for m, _ in curve})
    left, right, top, bottom = 55.0, WIDTH - 15, 15.0, HEIGHT - 45

    def x(m):
        return left + (right - left) * (meshes.index(m) + 0.5) / len(meshes)

    def y(ratio):
        return bottom - (bottom - top) * (max(ratio, low) - low) / (high - low)

    drawing.line([(left, top), (left, bottom), (right, bottom)], "#333")
    step = 0.02 if high - low <= 0.2 else 0.1 if high - low <= 0.6 else 0.2
    ticks = [low + i * step for i in range(int((high - low) / step + 1.001))]
    for tick in ticks:
        drawing.line([(left - 4, y(tick)), (left, y(tick))], "#333")
        drawing.label(left - 8, y(tick) + 4, f"{tick:.2f}", "end")
    drawing.line([(left, y(1)), (right, y(1))], PLAIN, dashes="4 3")
    for m in meshes:
        drawing.label(x(m), bottom + 16, str(m))
    drawing.label((left + right) / 2, bottom + 36, x_label)
    for i, ((name, curve), color) in enumerate(zip(curves, CURVES)):
        drawing.line([(x(m), y(r)) for m, r in curve], color, 1.6)
        for m, r in curve:
            drawing.dot(x(m), y(r), color)
        drawing.label(right - 4, bottom - 10 - 16 * (len(curves) - 1 - i), name, "end", color)
    return drawing
