"""The command line and its files: options, reports, marked blocks, outputs, failures."""
import os
import pathlib
import pty
import re
import stat
import subprocess
import sys
import unittest

from support import PROGRAM, ROOT, Case, Deck

MESH = """\
$MeshFormat
2.2 0 8
$EndMeshFormat
$PhysicalNames
4
0 1 "tip"
1 2 "left"
2 3 "plate"
2 4 "more"
$EndPhysicalNames
$Nodes
7
1 0 0 0
2 1 0 0
3 1 1 0
4 0 1 0
5 9 9 9
6 1.001 1 0
7 2 1 0
$EndNodes
$Elements
6
10 15 2 1 1 3
11 1 2 2 1 4 1
12 2 2 3 1 1 2 3
13 2 2 3 1 1 3 4
14 2 2 4 1 1 3 4
15 2 2 5 1 2 7 6
$EndElements
"""
RECIPE = """\
[problem]
title = "two triangles"
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
"""


class Program(Case):
    def setUp(self):
        super().setUp()
        self.write("m.msh", MESH)
        self.write("r.toml", RECIPE)


class CommandLine(Program):
    def test_help_and_version_go_to_standard_output(self):
        done = self.run_program("--help")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        for option in ("-o ", "--list", "--map", "--order", "--merge", "--split-quads", "--force",
                       "-q", "-v", "--version", "exit status: 0 done; 2 not done"):
            self.assertIn(option, done.stdout)
        done = self.run_program("--version")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        version = re.search(r"project\(kestol VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text())
        self.assertEqual(done.stdout, f"kestol-import {version[1]}\n")

    def test_wrong_command_lines_end_in_one_line(self):
        for arguments, text in (
                ([], "the following arguments are required: MESH"),
                (["m.msh"], "a recipe is missing"), (["m.msh", "r.toml"], "-o DECK is missing"),
                (["m.msh", "r.toml", "-o"], "argument -o/--output: expected one argument"),
                (["--bogus", "m.msh", "r.toml", "-o", "d"], "unrecognized arguments: --bogus"),
                (["--lis", "m.msh"], "unrecognized arguments: --lis"),
                (["--list", "m.msh", "r.toml"], "--list takes a mesh only"),
                (["--list", "m.msh", "--map", "x"], "--list takes a mesh only"),
                (["m.msh", "r.toml", "-o", "-", "--map", "-"],
                 "the deck and the map cannot both go to standard output"),
                (["m.msh", "r.toml", "x", "-o", "d"], "unrecognized arguments: x"),
                (["--order", "best", "m.msh", "r.toml", "-o", "d"], "argument --order: invalid choice:"
                 " 'best' (choose from 'keep', 'rcm')"),
                (["--merge", "-1", "m.msh", "r.toml", "-o", "d"],
                 'argument --merge: "-1" is not a distance'),
                (["--merge", "nan", "m.msh", "r.toml", "-o", "d"],
                 'argument --merge: "nan" is not a distance'),
                (["--merge", "x", "m.msh", "r.toml", "-o", "d"],
                 'argument --merge: "x" is not a distance')):
            with self.subTest(arguments=arguments):
                done = self.run_import(*arguments)
                self.assertEqual((done.returncode, done.stdout), (2, ""))
                self.assertEqual(done.stderr, f"kestol-import: {text}; try kestol-import --help\n")

    def test_two_dashes_end_the_options(self):
        os.rename(self.folder / "m.msh", self.folder / "-m.msh")
        self.made("-o", "d.dat", "--", "-m.msh", "r.toml")

    def test_a_list_of_groups(self):
        self.assertEqual(self.made("--list", "m.msh"), """\
group  dim  cells  nodes  size
tip      0      1      1
left     1      1      2  length 1
plate    2      2      4  area 1
more     2      1      3  area 0.5
5        2      1      3  area 0.4995
7 nodes; x 0 to 9, y 0 to 9, z 0 to 9
1 point of 1, 1 line of 2, 4 triangles of 3
""")
        self.assertEqual(self.made("--list", "m.msh", "-o", "list.txt"), "")
        self.assertEqual(self.read("list.txt"), self.made("--list", "m.msh"))

    def test_the_report_says_what_was_applied_where(self):
        self.assertEqual(self.made("m.msh", "r.toml", "-o", "d.dat"), """\
d.dat: 4 nodes, 2 triangles of 3 nodes
material "steel" on "plate": 2 triangles, area 1
support "left" on "left": 1 line, length 1, 2 nodes, codes 111111
load "tip" on "tip": 1 point, shared by 1 node
    force (0, 0, -1), moment about the origin (-1, 1, 0)
""")

    def test_quiet_says_nothing_and_verbose_more(self):
        done = self.run_import("-q", "m.msh", "r.toml", "-o", "d.dat")
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))
        done = self.run_import("-v", "--force", "--merge", "0.01", "m.msh", "r.toml", "-o", "d.dat")
        self.assertEqual(done.stderr, """\
kestol-import: note: 1 nodes merged within 0.01
m.msh: warning: 1 triangle without material: left out [no-material]
kestol-import: note: 3 nodes without an element dropped
kestol-import: note: d.dat: 0 lines by hand stay around the blocks
""")

    def test_old_and_new_numbers(self):
        self.made("-q", "m.msh", "r.toml", "-o", "d.dat", "--map", "map.csv", "--merge", "0.01")
        self.assertEqual(self.read("map.csv"), """\
kind,old,new
node,1,1
node,2,2
node,3,3
node,4,4
node,5,
node,6,3
node,7,
element,12,1
element,13,2
cell,10,
cell,11,
cell,14,
cell,15,
""")

    def test_merged_nodes_join_what_touches(self):
        self.write("r.toml", RECIPE.replace('["plate"]', '["plate", "5"]'))
        self.made("m.msh", "r.toml", "-o", "d.dat", "--merge", "0.01")
        self.assertEqual(len(Deck(self.read("d.dat")).nodes), 5)
        self.made("m.msh", "r.toml", "-o", "d.dat", "--force", "--merge", "0")
        self.assertEqual(len(Deck(self.read("d.dat")).nodes), 6)

    def test_numbers_of_small_bandwidth(self):
        """A strip whose nodes are numbered at random, and the same answers."""
        import random
        chance = random.Random(4)
        n = 20
        numbers = list(range(1, 2 * n + 1))
        chance.shuffle(numbers)
        nodes = [f"{numbers[2 * i + j]} {i} {j} 0" for i in range(n) for j in (0, 1)]
        cells = []
        for i in range(n - 1):
            a, b, c, d = (numbers[2 * i], numbers[2 * i + 2], numbers[2 * i + 3], numbers[2 * i + 1])
            cells += [(a, b, c), (a, c, d)]
        text = ["$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes", str(2 * n), *nodes, "$EndNodes",
                "$Elements", str(len(cells) + 2), f"1 1 2 2 1 {numbers[0]} {numbers[1]}",
                f"2 15 2 1 1 {numbers[-1]}"]
        text += [f"{k} 2 2 3 1 {a} {b} {c}" for k, (a, b, c) in enumerate(cells, 3)]
        self.write("m.msh", "\n".join([*text, "$EndElements", ""]))
        self.write("r.toml", RECIPE.replace("plate", "3").replace('"left"]', '"2"]').replace(
            '"tip"]', '"1"]'))
        tips, widths = [], []
        for order in ("keep", "rcm"):
            self.made("m.msh", "r.toml", "-o", "d.dat", "--force", "--order", order)
            results = self.solve("d.dat")
            tips.append(results.at(n - 1, 1, 0))
            widths.append(max(max(e[0]) - min(e[0]) for e in results.deck.elements.values()))
        for a, b in zip(*tips):
            self.assertAlmostEqual(a, b, delta=1e-5 * abs(tips[0][2]))
        self.assertGreater(widths[0], 20)
        self.assertLessEqual(widths[1], 3)


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
        self.assertIn("force (0, 0, -1), moment about the origin (-0.5, 0.5, 0)", report)
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
        self.assertIn("note: d.dat: 4 lines by hand stay around the blocks", done.stderr)
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


