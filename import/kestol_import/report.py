"""Reports: the groups of a mesh, what was applied where, and old and new numbers."""

from __future__ import annotations

from collections.abc import Iterator

import numpy as np

from .applied import Applied
from .deck import comment
from .elements import Elements
from .errors import plural
from .mesh import KINDS, Ints, Mesh, Reals
from .model import Model
from .recipe import Recipe
from .sizes import SIZES, size_of
from .text import CHUNK


def figure(value: float) -> str:
    """Six digits; what is nothing but rounding is 0."""
    return f"{value:.6g}"


def vector(values: Reals, scale: float) -> str:
    """Three components; those below 1e-12 of the scale are 0."""
    return "(" + ", ".join(figure(v if abs(v) > 1e-12 * scale else 0.0) for v in values) + ")"


# --- --list ---------------------------------------------------------------------------------------


def list_groups(mesh: Mesh) -> str:
    """A table of the groups: name, dimension, cells, nodes, size; a line for each dimension."""
    head = ("group", "dim", "cells", "nodes", "size")
    rows = [row for group in mesh.groups.values() for row in group_rows(mesh, group.name)]
    widths = [max(len(row[c]) for row in [head, *rows]) for c in range(len(head))]
    lines = []
    for row in [head, *rows]:
        cells = [row[0].ljust(widths[0])]
        cells += [text.rjust(width) for text, width in zip(row[1:4], widths[1:4])]
        lines.append("  ".join([*cells, row[4]]).rstrip())
    lo, hi = mesh.points.min(axis=0), mesh.points.max(axis=0)
    lines.append(f"{plural(len(mesh.points), 'node')}; {box(lo, hi)}")
    lines.append(", ".join(plural(len(b.nodes), b.kind.noun) + f" of {b.kind.nodes}"
                           for b in mesh.blocks.values() if len(b.nodes)))
    return "\n".join(lines) + "\n"


def box(low: Reals, high: Reals) -> str:
    return ", ".join(f"{axis} {figure(a)} to {figure(b)}" for axis, a, b in zip("xyz", low, high))


def group_rows(mesh: Mesh, name: str) -> list[tuple[str, str, str, str, str]]:
    group, rows = mesh.groups[name], []
    for dimension in mesh.dimensions(group):
        kinds = mesh.rows_of(group, dimension)
        cells = sum(len(r) for r in kinds.values())
        size = sum(size_of(mesh, mesh.blocks[k].kind, r) for k, r in kinds.items())
        held = np.zeros(len(mesh.points), bool)
        for kind, r in kinds.items():
            held[mesh.blocks[kind].nodes[r]] = True
        text = f"{SIZES[dimension]} {figure(size)}" if dimension and size == size else ""
        rows.append((comment(name), str(dimension), str(cells), str(int(held.sum())), text))
    if len(group.nodes) or not rows:
        rows.append((comment(name), "0", "0", str(len(group.nodes)), ""))
    return rows


# --- what was applied -----------------------------------------------------------------------------


def summary(model: Model, deck: str, applied: list[Applied]) -> str:
    """What became of the mesh: elements, then materials, supports and loads group by group. Sizes
    are in the unit of the mesh, forces and moments in those of the values."""
    mesh, units = model.mesh, UnitNames(model.recipe)
    counts = ", ".join(count_of(e) for e in model.elements)
    lines = [f"{comment(deck)}: {plural(len(model.node_places), 'node')}, {counts}"]
    size = float(np.abs(mesh.points).max()) * model.length_scale
    for record in applied:
        parts = [record.count]
        if record.size_name:
            parts.append(f"{record.size_name} {figure(record.size)}{units.size(record.size_name)}")
        if record.nodes:
            parts.append(record.detail if "node" in record.detail
                         else plural(record.nodes, "node"))
        if record.detail and "node" not in record.detail:
            parts.append(record.detail)
        lines.append(f'{comment(record.label)} on "{comment(record.group)}": {", ".join(parts)}')
        if record.force is not None:
            scale = float(np.abs(record.force).max())
            lines.append(f"    force {vector(record.force, scale)}{units.force}, moment about the "
                         f"origin {vector(record.moment, scale * size)}{units.moment}")
    return "\n".join(lines) + "\n"


class UnitNames:
    """What stands behind figures: a blank and a unit, or nothing where the recipe names none."""

    def __init__(self, recipe: Recipe) -> None:
        values = recipe.system(recipe.values_unit)
        self.force = comment(f" {values.force}") if values else ""
        self.moment = comment(f" {values.force} {values.length}") if values else ""
        self._length = comment(f" {recipe.mesh_unit}") if recipe.mesh_unit else ""

    def size(self, name: str) -> str:
        """Of a length, an area or a volume."""
        powers = {"length": "", "area": "^2", "volume": "^3"}
        return self._length and self._length + powers[name]


def count_of(elements: Elements) -> str:
    kind = KINDS[elements.kind]
    noun = "beam" if kind.dimension == 1 else kind.noun
    return f"{plural(len(elements.nodes), noun)} of {kind.nodes} nodes"


# --- --map ----------------------------------------------------------------------------------------


def number_map(model: Model) -> Iterator[bytes]:
    """CSV: kind, old and new number; a node or a cell without a new number is not in the deck."""
    mesh = model.mesh
    yield b"kind,old,new\n"
    places = mesh.merged if mesh.merged is not None else np.arange(len(mesh.points))
    yield from csv_rows("node", mesh.numbers, model.node_numbers[places])
    for elements in model.elements:
        new = np.arange(elements.first, elements.first + len(elements.nodes))
        yield from csv_rows("element", elements.numbers, new)
    for kind, block in mesh.blocks.items():
        bare = np.setdiff1d(block.numbers, np.concatenate([e.numbers for e in model.elements]))
        yield from csv_rows("cell", bare, np.zeros(len(bare), np.int64))


def csv_rows(kind: str, old: Ints, new: Ints) -> Iterator[bytes]:
    for start in range(0, len(old), CHUNK):
        pairs = zip(old[start:start + CHUNK].tolist(), new[start:start + CHUNK].tolist())
        yield "".join(f"{kind},{a},{b or ''}\n" for a, b in pairs).encode()
