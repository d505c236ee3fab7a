#!/usr/bin/env python3
"""Every refusal of kestol-export in its words: check_refusals.py KESTOL_EXPORT KESTOL ROOT"""
import os
import resource
import signal
import subprocess
import sys

import decks
from bench import BROKEN, MECHANISM, SOUND, WORTHLESS, Bench

# The line that ends it, the words behind the program's name.
USAGE = (
    ("", "DECK is required"),
    ("deck.dat --frobnicate", "unknown option --frobnicate"),
    ("-x deck.dat", "unknown option -x"),
    ("deck.dat more.dat --json -", "The following argument was not expected: more.dat"),
    ("deck.dat a --json - b", "The following arguments were not expected: a b"),
    ("deck.dat --json - -- --more", "The following argument was not expected: --more"),
    ("deck.dat", "one of --vtu, --csv, --json, --report and --res is needed"),
    ("deck.dat --mesh-only", "one of --vtu, --csv, --json, --report and --res is needed"),
    ("deck.dat --vtu a.vtu --encoding zip", "--encoding: zip is none of ascii, base64, raw"),
    ("deck.dat --json a --solver magic", "--solver: magic is none of deck, direct, skyline, sparse"),
    ("deck.dat --json a --stations 1", "--stations: Value 1 not in range 2 to 1000000"),
    ("deck.dat --json a --stations 1000001", "--stations: Value 1000001 not in range 2 to 1000000"),
    ("deck.dat --json a --stations many", "--stations: Value many not in range 2 to 1000000"),
    ("deck.dat --vtu", "--vtu: 1 required FILE missing"),
    ("deck.dat --json a --json b", "--json: At Most 1 required but received 2"),
    ("deck.dat -o a.txt", "-o takes a name that ends with .vtu or .json; use --vtu, --json, --csv"),
    ("deck.dat -o a.vtu --vtu b.vtu", "-o names a file that another option has named already"),
    ("deck.dat -o a.json --json b.json", "-o names a file that another option has named already"),
    ("deck.dat -o - --json b.json", "-o names a file that another option has named already"),
    ("deck.dat --mesh-only --report a", "--report and --res need a solution: leave --mesh-only out"),
    ("deck.dat --mesh-only --json b --res a", "--report and --res need a solution: leave --mesh-only out"),
)

UNKNOWN_NODE = ":18: error: Trying to assign Load to unknown node [syntax]\n   18 | 7 0 -1000 0\n"
NO_SECTION = ": error: section parameter A is 0 for element 1 [model]\n"
TURNS = (": error: the supports leave the model a rigid motion [rigid-motion]\n"
         "  mode 1: nodes 1 and 2 turn about z at (0, 0)\n"
         "    supports at node 1 (line 15)\n")
SWAYS = (": error: the model is a mechanism in 1 way [mechanism]\n"
         "  mode 1: nodes 1 and 2 turn about z at (0, 0)\n"
         "          node 3 moves along x\n"
         "          node 4 turns about z\n"
         "          element 3 turns about z\n"
         "    hinges at nodes 2 and 3 (lines 14010-14011)\n"
         "    supports at nodes 1 and 4 (lines 14014-14015)\n")


def told(text):
    return f"kestol-export: error: {text}\n"


def check_usage(bench):
    bench.put(SOUND)
    for line, words in USAGE:
        bench.refused(2, f"kestol-export: {words}; try kestol-export --help\n", *line.split())


def check_inputs(bench):
    bench.put(SOUND)
    bench.refused(2, told("can't open file none.dat: No such file or directory"), "none.dat", "--json", "a.json")
    bench.refused(2, told("can't open file /: Is a directory"), "/", "--json", "a.json")
    # A file that opens and cannot be read.
    bench.refused(2, told("failed reading /proc/self/mem: Input/output error"), "/proc/self/mem", "--json", "a.json")
    bench.put(BROKEN)
    bench.refused(2, "deck.dat" + UNKNOWN_NODE, "deck.dat", "--vtu", "a.vtu", "--csv", "a")
    bench.put(WORTHLESS)
    for options in ((), ("--report", "r")):
        bench.refused(2, "deck.dat" + NO_SECTION, "deck.dat", "--vtu", "a.vtu", *options)
    bench.put("PROBLEM none\nTYPE 2d\n")
    bench.refused(2, "deck.dat: error: it is necessary at least one mesh [syntax]\n", "deck.dat", "--vtu", "a.vtu")
    bench.put("")
    bench.refused(2, "deck.dat:1: error: can't find word ***problem*** in input file [syntax]\n", "deck.dat",
                  "--vtu", "a.vtu")