class Outputs(Program):
    def test_outputs_that_name_an_input_are_refused(self):
        os.link(self.folder / "m.msh", self.folder / "same.msh")
        os.symlink("r.toml", self.folder / "link.toml")
        for arguments, message in (
                (["-o", "m.msh"], "m.msh: error: the output names the mesh itself"),
                (["-o", "./m.msh"], "./m.msh: error: the output names the mesh itself"),
                (["-o", "same.msh"], "same.msh: error: the output names the mesh itself"),
                (["-o", "link.toml"], "link.toml: error: the output names the recipe itself"),
                (["-o", "d.dat", "--map", "r.toml"],
                 "r.toml: error: the output names the recipe itself"),
                (["-o", "d.dat", "--map", "d.dat"],
                 "d.dat: error: the output names the deck itself")):
            with self.subTest(arguments=arguments):
                self.refused(message + " [output]", "--force", "m.msh", "r.toml", *arguments)
        self.assertEqual((self.read("m.msh"), self.read("r.toml")), (MESH, RECIPE))
        self.refused("m.msh: error: the output names the mesh itself [output]", "--list", "m.msh",
                     "-o", "m.msh")

    def test_a_deck_on_standard_output(self):
        done = self.run_program("m.msh", "r.toml", "-o", "-")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.made("m.msh", "r.toml", "-o", "d.dat")
        self.assertEqual(done.stdout, self.read("d.dat"))
        self.assertIn('load "tip" on "tip"', done.stderr)

    def test_a_map_on_standard_output(self):
        done = self.run_program("m.msh", "r.toml", "-o", "d.dat", "--map", "-")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertTrue(done.stdout.startswith("kind,old,new\nnode,1,1\n"))
        self.assertIn('load "tip" on "tip"', done.stderr)

    def test_a_pipe_is_written_directly(self):
        os.mkfifo(self.folder / "pipe")
        with subprocess.Popen(["cat", "pipe"], cwd=self.folder, stdout=subprocess.PIPE,
                              text=True) as reader:
            self.made("m.msh", "r.toml", "-o", "pipe")
            text = reader.communicate(timeout=60)[0]
        self.assertTrue(text.endswith("# <<< kestol-import loads\n"))
        self.assertTrue(stat.S_ISFIFO(os.stat(self.folder / "pipe").st_mode))

    def test_a_full_disk_leaves_nothing(self):
        done = self.run_program("m.msh", "r.toml", "-o", "/dev/full")
        self.assertEqual(done.returncode, 2)
        self.assertIn("/dev/full: error: cannot be written: No space left on device [output]",
                      done.stderr)
        with open("/dev/full", "w", encoding="utf-8") as full:
            for arguments in (["m.msh", "r.toml", "-o", "-"], ["--list", "m.msh"],
                              ["m.msh", "r.toml", "-o", "d.dat"]):
                done = self.run_program(*arguments, capture_output=False, stdout=full,
                                        stderr=subprocess.PIPE)
                self.assertEqual(done.returncode, 2, arguments)
                self.assertIn("standard output: error: cannot be written: No space left on device "
                              "[output]\n", done.stderr)
                self.assertNotIn("Traceback", done.stderr)
        before = sorted(os.listdir(self.folder))
        limited = f"ulimit -f 0; exec {sys.executable} -B {PROGRAM} m.msh r.toml -o e.dat"
        done = subprocess.run(["sh", "-c", "trap '' XFSZ; " + limited], cwd=self.folder, text=True,
                              stderr=subprocess.PIPE, check=False)
        self.assertEqual(done.returncode, 2)
        self.assertIn("e.dat: error: cannot be written: File too large [output]", done.stderr)
        self.assertEqual(sorted(os.listdir(self.folder)), before)

    def test_folders_that_are_not_there_or_closed(self):
        self.refused("no/d.dat: error: cannot be written: No such file or directory [output]",
                     "m.msh", "r.toml", "-o", "no/d.dat")
        self.refused(".: error: cannot be written: Is a directory [output]", "m.msh", "r.toml",
                     "-o", ".")
        self.refused("none.toml: error: cannot be read: No such file or directory [file]",
                     "m.msh", "none.toml", "-o", "d.dat")

    def test_links_and_modes_stay(self):
        self.made("m.msh", "r.toml", "-o", "real.dat")
        os.chmod(self.folder / "real.dat", 0o640)
        os.symlink("real.dat", self.folder / "link.dat")
        self.made("--force", "m.msh", "r.toml", "-o", "link.dat")
        self.assertTrue((self.folder / "link.dat").is_symlink())
        self.assertEqual(stat.S_IMODE(os.stat(self.folder / "real.dat").st_mode), 0o640)
        self.assertEqual(sorted(os.listdir(self.folder)),
                         ["link.dat", "m.msh", "r.toml", "real.dat"])

    def test_little_memory_is_a_message(self):
        limited = (f"ulimit -v 400000; OPENBLAS_NUM_THREADS=1 exec {sys.executable} -B {PROGRAM} "
                   "huge.msh r.toml -o d.dat")
        with open(self.folder / "huge.msh", "wb") as huge:
            huge.write(MESH.encode())
            huge.truncate(500_000_000)
        done = subprocess.run(["sh", "-c", limited], cwd=self.folder, text=True, check=False,
                              stderr=subprocess.PIPE)
        self.assertEqual((done.returncode, done.stderr),
                         (2, "huge.msh: error: not enough memory [memory]\n"))

    def test_a_reader_that_leaves_early(self):
        done = subprocess.run(["sh", "-c", f"{sys.executable} -B {PROGRAM} m.msh r.toml -o - | :"],
                              cwd=self.folder, text=True, stderr=subprocess.PIPE, check=False)
        self.assertNotIn("Traceback", done.stderr)


