"""What can go wrong, with its place: the one way in which this program ends early."""

from __future__ import annotations

import difflib
from collections.abc import Iterable
from dataclasses import dataclass


@dataclass(frozen=True)
class Place:
    """Where in a file: lines and columns count from 1, a column counts bytes; 0: not known."""

    file: str
    line: int = 0
    column: int = 0
    length: int = 1
    source: str = ""  # the whole line, for the caret

    def __str__(self) -> str:
        known = [str(number) for number in (self.line, self.column) if number]
        return ":".join([self.file, *known])


class Refusal(Exception):
    """The run cannot go on: a sentence, its code, and where."""

    def __init__(self, text: str, code: str, place: Place | None = None) -> None:
        super().__init__(text)
        self.text = text
        self.code = code
        self.place = place


def nearest(word: str, known: Iterable[str]) -> str:
    """': did you mean "..."?' for the most similar of the known words, or nothing."""
    words = list(known)
    small = {w.casefold(): w for w in words}
    found = difflib.get_close_matches(word.casefold(), list(small), n=1, cutoff=0.5)
    return f': did you mean "{small[found[0]]}"?' if found else ""


def plural(count: int, noun: str) -> str:
    """'1 node', '2 nodes', '2 tetrahedra': a count with its noun."""
    if count == 1:
        return f"1 {noun}"
    irregular = {"tetrahedron": "tetrahedra", "vertex": "vertices", "hexahedron": "hexahedra"}
    return f"{count} {irregular.get(noun, noun + 's')}"
