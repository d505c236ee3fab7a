"""check_program.py KESTOL-CHECK ROOT: every option, exit status and refusal of the program; files that cannot be read
or written; what it prints, as it prints it."""
import json
import os
import pathlib
import pty
import resource
import stat
import subprocess
import sys
import threading

from bases import BASES
from checker import Checker, Score

PORTAL, SPRINGS = BASES["portal"], BASES["springs"]
WRONG = PORTAL.replace("1  E=2.1e8", "1  E=2,1e8")
SUSPICIOUS = PORTAL.replace("    3  3 4\n", "    3  3 4 0\n")
LOOSE = SPRINGS.replace("  1  110  0 0 0\n", "  1  010  0 0 0\n").replace("  Euler3=0.5", "")

GERBER = """\
PROBLEM gerber
TYPE 2d
mesh
  dimension = 2   elemtype Linear   nnode = 2
  coordinates
    1  0 0
    2  2 0
    3  4 0
    4  6 0
    5  8 0
  end coordinates
  elements
    1  1 2  1
    2  2 3  1
    3  4 3  1
    4  4 5  1
  end elements
materials
  1  E=2.1e11 A=0.01 Iz=1e-4
end materials
constraints
  1  111  0 0 0
  5  111  0 0 0
end constraints
rotules
  2
  3
  4
end rotules
nodal_point_loads
  3  0 -1000 0
end nodal_point_loads
"""


def check_exit_statuses(checker, score):
    rows = [((), PORTAL, 0), ((), WRONG, 1), ((), SUSPICIOUS, 0), (("--strict",), SUSPICIOUS, 1),
            (("--strict",), PORTAL, 0), (("--disable", "number-cut"), WRONG, 0),
            (("--disable", "surplus,number-cut"), WRONG, 0), ((), LOOSE, 1), ((), GERBER, 1),
            (("--syntax",), GERBER, 0), (("--no-solve",), GERBER, 1), (("--no-solve",), PORTAL, 0),
            (("--disable", "mechanism"), GERBER, 0)]
    for options, deck, status in rows:
        run = checker.run(*options, checker.write(deck))
        score.equal(run.returncode, status, options, deck.split("\n")[0], run.stderr)
    path = checker.write(PORTAL, "-odd name.dat")
    score.equal(checker.run("--", path).returncode, 0, "-- ends the options")


def check_text(checker, score):
    path = checker.write(WRONG)
    run = checker.run(path)
    score.equal(run.stdout, "", "standard output")
    score.equal(run.stderr.split("\n"), [
        f'{path}:30:8: error: "2,1e8" is read as 2: a decimal comma? [number-cut]',
        "   30 |   1  E=2,1e8 A=0.01 Iz=2e-4 Weight=78.5", "      |        ^~~~~",
        f"{path}: 1 error", ""], "findings")
    score.equal(checker.run(checker.write(PORTAL)).stderr.split(": ")[1], "nothing found\n", "none")
    both = checker.write(WRONG.replace("    3  3 4\n", "    3  3 4 0\n"))
    score.expect(checker.run(both).stderr.endswith(": 1 error, 1 warning\n"), "counts")
    quiet = checker.run("-q", both).stderr
    score.expect("number-cut" in quiet and "surplus" not in quiet and "1 error" not in quiet, quiet)
    score.equal(len(json.loads(checker.run("-q", "--format", "json", both).stdout)["findings"]), 1,
                "-q in JSON")
    tabs = checker.run(checker.write(PORTAL.replace("  1  E=2.1e8", "\t1\tE=2,1e8"))).stderr
    score.expect(":30:6: error" in tabs and "\n      | \t \t  ^~~~~" in tabs, "tabs", tabs)


