"""Elements of a solution: beams over their stations, shells and solids at their integration points.

Rows count from 0, stations from 0 at node 1; numbers of elements, nodes and materials are those of
the deck.
"""

from __future__ import annotations

from dataclasses import dataclass

import numpy as np
from numpy.typing import NDArray

from .arrays import Floats, Integers, OfSolution, floats, integers


@dataclass(frozen=True)
class Beam:
    """One beam over its stations.

    Attributes:
        number: of the element; material: number of its material.
        nodes: (2,), numbers.
        length: [length].
        axes: (3, 3), rows ex, ey, ez in global components.
        end_forces: (2, dofs), what the nodes exert on the ends, local axes, as the report has it.
        x: (stations,), from node 1 [length].
        N, Vy, Vz: (stations,), axial force (tension +) and shears [force].
        T, My, Mz: (stations,), torque and moments [force length].
        u: (stations, 3), displacements, global [length]; rotations: (stations, 3), global [rad].
    """

    number: int
    material: int
    nodes: Integers
    length: float
    axes: Floats
    end_forces: Floats
    x: Floats
    N: Floats
    Vy: Floats
    Vz: Floats
    T: Floats
    My: Floats
    Mz: Floats
    u: Floats
    rotations: Floats


class Beams(OfSolution):
    """All beams: row b of each array belongs to the element ``numbers[b]``. Shapes are those of
    :class:`Beam` behind (beams,): ``N`` is (beams, stations)."""

    _prefix = "beam_"

    numbers = integers("(beams,): numbers of the elements.")
    materials = integers("(beams,): numbers of the materials.")
    nodes = integers("(beams, 2): numbers of the nodes.")
    lengths = floats("(beams,) [length].")
    axes = floats("(beams, 3, 3): rows ex, ey, ez in global components.")
    end_forces = floats("(beams, 2, dofs): forces [force] and moments [force length] that the "
                        "nodes exert on the ends, local axes.", by_dof=True)
    x = floats("(beams, stations): from node 1 [length].")
    N = floats("(beams, stations): axial force, tension + [force].")
    Vy = floats("(beams, stations): shear along local y [force].")
    Vz = floats("(beams, stations): shear along local z [force].")
    T = floats("(beams, stations): torque [force length].")
    My = floats("(beams, stations): moment about local y [force length].")
    Mz = floats("(beams, stations): moment about local z [force length].")
    u = floats("(beams, stations, 3): displacements, global [length].")
    rotations = floats("(beams, stations, 3): rotations, global [rad].")

    def __len__(self) -> int:
        return len(self.numbers)


class _Points(OfSolution):
    """Integration points of elements."""

    elements = integers("(points,): numbers of the elements.")
    x = floats("(points, 3): positions [length].")

    def __len__(self) -> int:
        return len(self.elements)

    def rows(self, element: int) -> NDArray[np.intp]:
        """The rows of an element, from 0; KeyError without one."""
        rows = np.flatnonzero(self.elements == element)
        if not len(rows):
            raise KeyError(f"there is no such element: {element}")
        return rows


class Shells(_Points):
    """The integration points of all shells: row p of each array belongs to ``elements[p]``.
    3-noded shells have one point, 6-noded ones three."""

    _prefix = "shell_"

    axes = floats("(points, 3, 3): axes of the element, rows ex, ey, ez in global components.")
    n = floats("(points, 3): membrane forces xx, yy, xy, local, tension + [force/length].")
    m = floats("(points, 3): moments xx, yy, xy, local [force length/length]; + pulls at the top.")
    q = floats("(points, 2): shears x, y, local [force/length].")
    top = floats("(points, 6): stress at the top, XX YY ZZ XY YZ XZ, global [pressure].")
    bottom = floats("(points, 6): stress at the bottom, XX YY ZZ XY YZ XZ, global [pressure].")


class Solids(_Points):
    """The integration points of all solids: row p of each array belongs to ``elements[p]``.
    4-noded solids have one point, 10-noded ones four."""

    _prefix = "solid_"

    stress = floats("(points, 6): XX YY ZZ XY YZ XZ, global, tension + [pressure].")
    von_mises = floats("(points,) [pressure].")
