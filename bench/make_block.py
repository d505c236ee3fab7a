#!/usr/bin/env python3
"""Writes the deck of a solid cantilever of tetrahedra to standard output.

    make_block.py CELLS [--ten] > deck

4 CELLS x CELLS x CELLS cubes of six tetrahedra each; 4 m x 1 m x 1 m, E = 2.1e11, nu = 0.3, clamped
at x = 0, 1 MN down over the end face. With --ten the elements have ten nodes.
"""
import argparse
import sys

# The six tetrahedra around the diagonal of a cube: the ring of corners about it.
RING = [(1, 0, 0), (1, 1, 0), (0, 1, 0), (0, 1, 1), (0, 0, 1), (1, 0, 1)]
EDGES = [(0, 1), (1, 2), (2, 0), (0, 3), (1, 3), (2, 3)]


def elements(n, step, number):
    """Node numbers of every element; `step` is 2 with mid-side nodes."""
    for i in range(4 * n):
        for j in range(n):
            for k in range(n):
                for r in range(6):
                    corners = [(0, 0, 0), RING[(r + 1) % 6], RING[r], (1, 1, 1)]
                    places = [tuple(step * (o + c) for o, c in zip((i, j, k), corner))
                              for corner in corners]
                    if volume(places) < 0:
                        places[1], places[2] = places[2], places[1]
                    nodes = [number(*p) for p in places]
                    if step == 2:
                        nodes += [number(*((a + b) // 2 for a, b in zip(places[p], places[q])))
                                  for p, q in EDGES]
                    yield nodes


def volume(p):
    """Six times the signed volume."""
    (a, b, c), (d, e, f), (g, h, i) = ([x - y for x, y in zip(p[q], p[0])] for q in (1, 2, 3))
    return a * (e * i - f * h) - b * (d * i - f * g) + c * (d * h - e * g)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("cells", type=int)
    parser.add_argument("--ten", action="store_true")
    arguments = parser.parse_args()
    n, step = arguments.cells, 2 if arguments.ten else 1
    h, my, mz = 1.0 / (step * n), step * n + 1, step * n + 1
    mx = 4 * step * n + 1

    def number(i, j, k):
        return (i * my + j) * mz + k + 1

    out = sys.stdout
    out.write("PROBLEM block\nTYPE 3d\n"
              f"mesh dimension = 3 elemtype Tetrahedra nnode = {10 if step == 2 else 4}\ncoordinates\n")
    grid = [(i, j, k) for i in range(mx) for j in range(my) for k in range(mz)]
    for i, j, k in grid:
        out.write(f"{number(i, j, k)} {i * h:.12g} {j * h:.12g} {k * h:.12g}\n")
    out.write("end coordinates\nelements\n")
    for e, nodes in enumerate(elements(n, step, number), 1):
        out.write(f"{e} {' '.join(map(str, nodes))} 1\n")
    out.write("end elements\nmaterials\n1 E=2.1e11 nu=0.3\nend materials\nconstraints\n")
    for j in range(my):
        for k in range(mz):
            out.write(f"{number(0, j, k)} 111 0 0 0\n")
    out.write("end constraints\nnodal_point_loads\n")
    for j in range(my):
        for k in range(mz):
            out.write(f"{number(mx - 1, j, k)} 0 0 {-1e6 / (my * mz):.12g}\n")
    out.write("end nodal_point_loads\n")


if __name__ == "__main__":
    main()
