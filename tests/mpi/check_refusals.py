#!/usr/bin/env python3
"""Every refusal of kestol-mpi, told once and in its words: check_refusals.py MPIRUN KESTOL_MPI KESTOL SOURCE"""
import re
import subprocess

from mpi_run import EXAMPLES, MPIRUN, PROGRAM, Case, block, kestol_mpi, main, run_of

# The arguments, the words between the program's name and the hint.
USAGE = (
    ([], "DECK is required"),
    (["--frob"], "unknown option --frob"),
    (["d", "report", "more"], "The following argument was not expected: more"),
    (["d", "a", "-o", "b"], "-o names a report and so does a"),
    (["--vtu", "x.vtu", "d"], "--vtu takes a name that ends with .pvtu"),
    (["--solver", "magic", "d"], "--solver: magic is none of auto, direct, gamg, hypre"),
    (["--tolerance", "0", "d"], "--tolerance: 0 is not a number above 0"),
    (["--tolerance", "nan", "d"], "--tolerance: nan is not a number above 0"),
    (["--tolerance", "small", "d"], "--tolerance: small is not a number above 0"),
    (["d", "--tolerance"], "--tolerance: 1 required X missing"),
    (["--max-iterations", "0", "d"], "--max-iterations: Value 0 not in range 1 to 1000000000"),
    (["--max-iterations", "many", "d"], "--max-iterations: Value many not in range 1 to 1000000000"),
)

