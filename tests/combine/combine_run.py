"""What the tests of kestol-combine share: running the programs in a folder of their own."""

from __future__ import annotations

import contextlib
import os
import pty
import subprocess
import sys
from dataclasses import dataclass
from pathlib import Path

# Models of all families: the tests of kestol-export have a generator.
sys.path.append(str(Path(__file__).parents[1] / "export"))

FRAME = """PROBLEM portal
TYPE 2d
units_names
  kN-m kN m kPa 1000 1
end
units_mesh=m
units_mat_and_load=kN-m
units_res=kN-m
GravityDirection 0 -1 0
mesh
  dimension = 2 elemtype Linear nnode = 2
  coordinates
    1 0 0
    2 0 4
    3 6 4
    4 6 0
  end coordinates
  elements
    1 1 2 1
    2 2 3 1
    3 3 4 1
  end elements
materials
  1 E=210e6 A=1e-2 Iz=1e-4 Weight={weight}
end materials
constraints
  1 111 0 0 0
  4 111 {settlement} 0 0
end constraints
"""
DEAD = "global_pressure_loads\n  2 0 {dead}\nend\n"
OFFICE = "global_pressure_loads\n  2 0 -15\nend\n"
WIND = ("nodal_point_loads\n  2 12 0 0\nend\n"
        "constraints\n  4 111 0.01 0 0\nend\n")
CASES = """model = "portal.dat"
[cases.G]
category = "permanent"
loads = "model"
[cases.Q1]
category = "live-B"
loads = "office.dat"
[cases.W]
category = "wind"
loads = "wind.dat"
"""


def frame(weight: float = 78.5, dead: float = -10.0, settlement: float = 0.0) -> str:
    """The deck of the portal, whose own loads are the case G."""
    return (FRAME.format(weight=repr(weight), settlement=repr(settlement))
            + DEAD.format(dead=repr(dead)))


@dataclass
class Run:
    """The end of a program."""

    status: int
    out: str
    err: str


class Folder:
    """A working folder with the portal in it."""

    def __init__(self, path: Path, combine: str) -> None:
        self.path = path
        self.program = combine
        path.mkdir(parents=True, exist_ok=True)
        self.write("portal.dat", frame())
        self.write("office.dat", OFFICE)
        self.write("wind.dat", WIND)

    def write(self, name: str, text: str) -> None:
        (self.path / name).write_text(text, encoding="utf-8")

    def read(self, name: str) -> str:
        return (self.path / name).read_text(encoding="utf-8")

    def names(self) -> set[str]:
        return {entry.name for entry in self.path.iterdir()}

    def combine(self, *arguments: str) -> Run:
        return run(self.path, self.program, *arguments)


def on_terminal(folder: Path, *command: str) -> tuple[int, str]:
    """The status of a program, and its standard error as a terminal gets it."""
    leader, follower = pty.openpty()
    with subprocess.Popen(command, cwd=folder, stdout=subprocess.DEVNULL, stderr=follower) as process:
        os.close(follower)
        text = b""
        with contextlib.suppress(OSError):  # how the end of a terminal is told
            while piece := os.read(leader, 4096):
                text += piece
        os.close(leader)
    return process.returncode, text.decode()


def run(folder: Path, *command: str) -> Run:
    """Runs a program in a folder; it has a minute."""
    done = subprocess.run(command, cwd=folder, capture_output=True, timeout=60, check=False)
    return Run(done.returncode, done.stdout.decode(), done.stderr.decode())
