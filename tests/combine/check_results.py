#!/usr/bin/env python3
"""Results of kestol-combine: against one run of the solver on the summed deck; models that cannot
be combined; the example of the documents.

    check_results.py kestol-combine kestol-export kestol examples
"""

from __future__ import annotations

import json
import math
import os
import shutil
import sys
import unittest
import xml.etree.ElementTree
from pathlib import Path

from combine_documents import COMBINE, COMBINED, EXAMPLES, EXPORT, KESTOL, Documents
from combine_run import Folder, frame, run
import decks


class Results(Documents):
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

    def test_case_that_moves_nothing(self) -> None:
        self.folder.write("wind.dat", "# calm\n")
        for solver in ("skyline", "sparse", "deck"):
            case = self.document("c.toml", "--solver", solver)["cases"][2]
            self.assertEqual(case["name"], "W")
            self.assertTrue(all(node["u"] == [0, 0, 0] for node in case["result"]["nodes"]))

    def test_mechanism(self) -> None:
        self.folder.write("portal.dat", decks.large_mechanism())
        self.folder.write("c.toml", 'model = "portal.dat"\n[cases.G]\nloads = "model"\n'
                          "[combinations]\nU = { G = 1.35 }\n")
        before = self.folder.names()
        for solver in ("skyline", "sparse", "deck"):
            end = self.folder.combine("c.toml", "--json", "out.json", "--solver", solver)
            self.assertEqual((end.status, end.out), (1, ""), solver)
            self.assertTrue(end.err.startswith("portal.dat: error: the model is a mechanism in 1 way "
                                               "[mechanism]\n  mode 1: "), (solver, end.err))
            self.assertEqual(self.folder.names(), before)

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
