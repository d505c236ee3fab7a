"""check_companions.py KESTOL-CHECK KESTOL-EXPORT KESTOL-COMBINE [KESTOL-VIEW [KESTOL-MPI]]: whatever solves a
model tells of a mechanism in the words of kestol-check, ends with 1 and writes nothing, also where the
solver itself finds an answer."""
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
    checker.write(SOUND)
    for command in commands(*sys.argv[2:]):
        end = run(command)
        score.equal((end.returncode, "error" in end.stderr), (0, False), os.path.basename(command[0]))
    score.end()


if __name__ == "__main__":
    main()
