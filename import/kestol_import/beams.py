"""Local axes of beams, and the Euler angles that give a section the wanted side up."""

from __future__ import annotations

import numpy as np

from .errors import Place, Refusal
from .geometry import cross, dot, norm
from .mesh import Ints, Reals

ALONG = 1e-6  # sine of the smallest angle between a beam and its up direction
ACROSS = 1e-5  # cosine between a beam and the x of its angles; the solver refuses one below it
VERTICAL = 1e-15  # horizontal components below it: the solver takes the beam as vertical


def directions(points: Reals, nodes: Ints) -> Reals:
    """Unit vectors from the first to the second node."""
    chord = points[nodes[:, 1]] - points[nodes[:, 0]]
    unit: Reals = chord / norm(chord)[:, None]
    return unit


def upright_axes(along: Reals, plane: bool) -> tuple[Reals, Reals]:
    """Local y and z without any wish, as docs/conventions.md says."""
    z = np.zeros_like(along)
    if plane:
        z[:, 2] = 1
        return cross(z, along), z
    y = np.stack([-along[:, 1], along[:, 0], np.zeros(len(along))], axis=1)
    vertical = (np.abs(along[:, 0]) < VERTICAL) & (np.abs(along[:, 1]) < VERTICAL)
    y[vertical] = [1, 0, 0]
    y /= norm(y)[:, None]
    z = cross(along, y)
    down = ~vertical & (z[:, 2] < 0)
    y[down] *= -1
    return y, cross(along, y)


def axes_with_up(along: Reals, up: list[float], path: str, numbers: Ints) -> tuple[Reals, Reals]:
    """Local y and z with z on the side of `up`, at right angles to the beam."""
    wish = np.array(up) / np.linalg.norm(up)
    z = wish - dot(along, np.broadcast_to(wish, along.shape))[:, None] * along
    length = norm(z)
    if (length < ALONG).any():
        number = numbers[int(np.argmin(length))]
        raise Refusal(f"line {number} runs along its up direction", "beam", Place(path))
    z /= length[:, None]
    return cross(z, along), z


def euler_angles(x: Reals, y: Reals, z: Reals) -> Reals:
    """Angles (n, 3) of R = Rz(Euler3) Ry(Euler2) Rx(Euler1) whose columns are the local axes."""
    flat = np.hypot(x[:, 0], x[:, 1])  # cosine of the second angle
    upright = flat < 1e-9
    first = np.where(upright, 0.0, np.arctan2(y[:, 2], z[:, 2]))
    second = np.arctan2(-x[:, 2], np.where(upright, 0.0, flat))
    third = np.where(upright, np.arctan2(-y[:, 0], y[:, 1]), np.arctan2(x[:, 1], x[:, 0]))
    angles: Reals = np.stack([first, second, third], axis=1) + 0.0  # no -0.0
    return angles


def rotation(angles: list[float]) -> Reals:
    """R of three Euler angles; its columns are the axes."""
    (c1, c2, c3), (s1, s2, s3) = np.cos(angles), np.sin(angles)
    about_x = np.array([[1, 0, 0], [0, c1, -s1], [0, s1, c1]])
    about_y = np.array([[c2, 0, s2], [0, 1, 0], [-s2, 0, c2]])
    about_z = np.array([[c3, -s3, 0], [s3, c3, 0], [0, 0, 1]])
    product: Reals = about_z @ about_y @ about_x
    return product


def axes_with_angles(along: Reals, angles: list[float], path: str,
                     numbers: Ints) -> tuple[Reals, Reals]:
    """Local y and z of beams whose material has Euler angles: the nearest right-angled ones."""
    given = rotation(angles)
    cosine = np.abs(along @ given[:, 0])
    if (cosine < ACROSS).any():
        number = numbers[int(np.argmin(cosine))]
        raise Refusal(f"line {number} runs across local x of the Euler angles of its material",
                      "beam", Place(path))
    z = cross(along, np.broadcast_to(given[:, 1], along.shape))
    z /= norm(z)[:, None]
    return cross(z, along), z
