"""Solids meshed by Gmsh, imported and solved, against closed forms and published values."""
import re
import unittest

from support import STEEL, Case

BOX = """
SetFactory("OpenCASCADE");
Box(1) = {0, 0, 0, 2, 1, 1};
Physical Volume("body") = {1};
Physical Surface("root") = {1};
Physical Surface("end") = {2};
Physical Surface("side y") = {3};
Physical Surface("side z") = {5};
Mesh.CharacteristicLengthMax = 0.5;
"""
PATCH = """
[problem]
title = "bar in tension"
[material.steel]
groups = ["body"]
E = 200.0
nu = 0.25
[support.root]
groups = ["root"]
codes = "100"
[support.y]
groups = ["side y"]
codes = "010"
[support.z]
groups = ["side z"]
codes = "001"
[load.pull]
groups = ["end"]
"""
# NAFEMS LE10: quarter of a plate between ellipses 2 x 1 and 3.25 x 2.75, 0.6 thick, in twice two layers.
THICK_PLATE = """
Point(1) = {0, 0, -0.3}; Point(2) = {2, 0, -0.3}; Point(3) = {3.25, 0, -0.3};
Point(4) = {0, 1, -0.3}; Point(5) = {0, 2.75, -0.3};
Line(1) = {2, 3}; Ellipse(2) = {3, 1, 3, 5}; Line(3) = {5, 4}; Ellipse(4) = {4, 1, 2, 2};
Curve Loop(1) = {1, 2, 3, 4}; Plane Surface(1) = {1};
Transfinite Curve {1, 3} = 7; Transfinite Curve {2, 4} = 9; Transfinite Surface {1};
low[] = Extrude {0, 0, 0.3} { Surface{1}; Layers{2}; };
high[] = Extrude {0, 0, 0.3} { Surface{low[0]}; Layers{2}; };
Physical Volume("plate") = {low[1], high[1]};
Physical Surface("top") = {high[0]};
Physical Surface("DCD'C'") = {low[2], high[2]};
Physical Surface("ABA'B'") = {low[4], high[4]};
Physical Surface("outer") = {low[3], high[3]};
edges[] = Boundary { Surface{low[0]}; };
Physical Curve("mid-line") = {edges[1]};
"""
LE10 = """
[problem]
title = "thick plate"
[material.steel]
groups = ["plate"]
E = 210e3
nu = 0.3
[support.y]
groups = ["DCD'C'"]
codes = "010"
[support.x]
groups = ["ABA'B'"]
codes = "100"
[support.outer]
groups = ["outer"]
codes = "110"
[support.line]
groups = ["mid-line"]
codes = "001"
[load.top]
groups = ["top"]
normal = -1.0
"""
# A quarter of a tube, radii 3 and 9, a slice of thickness 1.
TUBE = """
Point(1) = {0, 0, 0}; Point(2) = {3, 0, 0}; Point(3) = {9, 0, 0};
Point(4) = {0, 9, 0}; Point(5) = {0, 3, 0};
Line(1) = {2, 3}; Circle(2) = {3, 1, 4}; Line(3) = {4, 5}; Circle(4) = {5, 1, 2};
Curve Loop(1) = {1, 2, 3, 4}; Plane Surface(1) = {1};
Transfinite Curve {1} = 11 Using Progression 1.1; Transfinite Curve {3} = 11 Using Progression 1/1.1;
Transfinite Curve {2, 4} = 13; Transfinite Surface {1};
out[] = Extrude {0, 0, 1} { Surface{1}; Layers{1}; };
Physical Volume("tube") = {out[1]};
Physical Surface("z") = {1, out[0]};
Physical Surface("y") = {out[2]};
Physical Surface("x") = {out[4]};
Physical Surface("bore") = {out[5]};
"""
LAME = """
[problem]
title = "thick tube"
[material.one]
groups = ["tube"]
E = 1000
nu = 0.3
[support.planes]
groups = ["z"]
codes = "001"
[support.y]
groups = ["y"]
codes = "010"
[support.x]
groups = ["x"]
codes = "100"
[load.bore]
groups = ["bore"]
normal = -1
"""
# A quarter of a plate with a hole, 10 wide, hole of diameter 2, thickness 0.2.
HOLE = """
Point(1) = {0, 0, 0}; Point(2) = {1, 0, 0, 0.1}; Point(3) = {10, 0, 0, 1}; Point(4) = {10, 5, 0, 1};
Point(5) = {0, 5, 0, 1}; Point(6) = {0, 1, 0, 0.1};
Line(1) = {2, 3}; Line(2) = {3, 4}; Line(3) = {4, 5}; Line(4) = {5, 6}; Circle(5) = {6, 1, 2};
Curve Loop(1) = {1, 2, 3, 4, 5}; Plane Surface(1) = {1};
out[] = Extrude {0, 0, 0.2} { Surface{1}; Layers{1}; };
Physical Volume("plate") = {out[1]};
Physical Surface("back") = {1};
Physical Surface("y = 0") = {out[2]};
Physical Surface("x = 0") = {out[5]};
Physical Surface("far end") = {out[3]};
"""
KIRSCH = """
[problem]
title = "plate with a hole"
[material.steel]
groups = ["plate"]
E = 210e3
nu = 0.3
[support.x]
groups = ["x = 0"]
codes = "100"
[support.y]
groups = ["y = 0"]
codes = "010"
[support.z]
groups = ["back"]
codes = "001"
[load.pull]
groups = ["far end"]
pressure = [1, 0, 0]
"""
BRACKET = """
SetFactory("OpenCASCADE");
Box(1) = {0, 0, 0, 10, 40, 100};
Box(2) = {0, 0, 0, 80, 40, 12};
Cylinder(3) = {60, 20, -1, 0, 0, 20, 6};
BooleanUnion(4) = { Volume{1}; Delete; }{ Volume{2}; Delete; };
BooleanDifference(5) = { Volume{4}; Delete; }{ Volume{3}; Delete; };
Physical Volume("body") = {5};
wall() = Surface In BoundingBox {-0.1, -1, -1, 0.1, 41, 101};
hole() = Surface In BoundingBox {53, 13, -0.1, 67, 27, 12.1};
Physical Surface("wall") = {wall()};
Physical Surface("hole") = {hole()};
Mesh.CharacteristicLengthMax = 12;
"""