JOINT = """PROBLEM a joint between hinges
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
TURNS = """the supports leave the model a rigid motion [rigid-motion]
  mode 1: nodes 1-4 turn about z at (0, 0)
    supports at node 1 (line 38)"""
FOLDS = """the model is a mechanism in 2 ways [mechanism]
  mode 1: node 3 moves along y and turns about z
          node 4 turns about z
          elements 2 and 3 turn about z
    hinges at nodes 2 and 3 (lines 23-24)
    supports at node 4 (line 20)
  mode 2: nodes 1 and 2 turn about z at (0, 0)
          node 3 turns about z
          element 2 turns about z
    hinges at nodes 2 and 3 (lines 23-24)
    supports at nodes 1 and 4 (lines 19-20)"""


class Refused(Case):
    def refused(self, wanted, status, *arguments, processes=2):
        """These words once, and no file that was not there before; 0 processes: without mpirun, which takes a
        second to end the others."""
        before = self.files()
        run = kestol_mpi(*arguments, processes=processes, cwd=self.here, mpirun=processes > 0)
        self.assertEqual((run.returncode, run.stderr, run.stdout), (status, wanted, ""))
        self.assertEqual(self.files(), before)


class Refusals(Refused):
    def test_command_line(self):
        for k, (arguments, words) in enumerate(USAGE):
            with self.subTest(arguments):
                self.refused(f"kestol-mpi: {words}; try kestol-mpi --help", 2, *arguments,
                             processes=3 if k % 4 == 0 else 0)

    def test_deck_that_cannot_be_read(self):
        self.refused("kestol-mpi: error: can't open file no.dat: No such file or directory", 2, "no.dat", processes=3)
        self.refused("kestol-mpi: error: can't open file .: Is a directory", 2, ".", processes=0)
        self.refused("kestol-mpi: error: failed reading /proc/self/mem: Input/output error", 2, "/proc/self/mem",
                     "-r", "a.res", processes=0)

    def test_mistake_in_the_deck(self):
        self.deck("bad.dat", "nonsense\n")
        self.refused("bad.dat:1: error: can't find word ***problem*** in input file [syntax]\n"
                     "    1 | nonsense", 2, "bad.dat", "report", processes=3)
        self.deck("none.dat", "PROBLEM none\nTYPE 2d\n")
        self.refused("none.dat: error: it is necessary at least one mesh [syntax]", 2, "none.dat", processes=0)

    def test_first_bad_element_is_named_whoever_computes_it(self):
        head, rest = block(2).split("elements\n", 1)
        lines = rest.splitlines()
        for place in (5, len(lines) // 3):
            number, a, b, c, d, material = lines[place].split()
            if number.isdigit():
                lines[place] = " ".join([number, b, a, c, d, material])
        self.deck("flat.dat", head + "elements\n" + "\n".join(lines) + "\n")
        self.refused("flat.dat: error: element 6 has jacobian <=0 [model]", 2, "flat.dat", processes=3)

    def test_rigid_motion_and_mechanism(self):
        free = (EXAMPLES / "02-portal-frame.dat").read_text()
        self.deck("free.dat", re.sub(r"constraints\n.*?end constraints", "constraints\n1 110 0 0 0\n"
                                     "end constraints", free, flags=re.DOTALL))
        self.deck("joint.dat", JOINT)
        for name, words in (("free.dat", TURNS), ("joint.dat", FOLDS)):
            for solver in ("auto", "gamg"):
                self.refused(f"{name}: error: {words}", 1, "--solver", solver, name)

    def test_processes_that_read_different_decks(self):
        command = [MPIRUN, "--oversubscribe"]
        for folder, example in (("a", "01-cantilever.dat"), ("b", "02-portal-frame.dat")):
            (self.here / folder).mkdir()
            (self.here / folder / "deck.dat").write_text((EXAMPLES / example).read_text())
            command += [":"] * (folder == "b") + ["-n", "1", "-wdir", self.here / folder, PROGRAM, "deck.dat"]
        run = run_of(command, self.here)
        self.assertEqual((run.returncode, run.stderr, run.stdout),
                         (2, "kestol-mpi: error: not every process reads the same deck.dat", ""))

    def test_iterations_that_end_too_early_advise_the_direct_solver(self):
        self.deck("block.dat", block(4))
        run = kestol_mpi("--solver", "gamg", "--max-iterations", "2", "block.dat", "report", processes=2,
                         cwd=self.here)
        self.assertEqual(run.returncode, 1)
        self.assertRegex(run.stderr, r"^kestol-mpi: error: the iterations ended after 2 of at most 2 with a "
                                     r"residual \|f - K u\| / \|f\| of \d\.\de[-+]\d\d, above the tolerance of "
                                     r"1e-10: try --solver direct$")
        self.assertEqual(self.files(), ["block.dat"])

    def test_petsc_has_the_last_word_on_its_options(self):
        self.deck("01-cantilever.dat")
        for processes in (1, 3):
            run = kestol_mpi("--solver", "gamg", "--petsc", "-pc_type nothing", "01-cantilever.dat",
                             processes=processes, cwd=self.here)
            self.assertEqual(run.returncode, 2)
            self.assertRegex(run.stderr, r"^kestol-mpi: error: PETSc: Unknown type\. [^\n]* nothing$")
            self.assertEqual(self.files(), ["01-cantilever.dat"])

    def test_petsc_fails_on_some_processes_while_others_work(self):
        self.deck("01-cantilever.dat")
        sound = ["-n", "1", PROGRAM, "--solver", "gamg", "01-cantilever.dat"]
        for failing in (1, 2):
            run = run_of([MPIRUN, "--oversubscribe", *sound, ":", "-n", str(failing), PROGRAM, "--solver", "gamg",
                          "--petsc", "-pc_type nothing", "01-cantilever.dat"], self.here)
            self.assertEqual(run.returncode, 2)
            self.assertRegex(run.stderr, r"^kestol-mpi: error: PETSc: Unknown type\. [^\n]* nothing$")
            self.assertEqual(self.files(), ["01-cantilever.dat"])


class Outputs(Refused):
    def setUp(self):
        super().setUp()
        self.deck("01-cantilever.dat")

    def test_output_that_is_the_deck(self):
        self.refused("kestol-mpi: error: the output 01-cantilever.dat is the input 01-cantilever.dat", 2,
                     "01-cantilever.dat", "01-cantilever.dat")

    def test_outputs_of_one_name(self):
        self.refused("kestol-mpi: error: two outputs have the name x", 2, "-r", "x", "01-cantilever.dat", "x")

    def test_folder_that_is_not_there(self):
        for option, processes in (("-o", 3), ("-r", 0), ("-i", 2)):
            self.refused("kestol-mpi: error: can't open file no/file: No such file or directory", 2, option,
                         "no/file", "01-cantilever.dat", processes=processes)
        self.refused("kestol-mpi: error: can't open file no/x.pvtu: No such file or directory", 2, "--vtu",
                     "no/x.pvtu", "01-cantilever.dat")

    def test_full_device(self):
        for option, processes in (("-o", 2), ("-r", 0), ("-i", 2)):
            self.refused("kestol-mpi: error: failed writing to /dev/full: No space left on device", 2, "-q", option,
                         "/dev/full", "01-cantilever.dat", processes=processes)

    def test_mesh_file_on_a_full_device(self):
        (self.here / "x.kestol.bon").symlink_to("/dev/full")
        self.refused("kestol-mpi: error: x.kestol.bon: Failed writing to disk. Probably the disk is full", 2, "-q",
                     "-p", "-r", "x.kestol.res", "01-cantilever.dat", processes=0)

    def test_standard_output_on_a_full_device(self):
        for option in ("-o", "-i"):
            with open("/dev/full", "wb") as full:
                done = subprocess.run([PROGRAM, "-q", option, "-", "01-cantilever.dat"], cwd=self.here, stdout=full,
                                      stderr=subprocess.PIPE, text=True, check=False)
            self.assertEqual((done.returncode, done.stderr),
                             (2, "kestol-mpi: error: failed writing to standard output: No space left on device\n"))
            self.assertEqual(self.files(), ["01-cantilever.dat"])


if __name__ == "__main__":
    main()
