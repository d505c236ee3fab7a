#!/usr/bin/env python3
"""Writes the deck of a tall building frame to standard output.

    make_frame.py STOREYS BAYSX BAYSY [--plane] > deck

The columns stand on a grid of BAYSX x BAYSY bays and are clamped at the ground; on every storey
each pair of neighbouring columns is joined by a beam. Nodes are numbered storey by storey from the
ground, rows along x first; elements storey by storey, the columns below a floor before its beams.
With --plane the frame is its first row along x alone, a 2d problem (BAYSY is not used).

Loads: the weight of all members, 25 kN/m down on every beam and 4 kN/m of wind along x on the
columns of the windward side (x = 0). Lengths in m, forces in N.
"""
import argparse
import sys

BAY = 6.0
STOREY = 3.5
FLOOR_LOAD = -25e3
WIND_LOAD = 4e3
COLUMN, BEAM = 1, 2

# Concrete, 0.5 m x 0.5 m and 0.3 m x 0.5 m; local y of a beam is horizontal.
MATERIALS = """\
materials
  1  E=3e10 G=1.25e10 Weight=25000 widthY=0.5 widthZ=0.5
  2  E=3e10 G=1.25e10 Weight=25000 widthY=0.3 widthZ=0.5
end materials
"""
# In the plane the section bends about local z, so its height lies along local y.
PLANE_MATERIALS = MATERIALS.replace("widthY=0.3 widthZ=0.5", "widthY=0.5 widthZ=0.3")


class Frame:
    """Nodes and members of the grid; indices along x, y and up count from 0."""

    def __init__(self, storeys, bays_x, bays_y, plane):
        self.plane = plane
        self.storeys = storeys
        self.columns_x = bays_x + 1
        self.columns_y = 1 if plane else bays_y + 1

    def node(self, i, j, k):
        return (k * self.columns_y + j) * self.columns_x + i + 1

    def nodes(self):
        """(number, coordinates)"""
        for k in range(self.storeys + 1):
            for j in range(self.columns_y):
                for i in range(self.columns_x):
                    x, y, z = BAY * i, BAY * j, STOREY * k
                    yield self.node(i, j, k), (x, z) if self.plane else (x, y, z)

    def members(self):
        """(number, node, node, material, whether on the windward side)"""
        number = 0
        for k in range(1, self.storeys + 1):
            for a, b, material, windward in self.members_below_floor(k):
                number += 1
                yield number, a, b, material, windward

    def members_below_floor(self, k):
        columns = [(i, j) for j in range(self.columns_y) for i in range(self.columns_x)]
        for i, j in columns:
            yield self.node(i, j, k - 1), self.node(i, j, k), COLUMN, i == 0
        for i, j in columns:
            if i + 1 < self.columns_x:
                yield self.node(i, j, k), self.node(i + 1, j, k), BEAM, False
            if j + 1 < self.columns_y:
                yield self.node(i, j, k), self.node(i, j + 1, k), BEAM, False


def components(plane, x, z):
    """A load per length along global x and up."""
    return f"{x:g} {z:g}" if plane else f"{x:g} 0 {z:g}"


def write_deck(frame, write):
    plane = frame.plane
    write("PROBLEM building frame\n")
    write(f"TYPE {'2d' if plane else '3d'}\n\n")
    write(f"GravityDirection {'0 -1 0' if plane else '0 0 -1'}\n\n")

    write(f"mesh\n  dimension = {2 if plane else 3}   elemtype Linear   nnode = 2\n")
    write("  coordinates\n")
    for number, position in frame.nodes():
        write(f"    {number}  {' '.join(f'{c:g}' for c in position)}\n")
    write("  end coordinates\n  elements\n")
    for number, a, b, material, _ in frame.members():
        write(f"    {number}  {a} {b}  {material}\n")
    write("  end elements\n\n")

    write(PLANE_MATERIALS if plane else MATERIALS)

    clamped = "111  0 0 0" if plane else "111111  0 0 0 0 0 0"
    write("\nconstraints\n")
    for number in range(1, frame.columns_x * frame.columns_y + 1):
        write(f"  {number}  {clamped}\n")
    write("end constraints\n")

    floor = components(plane, 0.0, FLOOR_LOAD)
    wind = components(plane, WIND_LOAD, 0.0)
    write("\nglobal_pressure_loads\n")
    for number, _, _, material, windward in frame.members():
        if material == BEAM:
            write(f"  {number}  {floor}\n")
        elif windward:
            write(f"  {number}  {wind}\n")
    write("end global_pressure_loads\n")


def at_least_one(text):
    value = int(text)
    if value < 1:
        raise argparse.ArgumentTypeError("must be 1 or more")
    return value


def main():
    parser = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("storeys", type=at_least_one)
    parser.add_argument("baysx", type=at_least_one)
    parser.add_argument("baysy", type=at_least_one)
    parser.add_argument("--plane", action="store_true")
    arguments = parser.parse_args()
    frame = Frame(arguments.storeys, arguments.baysx, arguments.baysy, arguments.plane)
    write_deck(frame, sys.stdout.write)


if __name__ == "__main__":
    main()
