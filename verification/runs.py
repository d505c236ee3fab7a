"""Runs of the program on a deck, and questions to the results by the numbers of the deck."""
import math
import pathlib
import subprocess
import tempfile

DIRECT = "SkyLine"
ITERATIVE = "Sparse 1e-10 1e-8 20000"


class RunFailed(Exception):
    """The program ended with a message."""


class Answers:
    """Questions to results, wherever they stand. Nodes, elements and degrees count from 1."""

    def __init__(self, model, displacements, reactions, blocks):
        self.model, self.displacements, self.reactions = model, displacements, reactions
        self.blocks = blocks

    def u(self, node, d):
        return self.displacements[node][d - 1]

    def reaction(self, node, d):
        """As printed: stiffness times displacements."""
        return self.reactions[node][d - 1]

    def points(self, block):
        """Values of a block at integration points: element -> list of points."""
        return self.blocks[block]

    def nodal(self, block):
        """Values of a block at nodes: node -> values."""
        return {node: values[0] for node, values in self.blocks[block].items()}


class Results(Answers):
    """What the report and the result file say."""

    def __init__(self, model, report, results):
        super().__init__(model, {}, {}, dict(read_blocks(results.splitlines())))
        self.strengths = {}
        self.read_report(report.splitlines())

    def read_report(self, lines):
        section, element = None, None
        for line in lines:
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

    def end(self, element, end, d):
        """Force d on an end of a beam, local axes, its loads taken off."""
        return self.strengths[element][end - 1][d - 1]

    def held(self, node, d):
        """What the support of a plane frame really gives: the end forces of its beams."""
        total = [0.0, 0.0, 0.0]
        for element, (nodes, _) in enumerate(self.model.elements, 1):
            (xa, ya), (xb, yb) = (self.model.at(n) for n in nodes)
            length = math.hypot(xb - xa, yb - ya)
            c, s = (xb - xa) / length, (yb - ya) / length
            for end, at in enumerate(nodes):
                if at == node:
                    px, py, m = self.strengths[element][end]
                    total[0] += c * px - s * py
                    total[1] += s * px + c * py
                    total[2] += m
        return total[d - 1]


def read_blocks(lines):
    """(name, {node or element: list of value lists}) of a result file. The line of a further
    integration point begins with a blank."""
    name, content, names = None, None, 0
    for line in lines:
        if " 1.0 Estatic " in line:
            if name:
                yield name, content
            name, content = line[:line.index("4 1.0 Estatic")].strip(), {}
            kind, _, named = line.split("Estatic")[1].split()[:3]
            names = {"1": 1, "2": 3, "3": 6, "6": 0}[kind] if named == "1" else 0
        elif names:
            names -= 1
        elif name:
            words = line.split()
            if not line.startswith(" "):
                key = int(words.pop(0))
                content[key] = []
            content[key].append([float(w) for w in words])
    if name:
        yield name, content


def run_program(program, model, solver):
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        (folder / "model.dat").write_text(model.text(solver))
        done = subprocess.run([program, "model.dat", "report.txt"], cwd=folder, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        if done.returncode != 0:
            raise RunFailed(f"{model.title}, Solver {solver}: {done.stdout.strip()}")
        return Results(model, (folder / "report.txt").read_text(),
                       (folder / "model.kestol.res").read_text())


def difference(a, b):
    """The largest difference of two sets of displacements, relative to the largest translation or
    rotation (space models of six degrees: the last three; plane frames: the third)."""
    degrees = len(next(iter(a.displacements.values())))
    plane = a.model.kind == "2d"
    groups = ((0, 2), (2, 3)) if plane else ((0, 3), (3, degrees))
    worst = 0.0
    for first, last in groups:
        pairs = [(p, q) for node, values in a.displacements.items()
                 for p, q in zip(values[first:last], b.displacements[node][first:last])]
        largest = max((abs(p) for p, _ in pairs), default=0.0)
        if largest > 0:
            worst = max(worst, max(abs(p - q) for p, q in pairs) / largest)
    return worst
