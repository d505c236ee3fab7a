#!/usr/bin/env python3
"""Diagrams, sums and stresses against closed forms: check_mechanics.py KESTOL_EXPORT"""
import math
import pathlib
import sys
import tempfile

import numpy as np
from exporter import Export, Failures

BEAM = """PROBLEM beam
TYPE 2d
NumOfDivisions {divisions}
mesh dimension = 2 elemtype Linear nnode = 2
coordinates
1 0 0
2 6 0
end coordinates
elements
1 1 2 1
end elements
materials
1 E=2.1e8 A=1e-2 Iz=8e-5
end materials
constraints
1 {first}
2 {second}
end constraints
global_pressure_loads
1 0 -12
end global_pressure_loads
"""

# A square of 2 x 2, held along x = 0, under a force along x or a moment about y on its other edge,
# shared by the three nodes of it as the shape functions say. Thickness 0.2.
PATCH = """PROBLEM patch
TYPE 3d
units_names
kN-m kN m kPa 1000 1
end
units_mat_and_load kN-m
units_res kN-m
mesh dimension = 3 elemtype Triangle nnode = 6
coordinates
1 0 0 0
2 2 0 0
3 2 2 0
4 0 2 0
5 1 0 0
6 2 1 0
7 1 2 0
8 0 1 0
9 1 1 0
end coordinates
elements
1 1 2 3 5 6 9 1
2 1 3 4 9 7 8 1
end elements
materials
1 E=1e6 nu=0 t=0.2 G=5e5
end materials
constraints
1 111011 0 0 0 0 0 0
4 101011 0 0 0 0 0 0
8 101011 0 0 0 0 0 0
end constraints
nodal_point_loads
2 {force[0]} 0 0 0 {moment[0]} 0
6 {force[1]} 0 0 0 {moment[1]} 0
3 {force[0]} 0 0 0 {moment[0]} 0
end nodal_point_loads
"""


class Bench:
    def __init__(self, program):
        self.program, self.failures = program, Failures()
        self.folder = tempfile.TemporaryDirectory()

    def export(self, deck, *options):
        path = pathlib.Path(self.folder.name) / "deck.dat"
        path.write_text(deck, encoding="ascii")
        export = Export(self.program, path, self.folder.name, *options)
        self.failures.expect(export.status == 0, export.run.stderr)
        return export

    def near(self, found, wanted, what, tolerance=1e-9):
        scale = max(1.0, abs(wanted))
        self.failures.expect(abs(found - wanted) <= tolerance * scale, what, found, wanted)


def simpson(values, length):
    """Exact for the parabolas of a uniform load."""
    h = length / (len(values) - 1)
    return h / 3 * (values[0] + values[-1] + 4 * sum(values[1:-1:2]) + 2 * sum(values[2:-1:2]))


def area_of_strips(grid, kind, height):
    """The area between axis and diagram as it is drawn, over its height: the integral of the values
    by the trapezoidal rule."""
    total = 0.0
    for cell, places in enumerate(grid.cells):
        if grid.cell["component"][cell] != kind:
            continue
        x, y = grid.points[places][:, 0], grid.points[places][:, 1]
        total += 0.5 * (np.dot(x, np.roll(y, -1)) - np.dot(y, np.roll(x, -1)))
    return total / height


def check_diagrams(bench):
    q, length, stiffness = 12.0, 6.0, 2.1e8 * 8e-5
    pinned = bench.export(BEAM.format(divisions=20, first="110 0 0 0", second="010 0 0 0"))
    stations = pinned.json["beams"][0]["stations"]
    values = {name: [s[name] for s in stations] for name in ("Vy", "Mz", "N")}
    bench.near(simpson(values["Mz"], length), q * length**3 / 12, "integral of M")
    bench.near(simpson(values["Vy"], length), 0.0, "integral of V")
    bench.near(max(values["Mz"]), q * length**2 / 8, "largest M")
    bench.near(values["Vy"][0], q * length / 2, "V at the support")
    middle = stations[10]["u"][1]
    bench.near(middle, -5 * q * length**4 / (384 * stiffness), "deflection", 1e-12)
    # The drawn area: M on the tension side, below; 20 trapezoids miss q L^3 / 12 by 1 in 400.
    scale = 0.1 * length / (q * length**2 / 8)
    area = area_of_strips(pinned.diagrams, 6, scale)
    bench.near(area, -q * length**3 / 12 * (1 - 1 / 400), "drawn area", 1e-9)
    lowest = pinned.diagrams.points[:, 1].min()
    bench.near(lowest, -0.1 * length, "height of the diagram", 1e-12)

    clamped = bench.export(BEAM.format(divisions=20, first="111 0 0 0", second="111 0 0 0"),
                           "--stations", 11)
    stations = clamped.json["beams"][0]["stations"]
    bench.failures.expect(len(stations) == 11, "stations")
    moments = [s["Mz"] for s in stations]
    bench.near(moments[0], -q * length**2 / 12, "clamped end")
    bench.near(moments[5], q * length**2 / 24, "middle of a clamped beam")
    bench.near(simpson(moments, length), 0.0, "integral of a clamped beam's M", 1e-9)
    by_node = {r["node"]: r for r in clamped.json["reactions"]}
    bench.near(by_node[1]["force"][1], 36.0, "true reaction")
    bench.near(by_node[1]["moment"][2], 36.0, "true moment")
    bench.near(by_node[1]["printed"][1], 0.0, "what the solver prints there")