class Solids(Case):
    def test_a_bar_under_pressure_is_exact_for_both_orders(self):
        for order in "12":
            for load in ("pressure = [3, 0, 0]", "normal = 3", 'pressure = ["1.5*x", 0, 0]',
                         "force = [3, 0, 0]"):
                with self.subTest(order=order, load=load):
                    self.mesh("bar.msh", BOX, "-3", "-order", order)
                    self.write("bar.toml", PATCH + load)
                    report = self.made("--force", "bar.msh", "bar.toml", "-o", "model.dat")
                    self.assertRegex(report, r"force \(3, 0, 0\), moment about the origin "
                                     r"\(0, 1.5, -1.5\)")
                    u = self.solve().at(2, 1, 1)
                    if load.startswith("force") and order == "1":
                        self.near(u[0], 0.03, 0.01)
                        continue
                    for value, target in zip(u, (0.03, -0.00375, -0.00375)):
                        self.near(value, target, 1e-5)

    def test_a_volume_load_is_the_weight_of_a_hanging_bar(self):
        self.mesh("bar.msh", BOX, "-3", "-order", "2")
        self.write("bar.toml", PATCH.replace('["end"]', '["body"]').replace("0.25", "0.0")
                   + "pressure = [3, 0, 0]")
        report = self.made("bar.msh", "bar.toml", "-o", "model.dat")
        self.assertIn("force (6, 0, 0), moment about the origin (0, 3, -3)", report)
        self.near(self.solve().at(2, 0.5, 0.5)[0], 3 * 2 ** 2 / 2 / 200, 1e-5)

    def test_the_thick_plate_reaches_the_published_stress(self):
        self.mesh("plate.msh", THICK_PLATE, "-3", "-order", "2")
        self.write("plate.toml", LE10)
        report = self.made("plate.msh", "plate.toml", "-o", "model.dat")
        area = 3.141592653589793 / 4 * (3.25 * 2.75 - 2 * 1)
        found = re.search(r'load "top".*\n +force \(0, 0, (\S+)\)', report)
        self.near(float(found[1]), -area, 1e-3)
        results = self.solve()
        stress = results.block("Strengths")[results.deck.node_at(2, 0, 0.3)][0]
        self.near(stress[1], -5.38, 0.03)

    def test_a_thick_tube_widens_as_lame_says(self):
        self.mesh("tube.msh", TUBE, "-3", "-order", "2", "-bin")
        self.write("tube.toml", LAME)
        report = self.made("tube.msh", "tube.toml", "-o", "model.dat")
        self.assertRegex(report, r"force \(3, 3, 0\)|force \((2\.99|3\.00)\d*, (2\.99|3\.00)\d*, 0\)")
        self.near(self.solve().at(3, 0, 0)[0], 4.58250e-3, 0.005)

    def test_a_hole_concentrates_stress(self):
        """Heywood's polynomial for a strip, diameter over width 0.2."""
        self.mesh("hole.msh", HOLE, "-3", "-order", "2")
        self.write("hole.toml", KIRSCH)
        self.made("hole.msh", "hole.toml", "-o", "model.dat")
        results = self.solve()
        ratio = 0.2
        factor = 3 - 3.13 * ratio + 3.66 * ratio ** 2 - 1.53 * ratio ** 3
        stress = results.block("Strengths")[results.deck.node_at(0, 1, 0)][0]
        self.near(stress[0], factor / (1 - ratio), 0.03)

    def test_a_bracket_holds_what_the_recipe_applies(self):
        self.mesh("bracket.msh", BRACKET, "-3", "-order", "2")
        self.write("bracket.toml", '[material.s]\ngroups = ["body"]\n' + STEEL +
                   '[support.wall]\ngroups = ["wall"]\ncodes = "111"\n'
                   '[load.bolt]\ngroups = ["hole"]\nforce = [100, -2000, 300]\n')
        report = self.made("bracket.msh", "bracket.toml", "-o", "model.dat")
        moment = re.search(r"force \(100, -2000, 300\), moment about the origin \((.*)\)", report)
        # The hole is round its axis (60, 20, 6): an even traction acts there.
        for value, target in zip(map(float, moment[1].split(", ")),
                                 (20 * 300 + 6 * 2000, 6 * 100 - 60 * 300, -60 * 2000 - 20 * 100)):
            self.near(value, target, 1e-2)
        for value, target in zip(self.solve().held(), (-100, 2000, -300)):
            self.near(value, target, 1e-4)


if __name__ == "__main__":
    unittest.main()
