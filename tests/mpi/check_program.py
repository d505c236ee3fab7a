#!/usr/bin/env python3
"""Runs kestol-mpi as its users do: check_program.py MPIRUN KESTOL_MPI KESTOL SOURCE

Every option and every refusal; more processes than nodes; one message whatever the number of processes;
a killed process; random numbering; pieces for ParaView; no half files.
"""
import os
import pathlib
import re
import signal
import struct
import subprocess
import sys
import tempfile
import time
import unittest

MPIRUN, PROGRAM, KESTOL, SOURCE = sys.argv[1:5]
EXAMPLES = pathlib.Path(SOURCE) / "examples"
MAKE_BLOCK = pathlib.Path(SOURCE) / "bench/make_block.py"
# What mpirun itself says about a program that ends with another status than 0.
BANNER = re.compile(r"^-{20,}\n.*?^-{20,}\n", re.DOTALL | re.MULTILINE)


def kestol_mpi(*arguments, processes=1, cwd=None, mpirun=True):
    command = [PROGRAM, *map(str, arguments)]
    if mpirun:
        command = [MPIRUN, "--oversubscribe", "-n", str(processes), *command]
    run = subprocess.run(command, capture_output=True, text=True, timeout=120, cwd=cwd)
    run.stderr = BANNER.sub("", run.stderr).strip("\n")
    return run


NUMBER = r"[-+]?\d+\.?\d*(?:[eE][-+]?\d+)?"


def numbers(text):
    return [float(word) for word in re.findall(NUMBER, text)]


def words(text):
    return re.sub(NUMBER, "#", text).split()


