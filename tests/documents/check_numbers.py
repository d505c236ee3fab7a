#!/usr/bin/env python3
"""The numbers that docs/conventions.md and docs/input-format.md state are those of real runs:

    check_numbers.py SOURCE KESTOL
"""
import math
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

SOURCE, KESTOL = pathlib.Path(sys.argv.pop(1)), pathlib.Path(sys.argv.pop(1)).resolve()
EI = 2e6


def frame(nodes, beams, supports, loads="", rotules=""):
    """A plane frame of E I = 2e6: nodes and supports as lines of the deck, beams as pairs."""
    return "\n".join([
        "PROBLEM frame", "TYPE 2d", "Solver SkyLine", "mesh",
        "dimension = 2 elemtype Linear nnode = 2", "coordinates",
        *(f"{n} {x} {y}" for n, (x, y) in enumerate(nodes, 1)), "end coordinates", "elements",
        *(f"{n} {a} {b} 1" for n, (a, b) in enumerate(beams, 1)), "end elements",
        "materials", "1 E=2e11 A=1e2 Iz=1e-5", "end materials", "constraints", *supports, "end constraints",
        *(["rotules", rotules, "end rotules"] if rotules else []), loads, ""])


def line_load(elements, q):
    return "\n".join(["global_pressure_loads", *(f"{n} 0 {-q}" for n in elements),
                      "end global_pressure_loads"])


