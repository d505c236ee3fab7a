#!/usr/bin/env python3
"""Times the companions over models of growing size and writes their table into bench/README.md.

    bench/companions.py BUILD [--equations 10000 30000 100000] [--dry]

Processor time and peak memory of whole runs, the better of two; what a model twice as large multiplies
the time by, from the first size to the last. Companions that BUILD does not hold are left out.
"""
import argparse
import datetime
import math
import os
import pathlib
import subprocess
import sys
import tempfile

import run as whole_runs
import tables

HERE = pathlib.Path(__file__).resolve().parent
# name, generator, arguments by equations
MODELS = [
    ("space frame", "make_frame.py", {10_000: ["15", "9", "9"], 30_000: ["25", "13", "13"],
                                      100_000: ["40", "19", "19"]}),
    ("plate, 3 nodes", "make_plate.py", {10_000: ["40"], 30_000: ["70"], 100_000: ["128"]}),
    ("block, 4 nodes", "make_block.py", {10_000: ["9"], 30_000: ["13"], 100_000: ["20"]}),
]
CASES = """model = "model.dat"
[cases.G]
loads = "model"
[combinations]
U1 = { G = 1.35 }
U2 = { G = 1.0 }
"""
# companion, what of it, command
COMMANDS = [
    ("check", "kestol-check", ["model.dat"]),
    ("export", "kestol-export --vtu --csv", ["model.dat", "--vtu", "out.vtu", "--csv", "out"]),
    ("combine", "kestol-combine, 1 case, 2 combinations", ["model.toml", "-o", "out.txt"]),
    ("view", "kestol-view", ["model.dat", "-o", "out.html"]),
]
ENVIRONMENT = {**os.environ, "OMP_NUM_THREADS": "1", "OPENBLAS_NUM_THREADS": "1"}


def measure(command, folder):
    """Processor seconds and peak MB of a run; None where it fails."""
    with open(os.devnull, "w", encoding="utf-8") as nothing:
        process = subprocess.Popen(command, cwd=folder, stdout=nothing, stderr=nothing, env=ENVIRONMENT)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode not in (0, 1):
        return None
    return usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def best_of_two(command, folder):
    runs = [run for run in (measure(command, folder) for _ in range(2)) if run]
    return min(runs) if runs else None


def row(title, model, sizes, results):
    """Cells of the table: time and memory by size, and the growth per doubling."""
    cells = [title, model]
    cells += [f"{result[0]:.2f} ({result[1]:.0f} MB)" if result else "-" for result in results]
    known = [(size, result[0]) for size, result in zip(sizes, results) if result]
    if len(known) > 1:
        (small, first), (large, last) = known[0], known[-1]
        cells.append(f"{(last / first) ** (1 / math.log2(large / small)):.2f}")
    else:
        cells.append("")
    return cells


def rows(build, sizes):
    for model, generator, arguments in MODELS:
        with tempfile.TemporaryDirectory() as name:
            results = {}
            folder = pathlib.Path(name)
            (folder / "model.toml").write_text(CASES)
            equations = []
            for size in sizes:
                text = subprocess.run([sys.executable, HERE / generator, *arguments[size]], check=True,
                                      stdout=subprocess.PIPE, text=True).stdout
                equations.append(whole_runs.equations_of(text))
                (folder / "model.dat").write_text(text)
                for companion, title, words in COMMANDS:
                    program = build / "programs" / companion / f"kestol-{companion}"
                    if program.exists():
                        results.setdefault(title, []).append(best_of_two([program, *words], folder))
            for title, found in results.items():
                cells = row(title, model, equations, found)
                print(" | ".join(cells), flush=True)
                yield cells


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("build", type=lambda word: pathlib.Path(word).resolve())
    parser.add_argument("--equations", type=int, nargs="+", default=[10_000, 30_000, 100_000])
    parser.add_argument("--dry", action="store_true", help="print the table only")
    arguments = parser.parse_args()
    head = ["companion", "model", *(f"{size // 1000} k" for size in arguments.equations), "doubling"]
    body = list(rows(arguments.build, arguments.equations))
    text = [f"{whole_runs.processor()}; {datetime.date.today()}; processor seconds (peak memory).", "",
            *tables.table(head, body)]
    if not arguments.dry:
        tables.renew("companions", "companions.py", "\n".join(text))


if __name__ == "__main__":
    main()
