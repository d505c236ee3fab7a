#!/usr/bin/env python3
"""The names of arrays and columns, with the units of the deck and without: check_names.py KESTOL_EXPORT KESTOL ROOT

F, L and P stand for the units of force, length and pressure.
"""
import csv
import re
import sys

import numpy as np
from bench import Bench
from exporter import Grid

UNITS = """units_names
kN-m kN m kPa 1000 1
end units_names
units_mesh m
units_mat_and_load kN-m
units_res kN-m
"""
RIB = """PROBLEM a plate with a rib
TYPE 3d
mesh dimension = 3 elemtype Triangle nnode = 3
coordinates
1 0 0 0
2 2 0 0
3 0 2 0
4 4 0 0
end coordinates
elements
1 1 2 3 1
end elements
mesh dimension = 3 elemtype Linear nnode = 2
coordinates
end coordinates
elements
2 2 4 2
end elements
materials
1 E=2e8 nu=0.3 G=8e7 t=0.1
2 E=2e8 G=8e7 A=1e-2 Iy=1e-5 Iz=1e-5 J=1e-5
end materials
constraints
1 111111 0 0 0 0 0 0
3 111111 0 0 0 0 0 0
end constraints
local_pressure_loads
1 0 0 -5 2
2 0 0 0 4
end local_pressure_loads
global_pressure_loads
2 0 0 -3
end global_pressure_loads
"""
SOLID = """PROBLEM a tetrahedron
TYPE 3d
mesh dimension = 3 elemtype Tetrahedra nnode = 4
coordinates
1 0 0 0
2 2 0 0
3 0 2 0
4 0 0 2
end coordinates
elements
1 1 2 3 4 1
end elements
materials
1 E=2e8 nu=0.3
end materials
constraints
1 111 0 0 0
2 111 0 0 0
3 111 0 0 0
end constraints
global_pressure_loads
1 -1 0 0 -7
1 2 0 0 -5
end global_pressure_loads
"""
ARRAYS = {
    RIB: ["node", "U [L]", "R [rad]", "support", "hinge", "RF [F]", "RM [F L]", "F [F]", "M [F L]", "N [F]", "Vy [F]",
          "Vz [F]", "T [F L]", "My [F L]", "Mz [F L]", "element", "material", "mesh", "hinges", "ex", "ey", "ez",
          "n [F/L]", "m [F L/L]", "q [F/L]", "n main [F/L]", "n direction 1", "n direction 2", "m main [F L/L]",
          "m direction 1", "m direction 2", "stress top [P]", "von Mises top [P]", "stress bottom [P]",
          "von Mises bottom [P]", "load per length [F/L]", "load per area [F/L2]", "couple per length [F L/L]",
          "couple per area [F L/L2]"],
    SOLID: ["node", "U [L]", "support", "RF [F]", "F [F]", "stress [P]", "von Mises [P]", "main stress [P]",
            "main direction 1", "main direction 2", "main direction 3", "element", "material", "mesh",
            "load per area [F/L2]", "load per volume [F/L3]"],
}
# Cell 0 is the shell or the solid, cell 1 the beam, whose local x is the global one.
LOADS = {
    RIB: {"load per length": [[0, 0, 0], [0, 0, -3]], "load per area": [[0, 0, -5], [0, 0, 0]],
          "couple per length": [[0, 0, 0], [4, 0, 0]], "couple per area": [[2, 0, 0], [0, 0, 0]]},
    SOLID: {"load per area": [[0, 0, -5]], "load per volume": [[0, 0, -7]]},
}
DIAGRAMS = ["value", "component", "element"]
FORCES = ["Fx [F]", "Fy [F]", "Fz [F]", "Mx [F L]", "My [F L]", "Mz [F L]"]
PLACE = ["x [L]", "y [L]", "z [L]"]
STRESS = [f"{name} [P]" for name in ("XX", "YY", "ZZ", "XY", "YZ", "XZ", "vonMises")]
COLUMNS = {
    "nodes": ["node", *PLACE, "ux [L]", "uy [L]", "uz [L]", "rx [rad]", "ry [rad]", "rz [rad]"],
    "beams": ["element", "material", "node1", "node2", "length [L]",
              *(f"e{axis}{part}" for axis in "xyz" for part in "xyz"),
              *(name.replace(" ", f"{end} ", 1) for end in "12" for name in FORCES)],
    "stations": ["element", "x [L]", "N [F]", "Vy [F]", "Vz [F]", "T [F L]", "My [F L]", "Mz [F L]", "ux [L]",
                 "uy [L]", "uz [L]"],
    "shells": ["element", "point", *PLACE, "nx [F/L]", "ny [F/L]", "nxy [F/L]", "mx [F L/L]", "my [F L/L]",
               "mxy [F L/L]", "qx [F/L]", "qy [F/L]", *(f"top {name}" for name in STRESS),
               *(f"bottom {name}" for name in STRESS)],
    "solids": ["element", "point", *PLACE, *STRESS],
    "reactions": ["node", *FORCES],
    "loads": ["node", *FORCES],
}


def named(names, units):
    """The names with their units, or without any."""
    if not units:
        return [name.split(" [")[0] for name in names]
    words = {"F": "kN", "L": "m", "P": "kPa"}
    return [re.sub(r"\[.*\]", lambda found: re.sub("[FLP]", lambda unit: words[unit[0]], found[0]), name)
            for name in names]


def check_names(bench):
    for deck, arrays in ARRAYS.items():
        for units in ("", UNITS):
            bench.put(deck.replace("mesh dimension", units + "mesh dimension", 1))
            done = bench.run("deck.dat", "--vtu", "a.vtu", "--csv", "a")
            bench.expect(done.returncode == 0, done.stderr)
            grid = Grid(bench.work / "a.vtu")
            bench.expect(grid.names == named(arrays, units), "arrays", grid.names, named(arrays, units))
            for name, values in LOADS[deck].items():
                bench.expect(np.allclose(grid.cell[name], values, rtol=0, atol=1e-12), name, grid.cell[name], values)
            if deck is RIB:
                names = Grid(bench.work / "a_diagrams.vtu").names
                bench.expect(names == DIAGRAMS, "diagrams", names)
            for table, columns in COLUMNS.items():
                with open(bench.work / f"a_{table}.csv", newline="", encoding="utf-8") as file:
                    head = next(csv.reader(file))
                bench.expect(head == named(columns, units), table, head, named(columns, units))


if __name__ == "__main__":
    sys.exit(Bench(*sys.argv[1:]).check("names", (check_names,)))
