"""Lines of the materials section, and which of them each element has."""

from __future__ import annotations

from dataclasses import dataclass

import numpy as np

from .beams import axes_with_angles, axes_with_up, directions, euler_angles, upright_axes
from .elements import Elements
from .errors import Refusal
from .mesh import Ints, Mesh, Reals
from .recipe import ANGLES, MaterialUse, Recipe

# Family -> properties that the solver cannot do without, each with what gives it as well.
NEEDS: dict[str, dict[str, tuple[str, ...]]] = {
    "beams in a plane": {"E": ("Ex", "Ey"), "A": ("widthY", "widthZ"), "Iz": ("widthY", "widthZ")},
    "beams in space": {"E": ("Ex", "Ey"), "G": ("Gxy",), "A": ("widthY", "widthZ"),
                       "Iy": ("widthY", "widthZ"), "Iz": ("widthY", "widthZ"),
                       "J": ("widthY", "widthZ")},
    "shells": {"E": ("Ex", "Ey"), "nu": ("nuXY", "nuYX"), "G": ("Gxy", "Gxz", "Gyz"), "t": ()},
    "solids": {"E": ("Ex", "Ey"), "nu": ("nuXY", "nuYX")},
}


@dataclass
class MaterialLine:
    """A record of the materials section; `comment` says whose it is."""

    comment: str
    keys: dict[str, float]
    units: str


@dataclass
class Materials:
    """All lines, each element's line by kind, and the local y and z of beams."""

    lines: list[MaterialLine]
    numbers: dict[str, Ints]
    beam_y: Reals
    beam_z: Reals


def family_of(elements: Elements, plane: bool) -> str:
    if elements.dimension == 1:
        return "beams in a plane" if plane else "beams in space"
    return "shells" if elements.dimension == 2 else "solids"


def check_properties(use: MaterialUse, family: str) -> None:
    """Refuses a material that lacks what its elements need."""
    missing = []
    for key, others in NEEDS[family].items():
        if key not in use.values and not (others and all(o in use.values for o in others)):
            missing.append(key)
    if missing:
        raise Refusal(f"{use.label} lacks {', '.join(missing)} for {family}", "missing-property",
                      use.place)


def number_materials(mesh: Mesh, recipe: Recipe, found: list[Elements]) -> Materials:
    """A line for each material that has elements; one for each direction where a section has an up
    direction, because a line holds the angles of one set of axes."""
    lines: list[MaterialLine] = []
    numbers = {e.kind: np.zeros(len(e.nodes), np.int32) for e in found}
    materials = Materials(lines, numbers, np.zeros((0, 3)), np.zeros((0, 3)))
    for elements in found:
        if elements.dimension == 1:
            materials.beam_y = np.zeros((len(elements.nodes), 3))
            materials.beam_z = np.zeros((len(elements.nodes), 3))
    for index, use in enumerate(recipe.materials):
        plain = 0
        for elements in found:
            rows = np.flatnonzero(elements.material == index)
            if not len(rows):
                continue
            check_properties(use, family_of(elements, recipe.plane))
            if elements.dimension == 1:
                angles = place_beams(mesh, recipe, use, elements, rows, materials)
                if angles is not None:
                    numbers[elements.kind][rows] = add_directions(use, angles, lines)
                    continue
            if not plain:
                lines.append(MaterialLine(use.label, use.values, use.units))
                plain = len(lines)
            numbers[elements.kind][rows] = plain
    return materials


def place_beams(mesh: Mesh, recipe: Recipe, use: MaterialUse, elements: Elements, rows: Ints,
                materials: Materials) -> Reals | None:
    """Sets the axes of these beams; returns their angles when they have an up direction."""
    along = directions(mesh.points, elements.nodes[rows])
    if use.up is not None:
        y, z = axes_with_up(along, use.up, mesh.path, elements.numbers[rows])
    elif any(key in use.values for key in ANGLES):
        angles = [use.values.get(key, 0.0) for key in ANGLES]
        y, z = axes_with_angles(along, angles, mesh.path, elements.numbers[rows])
    else:
        y, z = upright_axes(along, recipe.plane)
    materials.beam_y[rows], materials.beam_z[rows] = y, z
    return euler_angles(along, y, z) if use.up is not None else None


def add_directions(use: MaterialUse, angles: Reals, lines: list[MaterialLine]) -> Ints:
    """A line for each distinct set of angles; the number of the line of each beam."""
    _, first, which = np.unique(np.round(angles, 9), axis=0, return_index=True,
                                return_inverse=True)
    start = len(lines) + 1
    for row in first:
        keys = {**use.values, **dict(zip(ANGLES, angles[row].tolist()))}
        lines.append(MaterialLine(use.label, keys, use.units))
    return start + which
