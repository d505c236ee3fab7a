"""Edges that cut a supported corner.

ConvertTo6Nodes puts a node on every edge and holds it where both ends are held. An inner edge
between two supported nodes, as in the corner of a plate, would become a support inside the plate:
the two triangles of such an edge take their other diagonal."""

from __future__ import annotations

import numpy as np

from .elements import Elements, group_of
from .errors import Place, plural
from .geometry import area_vectors, dot, norm
from .matching import TRIANGLE_EDGES, row_keys
from .mesh import Flags, Ints, Mesh
from .messages import Messages
from .orientation import neighbour_pairs
from .recipe import Recipe
from .supports import held_degrees

LEAST_COSINE = 0.9  # of the angle between the two triangles: a fold keeps its edge
LEAST_AREA = 0.05  # of the smaller triangle


def swap_corner_diagonals(mesh: Mesh, recipe: Recipe, elements: Elements,
                          messages: Messages) -> int:
    """Swaps what can be swapped in the elements and in the cells of the mesh; warns of the rest."""
    held = held_degrees(mesh, recipe.supports)
    left, right, edge = held_edges(mesh, recipe, elements, held)
    swapped = 0
    touched = np.zeros(len(elements.nodes), bool)
    stuck = []
    for one, two, (a, b) in zip(left, right, edge):
        if two >= 0 and touched[[one, two]].any():
            stuck.append((a, b))
            continue
        new = other_diagonal(mesh, recipe, elements, held, (one, two), (a, b))
        if new is None:
            stuck.append((a, b))
            continue
        replace(mesh, elements, (one, two), new)
        touched[[one, two]] = True
        swapped += 1
    if stuck:
        x, y, z = mesh.points[list(stuck[0])].mean(axis=0)
        messages.warn(f"{plural(len(stuck), 'edge')} between supported nodes cannot be swapped: "
                      f"the mid-side at ({x:g}, {y:g}, {z:g}) becomes a support",
                      "corner-diagonal", Place(mesh.path))
    return swapped


def held_edges(mesh: Mesh, recipe: Recipe, elements: Elements,
               held: Ints) -> tuple[Ints, Ints, Ints]:
    """Edges whose ends are held alike and that are no edge of a supported cell, of a loaded line or
    of a beam: their triangles (the second -1 on a border) and ends."""
    nodes = elements.nodes
    ends = np.concatenate([nodes[:, [a, b]] for a, b, _ in TRIANGLE_EDGES])
    owner = np.tile(np.arange(len(nodes)), 3)
    both = (held[ends[:, 0]] & held[ends[:, 1]]) != 0
    ends, owner = ends[both], owner[both]
    wanted, kept = row_keys([ends, kept_edges(mesh, recipe)], len(mesh.points))
    free = ~np.isin(wanted, kept)
    ends, owner, wanted = ends[free], owner[free], wanted[free]
    order = np.argsort(wanted, kind="stable")
    ends, owner, wanted = ends[order], owner[order], wanted[order]
    _, first, count = np.unique(wanted, return_index=True, return_counts=True)
    some = first[count <= 2]
    second = np.where(count[count <= 2] == 2, owner[np.minimum(some + 1, len(owner) - 1)], -1)
    if only_nodes(mesh, recipe):
        some, second = corner_cutters(mesh, nodes, held, owner, some, second)
    return owner[some], second, ends[some]


def kept_edges(mesh: Mesh, recipe: Recipe) -> Ints:
    """Edges (n, 2) that stay: of supported cells, and lines that any part of the recipe names."""
    pieces = [np.zeros((0, 2), np.int32)]
    for use in recipe.uses:
        for name in use.groups:
            for kind, rows in group_of(mesh, use, name).rows.items():
                block = mesh.blocks[kind]
                if block.kind.dimension == 1:
                    pieces.append(block.nodes[rows][:, :2])
                elif use in recipe.supports and block.kind.dimension == 2:
                    corners = block.nodes[rows][:, :block.kind.corners]
                    pieces += [np.stack([corners[:, i - 1], corners[:, i]], axis=1)
                               for i in range(corners.shape[1])]
    return np.concatenate(pieces)


def only_nodes(mesh: Mesh, recipe: Recipe) -> bool:
    """Whether a support is given by nodes alone: which edges lie in it is not known then."""
    return any(len(mesh.nodes_of(group_of(mesh, use, name))) > 1
               and set(mesh.dimensions(group_of(mesh, use, name))) <= {0}
               for use in recipe.supports for name in use.groups)


def corner_cutters(mesh: Mesh, nodes: Ints, held: Ints, owner: Ints, some: Ints,
                   second: Ints) -> tuple[Ints, Ints]:
    """Of the edges only the inner ones of triangles that fill a corner of the surface and are held
    at all three nodes."""
    left, right, _ = neighbour_pairs(nodes, len(mesh.points))
    inner = np.bincount(np.concatenate([left, right]), minlength=len(nodes))
    corner: Flags = (held[nodes[:, 0]] & held[nodes[:, 1]] & held[nodes[:, 2]]) != 0
    corner &= inner == 1
    cutting = (second >= 0) & (corner[owner[some]] | corner[second])
    return some[cutting], second[cutting]


def other_diagonal(mesh: Mesh, recipe: Recipe, elements: Elements, held: Ints,
                   pair: tuple[int, int], edge: tuple[int, int]) -> Ints | None:
    """The two triangles over the other diagonal; None where that would be no better."""
    one, two = pair
    if two < 0 or elements.material[one] != elements.material[two]:
        return None
    first = list(elements.nodes[one])
    start = next(i for i in range(3) if first[i] not in edge) - 2
    a, b, c = first[start], first[start + 1], first[start + 2]
    d = next(n for n in elements.nodes[two] if n not in edge)
    if held[c] & held[d]:
        return None
    new = np.array([[a, d, c], [d, b, c]], elements.nodes.dtype)
    before = area_vectors(mesh.points, elements.nodes[[one, two]])
    after = area_vectors(mesh.points, new)
    flat = min(dot(before[:1], before[1:])[0] / norm(before).prod(),
               *(dot(after, before[:1].repeat(2, 0)) / norm(after) / norm(before[:1])))
    if not flat > LEAST_COSINE or norm(after).min() < LEAST_AREA * norm(before).min():
        return None
    if groups_of(mesh, recipe, elements, one) != groups_of(mesh, recipe, elements, two):
        return None
    return new


def rows_like(mesh: Mesh, elements: Elements, row: int) -> Ints:
    """The cells that have the nodes of an element."""
    triangles = mesh.blocks["triangle"].nodes
    nodes = np.sort(elements.nodes[row])
    near = np.flatnonzero((triangles == nodes[0]).any(axis=1))
    like: Ints = near[(np.sort(triangles[near], axis=1) == nodes).all(axis=1)]
    return like


def groups_of(mesh: Mesh, recipe: Recipe, elements: Elements, row: int) -> set[str]:
    """The groups of the recipe that an element lies in."""
    rows = rows_like(mesh, elements, row)
    names = {name for use in recipe.uses for name in use.groups}
    return {name for name in names
            if np.isin(rows, mesh.groups[name].rows.get("triangle", [])).any()}


def replace(mesh: Mesh, elements: Elements, pair: tuple[int, int], new: Ints) -> None:
    """Writes the new triangles over the old ones, in the cells as well: loads find them there."""
    triangles = mesh.blocks["triangle"].nodes
    places = [rows_like(mesh, elements, row) for row in pair]
    for row, cells, nodes in zip(pair, places, new):
        triangles[cells] = nodes
        elements.nodes[row] = nodes
