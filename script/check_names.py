#!/usr/bin/env python3
"""Looks for names outside namespace kestol: check_names.py NM OBJECT...
A global function or variable of the library with a name of its own could take the place of another
library's in a program that uses both. Prints each such symbol and exits with 1."""
import subprocess
import sys

# Defined functions and variables as nm marks them: text, data, read-only data, zeroed, common.
# Weak ones are instances of the standard library's templates.
DEFINED = {"T", "D", "R", "B", "C"}
NAMESPACE = "6kestol"  # as the compiler writes it into names
# The address sanitizer's own marks of variables.
SANITIZER = "__odr_asan"


def main():
    nm, *objects = sys.argv[1:]
    if not objects:
        sys.exit("no objects")
    found = []
    for path in objects:
        listing = subprocess.run([nm, "-g", "--defined-only", path], capture_output=True, text=True,
                                 check=True).stdout
        for line in listing.splitlines():
            kind, name = line[17:18], line[19:]
            if kind in DEFINED and NAMESPACE not in name and not name.startswith(SANITIZER):
                found.append(f"{path}: {kind} {name}")
    if found:
        print("\n".join(found))
        sys.exit(1)


main()
