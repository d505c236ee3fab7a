"""Models: read from decks, or built piece by piece."""

from __future__ import annotations

import os
from collections.abc import Sequence
from typing import TYPE_CHECKING, Any, Union

import numpy as np
from numpy.typing import ArrayLike, NDArray

from . import _kestol
from .errors import Error

if TYPE_CHECKING:
    from .results import Results

#: A path of a file.
Path = Union[str, "os.PathLike[str]"]

_LOAD_SECTIONS = {
    "global": "global_pressure_loads",
    "projected": "global_projected_pressure_loads",
    "local": "local_pressure_loads",
    "face": "face_loads",
}


def read(path: Path) -> Model:
    """The model of a deck. Refusals name its file and line.

    >>> import kestol
    >>> kestol.read("missing.dat")
    Traceback (most recent call last):
        ...
    kestol.errors.Error: can't open file missing.dat: No such file or directory [file]
    """
    name = os.fspath(path)
    return Model._of(_kestol.read(name), name)


def read_text(text: str, name: str = "model") -> Model:
    """The model of a deck in memory, which refusals call ``name``."""
    return Model._of(_kestol.read_text(text, name), name)


def _integers(values: ArrayLike) -> NDArray[np.int32]:
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


def _each(numbers: int | ArrayLike) -> list[int]:
    return [int(number) for number in _integers(numbers).reshape(-1)]


def _text(value: float) -> str:
    return repr(float(value))


def _finite(key: str, value: float) -> str:
    if not np.isfinite(value):
        raise Error(f"{key} is not a finite number", code="syntax")
    return _text(value)


def _word(what: str, text: str) -> str:
    """A name that the language of the deck can hold."""
    if not text or text.startswith("#") or any(c.isspace() for c in text):
        raise Error(f"{what} must be one word: {text!r}", code="syntax")
    return text


def _components(values: Sequence[Any]) -> list[float]:
    """Components given one by one, or as one sequence."""
    if len(values) == 1 and np.ndim(values[0]) == 1:
        values = values[0]
    return [float(value) for value in values]


def _tail(euler: Sequence[float] | None, units: str | None) -> str:
    """The keys behind the numbers of a record."""
    text = ""
    if euler is not None:
        if len(euler) != 3:
            raise Error("three Euler angles are needed", code="syntax")
        text = "".join(f" Euler{k}={_finite('an Euler angle', angle)}"
                       for k, angle in enumerate(euler, 1))
    if units is not None:
        text += " units " + _word("a unit system", units)
    return text


