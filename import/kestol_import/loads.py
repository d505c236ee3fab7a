"""Distributed loads: from cells of groups to lines of the load sections."""

from __future__ import annotations

from dataclasses import dataclass, field

import numpy as np

from .applied import Applied, resultant
from .elements import Elements, group_of
from .errors import Refusal, plural
from .expressions import Expression, ExpressionError
from .geometry import area_vectors, carriers, centres, cross, curved_area_vectors, norm
from .matching import TETRA_FACES, TRIANGLE_EDGES, Sides, find_sides
from .mesh import Group, Ints, Kind, KINDS, Reals
from .model import Model
from .recipe import LoadUse
from .sizes import SIZES


@dataclass
class LoadLines:
    """Lines of one load section: elements (n,), sides (n,) or none, components (n, c)."""

    comment: str
    section: str
    elements: Ints
    sides: Ints | None
    components: Reals


@dataclass
class Target:
    """Sides of elements that a load meets: rows and sides of `elements`, the cells that named them,
    their kind and the middle of each."""

    elements: Elements
    rows: Ints
    sides: Ints | None
    cells: Ints
    kind: Kind
    middle: Reals = field(default_factory=lambda: np.zeros((0, 3)))


def distributed_lines(model: Model, use: LoadUse) -> tuple[list[LoadLines], list[Applied]]:
    lines, applied = [], []
    met: dict[tuple[str, bool], Ints] = {}
    for name in use.groups:
        group = group_of(model.mesh, use, name)
        record = Applied(use.label, name, "")
        forces, places, counts = [np.zeros((0, 3))], [np.zeros((0, 3))], []
        for target in targets(model, use, group):
            forget_met(model, target, met)
            components, acting = components_of(model, use, name, target)
            lines.append(LoadLines(f'{use.label}: group "{name}"', section_of(use, target),
                                   target.elements.first + target.rows, target.sides, components))
            at, force, size = forces_of(model, use, target, acting)
            forces.append(force)
            places.append(at)
            record.size += size
            record.size_name = SIZES[target.kind.dimension]
            counts.append(plural(len(target.rows), target.kind.noun))
        record.count = " and ".join(counts)
        record.force, record.moment = resultant(np.concatenate(places), np.concatenate(forces))
        applied.append(record)
    return lines, applied


# --- what a load meets -------------------------------------------------------------------------


def targets(model: Model, use: LoadUse, group: Group) -> list[Target]:
    """The sides of elements under the cells of the highest dimension of a group."""
    mesh, place = model.mesh, use.group_place(group.name)
    dimensions = mesh.dimensions(group)
    if not dimensions or dimensions[-1] == 0:
        raise Refusal(f'{use.label}: group "{group.name}" has points only: use "force"', "load",
                      place)
    top = dimensions[-1]
    if model.solid and top == 1:
        raise Refusal(f'{use.label}: group "{group.name}" has lines, and solids carry no load '
                      'along lines: use "force"', "load", place)
    if top == 3 and use.normal is not None:
        raise Refusal(f'{use.label}: group "{group.name}" has volumes, which have no normal',
                      "load", place)
    found = []
    for kind, rows in mesh.rows_of(group, top).items():
        cells = mesh.blocks[kind].nodes[rows]
        numbers = mesh.blocks[kind].numbers[rows]
        if top == 1 and mesh.blocks[kind].kind.order <= 2:
            found += line_targets(model, use, group, cells, numbers, kind)
        else:
            found.append(side_target(model, use, group, cells, numbers, kind))
    return found


def side_target(model: Model, use: LoadUse, group: Group, cells: Ints, numbers: Ints,
                kind: str) -> Target:
    """Surfaces of solids, shells by their surfaces, volumes by themselves."""
    one = model.mesh.blocks[kind].kind
    elements = model.of_dimension(3) if model.solid else model.of_dimension(2)
    if elements is None:
        raise Refusal(f'{use.label}: group "{group.name}" has surfaces, which no element has',
                      "face", use.group_place(group.name))
    check_kind(model, use, group, one, elements)
    if elements.dimension == 3 and one.dimension == 2:
        sides = find_sides(cells[:, :3], elements.nodes, TETRA_FACES, len(model.mesh.points))
    else:
        corners = tuple(range(one.corners))
        sides = find_sides(cells[:, :one.corners], elements.nodes, (corners,),
                           len(model.mesh.points))
    refuse_lost(use, group, sides, numbers, one, elements)
    target = Target(elements, sides.rows, None, cells, one)
    if elements.dimension == 3:
        target.sides = sides.sides if one.dimension == 2 else np.full(len(cells), -1)
        if use.normal is not None:
            refuse_inner(use, group, sides, numbers, one.noun)
    return target


