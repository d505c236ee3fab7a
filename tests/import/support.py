"""What the tests of kestol-import share: runs of the real programs, meshes by Gmsh, results.

Paths come from the environment: KESTOL (the solver), KESTOL_IMPORT (the program under test), GMSH."""
import contextlib
import io
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAM = os.environ.get("KESTOL_IMPORT", str(ROOT / "import" / "kestol-import"))
SOLVER = os.environ["KESTOL"]
GMSH = os.environ.get("GMSH", "gmsh")
sys.path.insert(0, str(ROOT / "import"))
sys.dont_write_bytecode = True

STEEL = "E = 210e3\nnu = 0.3\n"


class Case(unittest.TestCase):
    """A test in a folder of its own."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def write(self, name, text):
        path = self.folder / name
        if isinstance(text, bytes):
            path.write_bytes(text)
        else:
            path.write_text(text, encoding="utf-8")
        return path

    def read(self, name):
        return (self.folder / name).read_text(encoding="utf-8")

    def run_program(self, *arguments, **keywords):
        """The finished process; text in and out."""
        environment = {**os.environ, "PYTHONDONTWRITEBYTECODE": "1", "LC_ALL": "C.UTF-8",
                       **keywords.pop("env", {})}
        given = {"capture_output": True, "text": True, "encoding": "utf-8", **keywords}
        return subprocess.run([sys.executable, PROGRAM, *map(str, arguments)], cwd=self.folder,
                              env=environment, check=False, **given)

    def run_import(self, *arguments):
        """The same within this process, which spares starting one: most tests do."""
        from kestol_import.cli import main
        out, err = io.TextIOWrapper(io.BytesIO(), "utf-8"), io.StringIO()
        with contextlib.chdir(self.folder), contextlib.redirect_stdout(out), \
                contextlib.redirect_stderr(err):
            try:
                status = main([str(a) for a in arguments])
            except SystemExit as ended:
                status = ended.code
        out.flush()
        text = out.buffer.getvalue().decode("utf-8")
        return subprocess.CompletedProcess(arguments, status, text, err.getvalue())

    def made(self, *arguments):
        """A run that must do its work; its report."""
        done = self.run_import(*arguments)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout

    def refused(self, message, *arguments):
        """A run that must end with 2, one finding of that text, and no deck."""
        done = self.run_import("-q", *arguments)
        self.assertEqual(done.returncode, 2, done.stdout + done.stderr)
        self.assertEqual(done.stderr.splitlines()[0], message)
        self.assertNotIn("Traceback", done.stderr)
        return done

    def mesh(self, name, geometry, *options):
        """A mesh of Debian's Gmsh."""
        self.write("geometry.geo", geometry)
        subprocess.run([GMSH, "-v", "1", *options, "geometry.geo", "-o", name], cwd=self.folder,
                       check=True, stdin=subprocess.DEVNULL)
        return name

    def solve(self, deck="model.dat"):
        done = subprocess.run([SOLVER, deck, "report.txt"], cwd=self.folder, text=True,
                              capture_output=True, check=False)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        return Results(self.read("report.txt"), self.read(deck[:deck.rindex(".")] + ".kestol.res"),
                       Deck(self.read(deck)))

    def near(self, value, target, tolerance):
        """A relative comparison."""
        self.assertLessEqual(abs(value - target), tolerance * abs(target),
                             f"{value} is not {target} within {tolerance:g}")


class Deck:
    """Nodes, elements, supports and loads as a deck says them, read without the program's help."""

    def __init__(self, text):
        self.nodes, self.elements, self.kinds = {}, {}, {}
        self.supports, self.forces, self.loads, self.materials = [], [], [], {}
        lines = [line.strip() for line in text.splitlines()]
        section, kind = None, None
        for line in lines:
            words = line.split()
            if not words or line.startswith("#"):
                continue
            match = re.match(r"dimension = \d +elemtype (\w+) +nnode = (\d+)", line)
            if match:
                kind = (match[1], int(match[2]))
            elif words[0] == "end":
                section = None
            elif not re.match(r"[\d-]", words[0]):
                section = words[0]
            elif section == "coordinates":
                self.nodes[int(words[0])] = tuple(float(w) for w in words[1:])
            elif section == "elements":
                numbers = [int(w) for w in words]
                self.elements[numbers[0]] = (tuple(numbers[1:-1]), numbers[-1])
                self.kinds[numbers[0]] = kind
            elif section == "materials":
                self.materials[int(words[0])] = dict(w.split("=") for w in words[1:])
            elif section == "constraints":
                self.supports.append((int(words[0]), words[1], words[2:]))
            elif section == "nodal_point_loads":
                self.forces.append((int(words[0]), [float(w) for w in words[1:]]))
            elif section and (section.endswith("_loads")):
                self.loads.append((section, int(words[0]), [float(w) for w in words[1:]]))

    def node_at(self, *place):
        return min(self.nodes, key=lambda n: sum((a - b) ** 2
                                                 for a, b in zip(self.nodes[n], place)))


class Results:
    """Displacements and reactions of a report, blocks of a result file."""

    def __init__(self, report, results, deck):
        self.deck, self.displacements, self.reactions, self.strengths = deck, {}, {}, {}
        section, element = None, None
        for line in report.splitlines():
            words = line.split()
            if not words:
                continue
            if line.startswith(("NODAL", "REACTIONS", "ELEMENT")):
                section = words[0]
            elif section == "NODAL":
                self.displacements[int(words[0])] = [float(w) for w in words[1:]]
            elif section == "REACTIONS":
                self.reactions[int(words[0])] = [float(w) for w in words[1:]]
            elif words[0] == "Element":
                element = self.strengths.setdefault(int(words[1]), [])
            else:
                element.append([float(w) for w in words])
        self.results = results

    def at(self, *place):
        """The displacements of the node nearest to a place."""
        return self.displacements[self.deck.node_at(*place)]

    def held(self, count=3):
        """Sum of the printed reactions."""
        return [sum(r[d] for r in self.reactions.values()) for d in range(count)]

    def block(self, name):
        """Values of a block of the result file: key -> list of points."""
        found, names, inside = {}, 0, False
        for line in self.results.splitlines():
            if " Estatic " in line:
                inside = line.split()[0] == name.split()[0] and line.startswith(name)
                kind, _, named = line.split("Estatic")[1].split()[:3]
                names = {"1": 1, "2": 3, "3": 6, "6": 0}[kind] if named == "1" else 0
            elif inside and names:
                names -= 1
            elif inside:
                words = line.split()
                if not line.startswith(" "):
                    key = int(words.pop(0))
                    found[key] = []
                found[key].append([float(w) for w in words])
        return found
