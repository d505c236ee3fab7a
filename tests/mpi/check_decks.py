#!/usr/bin/env python3
"""Compares the values of kestol-mpi with the solver's own: check_decks.py MPIRUN COMPARE SOURCE P MODELS

All examples, the small verification decks and MODELS random models by `--solver auto`; some solids by
each of the iterative solvers as well.
"""
import pathlib
import subprocess
import sys
import tempfile

LARGEST = 60_000  # bytes of a verification deck: the solver's own SkyLine is the slow part here
RANDOM = pathlib.Path(__file__).with_name("random_models.py")


def compare(mpirun, program, processes, decks, *options):
    command = [mpirun, "--oversubscribe", "-n", processes, program, *options, *map(str, decks)]
    run = subprocess.run(command, capture_output=True, text=True, timeout=500)
    print(run.stdout, end="")
    wanted = f"{len(decks)} decks compared, 0 faults\n"
    if run.returncode != 0 or run.stdout != wanted:
        print(run.stderr)
        sys.exit(f"failed: {' '.join(options)} on {processes} processes")


def main():
    mpirun, program, source, processes, count = sys.argv[1:]
    source = pathlib.Path(source)
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([sys.executable, "-B", RANDOM, folder, count], check=True)
        models = sorted(pathlib.Path(folder).glob("*.dat"))
        verification = [deck for deck in sorted((source / "verification/decks").glob("*.dat"))
                        if deck.stat().st_size < LARGEST]
        decks = sorted((source / "examples").glob("*.dat")) + verification + models
        compare(mpirun, program, processes, decks)
        compare(mpirun, program, processes, [d for d in models if "solid" in d.name], "--gamg")
        compare(mpirun, program, processes, [d for d in models if "solid" in d.name][:10], "--hypre")


if __name__ == "__main__":
    main()
