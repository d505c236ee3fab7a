"""Words and numbers of a deck from the arguments of a call."""

from __future__ import annotations

from collections.abc import Sequence
from typing import Any

import numpy as np
from numpy.typing import ArrayLike, NDArray

from .errors import Error


def integers(values: ArrayLike) -> NDArray[np.int32]:
    """Whole numbers that fit 32 bits, and nothing that has to be rounded."""
    array = np.asarray(values)
    if array.size == 0:
        return np.zeros(array.shape, dtype=np.int32)
    if array.dtype.kind not in "iu":
        raise TypeError(f"numbers of nodes, elements and materials are integers, not {array.dtype}")
    limits = np.iinfo(np.int32)
    if array.min() < limits.min or array.max() > limits.max:
        raise Error("number out of range", code="model")
    return np.ascontiguousarray(array, dtype=np.int32)


def each(numbers: int | ArrayLike) -> list[int]:
    return [int(number) for number in integers(numbers).reshape(-1)]


def text_of(value: float) -> str:
    return repr(float(value))


def require(what: str, value: object, kind: type | tuple[type, ...], noun: str) -> None:
    """Refuses an argument of another type by its name, before it fails somewhere inside."""
    if not isinstance(value, kind):
        raise TypeError(f"{what} must be {noun}, not {type(value).__name__}")


def finite(key: str, value: float) -> str:
    try:
        is_finite = bool(np.isfinite(value))
    except TypeError:
        raise TypeError(f"{key} must be a number, not {type(value).__name__}") from None
    if not is_finite:
        raise Error(f"{key} is not a finite number", code="syntax")
    return text_of(value)


def word_of(what: str, text: str) -> str:
    """A name that the language of the deck can hold."""
    require(what, text, str, "a text")
    if not text or text.startswith("#") or any(c.isspace() for c in text):
        raise Error(f"{what} must be one word: {text!r}", code="syntax")
    return text


def codes_of(text: str) -> str:
    """Codes of a support; the reader of decks lets degrees with other digits go free."""
    word = word_of("the codes", text)
    if not set(word) <= set("012"):
        raise Error(f"the codes are digits 0, 1 or 2: {text!r}", code="syntax")
    return word


def components_of(values: Sequence[Any]) -> list[float]:
    """Components given one by one, or as one sequence."""
    if len(values) == 1 and np.ndim(values[0]) == 1:
        values = values[0]
    return [float(value) for value in values]


def tail_of(euler: Sequence[float] | None, units: str | None) -> str:
    """The keys behind the numbers of a record."""
    text = ""
    if euler is not None:
        if len(euler) != 3:
            raise Error("three Euler angles are needed", code="syntax")
        text = "".join(f" Euler{k}={finite('an Euler angle', angle)}"
                       for k, angle in enumerate(euler, 1))
    if units is not None:
        text += " units " + word_of("a unit system", units)
    return text
