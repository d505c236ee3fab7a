"""The recipe: what the groups of a mesh are, how they are held and loaded."""

from __future__ import annotations

import re
from dataclasses import dataclass, field

from .errors import Place, Refusal, nearest
from .expressions import Expression
from .recipe_tables import Source, Table

MATERIAL_KEYS = ("E", "Ex", "Ey", "nu", "nuXY", "nuYX", "G", "Gxy", "Gxz", "Gyz", "A", "Iy", "Iz",
                 "J", "widthY", "widthZ", "t", "Weight", "Euler1", "Euler2", "Euler3")
ANGLES = ("Euler1", "Euler2", "Euler3")
LONGEST_UNIT_NAME = 20


@dataclass
class Use:
    """Groups that a table of the recipe speaks of."""

    label: str
    groups: list[str]
    table: Table

    def group_place(self, name: str) -> Place:
        return self.table.place("groups", self.groups.index(name))

    @property
    def place(self) -> Place:
        return self.table.place(value=False)


@dataclass
class Units:
    name: str
    force: str
    length: str
    pressure: str
    factors: tuple[float, float]  # size of the force and of the length in a reference


@dataclass
class MaterialUse(Use):
    """Keys and values of a material line; `up` is given for beams with a section only."""

    values: dict[str, float] = field(default_factory=dict)
    units: str = ""
    is_beam: bool = False
    up: list[float] | None = None


@dataclass
class SupportUse(Use):
    codes: str = ""
    values: list[Expression] = field(default_factory=list)
    angles: dict[str, float] = field(default_factory=dict)


@dataclass
class LoadUse(Use):
    """Exactly one of the three is given."""

    pressure: list[Expression] | None = None
    normal: Expression | None = None
    force: list[float] | None = None


@dataclass
class Recipe:
    path: str
    title: str
    plane: bool
    mesh_unit: str
    values_unit: str  # system of materials and loads
    results: str
    units: list[Units]
    options: list[str]  # lines of the deck
    six_nodes: bool
    materials: list[MaterialUse]
    supports: list[SupportUse]
    loads: list[LoadUse]

    @property
    def uses(self) -> list[Use]:
        return [*self.materials, *self.supports, *self.loads]

    @property
    def members(self) -> list[str]:
        """Groups that become elements."""
        return [name for use in self.materials for name in use.groups]

    def system(self, name: str) -> Units | None:
        return next((u for u in self.units if u.name == name), None)


def read_recipe(path: str, raw: bytes) -> Recipe:
    source = Source(path, raw)
    root = Table(source, (), source.data)
    root.only("problem", "units", "options", "material", "beam", "support", "load")
    problem = root.table("problem")
    problem.only("title", "type", "mesh_unit", "values", "results")
    kind = problem.string("type", "3d")
    if kind not in ("2d", "3d"):
        problem.refuse("type", 'must be "2d" or "3d"')
    plane = kind == "2d"
    units = [read_units(name, table) for name, table in root.tables("units")]
    options_table = root.table("options")
    options = read_options(options_table)
    recipe = Recipe(
        path=path, title=read_title(problem), plane=plane,
        mesh_unit=read_mesh_unit(problem, units), results=read_system(problem, "results", units),
        values_unit=read_system(problem, "values", units), units=units, options=options,
        six_nodes=options_table.data.get("six_nodes", False), materials=read_materials(root, plane),
        supports=[read_support(name, t) for name, t in root.tables("support")],
        loads=[read_load(name, t, plane) for name, t in root.tables("load")])
    check_material_units(recipe)
    if not any(use.groups for use in recipe.materials):
        raise Refusal("no material names a group: nothing would become an element", "material",
                      Place(path))
    return recipe


# --- problem, units, options --------------------------------------------------------------------


def read_title(problem: Table) -> str:
    """The solver searches the word "type" behind the title, and would find it inside."""
    title = problem.string("title", "imported mesh")
    if "type" in title.lower():
        problem.refuse("title", 'must not contain the word "type": the solver would take it for '
                       "the keyword")
    return title or "imported mesh"


def read_units(name: str, table: Table) -> Units:
    table.only("force", "length", "pressure", "factors")
    factors = table.numbers("factors", 2)
    if min(factors) < 1e-15:
        table.refuse("factors", "must be positive: the sizes of the force and of the length")
    texts = [table.need(key) and table.string(key) for key in ("force", "length", "pressure")]
    for key, text in zip(("", "force", "length", "pressure"), [name, *texts]):
        if not re.fullmatch(r"[^\s#:=,]+", text) or len(text.encode()) > LONGEST_UNIT_NAME:
            raise Refusal(f'"{text}" is no name of a unit: up to {LONGEST_UNIT_NAME} characters '
                          "without blanks", "units", table.place(key or None, value=bool(key)))
    return Units(name, texts[0], texts[1], texts[2], (factors[0], factors[1]))


def read_system(problem: Table, key: str, units: list[Units]) -> str:
    """The name of a unit system; materials and loads are in that of the results unless said."""
    name = problem.string(key)
    known = [u.name for u in units]
    if name and name not in known:
        problem.refuse(key, f'there is no [units."{name}"]{nearest(name, known)}', "units")
    if name or not units:
        return name
    if key == "values":
        return problem.string("results") or known[0]
    return known[0]


def read_mesh_unit(problem: Table, units: list[Units]) -> str:
    """The name of a length; without one, lengths are those of the first system."""
    name = problem.string("mesh_unit")
    known = [u.length for u in units]
    if name and name not in known:
        problem.refuse("mesh_unit", f'no unit system has the length "{name}"'
                       f"{nearest(name, known)}", "units")
    return name or (known[0] if known else "")


