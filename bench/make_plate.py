#!/usr/bin/env python3
"""Writes the deck of a clamped square plate under pressure to standard output.

    make_plate.py CELLS [--six] > deck

CELLS x CELLS square cells of two triangles each; side 10 m, thickness 0.1 m, E = 2.1e11, nu = 0.3,
10 kN/m2 downwards. With --six the model is converted to 6 nodes.
"""
import argparse
import sys

SIDE, THICKNESS, PRESSURE = 10.0, 0.1, 1e4


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("cells", type=int)
    parser.add_argument("--six", action="store_true")
    arguments = parser.parse_args()
    n = arguments.cells
    row = n + 1
    out = sys.stdout
    out.write("PROBLEM plate\nTYPE 3d\n" + ("ConvertTo6Nodes\n" if arguments.six else ""))
    out.write("mesh dimension = 3 elemtype Triangle nnode = 3\ncoordinates\n")
    for j in range(row):
        for i in range(row):
            out.write(f"{j * row + i + 1} {SIDE * i / n:.12g} {SIDE * j / n:.12g} 0\n")
    out.write("end coordinates\nelements\n")
    for j in range(n):
        for i in range(n):
            a, number = j * row + i + 1, 2 * (j * n + i) + 1
            out.write(f"{number} {a} {a + 1} {a + row + 1} 1\n{number + 1} {a} {a + row + 1} {a + row} 1\n")
    out.write(f"end elements\nmaterials\n1 E=2.1e11 nu=0.3 G=8.076923e10 t={THICKNESS}\nend materials\n")
    out.write("constraints\n")
    for j in range(row):
        for i in range(row):
            if i in (0, n) or j in (0, n):
                out.write(f"{j * row + i + 1} 111111 0 0 0 0 0 0\n")
    out.write("end constraints\nglobal_pressure_loads\n")
    for number in range(1, 2 * n * n + 1):
        out.write(f"{number} 0 0 {-PRESSURE:g}\n")
    out.write("end global_pressure_loads\n")


if __name__ == "__main__":
    main()
