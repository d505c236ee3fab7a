"""check_refusals.py KESTOL-CHECK KESTOL ROOT: every text of the solver's reader is a finding of severity error at
the line of its record; the solver itself says the text first."""
import os
import re
import subprocess
import sys

from checker import Checker, Score, brief
from refusals import REFUSALS


def line_of(deck, where):
    if where is None or isinstance(where, int):
        return where
    lines = deck.split("\n")
    return next(i for i, line in enumerate(lines, 1) if line.startswith(where))


def texts_of_sources(root):
    """The literal beginnings of all refusals of the readers."""
    import pathlib
    texts = set()
    for path in pathlib.Path(root, "input").glob("*.cc"):
        for match in re.finditer(r'Fatal\(\s*"((?:[^"\\]|\\.)*)"', path.read_text()):
            texts.add(match.group(1).replace("\\n", "\n").strip())
    return texts


def main():
    checker, score = Checker(sys.argv[1]), Score()
    solver, root = os.path.abspath(sys.argv[2]), sys.argv[3]
    for deck, where, text in REFUSALS:
        path = checker.write(deck)
        run = subprocess.run([solver, path], capture_output=True, text=True,
                             cwd=checker.folder.name)
        score.expect(run.returncode == 2 and run.stdout.startswith(text), text, "solver says",
                     run.stdout[:100])
        errors = [f for f in checker.json(path)["findings"] if f["severity"] == "error"]
        line = line_of(deck, where)
        score.expect(len(errors) == 1 and line in (None, errors[0]["line"]) and
                     errors[0]["file"] == path, text, f"wanted at line {line}", brief(errors))
    for text in texts_of_sources(root):
        seen = any(row[2].startswith(text[:20]) or text[:20] in row[2] for row in REFUSALS)
        score.expect(seen or text in UNREACHABLE, "no deck for", repr(text))
    score.end()


# What no deck can bring about: another module asks for it first, or it is not of the deck.
UNREACHABLE = {
    "error: Unknown elem type in PreassureLT::ReadYourLoad",
    'Cannot open output file \\"',
}

if __name__ == "__main__":
    main()
