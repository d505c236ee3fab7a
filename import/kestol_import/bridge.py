"""Everything else that meshio reads, with its sets and marks as named groups."""

from __future__ import annotations

import pathlib
from typing import Any

import numpy as np

from .errors import Place, Refusal
from .foreign import refusing
from .mesh import Block, Group, Ints, Mesh, kind_of, name_the_nameless
from .msh_sections import CODE

# Whole numbers on cells or points are groups when they are few; more are numbers of something.
MOST_VALUES = 1000


def read_with_meshio(path: str) -> Mesh:
    """The mesh of any file that meshio reads; whatever it raises or prints is a Refusal."""
    try:
        import meshio
    except ImportError:
        raise Refusal("files of this kind need the package python3-meshio", CODE,
                      Place(path)) from None
    suffix = pathlib.Path(path).suffix or "no suffix"
    with refusing(path, CODE, f"meshio cannot read this file ({suffix})") as heard:
        mesh = convert(path, meshio.read(path))
    mesh.warnings += warnings_in(heard.getvalue())
    return mesh


def warnings_in(heard: str) -> list[str]:
    """What meshio warned of, each once: what it leaves out would be missed in the deck."""
    said = [" ".join(part.split()) for part in heard.split("Warning: ")[1:]]
    return [f"meshio: {text}" for text in dict.fromkeys(said)]


def convert(path: str, read: Any) -> Mesh:
    points = np.zeros((len(read.points), 3))
    given = np.asarray(read.points, np.float64)
    points[:, :given.shape[1]] = given
    if not np.isfinite(points).all():
        raise Refusal("a node has a coordinate that is not finite", CODE, Place(path))
    rows_of_block, blocks = gather_blocks(path, read, len(points))
    mesh = Mesh(path, points, np.arange(1, len(points) + 1), blocks, {})
    mesh.notes.append("numbers of the mesh are positions in the file, from 1")
    for name, nodes in read.point_sets.items():
        group(mesh, name).nodes = np.unique(np.asarray(nodes, np.int64))
    for name, pieces in read.cell_sets.items():
        if not name.startswith("gmsh:"):
            for position, rows in enumerate(pieces):
                add(mesh, name, rows_of_block[position], rows)
    name_cell_data(mesh, read, rows_of_block)
    name_point_data(mesh, read)
    name_the_nameless(mesh)
    return mesh


Rows = tuple[str, int]  # kind name and the row of the first cell


def gather_blocks(path: str, read: Any, points: int) -> tuple[list[Rows], dict[str, Block]]:
    """Cells of one kind in one block; where each block of the file begins in its own."""
    pieces: dict[str, list[Ints]] = {}
    numbers: dict[str, list[Ints]] = {}
    first, where = 1, []
    for cells in read.cells:
        nodes = np.asarray(cells.data)
        if nodes.ndim != 2 or nodes.dtype.kind not in "iu":
            raise Refusal(f"cells of kind {cells.type} cannot be imported", CODE, Place(path))
        if nodes.size and (nodes.min() < 0 or nodes.max() >= points):
            raise Refusal("a cell has a node that the file does not have", CODE, Place(path))
        where.append((cells.type, sum(len(p) for p in pieces.get(cells.type, []))))
        pieces.setdefault(cells.type, []).append(nodes.astype(np.int32))
        numbers.setdefault(cells.type, []).append(np.arange(first, first + len(nodes)))
        first += len(nodes)
    blocks = {kind: Block(kind_of(kind, parts[0].shape[1]), np.concatenate(parts),
                          np.concatenate(numbers[kind])) for kind, parts in pieces.items()}
    return where, blocks


def group(mesh: Mesh, name: str) -> Group:
    return mesh.groups.setdefault(name, Group(name))


def add(mesh: Mesh, name: str, block: Rows, rows: Ints | None) -> None:
    if rows is None or not len(rows):
        return
    kind, first = block
    one = group(mesh, name)
    more = np.asarray(rows, np.int64) + first
    one.rows[kind] = np.union1d(one.rows[kind], more) if kind in one.rows else np.unique(more)


def name_cell_data(mesh: Mesh, read: Any, blocks: list[Rows]) -> None:
    """Marks of cells: Gmsh's physical groups by their names, MED's families, and any other whole
    numbers as NAME:VALUE."""
    families = getattr(read, "cell_tags", {})
    for name, pieces in read.cell_data.items():
        values = [np.asarray(piece) for piece in pieces]
        if name == "gmsh:geometrical" or not all(is_mark(v) for v in values):
            continue
        distinct = np.unique(np.concatenate(values)) if values else []
        if len(distinct) > MOST_VALUES:
            continue
        for position, marks in enumerate(values):
            for value in np.unique(marks):
                rows = np.flatnonzero(marks == value)
                kind = mesh.blocks[blocks[position][0]].kind
                for label in labels(name, int(value), kind.dimension, read.field_data, families):
                    add(mesh, label, blocks[position], rows)


def is_mark(values: Ints) -> bool:
    return values.ndim == 1 and values.dtype.kind in "iu"


def labels(name: str, value: int, dimension: int, fields: Any, families: Any) -> list[str]:
    if name == "gmsh:physical":
        named = [field for field, (tag, dim) in fields.items() if (tag, dim) == (value, dimension)]
        return named or ([str(value)] if value else [])
    if name == "cell_tags" and families:
        return list(families.get(value, []))
    return [f"{name}:{value}"]


def name_point_data(mesh: Mesh, read: Any) -> None:
    """Marks of points in the same way."""
    families = getattr(read, "point_tags", {})
    for name, raw in read.point_data.items():
        marks = np.asarray(raw)
        if name.startswith("gmsh:") or not is_mark(marks):
            continue
        distinct = np.unique(marks)
        if len(distinct) > MOST_VALUES:
            continue
        for value in distinct:
            nodes = np.flatnonzero(marks == value)
            known = name == "point_tags" and families
            for label in families.get(int(value), []) if known else [f"{name}:{value}"]:
                one = group(mesh, label)
                one.nodes = np.union1d(one.nodes, nodes)
