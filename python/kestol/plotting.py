"""Pictures by matplotlib."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any

import numpy as np
from numpy.typing import NDArray

if TYPE_CHECKING:
    import matplotlib.axes

    from .results import Results

Floats = NDArray[np.float64]

_DIAGRAMS = ("N", "Vy", "Vz", "T", "My", "Mz")
#: How much of the model's size the largest displacement or value takes.
_SHARE = 0.1
#: Edges between the corners of elements, by how many nodes these have.
_TRIANGLE = ((0, 1), (1, 2), (2, 0))
_TETRAHEDRON = ((0, 1), (1, 2), (2, 0), (0, 3), (1, 3), (2, 3))
_EDGES = {2: ((0, 1),), 3: _TRIANGLE, 6: _TRIANGLE, 4: _TETRAHEDRON, 10: _TETRAHEDRON}

_MODEL = "#8c8c8c"
_SHAPE = "#1f5fa8"
_DIAGRAM = "#b3402a"


def _edges(results: Results, beams: bool) -> NDArray[np.intp]:
    """(edges, 2): rows of the nodes, of beams or of everything else, each edge once."""
    pairs = [(nodes[a] - 1, nodes[b] - 1)
             for _, *nodes in results.model.elements if (len(nodes) == 2) == beams
             for a, b in _EDGES[len(nodes)]]
    return np.unique(np.sort(np.array(pairs, dtype=np.intp).reshape(-1, 2), axis=1), axis=0)


def _scale(results: Results, largest: float) -> float:
    size = float(np.ptp(results.coordinates, axis=0).max())
    return _SHARE * size / largest if largest > 0.0 else 1.0


def _stations(results: Results) -> Floats:
    """(beams, stations, 3): where the stations lie, undeformed."""
    beams = results.beams
    starts = results.coordinates[beams.nodes[:, 0] - 1]
    positions: Floats = starts[:, None] + beams.x[:, :, None] * beams.axes[:, None, 0]
    return positions


class _Canvas:
    """Lines and faces in the plane or in space."""

    def __init__(self, results: Results, ax: matplotlib.axes.Axes | None) -> None:
        import matplotlib.pyplot

        self.flat = results.model.dimension == 2
        if ax is None:
            figure = matplotlib.pyplot.figure()
            ax = figure.add_subplot() if self.flat else figure.add_subplot(projection="3d")
        self.ax: Any = ax
        if not self.flat and getattr(ax, "name", "") != "3d":
            raise ValueError("a model in space needs axes with projection=\"3d\"")
        self._points: list[Floats] = [results.coordinates]

    def lines(self, lines: Floats, **style: Any) -> None:
        """(lines, points, 3)."""
        if not len(lines):
            return
        self._points.append(lines.reshape(-1, 3))
        if self.flat:
            from matplotlib.collections import LineCollection
            self.ax.add_collection(LineCollection(list(lines[:, :, :2]), **style))
        else:
            from mpl_toolkits.mplot3d.art3d import Line3DCollection
            self.ax.add_collection3d(Line3DCollection(list(lines), **style))

    def faces(self, faces: Floats, **style: Any) -> None:
        """(faces, points, 3)."""
        if not len(faces):
            return
        self._points.append(faces.reshape(-1, 3))
        if self.flat:
            from matplotlib.collections import PolyCollection
            self.ax.add_collection(PolyCollection(list(faces[:, :, :2]), **style))
        else:
            from mpl_toolkits.mplot3d.art3d import Poly3DCollection
            self.ax.add_collection3d(Poly3DCollection(list(faces), **style))

    def finish(self, results: Results, title: str) -> matplotlib.axes.Axes:
        points = np.concatenate(self._points)
        low, high = points.min(axis=0), points.max(axis=0)
        middle, reach = (low + high) / 2, 0.55 * max(float((high - low).max()), 1e-30)
        unit = results.units["length"]
        names = "xy" if self.flat else "xyz"
        for k, name in enumerate(names):
            half = reach if not self.flat else 0.55 * max(float((high - low)[k]), 0.2 * reach)
            getattr(self.ax, f"set_{name}lim")(middle[k] - half, middle[k] + half)
            getattr(self.ax, f"set_{name}label")(f"{name} [{unit}]" if unit else name)
        if self.flat:
            self.ax.set_aspect("equal")
        else:
            self.ax.set_box_aspect((1, 1, 1))
        self.ax.set_title(title)
        drawn: matplotlib.axes.Axes = self.ax
        return drawn


def draw(results: Results, diagram: str | None, scale: float | None,
         ax: matplotlib.axes.Axes | None) -> matplotlib.axes.Axes:
    """See :meth:`kestol.Results.plot`."""
    if diagram is not None and diagram not in _DIAGRAMS:
        raise ValueError(f"a diagram is one of {', '.join(_DIAGRAMS)}, not {diagram!r}")
    canvas = _Canvas(results, ax)
    nodes = results.coordinates
    both = np.concatenate([_edges(results, beams=True), _edges(results, beams=False)])
    canvas.lines(nodes[both], colors=_MODEL, linewidths=1.0)
    held = nodes[results.reaction_nodes[results.reaction_nodes > 0] - 1]
    columns = held[:, :2].T if canvas.flat else held.T
    canvas.ax.plot(*columns, linestyle="none", marker="^", color="black", markersize=6)
    if diagram is None:
        return _draw_shape(results, scale, canvas)
    return _draw_diagram(results, diagram, scale, canvas)


def _draw_shape(results: Results, scale: float | None,
                canvas: _Canvas) -> matplotlib.axes.Axes:
    moved = results.displacements[:, :3]
    largest = float(np.linalg.norm(moved, axis=1).max(initial=0.0))
    if len(results.beams):
        largest = max(largest, float(np.linalg.norm(results.beams.u, axis=2).max()))
    factor = _scale(results, largest) if scale is None else scale
    canvas.lines(_stations(results) + factor * results.beams.u, colors=_SHAPE, linewidths=1.8)
    edges = _edges(results, beams=False)
    canvas.lines((results.coordinates + factor * moved)[edges], colors=_SHAPE, linewidths=0.9)
    unit = results.units["length"]
    title = f"Displacements x {factor:.4g}, largest {largest:.4g} {unit}"
    return canvas.finish(results, title.strip())


def _draw_diagram(results: Results, diagram: str, scale: float | None,
                  canvas: _Canvas) -> matplotlib.axes.Axes:
    values: Floats = getattr(results.beams, diagram)
    largest = float(np.abs(values).max(initial=0.0))
    factor = _scale(results, largest) if scale is None else scale
    directions = results._solution.diagram_directions(_DIAGRAMS.index(diagram))
    axis = _stations(results)
    curve = axis + factor * values[:, :, None] * directions[:, None]
    canvas.faces(np.concatenate([axis, curve[:, ::-1]], axis=1), facecolors=_DIAGRAM, alpha=0.25,
                 linewidths=0)
    canvas.lines(curve, colors=_DIAGRAM, linewidths=1.4)
    force, length = results.units["force"], results.units["length"]
    unit = force if diagram in ("N", "Vy", "Vz") else f"{force} {length}".strip()
    return canvas.finish(results, f"{diagram}, largest {largest:.4g} {unit}".strip())
