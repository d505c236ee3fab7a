"""Mesh files: Gmsh's four forms, other formats, names, damage."""
import re
import struct
import unittest
import warnings

import meshio
import numpy as np
from support import STEEL, Case, Deck

BOX = """
SetFactory("OpenCASCADE");
Box(1) = {0, 0, 0, 1, 1, 2};
Physical Volume("the body") = {1};
Physical Surface("foot 'of steel'") = {5};
Physical Surface("Dach #2 = größer") = {6};
Physical Surface("foot and roof") = {5, 6};
Physical Curve("edge") = {1};
Physical Point("tip") = {1};
Mesh.CharacteristicLengthMax = 0.8;
"""
RECIPE = f"""
[material.steel]
groups = ["the body"]
{STEEL}
[support.foot]
groups = ["foot 'of steel'"]
codes = "111"
[load.roof]
groups = ["Dach #2 = größer"]
pressure = [1, 2, "-x-y"]
[load.all]
groups = ["foot and roof"]
normal = -1
[load.tip]
groups = ["tip"]
force = [0, 0, 7]
[load.edge]
groups = ["edge"]
force = [0, 5, 0]
"""
FORMS = {"ascii 2.2": ["-format", "msh22"], "binary 2.2": ["-format", "msh22", "-bin"],
         "ascii 4.1": ["-format", "msh41"], "binary 4.1": ["-format", "msh41", "-bin"]}


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