def check_kind(model: Model, use: LoadUse, group: Group, cells: Kind, elements: Elements) -> None:
    place = use.group_place(group.name)
    name = KINDS[elements.kind].noun
    if cells.noun not in ("triangle", name):
        cure = " (or --split-quads)" if cells.name == "quad" and not model.solid else ""
        raise Refusal(f'{use.label}: group "{group.name}" has cells of kind {cells.name}, which no '
                      f"{name} has: mesh with triangles{cure}", "face", place)
    if cells.order != KINDS[elements.kind].order:
        raise Refusal(f'{use.label}: mixed orders: group "{group.name}" has {cells.nodes}-noded '
                      f"{cells.noun}s and the elements have {KINDS[elements.kind].nodes} nodes",
                      "order", place)


def refuse_lost(use: LoadUse, group: Group, sides: Sides, numbers: Ints, kind: Kind,
                elements: Elements) -> None:
    lost = np.flatnonzero(sides.rows < 0)
    if len(lost):
        owner = "solid" if elements.dimension == 3 else "element"
        what = "surface cell" if kind.dimension == 2 else kind.noun
        raise Refusal(f'{use.label}: group "{group.name}": {what} {numbers[lost[0]]} belongs to no '
                      f"{owner} ({len(lost)} of {len(numbers)} do not)", "face",
                      use.group_place(group.name))


def refuse_inner(use: LoadUse, group: Group, sides: Sides, numbers: Ints, noun: str) -> None:
    inner = np.flatnonzero(sides.owners > 1)
    if len(inner):
        raise Refusal(f'{use.label}: group "{group.name}": {noun} {numbers[inner[0]]} lies between '
                      "elements and has no outward normal", "load", use.group_place(group.name))


def line_targets(model: Model, use: LoadUse, group: Group, cells: Ints, numbers: Ints,
                 kind: str) -> list[Target]:
    """Lines are beams where there are any, and otherwise edges of shells."""
    one, count = model.mesh.blocks[kind].kind, len(model.mesh.points)
    found, rest = [], np.ones(len(cells), bool)
    beams, shells = model.of_dimension(1), model.of_dimension(2)
    if beams is not None:
        halves = cells if one.order == 1 else cells[:, [[0, 2], [2, 1]]].reshape(-1, 2)
        sides = find_sides(halves, beams.nodes, ((0, 1),), count)
        hit = sides.rows >= 0
        rest = ~hit.reshape(len(cells), -1).all(axis=1)
        on_beams = np.repeat(~rest, one.order)
        if on_beams.any():
            found.append(Target(beams, sides.rows[on_beams], None, halves[on_beams], KINDS["line"]))
    if shells is not None and rest.any():
        cells, numbers = cells[rest], numbers[rest]
        if one.order != KINDS[shells.kind].order:
            raise Refusal(f'{use.label}: mixed orders: group "{group.name}" has {one.nodes}-noded '
                          f"lines and the elements have {KINDS[shells.kind].nodes} nodes", "order",
                          use.group_place(group.name))
        sides = find_sides(cells[:, :2], shells.nodes, TRIANGLE_EDGES, count)
        refuse_lost(use, group, sides, numbers, one, shells)
        if use.normal is not None:
            refuse_inner(use, group, sides, numbers, "line")
        found.append(Target(shells, sides.rows, sides.sides, cells, one))
    elif rest.any():
        lost = numbers[rest]
        raise Refusal(f'{use.label}: group "{group.name}": line {lost[0]} belongs to no element '
                      f"({len(lost)} of {len(numbers)} do not)", "face",
                      use.group_place(group.name))
    return found


def forget_met(model: Model, target: Target, met: dict[tuple[str, bool], Ints]) -> None:
    """Leaves out what an earlier group of this load, or a copy of a cell, has met already."""
    sides = target.sides if target.sides is not None else np.zeros(len(target.rows), np.int64)
    key = target.rows * 8 + sides + 1
    _, first = np.unique(key, return_index=True)
    fresh = np.zeros(len(key), bool)
    fresh[first] = True
    where = (target.elements.kind, target.sides is None)
    earlier = met.get(where, np.zeros(0, np.int64))
    fresh &= ~np.isin(key, earlier)
    met[where] = np.concatenate([earlier, key[fresh]])
    target.rows, target.cells = target.rows[fresh], target.cells[fresh]
    if target.sides is not None:
        target.sides = target.sides[fresh]
    target.middle = centres(model.mesh.points, target.kind, target.cells)


