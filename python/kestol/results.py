"""What a solution gives, as arrays.

Arrays cannot be written; they are views of the memory of the solution, without a copy, and keep it
alive. Vectors have three components also in plane problems. Values are in the units of the results
(:attr:`Results.units`), numbers of nodes and elements are those of the deck.
"""

from __future__ import annotations

import io
import os
from dataclasses import dataclass
from functools import cached_property
from typing import TYPE_CHECKING, Any

import numpy as np
from numpy.typing import NDArray

from . import _kestol

if TYPE_CHECKING:
    import matplotlib.axes
    import pandas

    from .model import Model, Path

Floats = NDArray[np.float64]
Integers = NDArray[np.int32]


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


class Beams:
    """All beams: row b of each array belongs to the element ``numbers[b]``. Shapes are those of
    :class:`Beam` behind (beams,): ``N`` is (beams, stations)."""

    def __init__(self, solution: _kestol.Solution) -> None:
        self._solution = solution

    def _array(self, name: str) -> Floats:
        return self._solution.array("beam_" + name)

    def __len__(self) -> int:
        return len(self.numbers)

    @property
    def numbers(self) -> Integers:
        """(beams,): numbers of the elements."""
        return self._solution.array("beam_numbers")

    @property
    def materials(self) -> Integers:
        """(beams,): numbers of the materials."""
        return self._solution.array("beam_materials")

    @property
    def nodes(self) -> Integers:
        """(beams, 2): numbers of the nodes."""
        return self._solution.array("beam_nodes").reshape(-1, 2)

    @property
    def lengths(self) -> Floats:
        """(beams,) [length]."""
        return self._array("lengths")

    @property
    def axes(self) -> Floats:
        """(beams, 3, 3): rows ex, ey, ez."""
        return self._array("axes")

    @property
    def end_forces(self) -> Floats:
        """(beams, 2, dofs): forces [force] and moments [force length] on the ends, local axes."""
        return self._array("end_forces")[:, :, :self._solution.dofs_per_node]

    @property
    def x(self) -> Floats:
        """(beams, stations): from node 1 [length]."""
        return self._array("x")

    @property
    def N(self) -> Floats:
        """(beams, stations): axial force, tension + [force]."""
        return self._array("N")

    @property
    def Vy(self) -> Floats:
        """(beams, stations): shear along local y [force]."""
        return self._array("Vy")

    @property
    def Vz(self) -> Floats:
        """(beams, stations): shear along local z [force]."""
        return self._array("Vz")

    @property
    def T(self) -> Floats:
        """(beams, stations): torque [force length]."""
        return self._array("T")

    @property
    def My(self) -> Floats:
        """(beams, stations): moment about local y [force length]."""
        return self._array("My")

    @property
    def Mz(self) -> Floats:
        """(beams, stations): moment about local z [force length]."""
        return self._array("Mz")

    @property
    def u(self) -> Floats:
        """(beams, stations, 3): displacements, global [length]."""
        return self._array("u")

    @property
    def rotations(self) -> Floats:
        """(beams, stations, 3): rotations, global [rad]."""
        return self._array("rotations")


class Shells:
    """The integration points of all shells: row p of each array belongs to ``elements[p]``.
    3-noded shells have one point, 6-noded ones three."""

    def __init__(self, solution: _kestol.Solution) -> None:
        self._solution = solution

    def __len__(self) -> int:
        return len(self.elements)

    def rows(self, element: int) -> NDArray[np.intp]:
        """The rows of an element."""
        return _rows(self.elements, element)

    @property
    def elements(self) -> Integers:
        """(points,): numbers of the elements."""
        return self._solution.array("shell_elements")

    @property
    def x(self) -> Floats:
        """(points, 3): positions [length]."""
        return self._solution.array("shell_x")

    @property
    def axes(self) -> Floats:
        """(points, 3, 3): axes of the element, rows ex, ey, ez."""
        return self._solution.array("shell_axes")

    @property
    def n(self) -> Floats:
        """(points, 3): membrane forces xx, yy, xy, local [force/length]."""
        return self._solution.array("shell_n")

    @property
    def m(self) -> Floats:
        """(points, 3): moments xx, yy, xy, local [force length/length]; + pulls at the top."""
        return self._solution.array("shell_m")

    @property
    def q(self) -> Floats:
        """(points, 2): shears x, y, local [force/length]."""
        return self._solution.array("shell_q")

    @property
    def top(self) -> Floats:
        """(points, 6): stress at the top, XX YY ZZ XY YZ XZ, global [pressure]."""
        return self._solution.array("shell_top")

    @property
    def bottom(self) -> Floats:
        """(points, 6): stress at the bottom, XX YY ZZ XY YZ XZ, global [pressure]."""
        return self._solution.array("shell_bottom")


