"""What was applied where, for the report."""

from __future__ import annotations

from dataclasses import dataclass, field

import numpy as np

from .mesh import Reals


@dataclass
class Applied:
    """A group in its use: how many of what, its size, and what acts on it in all."""

    label: str
    group: str
    count: str
    size_name: str = ""
    size: float = 0.0
    nodes: int = 0
    detail: str = ""
    force: Reals | None = None
    moment: Reals = field(default_factory=lambda: np.zeros(3))  # about the origin


def resultant(at: Reals, forces: Reals) -> tuple[Reals, Reals]:
    """Sum of forces (n, 3) at points (n, 3), and of their moments about the origin."""
    return forces.sum(axis=0), np.cross(at, forces).sum(axis=0)
