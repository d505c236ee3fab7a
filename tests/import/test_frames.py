"""Frames of lines by Gmsh against closed forms."""
import math
import re
import unittest

from recipes import PORTAL_RECIPE
from support import Case

PORTAL = """
Point(1) = {0, 0, 0}; Point(2) = {0, 4, 0}; Point(3) = {6, 4, 0}; Point(4) = {6, 0, 0};
Line(1) = {1, 2}; Line(2) = {2, 3}; Line(3) = {3, 4};
Transfinite Curve {1, 2, 3} = 5;
Physical Curve("columns") = {1, 3}; Physical Curve("beam") = {2};
Physical Point("feet") = {1, 4}; Physical Point("corner") = {2};
"""
# A cantilever along (1, 1, 0) whose section stands on its edge.
SKEW = """
Point(1) = {0, 0, 0}; Point(2) = {3, 3, 0};
Line(1) = {1, 2}; Transfinite Curve {1} = 4;
Physical Curve("bar") = {1}; Physical Point("root") = {1}; Physical Point("tip") = {2};
"""
SKEW_RECIPE = """
[material.steel]
E = 2e11
G = 8e10
A = 1e-2
Iy = 8e-6
Iz = 2e-6
J = 1e-5
[beam.bar]
groups = ["bar"]
material = "steel"
up = [0, 0, 1]
[support.root]
groups = ["root"]
codes = "111111"
[load.tip]
groups = ["tip"]
force = [0, 0, -1000]
"""
BRACKET = """
Point(1) = {0, 0, 0}; Point(2) = {3, 0, 0}; Point(3) = {3, 2, 0};
Line(1) = {1, 2}; Line(2) = {2, 3};
Physical Curve("arms") = {1, 2}; Physical Point("root") = {1}; Physical Point("tip") = {3};
"""


