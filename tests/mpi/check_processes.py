#!/usr/bin/env python3
"""What kestol-mpi does with its processes: check_processes.py MPIRUN KESTOL_MPI KESTOL SOURCE

More of them than nodes; one that is killed; the pieces for ParaView that each writes.
"""
import os
import re
import signal
import struct
import subprocess
import time

from mpi_run import MPIRUN, PROGRAM, Case, block, kestol_mpi, main


class Processes(Case):
    def test_more_than_nodes(self):
        self.deck("01-cantilever.dat")
        for solver in ("direct", "gamg"):
            run = kestol_mpi("--solver", solver, "01-cantilever.dat", "report", processes=5, cwd=self.here)
            self.assertEqual(run.returncode, 0, run.stderr)
            self.assertIn("\n2 0 -0.0045 -0.00225\n", (self.here / "report").read_text())

    def test_killed_process_ends_the_run_without_files(self):
        self.deck("block.dat", block(16))
        run = subprocess.Popen([MPIRUN, "--oversubscribe", "-n", "2", PROGRAM, "--solver", "direct", "block.dat",
                                "report"], cwd=self.here, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        children = []
        while len(children) < 2 and run.poll() is None:
            time.sleep(0.05)
            listed = subprocess.run(["pgrep", "-P", str(run.pid), "-f", "kestol-mpi"], capture_output=True,
                                    text=True).stdout
            children = [int(word) for word in listed.split()]
        time.sleep(0.3)
        self.assertIsNone(run.poll(), "the run ended before a process could be killed")
        os.kill(children[1], signal.SIGKILL)
        self.assertNotEqual(run.wait(timeout=60), 0)
        self.assertEqual(self.files(), ["block.dat"])


def arrays(path):
    """The arrays of a VTU file in appended raw encoding, by name."""
    data = path.read_bytes()
    xml, raw = data.split(b'<AppendedData encoding="raw">\n_', 1)
    found = {}
    for tag in re.findall(r"<DataArray ([^>]*)/>", xml.decode()):
        entry = dict(re.findall(r'(\w+)="([^"]*)"', tag))
        offset = int(entry["offset"])
        size = struct.unpack_from("<Q", raw, offset)[0]
        code, width = {"Float64": ("d", 8), "Int32": ("i", 4), "UInt8": ("B", 1)}[entry["type"]]
        values = struct.unpack_from(f"<{size // width}{code}", raw, offset + 8)
        step = int(entry.get("NumberOfComponents", 1))
        found[entry["Name"]] = [values[k:k + step] for k in range(0, len(values), step)]
    return found


class Pieces(Case):
    def solved(self, name, processes):
        self.deck(name)
        run = kestol_mpi(name, "--vtu", "x.pvtu", processes=processes, cwd=self.here)
        self.assertEqual(run.returncode, 0, run.stderr)
        sources = re.findall(r'<Piece Source="([^"]*)"/>', (self.here / "x.pvtu").read_text())
        return [arrays(self.here / source) for source in sources]

    def test_make_up_the_whole(self):
        for name in ("15-stiffened-plate.dat", "19-thick-tube.dat"):
            whole, = self.solved(name, 1)
            pieces = self.solved(name, 3)
            self.assertEqual(len(pieces), 3)
            self.assertEqual({tuple(piece) for piece in pieces}, {tuple(whole)})
            cells = [number for piece in pieces for number in piece["element"]]
            self.assertEqual(sorted(cells), sorted(whole["element"]))
            self.assert_nodes_alike(whole, pieces)
            self.assert_cells_alike(whole, pieces)

    def assert_nodes_alike(self, whole, pieces):
        places = {number: k for k, number in enumerate(whole["node"]) if number[0] != 0}
        for array in [a for a in whole if len(whole[a]) == len(whole["Points"]) and a in ("U", "RF", "F", "stress")]:
            largest = max(abs(x) for value in whole[array] for x in value) or 1.0
            for piece in pieces:
                for number, value in zip(piece["node"], piece[array]):
                    if number[0] == 0:  # a station, or a node that the conversion made
                        continue
                    for x, y in zip(value, whole[array][places[number]]):
                        self.assertLessEqual(abs(x - y), 1e-7 * largest, (array, number))

    def assert_cells_alike(self, whole, pieces):
        places = {number: k for k, number in enumerate(whole["element"])}
        for array in [a for a in whole if len(whole[a]) == len(whole["element"]) and a in ("n", "m", "ex", "mesh")]:
            largest = max(abs(x) for value in whole[array] for x in value) or 1.0
            for piece in pieces:
                for number, value in zip(piece["element"], piece[array]):
                    for x, y in zip(value, whole[array][places[number]]):
                        self.assertLessEqual(abs(x - y), 1e-6 * largest, (array, number))

    def test_process_without_elements_has_no_piece(self):
        pieces = self.solved("01-cantilever.dat", 4)
        self.assertEqual(len(pieces), 1)
        self.assertEqual(len([f for f in self.files() if f.endswith(".vtu")]), 1)


if __name__ == "__main__":
    main()
