"""What the module raises."""

from __future__ import annotations

from typing import Any


class Error(Exception):
    """A refusal of the solver, of a reader of the deck, or of a file.

    Attributes:
        text: the message alone.
        file: name of the deck, or None where the refusal has no place in one.
        line: the line of the refused record, counted from 1, or None.
        code: a stable word: ``syntax`` (what a deck says wrongly, or arguments that make it do so),
            ``model`` (the model as a whole), ``mechanism`` (it moves without resistance),
            ``hinge-first`` (loads on it cannot be added up), ``file`` (cannot be read or written).

    >>> import kestol
    >>> try:
    ...     kestol.read_text("PROBLEM p\\nTYPE 2d\\nSolver none", name="deck.dat")
    ... except kestol.Error as error:
    ...     print(error)
    deck.dat:3: type of solver must be: Automatic, SkyLine, Double or Sparse [syntax]
    """

    def __init__(self, text: str, file: str | None = None, line: int | None = None,
                 code: str = "model") -> None:
        super().__init__(text, file, line, code)
        self.text = text
        self.file = file
        self.line = line
        self.code = code

    def __str__(self) -> str:
        place = "" if self.file is None else f"{self.file}: "
        if self.file is not None and self.line is not None:
            place = f"{self.file}:{self.line}: "
        return f"{place}{self.text} [{self.code}]"

    def __reduce__(self) -> tuple[Any, ...]:
        return type(self), (self.text, self.file, self.line, self.code)
