"""Quadrilaterals cut into triangles along the shorter diagonal that lies within them."""

from __future__ import annotations

import numpy as np

from .errors import Place, Refusal
from .geometry import cross, dot, norm
from .mesh import Block, Ints, KINDS, Mesh, Reals

_CUTS = ([[0, 1, 2], [0, 2, 3]], [[0, 1, 3], [1, 2, 3]])


def halves_of(points: Reals, quads: Ints) -> Ints:
    """The triangles (n, 2, 3) of quadrilaterals (n, 4)."""
    at = points[quads]
    first_is_shorter = norm(at[:, 2] - at[:, 0]) <= norm(at[:, 3] - at[:, 1])
    within = []
    for cut in _CUTS:
        one, other = (cross(at[:, b] - at[:, a], at[:, c] - at[:, a]) for a, b, c in cut)
        within.append(dot(one, other) > 0)
    first = np.where(within[0] == within[1], first_is_shorter, within[0])
    return np.where(first[:, None, None], quads[:, _CUTS[0]], quads[:, _CUTS[1]])


def split_quads(mesh: Mesh) -> int:
    """Replaces the four-noded quadrilaterals of a mesh, in its groups too; returns how many. Both
    triangles keep the number of their quadrilateral and its sense of turning."""
    for name in ("quad8", "quad9"):
        if name in mesh.blocks:
            raise Refusal("quadrilaterals of second order cannot be split: mesh with triangles",
                          "quads", Place(mesh.path))
    quads = mesh.blocks.pop("quad", None)
    if quads is None:
        return 0
    halves = halves_of(mesh.points, quads.nodes)
    old = mesh.blocks.get("triangle")
    before = len(old.nodes) if old else 0
    nodes, numbers = halves.reshape(-1, 3), np.repeat(quads.numbers, 2)
    if old:
        nodes = np.concatenate([old.nodes, nodes])
        numbers = np.concatenate([old.numbers, numbers])
    mesh.blocks["triangle"] = Block(KINDS["triangle"], nodes, numbers)
    for group in mesh.groups.values():
        rows = group.rows.pop("quad", None)
        if rows is not None:
            both = (before + 2 * rows[:, None] + np.array([0, 1])).ravel()
            kept = group.rows.get("triangle", np.zeros(0, np.int64))
            group.rows["triangle"] = np.concatenate([kept, both])
    return len(quads.nodes)
