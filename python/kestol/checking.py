"""What is wrong with a model, or suspicious."""

from __future__ import annotations

import os
from collections.abc import Iterable
from dataclasses import dataclass, field

from . import _kestol
from .model import Model, Path


@dataclass(frozen=True)
class Finding:
    """Something that is wrong with a deck, or suspicious.

    Attributes:
        code: a stable word, as ``kestol-check --list-codes`` lists them.
        severity: ``error`` (the solver refuses, or would compute something else than the deck says)
            or ``warning``.
        text: what is wrong; further lines explain, such as the modes of a mechanism.
        file: name of the deck, or of the model.
        line, column, end_column: the place, counted from 1 in bytes, ``end_column`` behind the
            word; None where the finding has none.
        nodes, elements: numbers of the deck.
    """

    code: str
    severity: str
    text: str
    file: str
    line: int | None = None
    column: int | None = None
    end_column: int | None = None
    nodes: list[int] = field(default_factory=list)
    elements: list[int] = field(default_factory=list)

    def __str__(self) -> str:
        first, *rest = self.text.split("\n")
        place = self.file if self.line is None else f"{self.file}:{self.line}:{self.column}"
        return "\n".join([f"{place}: {self.severity}: {first} [{self.code}]",
                          *("  " + line for line in rest)])


def check(model: Model | Path, *, solve: bool = True, condition: bool = True, mechanisms: int = 6,
          disable: Iterable[str] = ()) -> list[Finding]:
    """Everything that is wrong with a deck or a model, as kestol-check finds it.

    Args:
        model: the path of a deck, which may have mistakes, or a model. The places of a model that
            was read and not changed since are those in its file; of any other model those in
            ``model.text()``.
        solve: False leaves out what only the solution shows.
        condition: False leaves out the estimate of the condition number.
        mechanisms: at most so many motions without resistance are explained.
        disable: codes that are left out.

    Returns:
        The findings in the order of the deck, those without a place behind.

    Raises:
        kestol.Error: ``file``, when the deck cannot be read.
        ValueError: a code that there is not, or a negative count.

    >>> import kestol
    >>> model = kestol.Model(dimension=2, name="beam")
    >>> model.add_material(1, E=2e11, A=1e-2, Iz=1e-5)
    >>> _ = model.add_nodes([[0, 0], [3, 0]])
    >>> _ = model.add_beam(1, 2, material=1)
    >>> model.add_support(1, "110")
    >>> model.add_nodal_load(2, 0, -1000, 0)
    >>> for finding in kestol.check(model):
    ...     print(finding)
    beam: error: the supports leave the model a rigid motion [rigid-motion]
      mode 1: nodes 1 and 2 turn about z at (0, 0)
        supports at node 1 (line 17)
    """
    options = (solve, condition, mechanisms, list(disable))
    if not isinstance(model, Model):
        return [Finding(*found) for found in _kestol.check_file(os.fspath(model), *options)]
    deck = model._unchanged_deck()
    if deck is not None:
        return [Finding(*found) for found in _kestol.check_file(deck, *options)]
    return [Finding(*found) for found in _kestol.check_text(model.text(), model.name, *options)]
