"""Every refusal, by its whole message: exit status 2, one finding, no deck."""
import random
import unittest

from recipes import BEAM, SHELL, SOLID
from support import Case

# A square of two triangles over a tetrahedron that stands beside it, and a line.
MESH = """\
$MeshFormat
2.2 0 8
$EndMeshFormat
$PhysicalNames
7
0 7 "dot"
1 1 "edge"
1 6 "loose line"
2 2 "plate"
2 3 "loose"
2 5 "face"
3 4 "body"
$EndPhysicalNames
$Nodes
9
1 0 0 0
2 1 0 0
3 1 1 0
4 0 1 0
5 0 0 1
6 5 0 0
7 6 0 0
8 5 1 0
9 5 0 1
$EndNodes
$Elements
8
1 1 2 1 1 1 2
2 2 2 2 1 1 2 3
3 2 2 2 1 1 3 4
4 2 2 3 1 6 7 9
5 4 2 4 1 1 2 3 5
6 2 2 5 1 1 2 5
7 1 2 6 1 6 7
8 15 2 7 1 9
$EndElements
"""
PRESSURE = '[load.p]\ngroups = ["plate"]\npressure = [0, 0, -1]\n'


class RecipeRefusals(Case):
    """(recipe, line:column, message): what is wrong with the recipe alone or with its groups."""

    CASES = [
        # TOML
        ("[material\n", "1:10", "no TOML: Expected ']' at the end of a table declaration [toml]"),
        ("a = 1 \n b = = 2\n", "2:6", "no TOML: Invalid value [toml]"),
        ('a = "x', "1", "no TOML: Unterminated string [toml]"),
        ("a = " + "[" * 5000, "", "no TOML: nested too deeply [toml]"),
        (SHELL + '[options]\nsolver = "Sparse a b 50"\n', "8:10",
         'solver: must be "Automatic", "SkyLine", "Double" or "Sparse tolerance1 tolerance2 '
         'iterations" [value]'),
        # keys
        (SHELL + "[loads.p]\nforce = 1\n", "7:1",
         '"loads" is not known here: did you mean "load"? [key]'),
        (SHELL.replace("nu =", "mu ="), "4:1", '"mu" is not known here: did you mean "nu"? [key]'),
        (SHELL.replace("t = 1", "T = 1"), "6:1", '"T" is not known here: did you mean "t"? [key]'),
        (SHELL + '[problem]\ntitel = "x"\n', "8:1",
         '"titel" is not known here: did you mean "title"? [key]'),
        (SHELL + "[options]\nsixnodes = true\n", "8:1",
         '"sixnodes" is not known here: did you mean "six_nodes"? [key]'),
        (SHELL + '[support.s]\ngroups = ["edge"]\n', "7:1", '[support.s] needs "codes" [key]'),
        (SHELL + '[support.s]\ncodes = "111111"\n', "7:1", '[support.s] needs "groups" [key]'),
        (SHELL + '[load.p]\ngroups = ["plate"]\n', "7:1",
         "[load.p] needs one of pressure, normal and force [key]"),
        (SHELL + PRESSURE + "normal = 1\n", "7:1",
         "[load.p] needs one of pressure, normal and force [key]"),
        (SHELL + '[beam.b]\ngroups = ["edge"]\n', "7:1", '[beam.b] needs "material" [key]'),
        (SHELL + '[units.u]\nforce = "N"\nlength = "m"\npressure = "Pa"\n', "7:1",
         '[units.u] needs "factors" [key]'),
        # misspelt keys that are needed
        (SHELL + PRESSURE.replace("pressure", "presure"), "9:1",
         '"presure" is not known here: did you mean "pressure"? [key]'),
        (SHELL + PRESSURE.replace("pressure", "Normal"), "9:1",
         '"Normal" is not known here: did you mean "normal"? [key]'),
        (SHELL + PRESSURE.replace("groups", "group"), "8:1",
         '"group" is not known here: did you mean "groups"? [key]'),
        (SHELL + '[support.s]\ngroups = ["edge"]\ncode = "1"\n', "9:1",
         '"code" is not known here: did you mean "codes"? [key]'),
        (SHELL + '[support.s]\nGroups = ["edge"]\ncodes = "111111"\n', "8:1",
         '"Groups" is not known here: did you mean "groups"? [key]'),
        (SHELL + '[beam.b]\ngroups = ["edge"]\nmatrial = "steel"\n', "9:1",
         '"matrial" is not known here: did you mean "material"? [key]'),
        (SHELL + '[units.u]\nforce = "N"\nlenght = "m"\npressure = "Pa"\nfactors = [1, 1]\n', "9:1",
         '"lenght" is not known here: did you mean "length"? [key]'),
        (SHELL + '[units.u]\nforce = "N"\nlength = "m"\npressure = "Pa"\nfactor = [1, 1]\n', "11:1",
         '"factor" is not known here: did you mean "factors"? [key]'),
        (SHELL.replace("[material.steel]", "[materials.steel]"), "1:1",
         '"materials" is not known here: did you mean "material"? [key]'),
        (SHELL.replace("groups", "grups"), "2:1",
         '"grups" is not known here: did you mean "groups"? [key]'),
        (SHELL + PRESSURE.replace("[0, 0, -1]", "[1]") + "qqq = 1\n", "10:1",
         '"qqq" is not known here [key]'),
        # values
        (SHELL + "[problem]\ntitle = 3\n", "8:9", "title: must be a text in quotes [value]"),
        (SHELL + '[problem]\ntitle = "a\\nb"\n', "8:9",
         "title: must be one line without control characters [value]"),
        (SHELL + '[problem]\ntitle = "Prototype"\n', "8:9",
         'title: must not contain the word "type": the solver would take it for the keyword '
         "[value]"),
        (SHELL + '[problem]\ntype = "2D"\n', "8:8", 'type: must be "2d" or "3d" [value]'),
        ("load = 1\n" + SHELL, "1:8", "load: must be a table: [load] [value]"),
        (SHELL + "[load]\np = 1\n", "8:5", "p: must be in a table: [load.NAME] [value]"),
        (SHELL + "[options]\nsix_nodes = 1\n", "8:13", "six_nodes: must be true or false [value]"),
        (SHELL + "[options]\nsmoothing = 4\n", "8:13",
         "smoothing: must be an angle in radians, above 0 and up to pi [value]"),
        (SHELL + "[options]\ndivisions = 0.5\n", "8:13",
         "divisions: must be a whole number above 0 [value]"),
        (SHELL + "[options]\ngravity = [0, 0]\n", "8:11",
         "gravity: must be a list of 3 numbers [value]"),
        (SHELL + "[options]\ngravity = [0, 0, 0]\n", "8:11",
         "gravity: must not be the null vector [value]"),
        (SHELL + '[options]\nsolver = "Sparse 1e-8"\n', "8:10",
         'solver: must be "Automatic", "SkyLine", "Double" or "Sparse tolerance1 tolerance2 '
         'iterations" [value]'),
        (SHELL.replace("210e3", '"210e3"'), "3:5", "E: must be a number [value]"),
        (SHELL.replace("210e3", "true"), "3:5", "E: must be a number [value]"),
        (SHELL.replace("210e3", "inf"), "3:5", "E: must be finite [value]"),
        (SHELL.replace("210e3", "1" + "0" * 400), "3:5", "E: must be finite [value]"),
        (SHELL.replace('["plate"]', '"plate"'), "2:10",
         'groups: must be a list of names: ["one", "two"] [value]'),
        (SHELL.replace('["plate"]', '["plate", 2]'), "2:20",
         "groups: must be a name in quotes [value]"),
        (SHELL + '[support.s]\ngroups = ["edge"]\ncodes = "1131"\n', "9:9",
         "codes: must be 3 or 6 digits, each 0 (free), 1 (held) or 2 (spring) [value]"),
        (SHELL + '[support.s]\ngroups = ["edge"]\ncodes = "111000"\nvalues = [1]\n', "10:10",
         "values: must be a list of 6 numbers [value]"),
        (SHELL + '[support.s]\ngroups = ["edge"]\ncodes = "200000"\n', "9:9",
         'codes: a spring (2) needs its stiffness: "values" [value]'),
        (SHELL + PRESSURE.replace("[0, 0, -1]", "[0, -1]"), "9:12",
         "pressure: must be a list of 3 numbers [value]"),
        (BEAM + '[problem]\ntype = "2d"\n[load.p]\ngroups = ["edge"]\npressure = [0, 0, -1]\n',
         "13:19", "pressure: a 2d problem has no loads along z [value]"),
        (BEAM + '[beam.b]\ngroups = ["edge"]\nmaterial = "steel"\nup = [0, 0, 0]\n', "12:6",
         "up: must not be the null vector [value]"),
        (BEAM + '[beam.b]\ngroups = ["edge"]\nmaterial = "steel"\nup = [0, 0, 1]\nEuler1 = 1\n',
         "12:6", "up: the material has Euler angles already [value]"),
        (BEAM + '[beam.b]\ngroups = ["edge"]\nmaterial = "steel"\nup = [0, 0, 1]\n'
         '[problem]\ntype = "2d"\n', "12:6",
         "up: has no meaning in a 2d problem: z is up there [value]"),
        # units
        (SHELL + '[problem]\nresults = "N-mm"\n', "8:11",
         'results: there is no [units."N-mm"] [units]'),
        (SHELL + '[units.SI]\nforce = "N"\nlength = "m"\npressure = "Pa"\nfactors = [1, 1]\n'
         '[problem]\nmesh_unit = "mm"\n', "13:13",
         'mesh_unit: no unit system has the length "mm": did you mean "m"? [units]'),
        (SHELL + '[units.SI]\nforce = "N"\nlength = "m"\npressure = "Pa"\nfactors = [1, 0]\n',
         "11:11",
         "factors: must be positive: the sizes of the force and of the length [value]"),
        (SHELL + '[units.SI]\nforce = "kilo N"\nlength = "m"\npressure = "Pa"\nfactors = [1, 1]\n',
         "8:9", '"kilo N" is no name of a unit: up to 20 characters without blanks [units]'),
        (SHELL.replace("t = 1", 'units = "SI"'), "6:9", 'units: there is no [units."SI"] [units]'),
        # materials and groups
        ("[material.steel]\nE = 1\n", "",
         "no material names a group: nothing would become an element [material]"),
        (SHELL + '[beam.b]\ngroups = ["edge"]\nmaterial = "stel"\n', "9:12",
         'material: there is no [material."stel"]: did you mean "steel"? [material]'),
        (SHELL.replace('"plate"', '"plat"'), "2:11",
         'material "steel": the mesh has no group "plat": did you mean "plate"? [group]'),
        (SHELL + '[support.s]\ngroups = ["edge", "Qx"]\ncodes = "111111"\n', "8:19",
         'support "s": the mesh has no group "Qx"; it has dot, edge, loose line, plate, loose, '
         "face, body [group]"),
        (SHELL.replace('"plate"', '"dot"'), "2:11",
         'material "steel": group "dot" has no lines, surfaces or volumes [material]'),
        (BEAM + '[beam.b]\ngroups = ["plate"]\nmaterial = "steel"\n', "10:11",
         'beam "b": group "plate" has no lines [material]'),
        (SHELL + SHELL.replace("steel", "iron"), "8:11",
         'material "iron": cells of group "plate" belong to material "steel" already [material]'),
        (SHELL.replace("G = 80e3\nt = 1\n", ""), "1:1",
         'material "steel" lacks G, t for shells [missing-property]'),
        (SOLID.replace("nu = 0.3\n", ""), "1:1",
         'material "steel" lacks nu for solids [missing-property]'),
        (BEAM.replace("Iy = 1\n", "").replace("J = 1\n", ""), "1:1",
         'material "steel" lacks Iy, J for beams in space [missing-property]'),
        (BEAM.replace("A = 1\n", "") + '[problem]\ntype = "2d"\n', "1:1",
         'material "steel" lacks A for beams in a plane [missing-property]'),
        (BEAM + '[beam.b]\ngroups = ["loose line"]\nmaterial = "steel"\nup = [1, 0, 0]\n'
         '[problem]\n', None, "line 7 runs along its up direction [beam]"),
        (BEAM.replace("J = 1\n", "J = 1\nEuler3 = 1.5707963\n"), None,
         "line 1 runs across local x of the Euler angles of its material [beam]"),
        (SHELL + SOLID.replace("steel", "iron"), None,
         "tetrahedra cannot be mixed with beams or shells in one deck [material]"),
        (SHELL + '[problem]\ntype = "2d"\n', "8:8",
         'shells and solids need type = "3d" [plane]'),
        # supports
        (SHELL + '[support.s]\ngroups = ["edge"]\ncodes = "111"\n', "9:9",
         "codes: must be 6 digits, one for each degree of freedom [support]"),
        (SOLID + '[support.s]\ngroups = ["edge"]\ncodes = "111111"\n', "7:9",
         "codes: must be 3 digits, one for each degree of freedom [support]"),
        (SHELL + '[support.s]\ngroups = ["loose"]\ncodes = "111111"\n', "8:11",
         'support "s": no node of group "loose" belongs to an element [group]'),
        # loads
        (SOLID + PRESSURE.replace("plate", "loose"), "6:11",
         'load "p": group "loose": surface cell 4 belongs to no solid (1 of 1 do not) [face]'),
        (SOLID + PRESSURE, "6:11",
         'load "p": group "plate": surface cell 3 belongs to no solid (1 of 2 do not) [face]'),
        (SHELL + PRESSURE.replace("plate", "face"), "8:11",
         'load "p": group "face": surface cell 6 belongs to no element (1 of 1 do not) [face]'),
        (SHELL + PRESSURE.replace("plate", "body"), "8:11",
         'load "p": group "body" has cells of kind tetra, which no triangle has: mesh with '
         "triangles [face]"),
        (BEAM + PRESSURE, "10:11",
         'load "p": group "plate" has surfaces, which no element has [face]'),
        (SHELL + PRESSURE.replace("plate", "loose line"), "8:11",
         'load "p": group "loose line": line 7 belongs to no element (1 of 1 do not) [face]'),
        (BEAM + PRESSURE.replace("plate", "loose line"), "10:11",
         'load "p": group "loose line": line 7 belongs to no element (1 of 1 do not) [face]'),
        (SHELL + PRESSURE.replace("plate", "dot"), "8:11",
         'load "p": group "dot" has points only: use "force" [load]'),
        (SOLID + PRESSURE.replace("plate", "edge"), "6:11",
         'load "p": group "edge" has lines, and solids carry no load along lines: use "force" '
         "[load]"),
        (SOLID + '[load.p]\ngroups = ["body"]\nnormal = 1\n', "6:11",
         'load "p": group "body" has volumes, which have no normal [load]'),
        (SHELL + '[load.p]\ngroups = ["plate", "edge"]\nforce = [1, 0, 0]\n', "8:10",
         'load "p": groups of different dimensions cannot share a force [load]'),
        # expressions
        (SHELL + PRESSURE.replace("-1", '"-1*(6-w)"'), "9:19",
         'pressure: "w" is not known: x, y, z and pi are [expression]'),
        (SHELL + PRESSURE.replace("-1", '"1/(x-x)"'), "9:19",
         'pressure: "1/(x-x)" is inf at (0.666667, 0.333333, 0) [expression]'),
        (SHELL + '[load.p]\ngroups = ["plate"]\nnormal = "x^2"\n', "9:10",
         'normal: "x^2": a power is written as ** [expression]'),
        (SHELL + '[support.s]\ngroups = ["edge"]\ncodes = "100000"\n'
         'values = ["log(-1-x)", 0, 0, 0, 0, 0]\n', "10:11",
         'values: "log(-1-x)" is nan at (0, 0, 0) [expression]'),
    ]

    def test_each_message_has_its_line_and_column(self):
        self.write("m.msh", MESH)
        for recipe, where, text in self.CASES:
            with self.subTest(text=text):
                self.write("r.toml", recipe)
                place = "m.msh" if where is None else f"r.toml:{where}".rstrip(":")
                done = self.refused(f"{place}: error: {text}", "m.msh", "r.toml", "-o", "d.dat")
                self.assertFalse((self.folder / "d.dat").exists())
                if where and ":" in where:
                    line, column = map(int, where.split(":"))
                    source = recipe.split("\n")[line - 1]
                    self.assertEqual(done.stderr.splitlines()[1], f"{line:5d} | {source}")
                    self.assertEqual(done.stderr.splitlines()[2].index("^"), 8 + column - 1)

    def test_normals_within_the_material_are_refused(self):
        nodes = MESH.replace("9 5 0 1\n", "9 0 0 -1\n").replace("5 4 2 4 1 1 2 3 5",
                                                                "5 4 2 4 1 1 2 3 5\n9 4 2 4 1 1 3 2 9")
        self.write("m.msh", nodes.replace("$Elements\n8", "$Elements\n9"))
        self.write("r.toml", SOLID + '[load.p]\ngroups = ["plate"]\nnormal = 1\n')
        mesh = nodes.replace("3 2 2 2 1 1 3 4\n", "3 2 2 2 1 1 2 3\n")
        self.write("m.msh", mesh.replace("$Elements\n8", "$Elements\n9"))
        self.refused('r.toml:6:11: error: load "p": group "plate": triangle 2 lies between elements '
                     "and has no outward normal [load]", "m.msh", "r.toml", "-o", "d.dat")
        flat = self.read("m.msh").replace("1 2 3 5", "1 2 3 4")
        self.write("m.msh", flat)
        self.refused("m.msh: error: cell 5 has no volume [zero-size]",
                     "m.msh", "r.toml", "-o", "d.dat")

    def test_a_shell_edge_between_two_elements_has_no_normal(self):
        self.write("m.msh", MESH.replace("1 1 2 1 1 1 2\n", "1 1 2 1 1 1 3\n"))
        self.write("r.toml", SHELL + '[load.p]\ngroups = ["edge"]\nnormal = 1\n')
        self.refused('r.toml:8:11: error: load "p": group "edge": line 1 lies between elements and '
                     "has no outward normal [load]", "m.msh", "r.toml", "-o", "d.dat")

    def test_a_support_on_an_empty_group(self):
        self.write("m.msh", MESH.replace("$PhysicalNames\n7", '$PhysicalNames\n8\n2 99 "empty"'))
        self.write("r.toml", SHELL + '[support.s]\ngroups = ["empty"]\ncodes = "111111"\n')
        self.refused('r.toml:8:11: error: support "s": group "empty" is empty [group]', "m.msh",
                     "r.toml", "-o", "d.dat")

    def test_copies_of_the_same_cells_in_two_materials(self):
        self.write("m.msh", MESH.replace("6 2 2 5 1 1 2 5", "6 2 2 5 1 3 2 1"))
        self.write("r.toml", SHELL + SHELL.replace("steel", "iron").replace("plate", "face"))
        self.refused('r.toml:8:11: error: material "iron": cells of group "face" belong to material '
                     '"steel" already [material]', "m.msh", "r.toml", "-o", "d.dat")

    def test_recipes_changed_at_random(self):
        """Whatever stands in a recipe: a deck or a finding, never a trace."""
        chance = random.Random(18)
        seeds = [recipe for recipe, *_ in self.CASES if len(recipe) < 1000]
        words = ['"x"', "[1, 2, 3]", "{a = 1}", "1979-05-27", "inf", "true", "[]", '""', '"1/x"',
                 "\n[load.q]\n", 'groups = ["edge"]\n', "[[load]]\n", *'[]{}="\\.,#\n -e1']
        self.write("m.msh", MESH)
        for _ in range(400):
            recipe = chance.choice(seeds)
            for _ in range(chance.randrange(1, 4)):
                at = chance.randrange(len(recipe) + 1)
                recipe = recipe[:at] + chance.choice(words) + recipe[at + chance.randrange(3):]
            with self.subTest(recipe=recipe):
                self.write("r.toml", recipe)
                done = self.run_import("--force", "m.msh", "r.toml", "-o", "d.dat")
                self.assertIn(done.returncode, (0, 2))

    def test_a_recipe_that_is_no_utf_8_is_refused(self):
        self.write("m.msh", MESH)
        self.write("r.toml", SHELL.encode() + b"# \xff\n")
        self.refused("r.toml:7: error: the recipe is not UTF-8 [toml]", "m.msh", "r.toml", "-o",
                     "d.dat")


if __name__ == "__main__":
    unittest.main()
