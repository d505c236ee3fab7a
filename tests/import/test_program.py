"""The command line, what is written on a terminal, and from where the program runs."""
import os
import pathlib
import pty
import re
import subprocess
import sys
import unittest

from program import MESH, RECIPE, Program
from support import PROGRAM, ROOT, Case, Deck


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
                (["m.msh", "-o", "d", "r.toml", "--", "-x", "y"], "unrecognized arguments: -x y"),
                (["m.msh", "-q", "r.toml", "--bogus", "-o", "d"], "unrecognized arguments: --bogus"),
                (["-o", "d"], "the following arguments are required: MESH"),
                (["-o", "d", "--"], "the following arguments are required: MESH"),
                (["m.msh", "-o", "--", "r.toml"], "argument -o/--output: expected one argument"),
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
        os.rename(self.folder / "r.toml", self.folder / "--")
        self.made("--force", "-o", "d.dat", "--", "-m.msh", "--")

    def test_options_stand_anywhere(self):
        self.made("m.msh", "r.toml", "--merge", "0", "-o", "first.dat")
        for arguments in (("m.msh", "--merge", "0", "r.toml", "-o", "d.dat"),
                          ("m.msh", "-o", "d.dat", "--merge", "0", "r.toml"),
                          ("--merge", "0", "-o", "d.dat", "m.msh", "r.toml"),
                          ("m.msh", "-o", "d.dat", "--merge", "0", "--", "r.toml")):
            self.made("--force", *arguments)
            self.assertEqual(self.read("d.dat"), self.read("first.dat"), arguments)
        self.assertEqual(self.made("m.msh", "--list"), self.made("--list", "m.msh"))

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

    def test_a_list_does_not_take_the_place_of_a_deck(self):
        self.made("-q", "m.msh", "r.toml", "-o", "d.dat")
        deck = self.read("d.dat")
        done = self.run_import("--list", "m.msh", "-o", "d.dat")
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertEqual(done.stderr, "d.dat: error: the file exists: --force replaces it [exists]\n")
        self.assertEqual(self.read("d.dat"), deck)
        self.made("--force", "--list", "m.msh", "-o", "d.dat")
        self.assertEqual(self.read("d.dat"), self.made("--list", "m.msh"))

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
kestol-import: note: 1 node merged within 0.01
m.msh: warning: 1 triangle without material: left out [no-material]
kestol-import: note: 3 nodes without an element dropped
kestol-import: note: d.dat: 0 lines by hand kept around the blocks
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

    def test_short_work_shows_no_progress(self):
        said = self.on_terminal("m.msh", "r.toml", "-o", "d.dat")
        self.assertIn("1 triangle without material", said)
        self.assertNotIn("\x1b[K", said)

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