class Terminals(Program):
    def on_terminal(self, *arguments, **environment):
        """Standard error as a terminal shows it."""
        master, slave = pty.openpty()
        with subprocess.Popen([sys.executable, "-B", PROGRAM, *arguments], cwd=self.folder,
                              stdout=subprocess.DEVNULL, stderr=slave,
                              env={**os.environ, "TERM": "xterm", **environment}) as process:
            os.close(slave)
            data = b""
            while True:
                try:
                    piece = os.read(master, 4096)
                except OSError:
                    break
                if not piece:
                    break
                data += piece
            process.wait(60)
        os.close(master)
        return data.decode()

    def test_colour_only_on_a_terminal_that_wants_it(self):
        os.unlink(self.folder / "r.toml")
        arguments = ("m.msh", "r.toml", "-o", "d.dat")
        self.assertIn("\033[1;31merror:\033[0m", self.on_terminal(*arguments))
        self.assertNotIn("\033", self.on_terminal(*arguments, NO_COLOR="1"))
        self.assertNotIn("\033", self.on_terminal(*arguments, TERM="dumb"))
        self.assertNotIn("\033", self.run_program(*arguments).stderr)

    def test_long_work_shows_its_progress(self):
        """A mesh that comes through a slow pipe."""
        os.mkfifo(self.folder / "slow.msh")
        feed = f"sleep 3; cat {self.folder / 'm.msh'}"
        for quiet in ([], ["-q"]):
            with subprocess.Popen(["sh", "-c", f"({feed}) > slow.msh"], cwd=self.folder):
                said = self.on_terminal(*quiet, "--force", "slow.msh", "r.toml", "-o", "d.dat")
            if quiet:
                self.assertNotIn("reading", said)
            else:
                self.assertRegex(said, r"\d s  reading slow.msh\r\x1b\[K")
            self.assertNotIn("Traceback", said)