def check_mechanism(checker, score):
    path = checker.write(GERBER)
    text = checker.run(path).stderr
    for words in ("the model is a mechanism in 1 way [mechanism]", "node 3 moves along y",
                  "elements 2 and 3 turn about z", "hinges at nodes 2, 3 and 4 (lines 26-28)"):
        score.expect(words in text, words, text)
    document = checker.json(path)
    score.equal(document["modes"], 1, "modes")
    # Node 4 keeps element 3, which turns.
    motion = document["mechanisms"][0]["motion"]
    score.equal([n for n, m in motion.items() if any(m["u"])], ["3"], "nodes that move")
    score.equal(list(motion), ["3", "4"], "nodes that move or turn")
    score.expect(abs(motion["3"]["u"][1]) == 1.0, "scale")
    none = checker.json(path, "--mechanism", "0")
    score.equal((none["modes"], none["mechanisms"]), (1, []), "--mechanism 0")
    score.expect("condition" in checker.json(checker.write(PORTAL)), "condition")
    score.expect("condition" not in checker.json(checker.write(PORTAL), "--no-condition"),
                 "--no-condition")


def check_modes(checker, score):
    target = os.path.join(checker.folder.name, "modes.vtu")
    checker.run("--mode", target, checker.write(GERBER))
    data = pathlib.Path(target).read_bytes()
    for words in (b'Name="mode1"', b'Name="mode1_rotation"', b'Name="node"', b'NumberOfCells="4"'):
        score.expect(words in data, "--mode", words)
    import meshio
    mesh = meshio.read(target)
    score.equal(mesh.point_data["mode1"].shape, (5, 3), "array")
    score.expect(abs(mesh.point_data["mode1"][2][1]) == 1.0, "node 3 moves along y")


def check_lookups(checker, score):
    codes = checker.run("--list-codes")
    score.equal((codes.returncode, codes.stderr), (0, ""), "--list-codes")
    score.expect(len(codes.stdout.splitlines()) == 48, "codes", len(codes.stdout.splitlines()))
    score.expect(all(len(line) <= 100 for line in codes.stdout.splitlines()), "width")
    explained = checker.run("--explain", "hinge-first")
    score.expect("Exchange the two nodes" in explained.stdout, explained.stdout)
    score.equal(checker.run("--version").stdout.split()[0], "kestol-check", "--version")
    usage = checker.run("--help").stdout
    root = pathlib.Path(sys.argv[2])
    pages = [root / "docs/check.md", root / "docs/man/kestol-check.1",
             root / "completions/kestol-check"]
    for option in ("--syntax", "--no-solve", "--reactions", "--equilibrium", "--mechanism", "--mode",
                   "--no-condition", "--strict", "--disable", "--list-codes", "--explain",
                   "--format", "--quiet", "--verbose", "--help", "--version"):
        score.expect(option in usage, option, "in --help")
        for page in pages:
            text = page.read_text().replace("\\-", "-")
            score.expect(option in text, option, "in", page.name)


def check_refusals(checker, score):
    folder = checker.folder.name
    empty, binary = checker.write("", "empty.dat"), checker.write("PROBLEM\0x\n", "binary.dat")
    deck = checker.write(PORTAL)
    locked = os.path.join(folder, "missing", "out.json")
    rows = [(("no-such.dat",), "can't open file"), ((folder,), "can't open file"),
            (("/proc/self/mem",), "error: failed reading /proc/self/mem: Input/output error"),
            ((empty,), "is empty"), ((binary,), "is not a text file"),
            (("--nonsense", deck), "unknown option --nonsense"), ((), "DECK"),
            (("--format", "xml", deck), "--format: xml is none of json, sarif, text"),
            (("--mechanism", "-1", deck), "--mechanism"),
            (("--disable", "nonsense", deck), "unknown code nonsense"),
            (("--explain", "nonsense"), "unknown code nonsense"),
            (("--format", "json", "-o", locked, deck), "missing"),
            (("--format", "json", "-o", deck, deck), "deck.dat"),
            (("--mode", deck, deck), "deck.dat"),
            (("--format", "json", "-o", "/dev/full", deck), "/dev/full")]
    for arguments, words in rows:
        run = checker.run(*arguments)
        score.equal(run.returncode, 2, arguments, run.stderr)
        score.equal(len(run.stderr.splitlines()), 1, arguments, run.stderr)
        score.expect(words in run.stderr, arguments, run.stderr)
    score.equal(pathlib.Path(deck).read_text(), PORTAL, "the deck is as it was")
    with open("/dev/full", "w") as full:
        run = subprocess.run([checker.program, "--equilibrium", deck], stdout=full,
                             stderr=subprocess.PIPE, env=checker.environment)
    score.equal(run.returncode, 2, "a full disk on standard output")


