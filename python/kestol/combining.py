"""Load cases, combinations, envelopes."""

from __future__ import annotations

import os
from collections.abc import Iterator, Mapping
from dataclasses import dataclass
from typing import Any

import numpy as np
from numpy.typing import NDArray

from . import _kestol
from .errors import Error
from .model import Model, Path
from .records import finite, require
from .results import Results

_KINDS = ("nodes", "stations", "station_displacements", "shells", "shells_top", "shells_bottom",
          "solids", "nodal_stresses", "reactions")


@dataclass(frozen=True)
class Envelope:
    """The extremes of one value over all combinations, place after place.

    Attributes:
        min, max: the extremes; (beams, stations) for values over stations, else (places,): nodes,
            integration points or supports, in the order of the arrays of the results.
        min_by, max_by: the same shape: the names of the combinations that give them.
        min_with, max_with: by name, all values of the place under these combinations, in the same
            shape.
        numbers: (places,) or (beams,): of the nodes or elements.
    """

    min: NDArray[np.float64]
    max: NDArray[np.float64]
    min_by: NDArray[np.str_]
    max_by: NDArray[np.str_]
    min_with: dict[str, NDArray[np.float64]]
    max_with: dict[str, NDArray[np.float64]]
    numbers: NDArray[np.int32]


class Combined:
    """A model under load cases: ``combined["name"]`` gives the :class:`kestol.Results` of a
    combination or of a case."""

    def __init__(self, combined: _kestol.Combined, model: Model, cases: list[str],
                 factors: dict[str, list[float]]) -> None:
        self._combined = combined
        self._model = model
        self._factors = factors
        self._kinds: dict[int, dict[str, Any]] = {}
        #: Names of the cases.
        self.cases = cases
        #: Names of the combinations.
        self.combinations = list(factors)

    def __iter__(self) -> Iterator[str]:
        return iter(self.combinations)

    def __len__(self) -> int:
        return len(self.combinations)

    def __getitem__(self, name: str) -> Results:
        if name in self._factors:
            factors = self._factors[name]
        elif name in self.cases:
            factors = [float(case == name) for case in self.cases]
        else:
            raise KeyError(f"there is no combination or case {name!r}")
        return Results(self._combined.solve(factors), self._model)

    def envelope(self, value: str, of: str | None = None) -> Envelope:
        """The extremes of a value over all combinations.

        Args:
            value: ``ux`` ... ``rz``, ``N`` ... ``Mz``, ``nx`` ... ``qy``, ``topXX`` ...,
                ``bottomXX`` ..., ``XX`` ... ``XZ``, ``vonMises``, ``Fx`` ... ``Mz``.
            of: where several kinds of places have the value: ``nodes``, ``stations``,
                ``station_displacements``, ``shells``, ``shells_top``, ``shells_bottom``,
                ``solids``, ``nodal_stresses`` or ``reactions``; by default the first that has it.
        """
        if not self.combinations:
            raise Error("there is no combination to make an envelope of", code="model")
        kind, place = self._find(value, of)
        if kind not in self._kinds:
            self._kinds[kind] = self._combined.envelope(kind)
        found = self._kinds[kind]
        numbers = found["numbers"]
        shape: tuple[int, ...] = (len(numbers),)
        if _KINDS[kind].startswith("station") and len(numbers):
            stations = int(found["points"].max()) + 1
            shape = (-1, stations)
            numbers = numbers[::stations]
        count = found["value_count"]
        names = _kestol.value_names()[kind]
        labels = np.array(self.combinations)

        def column(key: str) -> NDArray[Any]:
            values: NDArray[Any] = found[key].reshape(-1, count)[:, place].reshape(shape)
            return values

        def others(key: str) -> dict[str, NDArray[np.float64]]:
            table = found[key].reshape(-1, count, count)[:, place]
            return {name: table[:, k].reshape(shape) for k, name in enumerate(names)}

        return Envelope(column("min"), column("max"), labels[column("min_by")],
                        labels[column("max_by")], others("min_with"), others("max_with"), numbers)

    @staticmethod
    def _find(value: str, of: str | None) -> tuple[int, int]:
        """The kind of places, and the place of the value among its values."""
        if of is not None and of not in _KINDS:
            raise KeyError(f"there are no {of!r}; known are {', '.join(_KINDS)}")
        for kind, names in enumerate(_kestol.value_names()):
            if value in names and of in (None, _KINDS[kind]):
                return kind, names.index(value)
        raise KeyError(f"there is no value {value!r}" + ("" if of is None else f" of {of}"))


