"""Frames drawn as DXF: lines and polylines become beams, layers become groups."""

from __future__ import annotations

from collections.abc import Collection
from typing import Any

import numpy as np

from .drawing_rest import CODE, WITH_ARCS, LeftOut
from .errors import Place, Refusal
from .foreign import refusing
from .mesh import Block, Group, KINDS, Mesh

LAYER_TAG = 8
Point = tuple[float, float, float]


def read_dxf(path: str, members: Collection[str] = ()) -> Mesh:
    """Two points per segment, not yet joined: MERGE of common ends is the caller's. `members` are the
    layers that shall become elements: a curve there is refused, since nothing else tells that the
    structure has lost it; elsewhere it may be a mark, and is warned of."""
    drawing, rest = Drawing(path), LeftOut()
    with refusing(path, CODE, "cannot be read as DXF"):
        for entity in load(path).modelspace():
            kind = drawing.take(entity)
            if kind:
                rest.add(kind, layer_of(entity))
    rest.refuse_curves(path, members)
    if not drawing.lines:
        raise Refusal("; ".join(["the drawing has no LINE, LWPOLYLINE, POLYLINE or 3DLINE",
                                 *rest.warnings()]), CODE, Place(path))
    mesh = drawing.mesh()
    mesh.warnings += rest.warnings()
    mesh.notes += rest.notes()
    return mesh


def load(path: str) -> Any:
    try:
        import ezdxf
    except ImportError:
        raise Refusal("DXF files need the package python3-ezdxf", CODE, Place(path)) from None
    return ezdxf.readfile(path)  # type: ignore[attr-defined]


class Drawing:
    """Segments and points with their layers."""

    def __init__(self, path: str) -> None:
        self.path = path
        self.lines: list[tuple[Point, Point]] = []
        self.line_layers: list[str] = []
        self.points: list[Point] = []
        self.point_layers: list[str] = []

    def take(self, entity: Any) -> str:
        """Nothing, or what to call an entity that is neither straight lines nor a point."""
        kind, layer = str(entity.dxftype()), layer_of(entity)
        if kind in ("LINE", "3DLINE"):
            self._chain([entity.dxf.start, entity.dxf.end], False, layer)
        elif kind == "LWPOLYLINE":
            if entity.has_arc:
                return kind + WITH_ARCS
            self._chain(list(entity.vertices_in_wcs()), bool(entity.closed), layer)
        elif kind == "POLYLINE":
            if not (entity.is_2d_polyline or entity.is_3d_polyline):
                return kind + " of a surface"
            if entity.is_2d_polyline and entity.has_arc:
                return kind + WITH_ARCS
            self._chain(vertices_of(entity), bool(entity.is_closed), layer)
        elif kind == "POINT":
            self.points.append(xyz(entity.dxf.location))
            self.point_layers.append(layer)
        else:
            return kind
        return ""

    def _chain(self, vertices: list[Any], closed: bool, layer: str) -> None:
        points = [xyz(v) for v in vertices]
        if closed and len(points) > 2:
            points.append(points[0])
        for a, b in zip(points, points[1:]):
            if a != b:
                self.lines.append((a, b))
                self.line_layers.append(layer)

    def mesh(self) -> Mesh:
        ends = [point for line in self.lines for point in line]
        points = np.array(ends + self.points, np.float64).reshape(-1, 3)
        if not np.isfinite(points).all():
            raise Refusal("a point has a coordinate that is not finite", CODE, Place(self.path))
        lines = np.arange(len(ends), dtype=np.int32).reshape(-1, 2)
        dots = np.arange(len(ends), len(points), dtype=np.int32).reshape(-1, 1)
        blocks = {"line": Block(KINDS["line"], lines, np.arange(1, len(lines) + 1)),
                  "vertex": Block(KINDS["vertex"], dots,
                                  np.arange(len(lines) + 1, len(lines) + 1 + len(dots)))}
        if not len(dots):
            del blocks["vertex"]
        groups: dict[str, Group] = {}
        for kind, layers in (("line", self.line_layers), ("vertex", self.point_layers)):
            for layer in dict.fromkeys(layers):
                rows = np.flatnonzero(np.array(layers, object) == layer)
                groups.setdefault(layer, Group(layer)).rows[kind] = rows
        return Mesh(self.path, points, np.arange(1, len(points) + 1), blocks, groups)


def layer_of(entity: Any) -> str:
    """The layer, also of a kind that ezdxf does not know: it keeps the bare tags of these."""
    if not hasattr(entity, "xtags"):
        return str(entity.dxf.layer)
    named = [tags.get_first_value(LAYER_TAG, None) for tags in entity.xtags.subclasses]
    return next((str(name) for name in named if name is not None), "0")


def xyz(vector: Any) -> Point:
    return float(vector[0]), float(vector[1]), float(vector[2])


def vertices_of(polyline: Any) -> list[Any]:
    """Vertices of an old polyline in the axes of the drawing; a plane one has its own."""
    places = [vertex.dxf.location for vertex in polyline.vertices]
    if polyline.is_3d_polyline:
        return places
    height = polyline.dxf.elevation.z
    return list(polyline.ocs().points_to_wcs([(p.x, p.y, height) for p in places]))
