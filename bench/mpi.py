#!/usr/bin/env python3
"""Times kestol-mpi beside kestol and writes the table into bench/README.md.

    bench/mpi.py KESTOL KESTOL_MPI [--equations 10000 100000] [--processes 1 2] [--longest 120] [--dry]

Every row is one run after another on the same machine: the whole run of kestol by SkyLine and by Sparse, then
kestol-mpi by each of its solvers. The load of the machine stands above the table. Memory is the sum over all
processes. A run that takes longer than the longest asked for is ended and shown as "> 120". The factor of a solid of
a million equations would fill the memory of most machines: its cells stay empty.
"""
import argparse
import datetime
import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile
import time

import tables

HERE = pathlib.Path(__file__).resolve().parent
# name, generator, arguments by equations
MODELS = [
    ("space frame", "make_frame.py", {10_000: ["25", "7", "7"], 100_000: ["40", "19", "19"],
                                      300_000: ["51", "30", "30"], 1_000_000: ["78", "45", "45"]}),
    ("plate, 3 nodes", "make_plate.py", {10_000: ["40"], 100_000: ["128"], 300_000: ["223"], 1_000_000: ["407"]}),
    ("plate, 6 nodes", "make_plate.py", {10_000: ["20", "--six"], 100_000: ["64", "--six"],
                                         300_000: ["111", "--six"], 1_000_000: ["203", "--six"]}),
    ("block, 4 nodes", "make_block.py", {10_000: ["9"], 100_000: ["20"], 300_000: ["30"], 1_000_000: ["43"]}),
    ("block, 10 nodes", "make_block.py", {10_000: ["4", "--ten"], 100_000: ["10", "--ten"],
                                          300_000: ["14", "--ten"], 1_000_000: ["22", "--ten"]}),
]
LARGEST_SKYLINE = 110_000
LARGEST_DIRECT_SOLID = 300_000
ENVIRONMENT = {**os.environ, "OMPI_ALLOW_RUN_AS_ROOT": "1", "OMPI_ALLOW_RUN_AS_ROOT_CONFIRM": "1",
               "OMP_NUM_THREADS": "1", "OPENBLAS_NUM_THREADS": "1"}


def timed(command, folder, longest):
    """The seconds and the finished run; no run when it was ended."""
    start = time.monotonic()
    process = subprocess.Popen(command, cwd=folder, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                               env=ENVIRONMENT, start_new_session=True)
    try:
        out, err = process.communicate(timeout=longest)
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGTERM)
        process.communicate()
        return longest, None
    return time.monotonic() - start, subprocess.CompletedProcess(command, process.returncode, out, err)


def of_kestol(program, solver, text, folder, longest):
    (folder / "k.dat").write_text(text.replace("TYPE 3d\n", f"TYPE 3d\nSolver: {solver}\n", 1))
    seconds, run = timed([program, "k.dat", "report"], folder, longest)
    if run is None:
        return f"> {longest}"
    return f"{seconds:.2f}" if run.returncode == 0 else "-"


def of_mpi(program, solver, processes, text, folder, longest):
    (folder / "m.dat").write_text(text)
    command = ["mpirun", "--oversubscribe", "-n", str(processes), program, "-v", "--solver", solver, "m.dat", "report"]
    seconds, run = timed(command, folder, longest)
    if run is None:
        return f"> {longest}"
    if run.returncode != 0:
        return "-"
    memory = re.search(r"peak memory (\d+) MB", run.stderr)[1]
    iterations = re.search(r"(\d+) iterations, residual", run.stderr)
    return f"{seconds:.2f} ({iterations[1] + ' its, ' if iterations else ''}{memory} MB)"


def rows_of(arguments):
    for name, generator, sizes in MODELS:
        for size in arguments.equations:
            text = subprocess.run([sys.executable, HERE / generator, *sizes[size]], capture_output=True, text=True,
                                  check=True).stdout
            with tempfile.TemporaryDirectory() as folder:
                folder = pathlib.Path(folder)
                row = [name, f"{size // 1000} k", ""]
                if size <= LARGEST_SKYLINE:
                    row[-1] = of_kestol(arguments.kestol, "SkyLine", text, folder, arguments.longest)
                row.append(of_kestol(arguments.kestol, "Sparse 1e-8 1e-6 100000", text, folder, arguments.longest))
                for solver in ("direct", "gamg"):
                    fits = solver != "direct" or "block" not in name or size <= LARGEST_DIRECT_SOLID
                    row += [of_mpi(arguments.mpi, solver, p, text, folder, arguments.longest) if fits else ""
                            for p in arguments.processes]
            print(" | ".join(row), flush=True)
            yield row


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("kestol", type=os.path.abspath)
    parser.add_argument("mpi", type=os.path.abspath)
    parser.add_argument("--equations", type=int, nargs="+", default=[10_000, 100_000])
    parser.add_argument("--processes", type=int, nargs="+", default=[1, 2])
    parser.add_argument("--longest", type=int, default=120, metavar="SECONDS")
    parser.add_argument("--dry", action="store_true", help="print the table only")
    arguments = parser.parse_args()
    head = ["model", "equations", "SkyLine s", "Sparse s"]
    head += [f"{solver}, {p} s" for solver in ("direct", "gamg") for p in arguments.processes]
    load = os.getloadavg()[0]
    rows = list(rows_of(arguments))
    text = [f"{datetime.date.today()}; {os.cpu_count()} cores; load {load:.1f} at the start, "
            f"{os.getloadavg()[0]:.1f} at the end: above the number of cores, times are those of a busy machine.", "",
            *tables.table(head, rows)]
    if not arguments.dry:
        tables.renew("many processes", "mpi.py", "\n".join(text))


if __name__ == "__main__":
    main()
