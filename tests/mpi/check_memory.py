#!/usr/bin/env python3
"""Runs kestol-mpi under valgrind on two processes: check_memory.py MPIRUN KESTOL_MPI DECK SUPPRESSIONS...

What MPI and PETSc do by themselves is suppressed by the lists that come with them; of what remains only reports
that pass through this program count.
"""
import pathlib
import re
import subprocess
import sys
import tempfile


def main():
    mpirun, program, deck, *lists = sys.argv[1:]
    with tempfile.TemporaryDirectory() as folder:
        command = [mpirun, "--oversubscribe", "-n", "2", "valgrind", "-q",
                   *(f"--suppressions={name}" for name in lists), f"--log-file={folder}/log.%p",
                   program, "-q", "-r", f"{folder}/res", deck, f"{folder}/report"]
        run = subprocess.run(command, capture_output=True, text=True, timeout=500)
        if run.returncode != 0:
            sys.exit(f"status {run.returncode}\n{run.stderr}")
        logs = [path.read_text() for path in pathlib.Path(folder).glob("log.*")]
    if len(logs) != 2:
        sys.exit(f"{len(logs)} logs of valgrind, not 2")
    reports = [report for log in logs for report in re.split(r"==\d+== \n", log) if "kestol::" in report]
    if reports:
        sys.exit("\n".join(reports))


if __name__ == "__main__":
    main()