class Model:
    """A model as a deck would say it.

    The order of the calls is that of a deck: units before the values that they scale, nodes before
    elements, both before supports and loads. Without units everything is in one consistent set.
    What is refused raises :class:`kestol.Error` and is not added.

    Args:
        dimension: 2, a plane problem (beams; degrees ux, uy, rotation), or 3 (beams and shells with
            six degrees a node, or solids with three).
        name: what refusals and results call the model.

    >>> import kestol
    >>> model = kestol.Model(dimension=2)
    >>> model.add_node(0, 0), model.add_node(3, 0)
    (1, 2)
    >>> model
    <kestol.Model 'model': 2 nodes, 0 elements>
    """

    def __init__(self, dimension: int = 3, *, name: str = "model") -> None:
        self._builder = _kestol.Builder(dimension)
        #: The path of the deck, or the name that was given.
        self.name = name

    @classmethod
    def _of(cls, builder: _kestol.Builder, name: str) -> Model:
        model = cls.__new__(cls)
        model._builder = builder
        model.name = name
        return model

    def __repr__(self) -> str:
        return (f"<kestol.Model {self.name!r}: {self.node_count} nodes, "
                f"{self.element_count} elements>")

    def __reduce__(self) -> tuple[Any, ...]:
        return read_text, (self.text(), self.name)

    def copy(self) -> Model:
        """A model of its own that says the same."""
        return Model._of(self._builder.copy(), self.name)

    # --- what is there ------------------------------------------------------------------------

    @property
    def dimension(self) -> int:
        """2 for a plane problem, 3 for one in space."""
        return self._builder.dimension

    @property
    def dofs_per_node(self) -> int:
        """3 in the plane and for solids, else 6."""
        return self._builder.dofs_per_node

    @property
    def node_count(self) -> int:
        """The highest number of a node."""
        return self._builder.node_count

    @property
    def element_count(self) -> int:
        """How many elements there are."""
        return self._builder.element_count

    @property
    def coordinates(self) -> NDArray[np.float64]:
        """(nodes, 3): positions in the length unit of the results, by node number."""
        return self._builder.positions()

    @property
    def elements(self) -> list[list[int]]:
        """The number of each element and, behind it, those of its nodes (0: unknown)."""
        return self._builder.elements()

    # --- units --------------------------------------------------------------------------------

    def add_units(self, name: str, force: str, length: str, pressure: str, force_factor: float,
                  length_factor: float) -> None:
        """A unit system: its name, those of its units, and the sizes of force and length unit in a
        reference of your choice."""
        words = [_word("a name of a unit", word) for word in (name, force, length, pressure)]
        for word in words:
            if len(word) > 20:
                raise Error(f"a name of a unit has at most 20 characters: {word!r}", code="syntax")
        factors = [_finite("a factor", factor) for factor in (force_factor, length_factor)]
        self._builder.add_units(" ".join(words + factors))

    def set_units(self, *, mesh: str | None = None, loads: str | None = None,
                  results: str | None = None) -> None:
        """Chooses what was added: the *length unit* of coordinates (``mesh``), the *system* of
        materials, supports and loads (``loads``), the system of the results (``results``)."""
        for keyword, word in (("units_res", results), ("units_mat_and_load", loads),
                              ("units_mesh", mesh)):
            if word is not None:
                self._builder.say(f"{keyword} {_word('a unit', word)}")

    # --- nodes and elements -------------------------------------------------------------------

    def add_node(self, x: float, y: float, z: float | None = None, *,
                 number: int | None = None) -> int:
        """A node; gives its number, by default the next free one. ``z`` in space only."""
        position = [x, y] if z is None else [x, y, z]
        return int(self.add_nodes([position], numbers=None if number is None else [number])[0])

    def add_nodes(self, coordinates: ArrayLike, numbers: ArrayLike | None = None,
                  ) -> NDArray[np.int32]:
        """Nodes.

        Args:
            coordinates: (nodes, 2) in the plane, (nodes, 3) in space; length unit of the mesh.
            numbers: (nodes,), by default the next free ones. At the end they must be 1..N.

        Returns:
            The numbers.
        """
        array = np.ascontiguousarray(coordinates, dtype=np.float64)
        wanted = self._builder.coordinate_count
        if array.ndim == 1:
            array = array.reshape(1, -1) if array.size else array.reshape(0, wanted)
        if array.ndim != 2 or array.shape[1] != wanted:
            raise Error(f"nodes need {wanted} coordinates each, not an array of the shape "
                        f"{array.shape}", code="model")
        given = self._numbers(numbers, len(array), self._builder.next_node_number)
        self._builder.add_nodes(given, array)
        return given

    @staticmethod
    def _numbers(numbers: ArrayLike | None, count: int, first: int) -> NDArray[np.int32]:
        if numbers is None:
            return np.arange(first, first + count, dtype=np.int32)
        given = _integers(numbers).reshape(-1)
        if len(given) != count:
            raise Error(f"{count} numbers are needed, not {len(given)}", code="model")
        return given

    def _add_elements(self, kind: str, counts: tuple[int, ...], nodes: ArrayLike,
                      material: int | ArrayLike, numbers: ArrayLike | None) -> NDArray[np.int32]:
        rows = _integers(nodes)
        if rows.ndim == 1:
            rows = rows.reshape(1, -1) if rows.size else rows.reshape(0, counts[0])
        if rows.ndim != 2 or rows.shape[1] not in counts:
            wanted = " or ".join(str(count) for count in counts)
            raise Error(f"elements of this kind have {wanted} nodes, not an array of the shape "
                        f"{rows.shape}", code="model")
        materials = np.atleast_1d(_integers(material)).reshape(-1)
        given = self._numbers(numbers, len(rows), self._builder.next_element_number)
        self._builder.add_elements(kind, rows.shape[1], given, rows, materials)
        return given

    def add_beam(self, node1: int, node2: int, material: int, *, number: int | None = None) -> int:
        """A beam; gives its number."""
        numbers = None if number is None else [number]
        return int(self.add_beams([[node1, node2]], material, numbers)[0])

    def add_beams(self, pairs: ArrayLike, material: int | ArrayLike,
                  numbers: ArrayLike | None = None) -> NDArray[np.int32]:
        """Beams.

        Args:
            pairs: (beams, 2), numbers of nodes.
            material: number of the material, one for all or one each.
            numbers: (beams,), by default the next free ones.
        """
        return self._add_elements("Linear", (2,), pairs, material, numbers)

    def add_shells(self, nodes: ArrayLike, material: int | ArrayLike,
                   numbers: ArrayLike | None = None) -> NDArray[np.int32]:
        """Shell triangles: (shells, 3), or (shells, 6) with the mid-sides of 1-2, 2-3, 3-1."""
        return self._add_elements("Triangle", (3, 6), nodes, material, numbers)

    def add_solids(self, nodes: ArrayLike, material: int | ArrayLike,
                   numbers: ArrayLike | None = None) -> NDArray[np.int32]:
        """Tetrahedra: (solids, 4) or (solids, 10). They do not mix with other elements and come
        before supports and loads."""
        return self._add_elements("Tetrahedra", (4, 10), nodes, material, numbers)

    # --- materials ----------------------------------------------------------------------------

    def add_material(self, number: int, *, E: float | None = None, Ex: float | None = None,
                     Ey: float | None = None, nu: float | None = None, nuXY: float | None = None,
                     nuYX: float | None = None, G: float | None = None, Gxy: float | None = None,
                     Gxz: float | None = None, Gyz: float | None = None, A: float | None = None,
                     Iy: float | None = None, Iz: float | None = None, J: float | None = None,
                     widthY: float | None = None, widthZ: float | None = None,
                     t: float | None = None, Weight: float | None = None,
                     Euler1: float | None = None, Euler2: float | None = None,
                     Euler3: float | None = None, units: str | None = None) -> None:
        """A material with its section or thickness, by the keys of the deck.

        Args:
            E, Ex, Ey: Young's moduli [force/length^2]; ``E`` sets both.
            nu, nuXY, nuYX: Poisson's ratios.
            G, Gxy, Gxz, Gyz: shear moduli [force/length^2].
            A: area [length^2]; Iy, Iz, J: second moments and torsion constant [length^4].
            widthY, widthZ: sides of a rectangle along local y and z [length], in place of these.
            t: thickness of a shell [length].
            Weight: weight per volume [force/length^3].
            Euler1, Euler2, Euler3: local axes [rad].
            units: a unit system for this material.
        """
        values = {
            "E": E, "Ex": Ex, "Ey": Ey, "nu": nu, "nuXY": nuXY, "nuYX": nuYX, "G": G, "Gxy": Gxy,
            "Gxz": Gxz, "Gyz": Gyz, "A": A, "Iy": Iy, "Iz": Iz, "J": J, "widthY": widthY,
            "widthZ": widthZ, "t": t, "Weight": Weight, "Euler1": Euler1, "Euler2": Euler2,
            "Euler3": Euler3,
        }
        keys = "".join(f" {key}={_finite(key, value)}" for key, value in values.items()
                       if value is not None)
        front = "" if units is None else " units=" + _word("a unit system", units)
        self._builder.add_record("materials", f"{_each(number)[0]}{front}{keys}")

    # --- supports and hinges ------------------------------------------------------------------

    def add_support(self, node: int | ArrayLike, codes: str, values: Sequence[float] | None = None,
                    euler: Sequence[float] | None = None, units: str | None = None) -> None:
        """A support of a node, or the same of several.

        Args:
            node: its number, or an array of numbers.
            codes: one digit per degree of freedom: 0 free, 1 prescribed, 2 a spring.
            values: one per degree: prescribed displacements [length], rotations [rad], or spring
                stiffnesses [force/length, force length/rad]; by default 0.
            euler: three angles of the axes of the support [rad].
        """
        dofs = self.dofs_per_node
        given = [0.0] * dofs if values is None else [float(value) for value in values]
        if len(given) != dofs:
            raise Error(f"a support has {dofs} values here, not {len(given)}", code="syntax")
        record = " ".join([_word("the codes", codes), *map(_text, given)]) + _tail(euler, units)
        for number in _each(node):
            self._builder.add_record("constraints", f"{number} {record}")

    def add_rotule(self, node: int | ArrayLike) -> None:
        """Beams meet at this node (or at these) through a hinge."""
        for number in _each(node):
            self._builder.add_record("rotules", str(number))

    # --- loads --------------------------------------------------------------------------------

    def add_nodal_load(self, node: int | ArrayLike, *components: float | Sequence[float],
                       units: str | None = None) -> None:
        """A load on a node, or the same on several; loads add up.

        Args:
            components: one per degree of freedom, forces [force] and moments [force length], one by
                one or as a sequence: (Fx, Fy, M) in the plane, (Fx, Fy, Fz, Mx, My, Mz) in space,
                (Fx, Fy, Fz) on solids.
        """
        values = _components(components)
        if len(values) != self.dofs_per_node:
            raise Error(f"a nodal load has {self.dofs_per_node} components here, not "
                        f"{len(values)}", code="syntax")
        record = " ".join(map(_text, values)) + _tail(None, units)
        for number in _each(node):
            self._builder.add_record("nodal_point_loads", f"{number} {record}")

    def add_element_load(self, element: int | ArrayLike, *components: float | Sequence[float],
                         kind: str = "global", face: int | None = None,
                         euler: Sequence[float] | None = None, units: str | None = None) -> None:
        """A distributed load on an element, or the same on several.

        Args:
            components: two in the plane, three in space; ``kind="local"`` may have a fourth, a
                couple about local x. Per length of a beam or edge, per area of a shell or face, per
                volume of a solid.
            kind: ``"global"``, ``"projected"`` (per length or area projected on the plane normal to
                the load), ``"local"`` or ``"face"``.
            face: edge 0..2 of a shell (``kind="face"``) or face 0..3 of a solid; by default the
                whole element.
            euler: three angles that turn the components [rad].
        """
        if kind not in _LOAD_SECTIONS:
            raise Error(f"kind is one of {', '.join(_LOAD_SECTIONS)}, not {kind!r}", code="syntax")
        values = _components(components)
        solids = self.dimension == 3 and self.dofs_per_node == 3
        if self.dimension == 2:
            counts: tuple[int, ...] = (2,)
        else:
            counts = (3, 4) if kind == "local" and not solids else (3,)
        if len(values) not in counts:
            raise Error(f"this load has {counts[0]} components, not {len(values)}", code="syntax")
        if face is not None and (self.dimension == 2 or not (solids or kind == "face")):
            raise Error("a face is that of a solid, or the edge of a shell with kind=\"face\"",
                        code="syntax")
        numbers = list(map(_text, values))
        if solids or face is not None:
            numbers.insert(0, str(-1 if face is None else _each(face)[0]))
        record = " ".join(numbers) + _tail(euler, units)
        for number in _each(element):
            self._builder.add_record(_LOAD_SECTIONS[kind], f"{number} {record}")

    # --- options ------------------------------------------------------------------------------

    def set_solver(self, name: str, tolerance1: float = 1e-10, tolerance2: float = 1e-6,
                   max_iterations: int = 10000) -> None:
        """The solver that ``solver="deck"`` means: ``Automatic``, ``SkyLine``, ``Double``, or
        ``Sparse`` with its tolerances."""
        tail = ""
        if name.lower().startswith("sparse"):
            tail = f" {_text(tolerance1)} {_text(tolerance2)} {int(max_iterations)}"
        self._builder.say(f"Solver {_word('a solver', name)}{tail}")

    def set_gravity(self, x: float, y: float, z: float) -> None:
        """The direction along which ``Weight`` acts; its length does not matter."""
        self._builder.say(f"GravityDirection {_text(x)} {_text(y)} {_text(z)}")

    def set_divisions(self, count: int) -> None:
        """Divisions of a beam; stations are one more."""
        self._builder.say(f"NumOfDivisions {int(count)}")

    def set_coplanarity_angle(self, angle: float) -> None:
        """Normals of shells within this angle [rad] count as one plane."""
        self._builder.say(f"CoplanarityAngle {_text(angle)}")

    def smooth(self, angle: float) -> None:
        """Averages shell values around nodes where axes agree within the angle [rad]."""
        self._builder.say(f"DoSmoothing {_text(angle)}")

    def convert_to_6_nodes(self) -> None:
        """Solves 3-noded shells as 6-noded ones."""
        self._builder.say("ConvertTo6Nodes")

    # --- what is done with it -----------------------------------------------------------------

    def text(self) -> str:
        """The model as a deck, in the units of the results. Reading it gives the same model."""
        return self._builder.text()

    def _unchanged_deck(self) -> str | None:
        """The path of the deck that still says the same."""
        same = not self._builder.is_changed and os.path.isfile(self.name)
        return self.name if same else None

    def write(self, path: Path) -> None:
        """Writes the model as a deck. A file that was read is not overwritten."""
        self._builder.write(os.fspath(path), self._inputs())

    def _inputs(self) -> list[str]:
        return [self.name] if os.path.exists(self.name) else []

    def solve(self, solver: str = "deck", *, stations: int | None = None,
              renumber: bool = True) -> Results:
        """See :func:`kestol.solve`."""
        from .solving import solve
        return solve(self, solver, stations=stations, renumber=renumber)
