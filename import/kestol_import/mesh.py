"""A mesh as it was read: points, cells by kind, and named groups of them."""

from __future__ import annotations

from dataclasses import dataclass, field
from typing import Any

import numpy as np
import numpy.typing as npt

Ints = npt.NDArray[Any]  # whole numbers of any width
Reals = npt.NDArray[np.float64]
Flags = npt.NDArray[np.bool_]


@dataclass(frozen=True)
class Kind:
    """A kind of cell. Corners come first among its nodes, in the order of docs/elements.md."""

    name: str
    dimension: int
    corners: int
    nodes: int
    order: int
    noun: str


_KINDS = [
    Kind("vertex", 0, 1, 1, 1, "point"),
    Kind("line", 1, 2, 2, 1, "line"),
    Kind("line3", 1, 2, 3, 2, "line"),
    Kind("triangle", 2, 3, 3, 1, "triangle"),
    Kind("triangle6", 2, 3, 6, 2, "triangle"),
    Kind("quad", 2, 4, 4, 1, "quadrilateral"),
    Kind("quad8", 2, 4, 8, 2, "quadrilateral"),
    Kind("quad9", 2, 4, 9, 2, "quadrilateral"),
    Kind("tetra", 3, 4, 4, 1, "tetrahedron"),
    Kind("tetra10", 3, 4, 10, 2, "tetrahedron"),
    Kind("hexahedron", 3, 8, 8, 1, "brick"),
    Kind("hexahedron20", 3, 8, 20, 2, "brick"),
    Kind("hexahedron27", 3, 8, 27, 2, "brick"),
    Kind("wedge", 3, 6, 6, 1, "wedge"),
    Kind("wedge15", 3, 6, 15, 2, "wedge"),
    Kind("wedge18", 3, 6, 18, 2, "wedge"),
    Kind("pyramid", 3, 5, 5, 1, "pyramid"),
    Kind("pyramid13", 3, 5, 13, 2, "pyramid"),
    Kind("pyramid14", 3, 5, 14, 2, "pyramid"),
]
KINDS = {kind.name: kind for kind in _KINDS}
BRICKS = ("brick", "wedge", "pyramid")
QUADS = ("quad", "quad8", "quad9")

# Cells of a third or higher order: they are read, so that they can be refused by name.
_HIGH = {"line": (1, 2, "line"), "triangle": (2, 3, "triangle"), "quad": (2, 4, "quadrilateral"),
         "tetra": (3, 4, "tetrahedron"), "hexahedron": (3, 8, "brick"), "wedge": (3, 6, "wedge"),
         "pyramid": (3, 5, "pyramid"), "polygon": (2, 3, "polygon"),
         "polyhedron": (3, 4, "polyhedron")}


def kind_of(name: str, nodes: int) -> Kind:
    """The kind of that name; one of higher order is made up from its beginning."""
    if name in KINDS:
        return KINDS[name]
    stem = name.rstrip("0123456789")
    dimension, corners, noun = _HIGH.get(stem, (3, 0, name))
    return Kind(name, dimension, corners, nodes, 3, noun)


@dataclass
class Block:
    """All cells of one kind: places of their nodes (n, nodes) and their old numbers (n,)."""

    kind: Kind
    nodes: Ints
    numbers: Ints


@dataclass
class Group:
    """A name: rows of the blocks by kind name, and nodes that it holds without a cell."""

    name: str
    rows: dict[str, Ints] = field(default_factory=dict)
    nodes: Ints = field(default_factory=lambda: np.zeros(0, np.int32))


@dataclass
class Mesh:
    """Points (n, 3) with their old numbers (n,), cells by kind, groups by name."""

    path: str
    points: Reals
    numbers: Ints
    blocks: dict[str, Block]
    groups: dict[str, Group]
    notes: list[str] = field(default_factory=list)
    warnings: list[str] = field(default_factory=list)
    merged: Ints | None = None  # for each point the one that stands for it

    def dimensions(self, group: Group) -> list[int]:
        """The dimensions of the cells of a group, ascending."""
        return sorted({self.blocks[kind].kind.dimension for kind in group.rows})

    def rows_of(self, group: Group, dimension: int) -> dict[str, Ints]:
        """The rows of a group whose cells have that dimension, by kind name."""
        return {kind: rows for kind, rows in group.rows.items()
                if self.blocks[kind].kind.dimension == dimension}

    def nodes_of(self, group: Group) -> Ints:
        """Every node of a group once, ascending."""
        held = np.zeros(len(self.points), bool)
        held[group.nodes] = True
        for kind, rows in group.rows.items():
            held[self.blocks[kind].nodes[rows]] = True
        return np.flatnonzero(held)