class Case(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.here = pathlib.Path(self.folder.name)

    def tearDown(self):
        self.folder.cleanup()

    def deck(self, name, source=None):
        path = self.here / name
        path.write_text(source if source is not None else (EXAMPLES / name).read_text())
        return path

    def files(self):
        return sorted(path.name for path in self.here.iterdir())


class Outputs(Case):
    def assert_alike(self, name, other):
        ours, theirs = (self.here / name).read_text(), (self.here / other).read_text()
        self.assertEqual(words(ours), words(theirs))
        a, b = numbers(ours), numbers(theirs)
        largest = max(map(abs, b))
        for x, y in zip(a, b):
            self.assertLessEqual(abs(x - y), 2e-5 * abs(y) + 1e-9 * largest)

    def test_are_those_of_the_solver(self):
        for name in ("15-stiffened-plate.dat", "06-space-frame.dat", "19-thick-tube.dat"):
            self.deck(name)
            stem = name[:-4]
            subprocess.run([KESTOL, "-p", name, "theirs"], cwd=self.here, check=True)
            for ending in ("bon", "res"):
                (self.here / f"{stem}.kestol.{ending}").rename(self.here / f"theirs.{ending}")
            run = kestol_mpi("-p", name, "ours", processes=2, cwd=self.here)
            self.assertEqual(run.returncode, 0, run.stderr)
            self.assert_alike("ours", "theirs")
            self.assert_alike(f"{stem}.kestol.res", "theirs.res")
            self.assert_alike(f"{stem}.kestol.bon", "theirs.bon")

    def test_without_mpirun_is_one_process(self):
        self.deck("01-cantilever.dat")
        run = kestol_mpi("01-cantilever.dat", "report", cwd=self.here, mpirun=False)
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertIn("\n2 0 -0.0045 -0.00225\n", (self.here / "report").read_text())
        self.assertEqual(self.files(), ["01-cantilever.dat", "01-cantilever.kestol.res", "report"])

    def test_residual_is_told_unless_quiet(self):
        self.deck("01-cantilever.dat")
        run = kestol_mpi("01-cantilever.dat", cwd=self.here)
        self.assertRegex(run.stderr, r"^kestol-mpi: direct, residual \|f - K u\| / \|f\| = \d\.\de[-+]\d\d$")
        self.assertEqual(run.stdout, "")
        self.assertEqual(kestol_mpi("-q", "01-cantilever.dat", cwd=self.here).stderr, "")

    def test_r_names_the_result_file_and_p_the_mesh_beside_it(self):
        self.deck("01-cantilever.dat")
        run = kestol_mpi("-p", "-r", "x.kestol.res", "01-cantilever.dat", cwd=self.here)
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertEqual(self.files(), ["01-cantilever.dat", "x.kestol.bon", "x.kestol.res"])

    def test_o_names_the_report(self):
        self.deck("01-cantilever.dat")
        run = kestol_mpi("01-cantilever.dat", "-o", "-", cwd=self.here)
        self.assertIn("\n2 0 -0.0045 -0.00225\n", run.stdout)
        run = kestol_mpi("01-cantilever.dat", "a", "-o", "b", cwd=self.here)
        self.assertEqual((run.returncode, run.stderr),
                         (2, "kestol-mpi: -o names a report and so does a; try kestol-mpi --help"))

    def test_information(self):
        self.deck("01-cantilever.dat")
        run = kestol_mpi("-i", "-", "01-cantilever.dat", processes=2, cwd=self.here)
        for line in ("reading", "factorising", "writing", "Total time = "):
            self.assertEqual(run.stdout.count(line), 1, run.stdout)
        kestol_mpi("-i", "info", "01-cantilever.dat", cwd=self.here)
        self.assertIn("strengths and reactions\n", (self.here / "info").read_text())
        run = kestol_mpi("-i", "no/info", "01-cantilever.dat", cwd=self.here, processes=2)
        self.assertEqual((run.returncode, run.stderr),
                         (2, "kestol-mpi: error: can't open file no/info: No such file or directory"))

    def test_verbose_shows_solver_times_and_balance(self):
        self.deck("14-cylindrical-roof.dat")
        run = kestol_mpi("-v", "14-cylindrical-roof.dat", processes=2, cwd=self.here)
        self.assertIn("type: mumps", run.stderr)
        self.assertRegex(run.stderr, r"factorising +\d+\.\d{3} s")
        balance = re.search(r"2 processes, (\d+) to (\d+) nodes each; peak memory \d+ MB", run.stderr)
        fewest, most = map(int, balance.groups())
        self.assertLess(most, 1.2 * fewest)
        alone = kestol_mpi("-v", "14-cylindrical-roof.dat", cwd=self.here)
        self.assertRegex(alone.stderr, r"\n1 process, \d+ nodes; peak memory \d+ MB$")


class Solvers(Case):
    def block(self, cells=4):
        text = subprocess.run([sys.executable, MAKE_BLOCK, str(cells)], capture_output=True, text=True,
                              check=True).stdout
        return self.deck("block.dat", text)

    def test_iterations_are_few_and_told(self):
        self.block()
        for name, most in (("gamg", 40), ("hypre", 80)):
            run = kestol_mpi("--solver", name, "block.dat", processes=2, cwd=self.here)
            found = re.match(rf"kestol-mpi: {name}, (\d+) iterations, residual .* = (.*)$", run.stderr)
            self.assertTrue(found, run.stderr)
            self.assertLess(int(found[1]), most)
            self.assertLessEqual(float(found[2]), 1e-10)

    def test_random_numbering_costs_no_iterations(self):
        self.block()
        iterations = []
        text = (self.here / "block.dat").read_text()
        for name, source in (("a.dat", text), ("b.dat", renumbered(text))):
            self.deck(name, source)
            run = kestol_mpi("--solver", "gamg", name, processes=2, cwd=self.here)
            iterations.append(int(re.search(r"(\d+) iterations", run.stderr)[1]))
        self.assertLessEqual(iterations[1], iterations[0] + 4)

    def test_tolerance(self):
        self.block()
        counts = []
        for tolerance in ("1e-3", "1e-9"):
            run = kestol_mpi("--solver", "gamg", "--tolerance", tolerance, "block.dat", cwd=self.here)
            counts.append(int(re.search(r"(\d+) iterations", run.stderr)[1]))
        self.assertLess(counts[0], counts[1])

    def test_iterations_that_end_too_early_advise_the_direct_solver(self):
        self.block()
        run = kestol_mpi("--solver", "gamg", "--max-iterations", "2", "block.dat", "report", processes=2,
                         cwd=self.here)
        self.assertEqual(run.returncode, 1)
        self.assertRegex(run.stderr, r"^kestol-mpi: error: the iterations ended after 2 of at most 2 with a "
                                     r"residual \|f - K u\| / \|f\| of \d\.\de[-+]\d\d, above the tolerance of "
                                     r"1e-10: try --solver direct$")
        self.assertEqual(self.files(), ["block.dat"])

    def test_options_of_petsc(self):
        self.block()
        run = kestol_mpi("--solver", "gamg", "--petsc", "-ksp_type fcg -nonsense 1", "-v", "block.dat",
                         cwd=self.here)
        self.assertIn("type: fcg", run.stderr)
        self.assertIn("nothing asked for these options of PETSc: -nonsense", run.stderr)
        run = kestol_mpi("--solver", "gamg", "--petsc", "-pc_type nothing", "block.dat", processes=2,
                         cwd=self.here)
        self.assertEqual(run.returncode, 2)
        self.assertIn("kestol-mpi: error: PETSc: ", run.stderr)


def renumbered(text):
    """The deck with its nodes numbered backwards in strides: neighbours far from each other."""
    head, rest = text.split("coordinates\n", 1)
    coordinates, rest = rest.split("end coordinates\nelements\n", 1)
    elements, rest = rest.split("end elements\n", 1)
    records = [line.split() for line in coordinates.splitlines()]
    count = len(records)
    stride = next(s for s in range(count // 3, count) if all(s % p or count % p for p in range(2, s + 1)))
    new = {int(r[0]): (int(r[0]) * stride) % count + 1 for r in records}
    records = sorted(([new[int(r[0])], *r[1:]] for r in records), key=lambda r: r[0])
    mesh = ["coordinates"] + [" ".join(map(str, r)) for r in records] + ["end coordinates", "elements"]
    for line in elements.splitlines():
        number, *nodes, material = line.split()
        mesh.append(" ".join([number, *(str(new[int(n)]) for n in nodes), material]))
    tail = rest.splitlines()
    inside = None
    for k, line in enumerate(tail):
        if line.split() and line.split()[0] in ("constraints", "nodal_point_loads"):
            inside = True
        elif line.startswith("end"):
            inside = False
        elif inside:
            node, *values = line.split()
            tail[k] = " ".join([str(new[int(node)]), *values])
    return head + "\n".join(mesh + ["end elements"] + tail) + "\n"


class Refusals(Case):
    def refused(self, wanted, status, *arguments, processes=3):
        run = kestol_mpi(*arguments, processes=processes, cwd=self.here)
        self.assertEqual((run.returncode, run.stderr, run.stdout), (status, wanted, ""))

    def test_help_and_version_come_once(self):
        run = kestol_mpi("--help", processes=2)
        self.assertEqual((run.returncode, run.stdout.count("Usage:"), run.stderr), (0, 1, ""))
        for option in ("--solver", "--tolerance", "--max-iterations", "--vtu", "-i", "-p", "-r", "-v",
                       "--petsc", "-o", "-q"):
            self.assertIn(option, run.stdout)
        self.assertRegex(kestol_mpi("--version", processes=2).stdout, r"^kestol-mpi \d+\.\d+\.\d+\n$")

    def test_command_line(self):
        hint = "; try kestol-mpi --help"
        self.refused("kestol-mpi: unknown option --frob" + hint, 2, "--frob")
        self.refused("kestol-mpi: --vtu takes a name that ends with .pvtu" + hint, 2, "--vtu", "x.vtu", "d")
        self.refused("kestol-mpi: --solver: magic is none of auto, direct, gamg, hypre" + hint, 2,
                     "--solver", "magic", "d")
        self.refused("kestol-mpi: --tolerance: 0 is not a number above 0" + hint, 2, "--tolerance", "0", "d")
        self.refused("kestol-mpi: --tolerance: nan is not a number above 0" + hint, 2,
                     "--tolerance", "nan", "d")
        for arguments in (["--max-iterations", "0", "d"], []):
            run = kestol_mpi(*arguments, processes=2)
            self.assertEqual(run.returncode, 2)
            self.assertEqual(len(run.stderr.splitlines()), 1, run.stderr)

    def test_deck_that_is_not_there(self):
        self.refused("kestol-mpi: error: can't open file no.dat: No such file or directory", 2, "no.dat")

    def test_mistake_in_the_deck(self):
        self.deck("bad.dat", "nonsense\n")
        self.refused("bad.dat:1: error: can't find word ***problem*** in input file [syntax]\n"
                     "    1 | nonsense", 2, "bad.dat", "report")
        self.assertEqual(self.files(), ["bad.dat"])

    def test_first_bad_element_is_named_whoever_computes_it(self):
        block = subprocess.run([sys.executable, MAKE_BLOCK, "2"], capture_output=True, text=True).stdout
        head, rest = block.split("elements\n", 1)
        lines = rest.splitlines()
        for place in (5, len(lines) // 3):
            number, a, b, c, d, material = lines[place].split()
            if number.isdigit():
                lines[place] = " ".join([number, b, a, c, d, material])
        self.deck("flat.dat", head + "elements\n" + "\n".join(lines) + "\n")
        self.refused("flat.dat: error: element 6 has jacobian <=0 [model]", 2, "flat.dat")

    def test_rigid_motion_and_mechanism(self):
        free = (EXAMPLES / "02-portal-frame.dat").read_text()
        self.deck("free.dat", re.sub(r"constraints\n.*?end constraints", "constraints\n1 110 0 0 0\n"
                                     "end constraints", free, flags=re.DOTALL))
        joint = """PROBLEM a joint between hinges
TYPE 2d
mesh dimension = 2 elemtype Linear nnode = 2
coordinates
1 0 0
2 1 0
3 2 0
4 3 0
end coordinates
elements
1 1 2 1
2 3 2 1
3 4 3 1
end elements
materials
1 E=2e11 A=1e-2 Iz=1e-5
end materials
constraints
1 110 0 0 0
4 110 0 0 0
end constraints
rotules
2
3
end rotules
nodal_point_loads
4 0 0 10
end nodal_point_loads
"""
        self.deck("joint.dat", joint)
        for name, words in (("free.dat", "the supports leave the model a rigid motion [rigid-motion]\n"
                                         "  mode 1: nodes 1-4 turn about z at (0, 0)\n"),
                            ("joint.dat", "the model is a mechanism in 2 ways [mechanism]\n"
                                          "  mode 1: ")):
            for solver in ("auto", "gamg"):
                run = kestol_mpi("--solver", solver, name, processes=2, cwd=self.here)
                self.assertEqual(run.returncode, 1, (name, solver, run.stderr))
                self.assertIn(f"{name}: error: {words}", run.stderr)
                self.assertEqual(run.stderr.count("error"), 1)
        self.assertEqual(self.files(), ["free.dat", "joint.dat"])

    def test_outputs_that_cannot_be_written(self):
        self.deck("01-cantilever.dat")
        self.refused("kestol-mpi: error: the output 01-cantilever.dat is the input 01-cantilever.dat", 2,
                     "01-cantilever.dat", "01-cantilever.dat")
        self.refused("kestol-mpi: error: can't open file no/report: No such file or directory", 2,
                     "01-cantilever.dat", "no/report")
        self.refused("kestol-mpi: error: two outputs have the name x", 2, "-r", "x", "01-cantilever.dat", "x")
        run = kestol_mpi("01-cantilever.dat", "/dev/full", cwd=self.here)
        self.assertEqual(run.returncode, 2)
        self.assertIn("kestol-mpi: error: failed writing to /dev/full: No space left on device", run.stderr)
        self.assertEqual(self.files(), ["01-cantilever.dat"])


class Processes(Case):
    def test_more_than_nodes(self):
        self.deck("01-cantilever.dat")
        for solver in ("direct", "gamg"):
            run = kestol_mpi("--solver", solver, "01-cantilever.dat", "report", processes=5, cwd=self.here)
            self.assertEqual(run.returncode, 0, run.stderr)
            self.assertIn("\n2 0 -0.0045 -0.00225\n", (self.here / "report").read_text())

    def test_killed_process_ends_the_run_without_files(self):
        text = subprocess.run([sys.executable, MAKE_BLOCK, "16"], capture_output=True, text=True).stdout
        self.deck("block.dat", text)
        run = subprocess.Popen([MPIRUN, "--oversubscribe", "-n", "2", PROGRAM, "--solver", "direct", "block.dat",
                                "report"], cwd=self.here, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        children = []
        while len(children) < 2 and run.poll() is None:
            time.sleep(0.05)
            listed = subprocess.run(["pgrep", "-P", str(run.pid), "-f", "kestol-mpi"], capture_output=True,
                                    text=True).stdout
            children = [int(word) for word in listed.split()]
        time.sleep(0.3)
        self.assertIsNone(run.poll(), "the run ended before a process could be killed")
        os.kill(children[1], signal.SIGKILL)
        self.assertNotEqual(run.wait(timeout=60), 0)
        self.assertEqual(self.files(), ["block.dat"])


def arrays(path):
    """The arrays of a VTU file in appended raw encoding, by name."""
    data = path.read_bytes()
    xml, raw = data.split(b'<AppendedData encoding="raw">\n_', 1)
    found = {}
    for tag in re.findall(r"<DataArray ([^>]*)/>", xml.decode()):
        entry = dict(re.findall(r'(\w+)="([^"]*)"', tag))
        offset = int(entry["offset"])
        size = struct.unpack_from("<Q", raw, offset)[0]
        code, width = {"Float64": ("d", 8), "Int32": ("i", 4), "UInt8": ("B", 1)}[entry["type"]]
        values = struct.unpack_from(f"<{size // width}{code}", raw, offset + 8)
        step = int(entry.get("NumberOfComponents", 1))
        found[entry["Name"]] = [values[k:k + step] for k in range(0, len(values), step)]
    return found


class Pieces(Case):
    def solved(self, name, processes):
        self.deck(name)
        run = kestol_mpi(name, "--vtu", "x.pvtu", processes=processes, cwd=self.here)
        self.assertEqual(run.returncode, 0, run.stderr)
        sources = re.findall(r'<Piece Source="([^"]*)"/>', (self.here / "x.pvtu").read_text())
        return [arrays(self.here / source) for source in sources]

    def test_make_up_the_whole(self):
        for name in ("15-stiffened-plate.dat", "19-thick-tube.dat"):
            whole, = self.solved(name, 1)
            pieces = self.solved(name, 3)
            self.assertEqual(len(pieces), 3)
            self.assertEqual({tuple(piece) for piece in pieces}, {tuple(whole)})
            cells = [number for piece in pieces for number in piece["element"]]
            self.assertEqual(sorted(cells), sorted(whole["element"]))
            self.assert_nodes_alike(whole, pieces)
            self.assert_cells_alike(whole, pieces)

    def assert_nodes_alike(self, whole, pieces):
        places = {number: k for k, number in enumerate(whole["node"]) if number[0] != 0}
        for array in [a for a in whole if len(whole[a]) == len(whole["Points"]) and a in ("U", "RF", "F", "stress")]:
            largest = max(abs(x) for value in whole[array] for x in value) or 1.0
            for piece in pieces:
                for number, value in zip(piece["node"], piece[array]):
                    if number[0] == 0:  # a station, or a node that the conversion made
                        continue
                    for x, y in zip(value, whole[array][places[number]]):
                        self.assertLessEqual(abs(x - y), 1e-7 * largest, (array, number))

    def assert_cells_alike(self, whole, pieces):
        places = {number: k for k, number in enumerate(whole["element"])}
        for array in [a for a in whole if len(whole[a]) == len(whole["element"]) and a in ("n", "m", "ex", "mesh")]:
            largest = max(abs(x) for value in whole[array] for x in value) or 1.0
            for piece in pieces:
                for number, value in zip(piece["element"], piece[array]):
                    for x, y in zip(value, whole[array][places[number]]):
                        self.assertLessEqual(abs(x - y), 1e-6 * largest, (array, number))

    def test_process_without_elements_has_no_piece(self):
        pieces = self.solved("01-cantilever.dat", 4)
        self.assertEqual(len(pieces), 1)
        self.assertEqual(len([f for f in self.files() if f.endswith(".vtu")]), 1)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[5:])
