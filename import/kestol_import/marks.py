"""Marked blocks: what this program writes, and what stays of a deck that is there already."""

from __future__ import annotations

import re
from collections.abc import Callable, Iterator
from typing import NoReturn

from .deck import BLOCKS
from .errors import Place, Refusal

# The first mark stands above the title: its words must not look like keywords of a deck.
_OPEN = "# >>> kestol-import {}: generated; a new run replaces all down to the closing mark\n"
_CLOSE = "# <<< kestol-import {}\n"
_MARK = re.compile(rb"^[ \t]*# (>>>|<<<) kestol-import[ \t]+(\w+)[^\n]*(?:\n|\Z)", re.MULTILINE)

Writer = Callable[[str], Iterator[bytes]]


def fresh(write: Writer) -> Iterator[bytes]:
    """All blocks, marked."""
    for name in BLOCKS:
        yield from marked(name, write)


def marked(name: str, write: Writer) -> Iterator[bytes]:
    yield _OPEN.format(name).encode()
    yield from write(name)
    yield _CLOSE.format(name).encode()


class OldDeck:
    """A deck that is there: text by hand before, between and behind the blocks."""

    def __init__(self, path: str, data: bytes) -> None:
        self.path = path
        self.data = data
        self.spans: list[tuple[str, int, int]] = []
        opened: tuple[str, int] | None = None
        for match in _MARK.finditer(data):
            name = match[2].decode("ascii", "replace")
            if match[1] == b">>>":
                if opened:
                    self._refuse(match.start(), f'the block "{opened[0]}" is not closed before '
                                 "the next one begins")
                if name not in BLOCKS:
                    self._refuse(match.start(), f'there is no block "{name}"')
                if name in (span[0] for span in self.spans):
                    self._refuse(match.start(), f'the block "{name}" is here twice')
                opened = (name, match.start())
            else:
                if not opened or opened[0] != name:
                    self._refuse(match.start(), f'the block "{name}" is closed but not open')
                self.spans.append((name, opened[1], match.end()))
                opened = None
        if opened:
            self._refuse(opened[1], f'the block "{opened[0]}" is not closed')
        missing = [name for name in BLOCKS if name not in (span[0] for span in self.spans)]
        if self.spans and missing:
            raise Refusal(f'the marks of the block "{missing[0]}" are gone: put them back, or '
                          "remove the file", "marks", Place(path))

    def _refuse(self, position: int, text: str) -> NoReturn:
        line = self.data.count(b"\n", 0, position) + 1
        raise Refusal(text, "marks", Place(self.path, line))

    @property
    def has_marks(self) -> bool:
        return bool(self.spans)

    @property
    def hand_lines(self) -> int:
        """Lines outside the blocks that are not empty."""
        return sum(bool(line.strip()) for piece in self._hand() for line in piece.split(b"\n"))

    def _hand(self) -> list[bytes]:
        ends = [0, *(end for _, _, end in self.spans)]
        begins = [*(begin for _, begin, _ in self.spans), len(self.data)]
        return [self.data[a:b] for a, b in zip(ends, begins)]

    def renewed(self, write: Writer) -> Iterator[bytes]:
        """The same text with new blocks in the place of the old ones."""
        hand = self._hand()
        for (name, _, _), before in zip(self.spans, hand):
            yield before
            yield from marked(name, write)
        yield hand[-1]
