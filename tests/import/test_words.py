"""What the program says beside what is wrong with recipes and meshes: expressions, files that cannot be
read, packages that are not there, notes on the way; and the deck of a small mesh as a whole."""
import os
import pathlib
import subprocess
import sys
import unittest

import numpy

from program import MESH, RECIPE, Program
from recipes import SHELL
from support import PROGRAM, Case

FUNCTIONS = "sin, cos, tan, asin, acos, atan, atan2, hypot, sqrt, exp, log, log10, abs, min, max"
DECK = """\
# >>> kestol-import head: generated; a new run replaces all down to the closing mark
PROBLEM imported mesh
TYPE 3d
# made from m.msh and r.toml
units_names
  # name, force, length, pressure, force factor, length factor
  N-mm  N  mm  MPa  1.0  0.001
end
units_mesh mm
units_mat_and_load N-mm
units_res N-mm
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
end constraints
# <<< kestol-import supports
# >>> kestol-import loads: generated; a new run replaces all down to the closing mark
# no loads
# <<< kestol-import loads
"""


class Expressions(Program):
    def test_what_is_no_expression(self):
        for source, words in (
                ("x +", '"x +" is no expression of x, y and z'),
                ("", '"" is no expression of x, y and z'),
                ("x" + "+x" * 500, "an expression has at most 1000 characters"),
                ("'a'", "'a' is not a number"), ("True", "True is not a number"),
                ("1j", "1j is not a number"),
                ("1e400", "a number of the expression is too large"),
                ("x // y", '"x // y" is not arithmetic'), ("[x]", '"[x]" is not arithmetic'),
                ("not x", '"not x" is not arithmetic'), ("x.real", '"x.real" is not arithmetic'),
                ("open(x)", f'function "open" is not known: {FUNCTIONS} are'),
                ("x.y(3)", f'function "x.y" is not known: {FUNCTIONS} are'),
                ("sin(x, y)", 'function "sin" takes 1 argument'),
                ("sin(x=1)", 'function "sin" takes 1 argument'),
                ("atan2(x)", 'function "atan2" takes 2 arguments'),
                ("min(x)", 'function "min" takes 2 to 8 arguments'),
                ("max(*x)", 'function "max" takes 2 to 8 arguments')):
            with self.subTest(source):
                self.write("r.toml", SHELL + f'[load.p]\ngroups = ["plate"]\nnormal = "{source}"\n')
                self.refused(f"r.toml:9:10: error: normal: {words} [expression]", "m.msh", "r.toml",
                             "-o", "d.dat")

    def test_what_is_too_deep_for_a_walk(self):
        self.write("r.toml", SHELL + f'[load.p]\ngroups = ["plate"]\nnormal = "{"-" * 999}x"\n')
        self.refused("r.toml:9:10: error: normal: the expression is nested too deeply [expression]",
                     "m.msh", "r.toml", "-o", "d.dat")


class Files(Program):
    def test_files_that_cannot_be_read(self):
        for name, words in (("none", "No such file or directory"), (".", "Is a directory"),
                            ("/proc/self/mem", "Input/output error")):
            for arguments in ((name, "r.toml"), ("m.msh", name)):
                self.refused(f"{name}: error: cannot be read: {words} [file]", *arguments, "-o", "d.dat")
        self.write("blank.msh", " \n")
        self.refused("blank.msh: error: the file is empty [mesh]", "blank.msh", "r.toml", "-o", "d.dat")

    def test_files_that_are_no_mesh(self):
        """What stands behind the second colon are words of the libraries."""
        for name, words, code in (("m.xyz", "meshio cannot read this file (.xyz)", "mesh"),
                                  ("mesh", "meshio cannot read this file (no suffix)", "mesh"),
                                  ("m.dxf", "cannot be read as DXF", "dxf")):
            self.write(name, "junk")
            done = self.run_import("-q", name, "r.toml", "-o", "d.dat")
            self.assertEqual(done.returncode, 2)
            self.assertRegex(done.stderr, rf"^{name}: error: \S.*: [^\n]+ \[{code}\]\n$")
            self.assertTrue(done.stderr.startswith(f"{name}: error: {words}: "), done.stderr)

    def test_a_long_key(self):
        key = ".".join("abcdefghijklmnopqrstu")
        self.write("r.toml", f"{key} = 1\n")
        done = self.refused("r.toml:1:40: error: a key of more than 20 parts [toml]", "m.msh",
                            "r.toml", "-o", "d.dat")
        self.assertEqual(done.stderr.splitlines()[1:],
                         [f"    1 | {key} = 1", "      | " + " " * 39 + "^"])

    def test_a_value_nested_too_deeply(self):
        self.write("r.toml", f"a = {'[' * 3000}{']' * 3000}\n")
        done = self.refused("r.toml: error: no TOML: nested too deeply [toml]", "m.msh", "r.toml",
                            "-o", "d.dat")
        self.assertEqual(len(done.stderr.splitlines()), 1)

    def test_a_mistake_far_behind_in_a_line(self):
        """Of a long line the beginning is shown, and no caret where none would stand."""
        for blanks, lines in ((980, 3), (1100, 1)):
            self.write("r.toml", f"a = 1{' ' * blanks}b\n")
            done = self.run_import("m.msh", "r.toml", "-o", "d.dat")
            found = done.stderr.splitlines()
            self.assertRegex(found[0], rf"^r.toml:1:{blanks + 6}: error: no TOML: .* \[toml\]$")
            self.assertEqual(len(found), lines)
            if lines > 1:
                self.assertEqual(found[2], "      | " + " " * (blanks + 5) + "^")

    def test_a_fraction_in_place_of_a_number(self):
        self.write("m.msh", "$MeshFormat\n4.1 0 8\n$EndMeshFormat\n"
                   "$Nodes\n1 2 1 2\n1 1.5 0 2\n1\n2\n0 0 0\n1 0 0\n"
                   "$EndNodes\n$Elements\n1 1 1 1\n1 1 1 1\n1 1 2\n$EndElements\n")
        done = self.run_import("m.msh", "r.toml", "-o", "d.dat")
        self.assertEqual(done.returncode, 2)
        self.assertEqual(done.stderr, "m.msh:11: error: $Nodes holds a fraction where a whole number "
                         "is expected [mesh]\n")

    def test_outputs_that_cannot_be_written(self):
        for name, words in (("no/d.dat", "No such file or directory"), (".", "Is a directory")):
            self.refused(f"{name}: error: cannot be written: {words} [output]", "m.msh", "r.toml", "-o", name)


