#!/usr/bin/env python3
"""Every option and every refusal of kestol-export: check_program.py KESTOL_EXPORT KESTOL ROOT"""
import json
import os
import pathlib
import pty
import re
import resource
import socket
import subprocess
import sys
import tempfile

import decks
import numpy as np
from exporter import Failures, Grid, run

ROW = """PROBLEM row
TYPE 2d
mesh dimension = 2 elemtype Linear nnode = 2
coordinates
1 0 0
2 3 0
end coordinates
elements
1 1 2 1
end elements
materials
1 E=2e11 A=1e-2 Iz=1e-5
end materials
constraints
1 {codes} 0 0 0
end constraints
nodal_point_loads
2 0 -1000 0
end nodal_point_loads
"""
SOUND, MECHANISM = ROW.format(codes="111"), ROW.format(codes="110")
BROKEN = SOUND.replace("2 0 -1000", "7 0 -1000")
WORTHLESS = SOUND.replace("A=1e-2", "A=0")
OPTIONS = ("--vtu", "--encoding", "--csv", "--json", "--stations", "--solver", "--mesh-only", "--report",
           "--res", "-o", "-q", "--quiet", "-v", "--verbose", "--help", "--version")
TABLES = ("nodes", "beams", "stations", "shells", "solids", "reactions", "loads")


class Bench:
    def __init__(self, program, solver, root):
        self.program, self.solver, self.root = map(pathlib.Path, (program, solver, root))
        self.folder = tempfile.TemporaryDirectory()
        self.work = pathlib.Path(self.folder.name)
        self.failures = Failures()
        self.expect = self.failures.expect

    def put(self, text, name="deck.dat"):
        for old in self.work.iterdir():
            old.unlink()
        (self.work / name).write_text(text, encoding="latin-1")

    def run(self, *arguments, **options):
        return run(self.program, *arguments, cwd=self.work, **options)

    def files(self):
        return sorted(path.name for path in self.work.iterdir())

    def refused(self, status, words, *arguments, **options):
        """One message with these words, that status, and no file that was not there before."""
        before = self.files()
        done = self.run(*arguments, **options)
        told = done.stderr.decode("latin-1")
        self.expect(done.returncode == status, arguments, done.returncode, told)
        self.expect(words in told, arguments, "says", told)
        self.expect(done.stdout == b"", arguments, "standard output", done.stdout[:100])
        self.expect(self.files() == before, arguments, "files", self.files())
        return told


def check_usage(bench):
    bench.put(SOUND)
    for words, arguments in (
            ("DECK is required", ()),
            ("unknown option --frobnicate", ("deck.dat", "--frobnicate")),
            ("unknown option -x", ("-x", "deck.dat")),
            ("not expected: more.dat", ("deck.dat", "more.dat", "--json", "-")),
            ("one of --vtu, --csv, --json, --report and --res", ("deck.dat",)),
            ("--encoding: zip is none of ascii, base64, raw", ("deck.dat", "--vtu", "a.vtu", "--encoding", "zip")),
            ("--solver: magic is none of deck, direct, skyline, sparse",
             ("deck.dat", "--json", "a", "--solver", "magic")),
            ("--stations", ("deck.dat", "--json", "a", "--stations", "1")),
            ("--stations", ("deck.dat", "--json", "a", "--stations", "many")),
            ("--vtu", ("deck.dat", "--vtu")),
            ("-o takes a name that ends with .vtu or .json", ("deck.dat", "-o", "a.txt")),
            ("named already", ("deck.dat", "-o", "a.vtu", "--vtu", "b.vtu")),
            ("leave --mesh-only out", ("deck.dat", "--mesh-only", "--report", "a")),
            ("leave --mesh-only out", ("deck.dat", "--mesh-only", "--res", "a")),
    ):
        told = bench.refused(2, words, *arguments)
        bench.expect(told.count("\n") == 1 and told.endswith("; try kestol-export --help\n"), told)


def check_help(bench):
    done = bench.run("--help")
    bench.expect(done.returncode == 0 and not done.stderr, "--help")
    page = (bench.root / "docs/man/kestol-export.1").read_text().replace("\\-", "-")
    guide = (bench.root / "docs/export.md").read_text()
    completion = (bench.root / "completions/kestol-export").read_text()
    for option in OPTIONS:
        for name, text in (("--help", done.stdout.decode()), ("man page", page),
                           ("docs/export.md", guide), ("completion", completion)):
            bench.expect(option in text, option, "in", name)
    version = bench.run("--version")
    bench.expect(version.returncode == 0 and version.stdout.startswith(b"kestol-export 0."), version)
    with open("/dev/full", "wb") as full:
        done = subprocess.run([bench.program, "--help"], stdout=full, stderr=subprocess.PIPE, check=False)
    bench.expect(done.returncode == 2, "--help on a full device", done.returncode)


