"""Shells: patch tests, plates with series, membranes and curved shells with published values."""
import math

from models import (Model, edge_loads, grid, on_outer_ellipse, prescribe, quarter_of_ellipses,
                    support_where, to_six)
from page import problem

MACNEAL = "R. H. MacNeal, R. L. Harder (1985)"
NAFEMS = "NAFEMS, *The Standard NAFEMS Benchmarks*"
SIX = "ConvertTo6Nodes"


# --- patch tests ---------------------------------------------------------------------------------

PATCH = """
        4--------------------3     0.24 x 0.12, t = 0.001, E = 1e6, nu = 0.25
        | `8----------7    / |
        |  |          |   /  |     inner nodes (0.04, 0.02) (0.18, 0.03)
        |  5-----------6-    |                 (0.16, 0.08) (0.08, 0.08);
        1--------------------2     each of the five quadrilaterals is cut in two
"""


def patch(title, six, field):
    model = Model(title, element="Triangle")
    model.add_nodes((0, 0, 0), (.24, 0, 0), (.24, .12, 0), (0, .12, 0), (.04, .02, 0), (.18, .03, 0),
                    (.16, .08, 0), (.08, .08, 0))
    model.add_elements((1, 2, 6), (1, 6, 5), (2, 3, 7), (2, 7, 6), (3, 4, 8), (3, 8, 7), (4, 1, 5),
                       (4, 5, 8), (5, 6, 7), (5, 7, 8))
    if six:
        to_six(model)
    model.material("E=1e6 nu=0.25 G=4e5 t=0.001")
    prescribe(model, model.where(lambda x, y, z: x in (0, .24) or y in (0, .12)), field)
    return model


def extremes(points, component):
    """The smallest and the largest value of a component over all points of all elements."""
    values = [p[component] for of_element in points.values() for p in of_element]
    return min(values), max(values)


def membrane_patch(page):
    for six in (False, True):
        model = patch("membrane patch", six, lambda x, y, z: (1e-3 * (x + y / 2), 1e-3 * (y + x / 2), 0, 0, 0, 0))
        name = "six nodes" if six else "three nodes"
        r = page.run(f"S01-membrane-patch-{name.split()[0]}", model)
        for component, what, target in ((0, "x", 4000 / 3), (1, "y", 4000 / 3), (2, "xy", 400)):
            low, high = extremes(r.points("Axial Force"), component)
            page.check(f"stress {what}, {name}, smallest", low / 1e-3, target)
            page.check(f"stress {what}, {name}, largest", high / 1e-3, target)


membrane_patch.__doc__ = PATCH + """
    The outer nodes are moved by u = 1e-3 (x + y/2), v = 1e-3 (y + x/2). The stresses are uniform at
    every integration point, 1333.33 and 400.
    """
problem("S01", "Membrane patch test", MACNEAL)(membrane_patch)


def bending_patch(page):
    model = patch("bending patch", True,
                  lambda x, y, z: (0, 0, 1e-3 * (x * x + x * y + y * y) / 2, 1e-3 * (y + x / 2),
                                   -1e-3 * (x + y / 2), 0))
    r = page.run("S02-bending-patch-six", model)
    k = 1e6 * 1e-9 / (12 * (1 - .25 ** 2))
    for component, what, target in ((0, "x", 1e-3 * 1.25 * k), (1, "y", 1e-3 * 1.25 * k),
                                    (2, "xy", 1e-3 * .375 * k)):
        values = [abs(v) for v in extremes(r.points("Momentus"), component)]
        page.check(f"moment {what}, smallest", min(values), target)
        page.check(f"moment {what}, largest", max(values), target)
    shear = max((abs(v) for c in (0, 1) for v in extremes(r.points("Shear"), c)))
    page.zero("largest shear force", shear, 1e6 * 1e-3 * 1e-3)


bending_patch.__doc__ = PATCH + """
    The outer nodes are moved by w = 1e-3 (x^2 + xy + y^2)/2 and its slopes. The moments are uniform at
    every integration point, 1.11111e-7 and 3.33333e-8, and there is no shear. Six-noded elements only:
    three-noded ones do not pass this test.
    """