class Places(Case):
    def test_nothing_is_written_beside_the_input(self):
        self.write("m.msh", MESH)
        self.write("r.toml", RECIPE)
        inner = self.folder / "in"
        inner.mkdir()
        for name in ("m.msh", "r.toml"):
            os.rename(self.folder / name, inner / name)
        os.chmod(inner, 0o555)
        self.made("in/m.msh", "in/r.toml", "-o", "d.dat")
        self.assertEqual(sorted(os.listdir(inner)), ["m.msh", "r.toml"])
        os.chmod(inner, 0o755)

    def test_the_program_runs_from_a_link_and_an_installed_tree(self):
        import shutil
        bin_folder, share = self.folder / "bin", self.folder / "share" / "kestol"
        bin_folder.mkdir()
        shutil.copy(PROGRAM, bin_folder / "kestol-import")
        shutil.copytree(ROOT / "import" / "kestol_import", share / "kestol_import",
                        ignore=shutil.ignore_patterns("__pycache__"))
        os.symlink(bin_folder / "kestol-import", self.folder / "link")
        done = subprocess.run([str(self.folder / "link"), "--version"], text=True, check=False,
                              capture_output=True, env={**os.environ, "PYTHONPATH": ""})
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertTrue(pathlib.Path(PROGRAM).read_text().startswith("#!/usr/bin/python3\n"))


if __name__ == "__main__":
    unittest.main()
