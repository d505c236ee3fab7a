#!/usr/bin/env python3
"""What kestol-combine writes: against one run of the solver on the summed deck, against extremes
found one by one, against the schema; every option.

    check_results.py kestol-combine kestol-export kestol examples
"""

from __future__ import annotations

import csv
import json
import math
import os
import shutil
import sys
import tempfile
import unittest
import xml.etree.ElementTree
from pathlib import Path
from typing import Any, Iterator

import jsonschema

from combine_run import CASES, Folder, frame, run

COMBINE, EXPORT, KESTOL, EXAMPLES = sys.argv[1:5] if len(sys.argv) >= 5 else ("", "", "", "")
del sys.argv[1:5]

HERE = Path(__file__).parent
COMBINED = CASES + """[combinations]
ULS1 = { G = 1.35, Q1 = 1.5, W = 0.9 }
lift = { G = 1, W = -1.5 }
"""
GENERATED = COMBINED + '[eurocode]\nrules = ["6.10", "quasi-permanent"]\n'
SOLID = (HERE.parents[1] / "examples" / "18-block-under-own-weight.dat")


def leaves(tree: Any, path: tuple = ()) -> Iterator[tuple[tuple, float]]:
    """All numbers of a result with their places."""
    if isinstance(tree, dict):
        for key, value in tree.items():
            if key not in ("printed", "inSupportAxes", "equilibrium"):
                yield from leaves(value, path + (key,))
    elif isinstance(tree, list):
        for place, value in enumerate(tree):
            yield from leaves(value, path + (place,))
    elif isinstance(tree, (int, float)):
        yield path, float(tree)


def at(tree: Any, path: tuple) -> Any:
    for key in path:
        tree = tree[key]
    return tree


def kind(path: tuple) -> tuple:
    """Values of one kind are judged together."""
    return tuple(key for key in path if isinstance(key, str))


