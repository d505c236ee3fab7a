#!/usr/bin/env python3
"""Looks into objects that are compiled for some processors only: check_wide_objects.py NM OBJECT...
Code that such an object shows to the linker could be taken for the whole program and stop it on
other processors. Prints each such symbol and exits with 1."""
import subprocess
import sys

# Functions as nm marks them: external, weak, unique, chosen when the program is loaded.
SHOWN = {"T", "W", "u", "i"}


def main():
    nm, *objects = sys.argv[1:]
    if not objects:
        sys.exit("no objects")
    shown = []
    for path in objects:
        listing = subprocess.run([nm, "-C", path], capture_output=True, text=True, check=True).stdout
        for line in listing.splitlines():
            kind, name = line[17:18], line[19:]
            if kind in SHOWN:
                shown.append(f"{path}: {kind} {name}")
    if shown:
        print("\n".join(shown))
        sys.exit(1)


main()
