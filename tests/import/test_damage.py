"""Mesh files that are cut, changed or wrong in one place."""
import re
import struct
import unittest

import numpy as np
from box import BOX, FORMS
from support import STEEL, Case, Deck


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
            self.assertIn("note: 1 of 1 element turned round", done.stderr)
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


if __name__ == "__main__":
    unittest.main()
