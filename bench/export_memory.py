#!/usr/bin/env python3
"""Compares the memory of kestol-export with that of kestol and writes the table into bench/README.md.

    bench/export_memory.py BUILD [--dry]

Both read and solve the same deck in the same way, by conjugate gradients, whose memory is the least, and write
the report; kestol-export writes the grid in raw form and the diagrams too. What it has at its peak above
kestol is what these take, and it is set beside their size.
"""
import argparse
import datetime
import pathlib
import subprocess
import sys
import tempfile

import companions
import run as whole_runs
import tables

HERE = pathlib.Path(__file__).resolve().parent
MODELS = [
    ("space frame", "make_frame.py", ["40", "19", "19"]),
    ("plate, 3 nodes", "make_plate.py", ["200"]),
    ("block, 4 nodes", "make_block.py", ["20"]),
]
SOLVER = "Solver: Sparse 0.1 1 100000\n"  # how near the answer comes does not matter here


def peak(command, folder):
    """MB; ends the program where the command fails."""
    found = companions.measure(command, folder)
    if found is None:
        sys.exit(f"{command} failed")
    return found[1]


def rows(build):
    for model, generator, arguments in MODELS:
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name)
            text = subprocess.run([sys.executable, HERE / generator, *arguments], check=True,
                                  stdout=subprocess.PIPE, text=True).stdout
            (folder / "model.dat").write_text(text.replace("TYPE 3d\n", "TYPE 3d\n" + SOLVER, 1))
            solver = peak([build / "main" / "kestol", "model.dat", "report.txt"], folder)
            export = peak([build / "programs" / "export" / "kestol-export", "model.dat", "--solver", "deck",
                           "--report", "own.txt", "--vtu", "out.vtu"], folder)
            files = sum(path.stat().st_size for path in folder.glob("out*.vtu")) / 1e6
            elements = sum(1 for line in text[text.index("elements"):text.index("end elements")].splitlines()) - 1
            yield [model, f"{elements}", f"{whole_runs.equations_of(text)}", f"{files:.0f} MB", f"{solver:.0f} MB",
                   f"{export:.0f} MB", f"{export - solver:+.0f} MB", f"{max(0.0, export - solver) / files:.2f}"]


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("build", type=lambda word: pathlib.Path(word).resolve())
    parser.add_argument("--dry", action="store_true", help="print the table only")
    arguments = parser.parse_args()
    head = ["model", "elements", "equations", "files", "peak of kestol", "of kestol-export", "difference",
            "difference / files"]
    lines = [f"{whole_runs.processor()}; {datetime.date.today()}.", "", *tables.table(head, rows(arguments.build))]
    text = "\n".join(lines)
    print(text)
    if not arguments.dry:
        tables.renew("memory of the export", "export_memory.py", text)


if __name__ == "__main__":
    main()