class DamagedFiles(Case):
    """A file that is cut, or changed, is told; never a trace."""

    def check(self, data, what):
        self.write("cut.msh", data)
        done = self.run_import("--list", "cut.msh")
        self.assertNotIn("Traceback", done.stderr, what)
        if done.returncode:
            self.assertEqual(done.returncode, 2, what)
            self.assertRegex(done.stderr, r"^cut\.msh(:\d+)?: error: .+ \[mesh\]\n$", what)
        return done

    def test_cut_after_every_block_and_within(self):
        for form, options in FORMS.items():
            with self.subTest(form=form):
                self.mesh("box.msh", BOX, "-3", *options)
                whole = (self.folder / "box.msh").read_bytes()
                last = whole.index(b"$EndElements")
                ends = [m.end() for m in re.finditer(rb"\$\w+\r?\n?", whole)]
                places = sorted({*ends, *(e - 1 for e in ends), *(e + 3 for e in ends),
                                 *range(0, last, max(1, last // 60))})
                for place in places:
                    done = self.check(whole[:place], f"{form} cut at {place}")
                    if place < last:
                        self.assertEqual(done.returncode, 2, f"{form} cut at {place}")
                self.assertEqual(self.check(whole, form).returncode, 0)

    def test_bytes_changed(self):
        """Whatever stands in the file: a list or a finding, in time."""
        import random
        chance = random.Random(18)
        for form, options in FORMS.items():
            self.mesh("box.msh", BOX.replace("0.8", "3"), "-3", *options)
            whole = (self.folder / "box.msh").read_bytes()
            for _ in range(100):
                data = bytearray(whole)
                for _ in range(chance.randrange(1, 4)):
                    data[chance.randrange(len(data))] = chance.choice(b"0123456789 $-\n\xff\0e.")
                self.check(bytes(data), form)

    def test_messages_say_what_and_where(self):
        self.mesh("box.msh", BOX.replace("0.8", "3"), "-3", "-format", "msh22")
        text = self.read("box.msh")
        lines = text.split("\n")
        nodes, elements = lines.index("$Nodes"), lines.index("$Elements")

        def changed(at, line):
            return "\n".join([*lines[:at], line, *lines[at + 1:]])
        cases = [
            ("", "cut.msh: error: the file is empty [mesh]"),
            ("$MeshFor", "cut.msh:1: error: the file ends within $MeshFormat [mesh]"),
            ("\n".join(lines[:nodes]) + "\n", "cut.msh: error: the file has no $Nodes [mesh]"),
            ("\n".join(lines[:elements]) + "\n",
             "cut.msh: error: the file has no $Elements [mesh]"),
            ("\n".join(lines[:nodes + 3]) + "\n",
             f"cut.msh:{nodes + 3}: error: the file ends within $Nodes [mesh]"),
            (changed(nodes + 1, "many"),
             f"cut.msh:{nodes + 3}: error: $Nodes does not begin with a count [mesh]"),
            (changed(nodes + 3, "2 0 zero 0"),
             f'cut.msh:{nodes + 4}: error: $Nodes holds "zero" where a number is expected [mesh]'),
            (changed(nodes + 3, "2.5 0 0 0"),
             f"cut.msh:{lines.index('$EndNodes') + 1}: error: $Nodes: a node number is not a whole "
             "number [mesh]"),
            (changed(nodes + 3, "1 0 0 0"), "cut.msh: error: a node number is given twice [mesh]"),
            (changed(nodes + 3, "2 0 0 nan"),
             "cut.msh: error: a node has a coordinate that is not finite [mesh]"),
            (changed(nodes + 1, "3"), f"cut.msh:{lines.index('$EndNodes') + 1}: error: $Nodes has "
             "more numbers than its counts say [mesh]"),
            (changed(nodes + 1, "3000"), f"cut.msh:{lines.index('$EndNodes') + 1}: error: $Nodes "
             "has fewer numbers than its counts say [mesh]"),
            (changed(elements + 2, "1 15 2 6 1 99999"), "cut.msh: error: an element has node 99999, "
             "which is not in $Nodes [mesh]"),
            (changed(elements + 2, "1 77 2 6 1 1"),
             f"cut.msh:{lines.index('$EndElements') + 1}: error: element type 77 is not known "
             "[mesh]"),
            (changed(2, "$EndMesh"), "cut.msh:3: error: $MeshFormat does not end where its counts "
             "say [mesh]"),
            (changed(1, "2.2 5 8"), "cut.msh:3: error: $MeshFormat is not 'version file-type "
             "data-size' [mesh]"),
            (changed(4, "x"),
             "cut.msh:6: error: $PhysicalNames does not begin with a count [mesh]"),
            (changed(5, '0 6 tip'), "cut.msh:6: error: $PhysicalNames: a line is not 'dimension "
             "tag \"name\"' [mesh]"),
            (changed(4, "60"), "cut.msh:12: error: $PhysicalNames has fewer names than it says "
             "[mesh]"),
            (changed(elements + 1, "9999"),
             f"cut.msh:{lines.index('$EndElements') + 1}: error: $Elements has fewer numbers than its "
             "counts say [mesh]"),
            (changed(elements + 1, "1"), f"cut.msh:{lines.index('$EndElements') + 1}: error: "
             "$Elements has more numbers than its counts say [mesh]"),
            (changed(elements + 2, "1 15 -2 6 1 1"), f"cut.msh:{lines.index('$EndElements') + 1}: "
             "error: $Elements: a negative number of tags [mesh]"),
            (changed(nodes + 3, "2 0 0 1_0"),
             f"cut.msh:{nodes + 3}: error: $Nodes cannot be read as numbers [mesh]"),
            (changed(nodes, "Nodes"), f'cut.msh:{nodes}: error: a section such as $Nodes is expected, '
             'not "Nodes" [mesh]'),
            ("\n".join(["$Nodes", *lines[nodes + 1:elements], *lines[:3]]), None),
            ("$Comments\nx\n$EndComments\n$Nodes\n",
             "cut.msh:5: error: $Nodes stands before $MeshFormat [mesh]"),
            ("$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n0\n$EndNodes\n$Elements\n0\n"
             "$EndElements\n", "cut.msh: error: the mesh has no cells [mesh]"),
            ("$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n0\n$EndNodes\n$Elements\n1\n"
             "1 15 2 1 1 1\n$EndElements\n",
             "cut.msh: error: an element has node 1, which is not in $Nodes [mesh]"),
            (changed(0, "hello"), None),
        ]
        for data, message in cases:
            with self.subTest(message=message):
                done = self.check(data.encode(), message)
                if message:
                    self.assertEqual(done.stderr, message + "\n")
                else:
                    self.assertRegex(done.stderr, "meshio cannot read this file")

    def test_elements_without_tags_have_no_group(self):
        self.write("m.msh", "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n2\n1 0 0 0\n2 1 0 0\n"
                   "$EndNodes\n$Elements\n1\n1 1 0 1 2\n$EndElements\n")
        self.assertRegex(self.made("--list", "m.msh"), r"(?m)^lines +1 +1 +2 +length 1$")

    def test_binary_headings(self):
        head = b"$MeshFormat\n2.2 1 8\n"
        cases = [
            (head + b"\2\0\0\0\n$EndMeshFormat\n", "$MeshFormat: the number 1 that tells the byte "
             "order is missing"),
            (head + b"\1\0", "the file ends within $MeshFormat"),
            (head + b"\1\0\0\0\n$EndMeshFormat\n$Nodes\n0\n$EndNodes\n$Elements\n1\n"
             + struct.pack("<3i", 1, 0, 2) + b"$EndElements\n",
             "$Elements: a block has no elements or a negative number of tags"),
            (b"$MeshFormat\n4.1 1 8\n\1\0\0\0\n$EndMeshFormat\n$Nodes\n"
             + struct.pack("<4Q3iQ", 1, 1, 1, 1, 0, 1, 0, 2 ** 64 - 1),
             "$Nodes holds a number beyond 63 bits"),
        ]
        for data, message in cases:
            with self.subTest(message=message):
                line = ":3" * ("$MeshFormat" in message)  # lines are counted in text only
                self.assertEqual(self.check(data, message).stderr,
                                 f"cut.msh{line}: error: {message} [mesh]\n")

    def test_tetrahedra_of_both_senses_become_positive(self):
        for kind, order, name in ((4, [2, 1, 3, 4], "tetra"), (11, None, "tetra10")):
            nodes = ["0 0 0", "1 0 0", "0 1 0", "0 0 1", ".5 0 0", ".5 .5 0", "0 .5 0", "0 0 .5",
                     ".5 0 .5", "0 .5 .5"]
            # of Gmsh's ten nodes the last two are those of 3-4 and 2-4
            row = order or [2, 1, 3, 4, 5, 7, 6, 9, 10, 8]
            self.write("m.msh", "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n10\n" + "\n".join(
                f"{k} {n}" for k, n in enumerate(nodes, 1)) + "\n$EndNodes\n$Elements\n1\n"
                f"1 {kind} 2 1 1 {' '.join(map(str, row))}\n$EndElements\n")
            self.write("m.toml", '[material.s]\ngroups = ["1"]\n' + STEEL)
            done = self.run_import("-v", "--force", "m.msh", "m.toml", "-o", "model.dat")
            self.assertIn("note: 1 of 1 elements turned round", done.stderr)
            deck = Deck(self.read("model.dat"))
            found = [deck.nodes[n] for n in deck.elements[1][0]]
            a, b, c, d = (np.array(p) for p in found[:4])
            self.assertGreater(np.dot(np.cross(b - a, c - a), d - a), 0)
            edges = [(0, 1), (1, 2), (2, 0), (0, 3), (1, 3), (2, 3)]
            for k, (i, j) in enumerate(edges[:len(found) - 4], 4):
                np.testing.assert_array_equal(found[k], (np.array(found[i]) + found[j]) / 2, name)

    def test_a_block_that_says_too_little(self):
        self.mesh("box.msh", BOX, "-3", "-format", "msh41")
        text = self.read("box.msh")
        start = text.index("$Elements\n") + len("$Elements\n")
        end = text.index("\n", start)
        head = text[start:end].split()
        head[1] = str(int(head[1]) + 1)
        done = self.check((text[:start] + " ".join(head) + text[end:]).encode(), "count")
        self.assertIn("$Elements has not as many elements as it says", done.stderr)

    def test_what_only_version_4_has(self):
        self.mesh("box.msh", BOX, "-3", "-format", "msh41")
        text = self.read("box.msh")
        entities = text.index("$Entities")
        without = text[:entities] + text[text.index("$Nodes"):]
        done = self.check(without.encode(), "no entities")
        self.assertIn("groups are named but there is no $Entities that says what they hold",
                      done.stderr)
        done = self.check(text.replace("Entities", "PartitionedEntities").encode(), "partitioned")
        self.assertIn("the mesh is partitioned: save it unpartitioned", done.stderr)
        nodes = text.index("$Nodes\n") + len("$Nodes\n")
        end = text.index("\n", nodes)
        head = text[nodes:end].split()
        head[1] = "5"
        done = self.check((text[:nodes] + " ".join(head) + text[end:]).encode(), "count")
        self.assertRegex(done.stderr, r"\$Nodes says 5 nodes and has \d+")

    def test_files_that_cannot_be_opened(self):
        self.assertEqual(self.run_import("--list", "none.msh").stderr,
                         "none.msh: error: cannot be read: No such file or directory [file]\n")
        self.assertEqual(self.run_import("--list", ".").stderr,
                         ".: error: cannot be read: Is a directory [file]\n")


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
        many = MOST_VALUES + 1
        read = meshio.Mesh(np.zeros((many, 3)), [("vertex", np.arange(many)[:, None])],
                           cell_data={"number": [np.arange(many)]},
                           point_data={"number": np.arange(many)})
        self.assertEqual(set(convert("x", read).groups), {"points"})

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
