"""The elements of the deck: the cells that a material or a beam of the recipe names."""

from __future__ import annotations

from dataclasses import dataclass

import numpy as np

from .errors import Refusal, Place, nearest, plural
from .geometry import norm
from .matching import row_keys
from .mesh import BRICKS, KINDS, QUADS, Group, Ints, Mesh
from .messages import Messages
from .recipe import MaterialUse, Recipe, Use

FAMILIES = {1: "Linear", 2: "Triangle", 3: "Tetrahedra"}


@dataclass
class Elements:
    """Elements of one kind: places of their nodes (n, k), index of their material among those of
    the recipe (n,), old numbers of their cells (n,); numbered in the deck from `first` on."""

    kind: str
    nodes: Ints
    material: Ints
    numbers: Ints
    first: int = 1

    @property
    def dimension(self) -> int:
        return KINDS[self.kind].dimension


def group_of(mesh: Mesh, use: Use, name: str) -> Group:
    """The group of that name; refuses one that the mesh lacks, with the nearest one."""
    if name not in mesh.groups:
        hint = nearest(name, mesh.groups) or f"; it has {', '.join(mesh.groups)}"
        raise Refusal(f'{use.label}: the mesh has no group "{name}"{hint}', "group",
                      use.group_place(name))
    return mesh.groups[name]


def select_elements(mesh: Mesh, recipe: Recipe, messages: Messages) -> list[Elements]:
    """Lines first, then triangles or tetrahedra."""
    owners: dict[str, Ints] = {}
    for index, use in enumerate(recipe.materials):
        for name in use.groups:
            claim(mesh, recipe, index, group_of(mesh, use, name), owners)
    found = []
    for kind, owner in owners.items():
        rows = np.flatnonzero(owner >= 0)
        block = mesh.blocks[kind]
        whole = len(rows) == len(owner)
        elements = Elements(kind, block.nodes if whole else block.nodes[rows],
                            owner if whole else owner[rows],
                            block.numbers if whole else block.numbers[rows])
        elements = drop_copies(mesh, recipe, elements)
        found.append(halve(elements) if kind == "line3" else elements)
    found.sort(key=lambda e: e.dimension)
    check_families(mesh, recipe, found, list(owners))
    report_bare_cells(mesh, owners, messages)
    first = 1
    for elements in found:
        elements.first = first
        first += len(elements.nodes)
    return found


def claim(mesh: Mesh, recipe: Recipe, index: int, group: Group, owners: dict[str, Ints]) -> None:
    """Gives the cells of a group to a material: its solids, or else its surfaces and lines."""
    use = recipe.materials[index]
    dimensions = mesh.dimensions(group)
    wanted = [1] if use.is_beam else [3] if 3 in dimensions else [1, 2]
    if not set(wanted) & set(dimensions):
        what = "lines" if use.is_beam else "lines, surfaces or volumes"
        raise Refusal(f'{use.label}: group "{group.name}" has no {what}', "material",
                      use.group_place(group.name))
    for kind, rows in group.rows.items():
        if mesh.blocks[kind].kind.dimension not in wanted:
            continue
        refuse_kind(mesh, use, group, kind)
        owner = owners.setdefault(kind, np.full(len(mesh.blocks[kind].nodes), -1, np.int32))
        taken = (owner[rows] >= 0) & (owner[rows] != index)
        if taken.any():
            other = recipe.materials[int(owner[rows][np.argmax(taken)])].label
            refuse_two(use, group.name, other)
        owner[rows] = index


def refuse_two(use: MaterialUse, group: str, other: str) -> None:
    raise Refusal(f'{use.label}: cells of group "{group}" belong to {other} already', "material",
                  use.group_place(group))


def refuse_kind(mesh: Mesh, use: Use, group: Group, kind: str) -> None:
    """Cells of which the solver has no element."""
    one = mesh.blocks[kind].kind
    count = len(group.rows[kind])
    place = use.group_place(group.name)
    if one.noun in BRICKS:
        raise Refusal(f'group "{group.name}" has {plural(count, one.noun)}: mesh with tetrahedra',
                      "bricks", place)
    if kind in QUADS:
        raise Refusal(f'group "{group.name}" has {plural(count, one.noun)}: mesh with triangles, '
                      "or split them with --split-quads", "quads", place)
    if one.order > 2 or kind not in KINDS:
        raise Refusal(f'group "{group.name}" has {plural(count, one.noun)} with {one.nodes} nodes: '
                      "elements have order 1 or 2", "order", place)


