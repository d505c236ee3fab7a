#!/usr/bin/env python3
"""Holds the includes of the source to the layers: main -> input -> model -> analysis -> output over
algebra. Prints each include that breaks the table and exits with 1."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent

# Leaves that may be included from anywhere.
LEAVES = {"main/ErrorChannel.h", "output/InfoFile.h"}

# What headers and sources of a folder may include, beside their own folder.
HEADERS = {
    "algebra": set(),
    "model": {"algebra"},
    "input": {"algebra", "model"},
    "analysis": {"algebra", "model", "input"},
    "output": {"algebra", "model", "input", "analysis"},
    "main": {"algebra", "model", "input", "analysis", "output"},
}
SOURCES = dict(HEADERS)
# The readers of the model's sections, the support check and the hinges work on the Project.
SOURCES["model"] = {"algebra", "input"}
# Mesh blocks, materials and loads are read by the model's own readers; the report is an operation
# of Project with its definition in output/.
SOURCES["input"] = {"algebra", "model"}


def broken(path):
    folder = path.parent.name
    allowed = (HEADERS if path.suffix == ".h" else SOURCES)[folder]
    for number, line in enumerate(path.read_text().splitlines(), 1):
        match = re.match(r'#include "((\w+)/[\w.]+)"', line)
        if not match or match.group(1) in LEAVES:
            continue
        if match.group(2) != folder and match.group(2) not in allowed:
            yield f"{path.relative_to(ROOT)}:{number}: {folder}/ must not include {match.group(1)}"


def main():
    lines = [line for folder in HEADERS for path in sorted((ROOT / folder).glob("*.*"))
             if path.suffix in (".h", ".cc") for line in broken(path)]
    print("\n".join(lines) if lines else "includes run one way")
    return 1 if lines else 0


if __name__ == "__main__":
    sys.exit(main())
