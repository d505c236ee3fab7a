"""What a recipe becomes in the deck: options, units, groups, warnings, marked blocks."""
import unittest

from program import MESH, RECIPE, Program
from support import Deck


class Recipes(Program):
    def deck(self, recipe, *options):
        self.write("r.toml", recipe)
        self.made("--force", "m.msh", "r.toml", "-o", "d.dat", *options)
        return self.read("d.dat")

    def test_the_deck_as_a_whole(self):
        self.assertEqual(self.deck(RECIPE), """\
# >>> kestol-import head: generated; a new run replaces all down to the closing mark
PROBLEM two triangles
TYPE 3d
# made from m.msh and r.toml
# <<< kestol-import head
# >>> kestol-import mesh: generated; a new run replaces all down to the closing mark
mesh
  dimension = 3   elemtype Triangle   nnode = 3
  coordinates
  1  0.0  0.0  0.0
  2  1.0  0.0  0.0
  3  1.0  1.0  0.0
  4  0.0  1.0  0.0
  end coordinates
  elements
  1  1  2  3  1
  2  1  3  4  1
  end elements
# <<< kestol-import mesh
# >>> kestol-import materials: generated; a new run replaces all down to the closing mark
materials
  # material "steel"
  1  E=210000.0 nu=0.3 G=80000.0 t=1.0
end materials
# <<< kestol-import materials
# >>> kestol-import supports: generated; a new run replaces all down to the closing mark
constraints
  # support "left": group "left"
  1  111111  0.0 0.0 0.0 0.0 0.0 0.0
  4  111111  0.0 0.0 0.0 0.0 0.0 0.0
end constraints
# <<< kestol-import supports
# >>> kestol-import loads: generated; a new run replaces all down to the closing mark
# load "tip": group "tip"
nodal_point_loads
  3  0.0  0.0  -1.0  0.0  0.0  0.0
end nodal_point_loads
# <<< kestol-import loads
""")

    def test_how_an_editor_saves_a_recipe_does_not_matter(self):
        plain = self.deck(RECIPE)
        self.assertEqual(self.deck("\ufeff" + RECIPE), plain)
        self.assertEqual(self.deck(RECIPE.replace("\n", "\r\n").encode()), plain)
        self.write("r.toml", "\ufeff" + RECIPE.replace("[problem]", "[problem]\nx = 1"))
        done = self.run_import("--force", "m.msh", "r.toml", "-o", "d.dat")
        self.assertIn("r.toml:2:1: error: ", done.stderr)

    def test_options_are_lines_of_the_deck(self):
        text = self.deck(RECIPE + """\
[options]
six_nodes = true
main_stresses = true
main_and_local_stresses = true
smoothing = 0.3
coplanarity = 0.01
divisions = 10
gravity = [0, 0, -1]
solver = "Sparse 1e-8 1e-6 5000"
""")
        head = text[:text.index("# <<<")]
        self.assertEqual(head.split("\n")[4:-1], [
            "ConvertTo6Nodes", "MainStresses", "MainAndLocalStresses", "DoSmoothing 0.3",
            "CoplanarityAngle 0.01", "NumOfDivisions 10", "GravityDirection 0.0 0.0 -1.0",
            "Solver Sparse 1e-8 1e-6 5000"])
        self.solve("d.dat")

    def test_options_go_as_far_as_the_solver_takes_them(self):
        for option, taken, refused in (
                ("divisions", ("1", "2147483647"), ("0", "1.5", "2147483648")),
                ("smoothing", ("1e-15", "3.141592653589793"), ("0", "3.1416")),
                ("coplanarity", ("1e-15", "3.141592653589793"), ("0", "3.1416")),
                ("solver", ('"Sparse 1e-9 10 10"', '"Sparse 10 1e-9 11"'),
                 ('"Sparse 0 1 10"', '"Sparse 1 0 10"', '"Sparse 10.1 1 10"', '"Sparse 1 10.1 10"',
                  '"Sparse 1 1 9"', '"Sparse 1 1"', '"Sparse 1 x 10"', '"Sparse 1 1 1e3"',
                  '"Double 1 1 10"', '"sparse"'))):
            for value in taken:
                with self.subTest(option=option, value=value):
                    self.deck(RECIPE + f"[options]\n{option} = {value}\n")
                    self.solve("d.dat")
            for value in refused:
                with self.subTest(option=option, value=value):
                    self.write("r.toml", RECIPE + f"[options]\n{option} = {value}\n")
                    done = self.run_import("-q", "--force", "m.msh", "r.toml", "-o", "d.dat")
                    self.assertRegex(done.stderr,
                                     rf"^r.toml:16:[0-9]+: error: {option}: must be .* \[value\]\n")

    def test_springs_settlements_and_turned_supports(self):
        text = self.deck(RECIPE + """\
[support.other]
groups = ["tip"]
codes = "200001"
values = [5e3, 0, 0, 0, 0, "0.01*x"]
Euler3 = 0.5
""")
        self.assertIn("  3  200001  5000.0 0.0 0.0 0.0 0.0 0.01  Euler3=0.5\n", text)
        text = self.deck(RECIPE.replace('codes = "111111"',
                                        'codes = "111111"\nvalues = [0, "0.1*y", 0, 0, 0, 0]'))
        self.assertIn("  1  111111  0.0 0.0 0.0 0.0 0.0 0.0\n  4  111111  0.0 0.1 0.0", text)

    def test_units_of_solids_give_one_answer(self):
        """The same cube in N and mm, and with kN and m for values and m for the mesh."""
        nodes = ["0 0 0", "1 0 0", "0 1 0", "0 0 1"]
        mesh = ("$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n4\n{}\n$EndNodes\n$Elements\n3\n"
                "1 4 2 1 1 1 2 3 4\n2 2 2 2 1 1 2 3\n3 15 2 3 1 4\n$EndElements\n")
        recipe = """\
[problem]
{}
[material.m]
groups = ["1"]
E = {}
nu = 0.3
[support.s]
groups = ["2"]
codes = "111"
[support.spring]
groups = ["3"]
codes = "222"
values = [{}, {}, {}]
[load.f]
groups = ["3"]
force = [{}, {}, {}]
"""
        units = """\
[units.N-mm]
force = "N"
length = "mm"
pressure = "MPa"
factors = [1, 0.001]
[units.kN-m]
force = "kN"
length = "m"
pressure = "kPa"
factors = [1000, 1]
"""
        answers = []
        for scale, problem, E, k, f, more in (
                (1000, "", 2e5, 1e5, 3e4, ""),
                (1, 'mesh_unit = "m"\nvalues = "kN-m"\nresults = "N-mm"', 2e8, 1e5, 30, units),
                (1000, 'mesh_unit = "mm"\nvalues = "kN-m"\nresults = "N-mm"', 2e8, 1e5, 30, units),
                (1000, 'results = "N-mm"', 2e5, 1e5, 3e4, units)):
            with self.subTest(problem=problem):
                at = [" ".join(str(float(c) * scale) for c in n.split()) for n in nodes]
                self.write("m.msh", mesh.format("\n".join(f"{i} {n}" for i, n in enumerate(at, 1))))
                self.deck(recipe.format(problem, E, k, k, k, f, f, f) + more)
                answers.append(self.solve("d.dat").displacements[4])
        for other in answers[1:]:
            for a, b in zip(answers[0], other):
                self.assertAlmostEqual(a, b, delta=1e-5 * max(map(abs, answers[0])))

    def test_the_moment_of_a_force_is_about_the_origin_in_units_of_values(self):
        self.write("r.toml", RECIPE.replace("[problem]", "[problem]\nmesh_unit = 'mm'\nvalues = 'kN-m'") +
                   '[units.N-mm]\nforce = "N"\nlength = "mm"\npressure = "MPa"\n'
                   'factors = [1, 0.001]\n[units.kN-m]\nforce = "kN"\nlength = "m"\n'
                   'pressure = "kPa"\nfactors = [1000, 1]\n')
        self.assertIn("force (0, 0, -1) kN, moment about the origin (-0.001, 0.001, 0) kN m\n",
                      self.made("m.msh", "r.toml", "-o", "d.dat"))

    def test_the_report_has_the_units_of_mesh_and_values(self):
        """Names of units as the recipe gives them: sizes by the mesh, forces by the values."""
        self.write("r.toml", """\
[problem]
mesh_unit = "Zoll"
values = "big"
results = "small"
[material.steel]
groups = ["plate"]
E = 210e3
nu = 0.3
G = 80e3
t = 1
[support.left]
groups = ["left"]
codes = "111111"
[load.tip]
groups = ["tip"]
force = [0, 0, -1]
[load.snow]
groups = ["plate"]
pressure = [0, 0, -3]
[units.small]
force = "N"
length = "Zoll"
pressure = "psi"
factors = [1, 1]
[units.big]
force = "MN"
length = "km"
pressure = "Pa"
factors = [1000000, 1000]
""")
        self.assertEqual(self.made("m.msh", "r.toml", "-o", "d.dat"), """\
d.dat: 4 nodes, 2 triangles of 3 nodes
material "steel" on "plate": 2 triangles, area 1 Zoll^2
support "left" on "left": 1 line, length 1 Zoll, 2 nodes, codes 111111
load "tip" on "tip": 1 point, shared by 1 node
    force (0, 0, -1) MN, moment about the origin (-0.001, 0.001, 0) MN km
load "snow" on "plate": 2 triangles, area 1 Zoll^2
    force (0, 0, -3e-06) MN, moment about the origin (-1.5e-09, 1.5e-09, 0) MN km
""")

    def test_a_prescribed_height_of_a_solid_is_in_units_of_values(self):
        self.write("m.msh", "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n4\n1 0 0 0\n2 1000 0 0\n"
                   "3 0 1000 0\n4 0 0 1000\n$EndNodes\n$Elements\n3\n1 4 2 1 1 1 2 3 4\n"
                   "2 2 2 2 1 1 2 3\n3 15 2 3 1 4\n$EndElements\n")
        self.deck('[problem]\nmesh_unit = "mm"\nvalues = "kN-m"\nresults = "N-mm"\n'
                  '[material.m]\ngroups = ["1"]\nE = 2e8\nnu = 0\n[support.s]\ngroups = ["2"]\n'
                  'codes = "111"\n[support.t]\ngroups = ["3"]\ncodes = "111"\n'
                  'values = [0.001, 0.002, 0.003]\n[units.N-mm]\nforce = "N"\nlength = "mm"\n'
                  'pressure = "MPa"\nfactors = [1, 0.001]\n[units.kN-m]\nforce = "kN"\n'
                  'length = "m"\npressure = "kPa"\nfactors = [1000, 1]\n')
        self.assertEqual(self.solve("d.dat").displacements[4][:3], [1, 2, 3])

    def test_pressures_count_in_the_lengths_of_values(self):
        """1 kPa on a square metre that is meshed in millimetres is 1 kN."""
        text = MESH.replace("1 0 0\n", "1000 0 0\n").replace("3 1 1 0", "3 1000 1000 0").replace(
            "4 0 1 0", "4 0 1000 0")
        self.write("m.msh", text)
        self.write("r.toml", RECIPE.replace("force = [0, 0, -1]", "pressure = [0, 0, -1]").replace(
            '["tip"]', '["plate"]').replace("E = 210e3", "E = 210e6\nunits = 'kN-m'").replace(
            '"two triangles"', '"x"\nmesh_unit = "mm"\nvalues = "kN-m"\nresults = "N-mm"') + """\
[units.N-mm]
force = "N"
length = "mm"
pressure = "MPa"
factors = [1, 0.001]
[units.kN-m]
force = "kN"
length = "m"
pressure = "kPa"
factors = [1000, 1]
""")
        report = self.made("m.msh", "r.toml", "-o", "d.dat")
        self.assertIn("force (0, 0, -1) kN, moment about the origin (-0.5, 0.5, 0) kN m\n", report)
        self.assertIn('load "tip" on "plate": 2 triangles, area 1e+06 mm^2\n', report)
        self.assertIn("1  units=kN-m E=210000000.0", self.read("d.dat"))
        held = self.solve("d.dat").held()
        self.assertAlmostEqual(held[2], 1000 * (1 - 1 / 3 - 1 / 6), delta=0.01)

    def test_groups_that_overlap_are_loaded_once(self):
        for load in ("pressure = [0, 0, -1]", "force = [0, 0, -1]"):
            with self.subTest(load=load):
                self.write("r.toml", RECIPE.replace("force = [0, 0, -1]", load).replace(
                    '["tip"]', '["plate", "plate"]'))
                self.made("--force", "m.msh", "r.toml", "-o", "d.dat")
                deck = Deck(self.read("d.dat"))
                total = sum(f[1][2] for f in deck.forces)
                self.assertEqual(len(deck.loads) or round(-total, 9), 2 if deck.loads else 1)

    def test_copies_of_a_cell_have_one_material(self):
        self.write("r.toml", RECIPE + '[material.iron]\ngroups = ["more"]\nE = 1\nnu = 0\nG = 1\n'
                   't = 1\n')
        self.refused('r.toml:16:11: error: material "iron": cells of group "more" belong to material '
                     '"steel" already [material]', "m.msh", "r.toml", "-o", "d.dat")

    def test_names_of_the_solver_are_passed_on(self):
        for name in ("Automatic", "SkyLine", "Double"):
            self.assertIn(f"\nSolver {name}\n",
                          self.deck(RECIPE + f'[options]\nsolver = "{name}"\n'))

    def test_the_first_system_of_units_is_that_of_the_results(self):
        text = self.deck(RECIPE + '[units.SI]\nforce = "N"\nlength = "m"\npressure = "Pa"\n'
                         "factors = [1, 1]\n")
        self.assertIn("units_mesh m\nunits_mat_and_load SI\nunits_res SI\n", text)

    def test_copies_of_a_cell_are_one_element(self):
        """Version 2.2 writes a cell of two groups twice: "more" is half of "plate" again."""
        text = self.deck(RECIPE.replace('["plate"]', '["plate", "more"]'))
        self.assertEqual(len(Deck(text).elements), 2)
        text = self.deck(RECIPE.replace('["tip"]', '["more"]').replace("force", "pressure"))
        self.assertEqual(Deck(text).loads, [("global_pressure_loads", 2, [0, 0, -1])])


