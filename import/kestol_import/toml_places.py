"""Where the keys and values of a TOML text stand: tomllib forgets it, messages need it.

The text has been accepted by tomllib: this scanner only has to find its way through it.
"""

from __future__ import annotations

import re
import tomllib
from dataclasses import dataclass

Path = tuple[str | int, ...]  # keys, and positions in arrays


@dataclass(frozen=True)
class Spans:
    """Characters (first, behind the last) of a key and of its value; equal for array items."""

    key: tuple[int, int]
    value: tuple[int, int]


_BARE = re.compile(r"[A-Za-z0-9_-]+")
_LONG = re.compile(r'"""(?:\\.|[^\\])*?"""+|' + r"'''.*?'''+", re.DOTALL)
_SHORT = re.compile(r'"(?:\\.|[^"\\\n])*"|' + r"'[^'\n]*'")
_PIECE = re.compile(r"#[^\n]*|" + _LONG.pattern + "|" + _SHORT.pattern +
                    r"|\.|[A-Za-z0-9_ \t-]+|[^#\"'.A-Za-z0-9_ \t-]+|.", re.DOTALL)
_BLANK = re.compile(r"(?:[ \t\r\n]|#[^\n]*)*")
_INLINE_BLANK = re.compile(r"[ \t]*")
_SCALAR = re.compile(r"[^,\]}#\n]+")


MOST_PARTS = 20  # of a key; a text of dots alone would keep tomllib busy for hours


def long_key(text: str) -> int | None:
    """Where a key of more parts goes on, or None."""
    parts = 1
    for match in _PIECE.finditer(text):
        first = text[match.start()]
        if first == ".":
            parts += 1
            if parts > MOST_PARTS:
                return match.start()
        elif not (first.isalnum() or first in "_- \t\"'"):
            parts = 1
    return None


def find_spans(text: str) -> dict[Path, Spans]:
    """Every key of the text by its path, and every item of its arrays."""
    scanner = _Scanner(text)
    scanner.scan()
    return scanner.spans


class _Scanner:
    def __init__(self, text: str) -> None:
        self.text = text
        self.at = 0
        self.spans: dict[Path, Spans] = {}
        self._tables: dict[Path, int] = {}

    def scan(self) -> None:
        table: Path = ()
        self._skip(_BLANK)
        while self.at < len(self.text):
            if self.text[self.at] == "[":
                table = self._header()
            else:
                self._pair(table)
            self._skip(_BLANK)

    def _skip(self, pattern: re.Pattern[str]) -> None:
        match = pattern.match(self.text, self.at)
        assert match is not None
        self.at = match.end()

    def _header(self) -> Path:
        first = self.at
        brackets = 2 if self.text.startswith("[[", self.at) else 1
        self.at += brackets
        path = self._key()
        self._skip(_INLINE_BLANK)
        self.at += brackets
        if brackets == 2:
            self._tables[path] = self._tables.get(path, -1) + 1
            path += (self._tables[path],)
        self._note(path, (first, self.at))
        return path

    def _note(self, path: Path, span: tuple[int, int]) -> None:
        """A table begins where it, or a table within it, is first written."""
        for length in range(1, len(path) + 1):
            self.spans.setdefault(path[:length], Spans(span, span))

    def _key(self) -> Path:
        """A dotted key; `at` moves behind it."""
        parts: list[str] = []
        while True:
            self._skip(_INLINE_BLANK)
            bare = _BARE.match(self.text, self.at)
            quoted = _SHORT.match(self.text, self.at)
            match = bare or quoted
            assert match is not None
            parts.append(match.group() if bare else
                         tomllib.loads("key = " + match.group())["key"])
            self.at = match.end()
            behind = self.at
            self._skip(_INLINE_BLANK)
            if not self.text.startswith(".", self.at):
                self.at = behind
                return tuple(parts)
            self.at += 1

    def _pair(self, table: Path) -> None:
        first = self.at
        path = table + self._key()
        key = (first, self.at)
        self._skip(_INLINE_BLANK)
        self.at += 1  # the sign =
        self._skip(_INLINE_BLANK)
        self._note(path, key)
        self.spans[path] = Spans(key, self._value(path))

    def _value(self, path: Path) -> tuple[int, int]:
        first = self.at
        if self.text[first] == "[":
            self._list(path)
        elif self.text[first] == "{":
            self._inline_table(path)
        else:
            match = (_LONG.match(self.text, first) or _SHORT.match(self.text, first)
                     or _SCALAR.match(self.text, first))
            assert match is not None
            self.at = first + len(match.group().rstrip())
        return first, self.at

    def _list(self, path: Path) -> None:
        self.at += 1
        for index in range(len(self.text)):
            self._skip(_BLANK)
            if self.text[self.at] == "]":
                break
            span = self._value(path + (index,))
            self.spans[path + (index,)] = Spans(span, span)
            self._skip(_BLANK)
            if self.text[self.at] == ",":
                self.at += 1
        self.at += 1

    def _inline_table(self, path: Path) -> None:
        self.at += 1
        while True:
            self._skip(_INLINE_BLANK)
            if self.text[self.at] == "}":
                break
            self._pair(path)
            self._skip(_INLINE_BLANK)
            if self.text[self.at] == ",":
                self.at += 1
        self.at += 1
