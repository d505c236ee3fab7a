"""Words about loads and supports, what the solver refuses of a model, and what it would cost."""
import math

from bases import BASES
from words import edit
from words_of_model import SLENDER

PORTAL, SPACE, PLATE, BLOCK, SPRINGS = (BASES[name] for name in ("portal", "space", "plate", "block", "springs"))
FORCE = "nodal_point_loads\n  2  0 -1000 0\nend nodal_point_loads\n"
STRAIGHT = "goes straight into its support: no result shows it [load-on-fixed]"


def projected(base, line):
    """A projected load more."""
    return f"{base}global_projected_pressure_loads\n  {line}\nend global_projected_pressure_loads\n"


LOADS = [
    (edit(SPRINGS, FORCE, "", "0 -0.01 0", "0 0 0"),
     (None, "warning: nothing moves the model: no loads, no weight, no settlements [no-loads]")),
    (edit(SPRINGS, "  2  0 -1000 0\n", "  1  0 -1000 0\n"),
     ("  1  0 [-1000]", f"warning: a load of -1000 on node 1 {STRAIGHT}")),
    (edit(PORTAL, "  4  10 0 0\n", "  1  0 0 7\n"), ("  1  0 0 [7]", f"warning: a load of 7 on node 1 {STRAIGHT}")),
    # In axes that are turned by 0.5: y' has 1000 cos 0.5,
    (edit(SPRINGS, "  2  0 -1000 0\n", "  3  0 -1000 0\n"),
     ("  [3]  0 -1000", f"warning: a load of {-1000 * math.cos(0.5):.6g} on node 3 {STRAIGHT}")),
    # and x' of 2000 along y 2000 sin 0.5.
    (edit(SPACE, "5  111000  0 0 0 0 0 0", "5  111000  0 0 0 0 0 0  Euler3=0.5", "3  0 0 -10000", "5  0 2000 0"),
     ("  [5]  0 2000", f"warning: a load of {2000 * math.sin(0.5):.6g} on node 5 {STRAIGHT}")),
    # ---- given twice
    (edit(PORTAL, "  4  10 0 0\n", "  02  10 0 0\n"),
     ("  [02]  10", "warning: node 2 has a load on line 44 already: both are added [duplicate-load]")),
    (edit(PORTAL, "  3  0 -20\n", "  2  0 -5\n"),
     ("  [2]  0 -5", "warning: element 2 has such a load on line 49 already: both are added [duplicate-load]")),
    (edit(BLOCK, "  2  -1  0 0 -1000\n", "  2  1  0 0 -1000\n  2  1  0 0 -5\n"),
     ("  [2]  1  0 0 -5",
      "warning: element 2, face 1, has such a load on line 29 already: both are added [duplicate-load]")),
    # ---- without effect
    (edit(PORTAL, "GravityDirection 0 -1 0", "GravityDirection 0 0 -1"),
     ("[GravityDirection]", "warning: the weight acts along z, out of the plane: it has no effect [gravity]")),
    (projected(PORTAL, "1  0 -5"),
     ("  [1]  0 -5", "warning: element 1 has no size across this projected load: it has no effect [no-effect-load]")),
    (projected(PLATE, "4  3 4 0"),
     ("  [4]  3 4 0",
      "warning: element 4 has no size across this projected load: it has no effect [no-effect-load]")),
]

PLANE, IN_SPACE = ["x", "y", "rotation"], ["x", "y", "z", "rotation x", "rotation y", "rotation z"]


def support(degrees, degree, code, value):
    """A line of codes and values, 0 but for one."""
    codes, values = ["0"] * degrees, ["0"] * degrees
    codes[degree], values[degree] = str(code), str(value)
    return "".join(codes) + "  " + " ".join(values)


def replaced(line, words):
    """A further line for node 5 of the portal, whose codes are 110."""
    return edit(PORTAL, "end constraints", f"  05  {line}\nend constraints"), (
        f"  [05]  {line}", f"warning: {words} of line 36 [replaced-support]")


SUPPORTS = [
    # Every degree by its name: a value that is alone, and a spring that is none.
    *((edit(base, "end constraints", f"  02  {support(len(names), i, code, value)}\nend constraints"),
       ("  02  " + support(len(names), i, code, f"[{value}]"), f"warning: {words.format(name)} [{rule}]"))
      for base, names in ((PORTAL, PLANE), (SPACE, IN_SPACE)) for i, name in enumerate(names)
      for code, value, words, rule in (
          (0, 0.25, "0.25 for {} of node 2 has no effect: its code is 0 (free)", "value-without-code"),
          (2, 0, "the spring for {} of node 2 has no stiffness", "spring"),
          (2, -9e7, "the spring for {} of node 2 has a negative stiffness", "spring"))),
    (edit(SPRINGS, "0 5e6 0", "0 5e18 0"),
     ("0 [5e18] 0", "warning: the spring at node 2 is a million times stiffer than the model around it: prescribe 0 "
      "[spring]")),
    replaced("010  0 0.01 0", "y of node 5: prescribed 0.01 replaces prescribed 0"),
    replaced("200  1e5 0 0", "x of node 5: spring 100000 replaces prescribed 0"),
    (edit(SPRINGS, "  3  010", "  02  010  0 -0.5 0\n  3  010", "  2  0 -1000", "  2  7 0"),
     ("  [02]  010", "warning: y of node 2: prescribed -0.5 replaces spring 5e+06 of line 22 [replaced-support]")),
    (edit(SPRINGS, "Euler3=0.5\n", "Euler3=0.5\n  03  010  0 -0.01 0  Euler3=0.6\n"),
     ("  [03]  010", "warning: the axes of the support at node 3 replace those of line 23 [replaced-support]")),
]