def check_completion(bench):
    script = f"""source {bench.root}/completions/kestol-export
    COMP_WORDS=(kestol-export --solver s); COMP_CWORD=2; _kestol_export; echo "${{COMPREPLY[@]}}"
    COMP_WORDS=(kestol-export --st); COMP_CWORD=1; _kestol_export; echo "${{COMPREPLY[@]}}"
    COMP_WORDS=(kestol-export --encoding b); COMP_CWORD=2; _kestol_export; echo "${{COMPREPLY[@]}}" """
    done = subprocess.run(["bash", "-c", script], stdout=subprocess.PIPE, check=False)
    bench.expect(done.stdout.decode().splitlines() == ["skyline sparse", "--stations", "base64"],
                 "completion", done.stdout)


def check_inputs(bench):
    bench.put(SOUND)
    bench.refused(2, "can't open file none.dat: No such file", "none.dat", "--json", "a.json")
    bench.refused(2, "can't open file /: Is a directory", "/", "--json", "a.json")
    bench.put(BROKEN)
    told = bench.refused(2, "deck.dat:18: error: Trying to assign Load to unknown node [syntax]\n"
                            "   18 | 7 0 -1000 0\n", "deck.dat", "--vtu", "a.vtu", "--csv", "a")
    bench.expect("\x1b" not in told, "no colour in a pipe")
    bench.put(WORTHLESS)
    bench.refused(2, "[model]", "deck.dat", "--vtu", "a.vtu", "--report", "r")
    bench.put("")
    bench.refused(2, "error", "deck.dat", "--vtu", "a.vtu")
    for options in ((), ("--report", "r.txt"), ("--solver", "skyline"), ("--solver", "sparse")):
        bench.put(MECHANISM)
        bench.refused(1, "deck.dat: error: the supports leave the model a rigid motion [rigid-motion]\n"
                         "  mode 1: nodes 1 and 2 turn about z at (0, 0)\n", "deck.dat", "--vtu", "a.vtu", *options)
    done = bench.run("deck.dat", "--mesh-only", "--vtu", "a.vtu")
    bench.expect(done.returncode == 0, "--mesh-only of a mechanism", done)
    # What does not move is none: without loads, or with loads on supports alone.
    for text in (SOUND.replace("2 0 -1000", "1 0 -1000"), SOUND.split("nodal_point_loads")[0]):
        bench.put(text)
        for options in ((), ("--report", "r.txt"), ("--solver", "skyline"), ("--solver", "sparse")):
            done = bench.run("deck.dat", "--json", "a.json", *options)
            bench.expect(done.returncode == 0, "a model that does not move", options, done.stderr)
    bench.put(decks.large_mechanism())
    for options in ((), ("--report", "r.txt"), ("--res", "r.res")):
        bench.refused(1, "deck.dat: error: the model is a mechanism in 1 way [mechanism]\n", "deck.dat", "--json",
                      "a.json", "--solver", "sparse", *options)


def check_pipes(bench):
    """A deck that can be read once only: what is wrong with it is said as of any other."""
    for text, status, words in (
            (SOUND, 0, ""),
            (BROKEN, 2, ":18: error: Trying to assign Load to unknown node [syntax]\n   18 | 7 0 -1000 0\n"),
            (WORTHLESS, 2, "[model]\n"),
            (MECHANISM, 1, ": error: the supports leave the model a rigid motion [rigid-motion]\n  mode 1: ")):
        bench.put(text)
        os.mkfifo(bench.work / "pipe")
        for options in ((), ("--report", "/dev/null")):
            done = bench.run("/dev/stdin", "--json", "/dev/null", *options, input=text.encode())
            told = done.stderr.decode()
            bench.expect((done.returncode, words in told) == (status, True), "standard input", done)
            bench.expect(told.startswith("/dev/stdin" if status else ""), "standard input", told)
            with subprocess.Popen(["cp", "deck.dat", "pipe"], cwd=bench.work):
                done = bench.run("pipe", "--json", "/dev/null", *options, timeout=20)
            bench.expect((done.returncode, words in done.stderr.decode()) == (status, True), "pipe", done)


