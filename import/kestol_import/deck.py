"""The text of the deck, block by block."""

from __future__ import annotations

import os
from collections.abc import Iterator
from dataclasses import dataclass

import numpy as np

from .elements import FAMILIES
from .forces import ForceLines
from .loads import LoadLines
from .mesh import KINDS
from .model import Model
from .supports import SupportLines
from .text import integer_rows, real, real_rows, table_rows

BLOCKS = ("head", "mesh", "materials", "supports", "loads")


@dataclass
class Deck:
    """All that the text is made of."""

    model: Model
    supports: list[SupportLines]
    loads: list[LoadLines]
    forces: list[ForceLines]

    def block(self, name: str) -> Iterator[bytes]:
        """The text of one of BLOCKS, in pieces."""
        writers = {"head": self._head, "mesh": self._mesh, "materials": self._materials,
                   "supports": self._supports, "loads": self._loads}
        return writers[name]()

    def _head(self) -> Iterator[bytes]:
        recipe = self.model.recipe
        lines = [f"PROBLEM {recipe.title}", f"TYPE {'2d' if recipe.plane else '3d'}",
                 f"# made from {comment(os.path.basename(self.model.mesh.path))} and "
                 f"{comment(os.path.basename(recipe.path))}", *recipe.options]
        if recipe.units:
            lines += ["units_names",
                      "  # name, force, length, pressure, force factor, length factor"]
            lines += [f"  {u.name}  {u.force}  {u.length}  {u.pressure}  "
                      f"{real(u.factors[0])}  {real(u.factors[1])}" for u in recipe.units]
            lines += ["end", f"units_mesh {recipe.mesh_unit}",
                      f"units_mat_and_load {recipe.values_unit}", f"units_res {recipe.results}"]
        yield joined(lines)

    def _mesh(self) -> Iterator[bytes]:
        model = self.model
        for index, elements in enumerate(model.elements):
            dimension = 2 if model.recipe.plane else 3
            kind = KINDS[elements.kind]
            yield joined(["mesh", f"  dimension = {dimension}   elemtype "
                          f"{FAMILIES[kind.dimension]}   nnode = {kind.nodes}", "  coordinates"])
            if index == 0:
                yield from real_rows([np.arange(1, len(model.node_places) + 1)],
                                     model.mesh.points[model.node_places][:, :dimension])
            yield joined(["  end coordinates", "  elements"])
            numbers = np.arange(elements.first, elements.first + len(elements.nodes))
            nodes = model.node_numbers[elements.nodes]
            yield from integer_rows([numbers, *nodes.T, model.materials.numbers[elements.kind]])
            yield joined(["  end elements"])

    def _materials(self) -> Iterator[bytes]:
        lines = ["materials"]
        for number, line in enumerate(self.model.materials.lines, 1):
            units = f" units={line.units}" if line.units else ""
            keys = "".join(f" {key}={real(value)}" for key, value in line.keys.items())
            lines += [f"  # {comment(line.comment)}", f"  {number} {units}{keys}"]
        yield joined([*lines, "end materials"])

    def _supports(self) -> Iterator[bytes]:
        yield joined(["constraints"])
        for support in self.supports:
            yield joined([f"  # {comment(support.comment)}"])
            values = [" ".join(map(real, row)) for row in np.unique(support.values, axis=0)]
            angles = "".join(f"  {key}={real(v)}" for key, v in support.angles.items())
            if len(values) == 1:
                yield from integer_rows([support.numbers],
                                        f"  {support.codes}  {values[0]}{angles}")
                continue
            for number, row in zip(support.numbers.tolist(), support.values.tolist()):
                yield joined([f"  {number}  {support.codes}  {' '.join(map(real, row))}{angles}"])
        yield joined(["end constraints"])

    def _loads(self) -> Iterator[bytes]:
        for load in self.loads:
            yield joined([f"# {comment(load.comment)}", load.section])
            columns = [load.elements] if load.sides is None else [load.elements, load.sides]
            yield from table_rows(columns, load.components)
            yield joined([f"end {load.section}"])
        for force in self.forces:
            yield joined([f"# {comment(force.comment)}", "nodal_point_loads"])
            forces = np.zeros((len(force.numbers), self.model.degrees))
            forces[:, :force.forces.shape[1]] = force.forces
            yield from table_rows([force.numbers], forces)
            yield joined(["end nodal_point_loads"])
        if not self.loads and not self.forces:
            yield joined(["# no loads"])


def comment(text: str) -> str:
    """Text that stays on its line."""
    return "".join(c if c.isprintable() else "?" for c in text)


def joined(lines: list[str]) -> bytes:
    return ("\n".join(lines) + "\n").encode("utf-8", "surrogateescape")
