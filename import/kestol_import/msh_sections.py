"""The sections of a Gmsh file, as text or binary, and streams of the numbers in them."""

from __future__ import annotations

import re
import warnings
from typing import NoReturn, Protocol

import numpy as np

from .errors import Place, Refusal
from .mesh import Ints, Reals

CODE = "mesh"
_SECTION = re.compile(rb"[ \t\r\n]*(\$[A-Za-z]+)[ \t]*\r?(\n|$)")
_END = re.compile(rb"\s*\$End([A-Za-z]+)")


class Numbers(Protocol):
    """Numbers in the order of the file, as ints or reals whatever the file holds."""

    def ints(self, count: int) -> Ints: ...

    def sizes(self, count: int) -> Ints: ...

    def doubles(self, count: int) -> Reals: ...


class MshFile:
    """The bytes of a Gmsh file and where reading stands; names of sections come with their '$'."""

    def __init__(self, path: str, data: bytes) -> None:
        self.path = path
        self.data = data
        self.position = 0
        self.section = ""
        self.binary = False
        self.order = "<"
        self.size_bytes = 8

    def refuse(self, text: str, position: int | None = None) -> NoReturn:
        at = self.position if position is None else position
        line = 0 if self.binary else self.data.count(b"\n", 0, at) + 1
        raise Refusal(text, CODE, Place(self.path, line))

    def ends(self) -> NoReturn:
        self.position = max(len(self.data) - 1, 0)
        self.refuse(f"the file ends within {self.section}")

    def line(self) -> str:
        """The next line without its end."""
        end = self.data.find(b"\n", self.position)
        if end < 0:
            self.ends()
        raw = self.data[self.position:end]
        self.position = end + 1
        return decode(raw).rstrip("\r")

    def next_section(self) -> str:
        """Moves behind the next line that begins with '$'; '' at the end of the file."""
        match = _SECTION.match(self.data, self.position)
        if match is None:
            rest = self.data[self.position:self.position + 40].strip()
            if not rest:
                return ""
            if rest.startswith(b"$"):
                self.ends()
            what = decode(rest.splitlines()[0])
            self.refuse(f'a section such as $Nodes is expected, not "{what}"')
        self.position = match.end()
        self.section = decode(match.group(1))
        return self.section

    def end_position(self) -> int:
        """Where the end mark of this section begins."""
        mark = b"$End" + self.section[1:].encode()
        end = self.data.find(mark, self.position)
        if end < 0:
            self.ends()
        return end

    def skip_section(self) -> None:
        self.position = self.end_position() + len("$End") + len(self.section) - 1

    def close_section(self) -> None:
        """Reads the end mark, which must come next."""
        match = _END.match(self.data, self.position)
        if match is None and not self.data[self.position:].strip():
            self.ends()
        if match is None or decode(match.group(1)) != self.section[1:]:
            self.refuse(f"{self.section} does not end where its counts say")
        self.position = match.end()

    def numbers(self, real: bool) -> Numbers:
        """The numbers from here to the end of the section; as text all of them are read at once."""
        if self.binary:
            return BinaryNumbers(self)
        end = self.end_position()
        values = parse(self, end, np.float64 if real else np.int64)
        self.position = end
        return TextNumbers(self, values)


def decode(raw: bytes) -> str:
    try:
        return raw.decode("utf-8")
    except UnicodeDecodeError:
        return raw.decode("latin-1")


def parse(file: MshFile, end: int, kind: type) -> Ints | Reals:
    """All numbers of the text up to `end`."""
    text = file.data[file.position:end]
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        try:
            values: Ints | Reals = np.fromstring(text, dtype=kind, sep=" ")
            return values
        except (DeprecationWarning, ValueError):
            pass
    for match in re.finditer(rb"\S+", text):
        try:
            kind(match.group())
        except (ValueError, OverflowError):
            word = decode(match.group()[:40])
            file.refuse(f'{file.section} holds "{word}" where a number is expected',
                        file.position + match.start())
    file.refuse(f"{file.section} cannot be read as numbers")


class TextNumbers:
    """A section of text, already a flat array of ints or of reals."""

    def __init__(self, file: MshFile, values: Ints | Reals) -> None:
        self._file = file
        self._values = values
        self._at = 0

    def _take(self, count: int) -> Ints | Reals:
        if count < 0 or self._at + count > len(self._values):
            self._file.refuse(f"{self._file.section} has fewer numbers than its counts say")
        taken = self._values[self._at:self._at + count]
        self._at += count
        return taken

    def ints(self, count: int) -> Ints:
        taken = self._take(count)
        if taken.dtype.kind == "f":
            whole = taken.astype(np.int64)
            if not np.array_equal(whole, taken):
                self._file.refuse(f"{self._file.section} holds a fraction where a whole number "
                                  "is expected")
            return whole
        return taken

    sizes = ints

    def doubles(self, count: int) -> Reals:
        return self._take(count).astype(np.float64, copy=False)

    def rest(self) -> Ints | Reals:
        """What is left; taking goes on behind it."""
        return self._take(len(self._values) - self._at)

    def check_end(self) -> None:
        if self._at != len(self._values):
            self._file.refuse(f"{self._file.section} has more numbers than its counts say")


class BinaryNumbers:
    """The bytes of a section, taken as they are asked for."""

    def __init__(self, file: MshFile) -> None:
        self._file = file

    def _take(self, count: int, kind: str) -> np.ndarray[tuple[int, ...], np.dtype[np.generic]]:
        file = self._file
        dtype = np.dtype(file.order + kind)
        stop = file.position + count * dtype.itemsize
        if count < 0 or stop > len(file.data):
            file.ends()
        values = np.frombuffer(file.data, dtype, count, file.position)
        file.position = stop
        return values

    def ints(self, count: int) -> Ints:
        return self._take(count, "i4").astype(np.int64)

    def sizes(self, count: int) -> Ints:
        raw: Ints = self._take(count, f"u{self._file.size_bytes}")
        if raw.size and raw.max() > np.iinfo(np.int64).max:
            self._file.refuse(f"{self._file.section} holds a number beyond 63 bits")
        return raw.astype(np.int64, copy=False) if raw.dtype.byteorder in "=|" else raw.astype(
            np.int64)

    def doubles(self, count: int) -> Reals:
        return self._take(count, "f8").astype(np.float64, copy=False)