class Results(unittest.TestCase):
    def setUp(self) -> None:
        self.home = tempfile.TemporaryDirectory()
        self.addCleanup(self.home.cleanup)
        self.folder = Folder(Path(self.home.name), COMBINE)
        self.folder.write("c.toml", COMBINED)

    def document(self, *arguments: str) -> dict:
        end = self.folder.combine(*arguments, "--json", "out.json")
        self.assertEqual((end.status, end.err), (0, ""))
        return json.loads(self.folder.read("out.json"))

    def assert_same(self, found: Any, wanted: Any, tolerance: float = 1e-10) -> None:
        values = dict(leaves(wanted))
        scales: dict[tuple, float] = {}
        for path, value in values.items():
            scales[kind(path)] = max(scales.get(kind(path), 0.0), abs(value))
        got = dict(leaves(found))
        self.assertEqual(got.keys(), values.keys())
        for path, value in values.items():
            self.assertLessEqual(abs(got[path] - value), tolerance * scales[kind(path)], path)

    # --- combinations ---------------------------------------------------------------------------

    def summed(self, G: float, Q1: float, W: float) -> str:
        deck = frame(78.5 * G, -10.0 * G - 15.0 * Q1, 0.0).replace("4 111 0.0", f"4 111 {0.01 * W!r}")
        return deck + f"nodal_point_loads\n 2 {12 * W!r} 0 0\nend\n"

    def test_combination_is_one_run_of_the_summed_deck(self) -> None:
        combinations = self.document("c.toml")["combinations"]
        self.assertEqual([c["name"] for c in combinations], ["ULS1", "lift"])
        self.assertEqual(combinations[0]["factors"], {"G": 1.35, "Q1": 1.5, "W": 0.9})
        self.assertEqual(combinations[0]["formula"], "1.35 G + 1.5 Q1 + 0.9 W")
        self.assertEqual(combinations[1]["factors"], {"G": 1.0, "W": -1.5})
        for combination, factors in zip(combinations, [(1.35, 1.5, 0.9), (1.0, 0.0, -1.5)]):
            self.folder.write("summed.dat", self.summed(*factors))
            end = run(self.folder.path, EXPORT, "summed.dat", "--json", "summed.json")
            self.assertEqual(end.status, 0, end.err)
            wanted = json.loads(self.folder.read("summed.json"))
            for key in ("schema", "deck", "units", "version"):
                wanted.pop(key, None)
            self.assert_same(combination["result"], wanted)

    def test_displacements_are_those_of_the_solvers_report(self) -> None:
        result = self.document("c.toml")["combinations"][0]["result"]
        self.folder.write("summed.dat", self.summed(1.35, 1.5, 0.9))
        self.assertEqual(run(self.folder.path, KESTOL, "summed.dat", "report.txt").status, 0)
        lines = self.folder.read("report.txt").splitlines()
        first = next(i for i, line in enumerate(lines) if "NODAL DISPLACEMENTS" in line) + 1
        for node, line in zip(result["nodes"], lines[first:first + 4]):
            words = line.split()
            self.assertEqual(int(words[0]), node["number"])
            values = node["u"][:2] + node["rotation"][2:]
            for word, value in zip(words[1:], values):
                self.assertTrue(math.isclose(float(word), value, rel_tol=6e-6, abs_tol=1e-15))

    def test_cases_are_solutions_of_their_own(self) -> None:
        cases = self.document("c.toml")["cases"]
        self.assertEqual([(c["name"], c["category"]) for c in cases],
                         [("G", "permanent"), ("Q1", "live-B"), ("W", "wind")])
        self.folder.write("summed.dat", self.summed(1.0, 0.0, 0.0))
        run(self.folder.path, EXPORT, "summed.dat", "--json", "summed.json")
        wanted = json.loads(self.folder.read("summed.json"))
        for key in ("schema", "deck", "units", "version"):
            wanted.pop(key, None)
        self.assert_same(cases[0]["result"], wanted)

    def test_solvers_agree(self) -> None:
        wanted = self.document("c.toml")
        for solver in ("skyline", "deck", "direct"):
            end = self.folder.combine("c.toml", "--solver", solver, "--json", "other.json")
            if solver == "direct" and end.status == 2:
                self.assertIn("without the direct solver", end.err)
                continue
            self.assertEqual(end.status, 0, end.err)
            self.assert_same(json.loads(self.folder.read("other.json"))["combinations"],
                             wanted["combinations"])

    # --- envelopes ------------------------------------------------------------------------------

    def assert_envelopes(self, document: dict) -> None:
        """The envelopes are the extremes of the combinations of the same document."""
        combinations = {c["name"]: dict(leaves(c["result"])) for c in document["combinations"]}
        scales: dict[tuple, float] = {}
        for values in combinations.values():
            for path, value in values.items():
                scales[kind(path)] = max(scales.get(kind(path), 0.0), abs(value))
        checked = 0
        for path in next(iter(combinations.values())):
            extreme = at(document["envelopes"], path)
            if not isinstance(extreme, dict):
                continue
            tolerance = 1e-9 * scales[kind(path)]
            values = {name: combination[path] for name, combination in combinations.items()}
            for key, best in (("min", min(values.values())), ("max", max(values.values()))):
                self.assertLessEqual(abs(extreme[key] - best), tolerance, path)
                self.assertLessEqual(abs(values[extreme[key + "By"]] - best), tolerance, path)
                self.assert_concurrent(document, path, extreme[key + "By"], extreme[key + "With"])
            checked += 1
        self.assertGreater(checked, 50)

    def assert_concurrent(self, document: dict, path: tuple, name: str, others: dict) -> None:
        if path[0] != "beams" or path[-1] == "x" or path[-2] == "u":
            return
        station = at(next(c for c in document["combinations"] if c["name"] == name)["result"],
                     path[:-1])
        self.assertEqual(set(others), {"N", "Vy", "Vz", "T", "My", "Mz"} - {path[-1]})
        for key, value in others.items():
            self.assertTrue(math.isclose(value, station[key], rel_tol=1e-9, abs_tol=1e-6))

    def test_envelopes_are_the_extremes_of_the_combinations(self) -> None:
        self.folder.write("c.toml", GENERATED)
        document = self.document("c.toml")
        self.assertEqual(len(document["combinations"]), 13)
        self.assert_envelopes(document)
        self.assertEqual(document["envelopes"].keys(),
                         document["cases"][0]["result"].keys() - {"equilibrium"})

    def test_envelopes_of_many_combinations(self) -> None:
        text = GENERATED.split("[combinations]")[0]
        for k, category in enumerate(["snow", "temperature", "live-E", "live-H", "wind"]):
            text += f'[cases.X{k}]\ncategory = "{category}"\nloads = "x{k}.dat"\n'
            self.folder.write(f"x{k}.dat", f"nodal_point_loads\n {1 + k % 4} {k - 2} {3 - k} {k}\n"
                              f"{2 + k % 2} 1 {k * k} 0\nend\n")
        text += ('[eurocode]\nrules = ["6.10", "6.10ab"]\nexclusive = [["W", "X4"]]\n')
        self.folder.write("c.toml", text)
        document = self.document("c.toml")
        self.assertGreater(len(document["combinations"]), 300)
        self.assert_envelopes(document)

    def test_envelopes_of_solids_have_von_mises_of_each_combination(self) -> None:
        shutil.copy(SOLID, self.folder.path / "block.dat")
        self.folder.write("side.dat", "nodal_point_loads\n 1 3 1 0\n 2 5 0 1\nend\n")
        self.folder.write("c.toml", 'model = "block.dat"\n[cases.G]\nloads = "model"\n'
                          '[cases.F]\nloads = "side.dat"\n[combinations]\nA = { G = 1 }\n'
                          "B = { G = 1, F = 1000 }\nC = { G = 1, F = -1000 }\n")
        document = self.document("c.toml")
        self.assertEqual(document["cases"][0]["category"], "")
        self.assertTrue(document["envelopes"]["nodalStresses"])
        self.assert_envelopes(document)

    # --- formats --------------------------------------------------------------------------------

    def test_schema(self) -> None:
        schema = json.loads((HERE / "combine.schema.json").read_text(encoding="utf-8"))
        jsonschema.Draft7Validator.check_schema(schema)
        self.folder.write("c.toml", GENERATED)
        document = self.document("c.toml")
        jsonschema.validate(document, schema)
        self.assertEqual(document["units"], {"force": "kN", "length": "m", "pressure": "kPa"})
        self.assertEqual(document["deck"], "portal.dat")

    def test_parts_are_written_as_asked_for(self) -> None:
        for parts in (["cases"], ["combinations"], ["envelopes"], ["cases", "envelopes"]):
            document = self.document("c.toml", *("--" + part for part in parts))
            self.assertEqual(document.keys() - {"schema", "deck", "units"}, set(parts))

    def table(self, name: str) -> list[dict[str, str]]:
        with open(self.folder.path / name, encoding="utf-8", newline="") as file:
            return list(csv.DictReader(file))

    def test_tables(self) -> None:
        end = self.folder.combine("c.toml", "--csv", "t", "--json", "out.json")
        self.assertEqual((end.status, end.out, end.err), (0, "", ""))
        document = json.loads(self.folder.read("out.json"))
        rows = self.table("t_stations.csv")
        self.assertEqual(len(rows), 5 * 3 * 21)
        self.assertEqual([rows[k * 63]["result"] for k in range(5)],
                         ["G", "Q1", "W", "ULS1", "lift"])
        station = document["combinations"][0]["result"]["beams"][1]["stations"][10]
        row = next(r for r in rows if r["result"] == "ULS1" and r["element"] == "2"
                   and float(r["x [m]"]) == 3.0)
        self.assertEqual(float(row["Mz [kN m]"]), station["Mz"])
        rows = self.table("t_envelope_stations.csv")
        self.assertEqual(len(rows), 3 * 21 * 6 * 2)
        row = next(r for r in rows if (r["element"], r["station"], r["value"], r["extreme"]) ==
                   ("2", "10", "Mz", "max"))
        extreme = document["envelopes"]["beams"][1]["stations"][10]["Mz"]
        self.assertEqual(float(row["Mz [kN m]"]), extreme["max"])
        self.assertEqual(row["combination"], extreme["maxBy"])
        self.assertEqual(float(row["N [kN]"]), extreme["maxWith"]["N"])
        self.assertEqual(float(row["x [m]"]), 3.0)
        reaction = self.table("t_envelope_reactions.csv")[0]
        self.assertEqual((reaction["node"], reaction["between"], reaction["value"]),
                         ("1", "0", "Fx"))
        self.assertEqual({name for name in self.folder.names() if "envelope" in name},
                         {f"t_envelope_{n}.csv"
                          for n in ("nodes", "stations", "deflections", "reactions")})

    def test_names_with_commas_are_quoted_in_tables(self) -> None:
        self.folder.write("c.toml", COMBINED.replace("ULS1", '"U, 1"'))
        self.folder.combine("c.toml", "--csv", "t")
        self.assertIn("U, 1", {row["result"] for row in self.table("t_nodes.csv")})

    def test_files_for_paraview(self) -> None:
        self.folder.write("c.toml", COMBINED.replace("lift", '"a/b"') + '"a b" = { G = 1 }\n')
        end = self.folder.combine("c.toml", "--vtu", "v")
        self.assertEqual((end.status, end.out, end.err), (0, "", ""))
        names = ["v_G.vtu", "v_Q1.vtu", "v_W.vtu", "v_ULS1.vtu", "v_a_b.vtu", "v_a_b_2.vtu"]
        collection = xml.etree.ElementTree.parse(self.folder.path / "v.pvd")
        entries = [(float(e.get("timestep", "")), e.get("file"))
                   for e in collection.iter("DataSet")]
        self.assertEqual(entries, list(zip(map(float, range(6)), names)))
        for name in names:
            head = (self.folder.path / name).read_bytes()[:200]
            self.assertIn(b"UnstructuredGrid", head)
        self.assertEqual({n for n in self.folder.names() if n.startswith("v")}, {*names, "v.pvd"})

    def test_list(self) -> None:
        self.folder.write("c.toml", GENERATED)
        end = self.folder.combine("--list", "c.toml")
        self.assertEqual((end.status, end.err), (0, ""))
        self.assertEqual(end.out, """\
combination     G    Q1     W  formula
ULS1         1.35   1.5   0.9  1.35 G + 1.5 Q1 + 0.9 W
lift            1     -  -1.5  G - 1.5 W
6.10-1       1.35     -     -  1.35 G
6.10-2          1     -     -  G
6.10-3       1.35   1.5     -  1.35 G + 1.5 Q1
6.10-4          1   1.5     -  G + 1.5 Q1
6.10-5       1.35   1.5   0.9  1.35 G + 1.5 Q1 + 1.5*0.6 W
6.10-6          1   1.5   0.9  G + 1.5 Q1 + 1.5*0.6 W
6.10-7       1.35     -   1.5  1.35 G + 1.5 W
6.10-8          1     -   1.5  G + 1.5 W
6.10-9       1.35  1.05   1.5  1.35 G + 1.5 W + 1.5*0.7 Q1
6.10-10         1  1.05   1.5  G + 1.5 W + 1.5*0.7 Q1
6.16b-1         1   0.3     -  G + 0.3 Q1
""")
        self.assertEqual(self.folder.combine("--list", "c.toml", "-o", "list.txt").out, "")
        self.assertEqual(self.folder.read("list.txt"), end.out)

    def test_overrides_and_exclusive_groups_of_the_file(self) -> None:
        self.folder.write("c.toml", CASES.replace('"live-B"', '"wind"') + """[eurocode]
rules = ["6.10ab"]
exclusive = [["W", "Q1"]]
psi = { wind = [0.5, 0.2, 0] }
gamma = { G = [1.2, 0.9], Q = 1.4 }
xi = 0.9
""")
        lines = self.folder.combine("--list", "c.toml").out.splitlines()
        formulas = [line.split("  ")[-1] for line in lines[1:]]
        self.assertEqual(formulas, [
            "1.2 G", "0.9 G", "1.2 G + 1.4*0.5 Q1", "0.9 G + 1.4*0.5 Q1", "1.2 G + 1.4*0.5 W",
            "0.9 G + 1.4*0.5 W", "0.9*1.2 G", "0.9*1.2 G + 1.4 Q1", "0.9 G + 1.4 Q1",
            "0.9*1.2 G + 1.4 W", "0.9 G + 1.4 W"])

    def test_separate_permanent_case(self) -> None:
        self.folder.write("c.toml", CASES.replace('"live-B"', '"permanent"\nseparate = true') +
                          '[eurocode]\nrules = ["6.10"]\n')
        out = self.folder.combine("--list", "c.toml").out
        self.assertIn("G + 1.35 Q1\n", out)
        self.assertIn("1.35 G + Q1\n", out)

    def test_text(self) -> None:
        end = self.folder.combine("c.toml")
        self.assertEqual((end.status, end.err), (0, ""))
        blocks = end.out.split("\n\n")
        document = self.document("c.toml")
        extreme = document["envelopes"]["beams"][1]["stations"][10]["Mz"]
        block = next(b for b in blocks if b.startswith("ENVELOPE beam 2, station 10/20 "))
        lines = block.splitlines()
        self.assertEqual(lines[0].split()[-4:], ["min", "by", "max", "by"])
        place = next(i for i, line in enumerate(lines) if line.startswith("Mz [kN m]"))
        words = lines[place].split()
        self.assertAlmostEqual(float(words[-2]), extreme["max"], delta=1e-4 * extreme["max"])
        self.assertEqual(words[-1], extreme["maxBy"])
        self.assertTrue(lines[place + 1].startswith("  with N, Vy "))
        self.assertTrue(any(b.startswith("ENVELOPE reaction at node 4 ") for b in blocks))
        self.assertTrue(any(b.startswith("ENVELOPE node ") for b in blocks))
        self.assertEqual(self.folder.combine("c.toml", "-o", "text").out, "")
        self.assertEqual(self.folder.read("text"), end.out)
        self.assertEqual(self.folder.combine("c.toml", "-o", "-").out, end.out)

    def test_standard_output_takes_the_document(self) -> None:
        end = self.folder.combine("c.toml", "--json", "-")
        self.assertEqual((end.status, end.err), (0, ""))
        self.assertEqual(json.loads(end.out)["schema"], "kestol-combine/1")

    def test_help_and_version(self) -> None:
        end = self.folder.combine("--help")
        self.assertEqual((end.status, end.err), (0, ""))
        for option in ("--csv", "--json", "--vtu", "--list", "--cases", "--combinations",
                       "--envelopes", "--solver", "-o", "-q", "-v", "--version"):
            self.assertIn(option, end.out)
        self.assertIn("COMBINATIONS.toml REQUIRED  the model, its cases and combinations\n", end.out)
        self.assertRegex(end.out, "--version +the version\n")
        end = self.folder.combine("--version")
        self.assertEqual((end.status, end.err), (0, ""))
        self.assertRegex(end.out, r"^kestol-combine \d+\.\d+\.\d+\n$")

    def test_verbose_and_quiet(self) -> None:
        self.assertIn("STIFFNESS", self.folder.combine("c.toml", "-v").err +
                      self.folder.combine("c.toml", "-v", "--solver", "skyline").err)
        self.assertEqual(self.folder.combine("c.toml", "-q").err, "")

    # --- models that cannot be combined ---------------------------------------------------------

    def test_beam_loaded_and_hinged_at_its_first_node(self) -> None:
        deck = frame().replace("constraints\n  1", "rotules\n  2\nend\nconstraints\n  1", 1)
        self.folder.write("portal.dat", deck)
        before = self.folder.names()
        end = self.folder.combine("c.toml", "--json", "out.json")
        self.assertEqual((end.status, end.out), (1, ""))
        line = deck.splitlines().index("    2 2 3 1") + 1
        self.assertEqual(end.err, f'portal.dat:{line}:5: error: element 2 is loaded and hinged at its '
                                  f'first node 2: write "3 2" [hinge-first]\n{line:5} |     2 2 3 1\n'
                                  "      |     ^\n")
        self.assertEqual(self.folder.names(), before)
        self.folder.write("portal.dat", deck.replace("    2 2 3 1", "    2 3 2 1"))
        self.assertEqual(self.folder.combine("c.toml", "--json", "out.json").status, 0)

    def test_input_in_a_folder_that_cannot_be_written(self) -> None:
        inputs = self.folder.path / "inputs"
        Folder(inputs, COMBINE).write("c.toml", COMBINED)
        before = {entry.name for entry in inputs.iterdir()}
        inputs.chmod(0o555)
        self.addCleanup(inputs.chmod, 0o755)
        end = run(self.folder.path, COMBINE, str(inputs / "c.toml"), "--json", "out.json")
        self.assertEqual((end.status, end.err), (0, ""))
        self.assertEqual({entry.name for entry in inputs.iterdir()}, before)

    def test_example(self) -> None:
        shutil.copytree(Path(EXAMPLES) / "combinations", self.folder.path / "frame")
        os.rename(self.folder.path / "frame", self.folder.path / "example")
        document = self.document("example/frame.toml")
        self.assertEqual(len(document["cases"]), 5)
        for combination in document["combinations"]:
            self.assertFalse({"WL", "WR"} <= combination["factors"].keys())
            self.assertLess(combination["result"]["equilibrium"]["relativeError"], 1e-10)
        self.assert_envelopes(document)

    def test_picture_of_the_example(self) -> None:
        docs = Path(EXAMPLES).parent / "docs" / "combinations"
        example = str(Path(EXAMPLES) / "combinations" / "frame.toml")
        self.document(example, "--envelopes")
        end = run(self.folder.path, sys.executable, str(docs / "draw_envelope.py"), "out.json",
                  "frame.svg")
        self.assertEqual((end.status, end.err), (0, ""))
        drawn, wanted = (xml.etree.ElementTree.fromstring(text) for text in (
            self.folder.read("frame.svg"),
            (docs / "frame-envelope.svg").read_text(encoding="utf-8")))
        points = [[float(number) for shape in picture.iter() if "points" in shape.attrib
                   for number in shape.attrib["points"].replace(",", " ").split()]
                  for picture in (drawn, wanted)]
        self.assertEqual(len(points[0]), len(points[1]))
        for a, b in zip(*points):
            self.assertAlmostEqual(a, b, delta=0.11)


if __name__ == "__main__":
    unittest.main()