def combine(model: Model, cases: Mapping[str, Path],
            combinations: Mapping[str, Mapping[str, float]], *, solver: str = "deck") -> Combined:
    """Solves a model under load cases, with one factorisation.

    Args:
        model: the model with its own loads.
        cases: by name, ``"model"`` for the model's own loads and weight (at most once), or the path
            of a file with load sections, constraints with settlements and units keywords.
        combinations: by name, the factors of the cases, of one at least; cases that are not named
            count 0.
        solver: as for :func:`kestol.solve`.

    Raises:
        kestol.Error: ``syntax`` for a line of a case file; ``hinge-first`` for a loaded beam that
            is hinged at its first node, whose loads cannot be added up; ``model`` for a combination
            without a case, and for names that are twice or unknown.
        TypeError: an argument is of another type.

    >>> import kestol
    >>> model = kestol.Model(dimension=2)
    >>> model.add_material(1, E=2e11, A=1e-2, Iz=1e-5)
    >>> _ = model.add_nodes([[0, 0], [3, 0]])
    >>> _ = model.add_beam(1, 2, material=1)
    >>> model.add_support(1, "111")
    >>> model.add_nodal_load(2, 0, -1000, 0)
    >>> combined = kestol.combine(model, {"G": "model"}, {"U": {"G": 1.35}, "S": {"G": 1.0}})
    >>> round(float(combined["U"].reactions[0, 5]), 6)
    4050.0
    >>> envelope = combined.envelope("Mz")
    >>> round(float(envelope.min[0, 0]), 6), str(envelope.min_by[0, 0])
    (-4050.0, 'U')
    """
    require("the model", model, Model, "a kestol.Model")
    sources = _sources(cases)
    names = [name for name, _ in sources]
    factors = _factors(combinations, names)
    combined = _kestol.combine(model._builder, sources, list(factors), list(factors.values()),
                               solver)
    return Combined(combined, model.copy(), names, factors)


def _sources(cases: Mapping[str, Path]) -> list[tuple[str, str]]:
    """Names and paths of the cases; no path for the loads of the model."""
    require("the cases", cases, Mapping, "a mapping")
    sources: list[tuple[str, str]] = []
    for name, source in cases.items():
        require("the name of a case", name, str, "a text")
        require(f"the case {name!r}", source, (str, os.PathLike), "a path")
        path = os.fspath(source)
        sources.append((name, "" if path == "model" else path))
    if sum(not path for _, path in sources) > 1:
        raise Error("the loads of the model make one case, not several", code="model")
    if not sources:
        raise Error("there is no load case", code="model")
    return sources


def _factors(combinations: Mapping[str, Mapping[str, float]],
             names: list[str]) -> dict[str, list[float]]:
    """The factors of all cases by the names of the combinations."""
    require("the combinations", combinations, Mapping, "a mapping")
    factors: dict[str, list[float]] = {}
    for combination, terms in combinations.items():
        require("the name of a combination", combination, str, "a text")
        require(f"the combination {combination!r}", terms, Mapping, "a mapping")
        if combination in names:
            raise Error(f"{combination!r} names a case and a combination", code="model")
        if not terms:
            raise Error(f"combination {combination!r} has no case", code="model")
        for term in terms:
            if term not in names:
                raise Error(f"combination {combination!r} names an unknown case: {term!r}",
                            code="model")
            finite("a factor", terms[term])
        factors[combination] = [float(terms.get(name, 0.0)) for name in names]
    return factors
