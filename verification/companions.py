"""The same problems by the companions: values from kestol-export, the balance of loads and reactions
from kestol-check, drawings from kestol-view."""
import json
import pathlib
import subprocess
import tempfile

import runs
from page import Page

BALANCED = 1e-10  # of the loads and reactions
BLOCKS = (("Axial Force", "n"), ("Momentus", "m"), ("Shear", "q"))

# Nodes press on the ends of a beam; its stations hold what is inside: N, V = dM/dx and M.
SIGNS_OF_ENDS = ((-1, 1, -1), (1, -1, 1))


class ExportedResults(runs.Answers):
    """What a file of kestol-export says; every value has all its digits."""

    def __init__(self, model, result):
        blocks = {name: {shell["element"]: [point[key] for point in shell["points"]]
                         for shell in result["shells"]} for name, key in BLOCKS}
        blocks["Strengths"] = {node["number"]: [node["stress"]] for node in result["nodalStresses"]}
        plane = model.kind == "2d"
        super().__init__(model,
                         {node["number"]: of_degrees(plane, node["u"], node.get("rotation", []))
                          for node in result["nodes"]},
                         {support["node"]: support["printed"] for support in result["reactions"]},
                         blocks)
        self.stations = {beam["element"]: beam["stations"] for beam in result["beams"]}
        self.supports = {at["node"]: of_degrees(plane, at["force"], at.get("moment", []))
                         for at in result["reactions"]}

    def end(self, element, end, d):
        """Force d on an end of a beam of a plane frame."""
        station = self.stations[element][0 if end == 1 else -1]
        return SIGNS_OF_ENDS[end - 1][d - 1] * station[("N", "Vy", "Mz")[d - 1]]

    def held(self, node, d):
        return self.supports[node][d - 1]


def of_degrees(plane, along, about):
    """Two vectors of space as the degrees of a node."""
    return [along[0], along[1], about[2]] if plane else [*along, *about]


class CompanionPage(Page):
    """A problem whose values come from kestol-export, and whose decks kestol-check judges."""

    def __init__(self, problem, export, check):
        super().__init__(problem, export)
        self.check_program = check
        self.imbalance = 0.0  # the largest of its decks

    def results(self, name, model, _):
        with tempfile.TemporaryDirectory() as folder:
            deck = pathlib.Path(folder) / "model.dat"
            deck.write_text(self.decks[f"{name}.dat"])
            result = json_of([self.program, "--quiet", "--json", "-", deck])
            said = json_of([self.check_program, "--equilibrium", "--format", "json", deck])
        self.imbalance = max(self.imbalance, said["equilibrium"]["relativeError"])
        self.failures += [f"{name}: kestol-check says: {finding['text']} [{finding['code']}]"
                          for finding in said["findings"] if finding["severity"] == "error"]
        return ExportedResults(model, result)

    def balance(self):
        """Where more is left, kestol-check knows it as rounding, or tells of it as an error."""
        return "1e-10" if self.imbalance <= BALANCED else "rounding"


def json_of(command):
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise runs.RunFailed(f"{' '.join(map(str, command))}: {done.stderr.strip()}")
    return json.loads(done.stdout)


def drawing(view, deck, what):
    """What kestol-view draws of the text of a deck: _model, _deformed, _N, _V or _M."""
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder) / "model.dat"
        path.write_text(deck)
        done = subprocess.run([view, "--quiet", "--solver", "deck", "--svg", path.stem, path.name],
                              cwd=folder, capture_output=True, text=True, check=False)
        if done.returncode != 0:
            raise runs.RunFailed(f"kestol-view: {done.stderr.strip()}")
        return (path.parent / f"{path.stem}_{what}.svg").read_text()