problem("S02", "Bending patch test", MACNEAL)(bending_patch)


# --- membranes -----------------------------------------------------------------------------------

def elliptic_membrane(cells, six):
    model = grid("elliptic membrane", cells, cells, quarter_of_ellipses)
    model.keys += [SIX] if six else []
    model.material("E=210e9 nu=0.3 G=80.76923e9 t=0.1")
    support_where(model, ((lambda x, y, z: x == 0, "100000"), (lambda x, y, z: y == 0, "010000")),
                  always="001111")
    edge_loads(model, on_outer_ellipse, lambda nx, ny: (1e6 * nx, 1e6 * ny, 0))
    return model


def at_corner(results, block, component, node):
    """Mean over the elements around a corner, from one point or extrapolated from three."""
    values = []
    for element, (nodes, _) in enumerate(results.model.elements, 1):
        if node in nodes:
            p = [point[component] for point in results.points(block)[element]]
            c = nodes.index(node)
            values.append(p[0] if len(p) == 1 else p[c] + p[(c + 2) % 3] - p[(c + 1) % 3])
    return sum(values) / len(values)


@problem("S03", "Elliptic membrane (LE1)", NAFEMS, slow=True)
def membrane(page):
    """
        2.75 `` --.._
        |            `.        quarter of the ring between the ellipses 2 x 1
        1 --._         \\       and 3.25 x 2.75, t = 0.1, E = 2.1e11, nu = 0.3
              `.        |
                D-------       outward pressure 10 MPa on the outer edge
                2      3.25

    Stress along y at D (2, 0), the mean of the elements there: 92.7 MPa.
    """
    curves = {}
    for six, meshes in ((True, (4, 8, 16, 32)), (False, (8, 16, 32))):
        name = "six nodes" if six else "three nodes"
        for cells in meshes:
            model = elliptic_membrane(cells, six)
            r = page.run(f"S03-elliptic-membrane-{name.split()[0]}-{cells:02}", model)
            corner = model.where(lambda x, y, z: abs(x - 2) < 1e-9 and y == 0)[0]
            stress = at_corner(r, "Axial Force", 1, corner) / 0.1 / 1e6
            what = f"stress, MPa, {name}, {cells} x {cells} cells"
            if six and cells >= 16:
                page.check(what, stress, 92.7, 2e-2, digits=3)
            else:
                page.show(what, stress, 92.7, digits=3)
            curves.setdefault(name, []).append((cells, stress / 92.7))
    page.convergence("Stress at D over its target", "cells along each side", list(curves.items()),
                     low=0.6, high=1.05)


# --- plates --------------------------------------------------------------------------------------

def quarter_plate(title, side, cells, six, material, clamped=False):
    """One quarter of a square plate, corner at the origin, symmetry at its far sides."""
    half = side / 2
    model = grid(title, cells, cells, lambda x, y, z: (half * x, half * y, 0), cross=True)
    model.keys += [SIX] if six else []
    model.material(material)
    support_where(model, (
        (lambda x, y, z: x == 0, "001111" if clamped else "001100"),
        (lambda x, y, z: y == 0, "001111" if clamped else "001010"),
        (lambda x, y, z: x == half, "000010"),
        (lambda x, y, z: y == half, "000100")), always="110001")
    centre = model.where(lambda x, y, z: x == half and y == half)[0]
    return model, centre


def uniform(model, q):
    model.loads("global_pressure_loads", model.all(), 0, 0, -q)