class Numbers(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def run_deck(self, deck, *options):
        (self.folder / "deck.dat").write_text(deck)
        return subprocess.run([KESTOL, *options, "deck.dat", "report.txt"], cwd=self.folder,
                              capture_output=True, text=True, check=False)

    def solve(self, deck):
        """{heading: {node or (element, end): values}} of the report."""
        done = self.run_deck(deck)
        self.assertEqual(done.returncode, 0, done.stdout)
        text = (self.folder / "report.txt").read_text()
        rows = {"DISPLACEMENTS": {}, "REACTIONS": {}}
        for heading, found in rows.items():
            for line in text.split(heading, 1)[1].split("\n\n", 1)[0].splitlines()[1:]:
                number, *values = line.split()
                found[int(number)] = [float(value) for value in values]
        rows["STRENGTH"] = {int(number): [[float(word) for word in line.split()] for line in (first, second)]
                            for number, first, second in
                            re.findall(r"^Element (\d+) .*\n(.*)\n(.*)$", text, re.M)}
        return rows

    def states(self, page, *words):
        text = " ".join((SOURCE / "docs" / page).read_text().split())
        for word in words:
            self.assertIn(word, text, page)

    def near(self, value, target, digits=3):
        self.assertAlmostEqual(value / target, 1, delta=0.5 * 10 ** (1 - digits))

    def test_a_clamped_end_under_a_load_prints_too_little(self):
        self.states("conventions.md", "true 40 kN and 80 kNm. As one element it prints 20 kN and 66.7 kNm")
        found = self.solve(frame([(0, 0), (4, 0)], [(1, 2)], ["1 111 0 0 0"], line_load([1], 10)))
        self.near(found["REACTIONS"][1][1], 20)
        self.near(found["REACTIONS"][1][2], 66.7)
        self.near(found["STRENGTH"][1][0][1], 40)
        self.near(found["STRENGTH"][1][0][2], 80)

    def test_more_elements_come_nearer(self):
        self.states("conventions.md", "as one element it prints 0, as two 60, as four 75, as eight 78.75")
        for count, moment in ((1, 0), (2, 60), (4, 75), (8, 78.75)):
            nodes = [(4 * i / count, 0) for i in range(count + 1)]
            found = self.solve(frame(nodes, [(i, i + 1) for i in range(1, count + 1)],
                                     ["1 111 0 0 0", f"{count + 1} 111 0 0 0"],
                                     line_load(range(1, count + 1), 60)))
            self.assertAlmostEqual(found["REACTIONS"][1][2], moment, delta=1e-3)

    def test_an_inclined_roller_prints_by_its_codes(self):
        self.states("conventions.md", "that is (-1000, 1732), prints 0 and 1732")

        def roller(code, angle):
            # The right end of a simple span whose middle is pressed down.
            push = 4000 * math.cos(angle)
            loads = f"nodal_point_loads\n2 0 {-push} 0\nend nodal_point_loads"
            return self.solve(frame([(0, 0), (3, 0), (6, 0)], [(1, 2), (2, 3)],
                                    ["1 110 0 0 0", f"3 {code} 0 0 0 Euler3={angle}"], loads))["REACTIONS"][3]
        held = roller("010", 0.5236)
        self.assertEqual(held[0], 0)
        self.near(held[1], 1732)
        both = roller("210", 0.5236)
        self.near(both[0], -1000)
        self.near(both[1], 1732)
        # Turned by 90 degrees it holds x, and nothing of that is printed.
        self.states("conventions.md", "turned by 90 degrees it holds x, and prints nothing of it")
        load = "nodal_point_loads\n2 2000 0 0\nend nodal_point_loads"
        turned = self.solve(frame([(0, 0), (3, 0), (6, 0)], [(1, 2), (2, 3)],
                                  ["1 010 0 0 0", "2 010 0 0 0", f"3 010 0 0 0 Euler3={math.pi / 2}"], load))
        self.assertLess(max(map(abs, turned["REACTIONS"][3])), 1e-3)

    def test_a_hinge_at_the_first_node_errs(self):
        self.states("conventions.md", "prints 4.5 Nm instead of 54 kNm",
                    "prints 54 kNm over the support instead of 72 kNm")
        # Beam 1 is short and comes first, so that beam 2 is hinged at the joint.
        nodes = [(-0.5, 0), (0, 0), (6, 0)]
        supports = ["1 111 0 0 0", "2 110 0 0 0", "3 111 0 0 0"]
        wrong = self.solve(frame(nodes, [(1, 2), (2, 3)], supports, line_load([2], 12e3), "2"))
        right = self.solve(frame(nodes, [(1, 2), (3, 2)], supports, line_load([2], 12e3), "2"))
        self.near(abs(wrong["STRENGTH"][2][1][2]), 4.5)
        self.near(abs(right["STRENGTH"][2][0][2]), 54e3)
        # A span with an arm that carries a beam of 6 m by a hinge.
        nodes = [(0, 0), (6, 0), (8, 0), (14, 0)]
        supports = ["1 110 0 0 0", "2 010 0 0 0", "4 010 0 0 0"]
        for last, moment in (((3, 4), 54e3), ((4, 3), 72e3)):
            found = self.solve(frame(nodes, [(1, 2), (2, 3), last], supports, line_load([3], 12e3), "3"))
            self.near(abs(found["STRENGTH"][1][1][2]), moment)

    def test_one_beam_of_a_joint_is_hinged_by_a_short_piece(self):
        self.states("conventions.md", "the rotation is 1.875e-4", "1.87499e-4", "gives 3.75e-4")
        load = "nodal_point_loads\n1 0 0 1000\nend nodal_point_loads"
        ends = [(3, 0), (-3, 0), (0, -3)]
        supports = ["2 111 0 0 0", "3 111 0 0 0", "4 111 0 0 0"]
        nodes = [(0, 0), *ends, (0.01, 0)]
        split = self.solve(frame(nodes, [(1, 5), (5, 2), (1, 3), (1, 4)], supports, load, "5"))
        self.near(split["DISPLACEMENTS"][1][2], 1.87499e-4, 6)
        joint = self.solve(frame(nodes[:4], [(1, 2), (1, 3), (1, 4)], supports, load, "1"))
        self.near(joint["DISPLACEMENTS"][1][2], 3.75e-4, 4)

    def test_a_mechanism_names_another_node_in_the_plane(self):
        self.states("input-format.md", "run with `-r0` and take node (N + 2)/3 without its fraction, "
                    "degree N - 3 (node - 1)")
        nodes = [(float(i), 0.0) for i in range(7)]
        deck = frame(nodes, [(i, i + 1) for i in range(1, 7)], ["1 010 0 0 0", "7 010 0 0 0"])
        done = self.run_deck(deck, "-r0")
        self.assertEqual(done.returncode, 2)
        equation, node, degree = map(int, re.search(
            r"system\((\d+)\).*node=(\d+)\. Degree of freedom (\d+) from 6", done.stdout).groups())
        self.assertEqual((node, degree), ((equation - 1) // 6 + 1, (equation - 1) % 6 + 1))
        # What is free is x, and the elimination ends at the far end.
        true_node = (equation + 2) // 3
        self.assertEqual((true_node, equation - 3 * (true_node - 1)), (7, 1))
        self.assertNotEqual((node, degree), (7, 1))

    def test_surplus_words_are_dropped_or_refused(self):
        self.states("input-format.md", "*two* surplus numbers pass unseen and one is refused")
        deck = frame([(0, 0), (3, 0)], [(1, 2)], ["1 111 0 0 0"],
                     "nodal_point_loads\n2 0 -1000 0\nend nodal_point_loads")
        for old, new, status in (("2 3 0\n", "2 3 0 7 words\n", 0), ("1 111 0 0 0\n", "1 111 0 0 0 7 8\n", 0),
                                 ("1 111 0 0 0\n", "1 111 0 0 0 7\n", 2),
                                 ("2 0 -1000 0\n", "2 0 -1000 0 7 8\n", 0),
                                 ("2 0 -1000 0\n", "2 0 -1000 0 7\n", 2), ("1 1 2 1\n", "1 1 2 1 7\n", 2),
                                 ("Iz=1e-5\n", "Iz=1e-5 7\n", 2), ("SkyLine\n", "SkyLine 7\n", 2)):
            with self.subTest(new):
                self.assertIn(old, deck)
                self.assertEqual(self.run_deck(deck.replace(old, new)).returncode, status)

    def test_the_deck_of_the_manual_page_is_one(self):
        page = (SOURCE / "docs" / "man" / "kestol.5").read_text()
        deck = page.split(".SH EXAMPLE", 1)[1].split(".nf\n", 1)[1].split(".fi", 1)[0]
        found = self.solve(deck.replace("\\-", "-"))
        self.near(found["DISPLACEMENTS"][2][1], -0.0045, 6)

    def plate(self, cells, corners_cut):
        """Deflection of a simply supported square plate in its middle, over the exact one."""
        def node(i, j):
            return j * (cells + 1) + i + 1
        lines = ["PROBLEM plate", "TYPE 3d", "Solver SkyLine", "ConvertTo6Nodes", "mesh",
                 "dimension = 3 elemtype Triangle nnode = 3", "coordinates"]
        lines += [f"{node(i, j)} {i / cells} {j / cells} 0"
                  for j in range(cells + 1) for i in range(cells + 1)]
        lines += ["end coordinates", "elements"]
        count = 0
        for j in range(cells):
            for i in range(cells):
                a, b, c, d = node(i, j), node(i + 1, j), node(i + 1, j + 1), node(i, j + 1)
                inwards = (2 * i < cells) == (2 * j < cells)
                rising = {0: inwards, 2: True, 4: not inwards}[corners_cut]
                triangles = ((a, b, c), (a, c, d)) if rising else ((a, b, d), (b, c, d))
                for triangle in triangles:
                    count += 1
                    lines.append(f"{count} {' '.join(map(str, triangle))} 1")
        lines += ["end elements", "materials",
                  "1 E=1 nu=0.3 G=0.384615384615385 t=0.01", "end materials", "constraints"]
        for j in range(cells + 1):
            for i in range(cells + 1):
                edge = i in (0, cells) or j in (0, cells)
                lines.append(f"{node(i, j)} {'111001' if edge else '110001'} 0 0 0 0 0 0")
        lines += ["end constraints", "global_pressure_loads", *(f"{n} 0 0 -1" for n in range(1, count + 1)),
                  "end global_pressure_loads", ""]
        found = self.solve("\n".join(lines))["DISPLACEMENTS"]
        # Navier's series with transverse shear.
        return -found[node(cells // 2, cells // 2)][2] / 44383.9

    def test_a_cut_corner_holds_the_plate(self):
        self.states("input-format.md", "deflects 0.94 of the exact value when no diagonal cuts a corner, "
                    "0.63 when two do and 0.44 when all four do (8 x 8 cells: 0.99, 0.89, 0.80)")
        for cells, values in ((4, (0.94, 0.63, 0.44)), (8, (0.99, 0.89, 0.80))):
            for cut, value in zip((0, 2, 4), values):
                with self.subTest(cells=cells, cut=cut):
                    self.assertAlmostEqual(self.plate(cells, cut), value, delta=0.01)


if __name__ == "__main__":
    unittest.main()
