"""Mesh files: Gmsh's four forms, other formats, names, damage."""
import re
import struct
import unittest
import warnings

import meshio
import numpy as np
from box import BOX, FORMS, RECIPE
from support import STEEL, Case, Deck


def nodal(deck):
    """Supports, forces and loads by places instead of numbers, sums of what stands on one place."""
    places = {n: tuple(round(c, 9) for c in x) for n, x in deck.nodes.items()}
    found = {}
    for number, codes, values in deck.supports:
        found[places[number], codes] = tuple(values)
    for number, force in deck.forces:
        found[places[number], "force"] = tuple(round(f, 9) for f in force)
    for section, element, values in deck.loads:
        corners = deck.elements[element][0]
        face = ((0, 1, 2), (1, 2, 3), (2, 3, 0), (3, 0, 1))[int(values[0])]
        key = frozenset(places[corners[i]] for i in face)
        found[key, section] = tuple(round(v, 9) for v in values[1:])
    return found


class GmshFiles(Case):
    def test_all_forms_and_orders_give_the_same_deck(self):
        for order in "12":
            decks, listings = [], []
            self.write("box.toml", RECIPE)
            for name, options in FORMS.items():
                with self.subTest(form=name, order=order):
                    self.mesh("box.msh", BOX, "-3", "-order", order, *options)
                    self.made("--force", "box.msh", "box.toml", "-o", "model.dat")
                    deck = Deck(self.read("model.dat"))
                    places = sorted(tuple(round(c, 9) for c in x) for x in deck.nodes.values())
                    decks.append((places, nodal(deck)))
                    listings.append(self.made("--list", "box.msh").split("\n")[:8])
            for other in decks[1:]:
                self.assertEqual(other, decks[0])
            for other in listings[1:]:
                self.assertEqual(other, listings[0])

    def test_names_keep_blanks_quotes_and_umlauts(self):
        self.mesh("box.msh", BOX, "-3")
        listing = self.made("--list", "box.msh")
        for line in (r"the body +3 +\d+ +\d+ +volume 2", r"foot 'of steel' +2 +\d+ +\d+ +area 1",
                     r"Dach #2 = größer +2 +\d+ +\d+ +area 1", r"edge +1 +\d+ +\d+ +length 2",
                     r"tip +0 +1 +1", r"foot and roof +2 +\d+ +\d+ +area 2"):
            self.assertRegex(listing, "(?m)^" + line + "$")
        self.write("box.toml", RECIPE)
        self.made("box.msh", "box.toml", "-o", "model.dat")
        self.assertIn('# load "roof": group "Dach #2 = größer"\n', self.read("model.dat"))
        self.solve()

    def test_double_quotes_in_a_name(self):
        self.mesh("box.msh", BOX, "-3")
        self.write("box.msh", self.read("box.msh").replace("the body", 'the "good" body'))
        self.write("box.toml", RECIPE.replace("the body", 'the \\"good\\" body'))
        self.made("box.msh", "box.toml", "-o", "model.dat")

    def test_a_name_in_latin_1_is_read(self):
        self.mesh("box.msh", BOX, "-3")
        self.write("box.msh", self.read("box.msh").encode("latin-1"))
        self.assertIn("Dach #2 = größer", self.made("--list", "box.msh"))

    def test_groups_without_names_are_called_by_number(self):
        self.mesh("box.msh", BOX.replace('"the body"', "17"), "-3")
        self.assertRegex(self.made("--list", "box.msh"), r"(?m)^17 +3 ")

    def test_a_mesh_without_groups_has_one_for_each_dimension(self):
        self.mesh("box.msh", re.sub("Physical.*\n", "", BOX), "-3", "-format", "msh22")
        text = self.read("box.msh")
        self.write("box.msh", re.sub(r"(?m)^(\d+ \d+ 2) \d+ ", r"\1 0 ", text))
        listing = self.made("--list", "box.msh")
        for name, dimension in (("volumes", 3), ("surfaces", 2), ("lines", 1), ("points", 0)):
            self.assertRegex(listing, rf"(?m)^{name} +{dimension} ")

    def test_points_and_curves_without_cells_keep_their_names(self):
        """A 4.1 file may name entities whose elements were not saved."""
        self.mesh("box.msh", BOX, "-3", "-format", "msh41")
        text = self.read("box.msh")
        head, elements = text.split("$Elements\n")
        blocks, total, low, high = map(int, elements.split("\n")[0].split())
        lines, kept, at, gone = elements.split("\n"), [], 1, 0
        for _ in range(blocks):
            count = int(lines[at].split()[3])
            block = lines[at:at + 1 + count]
            at += 1 + count
            if int(block[0].split()[0]) < 2:
                gone += count
                continue
            kept += block
        left = sum(1 for line in kept if len(line.split()) == 4 and line.endswith(" ") is False)
        self.assertGreater(left, 0)
        count = f"{sum(1 for _ in self.blocks(kept))} {total - gone} {low} {high}"
        self.write("bare.msh", head + "$Elements\n" + "\n".join([count, *kept, *lines[at:]]))
        before, after = self.made("--list", "box.msh"), self.made("--list", "bare.msh")
        nodes = re.search(r"edge +1 +\d+ +(\d+)", before)[1]
        self.assertRegex(after, rf"(?m)^edge +0 +0 +{nodes}$")
        self.assertRegex(after, r"(?m)^tip +0 +0 +1$")
        self.write("box.toml", RECIPE)
        report = self.made("bare.msh", "box.toml", "-o", "model.dat")
        self.assertIn(f'load "edge" on "edge": {nodes} nodes, shared by {nodes} nodes', report)

    def blocks(self, lines):
        at = 0
        while at < len(lines):
            yield at
            at += 1 + int(lines[at].split()[3])

    def test_numbers_with_gaps_and_huge_ones(self):
        """Node numbers need not be dense, nor ascending."""
        text = ["$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n4"]
        numbers = [4000000000, 7, 123456789, 20]
        text += [f"{n} {x}" for n, x in zip(numbers, ("0 0 0", "1 0 0", "0 1 0", "0 0 1"))]
        text += ["$EndNodes\n$Elements\n1\n90 4 2 1 1 4000000000 7 123456789 20\n$EndElements\n"]
        self.write("gap.msh", "\n".join(text))
        self.write("gap.toml", '[material.s]\ngroups = ["1"]\n' + STEEL)
        self.made("gap.msh", "gap.toml", "-o", "model.dat", "--map", "map.csv")
        self.assertEqual(self.read("map.csv"), "kind,old,new\nnode,7,1\nnode,20,2\n"
                         "node,123456789,3\nnode,4000000000,4\nelement,90,1\n")
        deck = Deck(self.read("model.dat"))
        self.assertEqual(deck.nodes[4], (0, 0, 0))

    def test_a_big_endian_file_is_read(self):
        data = b"$MeshFormat\n4.1 1 8\n" + struct.pack(">i", 1) + b"\n$EndMeshFormat\n$Nodes\n"
        data += struct.pack(">4Q3iQ", 1, 4, 1, 4, 3, 1, 0, 4) + struct.pack(">4Q", 1, 2, 3, 4)
        data += struct.pack(">12d", 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1)
        data += b"\n$EndNodes\n$Elements\n" + struct.pack(">4Q3iQ", 1, 1, 1, 1, 3, 1, 4, 1)
        data += struct.pack(">5Q", 1, 1, 2, 3, 4) + b"\n$EndElements\n"
        self.write("big.msh", data)
        self.assertIn("volume 0.166667", self.made("--list", "big.msh"))

    def test_other_versions_are_refused_with_the_cure(self):
        self.mesh("box.msh", BOX, "-3", "-format", "msh40")
        self.write("box.toml", RECIPE)
        self.refused("box.msh:2: error: version 4 of Gmsh's format is not read: save it as 4.1 "
                     "(gmsh -format msh41) [mesh]", "box.msh", "box.toml", "-o", "model.dat")


