#!/usr/bin/env python3
"""Runs the same tetrahedra through kestol and through an independent program and compares the nodal
displacements:

    compare_solids.py KESTOL CCX

CCX is the program of Debian's package calculix-ccx. The meshes are those of the thick plate (T02, curved
edges) and of the straight cantilever (T06), each with four and with ten nodes. Loads are nodal forces,
so that only the elements are compared. Both programs count mid-sides alike: 5 on 1-2, 6 on 2-3, 7 on 3-1,
8 on 1-4, 9 on 2-4, 10 on 3-4. Exit status 1 when a displacement differs by more than 1e-5 of the largest:
a report has six digits.
"""
import argparse
import os
import pathlib
import re
import subprocess
import sys
import tempfile

import runs
from models import number
from problems_solids import cantilever_model, thick_plate_model

TOLERANCE = 1e-5


def keys_of(model):
    """Material line as numbers: {'E': ..., 'nu': ...}."""
    words = model.sections["materials"][0].split()[1:]
    return {key: float(value) for key, value in (word.split("=") for word in words)}


def other_deck(model):
    """The model in the other program's form; supports are zero displacements."""
    quadratic = len(model.elements[0][0]) == 10
    lines = ["*NODE, NSET=ALL"]
    lines += [f"{i}, {', '.join(map(number, p))}" for i, p in enumerate(model.nodes, 1)]
    lines.append(f"*ELEMENT, TYPE={'C3D10' if quadratic else 'C3D4'}, ELSET=SOLID")
    lines += [f"{i}, {', '.join(map(str, nodes))}" for i, (nodes, _) in enumerate(model.elements, 1)]
    material = keys_of(model)
    lines += ["*MATERIAL, NAME=ONE", "*ELASTIC", f"{material['E']:.12g}, {material['nu']:.12g}",
              "*SOLID SECTION, ELSET=SOLID, MATERIAL=ONE", "*BOUNDARY"]
    for line in model.sections["constraints"]:
        node, codes = line.split()[:2]
        lines += [f"{node}, {d}, {d}" for d, code in enumerate(codes, 1) if code == "1"]
    lines += ["*STEP", "*STATIC", "*CLOAD"]
    for line in model.sections["nodal_point_loads"]:
        node, *components = line.split()
        lines += [f"{node}, {d}, {c}" for d, c in enumerate(components, 1) if float(c) != 0]
    return "\n".join([*lines, "*NODE PRINT, NSET=ALL", "U", "*END STEP"]) + "\n"


def other_displacements(program, model):
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        (folder / "model.inp").write_text(other_deck(model))
        done = subprocess.run([program, "model"], cwd=folder, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, check=False)
        results = folder / "model.dat"
        if not results.exists():
            sys.exit(f"the other program left no results:\n{done.stdout[-2000:]}")
        found = {}
        for line in results.read_text().splitlines():
            words = line.split()
            if len(words) == 4 and re.fullmatch(r"\d+", words[0]):
                found[int(words[0])] = [float(w) for w in words[1:]]
        return found


def with_nodal_forces(model, nodes, force):
    """The same force on each node in the place of the loads on faces."""
    model.sections.pop("face_loads")
    for node in nodes:
        model.load(node, *force)
    return model


def models():
    for quadratic in (False, True):
        plate = thick_plate_model(6, 8, 2, quadratic)
        top = plate.where(lambda x, y, z: z > 0.6 - 1e-9)
        yield "thick plate", with_nodal_forces(plate, top, (0, 0, -1e4))
        bar = cantilever_model(12, 2, quadratic)
        tip = bar.where(lambda x, y, z: x == 6)
        yield "cantilever", with_nodal_forces(bar, tip, (1, 0.5, -0.25))


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("kestol")
    parser.add_argument("ccx")
    arguments = parser.parse_args()
    failures = 0
    for name, model in models():
        ours = runs.run_program(os.path.abspath(arguments.kestol), model, runs.DIRECT).displacements
        theirs = other_displacements(arguments.ccx, model)
        largest = max(abs(v) for values in ours.values() for v in values)
        missing = set(ours) ^ set(theirs)
        worst = max((abs(a - b) for node in ours if node in theirs
                     for a, b in zip(ours[node], theirs[node])), default=largest) / largest
        good = not missing and worst <= TOLERANCE
        failures += not good
        print(f"{name}, {len(model.elements[0][0])}-noded, {len(model.nodes)} nodes: "
              f"largest difference {worst:.1e} of the largest displacement: "
              f"{'pass' if good else 'FAIL'}")
        if missing:
            print(f"  nodes in one program only: {sorted(missing)[:10]}")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
