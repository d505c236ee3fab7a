#!/usr/bin/env python3
"""Holds the includes of the source to the table in script/layers.

    check_includes.py [ROOT]             prints each include that breaks it and each folder that it
                                         does not name, and exits with 1
    check_includes.py --folders [ROOT]   prints the folders of the table that exist
"""
import argparse
import pathlib
import re
import sys

SOURCES = {".h", ".cc", ".inc"}
# Folders of the tree that hold no part of the product in C++.
OUTSIDE = {"tests", "bench", "build", "docs", "examples", "verification", "script", "cmake"}


def read_table(path):
    """The ground headers, and what each folder may include beside itself."""
    ground, table = set(), {}
    for line in path.read_text().splitlines():
        if line.strip() and not line.startswith("#"):
            folder, _, allowed = line.partition(":")
            if folder == "ground":
                ground = set(allowed.split())
            else:
                table[folder] = set(allowed.split())
    return ground, table


def folders(root):
    """The folders of the table that exist, in its order."""
    return [folder for folder in read_table(root / "script" / "layers")[1]
            if (root / folder).is_dir()]


def owner(path, table):
    """The folder of the table that a path (relative to the root) lies in; the longest one."""
    parts = pathlib.PurePosixPath(path).parts[:-1]
    for count in range(len(parts), 0, -1):
        folder = "/".join(parts[:count])
        if folder in table:
            return folder
    return None


def broken(root):
    ground, table = read_table(root / "script" / "layers")
    for path in sorted(root.rglob("*")):
        name = path.relative_to(root).as_posix()
        first = name.split("/")[0]
        if path.suffix not in SOURCES or first in OUTSIDE or first.startswith("."):
            continue
        folder = owner(name, table)
        if folder is None:
            yield f"{name}: script/layers does not know its folder"
            continue
        for number, line in enumerate(path.read_text().splitlines(), 1):
            match = re.match(r'\s*#\s*include\s*(["<])([^">]+)[">]', line)
            if match is None or match.group(2) in ground:
                continue
            target = owner(match.group(2), table)
            if match.group(1) == "<" and target is None:
                continue
            if target != folder and target not in table[folder]:
                yield f"{name}:{number}: {folder}/ must not include {match.group(2)}"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("root", nargs="?", type=pathlib.Path, metavar="ROOT",
                        default=pathlib.Path(__file__).resolve().parent.parent)
    parser.add_argument("--folders", action="store_true")
    arguments = parser.parse_args()
    root = arguments.root.resolve()
    if arguments.folders:
        print("\n".join(folders(root)))
        return 0
    lines = list(broken(root))
    print("\n".join(lines) if lines else "includes run one way")
    return 1 if lines else 0


if __name__ == "__main__":
    sys.exit(main())
