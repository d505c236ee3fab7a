"""What a solution gives, as arrays.

Arrays cannot be written; they are views of the memory of the solution, without a copy, and keep it
alive. Vectors have three components also in plane problems. Values are in the units of the results
(:attr:`Results.units`), numbers of nodes and elements are those of the deck, rows count from 0.
"""

from __future__ import annotations

import io
import os
from functools import cached_property
from typing import TYPE_CHECKING, Any

from . import _kestol
from .arrays import OfSolution, floats, integers
from .elements import Beam, Beams, Shells, Solids

if TYPE_CHECKING:
    import matplotlib.axes
    import pandas

    from .model import Model, Path


class Results(OfSolution):
    """The answer of a model: see :func:`kestol.solve`."""

    def __init__(self, solution: _kestol.Solution, model: Model) -> None:
        super().__init__(solution)
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

    node_numbers = integers("(nodes,): 1..N, so that row r belongs to node r + 1.")
    coordinates = floats("(nodes, 3): positions [length].")
    displacements = floats("(nodes, 6): ux, uy, uz [length], rx, ry, rz [rad], global.")
    loads = floats("(nodes, 6): equivalent nodal forces of all loads [force, force length], "
                   "global.")
    nodal_stresses = floats("(nodes, 6) of solids: XX YY ZZ XY YZ XZ [pressure]; (0, 6) without "
                            "solids.")
    nodal_von_mises = floats("(nodes,) of solids [pressure]; (0,) without solids.")

    # --- supports -----------------------------------------------------------------------------

    reaction_nodes = integers(
        "(supports,): numbers of the nodes of the rows of the reactions; 0 for a mid-side node "
        "that the conversion to 6 nodes made and held, which stands between ``reaction_between``.")
    reaction_between = integers("(supports, 2): numbers of the corners of a created mid-side; "
                                "else 0.")
    reactions = floats("(supports, 6): true reactions K u - F, what the supports give to the "
                       "structure [force, force length], global.")
    reactions_in_support_axes = floats("(supports, 6): the same in the axes of inclined supports "
                                       "[force, force length].")
    reactions_as_printed = floats(
        "(supports, dofs): what the solver's report prints: K u [force, force length], which at a "
        "loaded support is not what the support gives.", by_dof=True)

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
