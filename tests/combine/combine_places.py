"""The places of a document with their values by name, and a model of shells with all kinds of supports."""

from __future__ import annotations

from typing import Any, Iterator

TENSOR = ("XX", "YY", "ZZ", "XY", "YZ", "XZ")
FORCES = ("N", "Vy", "Vz", "T", "My", "Mz")
# Members of a document that hold several values, and the names of these.
MEMBERS = {"u": ("ux", "uy", "uz"), "rotation": ("rx", "ry", "rz"),
           "n": ("nx", "ny", "nxy"), "m": ("mx", "my", "mxy"), "q": ("qx", "qy"), "stress": TENSOR,
           "top": tuple("top" + c for c in TENSOR), "bottom": tuple("bottom" + c for c in TENSOR),
           "force": ("Fx", "Fy", "Fz"), "moment": ("Mx", "My", "Mz")}
# Values of one place under one combination: what is concurrent.
GROUPS = (("u", "rotation"), FORCES, ("n", "m", "q"), ("top",), ("bottom",), ("stress", "vonMises"),
          ("force", "moment"))
# Two shells, clamped along one side on an inclined support with a spring.
SHEETS = """PROBLEM sheet
TYPE 3d
{keys}
mesh dimension = 3 elemtype Triangle nnode = 3
coordinates
1 0 0 0
2 2 0 0
3 2 1 0.1
4 0 1 0
end coordinates
elements
1 1 2 3 1
2 1 3 4 1
end elements
materials
1 E=3e7 nu=0.2 t=0.1 G=1.25e7 Weight=25
end materials
constraints
1 111111 0 0 0 0 0 0
4 111211 0 0 0 50 0 0 Euler3=0.3
end constraints
local_pressure_loads
1 0 0 -2 0
end
"""
BY_HAND = """[combinations]
A = { G = 1 }
B = { G = 1, F = 1000 }
C = { G = 1, F = -1000 }
D = { F = 3 }
"""


def members(place: dict) -> Iterator[dict[str, Any]]:
    """The values of a place by name, group by group."""
    for group in GROUPS:
        values: dict[str, Any] = {}
        for member in group:
            if member in place:
                found = place[member]
                values.update(zip(MEMBERS[member], found) if member in MEMBERS
                              else [(member, found)])
        if values:
            yield values


def places(tree: Any, path: tuple = ()) -> Iterator[tuple[tuple, dict]]:
    """All places that hold values, with their path."""
    if isinstance(tree, list):
        for k, part in enumerate(tree):
            yield from places(part, path + (k,))
    elif isinstance(tree, dict):
        yield path, tree
        for key in ("stations", "points", "inSupportAxes"):
            if key in tree:
                yield from places(tree[key], path + (key,))
