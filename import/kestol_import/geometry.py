"""Sizes, centres, normals, and where the solver lets a uniform load act.

A uniform load on a cell is, for its sum and its moment, a few forces at points: `carriers` gives
these points and the size (length, area, volume) that each of them stands for."""

from __future__ import annotations

import numpy as np

from .mesh import Ints, Kind, Reals

# Six-noded triangle: derivatives of the shape functions at the mid-sides of 1-2, 2-3, 3-1.
_S = np.array([[-1, 1, 0, 0, 0, 0], [1, 1, 0, -2, 2, -2], [-1, -1, 0, 2, 2, -2]], np.float64)
_T = np.array([[-1, 0, -1, -2, 2, 2], [1, 0, 1, -2, 2, -2], [-1, 0, 1, 0, 0, 0]], np.float64)
# Ten-noded tetrahedron: the four-point rule and the nodes' natural coordinates.
_NEAR, _FAR = 0.5854102, 0.1381966


def cross(a: Reals, b: Reals) -> Reals:
    """Cross products of rows; np.cross takes twice the time and the memory."""
    result = np.empty_like(a)
    for i in range(3):
        j, k = (i + 1) % 3, (i + 2) % 3
        result[:, i] = a[:, j] * b[:, k] - a[:, k] * b[:, j]
    return result


def dot(a: Reals, b: Reals) -> Reals:
    product: Reals = np.einsum("ij,ij->i", a, b)
    return product


def norm(a: Reals) -> Reals:
    return np.sqrt(dot(a, a))


def centres(points: Reals, kind: Kind, nodes: Ints) -> Reals:
    """Mean of the corners."""
    mean: Reals = points[nodes[:, :kind.corners]].mean(axis=1)
    return mean


def area_vectors(points: Reals, nodes: Ints) -> Reals:
    """Normals of triangles by the right-hand rule over the corners, twice as long as their area."""
    a = points[nodes[:, 0]]
    return cross(points[nodes[:, 1]] - a, points[nodes[:, 2]] - a)


def six_volumes(points: Reals, nodes: Ints) -> Reals:
    """Six times the volume of tetrahedra, positive when the fourth corner lies on the side to which
    the first three turn anticlockwise."""
    a = points[nodes[:, 0]]
    return dot(cross(points[nodes[:, 1]] - a, points[nodes[:, 2]] - a), points[nodes[:, 3]] - a)


def curved_area_vectors(points: Reals, nodes: Ints) -> Reals:
    """dx/ds x dx/dt of six-noded triangles at their mid-sides, shape (n, 3, 3); the sum over the
    mid-sides, over 6, is the area."""
    at = points[nodes]
    along_s = np.einsum("pk,nki->npi", _S, at)
    along_t = np.einsum("pk,nki->npi", _T, at)
    flat = cross(along_s.reshape(-1, 3), along_t.reshape(-1, 3))
    return flat.reshape(-1, 3, 3)


def carriers(points: Reals, kind: Kind, nodes: Ints) -> tuple[Reals, Reals]:
    """Points (n, p, 3) and sizes (n, p) of a uniform load on each cell."""
    if kind.name == "vertex":
        return points[nodes], np.ones((len(nodes), 1))
    if kind.dimension == 1:
        length = norm(points[nodes[:, 1]] - points[nodes[:, 0]])
        if kind.order == 1:
            return points[nodes].mean(axis=1)[:, None], length[:, None]
        return points[nodes], length[:, None] * (np.array([1, 1, 4]) / 6)
    if kind.name == "triangle":
        size = norm(area_vectors(points, nodes)) / 2
        return centres(points, kind, nodes)[:, None], size[:, None]
    if kind.name == "triangle6":
        vectors = curved_area_vectors(points, nodes)
        return points[nodes[:, 3:]], np.sqrt(np.einsum("npi,npi->np", vectors, vectors)) / 6
    if kind.name == "tetra":
        volume = np.abs(six_volumes(points, nodes)) / 6
        return centres(points, kind, nodes)[:, None], volume[:, None]
    return tetra10_carriers(points, nodes)


def tetra10_carriers(points: Reals, nodes: Ints) -> tuple[Reals, Reals]:
    """The four integration points with their volumes."""
    at = points[nodes]
    places, volumes = [], []
    for near in range(4):
        barycentric = np.full(4, _FAR)
        barycentric[near] = _NEAR
        shape, gradient = tetra10_shape(barycentric)
        jacobian = np.einsum("ak,nki->nai", gradient, at)
        places.append(np.einsum("k,nki->ni", shape, at))
        volumes.append(np.abs(np.linalg.det(jacobian)) / 24)
    return np.stack(places, axis=1), np.stack(volumes, axis=1)


def tetra10_shape(barycentric: Reals) -> tuple[Reals, Reals]:
    """Shape functions (10,) and their derivatives (3, 10) by the second to fourth coordinate."""
    edges = ((0, 1), (1, 2), (2, 0), (0, 3), (1, 3), (2, 3))
    shape = np.array([b * (2 * b - 1) for b in barycentric]
                     + [4 * barycentric[i] * barycentric[j] for i, j in edges])
    by = np.zeros((4, 10))
    for i, b in enumerate(barycentric):
        by[i, i] = 4 * b - 1
    for k, (i, j) in enumerate(edges, 4):
        by[i, k], by[j, k] = 4 * barycentric[j], 4 * barycentric[i]
    return shape, by[1:] - by[0]


def nodal_shares(points: Reals, kind: Kind, nodes: Ints) -> Reals:
    """What a uniform traction of 1 gives to each node of a cell, shape of `nodes`: work-equivalent
    shares, which are 0 at the corners of six-noded triangles and negative at those of ten-noded
    tetrahedra."""
    _, sizes = carriers(points, kind, nodes)
    shares = np.zeros(nodes.shape)
    if kind.name == "triangle6":
        shares[:, 3:] = sizes
    elif kind.name == "line3":
        shares[:] = sizes
    elif kind.name == "tetra10":
        for near in range(4):
            barycentric = np.full(4, _FAR)
            barycentric[near] = _NEAR
            shares += sizes[:, near, None] * tetra10_shape(barycentric)[0]
    else:
        shares[:] = sizes / kind.nodes
    return shares
