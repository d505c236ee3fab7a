"""Lines of the constraints section."""

from __future__ import annotations

from dataclasses import dataclass

import numpy as np

from .applied import Applied
from .elements import group_of
from .errors import Place, Refusal, plural
from .expressions import ExpressionError
from .mesh import Ints, Mesh, Reals
from .messages import Messages
from .model import Model
from .recipe import SupportUse, Use
from .sizes import describe


@dataclass
class SupportLines:
    """One support on the nodes of one group: numbers (n,), codes, values (n, degrees), angles."""

    comment: str
    numbers: Ints
    codes: str
    values: Reals
    angles: dict[str, float]


def used_nodes(model: Model, use: Use, name: str, messages: Messages) -> Ints:
    """Places of the nodes of a group that elements have; warns of others, refuses if none has."""
    group = group_of(model.mesh, use, name)
    nodes = model.mesh.nodes_of(group)
    used = nodes[model.node_numbers[nodes] > 0]
    place = use.group_place(name)
    if not len(nodes):
        raise Refusal(f'{use.label}: group "{name}" is empty', "group", place)
    if not len(used):
        raise Refusal(f'{use.label}: no node of group "{name}" belongs to an element', "group",
                      place)
    if len(used) < len(nodes):
        messages.warn(f'{use.label}: {plural(len(nodes) - len(used), "node")} of group "{name}" '
                      "belong to no element and are left out", "loose-node", place)
    return used


def support_lines(model: Model, use: SupportUse, messages: Messages
                  ) -> tuple[list[SupportLines], list[Applied]]:
    if len(use.codes) != model.degrees:
        raise Refusal(f"codes: must be {model.degrees} digits, one for each degree of freedom",
                      "support", use.table.place("codes"))
    lines, applied = [], []
    taken = np.zeros(len(model.node_numbers), bool)
    for name in use.groups:
        nodes = used_nodes(model, use, name, messages)
        fresh = nodes[~taken[nodes]]
        taken[fresh] = True
        fresh = fresh[np.argsort(model.node_numbers[fresh])]
        values = support_values(model, use, fresh)
        lines.append(SupportLines(f'{use.label}: group "{name}"', model.node_numbers[fresh],
                                  use.codes, values, use.angles))
        record = describe(model.mesh, use.label, model.mesh.groups[name])
        record.nodes, record.detail = len(nodes), f"codes {use.codes}"
        applied.append(record)
    return lines, applied


def support_values(model: Model, use: SupportUse, nodes: Ints) -> Reals:
    """Values (n, degrees) as the solver wants them."""
    values = np.zeros((len(nodes), len(use.codes)))
    at = model.mesh.points[nodes]
    for degree, value in enumerate(use.values):
        try:
            values[:, degree] = value.at(at)
        except ExpressionError as failure:
            raise Refusal(f"values: {failure}", "expression",
                          use.table.place("values", degree)) from None
    # The solver scales the third value of solids as that of a rotation: made good for here.
    scale = model.third_scale
    if len(use.codes) == 3 and model.solid and scale != 1.0:
        values[:, 2] *= scale if use.codes[2] == "1" else 1 / scale ** 2
    return values


def held_degrees(mesh: Mesh, uses: list[SupportUse]) -> Ints:
    """For each place the degrees that supports prescribe there, as bits."""
    held = np.zeros(len(mesh.points), np.int8)
    for use in uses:
        bits = sum(1 << degree for degree, code in enumerate(use.codes) if code == "1")
        for name in use.groups:
            held[mesh.nodes_of(group_of(mesh, use, name))] |= np.int8(bits)
    return held


def no_supports(model: Model, messages: Messages) -> None:
    if not model.recipe.supports:
        messages.warn("the recipe has no support", "no-support", Place(model.recipe.path))
