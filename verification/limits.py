"""What the elements are not good at, measured. These models are built and run here and nowhere kept;
they have no verdict."""
import math

import runs
from models import grid, support_where
from page import table
from problems_shells import (MACNEAL, NAFEMS, SIX, at_corner, navier, quarter_plate, roof_model,
                             straight_edge_loads, uniform)
from problems_solids import cantilever_model


def near(value, wanted):
    """Coordinates that come from sines."""
    return abs(value - wanted) < 1e-9


def mean(results, nodes, d):
    return sum(results.u(n, d) for n in nodes) / len(nodes)


def thin_plate(run, cells):
    """S06 with t = 0.01 and three nodes."""
    model, centre = quarter_plate("simply supported plate", 1, cells, False,
                                  "E=1 nu=0.3 G=0.384615384615 t=0.01")
    uniform(model, 1)
    return -run(model).u(centre, 3) / navier(0.01)


def linear_cantilever(run, cells):
    """T06 with four nodes, force across the thinner side."""
    model = cantilever_model(cells, 2, quadratic=False)
    return mean(run(model), model.where(lambda x, y, z: x == 6), 3) / 0.4321


def roof(run, cells):
    """S15."""
    return -run(roof_model(cells)).u((cells + 1) ** 2, 3) / 0.3024


def hemisphere(run, cells):
    """Quarter of a hemisphere with a hole of 18 degrees, pulled and pushed at its equator."""
    R = 10.0

    def place(x, y, _):
        around, up = math.pi / 2 * x, math.radians(72) * y
        return (R * math.cos(up) * math.cos(around) if x < 1 else 0.0,
                R * math.cos(up) * math.sin(around), R * math.sin(up))
    model = grid("hemisphere", cells, cells, place)
    model.keys.append(SIX)
    model.material("E=6.825e7 nu=0.3 G=2.625e7 t=0.04")
    support_where(model, ((lambda x, y, z: near(x, 0), "100011"),
                          (lambda x, y, z: near(y, 0), "010101"),
                          (lambda x, y, z: near(x, R), "001000")))
    pulled = model.where(lambda x, y, z: near(x, R))[0]
    pushed = model.where(lambda x, y, z: near(y, R))[0]
    model.load(pulled, 1, 0, 0, 0, 0, 0)
    model.load(pushed, 0, -1, 0, 0, 0, 0)
    return run(model).u(pulled, 1) / 0.094


def skew_plate(run, cells):
    """Rhombic plate of 30 degrees, simply supported; main stress in its middle."""
    s, c = math.sin(math.pi / 6), math.cos(math.pi / 6)
    model = grid("skew plate", cells, cells, lambda x, y, z: (x + c * y, s * y, 0))
    model.keys.append(SIX)
    model.material("E=210e9 nu=0.3 G=80.76923e9 t=0.01")
    edges = [n for n in model.where(lambda x, y, z: near(y, 0) or near(y, s)
                                    or near(x, c / s * y) or near(x, 1 + c / s * y))]
    for node in range(1, len(model.nodes) + 1):
        model.support(node, "111001" if node in edges else "110001")
    model.loads("global_pressure_loads", model.all(), 0, 0, -700)
    results = run(model)
    middle = model.where(lambda x, y, z: near(x, (1 + c) / 2) and near(y, s / 2))[0]
    mx, my, mxy = (at_corner(results, "Momentus", i, middle) for i in range(3))
    main = abs(mx + my) / 2 + math.hypot((mx - my) / 2, mxy)
    return main * 6 / 0.01 ** 2 / 0.802e6


def twisted_strip(run, cells):
    """Strip of 12 x 1.1 x 0.32, twisted by 90 degrees, force across its tip's thickness."""
    def place(x, y, _):
        angle, lever = math.pi / 2 * x, 1.1 * (y - 0.5)
        return 12 * x, lever * math.cos(angle), lever * math.sin(angle)
    model = grid("twisted strip", 6 * cells, cells, place)
    model.keys += [SIX, "CoplanarityAngle 0.001"]
    model.material("E=29e6 nu=0.22 G=11885245.9 t=0.32")
    support_where(model, ((lambda x, y, z: x == 0, "111111"),))
    straight_edge_loads(model, lambda x, y, z: x == 12, (0, 1 / 1.1, 0))
    return mean(run(model), model.where(lambda x, y, z: x == 12), 2) / 0.001754


