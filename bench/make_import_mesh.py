#!/usr/bin/env python3
"""Writes a Gmsh file of a cube, n cells a side, each cut into six tetrahedra, for timing kestol-import:

    bench/make_import_mesh.py N FILE.msh [--ascii]

N = 100 gives 1 030 301 nodes and 6 000 000 tetrahedra. Version 4.1; groups "body", "foot" (z = 0) and "top"
(z = 1). Beside it FILE.toml, a recipe. Needs Debian's python3-numpy.
"""
import itertools
import pathlib
import sys

import numpy as np

RECIPE = """\
[problem]
title = "cube"
[material.steel]
groups = ["body"]
E = 210e9
nu = 0.3
[support.foot]
groups = ["foot"]
codes = "111"
[load.top]
groups = ["top"]
pressure = [0, 0, "-1000*(1+x)"]
"""


def cells(n):
    """Places of the eight corners of each cell (n^3, 2, 2, 2)."""
    grid = np.arange((n + 1) ** 3).reshape(n + 1, n + 1, n + 1)
    return np.stack([grid[a:n + a, b:n + b, c:n + c].ravel()
                     for a, b, c in itertools.product((0, 1), repeat=3)], axis=1)


def tetrahedra(n):
    """Six paths from corner 000 to corner 111 of each cell."""
    corner = cells(n)
    found = []
    for axes in itertools.permutations((4, 2, 1)):
        a, b = axes[0], axes[0] + axes[1]
        found.append(corner[:, [0, a, b, 7]])
    return np.concatenate(found)


def side(n, k):
    """Triangles of the side z = k / n, along the diagonals of the cells."""
    grid = np.arange((n + 1) ** 3).reshape(n + 1, n + 1, n + 1)[:, :, k]
    a, b, c, d = (grid[:-1, :-1].ravel(), grid[1:, :-1].ravel(), grid[1:, 1:].ravel(),
                  grid[:-1, 1:].ravel())
    return np.concatenate([np.stack([a, b, c], 1), np.stack([a, c, d], 1)])


class Writer:
    def __init__(self, file, binary):
        self.file, self.binary = file, binary

    def text(self, line):
        self.file.write((line + "\n").encode())

    def numbers(self, values, kind, form="%d"):
        values = np.atleast_2d(np.asarray(values))
        if self.binary:
            self.file.write(values.astype(kind).tobytes())
        else:
            np.savetxt(self.file, values, fmt=form)


def write(path, n, binary):
    axis = np.arange(n + 1) / n
    points = np.stack(np.meshgrid(axis, axis, axis, indexing="ij"), axis=-1).reshape(-1, 3)
    blocks = [(2, 1, 2, side(n, 0)), (2, 2, 2, side(n, n)), (3, 1, 4, tetrahedra(n))]
    with open(path, "wb") as file:
        out = Writer(file, binary)
        out.text(f"$MeshFormat\n4.1 {int(binary)} 8")
        if binary:
            file.write(b"\1\0\0\0\n")
        out.text('$EndMeshFormat\n$PhysicalNames\n3\n2 1 "foot"\n2 2 "top"\n3 1 "body"')
        out.text("$EndPhysicalNames\n$Entities")
        out.numbers([0, 0, 2, 1], "<u8")
        for dimension, tag in ((2, 1), (2, 2), (3, 1)):
            for values, kind in (([tag], "<i4"), ([0, 0, 0, 1, 1, 1], "<f8"), ([1], "<u8"),
                                 ([tag], "<i4"), ([0], "<u8")):
                out.numbers(values, kind)
        out.text("$EndEntities\n$Nodes")
        out.numbers([1, len(points), 1, len(points)], "<u8")
        out.numbers([3, 1, 0], "<i4")
        out.numbers([len(points)], "<u8")
        out.numbers(np.arange(1, len(points) + 1)[:, None], "<u8")
        out.numbers(points, "<f8", "%.16g")
        out.text("$EndNodes\n$Elements")
        total = sum(len(nodes) for *_, nodes in blocks)
        out.numbers([len(blocks), total, 1, total], "<u8")
        first = 1
        for dimension, tag, kind, nodes in blocks:
            out.numbers([dimension, tag, kind], "<i4")
            out.numbers([len(nodes)], "<u8")
            numbers = np.arange(first, first + len(nodes))
            out.numbers(np.column_stack([numbers, nodes + 1]), "<u8")
            first += len(nodes)
        out.text("$EndElements")
    pathlib.Path(path).with_suffix(".toml").write_text(RECIPE)


if __name__ == "__main__":
    write(sys.argv[2], int(sys.argv[1]), "--ascii" not in sys.argv)