class Packages(Case):
    """Pythons with less than the program asks for: without Debian's packages, and with numpy alone."""

    def run_with(self, *packages):
        folder = self.folder / "packages"
        folder.mkdir()
        for package in packages:
            os.symlink(pathlib.Path(package.__file__).parent, folder / package.__name__)
        self.write("m.xyz", "junk")
        self.write("m.dxf", "junk")
        self.write("r.toml", SHELL)
        return [subprocess.run([sys.executable, "-S", "-B", PROGRAM, mesh, "r.toml", "-o", "d.dat"],
                               text=True, cwd=self.folder, capture_output=True, check=False,
                               env={**os.environ, "PYTHONPATH": str(folder)}) for mesh in ("m.xyz", "m.dxf")]

    def test_no_numpy(self):
        for done in self.run_with():
            self.assertEqual((done.returncode, done.stdout, done.stderr), (
                2, "", "kestol-import: error: the Python module numpy is missing (Debian: python3-numpy)\n"))

    def test_no_readers(self):
        xyz, dxf = self.run_with(numpy)
        self.assertEqual((xyz.returncode, xyz.stderr), (
            2, "m.xyz: error: files of this kind need the package python3-meshio [mesh]\n"))
        self.assertEqual((dxf.returncode, dxf.stderr), (
            2, "m.dxf: error: DXF files need the package python3-ezdxf [dxf]\n"))


class Notes(Program):
    def notes(self, *arguments):
        done = self.run_import("-v", "--force", *arguments, "-o", "d.dat")
        self.assertEqual(done.returncode, 0, done.stderr)
        return [line.split("note: ")[1] for line in done.stderr.splitlines() if "note: " in line]

    def test_of_a_mesh_that_meshio_reads(self):
        self.write("square.obj", "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 0 0 0\nf 1 2 3\nf 5 3 4\n")
        self.write("r.toml", SHELL.replace("plate", "obj:group_ids:-1"))
        self.assertEqual(self.notes("--merge", "0", "square.obj", "r.toml"), [
            "numbers of the mesh are positions in the file, from 1", "1 node merged within 0",
            "1 node without an element dropped"])

    def test_of_quadrilaterals_and_lines_by_hand(self):
        triangles, quad = "12 2 2 3 1 1 2 3\n13 2 2 3 1 1 3 4\n", "12 3 2 3 1 1 2 3 4\n"
        self.write("m.msh", MESH.replace(triangles, quad).replace("$Elements\n6", "$Elements\n5"))
        for kept in ("0 lines", "1 line", "2 lines"):
            notes = self.notes("--split-quads", "m.msh", "r.toml")
            self.assertEqual(notes[0], "1 quadrilateral split")
            if kept != "0 lines":
                self.assertEqual(notes[-1], f"d.dat: {kept} by hand kept around the blocks")
            self.write("d.dat", self.read("d.dat") + "# by hand\n")


class WholeDeck(Program):
    def test_a_small_one(self):
        self.write("r.toml", '[problem]\nmesh_unit = "mm"\nresults = "N-mm"\n[units.N-mm]\nforce = "N"\n'
                   'length = "mm"\npressure = "MPa"\nfactors = [1, 0.001]\n' + SHELL)
        done = self.run_import("m.msh", "r.toml", "-o", "d.dat")
        self.assertEqual(done.returncode, 0)
        self.assertEqual(self.read("d.dat"), DECK)

    def test_its_title(self):
        self.assertEqual(RECIPE.splitlines()[1], 'title = "two triangles"')
        self.made("m.msh", "r.toml", "-o", "d.dat")
        self.assertEqual(self.read("d.dat").splitlines()[1], "PROBLEM two triangles")


if __name__ == "__main__":
    unittest.main()