class Warnings(Program):
    def warned(self, message, recipe, status=0):
        self.write("r.toml", recipe)
        done = self.run_import("--force", "m.msh", "r.toml", "-o", "d.dat")
        self.assertEqual(done.returncode, status)
        self.assertIn(message + "\n", done.stderr)

    def test_each_warning(self):
        self.warned("m.msh: warning: 1 triangle without material: left out [no-material]", RECIPE)
        self.warned("r.toml: warning: the recipe has no support [no-support]",
                    RECIPE[:RECIPE.index("[support")])
        self.warned("r.toml:16:13: warning: six_nodes has no effect: there are no 3-noded triangles "
                    "[no-effect]", '[problem]\ntype = "2d"\n[material.m]\ngroups = ["left"]\nE = 1\n'
                    "A = 1\nIz = 1\n" + "#\n" * 7 + "[options]\nsix_nodes = true\n")
        self.warned('r.toml:10:11: warning: support "left": 2 nodes of group "5" belong to no '
                    "element and are left out [loose-node]", RECIPE.replace('["left"]', '["5"]'))
        self.warned('r.toml: warning: support "b": group "tip" replaces what an earlier support says '
                    "of degree 1 of node 3 [replaced-support]",
                    RECIPE + '[support.a]\ngroups = ["plate"]\ncodes = "100000"\n[support.b]\n'
                    'groups = ["tip"]\ncodes = "100000"\nvalues = [1, 0, 0, 0, 0, 0]\n')


