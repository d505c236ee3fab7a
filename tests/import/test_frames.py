"""Frames of lines, by Gmsh and as drawings, against closed forms."""
import math
import re
import unittest

import ezdxf
from support import Case

PORTAL = """
Point(1) = {0, 0, 0}; Point(2) = {0, 4, 0}; Point(3) = {6, 4, 0}; Point(4) = {6, 0, 0};
Line(1) = {1, 2}; Line(2) = {2, 3}; Line(3) = {3, 4};
Transfinite Curve {1, 2, 3} = 5;
Physical Curve("columns") = {1, 3}; Physical Curve("beam") = {2};
Physical Point("feet") = {1, 4}; Physical Point("corner") = {2};
"""
PORTAL_RECIPE = """
[problem]
title = "portal"
type = "2d"
[material.steel]
groups = ["columns", "beam"]
E = 2e11
A = 1e3
Iz = 1e-4
[support.feet]
groups = ["feet"]
codes = "111"
[load.push]
groups = ["corner"]
force = [10000, 0]
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


class Drawings(Case):
    def drawing(self, draw):
        document = ezdxf.new()
        draw(document.modelspace())
        document.saveas(self.folder / "frame.dxf")

    def test_layers_of_a_drawing_are_groups(self):
        def draw(space):
            space.add_lwpolyline([(0, 0), (0, 2), (0, 4)], dxfattribs={"layer": "columns"})
            space.add_line((6, 0), (6, 4 + 1e-7), dxfattribs={"layer": "columns"})
            space.add_polyline3d([(0, 4, 0), (3, 4, 0), (6, 4, 0)], dxfattribs={"layer": "beam"})
            space.add_point((0, 0), dxfattribs={"layer": "feet"})
            space.add_point((6, 0), dxfattribs={"layer": "feet"})
            space.add_point((0, 4), dxfattribs={"layer": "corner"})
            space.add_circle((0, 0), 1)
        self.drawing(draw)
        self.write("portal.toml", PORTAL_RECIPE)
        done = self.run_import("-v", "frame.dxf", "portal.toml", "-o", "model.dat")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("that are no beams are left out: 1 CIRCLE", done.stderr)
        results = self.solve()
        k = 4 / 6
        self.near(results.reactions[results.deck.node_at(0, 0)][2],
                  10000 * 4 / 2 * (3 * k + 1) / (6 * k + 1), 1e-4)
        self.assertEqual(len(results.deck.nodes), 6)
        listing = self.made("--list", "frame.dxf")
        self.assertRegex(listing, r"columns +1 +3 +5 +length 8\n")
        self.assertRegex(listing, r"feet +0 +2 +2\n")

    def test_segments_and_points_are_numbered_in_their_order(self):
        def draw(space):
            space.add_line((0, 0), (4, 0), dxfattribs={"layer": "columns"})
            space.add_line((4, 0), (4, 3), dxfattribs={"layer": "beam"})
            space.add_point((0, 0), dxfattribs={"layer": "feet"})
            space.add_point((4, 3), dxfattribs={"layer": "corner"})
        self.drawing(draw)
        self.write("frame.toml", PORTAL_RECIPE)
        numbers = self.made("-q", "frame.dxf", "frame.toml", "-o", "model.dat", "--map", "-")
        self.assertEqual(numbers.split("\n"), [
            "kind,old,new", "node,1,1", "node,2,2", "node,3,2", "node,4,3", "node,5,1", "node,6,3",
            "element,1,1", "element,2,2", "cell,3,", "cell,4,", ""])

    def test_ends_meet_within_a_millionth_of_the_drawing(self):
        for size in (1000.0, 0.001):
            for gap, merged in ((0.9e-6, 1), (1.1e-6, 0)):
                def draw(space, gap=gap * size, size=size):
                    space.add_line((0, 0), (size, 0))
                    space.add_line((size, gap), (size, size))
                self.drawing(draw)
                done = self.run_import("-v", "--list", "frame.dxf")
                self.assertIn(f"note: {merged} node{'s' * (not merged)} merged within", done.stderr)

    def test_closed_polylines_close(self):
        self.drawing(lambda s: s.add_lwpolyline([(0, 0), (1, 0), (1, 1)], close=True))
        self.assertRegex(self.made("--list", "frame.dxf"), r"0 +1 +3 +3 +length 3.41421\n")
        self.drawing(lambda s: s.add_lwpolyline([(0, 0), (1, 0)], close=True))
        self.assertRegex(self.made("--list", "frame.dxf"), r"0 +1 +1 +2 +length 1\n")

    def test_old_polylines_are_read(self):
        self.drawing(lambda s: s.add_polyline2d([(0, 0), (1, 0), (1, 1)]))
        self.assertRegex(self.made("--list", "frame.dxf"), r"0 +1 +2 +3 +length 2\n")

    def test_arcs_are_refused(self):
        self.write("x.toml", PORTAL_RECIPE)
        message = ('frame.dxf: error: layer "bow": a polyline has arcs; beams are straight: draw '
                   "segments [dxf]")
        points = [(0, 0, 0, 0, 1), (1, 0, 0, 0, 0)]
        self.drawing(lambda s: s.add_lwpolyline(points, dxfattribs={"layer": "bow"}))
        self.refused(message, "frame.dxf", "x.toml", "-o", "model.dat")
        self.drawing(lambda s: s.add_polyline2d([(0, 0, 0, 0, 1), (1, 0)], format="xyseb",
                                                dxfattribs={"layer": "bow"}))
        self.refused(message, "frame.dxf", "x.toml", "-o", "model.dat")

    def test_a_drawing_without_lines_is_refused(self):
        self.drawing(lambda s: s.add_circle((0, 0), 1))
        self.write("x.toml", PORTAL_RECIPE)
        self.refused("frame.dxf: error: the drawing has no LINE, LWPOLYLINE, POLYLINE or 3DLINE "
                     "[dxf]", "frame.dxf", "x.toml", "-o", "model.dat")

    def test_coordinates_must_be_finite(self):
        self.drawing(lambda s: s.add_line((0, 0), (1, 7.25)))
        text = self.read("frame.dxf")
        self.write("frame.dxf", text.replace("\n7.25\n", "\n1e999\n"))
        done = self.run_import("--list", "frame.dxf")
        self.assertEqual(done.stderr, "frame.dxf: error: a point has a coordinate that is not finite "
                         "[dxf]\n")

    def test_what_is_no_drawing_is_refused(self):
        self.drawing(lambda s: s.add_line((0, 0), (1, 0)))
        whole = (self.folder / "frame.dxf").read_bytes()
        self.write("x.toml", PORTAL_RECIPE)
        for cut in [0, 1, 2, 100, 1000, len(whole) // 2, len(whole) - 20]:
            with self.subTest(cut=cut):
                self.write("frame.dxf", whole[:cut])
                done = self.run_import("--list", "frame.dxf")
                self.assertNotIn("Traceback", done.stderr)
                if done.returncode:
                    self.assertEqual(done.returncode, 2)
                    self.assertRegex(done.stderr, r"^frame\.dxf: error: .* \[dxf\]\n$")
        self.write("frame.dxf", "no drawing")
        self.assertEqual(self.run_import("--list", "frame.dxf").returncode, 2)


if __name__ == "__main__":
    unittest.main()
