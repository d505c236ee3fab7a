"""The steps from a mesh to a model, in their order."""

from __future__ import annotations

from collections.abc import Callable

import numpy as np

from .applied import Applied
from .diagonals import swap_corner_diagonals
from .elements import check_plane, group_of, select_elements
from .errors import Place, plural
from .forces import ForceLines, force_lines
from .loads import LoadLines, distributed_lines
from .materials import number_materials
from .mesh import Mesh
from .messages import Messages
from .model import Model, number_nodes
from .orientation import orient
from .recipe import Recipe
from .sizes import describe
from .supports import SupportLines, no_supports, support_lines


def build_model(mesh: Mesh, recipe: Recipe, order: str, messages: Messages,
                note: Callable[[str], None]) -> Model:
    """Elements with their orientation, materials and numbers."""
    messages.step("choosing elements")
    for use in recipe.uses:
        for name in use.groups:
            group_of(mesh, use, name)
    elements = select_elements(mesh, recipe, messages)
    messages.step("orienting elements")
    for one in elements:
        turned = orient(mesh, one, messages)
        if turned:
            note(f"{turned} of {plural(len(one.nodes), 'element')} turned round")
    shells = next((e for e in elements if e.kind == "triangle"), None)
    if recipe.six_nodes:
        if shells is None:
            messages.warn("six_nodes has no effect: there are no 3-noded triangles", "no-effect",
                          recipe.materials[0].table.source.place(("options", "six_nodes")))
        else:
            swapped = swap_corner_diagonals(mesh, recipe, shells, messages)
            note(f"{plural(swapped, 'diagonal')} across supported corners swapped")
    messages.step("numbering nodes")
    numbers, places = number_nodes(mesh, elements, order)
    dropped = len(numbers) - len(places)
    if dropped:
        note(f"{plural(dropped, 'node')} without an element dropped")
    check_plane(mesh, recipe, places)
    return Model(mesh, recipe, elements, number_materials(mesh, recipe, elements), numbers, places)


def materials_applied(model: Model) -> list[Applied]:
    return [describe(model.mesh, use.label, model.mesh.groups[name])
            for use in model.recipe.materials for name in use.groups]


def build_supports(model: Model, messages: Messages) -> tuple[list[SupportLines], list[Applied]]:
    messages.step("placing supports")
    no_supports(model, messages)
    lines: list[SupportLines] = []
    applied: list[Applied] = []
    for use in model.recipe.supports:
        more, records = support_lines(model, use, messages)
        lines += more
        applied += records
    warn_contradictions(model, lines, messages)
    return lines, applied


def warn_contradictions(model: Model, lines: list[SupportLines], messages: Messages) -> None:
    """A node in two supports: the later line wins where both say something else."""
    count = len(model.node_places) + 1
    for degree in range(model.degrees):
        codes, values = np.zeros(count, np.int8), np.zeros(count)
        for line in lines:
            code = int(line.codes[degree])
            if not code:
                continue
            numbers, said = line.numbers, line.values[:, degree]
            other = (codes[numbers] > 0) & ((codes[numbers] != code) | (values[numbers] != said))
            if other.any():
                messages.warn(f"{line.comment} replaces what an earlier support says of degree "
                              f"{degree + 1} of node {numbers[np.argmax(other)]}",
                              "replaced-support", Place(model.recipe.path))
                return
            codes[numbers], values[numbers] = code, said


def build_loads(model: Model, messages: Messages
                ) -> tuple[list[LoadLines], list[ForceLines], list[Applied]]:
    messages.step("placing loads")
    loads: list[LoadLines] = []
    forces: list[ForceLines] = []
    applied: list[Applied] = []
    for use in model.recipe.loads:
        if use.force is None:
            lines, records = distributed_lines(model, use)
            loads += lines
        else:
            nodal, records = force_lines(model, use, messages)
            forces += nodal
        applied += records
    return loads, forces, applied
