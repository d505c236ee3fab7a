"""Models: read from decks, or built piece by piece."""

from __future__ import annotations

import os
from typing import TYPE_CHECKING, Any, Union

import numpy as np
from numpy.typing import NDArray

from . import _kestol
from .building import Building

if TYPE_CHECKING:
    from .results import Results

#: A path of a file.
Path = Union[str, "os.PathLike[str]"]


def read(path: Path) -> Model:
    """The model of a deck. Refusals name its file and line.

    >>> import kestol
    >>> kestol.read("missing.dat")
    Traceback (most recent call last):
        ...
    kestol.errors.Error: can't open file missing.dat: No such file or directory [file]
    """
    name = os.fspath(path)
    return Model._of(_kestol.read(name), name)


def read_text(text: str, name: str = "model") -> Model:
    """The model of a deck in memory, which refusals call ``name``."""
    return Model._of(_kestol.read_text(text, name), name)


class Model(Building):
    """A model as a deck would say it.

    The order of the calls is that of a deck: units before the values that they scale, nodes before
    elements, both before supports and loads. Without units everything is in one consistent set.
    What is refused raises :class:`kestol.Error` and is not added; of supports, hinges and loads for
    several nodes or elements at once, those before the refused one are.

    Args:
        dimension: 2, a plane problem (beams; degrees ux, uy, rotation), or 3 (beams and shells with
            six degrees a node, or solids with three).
        name: what refusals and results call the model.

    >>> import kestol
    >>> model = kestol.Model(dimension=2)
    >>> model.add_node(0, 0), model.add_node(3, 0)
    (1, 2)
    >>> model
    <kestol.Model 'model': 2 nodes, 0 elements>
    """

    def __init__(self, dimension: int = 3, *, name: str = "model") -> None:
        self._builder = _kestol.Builder(dimension)
        #: The path of the deck, or the name that was given.
        self.name = name

    @classmethod
    def _of(cls, builder: _kestol.Builder, name: str) -> Model:
        model = cls.__new__(cls)
        model._builder = builder
        model.name = name
        return model

    def __repr__(self) -> str:
        return (f"<kestol.Model {self.name!r}: {self.node_count} nodes, "
                f"{self.element_count} elements>")

    def __reduce__(self) -> tuple[Any, ...]:
        return read_text, (self.text(), self.name)

    def copy(self) -> Model:
        """A model of its own that says the same."""
        return Model._of(self._builder.copy(), self.name)

    # --- what is there ------------------------------------------------------------------------

    @property
    def dimension(self) -> int:
        """2 for a plane problem, 3 for one in space."""
        return self._builder.dimension

    @property
    def dofs_per_node(self) -> int:
        """3 in the plane and for solids, else 6."""
        return self._builder.dofs_per_node

    @property
    def node_count(self) -> int:
        """The highest number of a node."""
        return self._builder.node_count

    @property
    def element_count(self) -> int:
        """How many elements there are."""
        return self._builder.element_count

    @property
    def coordinates(self) -> NDArray[np.float64]:
        """(nodes, 3): positions in the length unit of the results, by node number."""
        return self._builder.positions()

    @property
    def elements(self) -> list[list[int]]:
        """The number of each element and, behind it, those of its nodes (0: unknown)."""
        return self._builder.elements()

    # --- what is done with it -----------------------------------------------------------------

    def text(self) -> str:
        """The model as a deck, in the units of the results. Reading it gives the same model."""
        return self._builder.text()

    def _unchanged_deck(self) -> str | None:
        """The path of the deck that still says the same."""
        same = not self._builder.is_changed and os.path.isfile(self.name)
        return self.name if same else None

    def write(self, path: Path) -> None:
        """Writes the model as a deck. A file that was read is not overwritten."""
        self._builder.write(os.fspath(path), self._inputs())

    def _inputs(self) -> list[str]:
        return [self.name] if os.path.exists(self.name) else []

    def solve(self, solver: str = "deck", *, stations: int | None = None,
              renumber: bool = True) -> Results:
        """See :func:`kestol.solve`."""
        from .solving import solve
        return solve(self, solver, stations=stations, renumber=renumber)