def check_outputs(checker, score):
    deck, target = checker.write(PORTAL), os.path.join(checker.folder.name, "out.json")
    run = checker.run("--format", "json", "-o", target, deck)
    score.equal((run.returncode, run.stdout), (0, ""), "-o")
    score.equal(json.loads(pathlib.Path(target).read_text()), checker.json(deck), "-o")
    os.remove(target)
    closed = os.path.join(checker.folder.name, "closed")
    os.mkdir(closed)
    inside = os.path.join(closed, "deck.dat")
    pathlib.Path(inside).write_text(PORTAL)
    os.chmod(closed, stat.S_IRUSR | stat.S_IXUSR)
    score.equal(checker.run(inside).returncode, 0, "a folder that cannot be written")
    score.equal(os.listdir(closed), ["deck.dat"], "nothing is left there")
    os.chmod(closed, stat.S_IRWXU)


def check_pipe(checker, score):
    pipe = os.path.join(checker.folder.name, "pipe")
    os.mkfifo(pipe)
    writer = threading.Thread(target=lambda: pathlib.Path(pipe).write_text(WRONG))
    writer.start()
    run = checker.run(pipe)
    writer.join()
    score.expect(run.returncode == 1 and ":30:8: error" in run.stderr, "a pipe", run.stderr)


def check_terminal(checker, score):
    primary, secondary = pty.openpty()
    environment = {k: v for k, v in checker.environment.items() if k != "NO_COLOR"}
    path = checker.write(WRONG)
    for coloured, env in ((True, environment), (False, checker.environment)):
        process = subprocess.run([checker.program, path], stderr=secondary, env=env)
        text = os.read(primary, 4096).decode()
        score.equal((process.returncode, "\x1b[" in text), (1, coloured), "colour", text)


def check_memory(checker, score):
    """Without memory: one line, exit status 2."""
    path = checker.write(PORTAL)

    def starve():
        resource.setrlimit(resource.RLIMIT_AS, (140 << 20, 140 << 20))

    nodes = "".join(f"    {i}  {i} 0\n" for i in range(1, 1200001))
    large = checker.write(SPRINGS.replace("    1  0 0\n    2  4 0\n    3  8 0\n", nodes), "large.dat")
    score.equal(checker.run("--syntax", path, preexec_fn=starve).returncode, 0, "a small deck")
    run = checker.run("--syntax", large, preexec_fn=starve)
    score.equal((run.returncode, len(run.stderr.splitlines())), (2, 1), "no memory", run.stderr)


def check_marks(checker, score):
    """Characters that stand for line numbers within the program are shown, not followed."""
    line = "  a\x01~\x02~\x02  N m Pa 1 1\n"
    found = checker.findings(PORTAL.replace("units_names\n", "units_names\n" + 2 * line, 1))
    score.expect(any(f["text"].startswith('unit system "a?~?~?" is defined twice: first on line ')
                     for f in found), "marks in a name", found)


def check_endings(checker, score):
    """A deck that ends early has findings; no beginning of a deck does more harm than that."""
    for text in (PORTAL, BASES["plate"]):
        for end in range(1, len(text), 13):
            run = checker.run("--format", "json", checker.write(text[:end]))
            score.expect(run.returncode in (0, 1), "cut at", end, run.stderr)


def main():
    checker, score = Checker(os.path.abspath(sys.argv[1])), Score()
    checks = [check_exit_statuses, check_text, check_mechanism, check_modes, check_lookups,
              check_refusals, check_outputs, check_pipe, check_terminal, check_marks, check_endings]
    if "--sanitized" not in sys.argv:  # a sanitizer asks for the whole address space
        checks.append(check_memory)
    for check in checks:
        check(checker, score)
    score.end()


if __name__ == "__main__":
    main()
