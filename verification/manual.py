#!/usr/bin/env python3
"""Writes the verification manual, or holds a program against it.

    manual.py PROGRAM                    writes docs/verification.md, its pictures and the decks
    manual.py --check [--quick] PROGRAM  compares with what is there; --quick leaves the slow ones out

Exit status 1 when a problem fails, or, with --check, when a file differs.
"""
import argparse
import os
import pathlib
import sys

import compare
import limits
import problems_beams  # noqa: F401  (registers its problems)
import problems_frames  # noqa: F401
import problems_shells  # noqa: F401
import problems_solids  # noqa: F401
from page import PROBLEMS, table
from words import HEAD, TAIL

ROOT = pathlib.Path(__file__).resolve().parent.parent
MANUAL = ROOT / "docs" / "verification.md"
PICTURES = ROOT / "docs" / "verification"
DECKS = ROOT / "verification" / "decks"
FAMILIES = ("Beams", "Shells", "Solids")


def manual_text(pages, program):
    rows = [page.summary() for page in pages]
    parts = [HEAD, table(("problem", "", "checks", "largest deviation", "solvers", ""), rows) + "\n"]
    for family in FAMILIES:
        of_family = [page for page in pages if page.problem.family == family]
        parts += [f"## {family}\n", *(page.text() for page in of_family)]
    return "\n".join([*parts, limits.text(program), TAIL])


def files_of(pages):
    """Path -> text of everything that the pages leave, but the manual itself."""
    files = {}
    for page in pages:
        files.update({DECKS / name: text for name, text in page.decks.items()})
        files.update({PICTURES / name: text for name, text in page.pictures.items()})
    return files


def write(pages, program):
    files = files_of(pages)
    files[MANUAL] = manual_text(pages, program)
    for folder in (DECKS, PICTURES):
        folder.mkdir(parents=True, exist_ok=True)
        for old in folder.iterdir():
            if old not in files:
                old.unlink()
    for path, text in files.items():
        path.write_text(text)


def check(pages, program, whole):
    """Differences between the pages and the files, one line each."""
    files = files_of(pages)
    if whole:
        files[MANUAL] = manual_text(pages, program)
        for folder in (DECKS, PICTURES):
            for path in folder.iterdir():
                if path not in files:
                    yield f"{path.relative_to(ROOT)}: belongs to no problem"
    else:
        manual = MANUAL.read_text()
        for page in pages:
            yield from compare.differences(f"docs/verification.md, {page.problem.code}",
                                           compare.section(manual, page.problem.code), page.text())
    for path, text in files.items():
        there = path.read_text() if path.exists() else ""
        if path.suffix == ".dat":
            if there != text:
                yield f"{path.relative_to(ROOT)}: is not the deck of its problem"
        else:
            yield from compare.differences(path.relative_to(ROOT), there, text)


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--check", action="store_true")
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("program")
    arguments = parser.parse_args()
    if arguments.quick and not arguments.check:
        parser.error("--quick goes with --check")
    problems = [p for p in sorted(PROBLEMS, key=lambda p: p.code) if not (arguments.quick and p.slow)]
    program = os.path.abspath(arguments.program)
    pages = [p.run(program) for p in problems]
    failures = [f"{page.problem.code}: {f}" for page in pages for f in page.failures]
    if arguments.check:
        failures += check(pages, program, whole=not arguments.quick)
    else:
        write(pages, program)
    for failure in failures:
        print(failure)
    print(f"{len(pages)} problems, {sum(page.passed() for page in pages)} passed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