def check_outputs(bench):
    bench.put(SOUND)
    os.link(bench.work / "deck.dat", bench.work / "hard.vtu")
    for option in ("--vtu", "--json", "--report", "--res"):
        bench.refused(2, "is the input deck.dat", "deck.dat", option, "deck.dat")
        bench.refused(2, "is the input deck.dat", "deck.dat", option, "hard.vtu")
        bench.refused(2, "can't open file none/a: No such file", "deck.dat", option, "none/a")
        bench.refused(2, "can't open file deck.dat/a: Not a directory", "deck.dat", option, "deck.dat/a")
    bench.expect((bench.work / "deck.dat").read_text() == SOUND, "the deck is untouched")
    bench.refused(2, "can't open file none/a_nodes.csv", "deck.dat", "--csv", "none/a")
    bench.refused(2, "two outputs have the name", "deck.dat", "--vtu", "a", "--json", "./a")
    bench.refused(2, "two outputs have the name", "deck.dat", "--vtu", "a.vtu", "--json", "a_diagrams.vtu")
    bench.refused(2, "two outputs have the name", "deck.dat", "--csv", "a", "--json", "a_nodes.csv")
    (bench.work / "hard.vtu").unlink()


def check_full_device(bench):
    bench.put(SOUND)
    for option in ("--json", "--report", "--res", "--vtu"):
        told = bench.refused(2, "", "deck.dat", option, "/dev/full", "--csv", "tables")
        bench.expect(told == "kestol-export: error: failed writing to /dev/full: No space left on device\n",
                     option, told)
        with open("/dev/full", "wb") as full:
            done = subprocess.run([bench.program, "deck.dat", option, "-"], cwd=bench.work, stdout=full,
                                  stderr=subprocess.PIPE, check=False)
        bench.expect(done.returncode == 2 and b"standard output: No space left" in done.stderr, done)

    # A file that may not grow: nothing of it stays.
    def no_space():
        resource.setrlimit(resource.RLIMIT_FSIZE, (2000, 2000))
        import signal
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
    (bench.work / "old.vtu").write_text("old")
    for option, name in (("--vtu", "old.vtu"), ("--json", "new.json"), ("--res", "new.res"),
                         ("--csv", "tables")):
        bench.refused(2, "", "deck.dat", option, name, "--stations", "200", preexec_fn=no_space)
    bench.expect((bench.work / "old.vtu").read_text() == "old", "an old file stays")


def check_quiet_folder(bench):
    """A deck in a folder of its own, of which nobody may write anything."""
    bench.put(SOUND)
    with tempfile.TemporaryDirectory() as elsewhere:
        done = bench.run("deck.dat", "--vtu", f"{elsewhere}/a.vtu", "--csv", f"{elsewhere}/a",
                         "--report", f"{elsewhere}/a.txt", "--res", f"{elsewhere}/a.res")
        bench.expect(done.returncode == 0, done)
        bench.expect(bench.files() == ["deck.dat"], "beside the deck", bench.files())
        wanted = sorted(["a.vtu", "a_diagrams.vtu", "a.txt", "a.res", *(f"a_{t}.csv" for t in TABLES)])
        bench.expect(sorted(os.listdir(elsewhere)) == wanted, os.listdir(elsewhere))


