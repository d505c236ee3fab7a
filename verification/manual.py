#!/usr/bin/env python3
"""Writes the verification manual, or holds programs against it.

    manual.py --export E --judge C --view V KESTOL
                writes docs/verification.md, its pictures and the decks
    manual.py --check [--quick] [--export E --judge C] [--view V] KESTOL
                compares with what is there; --quick leaves the slow problems out

E, C and V are kestol-export, kestol-check and kestol-view: the first two run every problem again, the
third draws some. Exit status 1 when a problem fails, or, with --check, when a file differs.
"""
import argparse
import os
import pathlib
import sys

import companions
import compare
import limits
import problems_beams  # noqa: F401  (registers its problems)
import problems_frames  # noqa: F401
import problems_shells  # noqa: F401
import problems_solids  # noqa: F401
from page import PROBLEMS, Page, table
from words import HEAD, TAIL

ROOT = pathlib.Path(__file__).resolve().parent.parent
MANUAL = ROOT / "docs" / "verification.md"
PICTURES = ROOT / "docs" / "verification"
DECKS = ROOT / "verification" / "decks"
FAMILIES = ("Beams", "Shells", "Solids")
COLUMNS = ("problem", "", "checks", "largest deviation", "solvers", "kestol-export", "balance", "")


class Manual:
    """All pages, those of the same problems by the companions, and what they leave."""

    def __init__(self, problems, programs):
        self.programs = programs
        self.pages = [p.on(Page(p, programs.kestol)) for p in problems]
        self.twins = []
        if programs.export:
            self.twins = [p.on(companions.CompanionPage(p, programs.export, programs.judge))
                          for p in problems]

    def failures(self):
        for pages, by in ((self.pages, ""), (self.twins, ", companions")):
            for page in pages:
                yield from (f"{page.problem.code}{by}: {failure}" for failure in page.failures)

    def passed(self):
        failed = {page.problem.code for page in (*self.pages, *self.twins) if page.failures}
        return len(self.pages) - len(failed)

    def text(self):
        rows = [page.summary(twin) for page, twin in zip(self.pages, self.twins)]
        parts = [HEAD, table(COLUMNS, rows) + "\n"]
        for family in FAMILIES:
            of_family = [page for page in self.pages if page.problem.family == family]
            parts += [f"## {family}\n", *(page.text() for page in of_family)]
        return "\n".join([*parts, limits.text(self.programs.kestol), TAIL])

    def files(self):
        """Path -> text of the decks and pictures; None where nobody is there to draw."""
        files = {}
        for page in self.pages:
            files.update({DECKS / name: text for name, text in page.decks.items()})
            files.update({PICTURES / name: text for name, text in page.pictures.items()})
            files.update({PICTURES / name: self.programs.view and companions.drawing(self.programs.view, *asked)
                          for name, asked in page.drawings.items()})
        return files


def write(manual):
    files = {MANUAL: manual.text(), **manual.files()}
    for folder in (DECKS, PICTURES):
        folder.mkdir(parents=True, exist_ok=True)
        for old in folder.iterdir():
            if old not in files:
                old.unlink()
    for path, text in files.items():
        path.write_text(text)


def strangers(files):
    for folder in (DECKS, PICTURES):
        for path in folder.iterdir():
            if path not in files:
                yield f"{path.relative_to(ROOT)}: belongs to no problem"


def differences_of_sections(pages):
    manual = MANUAL.read_text()
    for page in pages:
        yield from compare.differences(f"docs/verification.md, {page.problem.code}",
                                       compare.section(manual, page.problem.code), page.text())


def check(manual, quick):
    """Differences between the pages and the files, one line each."""
    files = manual.files()
    if not quick:
        yield from strangers(files)
    if quick or not manual.twins:
        yield from differences_of_sections(manual.pages)
    else:
        files[MANUAL] = manual.text()
    for path, text in files.items():
        if text is None:
            continue
        there = path.read_text() if path.exists() else ""
        if path.suffix == ".dat":
            if there != text:
                yield f"{path.relative_to(ROOT)}: is not the deck of its problem"
        else:
            yield from compare.differences(path.relative_to(ROOT), there, text)


def arguments():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--check", action="store_true")
    parser.add_argument("--quick", action="store_true")
    for program in ("--export", "--judge", "--view", "kestol"):
        parser.add_argument(program, type=os.path.abspath)
    given = parser.parse_args()
    if given.quick and not given.check:
        parser.error("--quick goes with --check")
    if bool(given.export) != bool(given.judge):
        parser.error("--export and --judge go together")
    if not given.check and not (given.export and given.view):
        parser.error("the manual is written with --export, --judge and --view")
    return given


def main():
    given = arguments()
    problems = [p for p in sorted(PROBLEMS, key=lambda p: p.code) if not (given.quick and p.slow)]
    manual = Manual(problems, given)
    failures = list(manual.failures())
    if given.check:
        failures += check(manual, given.quick)
    else:
        write(manual)
    for failure in failures:
        print(failure)
    print(f"{len(manual.pages)} problems, {manual.passed()} passed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
