"""Runs a companion on a machine that fails it: what it is given, what it may leave, how it may end."""
import os
import pathlib
import re
import resource
import signal
import subprocess
import sys
import tempfile
import time

PORTAL = """PROBLEM portal
TYPE 2d
units_names
  kN-m kN m kPa 1000 1
end
units_mesh=m
units_mat_and_load=kN-m
units_res=kN-m
mesh
  dimension = 2 elemtype Linear nnode = 2
  coordinates
    1 0 0
    2 0 4
    3 6 4
    4 6 0
  end coordinates
  elements
    1 1 2 1
    2 2 3 1
    3 3 4 1
  end elements
materials
  1 E=210e6 A=1e-2 Iz=1e-4
end materials
constraints
  1 111 0 0 0
  4 111 0 0 0
end constraints
global_pressure_loads
  2 0 -10
end
"""
INPUTS = {
    "portal.dat": PORTAL,
    "mechanism.dat": PORTAL.replace("  1 111 0 0 0\n  4 111", "  1 010 0 0 0\n  4 010"),
    "mistakes.dat": PORTAL.replace("    3 3 4 1", "    3 3 9 1\n    3 x").replace("A=1e-2", "A=-1")
                          .replace("global_pressure", "global_presure"),
    "wind.dat": "nodal_point_loads\n  2 12 0 0\nend\n",
    "cases.toml": 'model = "portal.dat"\n[cases.G]\ncategory = "permanent"\nloads = "model"\n'
                  '[cases.W]\ncategory = "wind"\nloads = "wind.dat"\n'
                  '[combinations]\nboth = { G = 1.35, W = 1.5 }\n[eurocode]\nrules = ["6.10"]\n',
    "mistakes.toml": 'model = "portal.dat"\n[cases.G]\ncategory = "permanet"\nloads = "nowhere.dat"\n'
                     '[combinations]\nboth = { H = 1.35 }\n',
}
ROOT = pathlib.Path(__file__).resolve().parents[2]
INPUTS["portal.msh"] = (ROOT / "tests/packages/portal.msh").read_text()
INPUTS["portal.toml"] = (ROOT / "examples/import/portal.toml").read_text()
CASES = {
    "kestol-check": [
        ["portal.dat", "--reactions", "--equilibrium", "-o", "out.txt"],
        ["mechanism.dat", "--format", "json", "-o", "out.json", "--mode", "out.vtu"],
        ["mistakes.dat", "--format", "sarif", "-o", "out.sarif"],
        ["mistakes.dat"],
        ["portal.dat", "--reactions"],
        ["--list-codes"],
        ["--explain", "mechanism"],
        ["--frobnicate"],
    ],
    "kestol-export": [
        ["portal.dat", "--vtu", "out.vtu", "--csv", "out", "--json", "out.json", "--report", "out.txt",
         "--res", "out.res"],
        ["portal.dat", "--vtu", "out.vtu", "--encoding", "ascii"],
        ["mechanism.dat", "--json", "out.json"],
        ["mistakes.dat", "--json", "out.json"],
        ["portal.dat", "--json", "-"],
        ["--help"],
        ["--frobnicate"],
    ],
    "kestol-combine": [
        ["cases.toml", "-o", "out.txt", "--json", "out.json", "--csv", "out", "--vtu", "out"],
        ["mistakes.toml", "-o", "out.txt"],
        ["cases.toml", "--list"],
        ["--version"],
    ],
    "kestol-view": [
        ["portal.dat", "-o", "out.html", "--svg", "out"],
        ["portal.dat", "-o", "out.html", "--cases", "cases.toml"],
        ["mechanism.dat", "-o", "out.html"],
        ["mistakes.dat", "-o", "out.html"],
        ["--help"],
    ],
    "kestol-import": [
        ["portal.msh", "portal.toml", "-o", "out.dat", "--map", "out.csv"],
        ["portal.msh", "portal.toml", "-o", "-"],
        ["--list", "portal.msh"],
    ],
    "kestol-mpi": [
        ["-q", "-p", "-r", "out.res", "-i", "out.info", "--vtu", "out.pvtu", "portal.dat", "out.txt"],
        ["-q", "-r", "out.res", "mechanism.dat"],
        ["-q", "-r", "out.res", "mistakes.dat"],
        ["--help"],
    ],
}
ENDING = (signal.SIGHUP, signal.SIGINT, signal.SIGPIPE, signal.SIGQUIT, signal.SIGTERM)
LOG = "out.info"  # grows while a run is watched, and stays when it fails
LIMIT = 60  # seconds that no run of these takes