def check_streams(bench):
    bench.put(SOUND)
    by_dash = bench.run("deck.dat", "-o", "-").stdout
    bench.expect(json.loads(by_dash)["schema"] == "kestol-result/1", "-o -")
    bench.expect(bench.run("deck.dat", "--json", "-").stdout == by_dash, "--json -")
    bench.run("deck.dat", "-o", "a.json")
    bench.expect((bench.work / "a.json").read_bytes() == by_dash, "-o a.json")
    bench.run("deck.dat", "-o", "a.vtu")
    bench.expect(Grid(bench.work / "a.vtu").types == [4], "-o a.vtu")
    out = bench.run("deck.dat", "--vtu", "-", "--mesh-only").stdout
    bench.expect(out.startswith(b"<?xml") and b"AppendedData" in out, "--vtu -")
    bench.expect(b"NODAL DISPLACEMENTS" in bench.run("deck.dat", "--report", "-").stdout, "--report -")
    # What stands in the file behind standard output already stays; a socket has no name to open.
    for option in ("--json", "--vtu", "--report", "--res"):
        alone = bench.run("deck.dat", option, "-").stdout
        (bench.work / "log").write_text("before\n")
        with open(bench.work / "log", "ab") as log:
            subprocess.run([bench.program, "deck.dat", option, "-"], cwd=bench.work, stdout=log, check=True)
        bench.expect((bench.work / "log").read_bytes() == b"before\n" + alone, option, "is appended")
        ours, theirs = socket.socketpair()
        done = subprocess.run([bench.program, "deck.dat", option, "-"], cwd=bench.work, stdout=theirs,
                              stderr=subprocess.PIPE, check=False)
        theirs.close()
        with ours.makefile("rb") as stream:
            bench.expect(done.returncode == 0 and stream.read() == alone, option, "into a socket", done.stderr)
        ours.close()
    bench.put(SOUND, "-deck.dat")
    bench.expect(bench.run("--json", "-", "--", "-deck.dat").returncode == 0, "-- ends the options")
    bench.put(SOUND, "bad\udcff\".dat".encode("utf-8", "surrogateescape").decode("latin-1"))
    name = bench.files()[0]
    done = bench.run(name, "--json", "-")
    bench.expect(json.loads(done.stdout.decode("utf-8"))["deck"], "a name that is no text", done.stderr)


def check_verbosity(bench):
    bench.put(SOUND)
    bench.expect(bench.run("deck.dat", "--json", "a").stderr == b"", "silent")
    bench.expect(bench.run("deck.dat", "--json", "a", "-q").stderr == b"", "-q")
    loud = bench.run("deck.dat", "--json", "a", "-v", "--solver", "skyline").stderr
    bench.expect(b"INFORMATION ABOUT STIFFNESS MATRIX" in loud, "-v", loud[:80])


def on_terminal(bench, environment, *arguments):
    leader, follower = pty.openpty()
    done = subprocess.run([bench.program, *arguments], cwd=bench.work, stderr=follower, env=environment,
                          stdout=subprocess.PIPE, check=False)
    os.close(follower)
    text = b""
    try:
        while piece := os.read(leader, 4096):
            text += piece
    except OSError:
        pass
    os.close(leader)
    return done.returncode, text


def check_colour(bench):
    bench.put(BROKEN)
    plain = {key: value for key, value in os.environ.items() if key != "NO_COLOR"}
    status, text = on_terminal(bench, plain, "deck.dat", "--json", "a")
    bench.expect(status == 2 and b"\x1b[1;31m" in text, "colour on a terminal", text)
    status, text = on_terminal(bench, {**plain, "NO_COLOR": "1"}, "deck.dat", "--json", "a")
    bench.expect(status == 2 and b"\x1b" not in text, "NO_COLOR", text)


def check_solvers(bench):
    bench.put(decks.random_deck(4))
    answers = {}
    for solver in ("skyline", "sparse", "direct", "deck", None):
        options = () if solver is None else ("--solver", solver)
        done = bench.run("deck.dat", "--json", "-", *options)
        if solver == "direct" and b"without the direct solver" in done.stderr:
            continue
        bench.expect(done.returncode == 0, solver, done.stderr)
        answers[solver] = np.array([node["u"] for node in json.loads(done.stdout)["nodes"]])
    largest = np.abs(answers["skyline"]).max()
    for solver, answer in answers.items():
        tolerance = 1e-5 if solver == "sparse" else 1e-9
        bench.expect(np.abs(answer - answers["skyline"]).max() <= tolerance * largest, solver)
    default = "direct" if "direct" in answers else "deck"
    bench.expect((answers[None] == answers[default]).all(), "the default is", default)


def check_stations(bench):
    bench.put(SOUND)
    for count in (2, 7, 1000):
        done = bench.run("deck.dat", "--json", "-", "--stations", count)
        stations = json.loads(done.stdout)["beams"][0]["stations"]
        bench.expect(len(stations) == count, "--stations", count, len(stations))
        bench.expect(stations[0]["x"] == 0 and stations[-1]["x"] == 3, "ends", count)
    bench.put(SOUND.replace("TYPE 2d", "TYPE 2d\nNumOfDivisions 4"))
    stations = json.loads(bench.run("deck.dat", "--json", "-").stdout)["beams"][0]["stations"]
    bench.expect(len(stations) == 5, "as the deck says", len(stations))


