#!/usr/bin/env python3
"""base64 and ascii hold what raw holds, as VTK reads them; base64 as meshio reads it too:
check_encodings.py KESTOL_EXPORT DECK..."""
import pathlib
import sys
import tempfile

import meshio
import numpy as np
from exporter import Failures, Grid, run

NAMES = {5: "triangle", 22: "triangle6", 10: "tetra", 24: "tetra10"}


def same_grids(failures, name, one, other):
    failures.same(one.points, other.points, name, "points")
    failures.expect(one.types == other.types, name, "types")
    failures.expect(all((a == b).all() for a, b in zip(one.cells, other.cells)), name, "cells")
    failures.expect(one.names == other.names, name, "names")
    for arrays, others in ((one.point, other.point), (one.cell, other.cell)):
        for key, array in arrays.items():
            failures.expect(array.dtype == others[key].dtype, name, key, "type")
            failures.same(array, others[key], name, key)


def check_meshio(failures, name, path, grid):
    """meshio knows no polylines: models of beams are VTK's alone."""
    if 4 in grid.types:
        return False
    mesh = meshio.read(path)
    failures.same(mesh.points, grid.points, name, "meshio points")
    found = [(block.type, list(cell)) for block in mesh.cells for cell in block.data]
    wanted = [(NAMES[kind], list(cell)) for kind, cell in zip(grid.types, grid.cells)]
    failures.expect(found == wanted, name, "meshio cells")
    for key, array in mesh.point_data.items():
        failures.same(array, grid.point[key.split(" [")[0]], name, "meshio", key)
    for key, blocks in mesh.cell_data.items():
        failures.same(np.concatenate(blocks), grid.cell[key.split(" [")[0]], name, "meshio", key)
    return True


def main():
    program, *decks = sys.argv[1:]
    failures, by_meshio = Failures(), 0
    with tempfile.TemporaryDirectory() as folder:
        for deck in map(pathlib.Path, decks):
            grids = {}
            for encoding in ("raw", "base64", "ascii"):
                path = pathlib.Path(folder) / f"{encoding}.vtu"
                done = run(program, deck, "--vtu", path, "--encoding", encoding)
                failures.expect(done.returncode == 0, deck.name, encoding, done.stderr)
                grids[encoding] = [Grid(path)]
                diagrams = pathlib.Path(folder) / f"{encoding}_diagrams.vtu"
                if diagrams.exists():
                    grids[encoding].append(Grid(diagrams))
                    diagrams.unlink()
            for encoding in ("base64", "ascii"):
                failures.expect(len(grids[encoding]) == len(grids["raw"]), deck.name, "files")
                for one, other in zip(grids["raw"], grids[encoding]):
                    same_grids(failures, f"{deck.name} {encoding}", one, other)
            path = pathlib.Path(folder) / "base64.vtu"
            by_meshio += check_meshio(failures, deck.name, path, grids["raw"][0])
    failures.expect(by_meshio >= 5, "meshio read", by_meshio)
    return failures.finish(f"{len(decks)} decks, {by_meshio} by meshio")


if __name__ == "__main__":
    sys.exit(main())