def hook(run, cells):
    """Raasch's hook: two arcs of 60 and 150 degrees, force along its width at the tip."""
    first, second = 14.0, 46.0
    length = first * math.pi / 3 + second * math.pi * 5 / 6

    def place(x, y, _):
        along = length * x
        if along <= first * math.pi / 3:
            a = along / first
            return first * math.sin(a), first * (1 - math.cos(a)), 20 * y
        a = (along - first * math.pi / 3) / second
        centre = ((first + second) * math.sin(math.pi / 3),
                  first - (first + second) * math.cos(math.pi / 3))
        turn = math.pi - math.pi / 6 - a  # from the centre, clockwise
        return centre[0] + second * math.cos(turn), centre[1] + second * math.sin(turn), 20 * y
    model = grid("hook", 9 * cells, cells, place)
    model.keys += [SIX, "CoplanarityAngle 0.001"]
    model.material("E=3300 nu=0.35 G=1222.2222 t=2")
    support_where(model, ((lambda x, y, z: near(x, 0) and near(y, 0), "111111"),))
    tip = place(1, 0, 0)

    def at_tip(x, y, _):
        return near(x, tip[0]) and near(y, tip[1])
    straight_edge_loads(model, at_tip, (0, 0, 1 / 20))
    return mean(run(model), model.where(at_tip), 3) / 4.9352


# (what, source, model, cells along a side or across)
MEASURED = (
    ("simply supported plate of S06, t = 0.01, three nodes, by the series", "", thin_plate,
     (4, 8, 16)),
    ("cantilever of T06, four nodes, bent across its thinner side", MACNEAL, linear_cantilever,
     (12, 24)),
    ("rhombic plate of 30 degrees, simply supported, six nodes: main stress in the middle (LE6)",
     NAFEMS, skew_plate, (4, 8, 16)),
    ("hemisphere with a hole of 18 degrees, six nodes: displacement under a point force", MACNEAL,
     hemisphere, (4, 8, 16)),
    ("cylindrical roof of S15, six nodes", MACNEAL, roof, (4, 8, 16)),
    ("strip twisted by 90 degrees, six nodes: force across its thickness", MACNEAL, twisted_strip,
     (1, 2, 4)),
    ("hook of two arcs, six nodes: force along its width",
     "N. F. Knight, *AIAA J.* 35 (1997)", hook, (1, 2, 4)),
)

WORDS = """\
## What these elements are not good at

Ratios of our values to the published ones, with the direct solver, over the number of cells along a side (plates,
hemisphere, roof), along the length (cantilever) or across the width (strip, hook). They have no verdict; they say what
to stay away from.

"""

REASONS = """
- Three-noded shells in bending: the transverse shear of the linear element hinders bending, the more the thinner the
  plate. Use `ConvertTo6Nodes`; three nodes are for membranes, and for plates not thinner than a twentieth of their
  span.
- Four-noded tetrahedra in bending: constant strain in each element. They are for bulky parts without bending.
- Skew plates and double-curved thin shells (rhombic plate, hemisphere): the answer of the flat six-noded element
  converges from below, but slowly; 8 x 8 cells of the hemisphere show a third of its displacement.
- Twisted strips and hooks, and fine meshes of the roof: the answer grows with every refinement. The rotation about the
  normal has no stiffness of its own in these flat elements (see [elements](elements.md)), so that facets at an angle
  pass twisting moments to each other incompletely. Model such parts with solids or beams.
- Solids towards Poisson's ratio 0.5: stiffer by a few per cent even with ten nodes (T04).
- Beams do not deform in shear: short beams are stiffer than those of a theory with shear deformation. A load along a
  beam that is hinged at its first node follows a rule of its own (see [conventions](conventions.md#hinges)).
"""


def text(program):
    """The table, measured."""
    def run(model):
        return runs.run_program(program, model, runs.DIRECT)
    rows = []
    for what, source, model, meshes in MEASURED:
        ratios = "; ".join(f"{cells}: {model(run, cells):.2f}" for cells in meshes)
        rows.append((what, source, ratios))
    return WORDS + table(("", "source", "cells: ratio"), rows) + "\n" + REASONS
