"""From models to results."""

from __future__ import annotations

import os
from collections.abc import Callable, Iterable
from concurrent.futures import ProcessPoolExecutor
from multiprocessing import get_context
from typing import TypeVar, Union

from . import _kestol
from .errors import Error
from .model import Model, Path, read
from .results import Results

T = TypeVar("T")


def solve(model: Model | Path, solver: str = "deck", *, stations: int | None = None,
          renumber: bool = True) -> Results:
    """The results of a model under its loads. The model itself stays as it is.

    Args:
        model: a model, or the path of a deck.
        solver: ``deck`` (what the model says), ``skyline``, ``sparse``, or ``direct`` where
            :func:`kestol.direct_solver_is_built`.
        stations: points of each beam, 2 or more; by default what the model says.
        renumber: False keeps the nodes in the order of the input.

    Raises:
        kestol.Error: ``model`` or ``mechanism``, see there.
        MemoryError: no memory is left.
    """
    if not isinstance(model, Model):
        model = read(model)
    if stations == 0:  # which the extension takes for what the model says
        raise ValueError("a beam has at least 2 stations")
    answer = _kestol.solve(model._builder, solver, 0 if stations is None else stations, renumber)
    return Results(answer, model.copy())


class _Task:
    """What a worker process was forked with; its results go back, nothing else is sent."""

    models: list[Union[Model, Path]] = []
    use: Callable[[Results], object]
    solver = "deck"


def _remember(models: list[Union[Model, Path]], use: Callable[[Results], object],
              solver: str) -> None:
    _Task.models = models
    _Task.use = staticmethod(use)
    _Task.solver = solver


def _work(index: int) -> object:
    try:
        return _Task.use(solve(_Task.models[index], _Task.solver))
    except Error as error:
        return error


def solve_many(models: Iterable[Model | Path], use: Callable[[Results], T], *,
               solver: str = "deck", processes: int | None = None) -> list[T | Error]:
    """Solves many models in forked processes.

    Args:
        models: models, or paths of decks, which are read by the processes.
        use: called with the results of each model in its process; what it gives comes back and
            must be something that pickle takes, such as a number or an array.
        solver: as for :func:`kestol.solve`.
        processes: how many; by default one for each processor.

    Returns:
        What ``use`` gave, in the order of the models; for a model that was refused the
        :class:`kestol.Error` in its place.

    >>> import kestol
    >>> def cantilever(length):
    ...     model = kestol.Model(dimension=2)
    ...     model.add_material(1, E=2e11, A=1e-2, Iz=1e-5)
    ...     _ = model.add_nodes([[0, 0], [length, 0]])
    ...     _ = model.add_beam(1, 2, material=1)
    ...     model.add_support(1, "111")
    ...     model.add_nodal_load(2, 0, -1000, 0)
    ...     return model
    >>> tips = kestol.solve_many(map(cantilever, [1.5, 3.0]),
    ...                          lambda result: float(result.displacements[1, 1]), processes=2)
    >>> [round(tip, 7) for tip in tips]
    [-0.0005625, -0.0045]
    """
    tasks = list(models)
    if not tasks:
        return []
    wanted = (os.cpu_count() or 1) if processes is None else processes
    workers = min(len(tasks), wanted)
    # Forked, so that models and functions are there without being sent.
    with ProcessPoolExecutor(workers, mp_context=get_context("fork"), initializer=_remember,
                             initargs=(tasks, use, solver)) as pool:
        chunk = max(1, len(tasks) // (4 * workers))
        return list(pool.map(_work, range(len(tasks)), chunksize=chunk))  # type: ignore[arg-type]