class MeshBuilder:
    """Collects cells piece by piece; nodes are given by their old numbers."""

    def __init__(self, path: str) -> None:
        self.path = path
        self._pieces: dict[str, list[tuple[Ints, Ints]]] = {}
        self._kinds: dict[str, Kind] = {}
        self._counts: dict[str, int] = {}
        self._rows: dict[str, dict[str, list[Ints]]] = {}
        self._nodes: dict[str, list[Ints]] = {}

    def add_cells(self, kind: Kind, nodes: Ints, numbers: Ints) -> int:
        """Appends cells (n, nodes) and returns the row of the first one."""
        first = self._counts.get(kind.name, 0)
        self._kinds[kind.name] = kind
        self._counts[kind.name] = first + len(nodes)
        self._pieces.setdefault(kind.name, []).append((nodes, numbers))
        return first

    def add_rows(self, group: str, kind: Kind, rows: Ints) -> None:
        if len(rows):
            self._rows.setdefault(group, {}).setdefault(kind.name, []).append(rows)

    def add_nodes(self, group: str, numbers: Ints) -> None:
        self._nodes.setdefault(group, []).append(numbers)

    def finish(self, points: Reals, numbers: Ints, names: list[str]) -> Mesh:
        """The mesh; `names` are groups that must exist even when nothing is in them. A cell with a
        node that is not there raises KeyError with the number of that node."""
        places = Places(numbers)
        blocks = {}
        for name, pieces in self._pieces.items():
            nodes = np.concatenate([places.of(nodes) for nodes, _ in pieces])
            old = np.concatenate([numbers for _, numbers in pieces])
            pieces.clear()
            blocks[name] = Block(self._kinds[name], nodes, old)
        groups = {name: Group(name) for name in [*names, *self._rows, *self._nodes]}
        for name, kinds in self._rows.items():
            for kind, rows in kinds.items():
                groups[name].rows[kind] = np.unique(np.concatenate(rows))
        for name, held in self._nodes.items():
            groups[name].nodes = np.unique(places.of(np.concatenate(held)))
        mesh = Mesh(self.path, points, numbers, blocks, groups)
        name_the_nameless(mesh)
        return mesh


class Places:
    """From old numbers of nodes to their places in the list of points."""

    def __init__(self, numbers: Ints) -> None:
        self._sorted: Ints | None = None
        highest = int(numbers.max(initial=0))
        if len(numbers) and numbers.min() >= 0 and highest <= 4 * len(numbers) + 1_000_000:
            self._table = np.full(highest + 1, -1, np.int32)
            self._table[numbers] = np.arange(len(numbers), dtype=np.int32)
        else:
            self._order = np.argsort(numbers, kind="stable").astype(np.int32)
            self._sorted = numbers[self._order]

    def of(self, numbers: Ints) -> Ints:
        """Places of old numbers, any shape, as int32; KeyError names one that does not exist."""
        if self._sorted is None:
            inside = (numbers >= 0) & (numbers < len(self._table))
            if not inside.all():
                raise KeyError(int(numbers[~inside].flat[0]))
            places: Ints = self._table[numbers]
            if places.size and places.min() < 0:
                raise KeyError(int(numbers[places < 0].flat[0]))
            return places
        if not len(self._sorted):
            if numbers.size:
                raise KeyError(int(numbers.flat[0]))
            return np.zeros(numbers.shape, np.int32)
        at = np.minimum(np.searchsorted(self._sorted, numbers), len(self._sorted) - 1)
        wrong = self._sorted[at] != numbers
        if wrong.any():
            raise KeyError(int(numbers[wrong].flat[0]))
        found: Ints = self._order[at]
        return found


PLAIN_NAMES = ("points", "lines", "surfaces", "volumes")


def name_the_nameless(mesh: Mesh) -> None:
    """Gives a mesh without any group one for each dimension, so that a recipe can speak of it."""
    if mesh.groups:
        return
    for name, block in mesh.blocks.items():
        plain = PLAIN_NAMES[block.kind.dimension]
        group = mesh.groups.setdefault(plain, Group(plain))
        group.rows[name] = np.arange(len(block.nodes))