class Solids:
    """The integration points of all solids: row p of each array belongs to ``elements[p]``.
    4-noded solids have one point, 10-noded ones four."""

    def __init__(self, solution: _kestol.Solution) -> None:
        self._solution = solution

    def __len__(self) -> int:
        return len(self.elements)

    def rows(self, element: int) -> NDArray[np.intp]:
        """The rows of an element."""
        return _rows(self.elements, element)

    @property
    def elements(self) -> Integers:
        """(points,): numbers of the elements."""
        return self._solution.array("solid_elements")

    @property
    def x(self) -> Floats:
        """(points, 3): positions [length]."""
        return self._solution.array("solid_x")

    @property
    def stress(self) -> Floats:
        """(points, 6): XX YY ZZ XY YZ XZ, global [pressure]."""
        return self._solution.array("solid_stress")

    @property
    def von_mises(self) -> Floats:
        """(points,) [pressure]."""
        return self._solution.array("solid_von_mises")


def _rows(elements: Integers, element: int) -> NDArray[np.intp]:
    rows = np.flatnonzero(elements == element)
    if not len(rows):
        raise KeyError(f"there is no such element: {element}")
    return rows


class Results:
    """The answer of a model: see :func:`kestol.solve`."""

    def __init__(self, solution: _kestol.Solution, model: Model) -> None:
        self._solution = solution
        #: The model that was solved; a copy, so that changes of the original do not matter.
        self.model = model

    def __repr__(self) -> str:
        return (f"<kestol.Results of {self.model.name!r}: {len(self.node_numbers)} nodes, "
                f"{len(self.beams)} beams>")

    # --- nodes --------------------------------------------------------------------------------

    @property
    def units(self) -> dict[str, str]:
        """Names of ``force``, ``length`` and ``pressure``; empty where the model names none."""
        return self._solution.units

    @property
    def node_numbers(self) -> Integers:
        """(nodes,): 1..N."""
        return self._solution.array("node_numbers")

    @property
    def coordinates(self) -> Floats:
        """(nodes, 3) [length]."""
        return self._solution.array("coordinates")

    @property
    def displacements(self) -> Floats:
        """(nodes, 6): ux, uy, uz [length], rx, ry, rz [rad], global."""
        return self._solution.array("displacements")

    @property
    def loads(self) -> Floats:
        """(nodes, 6): the equivalent nodal forces of all loads [force, force length], global."""
        return self._solution.array("loads")

    @property
    def nodal_stresses(self) -> Floats:
        """(nodes, 6) of solids: XX YY ZZ XY YZ XZ [pressure]; (0, 6) without solids."""
        return self._solution.array("nodal_stresses")

    @property
    def nodal_von_mises(self) -> Floats:
        """(nodes,) of solids [pressure]; (0,) without solids."""
        return self._solution.array("nodal_von_mises")

    # --- supports -----------------------------------------------------------------------------

    @property
    def reaction_nodes(self) -> Integers:
        """(supports,): the nodes of the rows of the reactions; 0 for a mid-side node that the
        conversion to 6 nodes made and held, which stands between ``reaction_between``."""
        return self._solution.array("reaction_nodes")

    @property
    def reaction_between(self) -> Integers:
        """(supports, 2): the corners of a created mid-side; else 0."""
        return self._solution.array("reaction_between")

    @property
    def reactions(self) -> Floats:
        """(supports, 6): true reactions K u - F, what the supports give to the structure
        [force, force length], global."""
        return self._solution.array("reactions")

    @property
    def reactions_in_support_axes(self) -> Floats:
        """(supports, 6): the same in the axes of inclined supports."""
        return self._solution.array("reactions_in_support_axes")

    @property
    def reactions_as_printed(self) -> Floats:
        """(supports, dofs): what the solver's report prints: K u, which at a loaded support is not
        what the support gives."""
        return self._solution.array("reactions_as_printed")[:, :self._solution.dofs_per_node]

    @property
    def equilibrium(self) -> dict[str, Any]:
        """``loads`` and ``reactions`` (each ``force`` and ``moment`` about the origin),
        ``drilling`` (the moment on the drilling rotations of shells), ``relative_error``."""
        return self._solution.equilibrium

    # --- elements -----------------------------------------------------------------------------

    @cached_property
    def beams(self) -> Beams:
        """All beams."""
        return Beams(self._solution)

    @cached_property
    def shells(self) -> Shells:
        """All shells, by integration point."""
        return Shells(self._solution)

    @cached_property
    def solids(self) -> Solids:
        """All solids, by integration point."""
        return Solids(self._solution)

    @cached_property
    def _rows_of_beams(self) -> dict[int, int]:
        return {int(number): row for row, number in enumerate(self.beams.numbers)}

    def beam(self, number: int) -> Beam:
        """One beam by the number of its element; KeyError without one."""
        row = self._rows_of_beams.get(number)
        if row is None:
            raise KeyError(f"there is no such beam: {number}")
        b = self.beams
        return Beam(number, int(b.materials[row]), b.nodes[row], float(b.lengths[row]),
                    b.axes[row], b.end_forces[row], b.x[row], b.N[row], b.Vy[row], b.Vz[row],
                    b.T[row], b.My[row], b.Mz[row], b.u[row], b.rotations[row])

    # --- files, tables, pictures --------------------------------------------------------------

    def to_vtu(self, path: Path, *, encoding: str = "raw", diagrams: bool = True) -> None:
        """Writes the file of ``kestol-export --vtu`` for ParaView; for beams also their diagrams
        beside it, in a file of the same name with ``_diagrams``.

        Args:
            encoding: ``raw``, ``base64`` or ``ascii``.
        """
        self._solution.write_vtu(os.fspath(path), encoding, diagrams, self.model._inputs())

    def to_json(self) -> str:
        """The document of ``kestol-export --json``, schema ``kestol-result/1``."""
        return self._solution.json(self.model.name)

    def to_csv(self, table: str) -> str:
        """A table of ``kestol-export --csv``: ``nodes``, ``beams``, ``stations``, ``shells``,
        ``solids``, ``reactions`` or ``loads``."""
        return self._solution.csv(table)

    def to_pandas(self, table: str = "nodes") -> pandas.DataFrame:
        """The same table as a data frame; columns name their units where the model does. Needs
        pandas."""
        import pandas

        text = self.to_csv(table)
        return pandas.read_csv(io.StringIO(text), float_precision="round_trip")

    def plot(self, diagram: str | None = None, *, scale: float | None = None,
             ax: matplotlib.axes.Axes | None = None) -> matplotlib.axes.Axes:
        """Draws the model and its deformed shape, or a diagram of the beams. Needs matplotlib.

        Args:
            diagram: ``N``, ``Vy``, ``Vz``, ``T``, ``My`` or ``Mz``; None: the deformed shape.
            scale: length in the picture per displacement or value; by default the largest becomes
                a tenth of the model.
            ax: where to draw; for models in space with ``projection="3d"``.
        """
        from .plotting import draw

        return draw(self, diagram, scale, ax)