def halve(elements: Elements) -> Elements:
    """A line with a mid-side node is two beams."""
    halves = elements.nodes[:, [[0, 2], [2, 1]]].reshape(-1, 2)
    return Elements("line", halves, np.repeat(elements.material, 2),
                    np.repeat(elements.numbers, 2))


def drop_copies(mesh: Mesh, recipe: Recipe, elements: Elements) -> Elements:
    """Files of version 2.2 write a cell once for each of its groups: one element is meant."""
    if sum(len(use.groups) for use in recipe.materials) < 2:
        return elements
    corners = KINDS[elements.kind].corners
    key, = row_keys([elements.nodes[:, :corners]], len(mesh.points))
    _, first, inverse = np.unique(key, return_index=True, return_inverse=True)
    if len(first) == len(key):
        return elements
    other = elements.material[first[inverse]]
    wrong = np.flatnonzero(other != elements.material)
    if len(wrong):
        use = recipe.materials[int(elements.material[wrong[0]])]
        refuse_two(use, use.groups[0], recipe.materials[int(other[wrong[0]])].label)
    keep = np.sort(first)
    return Elements(elements.kind, elements.nodes[keep], elements.material[keep],
                    elements.numbers[keep])


def check_families(mesh: Mesh, recipe: Recipe, found: list[Elements], kinds: list[str]) -> None:
    place = Place(mesh.path)
    if any(e.dimension == 3 for e in found) and any(e.dimension < 3 for e in found):
        raise Refusal("tetrahedra cannot be mixed with beams or shells in one deck", "material",
                      place)
    if recipe.plane and any(e.dimension > 1 for e in found):
        raise Refusal('shells and solids need type = "3d"', "plane",
                      recipe.materials[0].table.source.place(("problem", "type")))
    if len({mesh.blocks[k].kind.order for k in kinds}) > 1:
        raise Refusal("mixed orders: some elements have mid-side nodes and some have none",
                      "order", place)


def report_bare_cells(mesh: Mesh, owners: dict[str, Ints], messages: Messages) -> None:
    """Cells of the highest dimension that no material names are easily forgotten ones."""
    top = max((mesh.blocks[kind].kind.dimension for kind in owners), default=0)
    for kind, block in mesh.blocks.items():
        if block.kind.dimension != top:
            continue
        bare = int(np.count_nonzero(owners[kind] < 0)) if kind in owners else len(block.nodes)
        if bare and kind in owners:
            bare -= copies(mesh, kind, owners[kind])
        if bare:
            messages.warn(f"{plural(bare, block.kind.noun)} without material: left out",
                          "no-material", Place(mesh.path))


def copies(mesh: Mesh, kind: str, owner: Ints) -> int:
    """How many cells without material have the nodes of one that has a material."""
    block = mesh.blocks[kind]
    corners = block.nodes[:, :block.kind.corners]
    bare, held = row_keys([corners[owner < 0], corners[owner >= 0]], len(mesh.points))
    return int(np.isin(bare, held).sum())


def check_plane(mesh: Mesh, recipe: Recipe, used: Ints) -> None:
    """A 2d problem has no third coordinate: all nodes lie in one plane z = constant."""
    if not recipe.plane:
        return
    points = mesh.points[used]
    size = float(norm(points.max(axis=0)[None] - points.min(axis=0)[None])[0])
    off = np.abs(points[:, 2] - points[0, 2])
    if off.max() > 1e-9 * size:
        worst = used[int(np.argmax(off))]
        x, y, z = mesh.points[worst]
        raise Refusal(f"node {mesh.numbers[worst]} at ({x:g}, {y:g}, {z:g}) is off the plane of a "
                      "2d problem", "plane", Place(mesh.path))