class MarkedBlocks(Program):
    def test_what_was_written_by_hand_stays(self):
        self.made("m.msh", "r.toml", "-o", "d.dat")
        text = self.read("d.dat")
        by_hand = text.replace("# <<< kestol-import head\n", "# <<< kestol-import head\nSolver SkyLine\n")
        by_hand = by_hand.replace("# >>> kestol-import loads", "\trotules # mine\n end\n"
                                  "# >>> kestol-import loads") + "# the end, \u00fc\n"
        self.write("d.dat", by_hand)
        self.write("r.toml", RECIPE.replace("-1]", "-2]"))
        self.refused("d.dat: error: the deck exists: --force renews its marked blocks [exists]",
                     "m.msh", "r.toml", "-o", "d.dat")
        self.assertEqual(self.read("d.dat"), by_hand)
        done = self.run_import("-v", "--force", "m.msh", "r.toml", "-o", "d.dat")
        self.assertIn("note: d.dat: 4 lines by hand kept around the blocks", done.stderr)
        self.assertEqual(self.read("d.dat"), by_hand.replace("-1.0", "-2.0"))

    def test_a_deck_without_marks_is_replaced(self):
        self.write("d.dat", "PROBLEM by hand\n")
        self.made("--force", "m.msh", "r.toml", "-o", "d.dat")
        self.assertNotIn("by hand", self.read("d.dat"))

    def test_damaged_marks_are_refused(self):
        self.made("m.msh", "r.toml", "-o", "d.dat")
        text = self.read("d.dat")
        line = 1 + text.split("\n").index("# <<< kestol-import head")
        cases = [
            (text.replace("# <<< kestol-import mesh\n", ""),
             f'{line + 14}: error: the block "mesh" is not closed before the next one begins'),
            (text.replace("# <<< kestol-import loads\n", ""),
             '33: error: the block "loads" is not closed'),
            (text.replace("kestol-import head\n", "kestol-import top\n"),
             f'{line}: error: the block "top" is closed but not open'),
            (text.replace("import head:", "import top:"), '1: error: there is no block "top"'),
            (text.replace("import mesh", "import head"), '6: error: the block "head" is here twice'),
            (text[text.index("# >>> kestol-import mesh"):],
             ' error: the marks of the block "head" are gone: put them back, or remove the file'),
        ]
        for damaged, message in cases:
            with self.subTest(message=message):
                self.write("d.dat", damaged)
                place = "d.dat:"
                done = self.run_import("--force", "-q", "m.msh", "r.toml", "-o", "d.dat")
                self.assertEqual(done.returncode, 2)
                self.assertEqual(done.stderr, f"{place}{message} [marks]\n")
                self.assertEqual(self.read("d.dat"), damaged)


if __name__ == "__main__":
    unittest.main()