def navier(t, E=1.0, nu=0.3, terms=400):
    """Deflection of the centre of the unit square under unit load with transverse shear."""
    D, S = E * t ** 3 / (12 * (1 - nu ** 2)), 5 / 6 * E / (2 * (1 + nu)) * t
    total = 0.0
    for m in range(1, terms, 2):
        for n in range(1, terms, 2):
            k = math.pi ** 2 * (m * m + n * n)
            q = 16 / (math.pi ** 2 * m * n) * (-1) ** ((m + n) // 2 - 1)
            total += q * (1 / (D * k * k) + 1 / (S * k))
    return total


@problem("S06", "Simply supported square plate with transverse shear",
         "S. Timoshenko, S. Woinowsky-Krieger, *Theory of Plates and Shells*; shear term added", True)
def simply_supported_plate(page):
    """
        +-------+-------+
        |       |       |     a = 1, E = 1, nu = 0.3, q = 1, t = 0.1 and 0.01
        |       |  / \\  |     hard support: deflection and tangential rotation held
        +-------+--\\-/--|     one quarter, cells of four triangles
        |       |       |
        +-------+-------+

    Deflection of the centre: Navier's double series, each term with its shear deflection; for the thin
    plate it tends to 0.00406235 q a^4 / D.
    """
    curves = {}
    for t in (0.1, 0.01):
        target = navier(t)
        for six, meshes in ((True, (2, 4, 8)), (False, (4, 8, 16))):
            for cells in meshes:
                model, centre = quarter_plate("simply supported plate", 1, cells, six,
                                              f"E=1 nu=0.3 G=0.384615384615 t={t}")
                uniform(model, 1)
                name = "six" if six else "three"
                r = page.run(f"S06-plate-t{t}-{name}-{cells:02}", model)
                w = -r.u(centre, 3)
                what = f"centre, t = {t}, {name} nodes, {cells} x {cells} cells"
                if (six and cells == 8) or (not six and cells == 16 and t == 0.1):
                    page.check(what, w, target, 3e-3)
                else:
                    page.show(what, w, target)
                curves.setdefault(f"{name} nodes, t = {t}", []).append((cells, w / target))
    page.convergence("Deflection of the centre over the series", "cells along each side of the quarter",
                     list(curves.items()), low=0.2, high=1.1)


@problem("S08", "Thin square plate", MACNEAL, slow=True)
def thin_plate(page):
    """
        +-------+-------+
        |       |       |     a = 2, t = 1e-4, E = 1.7472e7, nu = 0.3
        |       |   q, P|     q = 1e-4 or 4e-4 in the centre
        +-------+-------+     simply supported (hard) or clamped
        |       |       |     one quarter, 8 x 8 cells of four triangles
        +-------+-------+

    Deflection of the centre; side over thickness is 20 000, so that the iterative solver may need more
    than 20 000 steps and is given 100 000. Six nodes.
    """
    patient = "Sparse 1e-10 1e-8 100000"
    for clamped, kind, targets in ((False, "simply-supported", (4.062, 11.60)),
                                   (True, "clamped", (1.26, 5.60))):
        for load, target in zip(("uniform", "centre"), targets):
            model, centre = quarter_plate("thin plate", 2, 8, True,
                                          "E=1.7472e7 nu=0.3 G=6.72e6 t=1e-4", clamped)
            if load == "uniform":
                uniform(model, 1e-4)
            else:
                model.load(centre, 0, 0, -1e-4, 0, 0, 0)
            r = page.run(f"S08-thin-plate-{kind}-{load}", model, patient)
            page.check(f"centre, {kind.replace('-', ' ')}, {load} load", -r.u(centre, 3), target, 2e-2,
                       digits=4 if target > 2 and load == "uniform" else 3)


# --- curved shells -------------------------------------------------------------------------------

@problem("S13", "Cylindrical shell patch test (LE2, case 2)", NAFEMS)
def cylinder_patch(page):
    """
                 .  free edge: 60 MPa along the tangent
              . '|
           .'    |         R = 1, 30 degrees, L = 0.5, t = 0.01
         /|   .'           E = 2.1e11, nu = 0.3
        | |.'              outward pressure 0.6 MPa
        |/  clamped        symmetry on the curved edges

    Hoop stress of the middle surface: 60 MPa, here in an element in the middle.
    """
    angle = math.pi / 6
    tangent = (-math.sin(angle), math.cos(angle))
    for six in (False, True):
        for around, along in ((6, 4), (12, 8)):
            model = grid("cylinder patch", around, along,
                         lambda x, y, z: (math.cos(angle * x), math.sin(angle * x), 0.5 * y))
            model.keys += ["CoplanarityAngle 0.1"] + ([SIX] if six else [])
            model.material("E=210e9 nu=0.3 G=80.76923e9 t=0.01")
            support_where(model, ((lambda x, y, z: y == 0, "111111"),
                                  (lambda x, y, z: z in (0, 0.5), "001110")))
            model.loads("local_pressure_loads", model.all(), 0, 0, 6e5)
            straight_edge_loads(model, lambda x, y, z: abs(y - math.sin(angle)) < 1e-9,
                                (6e5 * tangent[0], 6e5 * tangent[1], 0))
            name = "six" if six else "three"
            r = page.run(f"S13-cylinder-patch-{name}-{around:02}", model)
            middle = 2 * (around * (along // 2) + around // 2) + 1
            stress = r.points("Axial Force")[middle][0][0] / 0.01 / 1e6
            page.check(f"hoop stress, MPa, {name} nodes, {around} x {along} cells", stress, 60, 2e-3)


def straight_edge_loads(model, test, load):
    """The same force per length on every edge whose two corners pass the test."""
    edge_loads(model, test, lambda *_: load)


@problem("S15", "Cylindrical roof", MACNEAL)
def roof(page):
    """
              crown
            ,-----.           radius 25, length 50, 80 degrees, t = 0.25,
          ,'       `.         E = 4.32e8, nu = 0, weight 90 per area
        free edges, rigid diaphragms at the ends

    Deflection of the middle of the free edge: 0.3024 (0.3086 by the theory of deep shells). One
    quarter, 8 x 8 cells, flat six-noded elements; finer meshes go further down, see the limits below.
    """
    model = roof_model(8)
    r = page.run("S15-roof", model)
    page.check("free edge, down", -r.u(81, 3), 0.3024, 5e-2, digits=4)
    page.drawing("S15-roof", "deformed", "Displacements of the quarter")


def roof_model(cells):
    angle = math.pi * 40 / 180
    model = grid("cylindrical roof", cells, cells,
                 lambda x, y, z: (25 * math.sin(angle * x), 25 * y, 25 * math.cos(angle * x)))
    model.keys += [SIX, "CoplanarityAngle 0.2", "GravityDirection 0 0 -1"]
    model.material("E=4.32e8 nu=0 G=2.16e8 t=0.25 Weight=360")
    support_where(model, ((lambda x, y, z: y == 0, "101000"), (lambda x, y, z: y == 25, "010101"),
                          (lambda x, y, z: x == 0, "100011")))
    return model


CANTILEVER_TARGETS = ((0, "extension", 3e-5, 2), (1, "in plane", .1081, 4),
                      (2, "across the plane", .4321, 4))


@problem("S17", "Straight cantilever of shells", MACNEAL)
def cantilever(page):
    """
        ///+--------------------+
        ///|                    | -> unit force at the tip, in turn along x, y, z
        ///+--------------------+
                6 x 0.2, t = 0.1, E = 1e7, nu = 0.3

    Mean displacement of the tip along the load. Six nodes.
    """
    for nx, ny in ((12, 2), (24, 4)):
        for d, what, target, digits in CANTILEVER_TARGETS:
            model = grid("straight cantilever", nx, ny, lambda x, y, z: (6 * x, 0.2 * y, 0))
            model.keys.append(SIX)
            model.material("E=1e7 nu=0.3 G=3846153.84615 t=0.1")
            support_where(model, ((lambda x, y, z: x == 0, "111111"),))
            straight_edge_loads(model, lambda x, y, z: x == 6, [5.0 * (i == d) for i in range(3)])
            r = page.run(f"S17-cantilever-{nx}-{'xyz'[d]}", model)
            tip = model.where(lambda x, y, z: x == 6)
            mean = sum(r.u(n, d + 1) for n in tip) / len(tip)
            page.check(f"{what}, {nx} x {ny} cells", mean, target, 1e-2, digits)