# ---- what the solver refuses ------------------------------------------------------------------

TO_2D = ("111111  0 0 0 0 0 0", "111  0 0 0")
WEIGHT = "write GravityDirection 0 -1 0 for a weight along -y"
REFUSED = [
    (edit(PLATE, "ConvertTo6Nodes\n", "", "TYPE 3d", "TYPE 2d", *8 * TO_2D,
          "face_loads\n  1  0 0 -1000\n  3  0 0 -1000\n"
          "end face_loads", "nodal_point_loads\n  5  0 0 -1000\nend"),
     ("[elemtype]", "error: triangle elements need a problem of type 3d [model]")),
    (edit(PLATE, "Triangle   nnode = 3", "Quadrilateral   nnode = 4"),
     ("[elemtype]", "error: elemtype unknown [model]")),
    (edit(BLOCK, "\nmesh\n", "\nSolver Double\nmesh\n"),
     ("[Solver]", "error: Double solver not implemented for tetrahedras [model]")),
    (edit(SLENDER, "nnode = 3", "nnode = 6", "    3  1 0.1 0\n",
          "    3  0 1 0\n    4  0.5 0 0\n    5  0.5 0.5 0\n    6  0 0.5 0\n", "    1  1 2 3  1\n",
          "    1  1 2 3 4 5 6  1\n",
          "\nmesh\n", "\nSolver Double\nmesh\n"),
     ("[Solver]", "error: Solver DOUBLE needs a shell mesh of 3-noded triangles [model]")),
    (edit(SPRINGS, "  3  010  0 -0.01 0  Euler3=0.5", "  3  010  0 -0.01 0  Euler1=0.5"),
     ("  [3]  010", "error: Local z axe must be (0,0,1) for 2D problems.Node: 3 [model]")),
    (edit(PORTAL, "end global_pressure_loads\n", "end\nface_loads\n  3  0 -5\nend\n"),
     ("  [3]  0 -5", "error: applying a shell load to a beam element. ElemNum=3 [model]")),
    (edit(PORTAL, "GravityDirection 0 -1 0", "GravityDirection 0 -1 0.2"),
     ("[GravityDirection]", "error: for 2D problems GravityDirection_Z must be 0.0 [model]", WEIGHT)),
    # Without the keyword, at the material that has a weight.
    (edit(PORTAL, "GravityDirection 0 -1 0\n", "", "Iz=2e-4 Weight=78.5", "Iz=2e-4"),
     ("  [2]  E", "error: for 2D problems GravityDirection_Z must be 0.0 [model]", WEIGHT)),
    (edit(BLOCK, "    2  2 5 3 4  1\n", "    2  5 2 3 4  1\n"),
     ("    [2]  5 2", "error: element 2 has jacobian <=0 [model]")),
    # Axes that fit no beam along y: one finding for the material.
    (edit(SPACE, "widthZ=0.2", "widthZ=0.2 Euler3=0"),
     ("    [3]  3 4", "error: Local x axe is orthogonal to the direction of the beam. Element: 3 [model]")),
    (edit(PLATE, "t=0.02", f"t=0.02 Euler2={math.pi / 2!r}"),
     ("    [1]  1 2 5", "error: error in element 1. Normal to element and X local are parallel [model]")),
    (edit(PLATE, "E=2.1e11 nu=0.3", "Ex=2e11 Ey=1e11 nuXY=0.8 nuYX=1.6"),
     ("  [1]  Ex", "error: error in element 1 nuXY*nuYX must be less than 1 [model]")),
    (edit(PLATE, "E=2.1e11 nu", "Ex=2.1e11 Ey=1e11 nu"),
     ("  [1]  Ex", "error: error in element 1 Ex*nuXY must be equal to Ey*nuYX [model]")),
]

# ---- cost -------------------------------------------------------------------------------------

# Each of 2 beams has 5e6 + 1 stations, each with 4 blocks (displacements, 3 forces) of 45 bytes: 1.8 GB.
STATIONS = edit(SPRINGS, "\nmesh\n", "\nNumOfDivisions 5000000\nmesh\n")


def fan(beams):
    """Beams from node 1 to an arc around it: each node is joined to the first, so that the profile is full."""
    angles = [0.5 * i / beams for i in range(1, beams + 1)]
    nodes = [f"    {i}  {math.cos(angle)!r} {math.sin(angle)!r} 0\n" for i, angle in enumerate(angles, 2)]
    elements = [f"    {i}  1 {i + 1}  1\n" for i in range(1, beams + 1)]
    return (SPACE[:SPACE.index("\nmesh")] + "\nSolver SkyLine\nmesh\n  dimension = 3   elemtype Linear   nnode = 2\n"
            "  coordinates\n    1  0 0 0\n" + "".join(nodes) + "  end coordinates\n  elements\n" + "".join(elements)
            + "  end elements\nmaterials\n  1  E=2.1e11 G=8.1e10 widthY=1e-3 widthZ=2e-3\nend materials\n"
            "constraints\n  1  111111  0 0 0 0 0 0\nend constraints\n"
            "nodal_point_loads\n  2  0 0 -1e-6 0 0 0\nend nodal_point_loads\n")


COSTS = [(STATIONS, ("[NumOfDivisions]", "warning: the stations of the beams take 1.8 GB in the result file: fewer "
                     "NumOfDivisions? [cost]"))]

# With --no-solve. 5301 nodes in a full half: 5301 * 5302 / 2 blocks of 36 numbers of 8 bytes are 4.04725 GB.
UNSOLVED = [(fan(5300), ("[Solver]", "warning: Solver SkyLine takes 4.04725 GB for its matrix: Solver Sparse takes "
                         "less "
                         "[cost]"))]

ROWS = LOADS + SUPPORTS + REFUSED + COSTS