def check_mechanisms(bench):
    for options in ((), ("--report", "r.txt"), ("--solver", "skyline"), ("--solver", "sparse")):
        bench.put(MECHANISM)
        bench.refused(1, "deck.dat" + TURNS, "deck.dat", "--vtu", "a.vtu", *options)
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
        bench.refused(1, "deck.dat" + SWAYS, "deck.dat", "--json", "a.json", "--solver", "sparse", *options)


def check_pipes(bench):
    """A deck that can be read once only: what is wrong with it is said as of any other."""
    for text, status, words in ((SOUND, 0, ""), (BROKEN, 2, UNKNOWN_NODE), (WORTHLESS, 2, NO_SECTION),
                                (MECHANISM, 1, TURNS)):
        bench.put(text)
        os.mkfifo(bench.work / "pipe")
        for options in ((), ("--report", "/dev/null")):
            done = bench.run("/dev/stdin", "--json", "/dev/null", *options, input=text.encode())
            bench.expect((done.returncode, done.stderr.decode()) == (status, words and "/dev/stdin" + words),
                         "standard input", done)
            with subprocess.Popen(["cp", "deck.dat", "pipe"], cwd=bench.work):
                done = bench.run("pipe", "--json", "/dev/null", *options, timeout=20)
            bench.expect((done.returncode, done.stderr.decode()) == (status, words and "pipe" + words), "pipe", done)


def check_outputs(bench):
    bench.put(SOUND)
    os.link(bench.work / "deck.dat", bench.work / "hard.vtu")
    for option in ("--vtu", "--json", "--report", "--res"):
        for name in ("deck.dat", "hard.vtu"):
            bench.refused(2, told(f"the output {name} is the input deck.dat"), "deck.dat", option, name)
        for name, reason in (("none/a", "No such file or directory"), ("deck.dat/a", "Not a directory")):
            bench.refused(2, told(f"can't open file {name}: {reason}"), "deck.dat", option, name)
    bench.expect((bench.work / "deck.dat").read_text() == SOUND, "the deck is untouched")
    bench.refused(2, told("can't open file none/a_nodes.csv: No such file or directory"), "deck.dat", "--csv",
                  "none/a")
    for line, name in (("--vtu a --json ./a", "./a"), ("--vtu a.vtu --json a_diagrams.vtu", "a_diagrams.vtu"),
                       ("--csv a --json a_nodes.csv", "a_nodes.csv")):
        bench.refused(2, told(f"two outputs have the name {name}"), "deck.dat", *line.split())
    bench.refused(2, told("two outputs go to standard output"), "deck.dat", "--json", "-", "--report", "-")
    (bench.work / "hard.vtu").unlink()


def no_space():
    resource.setrlimit(resource.RLIMIT_FSIZE, (2000, 2000))
    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)


def check_full_device(bench):
    bench.put(SOUND)
    for option in ("--json", "--report", "--res", "--vtu"):
        bench.refused(2, told("failed writing to /dev/full: No space left on device"), "deck.dat", option,
                      "/dev/full", "--csv", "tables")
        with open("/dev/full", "wb") as full:
            done = subprocess.run([bench.program, "deck.dat", option, "-"], cwd=bench.work, stdout=full,
                                  stderr=subprocess.PIPE, check=False)
        bench.expect((done.returncode, done.stderr.decode()) ==
                     (2, told("failed writing to standard output: No space left on device")), done)
    # A file that may not grow: nothing of it stays.
    (bench.work / "old.vtu").write_text("old")
    for option, name, full in (("--vtu", "old.vtu", "old.vtu"), ("--json", "new.json", "new.json"),
                               ("--res", "new.res", "new.res"), ("--csv", "tables", "tables_stations.csv")):
        bench.refused(2, told(f"failed writing to {full}: File too large"), "deck.dat", option, name, "--stations",
                      "200", preexec_fn=no_space)
    bench.expect((bench.work / "old.vtu").read_text() == "old", "an old file stays")


def main():
    return Bench(*sys.argv[1:]).check("refusals", (
        check_usage, check_inputs, check_mechanisms, check_pipes, check_outputs, check_full_device))


if __name__ == "__main__":
    sys.exit(main())
