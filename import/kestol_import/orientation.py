"""Node orders that the solver accepts: positive tetrahedra, one side for the normals of a shell."""

from __future__ import annotations

import numpy as np

from .elements import Elements
from .errors import Place, Refusal
from .geometry import area_vectors, norm, six_volumes
from .graph import components
from .matching import CHUNK, TRIANGLE_EDGES
from .mesh import Ints, KINDS, Mesh, Reals
from .messages import Messages

# The order in which a cell turns the other way round.
MIRRORED = {"triangle": [0, 2, 1], "triangle6": [0, 2, 1, 5, 4, 3], "tetra": [1, 0, 2, 3],
            "tetra10": [1, 0, 2, 3, 4, 6, 5, 8, 7, 9]}
FLAT = 1e-12  # of the longest edge, to the power of the dimension


def orient(mesh: Mesh, elements: Elements, messages: Messages) -> int:
    """Refuses elements without size and turns those that need it; returns how many."""
    if elements.kind in ("tetra", "tetra10"):
        return orient_tetrahedra(mesh, elements)
    check_size(mesh, elements)
    if elements.kind in ("triangle", "triangle6"):
        return orient_shells(mesh, elements, messages)
    return 0


def check_size(mesh: Mesh, elements: Elements) -> None:
    at = mesh.points[elements.nodes[:, :KINDS[elements.kind].corners]]
    longest = edge_lengths(at)
    if elements.dimension == 1:
        size = longest
    else:
        size = norm(area_vectors(mesh.points, elements.nodes))
    flat = (size <= FLAT * longest ** elements.dimension) | (size == 0)
    refuse_flat(mesh, elements, flat, 0)


def edge_lengths(at: Reals) -> Reals:
    """The longest distance between corners of each cell (n, c, 3)."""
    corners = at.shape[1]
    longest = np.zeros(len(at))
    for i in range(corners):
        for j in range(i):
            np.maximum(longest, norm(at[:, i] - at[:, j]), out=longest)
    return longest


def refuse_flat(mesh: Mesh, elements: Elements, flat: Ints, start: int) -> None:
    if flat.any():
        what = {1: "length", 2: "area", 3: "volume"}[elements.dimension]
        number = elements.numbers[start + int(np.argmax(flat))]
        raise Refusal(f"cell {number} has no {what}", "zero-size", Place(mesh.path))


def orient_tetrahedra(mesh: Mesh, elements: Elements) -> int:
    turned = 0
    for start in range(0, len(elements.nodes), CHUNK):
        nodes = elements.nodes[start:start + CHUNK]
        volume = six_volumes(mesh.points, nodes)
        longest = edge_lengths(mesh.points[nodes[:, :4]])
        refuse_flat(mesh, elements, np.abs(volume) <= FLAT * longest ** 3, start)
        wrong = np.flatnonzero(volume < 0)
        if len(wrong):
            nodes[wrong] = nodes[wrong][:, MIRRORED[elements.kind]]
            turned += len(wrong)
    return turned


def order_mid_sides(mesh: Mesh) -> bool:
    """Files count the mid-sides of 2-4 and 3-4 in both orders: geometry tells which was meant.
    Returns whether they were exchanged."""
    block = mesh.blocks.get("tetra10")
    if block is None or not len(block.nodes):
        return False
    at = mesh.points[block.nodes[:CHUNK]]
    edge_24, edge_34 = (at[:, 1] + at[:, 3]) / 2, (at[:, 2] + at[:, 3]) / 2
    as_read = norm(at[:, 8] - edge_24) + norm(at[:, 9] - edge_34)
    exchanged = norm(at[:, 9] - edge_24) + norm(at[:, 8] - edge_34)
    if as_read.sum() <= exchanged.sum():
        return False
    block.nodes = block.nodes[:, [0, 1, 2, 3, 4, 5, 6, 7, 9, 8]]
    return True


def orient_shells(mesh: Mesh, elements: Elements, messages: Messages) -> int:
    """Gives the triangles of every surface one side. Across an edge of exactly two triangles the
    normals agree; edges where three or more meet separate surfaces. A closed surface gets outward
    normals, an open one keeps the side that most of its area has.

    Each triangle stands twice in a graph, as it is and turned; an edge joins what agrees. The parts
    of this graph are the two ways to orient each surface."""
    count = len(elements.nodes)
    left, right, agree = neighbour_pairs(elements.nodes, len(mesh.points))
    a = np.concatenate([left, left + count])
    b = np.where(np.tile(agree, 2), np.concatenate([right, right + count]),
                 np.concatenate([right + count, right]))
    part = components(2 * count, a, b)
    as_read, turned = part[:count], part[count:]
    if (as_read == turned).any():
        number = elements.numbers[int(np.argmax(as_read == turned))]
        messages.warn(f"the surface around cell {number} has one side only (as a Moebius strip): "
                      "its normals stay as they are", "one-sided", Place(mesh.path))
    flip = choose_side(mesh, elements, as_read, turned, left)
    elements.nodes = elements.nodes.copy()
    elements.nodes[flip] = elements.nodes[flip][:, MIRRORED[elements.kind]]
    return int(flip.sum())


def neighbour_pairs(nodes: Ints, count: int) -> tuple[Ints, Ints, Ints]:
    """Triangles that share an edge with exactly one other, and whether their normals agree."""
    starts = np.concatenate([nodes[:, a] for a, _, _ in TRIANGLE_EDGES]).astype(np.int64)
    ends = np.concatenate([nodes[:, b] for _, b, _ in TRIANGLE_EDGES]).astype(np.int64)
    owner = np.tile(np.arange(len(nodes)), 3)
    key = np.minimum(starts, ends) * count + np.maximum(starts, ends)
    order = np.argsort(key, kind="stable")
    key = key[order]
    same = np.concatenate([[False], key[1:] == key[:-1], [False]])
    pair = np.flatnonzero(same[1:-1] & ~same[:-2] & ~same[2:])
    first, second = order[pair], order[pair + 1]
    return owner[first], owner[second], starts[first] != starts[second]


def choose_side(mesh: Mesh, elements: Elements, as_read: Ints, turned: Ints, left: Ints) -> Ints:
    """Which triangles to turn. The two orientations of a surface are known by their lower part."""
    surface = np.minimum(as_read, turned)
    _, surface = np.unique(surface, return_inverse=True)
    in_lower = as_read < turned
    vectors = area_vectors(mesh.points, elements.nodes)
    area = norm(vectors)
    votes = np.bincount(surface, np.where(in_lower, area, -area))
    sign = np.where(in_lower, 1.0, -1.0)
    corner = mesh.points[elements.nodes[:, 0]]
    middle = mesh.points[elements.nodes].mean(axis=(0, 1))
    volume = np.bincount(surface, np.einsum("ij,ij->i", corner - middle, vectors) * sign)
    edges = 3 * np.bincount(surface)
    closed = 2 * np.bincount(surface[left], minlength=len(edges)) == edges
    keep_lower = np.where(closed, volume > 0, votes >= 0)
    flip: Ints = in_lower != keep_lower[surface]
    flip[as_read == turned] = False
    return flip