class Frames(Case):
    def test_a_portal_pushed_at_its_corner(self):
        """Base moment H h/2 (3k+1)/(6k+1) with k = h/l and equal sections."""
        for order in "12":
            with self.subTest(order=order):
                self.mesh("portal.msh", PORTAL, "-1", "-order", order)
                self.write("portal.toml", PORTAL_RECIPE)
                self.made("--force", "portal.msh", "portal.toml", "-o", "model.dat")
                results = self.solve()
                foot = results.reactions[results.deck.node_at(0, 0)]
                k = 4 / 6
                self.near(foot[2], 10000 * 4 / 2 * (3 * k + 1) / (6 * k + 1), 1e-4)
                self.near(foot[1], -10000 * 4 * 3 * k / (6 * k + 1) / 6, 1e-4)
                self.assertEqual(len(results.deck.elements), 12 if order == "1" else 24)

    def test_loads_along_lines_are_forces_per_length(self):
        self.mesh("portal.msh", PORTAL, "-1")
        for load, force in (("pressure = [0, -500]", "(0, -3000, 0)"),
                            ("normal = -500", "(0, -3000, 0)"),
                            ('pressure = [0, "-1000*x/6"]', "(0, -3000, 0)"),
                            ("force = [0, -3000, 0]", "(0, -3000, 0)")):
            with self.subTest(load=load):
                recipe = PORTAL_RECIPE.replace("force = [10000, 0]", load)
                self.write("portal.toml", recipe.replace('["corner"]', '["beam"]'))
                report = self.made("--force", "portal.msh", "portal.toml", "-o", "model.dat")
                self.assertIn(f"force {force}, moment about the origin", report)
                held = self.solve().held()
                self.near(held[1], 3000, 1e-4)

    def test_a_section_stands_as_up_says(self):
        """The same bar with z up, with z on its side, and with z up as a vertical bar."""
        self.mesh("skew.msh", SKEW, "-1")
        length = 3 * math.sqrt(2)
        for up, inertia in (("[0, 0, 1]", 8e-6), ("[1, -1, 0]", 2e-6), ("[0, 0, -2]", 8e-6)):
            with self.subTest(up=up):
                self.write("skew.toml", SKEW_RECIPE.replace("[0, 0, 1]", up))
                self.made("--force", "skew.msh", "skew.toml", "-o", "model.dat")
                self.near(self.solve().at(3, 3, 0)[2], -1000 * length ** 3 / 3 / 2e11 / inertia,
                          1e-5)

    def test_a_vertical_bar_has_its_section_turned_too(self):
        self.mesh("skew.msh", SKEW.replace("{3, 3, 0}", "{0, 0, 4}"), "-1")
        for up, inertia in (("[1, 0, 0]", 8e-6), ("[0, 1, 0]", 2e-6), ("[-1, 0, 0]", 8e-6),
                            ("[1, 1, 0]", 0)):
            with self.subTest(up=up):
                recipe = SKEW_RECIPE.replace("[0, 0, 1]", up).replace("[0, 0, -1000]", "[1000, 0, 0]")
                self.write("skew.toml", recipe)
                self.made("--force", "skew.msh", "skew.toml", "-o", "model.dat")
                u = self.solve().at(0, 0, 4)
                if inertia:
                    self.near(u[0], 1000 * 4 ** 3 / 3 / 2e11 / inertia, 1e-5)
                else:  # unsymmetric bending: it leaves the plane of the load
                    half = 500 * 4 ** 3 / 3 / 2e11
                    self.near(u[0], half * (1 / 8e-6 + 1 / 2e-6), 1e-5)
                    self.near(u[1], half * (1 / 8e-6 - 1 / 2e-6), 1e-5)

    def test_normal_loads_of_beams_act_along_up(self):
        self.mesh("skew.msh", SKEW, "-1")
        recipe = SKEW_RECIPE.replace('groups = ["tip"]', 'groups = ["bar"]')
        for up, force in (("[0, 0, 1]", "(0, 0, 4.24264)"), ("[1, -1, 0]", "(3, -3, 0)")):
            with self.subTest(up=up):
                self.write("skew.toml", recipe.replace("[0, 0, 1]", up).replace(
                    "force = [0, 0, -1000]", "normal = 1"))
                report = self.made("--force", "skew.msh", "skew.toml", "-o", "model.dat")
                self.assertIn(f"force {force}, moment", report)
                results = self.solve()
                held = results.held()
                for value, said in zip(held, re.findall(r"[-\d.]+", force)):
                    if float(said):
                        # the half of the first element stands on the support
                        self.near(value, -float(said) * 5 / 6, 1e-4)

    def test_loads_of_lines_with_mid_sides_act_on_both_their_beams(self):
        self.mesh("skew.msh", SKEW, "-1", "-order", "2")
        self.write("skew.toml", SKEW_RECIPE.replace('groups = ["tip"]', 'groups = ["bar"]').replace(
            "force = [0, 0, -1000]", "pressure = [0, 0, -2]"))
        report = self.made("skew.msh", "skew.toml", "-o", "model.dat")
        self.assertIn("model.dat: 7 nodes, 6 beams of 2 nodes", report)
        self.assertIn("force (0, 0, -8.48528), moment about the origin (-12.7279, 12.7279, 0)", report)
        results = self.solve()
        self.assertEqual(sorted(number for _, number, _ in results.deck.loads), [1, 2, 3, 4, 5, 6])
        length = 3 * math.sqrt(2)
        self.near(results.at(3, 3, 0)[2], -2 * length ** 4 / 8 / 2e11 / 8e-6, 1e-4)

    def test_normal_loads_of_beams_with_euler_angles(self):
        """The solver and the report agree about local z of a section turned by 0.5 rad."""
        self.mesh("bar.msh", SKEW.replace("{3, 3, 0}", "{-3, 0, 0}"), "-1")
        recipe = SKEW_RECIPE.replace('groups = ["tip"]', 'groups = ["bar"]').replace(
            "force = [0, 0, -1000]", "normal = 1").replace("up = [0, 0, 1]", "Euler1 = 0.5")
        self.write("bar.toml", recipe)
        report = self.made("bar.msh", "bar.toml", "-o", "model.dat")
        force = re.search(r"force \((.*), (.*), (.*)\), moment", report).groups()
        held = self.solve().held()
        for value, said in zip(held[1:], map(float, force[1:])):
            self.near(value, -said * 5 / 6, 1e-4)
        self.near(abs(float(force[2])), 3 * math.cos(0.5), 1e-5)

    def test_beams_across_their_euler_angles_are_refused_where_the_solver_refuses_them(self):
        self.mesh("bar.msh", SKEW.replace("{3, 3, 0}", "{3, 0, 0}"), "-1")
        for angle, across in ((math.pi / 2 - 9e-6, True), (math.pi / 2 - 1.1e-5, False),
                              (-math.pi / 2, True)):
            with self.subTest(angle=angle):
                self.write("bar.toml", SKEW_RECIPE.replace("up = [0, 0, 1]", f"Euler3 = {angle!r}"))
                done = self.run_import("--force", "bar.msh", "bar.toml", "-o", "model.dat")
                self.assertEqual(done.returncode, 2 if across else 0, done.stderr)
                if across:
                    self.assertRegex(done.stderr, "^bar.msh: error: line [0-9]+ runs across local x of "
                                     r"the Euler angles of its material \[beam\]\n$")
                else:
                    self.near(self.solve().at(3, 0, 0)[2], -1000 * 9 / 2e11 / 8e-6, 1e-4)

    def test_a_bracket_of_two_arms(self):
        """P (L1^3/3EI + L2^3/3EI + L1 L2^2/GJ); each direction has a material line of its own."""
        self.mesh("bracket.msh", BRACKET, "-1")
        recipe = SKEW_RECIPE.replace('"bar"', '"arms"').replace("Iz = 2e-6", "Iz = 8e-6")
        self.write("bracket.toml", recipe.replace("J = 1e-5", "J = 1.2e-5").replace("-1000", "-5000"))
        self.made("bracket.msh", "bracket.toml", "-o", "model.dat")
        results = self.solve()
        target = -5000 * ((27 + 8) / 3 / 2e11 / 8e-6 + 3 * 4 / 8e10 / 1.2e-5)
        self.near(results.at(3, 2, 0)[2], target, 1e-5)
        self.assertEqual(len(results.deck.materials), 2)

    def test_a_beam_may_give_its_section_itself(self):
        self.mesh("skew.msh", SKEW, "-1")
        recipe = SKEW_RECIPE.replace("A = 1e-2\nIy = 8e-6\nIz = 2e-6\nJ = 1e-5\n", "")
        self.write("skew.toml", recipe.replace("up =", "widthY = 0.1\nwidthZ = 0.2\nup ="))
        self.made("skew.msh", "skew.toml", "-o", "model.dat")
        inertia = 0.1 * 0.2 ** 3 / 12
        self.near(self.solve().at(3, 3, 0)[2],
                  -1000 * (3 * math.sqrt(2)) ** 3 / 3 / 2e11 / inertia, 1e-5)


if __name__ == "__main__":
    unittest.main()
