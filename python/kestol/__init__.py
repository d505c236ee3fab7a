"""Linear static analysis of frames, shells and solids.

>>> import kestol
>>> model = kestol.Model(dimension=2)
>>> model.add_material(1, E=2e11, A=1e-2, Iz=1e-5)
>>> model.add_nodes([[0, 0], [3, 0]])
array([1, 2], dtype=int32)
>>> model.add_beams([[1, 2]], material=1)
array([1], dtype=int32)
>>> model.add_support(1, "111")
>>> model.add_nodal_load(2, 0, -1000, 0)
>>> result = kestol.solve(model)
>>> round(float(result.displacements[1, 1]), 9)     # P L^3 / 3 E I
-0.0045
"""

from __future__ import annotations

from . import _kestol
from .checking import Finding, check
from .combining import Combined, Envelope, combine
from .elements import Beam, Beams, Shells, Solids
from .errors import Error
from .model import Model, read, read_text
from .results import Results
from .solving import solve, solve_many

__version__: str = _kestol.version

__all__ = [
    "Beam", "Beams", "Combined", "Envelope", "Error", "Finding", "Model", "Results", "Shells",
    "Solids", "check", "combine", "direct_solver_is_built", "read", "read_text", "solve",
    "solve_many",
]


def direct_solver_is_built() -> bool:
    """Whether ``solver="direct"``, the sparse factorisation, is there."""
    return _kestol.direct_solver_is_built()