class End:
    """How a run ended, and the files that it left."""

    def __init__(self, status, out, err, files):
        self.status, self.out, self.err, self.files = status, out, err, files

    def __eq__(self, other):
        return vars(self) == vars(other)


class Machine:
    """A folder with the inputs, and a program that runs in it as the faults say."""

    def __init__(self, program, library=None):
        self.program, self.library = pathlib.Path(program), library
        self.name = self.program.name
        self.scratch = tempfile.TemporaryDirectory()
        self.folder = pathlib.Path(self.scratch.name) / "work"
        self.folder.mkdir()
        for name, text in INPUTS.items():
            (self.folder / name).write_text(text)
        # Python has SIGPIPE ignored, and writes to a closed pipe are failures of their own.
        self.ending = ENDING[:2] + ENDING[-1:] if self.name == "kestol-import" else ENDING
        self.failures = 0

    def run(self, arguments, faults=None, **options):
        environment = {**os.environ, "OMPI_MCA_ess_singleton_isolated": "1", "OMP_NUM_THREADS": "1"}
        if self.library:
            environment.update(faults or {}, LD_PRELOAD=self.library, KESTOL_DISK=str(self.folder))
            if self.name == "kestol-mpi":
                environment["KESTOL_FAIL_LATER"] = "1"
        try:
            done = subprocess.run([str(self.program), *arguments], cwd=self.folder, env=environment,
                                  stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                  stderr=subprocess.PIPE, timeout=LIMIT, check=False, **options)
        except subprocess.TimeoutExpired:
            return End("hangs", b"", b"", self.take_files())
        return End(done.returncode, done.stdout, done.stderr, self.take_files())

    def take_files(self):
        """What lies beside the inputs, which is removed."""
        files = {}
        for path in self.folder.iterdir():
            if path.name not in INPUTS:
                files[path.name] = path.read_bytes()
                path.unlink()
        files.pop(LOG, None)
        return files

    def counts(self, arguments):
        """The end of a run without faults, its allocations and its calls of the disk, its seconds."""
        self.run(arguments)  # the first run of a program takes longer
        counts = pathlib.Path(self.scratch.name) / "counts"
        start = time.monotonic()
        end = self.run(arguments, {"KESTOL_FAULT_COUNTS": str(counts)})
        seconds = time.monotonic() - start
        allocations, calls = map(int, counts.read_text().split())
        return end, allocations, calls, seconds

    def expect(self, holds, *what):
        if holds:
            return
        self.failures += 1
        if self.failures <= 20:
            print("FAILED:", self.name, *what, flush=True)

    def told_once(self, end, clean, words):
        """Whether the run failed with one line, behind what it would have said anyway."""
        lines = end.err.decode("utf-8", "replace").splitlines(keepends=True)
        place = r".*" if self.name == "kestol-import" else self.name  # that one names the file first
        return (end.status == 2 and bool(lines) and words in lines[-1]
                and re.match(place + ": error: ", lines[-1]) is not None
                and clean.err.startswith("".join(lines[:-1]).encode()))

    def finish(self, what):
        print(f"{self.name}: {what}, {self.failures} failures")
        sys.exit(1 if self.failures or not what else 0)


def numbers(last, most):
    """1 to `last`: all, or about `most` of them with growing steps behind the first ones."""
    if last <= most:
        return list(range(1, last + 1))
    dense = most // 2
    chosen, step, at = list(range(1, dense + 1)), 1.0, float(dense)
    growth = 1.0
    while dense + sum(growth ** k for k in range(1, most - dense + 1)) < last:
        growth += 1e-4
    while at + step <= last:
        at += step
        chosen.append(int(at))
        step *= growth
    return chosen


def usual_signals():
    """For preexec_fn: what starts the tests may have some ignored."""
    for name in ENDING:
        signal.signal(name, signal.SIG_DFL)
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def little_memory(mebibytes):
    """For preexec_fn: an address space of that size."""
    def limit():
        resource.setrlimit(resource.RLIMIT_AS, (mebibytes << 20, mebibytes << 20))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    return limit
