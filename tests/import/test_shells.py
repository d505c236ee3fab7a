"""Shells meshed by Gmsh, imported and solved, against closed forms and published values."""
import math
import re
import unittest

from support import STEEL, Case

PLATE = """
Point(1) = {0, 0, 0, 0.08}; Point(2) = {1, 0, 0, 0.08}; Point(3) = {1, 1, 0, 0.08};
Point(4) = {0, 1, 0, 0.08};
Line(1) = {1, 2}; Line(2) = {2, 3}; Line(3) = {3, 4}; Line(4) = {4, 1};
Curve Loop(1) = {1, 2, 3, 4}; Plane Surface(1) = {1};
Point(5) = {0.5, 0.5, 0}; Point{5} In Surface{1};
Physical Surface("plate") = {1};
Physical Curve("edges x") = {1, 3}; Physical Curve("edges y") = {2, 4};
"""
STRUCTURED = PLATE.replace("Point(5) = {0.5, 0.5, 0}; Point{5} In Surface{1};", """
Transfinite Curve {1, 2, 3, 4} = 11; Transfinite Surface {1};""")
NAVIER = """
[problem]
title = "simply supported plate"
[material.one]
groups = ["plate"]
E = 1
nu = 0.3
G = 0.38461538461538464
t = 0.1
[support.x]
groups = ["edges x"]
codes = "001010"
[support.y]
groups = ["edges y"]
codes = "001100"
[support.plane]
groups = ["edges x", "edges y"]
codes = "110001"
[load.q]
groups = ["plate"]
pressure = [0, 0, -1]
[options]
six_nodes = true
"""
# NAFEMS LE1: quarter of the ring between ellipses 2 x 1 and 3.25 x 2.75.
MEMBRANE = """
Point(1) = {0, 0, 0}; Point(2) = {2, 0, 0}; Point(3) = {3.25, 0, 0};
Point(4) = {0, 1, 0}; Point(5) = {0, 2.75, 0};
Line(1) = {2, 3}; Ellipse(2) = {3, 1, 3, 5}; Line(3) = {5, 4}; Ellipse(4) = {4, 1, 2, 2};
Curve Loop(1) = {1, 2, 3, 4}; Plane Surface(1) = {1};
Transfinite Curve {1, 3} = 17; Transfinite Curve {2, 4} = 33; Transfinite Surface {1};
Physical Surface("ring") = {1}; Physical Curve("y = 0") = {1}; Physical Curve("x = 0") = {3};
Physical Curve("outer edge") = {2};
"""
LE1 = """
[problem]
title = "elliptic membrane"
[material.steel]
groups = ["ring"]
E = 210e3
nu = 0.3
G = 80769.23
t = 0.1
[support.y]
groups = ["y = 0"]
codes = "010000"
[support.x]
groups = ["x = 0"]
codes = "100000"
[support.flat]
groups = ["ring"]
codes = "001111"
[load.pull]
groups = ["outer edge"]
normal = 1.0           # 10 per area, thickness 0.1
"""
# A strip 6 x 0.4 with a stiffener along each long edge: triangles and lines in one deck.
STIFFENED = """
Point(1) = {0, 0, 0, 0.1}; Point(2) = {6, 0, 0, 0.1}; Point(3) = {6, 0.4, 0, 0.1};
Point(4) = {0, 0.4, 0, 0.1};
Line(1) = {1, 2}; Line(2) = {2, 3}; Line(3) = {3, 4}; Line(4) = {4, 1};
Curve Loop(1) = {1, 2, 3, 4}; Plane Surface(1) = {1};
Physical Surface("skin") = {1}; Physical Curve("ribs") = {1, 3};
Physical Curve("root") = {4}; Physical Curve("tip") = {2};
"""
STIFF = """
[problem]
title = "stiffened strip"
[material.steel]
groups = ["skin"]
E = 2e11
nu = 0.0
G = 1e11
t = 0.02
A = 1e-3
Iy = 4e-6
Iz = 1e-6
J = 1e-8
[beam.ribs]
groups = ["ribs"]
material = "steel"
up = [0, 0, 1]
[support.root]
groups = ["root"]
codes = "111111"
[load.tip]
groups = ["tip"]
force = [0, 0, -100]
"""
CYLINDER = """
Point(1) = {0, 0, 0}; Point(2) = {2, 0, 0}; Point(3) = {0, 2, 0}; Point(4) = {-2, 0, 0};
Point(5) = {0, -2, 0};
Circle(1) = {2, 1, 3}; Circle(2) = {3, 1, 4}; Circle(3) = {4, 1, 5}; Circle(4) = {5, 1, 2};
Transfinite Curve {1, 2, 3, 4} = 9;
a[] = Extrude {0, 0, 1} { Curve{1}; Layers{4}; };
b[] = Extrude {0, 0, 1} { Curve{2}; Layers{4}; };
c[] = Extrude {0, 0, 1} { Curve{3}; Layers{4}; };
d[] = Extrude {0, 0, 1} { Curve{4}; Layers{4}; };
ReverseMesh Surface{b[1], d[1]};
Physical Surface("wall") = {a[1], b[1], c[1], d[1]};
Physical Curve("ends") = {1, 2, 3, 4, a[0], b[0], c[0], d[0]};
"""
BALL = """
SetFactory("OpenCASCADE");
Box(1) = {0, 0, 0, 2, 3, 4};
Mesh.CharacteristicLengthMax = 1;
ReverseMesh Surface{1, 3, 6};
Physical Surface("turned") = {1, 3, 5}; Physical Surface("rest") = {2, 4, 6};
"""