# --- components and forces ------------------------------------------------------------------------


def section_of(use: LoadUse, target: Target) -> str:
    if target.sides is not None and target.elements.dimension == 2:
        return "face_loads"
    if use.normal is not None:
        return "local_pressure_loads"
    return "face_loads" if target.kind.dimension == 2 and target.sides is not None else (
        "global_pressure_loads")


def components_of(model: Model, use: LoadUse, group: str,
                  target: Target) -> tuple[Reals, Reals]:
    """What the line of each element says (n, c), and the load as it acts: global (n, 3) or, along
    normals of surfaces, its size (n,)."""
    plane = model.recipe.plane
    if use.pressure is not None:
        vector = np.zeros((len(target.rows), 3))
        for item, component in enumerate(use.pressure):
            vector[:, item] = values_at(use, "pressure", item, component, target.middle)
        return vector[:, :2] if plane else vector, vector
    assert use.normal is not None
    size = values_at(use, "normal", None, use.normal, target.middle)
    if target.kind.dimension == 1:
        if target.sides is not None:
            vector = edge_normals(model, target) * size[:, None]
            return vector, vector
        axis = model.materials.beam_y if plane else model.materials.beam_z
        local = np.zeros((len(size), 2 if plane else 3))
        local[:, -1] = size
        return local, axis[target.rows] * size[:, None]
    local = np.zeros((len(size), 3))
    local[:, 2] = size
    return local, size


def values_at(use: LoadUse, key: str, item: int | None, value: Expression, at: Reals) -> Reals:
    try:
        return value.at(at)
    except ExpressionError as failure:
        raise Refusal(f"{key}: {failure}", "expression", use.table.place(key, item)) from None


def edge_normals(model: Model, target: Target) -> Reals:
    """Unit vectors in the plane of the triangle, across its edge and away from it."""
    assert target.sides is not None
    points, nodes = model.mesh.points, target.elements.nodes[target.rows]
    edges = np.array(TRIANGLE_EDGES)[target.sides]
    row = np.arange(len(nodes))
    along = points[nodes[row, edges[:, 1]]] - points[nodes[row, edges[:, 0]]]
    out = cross(along, area_vectors(points, nodes))
    unit: Reals = out / norm(out)[:, None]
    return unit


def forces_of(model: Model, use: LoadUse, target: Target,
              acting: Reals) -> tuple[Reals, Reals, float]:
    """Points, forces there in units of loads (as are the points), and the size of all cells."""
    points, scale = model.mesh.points, model.length_scale
    cells, dimension = target.cells, target.kind.dimension
    at, sizes = carriers(points, target.kind, cells)
    if target.kind.name == "triangle6" and target.elements.dimension == 2:
        vectors = curved_area_vectors(points, cells)
        flat = area_vectors(points, cells)
        sizes = np.abs(np.einsum("npi,ni->np", vectors, flat / norm(flat)[:, None])) / 6
    if acting.ndim == 2:
        force = acting[:, None, :] * sizes[:, :, None]
    else:
        force = acting[:, None, None] * directed(model, target, sizes)
    return ((at * scale).reshape(-1, 3), (force * scale ** dimension).reshape(-1, 3),
            float(sizes.sum()))


def directed(model: Model, target: Target, sizes: Reals) -> Reals:
    """Sizes of surfaces as vectors (n, p, 3) along the normal: out of the solid, or on the side of
    a shell that its nodes give."""
    points, cells = model.mesh.points, target.cells
    nodes = target.elements.nodes[target.rows]
    if target.elements.dimension == 2:
        vectors = area_vectors(points, nodes)
        unit: Reals = vectors / norm(vectors)[:, None]
        return sizes[:, :, None] * unit[:, None, :]
    vectors = (curved_area_vectors(points, cells) if target.kind.order == 2
               else area_vectors(points, cells)[:, None, :])
    flat = area_vectors(points, cells)
    inside = points[nodes[:, :4]].mean(axis=1) - points[cells[:, 0]]
    outward = np.where(np.einsum("ij,ij->i", flat, inside) > 0, -1.0, 1.0)
    divisor = 6 if target.kind.order == 2 else 2
    result: Reals = vectors * outward[:, None, None] / divisor
    return result
