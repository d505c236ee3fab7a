"""check_sound.py KESTOL-CHECK KESTOL DECK...: a deck that the solver solves has no finding of severity error, but for
those that were made to show an oddity; one that it refuses has one."""
import os
import shutil
import subprocess
import sys

from checker import Checker, Score, brief

# Decks that the solver solves although something is wrong with them: folder or name, and the code.
ODDITIES = {}


def main():
    checker, score = Checker(sys.argv[1]), Score()
    solver = os.path.abspath(sys.argv[2])
    for deck in sys.argv[3:]:
        if os.path.getsize(deck) == 0:
            continue
        copy = os.path.join(checker.folder.name, "copy.dat")
        shutil.copyfile(deck, copy)
        run = subprocess.run([solver, "copy.dat"], capture_output=True, cwd=checker.folder.name)
        errors = [f for f in checker.json(copy)["findings"] if f["severity"] == "error"]
        if run.returncode == 0:
            name = "/".join(deck.split("/")[-2:])
            score.equal([f["code"] for f in errors], ODDITIES.get(name, []), deck, brief(errors))
        elif b"iterations" not in run.stdout:  # of the solver that the deck asks for
            score.expect(errors, deck, "is refused by the solver:", run.stdout[:200])
    score.end()


if __name__ == "__main__":
    main()
