#!/usr/bin/env python3
"""Every option of kestol-export: check_program.py KESTOL_EXPORT KESTOL ROOT"""
import json
import os
import pty
import re
import socket
import subprocess
import sys
import tempfile

import decks
import numpy as np
from bench import BROKEN, SOUND, TABLES, Bench
from exporter import Grid

OPTIONS = ("--vtu", "--encoding", "--csv", "--json", "--stations", "--solver", "--mesh-only", "--report",
           "--res", "-o", "-q", "--quiet", "-v", "--verbose", "--help", "--version")


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
    tables = re.search(r"--csv PREFIX +tables PREFIX(.*)", done.stdout.decode())[1]
    bench.expect(re.findall(r"_(\w+)", tables) == list(TABLES), "--help names the tables", tables)
    version = bench.run("--version")
    bench.expect(version.returncode == 0 and version.stdout.startswith(b"kestol-export 0."), version)
    with open("/dev/full", "wb") as full:
        done = subprocess.run([bench.program, "--help"], stdout=full, stderr=subprocess.PIPE, check=False)
    bench.expect((done.returncode, done.stderr) ==
                 (2, b"kestol-export: error: failed writing to standard output: No space left on device\n"),
                 "--help on a full device", done.returncode, done.stderr)


def check_completion(bench):
    script = f"""source {bench.root}/completions/kestol-export
    COMP_WORDS=(kestol-export --solver s); COMP_CWORD=2; _kestol_export; echo "${{COMPREPLY[@]}}"
    COMP_WORDS=(kestol-export --st); COMP_CWORD=1; _kestol_export; echo "${{COMPREPLY[@]}}"
    COMP_WORDS=(kestol-export --encoding b); COMP_CWORD=2; _kestol_export; echo "${{COMPREPLY[@]}}" """
    done = subprocess.run(["bash", "-c", script], stdout=subprocess.PIPE, check=False)
    bench.expect(done.stdout.decode().splitlines() == ["skyline sparse", "--stations", "base64"],
                 "completion", done.stdout)


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


def check_diagrams_have_a_place(bench):
    """Beside standard output, by whatever name, a pipe or a device nothing is written."""
    bench.put(SOUND)
    bench.run("deck.dat", "--vtu", "a.vtu")
    grid = (bench.work / "a.vtu").read_bytes()
    bench.put(SOUND)
    devices = {name for name in os.listdir("/dev") if name.endswith(".vtu")}
    for name in ("-", "/dev/stdout", "/dev/fd/1", "/proc/self/fd/1"):
        done = bench.run("deck.dat", "--vtu", name)
        bench.expect((done.returncode, done.stdout, done.stderr) == (0, grid, b""), "into a pipe", name, done.stderr)
        bench.expect(bench.files() == ["deck.dat"], name, bench.files())
        with open(bench.work / "out", "wb") as out:
            done = subprocess.run([bench.program, "deck.dat", "--vtu", name], cwd=bench.work, stdout=out,
                                  stderr=subprocess.PIPE, check=False)
        bench.expect(done.returncode == 0, "into a file", name, done.stderr)
        bench.expect((bench.work / "out").read_bytes() == grid, "into a file", name)
        (bench.work / "out").unlink()
        bench.expect(bench.files() == ["deck.dat"], name, bench.files())
    os.mkfifo(bench.work / "pipe.vtu")
    with subprocess.Popen(["cat", "pipe.vtu"], cwd=bench.work, stdout=subprocess.PIPE) as reader:
        done = bench.run("deck.dat", "--vtu", "pipe.vtu", timeout=20)
        bench.expect((done.returncode, reader.stdout.read()) == (0, grid), "into a named pipe", done.stderr)
    bench.expect(bench.files() == ["deck.dat", "pipe.vtu"], bench.files())
    bench.expect(bench.run("deck.dat", "--vtu", "/dev/null").returncode == 0, "/dev/null")
    bench.expect({name for name in os.listdir("/dev") if name.endswith(".vtu")} == devices, "beside a device")


def check_verbosity(bench):
    bench.put(SOUND)
    bench.expect(bench.run("deck.dat", "--json", "a").stderr == b"", "silent")
    bench.expect(bench.run("deck.dat", "--json", "a", "-q").stderr == b"", "-q")
    loud = bench.run("deck.dat", "--json", "a", "-v", "--solver", "skyline").stderr
    bench.expect(loud.startswith(b"\nINFORMATION ABOUT STIFFNESS MATRIX\nSky matrix storage with Txolesky\n"),
                 "-v", loud)


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


def check_progress(bench):
    """What is slow to read counts for the moment from which a long run shows what it does."""
    bench.put(SOUND)
    os.mkfifo(bench.work / "pipe")
    with subprocess.Popen(["sh", "-c", "sleep 2.1; cat deck.dat > pipe"], cwd=bench.work):
        status, text = on_terminal(bench, os.environ, "pipe", "--mesh-only", "--json", "a")
    bench.expect((status, text) == (0, b"\rwriting\x1b[K\r\x1b[K"), "progress", status, text)
    with subprocess.Popen(["sh", "-c", "sleep 2.1; cat deck.dat > pipe"], cwd=bench.work):
        status, text = on_terminal(bench, os.environ, "pipe", "--mesh-only", "--json", "a", "-q")
    bench.expect((status, text) == (0, b""), "progress with -q", status, text)


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
    bench.refused(2, "deck.dat: error: element: 1 has an unknown node [model]\n", "deck.dat", "--mesh-only",
                  "--vtu", "a")


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
    return Bench(*sys.argv[1:]).check("program", (
        check_help, check_completion, check_quiet_folder, check_streams, check_diagrams_have_a_place, check_verbosity,
        check_colour, check_progress, check_solvers, check_stations, check_mesh_only, check_own_files))


if __name__ == "__main__":
    sys.exit(main())
