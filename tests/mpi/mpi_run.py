"""What the tests of kestol-mpi share: arguments, runs, a folder for each test.

Their arguments are MPIRUN KESTOL_MPI KESTOL SOURCE, and those of unittest.
"""
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

MPIRUN, PROGRAM, KESTOL, SOURCE = sys.argv[1:5]
EXAMPLES = pathlib.Path(SOURCE) / "examples"
MAKE_BLOCK = pathlib.Path(SOURCE) / "bench/make_block.py"
# What mpirun itself says about a program that ends with another status than 0, and logs of one that ends all others.
BANNER = re.compile(r"^-{20,}\n.*?^-{20,}\n|^\[\S+:\d+\] [^\n]*\n", re.DOTALL | re.MULTILINE)


def kestol_mpi(*arguments, processes=1, cwd=None, mpirun=True):
    command = [PROGRAM, *map(str, arguments)]
    if mpirun:
        command = [MPIRUN, "--oversubscribe", "-n", str(processes), *command]
    return run_of(command, cwd)


def run_of(command, cwd):
    run = subprocess.run(command, capture_output=True, text=True, timeout=120, cwd=cwd)
    run.stderr = BANNER.sub("", run.stderr).strip("\n")
    return run


def block(cells):
    """The deck of a cube of solids."""
    return subprocess.run([sys.executable, MAKE_BLOCK, str(cells)], capture_output=True, text=True, check=True).stdout


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


def main():
    unittest.main(argv=sys.argv[:1] + sys.argv[5:])
