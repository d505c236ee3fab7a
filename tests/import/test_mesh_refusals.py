"""Meshes that no deck can hold, and loads that they cannot carry."""
import unittest

from recipes import BEAM, SHELL, SOLID
from support import Case


class MeshRefusals(Case):
    """Cells that the solver has no element for."""

    NODES = ["0 0 0", "1 0 0", "1 1 0", "0 1 0", "0 0 1", "1 0 1", "1 1 1", "0 1 1"]

    def cells(self, *rows):
        """A mesh of rows 'type nodes', all in group "body"."""
        text = ["$MeshFormat", "2.2 0 8", "$EndMeshFormat", "$PhysicalNames", "3", '1 1 "body"',
                '2 1 "body"', '3 1 "body"', "$EndPhysicalNames", "$Nodes"]
        nodes = self.NODES + [f"0.5 {k} 0.25" for k in range(20)]
        text += [str(len(nodes)), *(f"{i} {n}" for i, n in enumerate(nodes, 1)), "$EndNodes"]
        text += ["$Elements", str(len(rows))]
        for i, row in enumerate(rows, 1):
            kind, *places = row.split()
            text.append(f"{i} {kind} 2 1 1 {' '.join(places)}")
        self.write("m.msh", "\n".join([*text, "$EndElements", ""]))

    def refuse(self, message, recipe, *options):
        self.write("r.toml", recipe.replace("plate", "body").replace("edge", "body"))
        self.refused(message, *options, "m.msh", "r.toml", "-o", "d.dat")

    def test_bricks_wedges_and_pyramids(self):
        for row, what in (("5 1 2 3 4 5 6 7 8", "1 brick"), ("6 1 2 3 5 6 7", "1 wedge"),
                          ("7 1 2 3 4 5", "1 pyramid"),
                          ("17 " + " ".join(map(str, range(1, 21))), "1 brick")):
            with self.subTest(what=what):
                self.cells(row)
                self.refuse(f'r.toml:2:11: error: group "body" has {what}: mesh with tetrahedra '
                            "[bricks]", SOLID)

    def test_quadrilaterals(self):
        self.cells("3 1 2 3 4")
        self.refuse('r.toml:2:11: error: group "body" has 1 quadrilateral: mesh with triangles, or '
                    "split them with --split-quads [quads]", SHELL)
        self.cells("16 1 2 3 4 9 10 11 12")
        self.refuse("m.msh: error: quadrilaterals of second order cannot be split: mesh with "
                    "triangles [quads]", SHELL, "--split-quads")

    def test_orders(self):
        self.cells("21 1 2 3 4 5 6 7 8 9 10")
        self.refuse('r.toml:2:11: error: group "body" has 1 triangle with 10 nodes: elements have '
                    "order 1 or 2 [order]", SHELL)
        self.cells("2 1 2 3", "9 1 3 4 9 10 11")
        self.refuse("m.msh: error: mixed orders: some elements have mid-side nodes and some have "
                    "none [order]", SHELL)

    def test_loads_of_another_order(self):
        self.cells("4 1 2 4 5")
        text = self.read("m.msh").replace('3 1 "body"', '3 1 "body"\n2 2 "top"\n1 3 "rim"')
        text = text.replace("$PhysicalNames\n3", "$PhysicalNames\n5")
        text = text.replace("$Elements\n1", "$Elements\n3")
        self.write("m.msh", text.replace("$EndElements", "2 9 2 2 1 1 2 4 9 10 11\n"
                                         "3 8 2 3 1 1 2 9\n$EndElements"))
        self.refuse('r.toml:6:11: error: load "p": mixed orders: group "top" has 6-noded triangles '
                    "and the elements have 4 nodes [order]",
                    SOLID + '[load.p]\ngroups = ["top"]\nnormal = 1\n')
        self.cells("2 1 2 4")
        text = self.read("m.msh").replace('3 1 "body"', '1 3 "rim"')
        text = text.replace("$Elements\n1", "$Elements\n2")
        self.write("m.msh", text.replace("$EndElements", "3 8 2 3 1 1 2 9\n$EndElements"))
        self.refuse('r.toml:8:11: error: load "p": mixed orders: group "rim" has 3-noded lines and '
                    "the elements have 3 nodes [order]",
                    SHELL + '[load.p]\ngroups = ["rim"]\nnormal = 1\n')

    def test_elements_without_size(self):
        for row, recipe, what in (("1 1 1", BEAM, "length"), ("2 1 2 2", SHELL, "area"),
                                  ("4 1 2 3 4", SOLID, "volume")):
            with self.subTest(what=what):
                self.cells(row)
                self.refuse(f"m.msh: error: cell 1 has no {what} [zero-size]", recipe)

    def test_nodes_off_the_plane(self):
        self.cells("1 1 2", "1 2 6")
        self.refuse("m.msh: error: node 6 at (1, 0, 1) is off the plane of a 2d problem [plane]",
                    BEAM + '[problem]\ntype = "2d"\n')

    def test_forces_on_cells_that_share_none(self):
        self.cells("4 1 2 4 5")
        text = self.read("m.msh").replace('2 1 "body"', '2 2 "top"')
        self.write("m.msh", text.replace("$Elements\n1", "$Elements\n2").replace(
            "$EndElements", "2 3 2 2 1 1 2 4 5\n$EndElements"))
        self.refuse('r.toml:6:11: error: load "p": group "top" has cells of kind quad: a force is '
                    "shared over lines, triangles and tetrahedra [load]",
                    SOLID + '[load.p]\ngroups = ["top"]\nforce = [1, 0, 0]\n')

    def test_merging_too_much(self):
        self.cells("2 1 2 3")
        self.refuse("m.msh: error: --merge 1.2 is too large: two nodes of cell 1 would become one "
                    "[merge]", SHELL, "--merge", "1.2")

    def test_merging_everything(self):
        points = "\n".join(f"{k} {k * 1e-5:.6f} 0 0" for k in range(1, 3001))
        self.write("m.msh", "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n3000\n" + points +
                   "\n$EndNodes\n$Elements\n1\n1 1 2 1 1 1 3000\n$EndElements\n")
        self.refuse("m.msh: error: --merge 1 is too large: thousands of nodes would become one "
                    "[merge]", BEAM, "--merge", "1")


if __name__ == "__main__":
    unittest.main()