class Shells(Case):
    def test_a_simply_supported_plate_bends_as_navier_says(self):
        for name, geometry in (("free", PLATE), ("structured", STRUCTURED)):
            with self.subTest(mesh=name):
                self.mesh("plate.msh", geometry, "-2")
                self.write("plate.toml", NAVIER)
                report = self.made("--force", "plate.msh", "plate.toml", "-o", "model.dat")
                self.assertIn("force (0, 0, -1), moment about the origin (-0.5, 0.5, 0)", report)
                self.near(self.solve().at(0.5, 0.5, 0)[2], -46.6594, 0.01)

    def test_diagonals_across_corners_are_swapped(self):
        """Their mid-sides would be supports within the plate."""
        self.mesh("plate.msh", STRUCTURED, "-2")
        self.write("plate.toml", NAVIER)
        done = self.run_import("-v", "plate.msh", "plate.toml", "-o", "model.dat")
        self.assertIn("note: 2 diagonals across supported corners swapped", done.stderr)
        border = {n for n, (x, y, z) in self.solve().deck.nodes.items()
                  if min(x, y, 1 - x, 1 - y) < 1e-9}
        deck = self.solve().deck
        for nodes, _ in deck.elements.values():
            for a, b in zip(nodes, nodes[1:] + nodes[:1]):
                if a in border and b in border:
                    (xa, ya, _), (xb, yb, _) = deck.nodes[a], deck.nodes[b]
                    self.assertTrue(xa == xb or ya == yb, "an inner edge between two supports")

    def test_without_conversion_diagonals_stay(self):
        self.mesh("plate.msh", STRUCTURED, "-2")
        self.write("plate.toml", NAVIER.replace("six_nodes = true", ""))
        done = self.run_import("-v", "plate.msh", "plate.toml", "-o", "model.dat")
        self.assertNotIn("swapped", done.stderr)

    def grid(self, supports, **more):
        """A structured plate of 2 x 2 cells whose border, or another set of nodes, is held; as
        meshio hands it over. The diagonals of two corners cut them."""
        import meshio
        import numpy as np
        points = np.array([[i, j, 0] for j in range(3) for i in range(3)], float)
        cells = []
        for j in range(2):
            for i in range(2):
                a = 3 * j + i
                cells += [[a, a + 1, a + 3], [a + 1, a + 4, a + 3]]
        if more.get("turned"):  # the later triangle has the common edge first
            cells[:2] = [3, 0, 1], [3, 1, 4]
        held = np.zeros(9, int)
        held[supports] = 1
        part = np.ones(8, int)
        part[more.get("other", [])] = 2
        if "fold" in more:
            points[more["fold"], 2] = 1
        meshio.write(self.folder / "grid.vtu", meshio.Mesh(
            points, [("triangle", np.array(cells))], point_data={"held": held},
            cell_data={"part": [part]}))
        self.write("grid.toml", "".join(
            f'[material.m{k}]\ngroups = ["part:{k}"]\nE = 1\nnu = 0\nG = 1\nt = 1\n'
            for k in (1, 2) if k in part) +
            '[support.s]\ngroups = ["held:1"]\ncodes = "111000"\n[options]\nsix_nodes = true\n'
            + more.get("recipe", ""))
        done = self.run_import("-v", "--force", "grid.vtu", "grid.toml", "-o", "model.dat")
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stderr

    def test_supports_of_nodes_alone_have_their_corners_freed(self):
        """Which edges lie in the support is not known: only corners are certain."""
        for turned in (False, True):
            said = self.grid([0, 1, 2, 3, 5, 6, 7, 8], turned=turned)
            self.assertIn("note: 2 diagonals across supported corners swapped", said)
            elements = [set(e[0]) for e in self.deck().elements.values()]
            self.assertIn({1, 5, 4}, elements)
            self.assertIn({1, 2, 5}, elements)

    def test_a_diagonal_between_two_supported_nodes_alone_stays(self):
        said = self.grid([1, 3])
        self.assertIn("note: 0 diagonals across supported corners swapped", said)
        self.assertNotIn("[corner-diagonal]", said)

    def test_diagonals_that_must_stay(self):
        border = [0, 1, 2, 3, 5, 6, 7, 8]
        for what, nodes, more in (
                ("two materials", border, {"other": [0, 7]}), ("a fold", border, {"fold": [0, 8]}),
                ("the other diagonal is held too", [0, 1, 3, 4], {})):
            with self.subTest(what=what):
                said = self.grid(nodes, **more)
                self.assertIn("note: 0 diagonals across supported corners swapped", said)
                self.assertIn("[corner-diagonal]", said)

    def test_a_triangle_is_swapped_once(self):
        """Two held inner edges of one triangle: the second one stays and is told; after the first
        it belongs to other triangles."""
        points = ["0 0", "1 0", "0.5 0.7", "-0.5 0.6", "1.5 0.6"]
        cells = ["2 2 1 1 1 3 2", "2 2 1 1 1 4 3", "2 2 1 1 2 3 5", "1 2 2 1 1 2", "15 2 3 1 3"]
        self.write("m.msh", "\n".join([
            "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n5",
            *(f"{k} {p} 0" for k, p in enumerate(points, 1)), "$EndNodes\n$Elements\n5",
            *(f"{k} {c}" for k, c in enumerate(cells, 1)), "$EndElements\n"]))
        self.write("m.toml", '[material.m]\ngroups = ["1"]\nE = 1\nnu = 0\nG = 1\nt = 1\n'
                   '[support.s]\ngroups = ["2", "3"]\ncodes = "111000"\n'
                   "[options]\nsix_nodes = true\n")
        done = self.run_import("-v", "m.msh", "m.toml", "-o", "model.dat")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("note: 1 diagonal across supported corners swapped", done.stderr)
        self.assertIn("m.msh: warning: 1 edge between supported nodes cannot be swapped: the mid-side "
                      "at (0.75, 0.35, 0) becomes a support [corner-diagonal]", done.stderr)
        self.assertEqual({frozenset(nodes) for nodes, _ in self.deck().elements.values()},
                         {frozenset(nodes) for nodes in ((1, 2, 4), (2, 3, 4), (2, 3, 5))})

    def test_supports_of_whole_surfaces_keep_their_edges(self):
        self.mesh("plate.msh", STRUCTURED, "-2")
        self.write("plate.toml", NAVIER.replace('["edges x", "edges y"]', '["plate"]').replace(
            "110001", "110000"))
        done = self.run_import("-v", "plate.msh", "plate.toml", "-o", "model.dat")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("0 diagonals", done.stderr)

    def test_an_edge_that_cannot_be_swapped_is_told(self):
        """A strip of one cell between two supports."""
        strip = STRUCTURED.replace("Transfinite Curve {1, 2, 3, 4} = 11",
                                   "Transfinite Curve {1, 3} = 11; Transfinite Curve {2, 4} = 2")
        self.mesh("plate.msh", strip, "-2")
        self.write("plate.toml", NAVIER)
        done = self.run_import("plate.msh", "plate.toml", "-o", "model.dat")
        self.assertEqual(done.returncode, 0)
        self.assertRegex(done.stderr, r"plate.msh: warning: \d+ edges between supported nodes cannot "
                         r"be swapped: the mid-side at \(.*, 0.5, 0\) becomes a support "
                         r"\[corner-diagonal\]")

    def test_an_elliptic_membrane_reaches_the_published_stress(self):
        """Edge loads along the outward normal; values at the mid-side next to the point."""
        self.mesh("ring.msh", MEMBRANE, "-2", "-order", "2")
        self.write("ring.toml", LE1)
        report = self.made("ring.msh", "ring.toml", "-o", "model.dat")
        force = re.search(r"force \((\S+), (\S+), 0\)", report)
        self.near(float(force[1]), 2.75, 1e-3)
        self.near(float(force[2]), 3.25, 1e-3)
        results = self.solve()
        near = results.deck.node_at(2, 0, 0)
        stresses = []
        for number, points in results.block("Axial Force").items():
            nodes = results.deck.elements[number][0]
            if near in nodes[:3]:
                corner = nodes.index(near)
                stresses += [points[edge] for edge in (corner, (corner + 2) % 3)]
        highest = max(max(s[:2]) for s in stresses) / 0.1
        self.near(highest, 92.7, 0.05)

    def test_a_stiffened_strip_bends_with_both_parts(self):
        for order in "12":
            with self.subTest(order=order):
                self.mesh("strip.msh", STIFFENED, "-2", "-order", order)
                self.write("strip.toml", STIFF + "[options]\nsix_nodes = true\n" * (order == "1"))
                self.made("--force", "strip.msh", "strip.toml", "-o", "model.dat")
                results = self.solve()
                stiffness = 2e11 * (0.4 * 0.02 ** 3 / 12 + 2 * 4e-6)
                self.near(results.at(6, 0.2, 0)[2], -100 * 6 ** 3 / 3 / stiffness, 0.02)
                kinds = set(results.deck.kinds.values())
                self.assertEqual(kinds, {("Linear", 2), ("Triangle", 3 if order == "1" else 6)})

    def test_pressure_in_a_cylinder_of_both_senses_widens_it(self):
        """Hoop force p R; half of the surfaces are meshed with inward normals."""
        self.mesh("pipe.msh", CYLINDER, "-2", "-order", "2")
        self.write("pipe.toml", '[material.s]\ngroups = ["wall"]\nE = 2e5\nnu = 0\nG = 1e5\nt = 0.01\n'
                   '[support.e]\ngroups = ["ends"]\ncodes = "001111"\n'
                   '[support.wall]\ngroups = ["wall"]\ncodes = "000001"\n'
                   '[load.p]\ngroups = ["wall"]\nnormal = "0.5"\n')
        done = self.run_import("-v", "pipe.msh", "pipe.toml", "-o", "model.dat")
        self.assertRegex(done.stderr, r"note: \d+ of \d+ elements turned round")
        deck = self.deck()
        signs = set()
        for nodes, _ in deck.elements.values():
            (ax, ay, _), (bx, by, bz), (cx, cy, cz) = (deck.nodes[n] for n in nodes[:3])
            az = deck.nodes[nodes[0]][2]
            normal = ((by - ay) * (cz - az) - (bz - az) * (cy - ay),
                      (bz - az) * (cx - ax) - (bx - ax) * (cz - az))
            signs.add(normal[0] * ax + normal[1] * ay > 0)
        self.assertEqual(len(signs), 1)

    def deck(self):
        from support import Deck
        return Deck(self.read("model.dat"))

    def test_normals_of_a_closed_surface_point_outwards(self):
        self.mesh("box.msh", BALL, "-2")
        self.write("box.toml", '[material.s]\ngroups = ["turned", "rest"]\n' + STEEL +
                   'G = 8e4\nt = 1\n[load.p]\ngroups = ["turned"]\nnormal = 1\n')
        report = self.made("box.msh", "box.toml", "-o", "model.dat")
        volume = 0.0
        deck = self.deck()
        for nodes, _ in deck.elements.values():
            a, b, c = (deck.nodes[n] for n in nodes)
            volume += (a[0] * (b[1] * c[2] - b[2] * c[1]) - a[1] * (b[0] * c[2] - b[2] * c[0])
                       + a[2] * (b[0] * c[1] - b[1] * c[0])) / 6
        self.near(volume, 24, 1e-9)
        # three sides of the box: x = 0, y = 0, z = 0
        self.assertIn("force (-12, -8, -6)", report)

    def test_a_moebius_strip_is_told(self):
        points, triangles, n = [], [], 24
        for i in range(n):
            turn, half = 2 * math.pi * i / n, math.pi * i / n
            for side in (-0.3, 0.3):
                r = 2 + side * math.cos(half)
                points.append((r * math.cos(turn), r * math.sin(turn), side * math.sin(half)))
        for i in range(n):
            a, b = 2 * i, 2 * i + 1
            c, d = (2 * i + 2, 2 * i + 3) if i < n - 1 else (1, 0)
            triangles += [(a, c, b), (b, c, d)]
        text = ["$MeshFormat", "2.2 0 8", "$EndMeshFormat", "$Nodes", str(len(points))]
        text += [f"{k} {x!r} {y!r} {z!r}" for k, (x, y, z) in enumerate(points, 1)]
        text += ["$EndNodes", "$Elements", str(len(triangles))]
        text += [f"{k} 2 2 1 1 {a + 1} {b + 1} {c + 1}" for k, (a, b, c) in enumerate(triangles, 1)]
        self.write("m.msh", "\n".join([*text, "$EndElements", ""]))
        self.write("m.toml", '[material.s]\ngroups = ["1"]\n' + STEEL + "G = 1\nt = 1\n")
        done = self.run_import("m.msh", "m.toml", "-o", "model.dat")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertRegex(done.stderr, r"warning: the surface around cell \d+ has one side only "
                         r"\(as a Moebius strip\): its normals stay as they are \[one-sided\]")


if __name__ == "__main__":
    unittest.main()
