"""Which element has this face, this edge or just these nodes."""

from __future__ import annotations

import numpy as np

from .mesh import Ints

# Faces 0..3 of a tetrahedron and edges 0..2 of a triangle, as places among their nodes: corners,
# then mid-sides; a load line counts them in this order.
TETRA_FACES = ((0, 1, 2, 4, 5, 6), (1, 2, 3, 5, 9, 8), (2, 3, 0, 9, 7, 6), (3, 0, 1, 7, 4, 8))
TRIANGLE_EDGES = ((0, 1, 3), (1, 2, 4), (2, 0, 5))
CHUNK = 1 << 19


def row_keys(tables: list[Ints], count: int) -> list[Ints]:
    """One number per row of each table (n, k), equal for rows of the same nodes in any order;
    nodes are below `count`."""
    rows = np.sort(np.concatenate(tables), axis=1)
    key = rows[:, 0].astype(np.int64)
    highest = count
    for column in rows.T[1:]:
        if highest > 2 ** 62 // max(count, 1):
            _, key = np.unique(key, return_inverse=True)
            highest = len(key)
        key = key * count + column
        highest *= count
    return np.split(key, np.cumsum([len(table) for table in tables])[:-1])


class Sides:
    """Where sides are found: element row (-1: nowhere), side of it, how many elements have it."""

    def __init__(self, count: int) -> None:
        self.rows = np.full(count, -1, np.int64)
        self.sides = np.zeros(count, np.int64)
        self.owners = np.zeros(count, np.int64)


def find_sides(cells: Ints, elements: Ints, sides: tuple[tuple[int, ...], ...],
               count: int) -> Sides:
    """Looks for the corners of `cells` (m, c) among the sides of `elements` (n, k), each side given
    by its places; the first element that has a side is taken."""
    corners = cells.shape[1]
    found = Sides(len(cells))
    candidates = touching(cells, elements, corners, count)
    if not len(candidates):
        return found
    table = np.concatenate([elements[candidates][:, list(side[:corners])] for side in sides])
    wanted, keys = row_keys([cells, table], count)
    order = np.lexsort((np.tile(candidates, len(sides)), keys))
    ordered = keys[order]
    first = np.searchsorted(ordered, wanted, "left")
    found.owners = np.searchsorted(ordered, wanted, "right") - first
    hit = found.owners > 0
    place = order[first[hit]]
    found.rows[hit] = candidates[place % len(candidates)]
    found.sides[hit] = place // len(candidates)
    return found


def touching(cells: Ints, elements: Ints, corners: int, count: int) -> Ints:
    """Rows of the elements that have at least as many nodes in common with all the cells."""
    marked = np.zeros(count, bool)
    marked[cells] = True
    rows = [np.zeros(0, np.int64)]
    for start in range(0, len(elements), CHUNK):
        common = marked[elements[start:start + CHUNK]].sum(axis=1)
        rows.append(start + np.flatnonzero(common >= corners))
    return np.concatenate(rows)
