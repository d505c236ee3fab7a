"""Every text with which the reader of the solver refuses a deck: (deck, its line, the text).

`{}` marks the place in a small sound deck; the line is that of the record that is refused, or the text
of that line.
"""
from bases import BASES

PORTAL, SPACE, PLATE, BLOCK, SPRINGS = (BASES[name] for name in
                                        ("portal", "space", "plate", "block", "springs"))


def put(base, old, new):
    assert old in base, old
    return base.replace(old, new, 1)


REFUSALS = [
    # the words that are searched
    (put(SPRINGS, "PROBLEM beam on springs\n", "FRAME on springs\n"), 1,
     "can't find word ***problem*** in input file"),
    ("PROBLEM x\n", 1, "can't find word ***type*** in input file"),
    (put(SPRINGS, "TYPE 2d", "TYPE 4d"), "TYPE 4d", "Type of problem unknown. Only 2d and 3d"),
    (put(SPRINGS, "dimension = 2", "dimension=2"), "  dimension=2",
     "can't find word ***dimension*** in input file"),
    (put(SPRINGS, "elemtype Linear", "elemtype=Linear"), "  dimension",
     "can't find word ***elemtype*** in input file"),
    (put(SPRINGS, "nnode = 2", "nnode=2"), "  dimension",
     "can't find word ***nnode*** in input file"),
    (put(SPRINGS, "end nodal_point_loads\n", ""), "nodal_point_loads",
     "can't find word ***end*** in input file"),
    # the problem section
    (put(SPRINGS, "\nmesh\n", "\nloads 1\nmesh\n"), "loads", "Unknown key name=loads"),
    (put(SPRINGS, "\nmesh\n", "\nNumOfDivisions 0\nmesh\n"), "NumOfDivisions",
     "error: Number of divisions must be positive"),
    (put(SPRINGS, "\nmesh\n", "\nDoSmoothing 4\nmesh\n"), "DoSmoothing",
     "error: DoSmoothing must have angle >0 and <PI rad"),
    (put(SPRINGS, "\nmesh\n", "\nCoplanarityAngle 0\nmesh\n"), "CoplanarityAngle",
     "error: CoplanarityAngle must have angle >0 and <PI rad"),
    (put(SPRINGS, "\nmesh\n", "\nSolver quick\nmesh\n"), "Solver",
     "error: type of solver must be: Automatic, SkyLine, Double or Sparse"),
    (put(SPRINGS, "\nmesh\n", "\nSolver Sparse 1e-6 1e-4 9\nmesh\n"), "Solver",
     "Solver Sparse needs three aditional arguments:"),
    (put(SPRINGS, "\nmesh\n", "\nGravityDirection 0 0 0\nmesh\n"), "GravityDirection",
     "error: GravityDirection must be a vector no null"),
    ("PROBLEM x\nTYPE 2d\n", 0, "error: it is necessary at least one mesh"),
    (SPRINGS + "mesh\n  dimension = 2   elemtype Linear   nnode = 2\n  coordinates\n  end\n"
     "  elements\n    2  1 3  1\n  end\n", "    2  1 3  1",
     "error: All elements must have different number. Check elm num: 2"),
    (SPRINGS + "mesh\n  dimension = 2   elemtype Linear   nnode = 2\n  coordinates\n  end\n"
     "  elements\n  end\n" * 1 + "mesh\n  dimension = 2   elemtype Linear   nnode = 2\n"
     "  coordinates\n  end\n  elements\n  end\n" * 9, None, "error: maximum number of meshes is: 10"),
    # units
    (put(PORTAL, "units_res kN-m", "units_res kip"), "units_res",
     "error: Unit name 'kip' has not been previously defined"),
    (put(PORTAL, "units_res kN-m", "units_res a-name-of-21-letters-"), "units_res",
     "error: Unit name 'a-name-of-21-letters-' is too long"),
    (put(PORTAL, "units_mesh m", "units_mesh ft"), "units_mesh",
     "error: Unit length name 'ft' has not been previously defined"),
    (put(PORTAL, "SI    N   m   Pa   1     1", "SI    N   m   Pa   1     0"), "  SI",
     "error: Units_mesh must be a positive number"),
    (put(PORTAL, "kPa  1000  1", "kPa  0  1"), "  kN-m",
     "error: units_mat_and_load must be two positive numbers"),
    (put(put(PORTAL, "kPa  1000  1", "kPa  0  1"), "units_mat_and_load kN-m", "units_mat_and_load SI"),
     "  kN-m", "error: units_res must be two positive numbers and three names"),
    (put(put(PORTAL, "end\nunits_mesh", "  bad   N   m   Pa   0   1\nend\nunits_mesh"), "1  E=2.1e8",
         "1  units=bad E=2.1e8"), "  bad",
     "error: factors of unit system 'bad' must be two positive numbers"),
    (put(PORTAL, "kPa  1000  1", "kPa  1000"), "  kN-m",
     "error: 'units_names' items should be: name nameN nameM namePa facN facM"),
    ("PROBLEM x\nTYPE 2d\nunits_names\n  SI N m Pa 1 1\n", "units_names",
     "error: 'units_names' should finish with the 'end' word"),
    # meshes
    (put(SPRINGS, "dimension = 2", "dimension = 4"), "  dimension",
     "error: mesh dimension must be 2 or 3"),
    (put(SPRINGS, "Linear", "Beam"), "  dimension",
     "ElemType must be: Linear,Triangle,Quadrilateral, Tetrahedra or Hexahedra"),
    (put(SPRINGS, "nnode = 2", "nnode = 5"), "  dimension", "Unknown Femview type"),
    ("PROBLEM x\nTYPE 2d\nmesh\ndimension = ", None, "end of file and no digit found"),
    (put(SPRINGS, "    2  4 0\n", "    2  a 0\n"), "    2  a",
     "error: node: 2 has not correct coordinates"),
    (put(SPRINGS, "    3  8 0\n", "    4  8 0\n"), "    4  8",
     "error: list of nodes does not contain all numbers"),
    (put(SPRINGS, "    1  0 0\n    2  4 0\n    3  8 0\n", ""), "  coordinates",
     "error: list of nodes does not contain any node"),
    (put(SPRINGS, "    2  2 3  1\n", "    2  2 x  1\n"), "    2  2 x",
     "error: element: 2 has not correct nodes"),
    (put(SPRINGS, "    2  2 3  1\n", "    2  2 2  1\n"), "    2  2 2",
     "error: element: 2  have both nodes equal"),
    (put(SPRINGS, "    2  2 3  1\n", "    1  2 3  1\n"), "    1  2 3",
     "Repeated index 1 in VoidPlex"),
    (put(SPRINGS, "    2  2 3  1\n", "    0  2 3  1\n"), "    0  2 3", "Invalid void index 0"),
    (put(SPRINGS, "    2  2 3  1\n", "    2147483648  2 3  1\n"), "    2147483648",
     "error: number out of range in input file"),
    (BLOCK + "mesh\n  dimension = 3   elemtype Linear   nnode = 2\n  coordinates\n  end\n  elements\n"
     "    9  1 2  1\n  end\n", None,
     "error: Element tetrahedra cannot be mixed with any other element type"),
    # materials
    (put(SPRINGS, "1  E=2.1e11", "1  Q=2.1e11"), "  1  Q",
     "Input of materials not correct. Unknown char: 'Q'"),
    (put(SPRINGS, "1  E=2.1e11", "1  Ez=2.1e11"), "  1  Ez",
     "error in materials. Young Modulus can only be E, Ex or Ey"),
    (put(SPRINGS, " Iz=", " Ix="), "  1  E=2.1e11",
     "error in materials. Inertia modules cannot be for X axe"),
    (put(SPRINGS, " Iz=", " Gzz=1 Iz="), "  1  E=2.1e11",
     "error in materials. G can be: G Gxy Gxz or Gyz"),
    (put(SPRINGS, "Iz=1e-4", "Iz="), "  1  E=2.1e11",
     "error in materials. Key without value: 'Iz'"),
    (put(SPRINGS, "Iz=1e-4", "Iz=1e-4 Euler4=1"), "  1  E=2.1e11",
     "error: Euler angles must be: Euler1,Euler2 or Euler3"),
    (put(SPRINGS, "end materials", "  1  E=1\nend materials"), "  1  E=1",
     "Repeated index 1 in VoidPlex"),
    (put(SPRINGS, "    2  2 3  1\n", "    2  2 3  1 7\n"), "    2  2 3",
     "error in materials. Key without value: '7'"),
    # supports
    (put(SPRINGS, "  1  110", "  9  110"), "  9  110",
     "error: Trying to assign constrain to unknown node"),
    (put(SPRINGS, "  1  110  0 0 0", "  1  110  0 0"), "  1  110",
     "Not reading correctly the constraints. Number=1"),
    (put(SPACE, "  5  111000  0 0 0 0 0 0", "  5  11100  0 0 0 0 0 0"), "  5  11100 ",
     "Not reading correctly the constraints. -A- Number=5"),
    (put(SPRINGS, "  1  110  0 0 0", "  1  110  0 0 0  units"), "  1  110",
     "Not reading correctly the constraints. -B- Number=1"),
    (put(SPRINGS, "end constraints", "end constraints\nrotules\n  9\nend"), "  9",
     "error: Trying to assign rotule to unknown node"),
    # loads
    (put(SPRINGS, "  2  0 -1000 0", "  9  0 -1000 0"), "  9  0",
     "error: Trying to assign Load to unknown node"),
    (SPRINGS[:SPRINGS.index("  2  0 -1000 0")] + "  2", None,
     "Not reading correctly the loads A. Number=2"),
    (put(SPRINGS, "  2  0 -1000 0", "  2  0 -1000"), "  2  0 -1000",
     "Not reading correctly the loads B. Number=2"),
    (put(SPACE, "  3  0 0 -10000 0 0 0", "  3  0 0 -10000"), "  3  0 0 -10000",
     "Not reading correctly the loads C. Number=3"),
    (put(SPRINGS, "  2  0 -1000 0", "  2  0 -1000 0 7"), "  2  0 -1000 0 7",
     "Not reading correctly the loads. -D- Number=2"),
    (put(PORTAL, "  3  0 -20\n", "  9  0 -20\n"), "  9  0 -20",
     "error: trying to assign load to element number 9 and it does not exist"),
    (put(PORTAL, "  3  0 -20\n", "  3  -20\n"), "  3  -20",
     "Not reading correctly preassure_loads. ElemNum=3"),
    (put(PORTAL, "  3  0 -20\n", "  3  0 -20 7\n"), "  3  0 -20 7",
     "Not reading correctly the preassure_loads. ElemNum=3"),
    (put(put(SPACE, "local_pressure_loads", "face_loads"), "  3  0 0 -2000 0\n", "  3  0 0 -2000\n"),
     "  3  0 0 -2000", "error: applying a shell load to a beam element. ElemNum=3"),
    (put(BLOCK, "  2  -1  0 0 -1000", "  2  4  0 0 -1000"), "  2  4",
     "error: face 4 does not exist in element 2"),
    (put(PORTAL, "  3  0 -20\n", "  3  0 -20 Euler1=1\n"), "  3  0 -20 Euler1",
     "error: Local z axe must be (0,0,1) for 2D problems.Element: 3"),
    # an element type that is read, and loads on it
    (put(put(PLATE, "Triangle   nnode = 3", "Quadrilateral   nnode = 4"), "    1  1 2 5  1\n",
         "    1  1 2 5 4  1\n"), None, None),
]
REFUSALS = [row for row in REFUSALS if row[2] is not None]
