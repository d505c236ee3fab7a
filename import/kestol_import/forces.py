"""Whole forces, shared by the nodes of their groups."""

from __future__ import annotations

from dataclasses import dataclass

import numpy as np

from .applied import Applied, resultant
from .elements import group_of
from .errors import Refusal, plural
from .geometry import nodal_shares
from .mesh import BRICKS, Group, Ints, QUADS, Reals
from .messages import Messages
from .model import Model
from .recipe import LoadUse
from .sizes import describe
from .supports import used_nodes


@dataclass
class ForceLines:
    """Lines of nodal_point_loads: numbers (n,) and forces (n, 2 or 3)."""

    comment: str
    numbers: Ints
    forces: Reals


def force_lines(model: Model, use: LoadUse, messages: Messages
                ) -> tuple[list[ForceLines], list[Applied]]:
    """Each node of the groups gets the part of the force that an even traction would give it; the
    parts add up to the force. Points, and nodes without cells, get equal parts."""
    assert use.force is not None
    total = np.array([*use.force, 0.0][:3])
    parts, dimensions = [], set()
    taken = np.zeros(len(model.mesh.points), bool)
    met: dict[str, Ints] = {}
    for name in use.groups:
        used_nodes(model, use, name, messages)
        group = group_of(model.mesh, use, name)
        dimension, shares = group_shares(model, use, group, met)
        if dimension == 0:
            shares[taken] = 0
            taken |= shares > 0
        dimensions.add(dimension)
        shares[model.node_numbers == 0] = 0
        parts.append(shares)
    if len(dimensions) > 1:
        raise Refusal(f"{use.label}: groups of different dimensions cannot share a force", "load",
                      use.table.place("groups"))
    whole = sum(float(part.sum()) for part in parts)
    lines, applied = [], []
    for name, part in zip(use.groups, parts):
        nodes = np.flatnonzero(part)
        nodes = nodes[np.argsort(model.node_numbers[nodes])]
        forces = part[nodes, None] / whole * total
        record = describe(model.mesh, use.label, model.mesh.groups[name])
        record.nodes = len(nodes)
        record.detail = f"shared by {plural(len(nodes), 'node')}"
        record.force, record.moment = resultant(model.mesh.points[nodes] * model.length_scale,
                                                forces)
        applied.append(record)
        lines.append(ForceLines(f'{use.label}: group "{name}"', model.node_numbers[nodes],
                                written(model, forces)))
    return lines, applied


def group_shares(model: Model, use: LoadUse, group: Group,
                 met: dict[str, Ints]) -> tuple[int, Reals]:
    """The dimension of a group and, for each place, the size that it stands for."""
    mesh, shares = model.mesh, np.zeros(len(model.mesh.points))
    dimensions = mesh.dimensions(group)
    if not dimensions or dimensions[-1] == 0:
        shares[mesh.nodes_of(group)] = 1
        return 0, shares
    for kind, rows in mesh.rows_of(group, dimensions[-1]).items():
        one = mesh.blocks[kind].kind
        if one.noun in BRICKS or kind in QUADS or one.order > 2:
            raise Refusal(f'{use.label}: group "{group.name}" has cells of kind {kind}: a force is '
                          "shared over lines, triangles and tetrahedra", "load",
                          use.group_place(group.name))
        earlier = met.get(kind, np.zeros(0, np.int64))
        rows = np.setdiff1d(rows, earlier)
        met[kind] = np.concatenate([earlier, rows])
        nodes = mesh.blocks[kind].nodes[rows]
        np.add.at(shares, nodes, nodal_shares(mesh.points, one, nodes))
    return dimensions[-1], shares


def written(model: Model, forces: Reals) -> Reals:
    """Forces as the deck must say them: the solver takes the third component of solids for a
    moment and scales it as one."""
    if model.recipe.plane:
        return forces[:, :2]
    result = forces.copy()
    if model.third_scale != 1.0:
        result[:, 2] /= model.third_scale
    return result
