"""check_companions.py KESTOL-CHECK KESTOL-EXPORT KESTOL-COMBINE [KESTOL-VIEW [KESTOL-MPI]]: whatever solves a
model tells of a mechanism in the words of kestol-check, ends with 1 and writes nothing, also where the
solver itself finds an answer. What else keeps a model from being solved is no mechanism: it ends with 2."""
import os
import pathlib
import re
import subprocess
import sys

from checker import Checker, Score

BEAM = """PROBLEM beam
TYPE 2d
mesh dimension = 2 elemtype Linear nnode = 2
coordinates
1 0 0
2 3 0
3 6 0
4 9 0
end coordinates
elements
1 1 2 1
2 2 3 1
3 3 4 1
end elements
materials
1 E=2.1e11 A=1e-2 Iz=1e-5
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
2 0 -1000 0
end nodal_point_loads
"""
# Each a mechanism of its own kind, and the first words that are said about it.
LOOSE = {
    "hinges in a row": (BEAM, "the model is a mechanism in 2 ways [mechanism]"),
    "a rigid motion": (BEAM.replace("4 110", "4 000"), "[rigid-motion]"),
    "no support that holds": (BEAM.replace(" 110", " 000"), "3 rigid motions [rigid-motion]"),
    "a node of its own": (BEAM.replace("4 9 0\n", "4 9 0\n5 9 9\n"), "[orphan-node]"),
    "a part of its own": (BEAM.replace("4 9 0\n", "4 9 0\n5 0 5\n6 3 5\n")
                          .replace("3 3 4 1\n", "3 3 4 1\n4 5 6 1\n").replace("2\n3\nend rot", "3\nend rot"),
                          "a part of the model 3 rigid motions [rigid-motion]"),
}
SOUND = BEAM.replace("2\n3\nend rotules", "3\nend rotules").replace("4 110", "4 111")
STOPPED = "error when solving system. Stopped after 10 iterations.Probably conditions are not correct"
SIDE = 8
PLACES = range(1, SIDE * SIDE + 1)  # of a grid that hangs at its first node
BARS = ([(n, n + 1) for n in PLACES if n % SIDE] + [(n, n + SIDE) for n in PLACES if n + SIDE in PLACES])
TEN_STEPS = ("PROBLEM grid\nTYPE 2d\nSolverSparse 1e-12 1e-12 10\nmaterials\n1 E=2.1e11 A=1e-2 Iz=1e-5\nend materials\n"
             "mesh dimension = 2 elemtype Linear nnode = 2\ncoordinates\n"
             + "".join(f"{n} {n % SIDE} {n // SIDE}\n" for n in PLACES) + "end coordinates\nelements\n"
             + "".join(f"{e} {a} {b} 1\n" for e, (a, b) in enumerate(BARS, 1)) + "end elements\n"
             "constraints\n1 111 0 0 0\nend constraints\n"
             f"nodal_point_loads\n{PLACES[-1]} 0 -1000 0\nend nodal_point_loads\n")
CUT = ('deck.dat:5:5: error: "2.1d11" is read as 2.1: write e for the exponent [number-cut]\n'
       "    5 | 1 E=2.1d11 A=1e-2 Iz=1e-5\n      |     ^~~~~~\n")
# What the solver that the deck names refuses: its status, and what is said.
UNSOLVED = {
    "iterations that end": (TEN_STEPS, 2, f"deck.dat: error: {STOPPED} [model]\n"),
    "such with another mistake": (TEN_STEPS.replace("2.1e11", "2.1d11"), 2,
                                  f"{CUT}deck.dat: error: {STOPPED} [model]\n"),
    "a mechanism with another mistake": (
        TEN_STEPS.replace("1 111", "1 110").replace("2.1e11", "2.1d11"), 1,
        f"{CUT}deck.dat: error: error when solving system. Probably conditions are not correct [mechanism]\n"),
}
COMBINATIONS = '''model = "deck.dat"
[cases.G]
category = "permanent"
loads = "model"
[combinations]
U = { G = 1.35 }
'''


def commands(export, combine, view=None, mpi=None):
    for options in (("--json", "out"), ("--solver", "skyline", "--json", "out"), ("--report", "out"),
                    ("--solver", "sparse", "--csv", "out"), ("--solver", "deck", "--res", "out")):
        yield [export, *options, "deck.dat"]
    yield [combine, "--json", "out", "c.toml"]
    if view:
        yield [view, "-o", "page", "deck.dat"]
        yield [view, "--solver", "skyline", "-o", "page", "deck.dat"]
        yield [view, "--cases", "c.toml", "-o", "page", "deck.dat"]
    if mpi:
        yield [mpi, "deck.dat", "out"]


def main():
    checker, score = Checker(sys.argv[1]), Score()
    folder = pathlib.Path(checker.folder.name)
    (folder / "c.toml").write_text(COMBINATIONS)
    # What MPI keeps to its end is no leak of ours.
    of_mpi = dict(checker.environment, OMPI_ALLOW_RUN_AS_ROOT="1",
                  OMPI_ALLOW_RUN_AS_ROOT_CONFIRM="1", ASAN_OPTIONS="detect_leaks=0")

    def run(command):
        environment = of_mpi if command[0].endswith("mpi") else checker.environment
        return subprocess.run(command, capture_output=True, text=True, cwd=folder, env=environment,
                              timeout=120)

    for name, (deck, words) in LOOSE.items():
        checker.write(deck)
        wanted = checker.run("-q", "--no-solve", "deck.dat", cwd=folder).stderr
        score.expect(words in wanted, name, wanted)
        for command in commands(*sys.argv[2:]):
            what = (name, os.path.basename(command[0]), *command[1:])
            end = run(command)
            score.equal(end.returncode, 1, *what, end.stderr)
            score.equal(end.stderr, wanted, *what)
            score.equal(sorted(os.listdir(folder)),
                        ["c.toml", "deck.dat", *(["page"] if "page" in command else [])], *what)
            if "page" in command:
                page = (folder / "page").read_text()
                score.expect(re.search(r'"modes": ?[1-9]|"code": ?"orphan-node"', page), *what, "modes")
                (folder / "page").unlink()
    export, combine, *others = sys.argv[2:]
    for name, (deck, status, wanted) in UNSOLVED.items():
        checker.write(deck)
        for command in ([export, "--json", "out", "deck.dat"], [export, "--report", "out", "deck.dat"],
                        [combine, "--json", "out", "c.toml"]):
            what = (name, *command)
            end = run([*command, "--solver", "deck"])
            score.equal((end.returncode, end.stderr), (status, wanted), *what)
            score.equal(sorted(os.listdir(folder)), ["c.toml", "deck.dat"], *what)
    if others:  # a page shows what was found, whatever it is
        checker.write(TEN_STEPS)
        for options in ([], ["--cases", "c.toml"]):
            end = run([others[0], "--solver", "deck", *options, "-o", "page", "deck.dat"])
            score.equal((end.returncode, end.stderr), (1, UNSOLVED["iterations that end"][2]), *options)
            score.expect(STOPPED in (folder / "page").read_text(), "page", *options)
            (folder / "page").unlink()
    checker.write(SOUND)
    for command in commands(*sys.argv[2:]):
        end = run(command)
        score.equal((end.returncode, "error" in end.stderr), (0, False), os.path.basename(command[0]))
    score.end()


if __name__ == "__main__":
    main()
