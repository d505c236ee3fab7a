#!/usr/bin/env python3
"""Times kestol-check beside kestol and writes the table into bench/README.md.

    bench/check.py KESTOL KESTOL_CHECK [--nodes 1000000] [--dry]

Reading: a lattice of beams, two a node, by `kestol-check --syntax`, beside kestol on the same deck with a word behind
it that ends the run once everything is read. Looking: a space frame of 24 600 equations with mechanisms, condition and
reactions, beside the whole SkyLine run of kestol. The two programs run in turns; of each the shortest processor time
counts, and the largest memory.
"""
import argparse
import os
import pathlib
import subprocess
import sys
import tempfile

import tables

HERE = pathlib.Path(__file__).resolve().parent
TURNS = 3


def lattice(nodes):
    """A plane grid whose nodes are joined to the right and upwards: about two beams a node."""
    columns = max(2, round(nodes ** 0.5))
    rows = nodes // columns
    yield "PROBLEM lattice\nTYPE 2d\nmesh dimension = 2 elemtype Linear nnode = 2\ncoordinates\n"
    for j in range(rows):
        yield "".join(f"{j * columns + i + 1} {0.75 * i:.2f} {0.5 * j:.1f}\n" for i in range(columns))
    yield "end\nelements\n"
    number = 0
    for j in range(rows):
        lines = []
        for i in range(columns):
            node = j * columns + i + 1
            for other in ([node + 1] if i + 1 < columns else []) + ([node + columns] if j + 1 < rows else []):
                number += 1
                lines.append(f"{number} {node} {other} 1\n")
        yield "".join(lines)
    yield "end\nmaterials\n1 E=2.1e11 A=1e-2 Iz=1e-5\nend\nconstraints\n1 111 0 0 0\nend\n"
    yield f"nodal_point_loads\n{nodes // columns * columns} 0 -1000 0\nend\n"


def measure(command, folder, wanted):
    """Processor seconds and peak memory in MB."""
    process = subprocess.Popen(command, cwd=folder, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode not in wanted:
        sys.exit(f"{' '.join(map(str, command))} ended with {process.returncode}")
    return usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def in_turns(first, second, folder, wanted):
    runs = [(measure(first, folder, wanted[0]), measure(second, folder, wanted[1])) for _ in range(TURNS)]
    return [(min(pair[k][0] for pair in runs), max(pair[k][1] for pair in runs)) for k in range(2)]


def row(name, solver, check):
    return (f"| {name} | {solver[0]:.2f} s, {solver[1]:.0f} MB | {check[0]:.2f} s, {check[1]:.0f} MB "
            f"| {check[0] / solver[0]:.2f} | {check[1] - solver[1]:+.0f} MB |")


def rows(arguments):
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        with open(folder / "grid.dat", "w") as file:
            file.writelines(lattice(arguments.nodes))
        text = (folder / "grid.dat").read_text()
        (folder / "read.dat").write_text(text + "nothing_more\n")
        del text
        solver, check = in_turns([arguments.kestol, "read.dat", "report"],
                                 [arguments.check, "--syntax", "grid.dat"], folder, [{2, 126}, {0}])
        yield row(f"reading {arguments.nodes:,} nodes".replace(",", " "), solver, check)
        frame = subprocess.run([sys.executable, HERE / "make_frame.py", "40", "9", "9"], check=True,
                               capture_output=True, text=True).stdout
        (folder / "frame.dat").write_text(frame.replace("TYPE 3d\n", "TYPE 3d\nSolver: SkyLine\n", 1))
        solver, check = in_turns([arguments.kestol, "frame.dat", "report"],
                                 [arguments.check, "--reactions", "--equilibrium", "frame.dat"], folder, [{0}, {0}])
        yield row("space frame of 24 600 equations", solver, check)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("kestol", type=pathlib.Path)
    parser.add_argument("check", type=pathlib.Path)
    parser.add_argument("--nodes", type=int, default=1_000_000)
    parser.add_argument("--dry", action="store_true", help="print the table alone")
    arguments = parser.parse_args()
    arguments.kestol, arguments.check = arguments.kestol.resolve(), arguments.check.resolve()
    table = "\n".join(["| | kestol | kestol-check | ratio | memory |", "|---|---|---|---|---|", *rows(arguments)])
    if arguments.dry:
        print(table)
        return
    tables.renew("checks", "check.py", f"\n{table}\n")


if __name__ == "__main__":
    main()