def edge(total):
    """A uniform edge load on two corners and the node between."""
    return total / 6, 4 * total / 6


def check_patch(bench):
    force, moment, width, thickness = 10.0, -6.0, 2.0, 0.2
    pulled = bench.export(PATCH.format(force=edge(force), moment=edge(0)))
    n = force / width
    for shell in pulled.json["shells"]:
        axis = np.array(shell["axes"][0])
        for point in shell["points"]:
            along = point["n"][0] if abs(axis[0]) > 0.9 else point["n"][1]
            bench.near(along, n, "membrane force", 1e-9)
            for face in ("top", "bottom"):
                bench.near(point[face][0], n / thickness, "membrane stress", 1e-9)
    bench.near(pulled.grid.cell["von Mises top"][0], n / thickness, "von Mises by hand", 1e-9)

    bent = bench.export(PATCH.format(force=edge(0), moment=edge(moment)))
    stress = 6 * abs(moment) / width / thickness**2
    for shell in bent.json["shells"]:
        for point in shell["points"]:
            # The free edge is lifted, so the top is pressed.
            bench.near(point["top"][0], -stress, "bending stress at the top", 1e-9)
            bench.near(point["bottom"][0], stress, "bending stress at the bottom", 1e-9)
    bench.near(bent.grid.cell["von Mises bottom"][1], stress, "von Mises by hand", 1e-9)
    tip = [node["u"][2] for node in bent.json["nodes"] if node["x"][0] == 2]
    bench.failures.expect(min(tip) > 0, "the free edge is lifted", tip)
    bench.near(bent.json["equilibrium"]["reactions"]["moment"][1], abs(moment), "held moment", 1e-9)
    bench.failures.expect(bent.json["units"] == {"force": "kN", "length": "m", "pressure": "kPa"},
                          "units", bent.json["units"])
    for name in ("n [kN/m]", "m [kN m/m]", "q [kN/m]", "stress top [kPa]", "RM [kN m]", "R [rad]"):
        bench.failures.expect(name in bent.grid.names, "unit in the name of", name)


def check_curve(bench):
    """A polyline of stations follows the deflection, so that the deformed shape is a curve."""
    export = bench.export(BEAM.format(divisions=40, first="110 0 0 0", second="010 0 0 0"))
    line = export.grid.cells[0]
    x = export.grid.points[line][:, 0] / 6.0
    q, length, stiffness = 12.0, 6.0, 2.1e8 * 8e-5
    wanted = -q * length**4 / (24 * stiffness) * (x - 2 * x**3 + x**4)
    gap = np.abs(export.grid.point["U"][line][:, 1] - wanted).max()
    bench.near(gap, 0.0, "deflection curve", 1e-13)
    slope = -q * length**3 / (24 * stiffness) * (1 - 6 * x**2 + 4 * x**3)
    gap = np.abs(export.grid.point["R"][line][:, 2] - slope).max()
    bench.near(gap, 0.0, "rotation along the beam", 1e-13)
    bench.failures.expect(math.isclose(export.grid.points[line][-1, 0], 6.0), "end of the line")


def main():
    bench = Bench(sys.argv[1])
    check_diagrams(bench)
    check_patch(bench)
    check_curve(bench)
    return bench.failures.finish("mechanics")


if __name__ == "__main__":
    sys.exit(main())
