"""Size of a group in words and numbers."""

from __future__ import annotations

import numpy as np

from .applied import Applied
from .errors import plural
from .geometry import carriers
from .matching import CHUNK
from .mesh import BRICKS, KINDS, QUADS, Group, Ints, Kind, Mesh
from .quads import halves_of

SIZES = {0: "", 1: "length", 2: "area", 3: "volume"}


def size_of(mesh: Mesh, kind: Kind, rows: Ints) -> float:
    """Length, area or volume of cells; NaN for kinds whose size this program does not know."""
    nodes = mesh.blocks[kind.name].nodes
    if kind.dimension == 0:
        return float(len(rows))
    if kind.noun in BRICKS or kind.order > 2:
        return float("nan")
    if kind.name in QUADS:
        halves = halves_of(mesh.points, nodes[rows, :4]).reshape(-1, 3)
        return float(carriers(mesh.points, KINDS["triangle"], halves)[1].sum())
    total = 0.0
    for start in range(0, len(rows), CHUNK):
        total += float(carriers(mesh.points, kind, nodes[rows[start:start + CHUNK]])[1].sum())
    return total


def describe(mesh: Mesh, label: str, group: Group) -> Applied:
    """The cells of the highest dimension of a group, and their size."""
    dimensions = mesh.dimensions(group)
    if not dimensions:
        return Applied(label, group.name, plural(len(group.nodes), "node"))
    top = dimensions[-1]
    rows = mesh.rows_of(group, top)
    counts = [plural(len(r), mesh.blocks[k].kind.noun) for k, r in rows.items()]
    size = float(np.sum([size_of(mesh, mesh.blocks[k].kind, r) for k, r in rows.items()]))
    return Applied(label, group.name, " and ".join(counts), SIZES[top], size if top else 0.0)
