"""How arrays of a solution become attributes."""

from __future__ import annotations

from typing import Generic, TypeVar, overload

import numpy as np
from numpy.typing import NDArray

from . import _kestol

Floats = NDArray[np.float64]
Integers = NDArray[np.int32]
Array = TypeVar("Array", Floats, Integers)


class OfSolution:
    """What shows arrays of a solution; ``_prefix`` stands before their names."""

    _prefix = ""

    def __init__(self, solution: _kestol.Solution) -> None:
        self._solution = solution


class _Attribute(Generic[Array]):
    """An array of the solution, by the name of the attribute."""

    def __init__(self, text: str, by_dof: bool) -> None:
        self.__doc__ = text
        self._by_dof = by_dof

    def __set_name__(self, owner: type, name: str) -> None:
        self._name = name

    @overload
    def __get__(self, instance: None, owner: type) -> _Attribute[Array]: ...

    @overload
    def __get__(self, instance: OfSolution, owner: type) -> Array: ...

    def __get__(self, instance: OfSolution | None, owner: type) -> Array | _Attribute[Array]:
        if instance is None:
            return self
        solution = instance._solution
        array: Array = solution.array(instance._prefix + self._name)
        return array[..., :solution.dofs_per_node] if self._by_dof else array

    def __set__(self, instance: OfSolution, value: object) -> None:
        raise AttributeError(f"{self._name} cannot be set: it is what the solution gives")


def floats(text: str, *, by_dof: bool = False) -> _Attribute[Floats]:
    """An attribute of doubles; ``text`` says its shape, meaning and unit. ``by_dof``: the last axis
    is as long as a node has degrees of freedom."""
    return _Attribute[Floats](text, by_dof)


def integers(text: str) -> _Attribute[Integers]:
    """An attribute of whole numbers."""
    return _Attribute[Integers](text, False)
