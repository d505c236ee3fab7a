"""The model on its way to a deck: elements, numbers, units."""

from __future__ import annotations

from dataclasses import dataclass

import numpy as np

from .elements import Elements
from .graph import cuthill_mckee
from .materials import Materials
from .mesh import Ints, Mesh
from .recipe import Recipe


@dataclass
class Model:
    """Places are those of mesh.points, numbers those of the deck. `node_numbers[place]` is 0 for a
    node that no element has."""

    mesh: Mesh
    recipe: Recipe
    elements: list[Elements]
    materials: Materials
    node_numbers: Ints
    node_places: Ints

    @property
    def solid(self) -> bool:
        return any(e.dimension == 3 for e in self.elements)

    @property
    def degrees(self) -> int:
        """Degrees of freedom of a node."""
        return 3 if self.solid or self.recipe.plane else 6

    @property
    def length_scale(self) -> float:
        """Size of the mesh's length in that of materials and loads."""
        values = self.recipe.system(self.recipe.values_unit)
        mesh = next((u for u in self.recipe.units if u.length == self.recipe.mesh_unit), None)
        return mesh.factors[1] / values.factors[1] if mesh and values else 1.0

    @property
    def third_scale(self) -> float:
        """Size of the length of loads in that of the results, which the solver misplaces for the
        third degree of solids: it takes it for a rotation."""
        values = self.recipe.system(self.recipe.values_unit)
        results = self.recipe.system(self.recipe.results)
        if not self.solid or values is None or results is None:
            return 1.0
        return values.factors[1] / results.factors[1]

    def of_dimension(self, dimension: int) -> Elements | None:
        return next((e for e in self.elements if e.dimension == dimension), None)


def number_nodes(mesh: Mesh, elements: list[Elements], order: str) -> tuple[Ints, Ints]:
    """Deck number of each place (0: unused) and the places in the order of their numbers."""
    used = np.zeros(len(mesh.points), bool)
    for one in elements:
        used[one.nodes] = True
    places = np.flatnonzero(used)
    numbers = np.zeros(len(mesh.points), np.int32)
    numbers[places] = np.arange(1, len(places) + 1)
    if order == "rcm":
        tables = [numbers[one.nodes] - 1 for one in elements]
        places = places[cuthill_mckee(len(places), tables)]
        numbers[places] = np.arange(1, len(places) + 1)
    return numbers, places