class OtherFormats(Case):
    def test_sets_of_an_abaqus_file_are_groups(self):
        self.write("m.inp", """\
*NODE
1, 0, 0, 0
2, 1, 0, 0
3, 0, 1, 0
4, 0, 0, 1
*ELEMENT, TYPE=C3D4, ELSET=body
1, 1, 2, 3, 4
*NSET, NSET=foot
1, 2, 3
""")
        self.write("m.toml", '[material.s]\ngroups = ["body"]\n' + STEEL +
                   '[support.f]\ngroups = ["foot"]\ncodes = "111"\n')
        self.made("m.inp", "m.toml", "-o", "model.dat")
        deck = Deck(self.read("model.dat"))
        self.assertEqual([s[0] for s in deck.supports], [1, 2, 3])
        self.solve()

    def test_whole_numbers_on_cells_and_points_are_groups(self):
        points = np.array([[0, 0, 0], [1, 0, 0], [1, 1, 0], [0, 1, 0]], float)
        mesh = meshio.Mesh(points, [("triangle", np.array([[0, 1, 2], [0, 2, 3]]))],
                           cell_data={"material": [np.array([1, 7])], "real": [np.ones(2)]},
                           point_data={"support": np.array([1, 0, 0, 1])})
        for name in ("m.vtu", "m.vtk", "m.xdmf"):
            with self.subTest(file=name), warnings.catch_warnings():
                warnings.simplefilter("ignore")
                meshio.write(self.folder / name, mesh)
                listing = self.made("--list", name)
                self.assertRegex(listing, r"(?m)^material:1 +2 +1 +3 +area 0.5$")
                self.assertRegex(listing, r"(?m)^material:7 +2 +1 +3 +area 0.5$")
                self.assertRegex(listing, r"(?m)^support:1 +0 +0 +2$")
                self.assertNotIn("real", listing)

    def test_physical_tags_of_other_readers_have_their_names(self):
        """What meshio knows of Gmsh's groups, as any of its formats may carry it."""
        from kestol_import.bridge import convert
        read = meshio.Mesh(
            np.array([[0, 0], [1, 0], [0, 1], [1, 1]], float),
            [("triangle", np.array([[0, 1, 2]])), ("triangle", np.array([[1, 3, 2]])),
             ("line", np.array([[0, 1]]))],
            cell_data={"gmsh:physical": [np.array([4]), np.array([4]), np.array([9])],
                       "gmsh:geometrical": [np.array([1]), np.array([2]), np.array([3])]},
            field_data={"plate": np.array([4, 2])}, point_sets={"corner": np.array([0])},
            cell_sets={"half": [np.array([], int), np.array([0]), None]},
            point_data={"gmsh:dim_tags": np.zeros((4, 2), int), "t": np.arange(4.0)})
        mesh = convert("x", read)
        rows = {name: {k: list(r) for k, r in g.rows.items()} for name, g in mesh.groups.items()}
        self.assertEqual(rows, {"corner": {}, "half": {"triangle": [1]},
                                "plate": {"triangle": [0, 1]}, "9": {"line": [0]}})
        self.assertEqual(list(mesh.groups["corner"].nodes), [0])

    def test_families_of_med_have_their_names(self):
        from kestol_import.bridge import convert
        read = meshio.Mesh(np.zeros((3, 3)), [("triangle", np.array([[0, 1, 2]]))],
                           cell_data={"cell_tags": [np.array([-6])]},
                           point_data={"point_tags": np.array([2, 0, 0])})
        read.cell_tags, read.point_tags = {-6: ["skin", "all of it"]}, {2: ["corner"]}
        mesh = convert("x", read)
        self.assertEqual(set(mesh.groups), {"skin", "all of it", "corner"})

    def test_whole_numbers_beside_families_and_without_them_are_marks(self):
        from kestol_import.bridge import convert
        for families, wanted in (({-6: ["skin"]}, {"skin", "part:3", "point_tags:7"}),
                                 ({}, {"cell_tags:-6", "part:3", "point_tags:7"})):
            read = meshio.Mesh(np.zeros((3, 3)), [("triangle", np.array([[0, 1, 2]]))],
                               cell_data={"cell_tags": [np.array([-6])], "part": [np.array([3])],
                                          "heat": [np.array([0.5])], "gmsh:geometrical": [np.array([1])]},
                               point_data={"point_tags": np.array([7, 7, 7]), "T": np.zeros(3),
                                           "gmsh:x": np.ones(3, int)})
            read.cell_tags = families
            self.assertEqual(set(convert("x", read).groups), wanted)

    def test_meshes_that_meshio_reads_and_no_deck_holds(self):
        from kestol_import.bridge import MOST_VALUES, convert
        from kestol_import.errors import Refusal
        triangle = [("triangle", np.array([[0, 1, 2]]))]
        for read, message in (
                (meshio.Mesh(np.array([[0, 0, np.inf]] * 3), triangle),
                 "a node has a coordinate that is not finite"),
                (meshio.Mesh(np.zeros((2, 3)), triangle),
                 "a cell has a node that the file does not have"),
                (meshio.Mesh(np.zeros((3, 3)), [("polygon", [[0.5, 1, 2]])]),
                 "cells of kind polygon cannot be imported")):
            with self.subTest(message=message), self.assertRaises(Refusal) as raised:
                convert("x", read)
            self.assertEqual(raised.exception.text, message)
        for many, named in ((MOST_VALUES, {f"{one}:{k}" for one in "cp" for k in range(MOST_VALUES)}),
                            (MOST_VALUES + 1, {"points"})):
            read = meshio.Mesh(np.zeros((many, 3)), [("vertex", np.arange(many)[:, None])],
                               cell_data={"c": [np.arange(many)]}, point_data={"p": np.arange(many)})
            self.assertEqual(set(convert("x", read).groups), named)

    def test_a_list_knows_the_area_of_quadrilaterals_of_every_kind(self):
        places = "0 0,3 0,3 2,0 2,1.5 0,3 1,1.5 2,0 1,1.5 1".split(",")
        for kind, nodes in ((3, 4), (16, 8), (10, 9)):
            points = "".join(f"{k} {place} 0\n" for k, place in enumerate(places[:nodes], 1))
            numbers = " ".join(map(str, range(1, nodes + 1)))
            self.write("q.msh", f"$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n{nodes}\n{points}$EndNodes\n"
                       f"$Elements\n1\n1 {kind} 2 7 1 {numbers}\n$EndElements\n")
            self.assertRegex(self.made("--list", "q.msh"), rf"7 +2 +1 +{nodes} +area 6\n")

    def test_a_list_says_no_size_of_what_it_does_not_know(self):
        self.mesh("t.msh", """
Point(1) = {0, 0, 0}; Point(2) = {1, 0, 0}; Point(3) = {0, 1, 0};
Line(1) = {1, 2}; Line(2) = {2, 3}; Line(3) = {3, 1}; Transfinite Curve {1, 2, 3} = 2;
Curve Loop(1) = {1, 2, 3}; Plane Surface(1) = {1};
Physical Surface("s") = {1}; Physical Curve("c") = {1};
""", "-2", "-order", "3")
        self.assertRegex(self.made("--list", "t.msh"), r"\nc +1 +1 +4\ns +2 +1 +10\n")

    def test_quads_are_split_on_demand(self):
        points = np.array([[0, 0, 0], [2, 0, 0], [2, 1, 0], [0.5, 1, 0]], float)
        meshio.write(self.folder / "q.vtu", meshio.Mesh(
            points, [("quad", np.array([[0, 1, 2, 3]]))], cell_data={"part": [np.array([1])]}))
        self.write("q.toml", '[material.s]\ngroups = ["part:1"]\n' + STEEL + "G = 1\nt = 1\n"
                   '[load.p]\ngroups = ["part:1"]\nnormal = 2\n')
        report = self.made("q.vtu", "q.toml", "-o", "model.dat", "--split-quads",
                           "--map", "map.csv")
        self.assertIn("force (0, 0, 3.5)", report)
        deck = Deck(self.read("model.dat"))
        self.assertEqual([set(e[0]) for e in deck.elements.values()], [{1, 2, 4}, {2, 3, 4}])
        self.assertIn("element,1,1\nelement,1,2\n", self.read("map.csv"))

    def test_a_quad_with_a_corner_inwards_is_cut_within(self):
        """The shorter diagonal of an arrowhead joins its tips outside of it."""
        points = np.array([[0, 1, 0], [0.5, 0, 0], [0, -1, 0], [10, 0, 0]], float)
        for turn in range(4):
            corners = np.roll([0, 1, 2, 3], turn)
            meshio.write(self.folder / "q.vtu", meshio.Mesh(points, [("quad", corners[None])]))
            for options in ([], ["--split-quads"]):
                self.assertRegex(self.made("--list", *options, "q.vtu"), r"surfaces +2 +\d +4 +area 9.5\n")

    def test_quads_join_the_triangles_that_are_there(self):
        points = np.array([[0, 0, 0], [2, 0, 0], [2, 1, 0], [0.5, 1, 0], [3, 0, 0]], float)
        meshio.write(self.folder / "q.vtu", meshio.Mesh(
            points, [("quad", np.array([[0, 1, 2, 3]])), ("triangle", np.array([[1, 4, 2]]))],
            cell_data={"part": [np.array([1]), np.array([1])]}))
        self.assertRegex(self.made("--list", "q.vtu"), r"part:1 +2 +2 +5 +area 2.25\n")
        self.assertRegex(self.made("--list", "--split-quads", "q.vtu"),
                         r"part:1 +2 +3 +5 +area 2.25\n")
        self.assertIn("3 triangles", self.made("--list", "--split-quads", "q.vtu"))
        meshio.write(self.folder / "t.vtu", meshio.Mesh(points, [("triangle", np.array([[0, 1, 2]]))]))
        self.made("--list", "--split-quads", "t.vtu")

    def test_bricks_are_listed_without_a_size(self):
        meshio.write(self.folder / "b.vtu", meshio.Mesh(
            np.random.default_rng(1).random((8, 3)), [("hexahedron", np.arange(8)[None])]))
        self.assertRegex(self.made("--list", "b.vtu"), r"volumes +3 +1 +8\n")

    def test_ten_nodes_in_the_other_order_are_seen(self):
        """Some writers exchange the last two mid-sides: geometry tells."""
        corners = np.array([[0, 0, 0], [1, 0, 0], [0, 1, 0], [0, 0, 1]], float)
        edges = [(0, 1), (1, 2), (2, 0), (0, 3), (1, 3), (2, 3)]
        points = np.concatenate([corners, [(corners[a] + corners[b]) / 2 for a, b in edges]])
        self.write("m.toml", '[material.s]\ngroups = ["part:1"]\n' + STEEL)
        for order in (list(range(10)), [0, 1, 2, 3, 4, 5, 6, 7, 9, 8]):
            meshio.write(self.folder / "m.vtu", meshio.Mesh(
                points, [("tetra10", np.array([order]))], cell_data={"part": [np.array([1])]}))
            self.made("m.vtu", "m.toml", "-o", "model.dat", "--force")
            deck = Deck(self.read("model.dat"))
            nodes = [np.array(deck.nodes[n]) for n in deck.elements[1][0]]
            for k, (a, b) in enumerate(edges, 4):
                np.testing.assert_array_equal(nodes[k], (nodes[a] + nodes[b]) / 2)

    def test_damaged_files_give_meshio_s_words(self):
        for name, text in (("m.vtu", "<VTKFile"), ("m.vtk", "junk"), ("m.xyz", "1 2 3"),
                           ("m.inp", "*NODE\n1, a, b\n"), ("noname", "abc"), ("m.med", "abc"),
                           ("m.stl", "solid\nfacet"), ("m.xdmf", "<a>"), ("m.msh", "Dolfin?")):
            with self.subTest(file=name):
                self.write(name, text)
                done = self.run_import("--list", name)
                self.assertEqual(done.returncode, 2, done.stderr)
                self.assertRegex(done.stderr, rf"^{re.escape(name)}: error: .* \[mesh\]\n$")


if __name__ == "__main__":
    unittest.main()
