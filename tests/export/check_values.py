#!/usr/bin/env python3
"""Every number of kestol-export, in every format, on examples and random decks:
check_values.py KESTOL_EXPORT DECK... [--random FIRST COUNT]"""
import argparse
import pathlib
import sys
import tempfile

import decks
import numpy as np
from exporter import Export, Failures

COMPONENTS = ("N", "Vy", "Vz", "T", "My", "Mz")


def column(rows, *keys):
    """The values under one key after the other, stacked."""
    values = rows
    for key in keys:
        values = [value[key] for value in values]
    return np.array(values, dtype=float)


def von_mises(s):
    xx, yy, zz, xy, yz, xz = s
    return np.sqrt(0.5 * ((xx - yy)**2 + (yy - zz)**2 + (zz - xx)**2) + 3 * (xy**2 + yz**2 + xz**2))


def tensor(s):
    xx, yy, zz, xy, yz, xz = s
    return np.array([[xx, xy, xz], [xy, yy, yz], [xz, yz, zz]])


class Checker:
    def __init__(self, export, failures, name):
        self.e, self.f, self.name = export, failures, name
        self.grid, self.json = export.grid, export.json

    def same(self, found, wanted, what):
        self.f.same(found, wanted, self.name, what)

    def near(self, found, wanted, scale, what, tolerance=1e-12):
        gap = np.max(np.abs(np.asarray(found) - np.asarray(wanted)), initial=0.0)
        self.f.expect(gap <= tolerance * (scale + 1e-300), self.name, what, gap, scale)

    def all(self):
        self.nodes()
        self.stations()
        self.shells()
        self.solids()
        self.supports()
        self.loads()
        self.report()
        self.units()

    # --- nodes and beams ----------------------------------------------------------------------

    def nodes(self):
        nodes, point = self.json["nodes"], self.grid.point
        count = len(nodes)
        self.same(point["node"][:count], column(nodes, "number"), "node numbers")
        self.f.expect(not point["node"][count:].any(), self.name, "created points have number 0")
        self.same(self.grid.points[:count], column(nodes, "x"), "coordinates")
        self.same(point["U"][:count], column(nodes, "u"), "U")
        if "R" in point:
            self.same(point["R"][:count], column(nodes, "rotation"), "R")
        else:
            self.f.expect(not column(nodes, "rotation").any(), self.name, "solids do not rotate")
        _, table = self.e.table("nodes")
        self.same(table, np.hstack([column(nodes, "number")[:, None], column(nodes, "x"),
                                    column(nodes, "u"), column(nodes, "rotation")]), "nodes.csv")

    def stations(self):
        beams = self.json["beams"]
        _, table = self.e.table("stations")
        lines = [c for c, kind in enumerate(self.grid.types) if kind == 4]
        self.f.expect(len(lines) == len(beams), self.name, "one polyline per beam")
        self.f.expect((self.e.diagrams is not None) == bool(beams), self.name, "a diagrams file")
        if not beams:
            return
        rows = []
        for cell, beam in zip(lines, beams):
            places, stations = self.grid.cells[cell], beam["stations"]
            self.same(self.grid.cell["element"][cell], beam["element"], "element")
            self.same(self.grid.cell["material"][cell], beam["material"], "material")
            self.same(self.grid.point["U"][places], column(stations, "u"), "U of stations")
            for name in COMPONENTS:
                self.same(self.grid.point[name][places], column(stations, name), name)
            for name, axis in zip(("ex", "ey", "ez"), beam["axes"]):
                self.same(self.grid.cell[name][cell], np.array(axis), name)
            ends = [self.json["nodes"][n - 1]["x"] for n in beam["nodes"]]
            self.same(self.grid.points[places[[0, -1]]], np.array(ends), "ends of a polyline")
            x = np.linalg.norm(self.grid.points[places] - self.grid.points[places[0]], axis=1)
            self.near(x, column(stations, "x"), beam["length"], "x of stations", 1e-14)
            rows += [[beam["element"], s["x"], *(s[name] for name in COMPONENTS), *s["u"]]
                     for s in stations]
        self.same(table, np.array(rows), "stations.csv")
        self.ends()
        self.diagrams()

    def ends(self):
        """End forces against the stations: at the first end internal forces with these signs."""
        _, table = self.e.table("beams")
        for row, beam in zip(table, self.json["beams"]):
            self.same(row[:5], np.array([beam["element"], beam["material"], *beam["nodes"],
                                         beam["length"]]), "beams.csv")
            self.same(row[5:14], np.array(beam["axes"]).ravel(), "axes in beams.csv")
            first, last = beam["stations"][0], beam["stations"][-1]
            size = np.max(np.abs(row[14:])) if row[14:].size else 0.0
            self.near(row[14], -first["N"], size, "N at end 1", 1e-9)
            self.near(row[20], last["N"], size, "N at end 2", 1e-9)

    def diagrams(self):
        grid = self.e.diagrams
        plane = len(set(grid.cell["component"])) == 3
        kinds = (1, 2, 6) if plane else (1, 2, 3, 4, 5, 6)
        beams = self.json["beams"]
        cell = 0
        corners = self.grid.points[:len(self.json["nodes"])]
        size = np.linalg.norm(corners.max(axis=0) - corners.min(axis=0))
        for kind in kinds:
            name = COMPONENTS[kind - 1]
            largest = max(abs(s[name]) for beam in beams for s in beam["stations"])
            heights = []
            for beam in beams:
                values = column(beam["stations"], name)
                strip = range(cell, cell + len(values) - 1)
                cell += len(values) - 1
                places = np.array([grid.cells[c] for c in strip])
                self.f.expect((grid.cell["component"][strip] == kind).all(), self.name, "component")
                self.f.expect((grid.cell["element"][strip] == beam["element"]).all(), self.name,
                              "element of a strip")
                for i, side in ((0, values[:-1]), (1, values[1:]), (2, values[1:]), (3, values[:-1])):
                    self.same(grid.point["value"][places[:, i]], side, f"value of {name}")
                drawn = grid.points[places[:, 3]] - grid.points[places[:, 0]]
                heights.append(np.abs(drawn).max(initial=0.0))
                lengths = np.linalg.norm(drawn, axis=1)
                if lengths.any():
                    self.near(lengths, 0.1 * size * np.abs(values[:-1]) / largest, size, "heights")
        self.f.expect(cell == len(grid.cells), self.name, "strips", cell, len(grid.cells))

    # --- shells and solids --------------------------------------------------------------------

    def shells(self):
        shells = self.json["shells"]
        cells = [c for c, kind in enumerate(self.grid.types) if kind in (5, 22)]
        self.f.expect(len(cells) == len(shells), self.name, "one triangle per shell")
        _, table = self.e.table("shells")
        rows = []
        for cell, shell in zip(cells, shells):
            data = {name: array[cell] for name, array in self.grid.cell.items()}
            axes = np.array(shell["axes"])
            self.same(data["element"], shell["element"], "element")
            for name, axis in zip(("ex", "ey", "ez"), axes):
                self.same(data[name], axis, name)
            self.near(axes @ axes.T, np.eye(3), 1.0, "axes", 1e-13)
            points = shell["points"]
            for name in "nmq":
                mean = column(points, name).mean(axis=0)
                self.near(data[name], mean, np.abs(mean).max(), name, 1e-15)
            for face in ("top", "bottom"):
                mean = column(points, face).mean(axis=0)
                self.near(data[f"stress {face}"], mean, np.abs(mean).max(), face, 1e-12)
                self.near(data[f"von Mises {face}"], von_mises(mean), np.abs(mean).max(),
                          f"von Mises {face}")
            for name in "nm":
                xx, yy, xy = data[name]
                local = np.array([[xx, xy], [xy, yy]])
                size = np.abs(local).max()
                for k in range(2):
                    direction = (axes @ data[f"{name} direction {k + 1}"])[:2]
                    # A shear below the solver's zero turns nothing.
                    self.near(local @ direction, data[f"{name} main"][k] * direction, size + 1e-9,
                              f"main {name}", 1e-6)
            for p, point in enumerate(points):
                top, bottom = point["top"], point["bottom"]
                rows.append([shell["element"], p + 1, *point["x"], *point["n"], *point["m"],
                             *point["q"], *top, von_mises(top), *bottom, von_mises(bottom)])
        if shells:
            self.near(table, np.array(rows), np.abs(table).max(), "shells.csv", 1e-14)
            exact = [c for c in range(table.shape[1]) if c not in (19, 26)]
            self.same(table[:, exact], np.array(rows)[:, exact], "shells.csv")

    def solids(self):
        solids, point = self.json["solids"], self.grid.point
        cells = [c for c, kind in enumerate(self.grid.types) if kind in (10, 24)]
        self.f.expect(len(cells) == len(solids), self.name, "one tetrahedron per solid")
        nodal = self.json["nodalStresses"]
        self.f.expect(bool(nodal) == bool(solids), self.name, "nodal stresses")
        _, table = self.e.table("solids")
        if not solids:
            return
        for cell, solid in zip(cells, solids):
            self.same(self.grid.cell["element"][cell], solid["element"], "element")
            self.same(point["node"][self.grid.cells[cell]], np.array(solid["nodes"], dtype=float),
                      "nodes of a solid")
        stress = column(nodal, "stress")
        self.same(point["stress"], stress, "nodal stress")
        self.same(point["von Mises"], column(nodal, "vonMises"), "von Mises")
        for k, s in enumerate(stress):
            size = np.abs(s).max()
            self.near(point["von Mises"][k], von_mises(s), size, "von Mises of the tensor")
            self.near(point["main stress"][k], np.linalg.eigvalsh(tensor(s))[::-1], size, "main")
            for i in range(3):
                direction = point[f"main direction {i + 1}"][k]
                self.near(tensor(s) @ direction, point["main stress"][k][i] * direction, size,
                          "main direction", 1e-10)
        self.middles(solids, stress)
        rows = [[s["element"], p + 1, *q["x"], *q["stress"]] for s in solids
                for p, q in enumerate(s["points"])]
        self.same(table[:, :11], np.array(rows), "solids.csv")

    def middles(self, solids, stress):
        """Mid-sides have the mean of their corners."""
        for solid in solids:
            if len(solid["nodes"]) != 10:
                continue
            nodes = [n - 1 for n in solid["nodes"]]
            for k, (a, b) in enumerate(decks.EDGES):
                self.same(stress[nodes[4 + k]], 0.5 * (stress[nodes[a]] + stress[nodes[b]]),
                          "mid-side stress")

    # --- forces -------------------------------------------------------------------------------

    def supports(self):
        reactions, point = self.json["reactions"], self.grid.point
        _, table = self.e.table("reactions")
        rows = [[r["node"], *r["force"], *r["moment"]] for r in reactions]
        self.same(table, np.array(rows, dtype=float).reshape(-1, 7), "reactions.csv")
        total = column(reactions, "force").reshape(-1, 3).sum(axis=0)
        force_size = np.abs(column(reactions, "force")).sum()
        self.near(point["RF"].sum(axis=0), total, force_size, "RF stands once")
        balance = self.json["equilibrium"]
        self.near(total, balance["reactions"]["force"], force_size, "sum of reactions")
        # Loads and reactions hold each other.
        size = force_size + np.abs(point["F"]).sum()
        self.near(np.add(balance["loads"]["force"], balance["reactions"]["force"]), 0.0, size,
                  "balance of forces", 1e-8)
        self.near(balance["relativeError"], 0.0, 1.0, "relative error", 1e-7)
        for reaction in reactions:
            if reaction["node"] == 0:
                self.f.expect(len(set(reaction["between"])) == 2, self.name, "between two corners")
                continue
            place = reaction["node"] - 1
            self.same(point["RF"][place], np.array(reaction["force"]), "RF")
            if "RM" in point:
                self.same(point["RM"][place], np.array(reaction["moment"]), "RM")
            self.f.expect(point["support"][place].any(), self.name, "support flags")
            if "inSupportAxes" in reaction:
                turned = reaction["inSupportAxes"]
                for kind in ("force", "moment"):
                    norm = np.linalg.norm(reaction[kind])
                    self.near(np.linalg.norm(turned[kind]), norm, norm, "turned reaction")
        held = {r["node"] for r in reactions}
        count = len(self.json["nodes"])
        flagged = {n + 1 for n in range(count) if point["support"][n].any()}
        self.f.expect(flagged == held - {0}, self.name, "supports and reactions", flagged ^ held)

    def loads(self):
        point = self.grid.point
        _, table = self.e.table("loads")
        balance = self.json["equilibrium"]["loads"]
        size = np.abs(point["F"]).sum()
        self.near(point["F"].sum(axis=0), balance["force"], size, "sum of loads")
        self.near(table[:, 1:4].sum(axis=0), balance["force"], size, "sum of loads.csv")
        moments = np.cross(self.grid.points, point["F"])
        if "M" in point:
            moments = moments + point["M"]
        self.near(moments.sum(axis=0), balance["moment"], np.abs(moments).sum(), "moment of loads")
        for row in table:
            if row[0] > 0:
                self.same(point["F"][int(row[0]) - 1], row[1:4], "F")

    # --- the solver's own words ---------------------------------------------------------------

    def report(self):
        """Displacements and reactions as printed, to six digits."""
        section, printed = "", {}
        for line in pathlib.Path(f"{self.e.stem}.txt").read_text(encoding="latin-1").splitlines():
            if line.startswith(("NODAL", "ELEMENT", "REACTIONS")):
                section = line.split()[0]
            elif section in ("NODAL", "REACTIONS") and line.strip():
                number, *values = line.split()
                printed[section, int(number)] = [float(value) for value in values]
        for node in self.json["nodes"]:
            values = printed["NODAL", node["number"]]
            if len(values) == 6 or not self.json["solids"]:
                wanted = ([*node["u"], *node["rotation"]] if len(values) == 6
                          else [node["u"][0], node["u"][1], node["rotation"][2]])
            else:
                wanted = node["u"]
            for value, exact in zip(values, wanted):
                self.f.expect(abs(value - exact) <= 1e-5 * abs(exact) + 1e-300, self.name, "report",
                              node["number"], value, exact)
        for reaction in self.json["reactions"]:
            if reaction["node"] and "printed" in reaction:
                for value, exact in zip(printed["REACTIONS", reaction["node"]], reaction["printed"]):
                    self.f.expect(abs(value - exact) <= 1e-5 * abs(exact) + 1e-300, self.name,
                                  "printed reaction", value, exact)

    def units(self):
        units = self.json["units"]
        self.f.expect(set(units) == {"force", "length", "pressure"}, self.name, "units")
        if units["force"]:
            self.f.expect(f"U [{units['length']}]" in self.grid.names, self.name, "unit of U")
            self.f.expect(f"RF [{units['force']}]" in self.grid.names, self.name, "unit of RF")
            self.f.expect(f"ux [{units['length']}]" in self.e.table("nodes")[0], self.name, "csv")
        else:
            self.f.expect("U" in self.grid.names and not any("[" in n for n in self.grid.names),
                          self.name, "no units")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program")
    parser.add_argument("decks", nargs="*")
    parser.add_argument("--random", nargs=2, type=int, default=(0, 0), metavar=("FIRST", "COUNT"))
    arguments = parser.parse_args()
    failures, solved = Failures(), 0
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        paths = [pathlib.Path(deck) for deck in arguments.decks]
        first, count = arguments.random
        for seed in range(first, first + count):
            paths.append(work / f"random-{seed}.dat")
            paths[-1].write_text(decks.random_deck(seed), encoding="ascii")
        for path in paths:
            export = Export(arguments.program, path, work)
            failures.expect(export.status == 0, path.name, export.status, export.run.stderr)
            if export.status == 0:
                solved += 1
                Checker(export, failures, path.name).all()
    failures.expect(solved > 0, "nothing was solved")
    return failures.finish(f"{solved} decks")


if __name__ == "__main__":
    sys.exit(main())
