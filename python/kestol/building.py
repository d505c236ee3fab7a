"""The calls that build a model, in the order of a deck."""

from __future__ import annotations

from collections.abc import Sequence
from operator import index

import numpy as np
from numpy.typing import ArrayLike, NDArray

from . import _kestol
from .errors import Error
from .records import codes_of, components_of, each, finite, integers, require, tail_of, word_of

_LOAD_SECTIONS = {
    "global": "global_pressure_loads",
    "projected": "global_projected_pressure_loads",
    "local": "local_pressure_loads",
    "face": "face_loads",
}


class Building:
    """What adds to a model: units, nodes, elements, materials, supports, loads, options."""

    _builder: _kestol.Builder

    # --- units --------------------------------------------------------------------------------

    def add_units(self, name: str, force: str, length: str, pressure: str, force_factor: float,
                  length_factor: float) -> None:
        """A unit system: its name, those of its units, and the sizes of force and length unit in a
        reference of your choice."""
        words = [word_of("a name of a unit", word) for word in (name, force, length, pressure)]
        for word in words:
            if len(word) > 20:
                raise Error(f"a name of a unit has at most 20 characters: {word!r}", code="syntax")
        factors = [finite("a factor", factor) for factor in (force_factor, length_factor)]
        self._builder.add_units(" ".join(words + factors))

    def set_units(self, *, mesh: str | None = None, loads: str | None = None,
                  results: str | None = None) -> None:
        """Chooses what was added: the *length unit* of coordinates (``mesh``), the *system* of
        materials, supports and loads (``loads``), the system of the results (``results``)."""
        for keyword, word in (("units_res", results), ("units_mat_and_load", loads),
                              ("units_mesh", mesh)):
            if word is not None:
                self._builder.say(f"{keyword} {word_of('a unit', word)}")

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
        given = integers(numbers).reshape(-1)
        if len(given) != count:
            raise Error(f"{count} numbers are needed, not {len(given)}", code="model")
        return given

    def _add_elements(self, kind: str, counts: tuple[int, ...], nodes: ArrayLike,
                      material: int | ArrayLike, numbers: ArrayLike | None) -> NDArray[np.int32]:
        rows = integers(nodes)
        if rows.ndim == 1:
            rows = rows.reshape(1, -1) if rows.size else rows.reshape(0, counts[0])
        if rows.ndim != 2 or rows.shape[1] not in counts:
            wanted = " or ".join(str(count) for count in counts)
            raise Error(f"elements of this kind have {wanted} nodes, not an array of the shape "
                        f"{rows.shape}", code="model")
        materials = np.atleast_1d(integers(material)).reshape(-1)
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
        keys = "".join(f" {key}={finite(key, value)}" for key, value in values.items()
                       if value is not None)
        front = "" if units is None else " units=" + word_of("a unit system", units)
        self._builder.add_record("materials", f"{each(number)[0]}{front}{keys}")

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
        dofs = self._builder.dofs_per_node
        given = [0.0] * dofs if values is None else list(values)
        if len(given) != dofs:
            raise Error(f"a support has {dofs} values here, not {len(given)}", code="syntax")
        words = [codes_of(codes), *(finite("a value", value) for value in given)]
        record = " ".join(words) + tail_of(euler, units)
        for number in each(node):
            self._builder.add_record("constraints", f"{number} {record}")

    def add_rotule(self, node: int | ArrayLike) -> None:
        """Beams meet at this node (or at these) through a hinge."""
        for number in each(node):
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
        values = components_of(components)
        if len(values) != self._builder.dofs_per_node:
            raise Error(f"a nodal load has {self._builder.dofs_per_node} components here, not "
                        f"{len(values)}", code="syntax")
        record = " ".join(finite("a component", value) for value in values) + tail_of(None, units)
        for number in each(node):
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
        values = components_of(components)
        solids = self._builder.dimension == 3 and self._builder.dofs_per_node == 3
        if self._builder.dimension == 2:
            counts: tuple[int, ...] = (2,)
        else:
            counts = (3, 4) if kind == "local" and not solids else (3,)
        if len(values) not in counts:
            wanted = " or ".join(map(str, counts))
            raise Error(f"this load has {wanted} components, not {len(values)}", code="syntax")
        if face is not None and (self._builder.dimension == 2 or not (solids or kind == "face")):
            raise Error("a face is that of a solid, or the edge of a shell with kind=\"face\"",
                        code="syntax")
        numbers = [finite("a component", value) for value in values]
        if solids or face is not None:
            numbers.insert(0, str(-1 if face is None else each(face)[0]))
        record = " ".join(numbers) + tail_of(euler, units)
        for number in each(element):
            self._builder.add_record(_LOAD_SECTIONS[kind], f"{number} {record}")

    # --- options ------------------------------------------------------------------------------

    def set_solver(self, name: str, tolerance1: float = 1e-10, tolerance2: float = 1e-6,
                   max_iterations: int = 10000) -> None:
        """The solver that ``solver="deck"`` means: ``Automatic``, ``SkyLine``, ``Double``, or
        ``Sparse`` with its tolerances."""
        require("a solver", name, str, "a text")
        tail = ""
        if name.lower().startswith("sparse"):
            tolerances = [finite("a tolerance", value) for value in (tolerance1, tolerance2)]
            tail = " " + " ".join([*tolerances, str(index(max_iterations))])
        self._builder.say(f"Solver {word_of('a solver', name)}{tail}")

    def set_gravity(self, x: float, y: float, z: float) -> None:
        """The direction along which ``Weight`` acts; its length does not matter."""
        direction = " ".join(finite("a component", value) for value in (x, y, z))
        self._builder.say(f"GravityDirection {direction}")

    def set_divisions(self, count: int) -> None:
        """Divisions of a beam; stations are one more."""
        self._builder.say(f"NumOfDivisions {index(count)}")

    def set_coplanarity_angle(self, angle: float) -> None:
        """Normals of shells within this angle [rad] count as one plane."""
        self._builder.say(f"CoplanarityAngle {finite('an angle', angle)}")

    def smooth(self, angle: float) -> None:
        """Averages shell values around nodes where axes agree within the angle [rad]."""
        self._builder.say(f"DoSmoothing {finite('an angle', angle)}")

    def convert_to_6_nodes(self) -> None:
        """Solves 3-noded shells as 6-noded ones."""
        self._builder.say("ConvertTo6Nodes")
