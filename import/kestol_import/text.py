"""Rows of numbers as text, a whole table at a time."""

from __future__ import annotations

from collections.abc import Iterator

import numpy as np

from .mesh import Ints, Reals

CHUNK = 1 << 17  # rows that are turned into text together
_ZERO, _BLANK, _END = ord("0"), ord(" "), ord("\n")


def integer_rows(columns: list[Ints], tail: str = "") -> Iterator[bytes]:
    """Lines of non-negative whole numbers, and -1, in columns that line up; `tail` ends each
    line. Each digit of a column is found for all rows of a chunk at once."""
    widths = [column_width(column) for column in columns]
    end = np.frombuffer((tail + "\n").encode(), np.uint8)
    count = len(columns[0])
    for start in range(0, count, CHUNK):
        rows = min(CHUNK, count - start)
        text = np.full((sum(widths) + 2 * len(widths) + len(end), rows), _BLANK, np.uint8)
        at = 0
        for column, width in zip(columns, widths):
            at += 2 + width
            write_digits(text[at - width:at], column[start:start + rows])
        text[at:] = end[:, None]
        yield np.ascontiguousarray(text.T).tobytes()


def column_width(column: Ints) -> int:
    highest = int(column.max()) if len(column) else 0
    return max(len(str(highest)), 2 if len(column) and column.min() < 0 else 1)


def write_digits(text: Ints, values: Ints) -> None:
    """Digits of a column, last one first, into rows of `text` (width, n) that hold blanks."""
    left = np.maximum(values, 1).astype(np.uint32) if (values < 0).any() else values.astype(
        np.uint32)
    wide = len(text)
    for place in range(wide - 1, -1, -1):
        rest = left // np.uint32(10)
        digit = (left - rest * np.uint32(10)).astype(np.uint8) + np.uint8(_ZERO)
        text[place] = digit if place == wide - 1 else np.where(left > 0, digit, _BLANK)
        left = rest
    text[wide - 2, values < 0] = ord("-")


def real_rows(numbers: list[Ints], reals: Reals) -> Iterator[bytes]:
    """Lines of whole numbers and of reals (n, c), each as the shortest text that reads back."""
    form = "  " + "  ".join(["%d"] * len(numbers) + ["%r"] * reals.shape[1]) + "\n"
    reals = reals + 0.0  # no -0.0
    for start in range(0, len(reals), CHUNK):
        part = slice(start, start + CHUNK)
        columns = [column[part].tolist() for column in numbers]
        columns += [reals[part, c].tolist() for c in range(reals.shape[1])]
        flat = [None] * (len(columns) * len(columns[0]))
        for c, column in enumerate(columns):
            flat[c::len(columns)] = column
        yield (form * len(columns[0]) % tuple(flat)).encode()


def table_rows(numbers: list[Ints], reals: Reals) -> Iterator[bytes]:
    """Lines of whole numbers and of reals; reals that are the same in all rows are written once."""
    if len(reals) and (reals == reals[0]).all():
        return integer_rows(numbers, "  " + "  ".join(real(v) for v in reals[0].tolist()))
    return real_rows(numbers, reals)


def real(value: float) -> str:
    return repr(value + 0.0)
