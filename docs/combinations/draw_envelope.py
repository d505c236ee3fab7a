#!/usr/bin/env python3
"""Draws the envelope of the bending moments of a plane frame:

    kestol-combine --envelopes --json frame.json frame.toml
    draw_envelope.py frame.json frame-envelope.svg

Moments stand on the side that they pull, as the solver draws them: along the local y axis of the
beam, positive ones against it. The band lies between the smallest and the largest moment of all
combinations; the extremes of each beam are written with the combination that gives them.
"""

from __future__ import annotations

import json
import sys
from pathlib import Path
from typing import NamedTuple

MARGIN = 150.0  # pixels around the frame
SIZE = 520.0  # the longer side of the frame
HEIGHT = 0.14  # of the frame's size: the largest moment


class Point(NamedTuple):
    """A place on the drawing or in the frame."""

    x: float
    y: float


class Drawing:
    """Maps the frame to the page and collects shapes."""

    def __init__(self, nodes: list[dict]) -> None:
        xs, ys = [[node["x"][k] for node in nodes] for k in (0, 1)]
        self.left, self.top = min(xs), max(ys)
        self.extent = max(max(xs) - min(xs), max(ys) - min(ys))
        self.scale = SIZE / self.extent
        self.width = (max(xs) - min(xs)) * self.scale + 2 * MARGIN
        self.height = (max(ys) - min(ys)) * self.scale + 2 * MARGIN
        self.shapes: list[str] = []
        self.labels: list[str] = []

    def at(self, x: float, y: float) -> Point:
        return Point(MARGIN + (x - self.left) * self.scale, MARGIN + (self.top - y) * self.scale)

    def polygon(self, points: list[Point], style: str) -> None:
        text = " ".join(f"{p.x:.1f},{p.y:.1f}" for p in points)
        self.shapes.append(f'<polygon points="{text}" {style}/>')

    def polyline(self, points: list[Point], style: str) -> None:
        text = " ".join(f"{p.x:.1f},{p.y:.1f}" for p in points)
        self.shapes.append(f'<polyline points="{text}" fill="none" {style}/>')

    def text(self, place: Point, text: str, anchor: str) -> None:
        self.labels.append(f'<text x="{place.x:.1f}" y="{place.y:.1f}" '
                           f'text-anchor="{anchor}">{text}</text>')

    def document(self, title: str) -> str:
        return "\n".join([
            f'<svg xmlns="http://www.w3.org/2000/svg" width="{self.width:.0f}" '
            f'height="{self.height:.0f}" font-family="sans-serif" font-size="13">',
            f"<title>{title}</title>",
            '<rect width="100%" height="100%" fill="white"/>',
            f'<text x="{self.width / 2:.1f}" y="28" font-size="16" text-anchor="middle">'
            f"{title}</text>",
            *self.shapes,
            '<g paint-order="stroke" stroke="white" stroke-width="4">', *self.labels, "</g>",
            "</svg>", ""])


def draw_beam(drawing: Drawing, beam: dict, start: list[float], per_moment: float) -> None:
    """The band of one beam, its axis, and its extremes."""
    along, across = beam["axes"][0], beam["axes"][1]

    def place(x: float, moment: float) -> Point:
        offset = -moment * per_moment
        return drawing.at(start[0] + along[0] * x + across[0] * offset,
                          start[1] + along[1] * x + across[1] * offset)

    stations = beam["stations"]
    least = [place(s["x"], s["Mz"]["min"]) for s in stations]
    largest = [place(s["x"], s["Mz"]["max"]) for s in stations]
    drawing.polygon(least + largest[::-1], 'fill="#9ecae1" fill-opacity="0.6"')
    drawing.polyline(least, 'stroke="#b2182b" stroke-width="1.5"')
    drawing.polyline(largest, 'stroke="#2166ac" stroke-width="1.5"')
    drawing.polyline([place(0.0, 0.0), place(beam["length"], 0.0)],
                     'stroke="black" stroke-width="3"')
    for key, best in (("min", min), ("max", max)):
        station = best(stations, key=lambda s: s["Mz"][key])
        moment = station["Mz"]
        label(drawing, place(station["x"], moment[key]), place(station["x"], 0.0),
              f'{moment[key]:.1f} ({moment[key + "By"]})')


def label(drawing: Drawing, tip: Point, foot: Point, text: str) -> None:
    """A text beyond the tip of an ordinate."""
    if abs(tip.x - foot.x) > abs(tip.y - foot.y):
        right = tip.x > foot.x
        drawing.text(Point(tip.x + (6 if right else -6), tip.y - 5), text,
                     "start" if right else "end")
    else:
        drawing.text(Point(tip.x, tip.y + (16 if tip.y > foot.y else -8)), text, "middle")


def main(source: str, target: str) -> None:
    document = json.loads(Path(source).read_text(encoding="utf-8"))
    envelopes = document["envelopes"]
    nodes = {node["number"]: node["x"] for node in envelopes["nodes"]}
    drawing = Drawing(envelopes["nodes"])
    largest = max(abs(station["Mz"][key]) for beam in envelopes["beams"]
                  for station in beam["stations"] for key in ("min", "max"))
    for beam in envelopes["beams"]:
        draw_beam(drawing, beam, nodes[beam["nodes"][0]], HEIGHT * drawing.extent / largest)
    units = document["units"]
    title = f'Envelope of the bending moments [{units["force"]} {units["length"]}]'
    Path(target).write_text(drawing.document(title), encoding="utf-8")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])
