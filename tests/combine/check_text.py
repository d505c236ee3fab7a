#!/usr/bin/env python3
"""The text of the envelopes, and the heads of their tables: every heading, value and unit against the
document of the same run.

    check_text.py kestol-combine kestol-export kestol examples
"""

from __future__ import annotations

import csv
import re
import unittest
from typing import Any, Iterator

from combine_documents import Documents
from combine_places import BY_HAND, SHEETS, members, places

UNITS = """units_names
kN-m kN m kPa 1000 1
end units_names
units_mesh m
units_mat_and_load kN-m
units_res kN-m
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
7 1 2 3 4 1
end elements
materials
1 E=2e8 nu=0.3
end materials
constraints
1 111 0 0 0
2 111 0 0 0
3 111 0 0 0
end constraints
nodal_point_loads
4 1 2 -3
end nodal_point_loads
"""
# By kind: the words of a heading, the part of the document, the key of a place and what is within it.
HEADINGS = {
    "node": (r"node (\d+)", "nodes", "number", ""),
    "beam": (r"beam (\d+), station (\d+)/20", "beams", "element", "stations"),
    "shell": (r"shell (\d+), point (\d+)", "shells", "element", "points"),
    "solid": (r"solid (\d+), point (\d+)", "solids", "element", "points"),
    "stress": (r"stress at node (\d+)", "nodalStresses", "number", ""),
    "reaction": (r"reaction at node (\d+)", "reactions", "node", ""),
    "between": (r"reaction between nodes (\d+) and (\d+)", "reactions", "between", ""),
    "turned": (r"reaction at node (\d+) in the axes of the support", "reactions", "node", "inSupportAxes"),
    "turned between": (r"reaction between nodes (\d+) and (\d+) in the axes of the support", "reactions", "between",
                       "inSupportAxes"),
}
HEADS = """nodes: node, value, extreme, combination, ux [m], uy [m], uz [m], rx [rad], ry [rad], rz [rad]
stations: element, station, x [m], value, extreme, combination, N [kN], Vy [kN], Vz [kN], T [kN m], My [kN m], \
Mz [kN m]
deflections: element, station, x [m], value, extreme, combination, ux [m], uy [m], uz [m]
shells: element, point, value, extreme, combination, nx [kN/m], ny [kN/m], nxy [kN/m], mx [kN m/m], my [kN m/m], mxy \
[kN m/m], qx [kN/m], qy [kN/m]
shells_top: element, point, value, extreme, combination, topXX [kPa], topYY [kPa], topZZ [kPa], topXY [kPa], topYZ \
[kPa], topXZ [kPa]
shells_bottom: element, point, value, extreme, combination, bottomXX [kPa], bottomYY [kPa], bottomZZ [kPa], bottomXY \
[kPa], bottomYZ [kPa], bottomXZ [kPa]
solids: element, point, value, extreme, combination, XX [kPa], YY [kPa], ZZ [kPa], XY [kPa], YZ [kPa], XZ [kPa]
nodal_stresses: node, value, extreme, combination, XX [kPa], YY [kPa], ZZ [kPa], XY [kPa], YZ [kPa], XZ [kPa], \
vonMises [kPa]
reactions: node, between, and, value, extreme, combination, Fx [kN], Fy [kN], Fz [kN], Mx [kN m], My [kN m], \
Mz [kN m]
reactions_in_support_axes: node, between, and, value, extreme, combination, Fx [kN], Fy [kN], Fz [kN], Mx [kN m], \
My [kN m], Mz [kN m]"""


def unit_of(name: str, of_shell: bool) -> str:
    if name[:3] in ("top", "bot") or name == "vonMises" or name[0] in "XYZ":
        return "kPa"
    if of_shell:
        return "kN m/m" if name[0] == "m" else "kN/m"
    if name[0] in "ur":
        return "m" if name[0] == "u" else "rad"
    return "kN m" if name[0] in "MT" else "kN"


def cells_of(line: str) -> list[str]:
    return re.split(r"  +", line.rstrip())


def numbers_of(cell: str) -> list[float]:
    return [float(word) for word in cell.split(", ")]


def values_of(place: dict) -> dict[str, Any]:
    values: dict[str, Any] = {}
    for group in members(place):
        values.update(group)
    return values


