"""Runs kestol-export and reads what it wrote with other people's programs: VTK, json, csv."""
import csv
import json
import pathlib
import subprocess

import numpy as np
from vtkmodules.util.numpy_support import vtk_to_numpy
from vtkmodules.vtkIOXML import vtkXMLUnstructuredGridReader


class Failures:
    """Counts what went wrong and prints the first lines of it."""

    def __init__(self):
        self.count = 0

    def expect(self, holds, *what):
        if holds:
            return
        self.count += 1
        if self.count <= 40:
            print("FAILED:", *what)

    def same(self, found, wanted, *what):
        """Equal to the bit, signs of zero included."""
        found, wanted = np.asarray(found), np.asarray(wanted)
        equal = (found.shape == wanted.shape
                 and np.ascontiguousarray(found).tobytes()
                 == np.ascontiguousarray(wanted.astype(found.dtype)).tobytes())
        where = ""
        if not equal and found.shape == wanted.shape and found.size:
            where = np.argwhere(found != wanted)[:3].tolist()
        self.expect(equal, *what, found.shape, wanted.shape, where)

    def finish(self, what):
        print(f"{what}: {self.count} failures")
        return 1 if self.count else 0


def run(program, *arguments, **options):
    return subprocess.run([str(program), *map(str, arguments)], stdout=subprocess.PIPE,
                          stderr=subprocess.PIPE, check=False, **options)


class Grid:
    """A VTU file: arrays by the name without its unit, cells as lists of points."""

    def __init__(self, path):
        reader = vtkXMLUnstructuredGridReader()
        reader.SetFileName(str(path))
        reader.Update()
        if reader.GetErrorCode() != 0:
            raise ValueError(f"VTK cannot read {path}")
        self.data = reader.GetOutput()
        self.points = (vtk_to_numpy(self.data.GetPoints().GetData())
                       if self.data.GetNumberOfPoints() else np.zeros((0, 3)))
        self.names = []
        self.point = self._arrays(self.data.GetPointData())
        self.cell = self._arrays(self.data.GetCellData())
        count = self.data.GetNumberOfCells()
        self.types = [self.data.GetCellType(c) for c in range(count)]
        offsets = vtk_to_numpy(self.data.GetCells().GetOffsetsArray()) if count else [0]
        places = vtk_to_numpy(self.data.GetCells().GetConnectivityArray()) if count else []
        self.cells = [places[offsets[c]:offsets[c + 1]] for c in range(count)]

    def _arrays(self, data):
        arrays = {}
        for i in range(data.GetNumberOfArrays()):
            self.names.append(data.GetArrayName(i))
            arrays[data.GetArrayName(i).split(" [")[0]] = vtk_to_numpy(data.GetArray(i))
        return arrays


class Export:
    """Everything that kestol-export writes of one deck."""

    def __init__(self, program, deck, folder, *options):
        self.stem = pathlib.Path(folder) / "out"
        for old in pathlib.Path(folder).glob("out*"):
            old.unlink()
        self.run = run(program, deck, "--vtu", f"{self.stem}.vtu", "--json", f"{self.stem}.json",
                       "--csv", self.stem, "--report", f"{self.stem}.txt", *options)
        self.status = self.run.returncode
        if self.status == 0:
            self.grid = Grid(f"{self.stem}.vtu")
            diagrams = pathlib.Path(f"{self.stem}_diagrams.vtu")
            self.diagrams = Grid(diagrams) if diagrams.exists() else None
            self.json = json.loads(pathlib.Path(f"{self.stem}.json").read_text(encoding="utf-8"))

    def table(self, name):
        """(header, rows of numbers) of a CSV file."""
        with open(f"{self.stem}_{name}.csv", newline="", encoding="utf-8") as file:
            header, *rows = list(csv.reader(file))
        return header, np.array([[float(field) for field in row] for row in rows]).reshape(
            len(rows), len(header))
