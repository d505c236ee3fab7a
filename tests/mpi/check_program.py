#!/usr/bin/env python3
"""Runs kestol-mpi as its users do, with every option: check_program.py MPIRUN KESTOL_MPI KESTOL SOURCE"""
import contextlib
import os
import pty
import re
import subprocess

from mpi_run import KESTOL, PROGRAM, Case, block, kestol_mpi, main

NUMBER = r"[-+]?\d+\.?\d*(?:[eE][-+]?\d+)?"


def numbers(text):
    return [float(word) for word in re.findall(NUMBER, text)]


def words(text):
    return re.sub(NUMBER, "#", text).split()


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

    def test_information_tells_each_stage_once(self):
        self.deck("01-cantilever.dat")
        direct, gamg = (re.compile("reading\ndividing the nodes\nassembling\n" + stages + words +
                                   r", residual \|f - K u\| / \|f\| = \d\.\de-\d\d\nstrengths and reactions\n"
                                   r"writing\nTotal time = \d\S* s\n")
                        for stages, words in (("factorising\nsolving\n", "direct"),
                                              ("coarsening\nsolving\n", r"gamg, \d+ iterations?")))
        run = kestol_mpi("-i", "-", "01-cantilever.dat", processes=2, cwd=self.here)
        self.assertRegex(run.stdout, direct)
        self.assertEqual(direct.sub("", run.stdout), "")
        kestol_mpi("-i", "info", "--solver", "gamg", "01-cantilever.dat", cwd=self.here)
        self.assertEqual(gamg.sub("", (self.here / "info").read_text()), "")

    def test_verbose_shows_solver_times_and_balance(self):
        self.deck("14-cylindrical-roof.dat")
        run = kestol_mpi("-v", "14-cylindrical-roof.dat", processes=2, cwd=self.here)
        self.assertIn("type: mumps", run.stderr)
        stages = ("reading", "dividing the nodes", "assembling", "factorising", "solving", "strengths and reactions",
                  "writing")
        *times, last = run.stderr.splitlines()[-len(stages) - 1:]
        for stage, line in zip(stages, times):
            self.assertRegex(line, rf"^{stage:32} +\d+\.\d{{3}} s \(\d+\.\d{{3}} on the fastest process\)$")
        balance = re.fullmatch(r"2 processes, (\d+) to (\d+) nodes each; peak memory (\d+) MB, (\d+) MB on the largest",
                               last)
        fewest, most, memory, largest = map(int, balance.groups())
        self.assertLess(most, 1.2 * fewest)
        self.assertLess(largest, memory)
        alone = kestol_mpi("-v", "14-cylindrical-roof.dat", cwd=self.here)
        self.assertRegex(alone.stderr, r"\n1 process, \d+ nodes; peak memory \d+ MB$")

    def test_long_work_shows_its_progress_on_a_terminal(self):
        """The deck comes through a pipe, in the third second: then the next stage is named."""
        self.deck("01-cantilever.dat")
        os.mkfifo(self.here / "slow")
        shown = (r"\rdividing the nodes\x1b\[K(\r[^\r\n]*\x1b\[K)*\r\x1b\[K"
                 r"kestol-mpi: direct, residual [^\r]*\r\n(\r[^\r\n]*\x1b\[K)*")
        for options, wanted in (((), shown), (("-q",), "")):
            leader, follower = pty.openpty()
            with subprocess.Popen(["sh", "-c", "(sleep 2.3; cat 01-cantilever.dat) > slow"], cwd=self.here), \
                    subprocess.Popen([PROGRAM, "slow", "-r", "x.kestol.res", *options], cwd=self.here,
                                     stderr=follower) as run:
                os.close(follower)
                said = b""
                with contextlib.suppress(OSError):  # how the end of a terminal is told
                    while piece := os.read(leader, 4096):
                        said += piece
            os.close(leader)
            self.assertEqual(run.returncode, 0)
            self.assertRegex(said.decode(), f"^{wanted}$")

    def test_help_and_version_come_once(self):
        run = kestol_mpi("--help", processes=2)
        self.assertEqual((run.returncode, run.stdout.count("Usage:"), run.stderr), (0, 1, ""))
        for option in ("--solver", "--tolerance", "--max-iterations", "--vtu", "-i", "-p", "-r", "-v",
                       "--petsc", "-o", "-q"):
            self.assertIn(option, run.stdout)
        self.assertRegex(kestol_mpi("--version", processes=2).stdout, r"^kestol-mpi \d+\.\d+\.\d+\n$")


class Solvers(Case):
    def block(self):
        self.deck("block.dat", block(4))

    def test_iterations_are_few_and_told(self):
        self.block()
        for name, most in (("gamg", 40), ("hypre", 80)):
            run = kestol_mpi("--solver", name, "block.dat", processes=2, cwd=self.here)
            found = re.match(rf"kestol-mpi: {name}, (\d+) iterations, residual .* = (.*)$", run.stderr)
            self.assertTrue(found, run.stderr)
            self.assertLess(int(found[1]), most)
            self.assertLessEqual(float(found[2]), 1e-10)

    def test_one_iteration_with_an_exact_preconditioner(self):
        self.block()
        run = kestol_mpi("--solver", "gamg", "--petsc", "-pc_type cholesky", "block.dat", cwd=self.here)
        self.assertRegex(run.stderr, "^kestol-mpi: gamg, 1 iteration, residual ")

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

    def test_options_of_petsc(self):
        self.block()
        run = kestol_mpi("--solver", "gamg", "--petsc", "-ksp_type fcg -nonsense 1", "-v", "block.dat",
                         cwd=self.here)
        self.assertIn("type: fcg", run.stderr)
        self.assertIn("\nkestol-mpi: nothing asked for these options of PETSc: -nonsense\n", run.stderr)


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


if __name__ == "__main__":
    main()