class Text(Documents):
    def place(self, heading: str, envelopes: dict) -> tuple[str, Any]:
        """The kind of place that a heading names, and the place in the document."""
        for kind, (words, part, key, inner) in HEADINGS.items():
            found = re.fullmatch(words, heading)
            if not found:
                continue
            numbers = [int(number) for number in found.groups()]
            wanted: Any = numbers if key == "between" else numbers[0]
            place = next(p for p in envelopes[part] if p.get(key) == wanted)
            if not inner:
                return kind, place
            inside = place[inner]
            return kind, inside[numbers[1] - (inner == "points")] if isinstance(inside, list) else inside
        self.fail(f"unknown heading {heading!r}")

    def assert_near(self, found: list[float], wanted: list[float]) -> None:
        """Six digits; what is rounding beside other values counts as 0."""
        self.assertEqual(len(found), len(wanted))
        for one, other in zip(found, wanted):
            self.assertLessEqual(abs(one - other), 1e-5 * abs(other) + 1e-6 * self.largest, (found, wanted))

    def assert_row(self, cells: list[str], values: dict, units: bool, kind: str) -> str:
        """One value: its name and unit, extremes and combinations."""
        name = cells[0].split(" [")[0]
        self.assertEqual(cells[0], f"{name} [{unit_of(name, kind == 'shell')}]" if units else name)
        extreme = values[name]
        self.assertEqual((cells[2], cells[4]), (extreme["minBy"], extreme["maxBy"]))
        self.assert_near([float(cells[1]), float(cells[3])], [extreme["min"], extreme["max"]])
        return name

    def rows(self, text: str, envelopes: dict, units: bool) -> Iterator[tuple[str, str, float, float]]:
        """Checks each block; gives the kinds of its places, names and extremes of its values."""
        for block in text.rstrip("\n").split("\n\n"):
            head, *lines = block.split("\n")
            title, *columns = cells_of(head)
            self.assertEqual((title[:9], columns), ("ENVELOPE ", ["min", "by", "max", "by"]))
            kind, place = self.place(title[9:], envelopes)
            values = values_of(place)
            self.largest = max(abs(v[end]) for v in values.values() for end in ("min", "max"))
            name = ""
            for line in lines:
                cells = cells_of(line)
                if cells[0]:
                    name = self.assert_row(cells, values, units, kind)
                    yield kind, name, float(cells[1]), float(cells[3])
                    continue
                self.assertEqual(cells[1][:5], "with ")
                others = cells[1][5:].split(", ")
                self.assertNotIn(name, others)
                for end, cell in (("minWith", cells[2]), ("maxWith", cells[3])):
                    self.assert_near(numbers_of(cell), [values[name][end][other] for other in others])

    def assert_text(self, *kinds: str, units: bool = True) -> None:
        """The headings are of these kinds, and the extremes of the whole model are among their values."""
        text, document = self.folder.combine("c.toml"), self.document("c.toml")
        self.assertEqual((text.status, text.err), (0, ""))
        rows = list(self.rows(text.out, document["envelopes"], units))
        self.assertEqual({kind for kind, *_ in rows}, set(kinds))
        for kind, part, inner in (("node", "nodes", ""), ("shell", "shells", "points"), ("beam", "beams", "stations"),
                                  ("solid", "solids", "points"), ("stress", "nodalStresses", "")):
            found = [values_of(place) for path, place in places(document["envelopes"][part])
                     if not inner or inner in path]
            self.largest = max((abs(v[end]) for values in found for v in values.values() for end in ("min", "max")),
                               default=0.0)
            for name in {name for row, name, *_ in rows if row == kind}:
                mine = [(low, high) for row, other, low, high in rows if (row, other) == (kind, name)]
                self.assert_near([min(low for low, _ in mine), max(high for _, high in mine)],
                                 [min(v[name]["min"] for v in found), max(v[name]["max"] for v in found)])

    def by_hand(self, deck: str, loads: str) -> None:
        self.folder.write("deck.dat", deck)
        self.folder.write("side.dat", loads)
        self.folder.write("c.toml", 'model = "deck.dat"\n[cases.G]\nloads = "model"\n'
                          f'[cases.F]\nloads = "side.dat"\n{BY_HAND}')

    def sheets(self, keys: str) -> None:
        self.by_hand(SHEETS.format(keys=keys), "nodal_point_loads\n 2 1 0 -3 0 0.5 0\n 3 0 2 1 0 0 0\nend\n")

    def solid(self) -> None:
        self.by_hand(SOLID.replace("mesh dim", UNITS + "mesh dim"), "nodal_point_loads\n 4 1 0 -3\nend\n")

    def test_beams(self) -> None:
        self.assert_text("node", "beam", "reaction")

    def test_shells_on_inclined_supports(self) -> None:
        for units in (True, False):
            self.sheets(UNITS * units)
            self.assert_text("node", "shell", "reaction", "turned", units=units)

    def test_reactions_of_created_nodes_stand_between_theirs(self) -> None:
        self.sheets(UNITS + "ConvertTo6Nodes\nCoplanarityAngle 0.2")
        self.assert_text("node", "shell", "reaction", "turned", "between", "turned between")

    def test_solids(self) -> None:
        self.solid()
        self.assert_text("node", "solid", "stress", "reaction")

    def test_heads_of_tables(self) -> None:
        heads: dict[str, list[str]] = {}
        for prepare in (lambda: None, lambda: self.sheets(UNITS), self.solid):
            prepare()
            self.folder.combine("c.toml", "--csv", "t")
            for name in self.folder.names():
                if name.startswith("t_envelope_"):
                    with open(self.folder.path / name, encoding="utf-8", newline="") as file:
                        heads[name[11:-4]] = next(csv.reader(file))
        wanted = dict(line.split(": ", 1) for line in HEADS.splitlines())
        self.assertEqual(heads, {table: head.split(", ") for table, head in wanted.items()})


if __name__ == "__main__":
    unittest.main()
