#!/usr/bin/env python3
"""Envelopes of kestol-combine: every extreme, the combination that gives it and what stands beside
it, against the combinations of the same document one by one; tables and grids hold the same.

    check_envelopes.py kestol-combine kestol-export kestol examples
"""

from __future__ import annotations

import csv
import re
import shutil
import unittest
from pathlib import Path

from vtkmodules.util.numpy_support import vtk_to_numpy
from vtkmodules.vtkIOXML import vtkXMLUnstructuredGridReader

from combine_documents import EXAMPLES, GENERATED, Documents
from combine_places import BY_HAND, FORCES, SHEETS, members, places


class Extremes(Documents):
    def assert_envelopes(self, document: dict) -> None:
        for part, envelope in document["envelopes"].items():
            results = {c["name"]: [place for _, place in places(c["result"][part])]
                       for c in document["combinations"]}
            found = list(places(envelope))
            for tree in results.values():
                self.assertEqual(len(tree), len(found), part)
            scales = self.scales(results)
            for k, (path, place) in enumerate(found):
                beside = {name: list(members(tree[k])) for name, tree in results.items()}
                for g, values in enumerate(members(place)):
                    self.assert_group((part, *path), values,
                                      {name: groups[g] for name, groups in beside.items()}, scales)

    @staticmethod
    def scales(results: dict) -> dict[str, float]:
        """The largest value of each name: zero is what is small beside it."""
        scales: dict[str, float] = {}
        for tree in results.values():
            for place in tree:
                for values in members(place):
                    for name, value in values.items():
                        scales[name] = max(scales.get(name, 1e-300), abs(value))
        # A value that all places lack is rounding beside its like.
        return {name: max(size, 1e-6 * max(scales[other] for other in scales
                                           if other[0] == name[0]))
                for name, size in scales.items()}

    def assert_group(self, where: tuple, extremes: dict, combinations: dict, scales: dict) -> None:
        for name, extreme in extremes.items():
            values = {by: group[name] for by, group in combinations.items()}
            for key, best in (("min", min(values.values())), ("max", max(values.values()))):
                tolerance = 1e-9 * scales[name]
                by, others = extreme[key + "By"], extreme[key + "With"]
                self.assertLessEqual(abs(extreme[key] - best), tolerance, (where, name))
                self.assertLessEqual(abs(values[by] - best), tolerance, (where, name, by))
                self.assertEqual(set(others), set(extremes) - {name}, where)
                for other, value in others.items():
                    self.assertLessEqual(abs(value - combinations[by][other]), 1e-9 * scales[other],
                                         (where, name, by, other))

    # --- extremes -------------------------------------------------------------------------------

    def test_frame(self) -> None:
        self.folder.write("c.toml", GENERATED)
        document = self.document("c.toml")
        self.assertEqual(len(document["combinations"]), 13)
        self.assert_envelopes(document)
        self.assertEqual(document["envelopes"].keys(),
                         document["cases"][0]["result"].keys() - {"equilibrium"})

    def test_many_combinations(self) -> None:
        text = GENERATED.split("[combinations]")[0]
        for k, category in enumerate(["snow", "temperature", "live-E", "live-H", "wind"]):
            text += f'[cases.X{k}]\ncategory = "{category}"\nloads = "x{k}.dat"\n'
            self.folder.write(f"x{k}.dat", f"nodal_point_loads\n {1 + k % 4} {k - 2} {3 - k} {k}\n"
                              f"{2 + k % 2} 1 {k * k} 0\nend\n")
        text += '[eurocode]\nrules = ["6.10", "6.10ab"]\nexclusive = [["W", "X4"]]\n'
        self.folder.write("c.toml", text)
        document = self.document("c.toml")
        self.assertGreater(len(document["combinations"]), 300)
        self.assert_envelopes(document)

    def by_hand(self, deck: str, loads: str) -> dict:
        self.folder.write("side.dat", loads)
        self.folder.write("c.toml", f'model = "{deck}"\n[cases.G]\nloads = "model"\n'
                          f'[cases.F]\nloads = "side.dat"\n{BY_HAND}')
        document = self.document("c.toml", "--csv", "t", "--vtu", "v")
        self.assertEqual(document["cases"][0]["category"], "")
        self.assert_envelopes(document)
        self.assert_grids(document)
        return document

    def test_shells(self) -> None:
        for keys in ("", "ConvertTo6Nodes\nCoplanarityAngle 0.2", "MainStresses", "DoSmoothing 0.3"):
            with self.subTest(keys=keys):
                self.folder.write("sheet.dat", SHEETS.format(keys=keys))
                document = self.by_hand("sheet.dat", "nodal_point_loads\n 2 1 0 -3 0 0.5 0\n"
                                        " 3 0 2 1 0 0 0\nend\n")
                self.assertEqual(len(document["envelopes"]["shells"]), 2)

    def test_solids_have_von_mises_of_each_combination(self) -> None:
        for example in ("18-block-under-own-weight.dat", "17-bar-in-tension.dat"):
            shutil.copy(Path(EXAMPLES) / example, self.folder.path / "block.dat")
            document = self.by_hand("block.dat",
                                    "nodal_point_loads\n 1 3 1 0\n 2 5 0 1\nend\n")
            self.assertTrue(document["envelopes"]["nodalStresses"])

    def test_example(self) -> None:
        self.assert_envelopes(self.document(str(Path(EXAMPLES) / "combinations" / "frame.toml")))

    # --- the same in other formats --------------------------------------------------------------

    def test_tables_hold_the_extremes_of_the_document(self) -> None:
        self.folder.write("c.toml", GENERATED)
        document = self.document("c.toml", "--csv", "t")
        with open(self.folder.path / "t_envelope_stations.csv", encoding="utf-8") as file:
            rows = [{name.split(" [")[0]: field for name, field in row.items()}
                    for row in csv.DictReader(file)]
        wanted = [(beam["element"], k, station["x"], name, kind, station[name])
                  for beam in document["envelopes"]["beams"]
                  for k, station in enumerate(beam["stations"])
                  for name in FORCES for kind in ("min", "max")]
        self.assertEqual(len(rows), len(wanted))
        for row, (element, station, x, name, kind, extreme) in zip(rows, wanted):
            self.assertEqual((int(row["element"]), int(row["station"]), float(row["x"]),
                              row["value"], row["extreme"], row["combination"]),
                             (element, station, x, name, kind, extreme[kind + "By"]))
            values = {other: float(row[other]) for other in FORCES}
            self.assertEqual(values, {name: extreme[kind], **extreme[kind + "With"]})

    def grid(self, name: str) -> dict:
        reader = vtkXMLUnstructuredGridReader()
        reader.SetFileName(str(self.folder.path / name))
        reader.Update()
        self.assertEqual(reader.GetErrorCode(), 0)
        data = reader.GetOutput()
        return {part.GetArrayName(i).split(" [")[0]: vtk_to_numpy(part.GetArray(i)).tolist()
                for part in (data.GetCellData(), data.GetPointData())
                for i in range(part.GetNumberOfArrays())}

    def assert_grids(self, document: dict) -> None:
        """Each file of the collection is the result of its name, to the bit."""
        files = re.findall(r'timestep="(\d+)" part="0" file="([^"]*)"', self.folder.read("v.pvd"))
        results = document["cases"] + document["combinations"]
        self.assertEqual(files, [(str(k), f"v_{r['name']}.vtu") for k, r in enumerate(results)])
        for (_, name), result in zip(files, results):
            grid, nodes = self.grid(name), result["result"]["nodes"]
            self.assertEqual(grid["U"][:len(nodes)], [node["u"] for node in nodes])
            for reaction in result["result"]["reactions"]:
                if reaction["node"]:
                    self.assertEqual(grid["RF"][reaction["node"] - 1], reaction["force"])
            stresses = result["result"]["nodalStresses"]
            if stresses:
                self.assertEqual(grid["stress"], [node["stress"] for node in stresses])
                self.assertEqual(grid["von Mises"], [node["vonMises"] for node in stresses])
            for k, shell in enumerate(result["result"]["shells"]):
                for member in ("n", "m", "q"):
                    for found, *values in zip(grid[member][k],
                                              *(point[member] for point in shell["points"])):
                        size = max(map(abs, values))
                        self.assertLessEqual(abs(found - sum(values) / len(values)), 1e-14 * size)

    def test_grids_of_a_frame(self) -> None:
        self.folder.write("c.toml", GENERATED)
        document = self.document("c.toml", "--vtu", "v")
        self.assert_grids(document)
        for name in ("G", "lift", "6.16b-1"):
            result = next(r for r in document["cases"] + document["combinations"]
                          if r["name"] == name)["result"]
            grid, first = self.grid(f"v_{name}.vtu"), len(result["nodes"])
            for value in FORCES:
                self.assertEqual(grid[value][first:],
                                 [s[value] for beam in result["beams"] for s in beam["stations"]])


if __name__ == "__main__":
    unittest.main()
