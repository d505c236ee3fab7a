"""Nodes at one place become one node."""

from __future__ import annotations

import numpy as np

from .errors import Place, Refusal
from .graph import close_pairs, components
from .mesh import Ints, Mesh


def merge_nodes(mesh: Mesh, tolerance: float) -> int:
    """Joins nodes that are not farther apart than the tolerance, and chains of such; the lowest
    one stays. Cells keep their node places, which now may name one place twice. Returns how many
    nodes went."""
    pairs = close_pairs(mesh.points, tolerance)
    if pairs is None:
        raise Refusal(f"--merge {tolerance:g} is too large: thousands of nodes would become one",
                      "merge", Place(mesh.path))
    parent = components(len(mesh.points), *pairs)
    merged = int(np.count_nonzero(parent != np.arange(len(parent))))
    if not merged:
        return 0
    for block in mesh.blocks.values():
        nodes = parent[block.nodes].astype(np.int32)
        refuse_collapsed(mesh, block.nodes, nodes, block.numbers, tolerance)
        block.nodes = nodes
    for group in mesh.groups.values():
        group.nodes = np.unique(parent[group.nodes])
    mesh.merged = parent
    return merged


def refuse_collapsed(mesh: Mesh, before: Ints, after: Ints, numbers: Ints,
                     tolerance: float) -> None:
    """A cell whose own nodes would become one has lost its shape."""
    for i in range(after.shape[1]):
        for j in range(i):
            same = (after[:, i] == after[:, j]) & (before[:, i] != before[:, j])
            if same.any():
                cell = numbers[np.argmax(same)]
                raise Refusal(f"--merge {tolerance:g} is too large: two nodes of cell {cell} "
                              "would become one", "merge", Place(mesh.path))
