"""Mesh, deck, grid of kestol-export, deck again: the results stay."""
import os
import shutil
import subprocess
import unittest

import meshio
import numpy as np
from support import ROOT, Case

EXPORT = os.environ["KESTOL_EXPORT"]
EXAMPLES = ROOT / "examples"


class Grids(Case):
    def exported(self, deck, encoding="base64"):
        """grid.vtu, the grid of a solved deck."""
        subprocess.run([EXPORT, "--encoding", encoding, "--vtu", "grid.vtu", deck],
                       cwd=self.folder, check=True)
        return self.folder / "grid.vtu"

    def grid_of(self, deck, encoding="base64"):
        return meshio.read(self.exported(deck, encoding))

    def again(self, grid, material, dofs):
        """The deck of the grid alone: its supports, and the nodal forces of all its loads."""
        recipe = [f'[material.s]\ngroups = ["material:1"]\n{material}\n']
        codes = grid.point_data["support"][:, :dofs]
        forces = grid.point_data["F"]
        for k, number in enumerate(grid.point_data["node"]):
            if codes[k].any():
                recipe.append(f'[support.s{k}]\ngroups = ["node:{number}"]\n'
                              f'codes = "{"".join(map(str, codes[k]))}"\n')
            if forces[k].any():
                recipe.append(f'[load.f{k}]\ngroups = ["node:{number}"]\n'
                              f'force = {forces[k].tolist()}\n')
        self.write("again.toml", "".join(recipe))
        self.made("grid.vtu", "again.toml", "-o", "again.dat")
        return self.grid_of("again.dat")

    def compare(self, first, second, names):
        np.testing.assert_array_equal(second.points, first.points)
        self.assertEqual([block.type for block in second.cells], [b.type for b in first.cells])
        for mine, theirs in zip(second.cells, first.cells):
            np.testing.assert_array_equal(mine.data, theirs.data)
        for name in names:
            wanted, found = (grid.point_data[name] if name in grid.point_data
                             else grid.cell_data[name][0] for grid in (first, second))
            self.assertGreater(np.abs(wanted).max(), 0)
            np.testing.assert_allclose(found, wanted, rtol=0, atol=1e-9 * np.abs(wanted).max(),
                                       err_msg=name)

    def test_a_plate_of_ten_noded_solids(self):
        mesh = """
SetFactory("OpenCASCADE");
Box(1) = {0, 0, 0, 4, 1, 1};
Physical Volume("plate") = {1};
Physical Surface("foot") = {1};
Physical Surface("tip") = {2};
Physical Surface("top") = {6};
Mesh.CharacteristicLengthMax = 0.7;
"""
        steel = "E = 210e3\nnu = 0.3"
        self.write("m.toml", f'[material.s]\ngroups = ["plate"]\n{steel}\n'
                   '[support.f]\ngroups = ["foot"]\ncodes = "111"\n'
                   '[load.t]\ngroups = ["tip"]\nforce = [0, 0, -1000]\n'
                   '[load.p]\ngroups = ["top"]\nnormal = "-10-x"\n')
        self.made(self.mesh("m.msh", mesh, "-3", "-order", "2"), "m.toml", "-o", "first.dat")
        for encoding in ("raw", "base64", "ascii"):
            with self.subTest(encoding=encoding):
                first = self.grid_of("first.dat", encoding)
                self.compare(first, self.again(first, steel, 3), ["U", "stress"])
                (self.folder / "again.dat").unlink()

    def test_a_tank_of_shells(self):
        """Solved as it is meshed: mid-sides of the conversion to six nodes have no numbers."""
        for name in ("tank.geo", "tank.toml"):
            shutil.copy(EXAMPLES / "import" / name, self.folder)
        subprocess.run([os.environ.get("GMSH", "gmsh"), "-v", "1", "-2", "tank.geo", "-o",
                        "tank.msh"], cwd=self.folder, check=True, stdin=subprocess.DEVNULL)
        self.write("three.toml", self.read("tank.toml").replace("six_nodes = true", ""))
        self.made("tank.msh", "three.toml", "-o", "first.dat")
        first = self.grid_of("first.dat")
        second = self.again(first, "E = 30e6\nnu = 0.0\nG = 15e6\nt = 0.25", 6)
        self.compare(first, second, ["U", "R", "n", "m", "q"])

    def test_beams_of_a_grid_are_missed_aloud(self):
        """Polylines, which meshio leaves out."""
        shutil.copy(EXAMPLES / "15-stiffened-plate.dat", self.folder / "first.dat")
        self.exported("first.dat")
        done = self.run_import("--list", "grid.vtu")
        self.assertEqual(done.returncode, 0)
        self.assertEqual(done.stderr, "grid.vtu: warning: meshio: File contains cells that meshio "
                         "cannot handle (type 4). [reader]\n")
        self.assertEqual(self.run_import("-q", "--list", "grid.vtu").stderr, "")
        shutil.copy(EXAMPLES / "01-cantilever.dat", self.folder / "first.dat")
        self.exported("first.dat")
        done = self.run_import("--list", "grid.vtu")
        self.assertEqual(done.returncode, 2)
        self.assertIn("[reader]\ngrid.vtu: error: the mesh has no cells [mesh]\n", done.stderr)


if __name__ == "__main__":
    unittest.main()