def check_mesh_only(bench):
    bench.put(decks.random_deck(0))
    done = bench.run("deck.dat", "--mesh-only", "--vtu", "a.vtu", "--csv", "a", "--json", "a.json")
    bench.expect(done.returncode == 0, done.stderr)
    bench.expect(bench.files() == sorted(["deck.dat", "a.vtu", "a.json", "a_nodes.csv", "a_beams.csv",
                                          "a_loads.csv"]), bench.files())
    grid, model = Grid(bench.work / "a.vtu"), json.loads((bench.work / "a.json").read_text())
    for name in ("node", "support", "hinge", "F", "M"):
        bench.expect(name in grid.point, "--mesh-only", name)
    for name in ("element", "material", "mesh", "hinges", "ex", "ey", "ez", "load per length"):
        bench.expect(name in grid.cell, "--mesh-only", name)
    for name in ("U", "R", "RF", "RM", "N"):
        bench.expect(name not in grid.point, "--mesh-only without", name)
    bench.expect(int(grid.cell["hinges"].sum()) == len(model["hinges"]), "hinges")
    supports = {s["node"] for s in model["supports"]}
    bench.expect(supports == {n + 1 for n in range(len(model["nodes"])) if grid.point["support"][n].any()},
                 "supports")
    loaded = {entry["node"] for entry in model["loads"]}
    bench.expect(loaded == {n + 1 for n in range(len(model["nodes"]))
                            if grid.point["F"][n].any() or grid.point["M"][n].any()}, "loads")
    # A deck that names an unknown node is no model either.
    bench.put(SOUND.replace("1 1 2 1", "1 1 3 1"))
    bench.refused(2, "error: element: 1 has an unknown node [model]", "deck.dat", "--mesh-only", "--vtu", "a")


NUMBER = re.compile(r"[-+]?\d+\.?\d*(?:e[-+]\d+)?")


def same_but_for_rounding(one, other):
    """The same words; numbers alike to their last digits, or to the rounding beside the largest one."""
    lines, others = one.splitlines(), other.splitlines()
    if len(lines) != len(others):
        return False
    largest = max((abs(float(n)) for line in lines for n in NUMBER.findall(line)), default=0.0)
    for line, twin in zip(lines, others):
        if line == twin:
            continue
        values, twins = ([float(n) for n in NUMBER.findall(text)] for text in (line, twin))
        if NUMBER.sub("#", line).split() != NUMBER.sub("#", twin).split() or len(values) != len(twins):
            return False
        if any(abs(a - b) > 2e-5 * abs(a) + 1e-12 * largest for a, b in zip(values, twins)):
            return False
    return True


def check_own_files(bench):
    """The solver's own files: byte for byte those of a run with the solver that is named, and of the
    direct one the same but for rounding."""
    for example in sorted((bench.root / "examples").glob("*.dat")):
        text = example.read_text(encoding="latin-1")
        named = re.search(r"(?im)^[ \t]*solver.*\n", text)
        plain = text.replace(named.group(), "") if named else text
        for solver, choice in (("deck", None), ("skyline", "SkyLine"), ("sparse", "Sparse 1e-8 1e-6 100000")):
            bench.put(text if choice is None else
                      re.sub(r"(?im)^([ \t]*type.*\n)", rf"\1Solver {choice}\n", plain, count=1))
            subprocess.run([bench.solver, "deck.dat", "wanted.txt"], cwd=bench.work, check=True)
            bench.run("deck.dat", "--report", "found.txt", "--res", "found.res", "--solver", solver)
            bench.run("deck.dat", "--report", "direct.txt", "--res", "direct.res", "--solver", "direct")
            for wanted, end in (("wanted.txt", "txt"), ("deck.kestol.res", "res")):
                words = (bench.work / wanted).read_bytes()
                bench.expect(words == (bench.work / f"found.{end}").read_bytes(), example.name, solver, end)
                direct = bench.work / f"direct.{end}"
                if solver == "skyline" and direct.exists():
                    bench.expect(same_but_for_rounding(words.decode("latin-1"), direct.read_text("latin-1")),
                                 example.name, "direct", end)


def main():
    bench = Bench(*sys.argv[1:])
    for check in (check_usage, check_help, check_completion, check_inputs, check_pipes, check_outputs,
                  check_full_device, check_quiet_folder, check_streams, check_verbosity, check_colour,
                  check_solvers, check_stations, check_mesh_only, check_own_files):
        before = bench.failures.count
        check(bench)
        print(check.__name__, "failed" if bench.failures.count > before else "passed")
    return bench.failures.finish("program")


if __name__ == "__main__":
    sys.exit(main())