def read_options(table: Table) -> list[str]:
    """Lines of the deck, in the order of its keywords."""
    table.only("six_nodes", "solver", "gravity", "main_stresses", "main_and_local_stresses",
               "smoothing", "coplanarity", "divisions")
    lines = []
    for key, word in (("six_nodes", "ConvertTo6Nodes"), ("main_stresses", "MainStresses"),
                      ("main_and_local_stresses", "MainAndLocalStresses")):
        if table.flag(key):
            lines.append(word)
    for key, word in (("smoothing", "DoSmoothing"), ("coplanarity", "CoplanarityAngle")):
        if table.has(key):
            angle = table.number(key)
            if not 1e-15 <= angle <= 3.141592653589793:
                table.refuse(key, "must be an angle in radians, above 0 and up to pi")
            lines.append(f"{word} {angle!r}")
    if table.has("divisions"):
        count = table.number("divisions")
        if count != int(count) or not 1 <= count < 2 ** 31:
            table.refuse("divisions", "must be a whole number above 0")
        lines.append(f"NumOfDivisions {int(count)}")
    if table.has("gravity"):
        direction = table.numbers("gravity", 3)
        if not any(direction):
            table.refuse("gravity", "must not be the null vector")
        lines.append("GravityDirection " + " ".join(map(repr, direction)))
    if table.has("solver"):
        lines.append("Solver " + read_solver(table))
    return lines


def read_solver(table: Table) -> str:
    text = table.string("solver")
    words = text.split()
    if words in (["Automatic"], ["SkyLine"], ["Double"]):
        return words[0]
    if len(words) == 4 and words[0] == "Sparse" and re.fullmatch(r"\d+", words[3]):
        try:
            tolerances = [float(word) for word in words[1:3]]
        except ValueError:
            tolerances = []
        if len(tolerances) == 2 and all(0 < t <= 10 for t in tolerances) and int(words[3]) >= 10:
            return " ".join(words)
    table.refuse("solver", 'must be "Automatic", "SkyLine", "Double" or "Sparse tolerance1 '
                 'tolerance2 iterations"')


# --- groups ---------------------------------------------------------------------------------------


def read_values(table: Table) -> dict[str, float]:
    return {key: table.number(key) for key in MATERIAL_KEYS if table.has(key)}


def read_materials(root: Table, plane: bool) -> list[MaterialUse]:
    """Materials that have groups, and beams: a material of their own with the keys of both."""
    materials = {}
    for name, table in root.tables("material"):
        table.only("groups", "units", *MATERIAL_KEYS)
        groups = table.names("groups") if table.has("groups") else []
        materials[name] = MaterialUse(f'material "{name}"', groups, table, read_values(table),
                                      table.string("units"))
    beams = [read_beam(name, table, materials, plane) for name, table in root.tables("beam")]
    return [*materials.values(), *beams]


def read_beam(name: str, table: Table, materials: dict[str, MaterialUse],
              plane: bool) -> MaterialUse:
    table.only("groups", "material", "up", *MATERIAL_KEYS)
    table.need("material")
    of = table.string("material")
    if of not in materials:
        table.refuse("material", f'there is no [material."{of}"]{nearest(of, materials)}',
                     "material")
    up = table.numbers("up", 3) if table.has("up") else None
    if up is not None and plane:
        table.refuse("up", "has no meaning in a 2d problem: z is up there")
    if up is not None and not any(up):
        table.refuse("up", "must not be the null vector")
    values = {**materials[of].values, **read_values(table)}
    if up is not None and any(key in values for key in ANGLES):
        table.refuse("up", "the material has Euler angles already")
    beam = MaterialUse(f'beam "{name}"', table.names("groups"), table, values,
                       materials[of].units, True, up)
    return beam


def check_material_units(recipe: Recipe) -> None:
    known = [u.name for u in recipe.units]
    for use in recipe.materials:
        if use.units and use.units not in known:
            raise Refusal(f'units: there is no [units."{use.units}"]{nearest(use.units, known)}',
                          "units", use.table.place("units"))


def read_support(name: str, table: Table) -> SupportUse:
    table.only("groups", "codes", "values", *ANGLES)
    table.need("codes")
    codes = table.string("codes")
    if not re.fullmatch(r"[012]{3}|[012]{6}", codes):
        table.refuse("codes", "must be 3 or 6 digits, each 0 (free), 1 (held) or 2 (spring)")
    count = len(codes)
    values = [Expression(0.0)] * count
    if table.has("values"):
        values = table.expressions("values", count)
    elif "2" in codes:
        table.refuse("codes", 'a spring (2) needs its stiffness: "values"')
    angles = {key: table.number(key) for key in ANGLES if table.has(key)}
    support = SupportUse(f'support "{name}"', table.names("groups"), table, codes, values, angles)
    return support


def read_load(name: str, table: Table, plane: bool) -> LoadUse:
    kinds = ("pressure", "normal", "force")
    table.only("groups", *kinds)
    load = LoadUse(f'load "{name}"', table.names("groups"), table)
    given = [key for key in kinds if table.has(key)]
    if len(given) != 1:
        raise Refusal(f"[load.{name}] needs one of pressure, normal and force", "key", load.place)
    counts = (2, 3) if plane else (3,)
    if given == ["pressure"]:
        load.pressure = table.expressions("pressure", *counts)
    elif given == ["normal"]:
        load.normal = table.expression("normal")
    else:
        load.force = table.numbers("force", *counts)
    components = load.pressure if load.pressure is not None else load.force
    if plane and components is not None and len(components) == 3:
        third = components.pop()
        if (third.source if isinstance(third, Expression) else third) != 0:
            table.refuse(given[0], "a 2d problem has no loads along z", item=2)
    return load
