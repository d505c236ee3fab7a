#!/usr/bin/env python3
"""Applies the changes that CONTRIBUTING.md shows as diffs to a copy of the files that they change:

    apply_example.py SOURCE FOLDER

A diff names its file behind "---"; its lines without "+" must stand in that file, once, in this order.
"""
import pathlib
import re
import sys


def main():
    source, folder = map(pathlib.Path, sys.argv[1:])
    diffs = re.findall(r"```diff\n--- (\S+)\n(.*?)```", (source / "CONTRIBUTING.md").read_text(), re.S)
    if not diffs:
        sys.exit("CONTRIBUTING.md shows no diff")
    for name, diff in diffs:
        lines = diff.splitlines(keepends=True)
        before = "".join(line[1:] for line in lines if line[0] in " -")
        after = "".join(line[1:] for line in lines if line[0] in " +")
        place = folder / name
        text = (place if place.exists() else source / name).read_text()
        if text.count(before) != 1:
            sys.exit(f"{name} does not hold, once:\n{before}")
        place.parent.mkdir(parents=True, exist_ok=True)
        place.write_text(text.replace(before, after))


main()
