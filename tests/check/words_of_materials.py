"""Words about materials: what they lack, what cannot be, what is far from anything built."""
from bases import BASES
from words import edit

PORTAL, SPACE, PLATE, BLOCK, SPRINGS = (BASES[name] for name in ("portal", "space", "plate", "block", "springs"))
SECOND_OF_SPACE = "  2  E=2.1e11 G=8.1e10 widthY=0.1 widthZ=0.2\n"
OF_PLATE, OF_BLOCK = "  1  E=2.1e11 nu=0.3 G=8.0769e10 t=0.02\n", "  1  E=2.1e11 nu=0.3\n"
ALL_OF_PLATE, BOTH_OF_BLOCK = "(elements 1, 2, 3 and 5 more)", "(elements 1 and 2)"
BEAM_ON_PLATE = ("\nmesh\n  dimension = 3   elemtype Linear   nnode = 2\n  coordinates\n  end coordinates\n"
                 "  elements\n    9  1 5  1\n  end elements\n\nmaterials\n")
SHEAR_OF_PLATE = "Gxy=8.0769e10 Gxz=8.0769e10 Gyz=8.0769e10"


def lacking(base, line, keys, words):
    """The material of that line with these keys only."""
    number = line.split()[0]
    return edit(base, line, f"  {number}  {keys}\n"), (
        f"  [{number}]  {keys}\n", f"error: material {number} lacks {words} [missing-property]")


MISSING = [
    lacking(PORTAL, "  2  E=2.1e8 A=0.02 Iz=4e-4 Weight=78.5\n", "E=2.1e8 A=0.02",
            "Iz for a beam (elements 2 and 3)"),
    lacking(PORTAL, "  2  E=2.1e8 A=0.02 Iz=4e-4 Weight=78.5\n", "Weight=78.5",
            "E, A, Iz for a beam (elements 2 and 3)"),
    lacking(SPACE, SECOND_OF_SPACE, "Weight=78.5", "E, A, Iz, Iy, G, J for a beam in space (element 3)"),
    lacking(SPACE, SECOND_OF_SPACE, "E=2.1e11 widthY=0.1", "G, widthZ for a beam in space (element 3)"),
    lacking(SPACE, SECOND_OF_SPACE, "E=2.1e11 G=8.1e10 A=1e-2 Iz=1e-5", "Iy, J for a beam in space (element 3)"),
    # What one key would set is named by it.
    lacking(PLATE, OF_PLATE, "Weight=78500", f"E, t, G, nu for a shell {ALL_OF_PLATE}"),
    lacking(PLATE, OF_PLATE, f"Ex=2.1e11 nu=0.3 {SHEAR_OF_PLATE} t=0.02", f"Ey for a shell {ALL_OF_PLATE}"),
    lacking(PLATE, OF_PLATE, f"Ey=2.1e11 nu=0.3 {SHEAR_OF_PLATE} t=0.02", f"Ex for a shell {ALL_OF_PLATE}"),
    lacking(PLATE, OF_PLATE, "E=2.1e11 nu=0.3 Gxy=8.0769e10 t=0.02", f"Gxz, Gyz for a shell {ALL_OF_PLATE}"),
    lacking(PLATE, OF_PLATE, "E=2.1e11 nu=0.3 Gxz=8.0769e10 t=0.02", f"Gxy, Gyz for a shell {ALL_OF_PLATE}"),
    lacking(PLATE, OF_PLATE, "E=2.1e11 nuXY=0.3 G=8.0769e10 t=0.02", f"nuYX for a shell {ALL_OF_PLATE}"),
    lacking(PLATE, OF_PLATE, "E=2.1e11 nuYX=0.3 G=8.0769e10 t=0.02", f"nuXY for a shell {ALL_OF_PLATE}"),
    lacking(BLOCK, OF_BLOCK, "Weight=78500", f"E, nu for a solid {BOTH_OF_BLOCK}"),
    # An element that has the material of another family: only that one lacks something.
    (edit(PLATE, "\nmaterials\n", BEAM_ON_PLATE, OF_PLATE, OF_PLATE + SECOND_OF_SPACE),
     ("  [1]  E=2.1e11 nu", "error: material 1 lacks A, Iz, Iy, J for a beam in space (element 9) [missing-property]")),
    (edit(PLATE, "\nmaterials\n", BEAM_ON_PLATE, OF_PLATE, "  1  E=2.1e11 nu=0.3\n"),
     ("  [1]  E=2.1e11 nu=0.3\n", "error: material 1 lacks A, Iz, Iy, G, J, t for a shell and a beam in "
      "space (elements 1, 2, 3 and 6 more) [missing-property]")),
    # An element with a material of its own.
    (edit(SPRINGS, "    1  1 2  1\n", "    1  1 2  1  E=2.1e11 A=0.01\n"),
     ("    [1]  1 2  1  E", "error: the material of element 1 lacks Iz for a beam [missing-property]")),
]


def above(base, old, key, value, who, limit="above 0", shown=None):
    return edit(base, old, f"{key}={value}"), (
        f"{key}=[{value}]", f"error: {key} of material {who.split()[0]} must be {limit}: {shown or value} "
        f"({who.split(' ', 1)[1]}) [bad-material]")


IN_FIRST, IN_SHELLS, IN_SOLIDS = "1 elements 1, 2 and 4", f"1 {ALL_OF_PLATE[1:-1]}", f"1 {BOTH_OF_BLOCK[1:-1]}"
VALUES = [
    above(PORTAL, "E=2.1e8", "E", "0", "1 elements 1 and 4"),
    above(PORTAL, "E=2.1e8", "E", "-2.1e8", "1 elements 1 and 4", shown="-2.1e+08"),
    above(PORTAL, "A=0.02", "A", "-1", "2 elements 2 and 3"),
    above(PORTAL, "Iz=4e-4", "Iz", "0", "2 elements 2 and 3"),
    above(PORTAL, "Iz=4e-4", "Iz", "inf", "2 elements 2 and 3", "a finite number"),
    above(PORTAL, "Iz=4e-4", "Iz", "nan", "2 elements 2 and 3"),
    above(SPACE, "Iy=2e-5", "Iy", "-2", IN_FIRST),
    above(SPACE, "G=8.1e10", "G", "-2", IN_FIRST),
    above(SPACE, "J=3e-5", "J", "0", IN_FIRST),
    above(SPACE, "widthY=0.1", "widthY", "0", "2 element 3"),
    above(PLATE, "t=0.02", "t", "0", IN_SHELLS),
    above(PLATE, "E=2.1e11", "E", "0", IN_SHELLS),
    above(PLATE, "G=8.0769e10", "G", "0", IN_SHELLS),
    *(above(edit(PLATE, "E=2.1e11", "Ex=2.1e11 Ey=2.1e11"), f"{key}=2.1e11", key, "-3", IN_SHELLS)
      for key in ("Ex", "Ey")),
    *(above(edit(PLATE, "G=8.0769e10", SHEAR_OF_PLATE), f"{key}=8.0769e10", key, "-3", IN_SHELLS)
      for key in ("Gxy", "Gxz", "Gyz")),
    above(BLOCK, "E=2.1e11", "E", "0", IN_SOLIDS),
    (edit(SPRINGS, "    1  1 2  1\n", "    1  1 2  1  E=2.1e11 A=-1 Iz=1e-4\n"),
     ("A=[-1]", "error: A of the material of element 1 must be above 0: -1 [bad-material]")),
    # Values that nothing reads here.
    *((edit(PORTAL, "2  E=2.1e8", f"2  {key}=-2 E=2.1e8"),
       (f"{key}=[-2]", f"warning: {key} of material 2 should be above 0: -2 [bad-material]"))
      for key in ("Ey", "G", "Gxy", "Gxz", "Gyz", "t")),
    (edit(PLATE, "t=0.02", "t=0.02 A=0"), ("A=[0]", "warning: A of material 1 should be above 0: 0 [bad-material]")),
    # ---- Poisson's ratio and what follows from it
    (edit(PLATE, "nu=0.3", "nu=0.6"),
     ("nu=[0.6]", f"error: nu = 0.6 of material 1 is outside -1 to 0.5 {ALL_OF_PLATE} [bad-material]")),
    (edit(BLOCK, "nu=0.3", "nu=-1"),
     ("nu=[-1]", f"error: nu = -1 of material 1 is outside -1 to 0.5 {BOTH_OF_BLOCK} [bad-material]")),
    (edit(PORTAL, "2  E=2.1e8", "2  E=2.1e8 nu=0.5"),
     ("nu=[0.5]", "warning: nu = 0.5 of material 2 is outside -1 to 0.5 (elements 2 and 3) [bad-material]")),
    # 2.1e11 / 2 / 1.3 = 8.076923e10, in the units of the deck; 6 % more is told.
    (edit(PLATE, "G=8.0769e10", "G=8.6e10"),
     ("G=[8.6e10]", "warning: G of material 1 is 8.6e+10, but E/2/(1+nu) is 8.07692e+10 [bad-material]")),
    (edit(PORTAL, "2  E=2.1e8", "2  E=2.1e8 nu=0.3 G=2.1e8"),
     ("G=[2.1e8]", "warning: G of material 2 is 2.1e+08, but E/2/(1+nu) is 8.07692e+07 [bad-material]")),
    (edit(PORTAL, "end materials", "  3  E=2.1e8 A=0.01 Iz=2e-4\nend materials"),
     ("  [3]  E", "warning: no element has material 3 [unused]")),
]

# ---- far from anything built ------------------------------------------------------------------

POUND = 0.45359237 * 9.80665
FORCES = {"N": 1, "daN": 10, "kN": 1e3, "MN": 1e6, "kp": 9.80665, "kgf": 9.80665, "kip": 1000 * POUND, "lb": POUND,
          "lbf": POUND, "t": 9806.65, "tf": 9806.65}
LENGTHS = {"m": 1, "cm": 0.01, "mm": 0.001, "in": 0.0254, "ft": 0.3048}


def modulus_in(force, length):
    """The springs in such units, where 1e20 of them is too much for a modulus."""
    deck = edit(SPRINGS, "\nmesh\n",
                f"\nunits_names\n  own {force} {length} {force}/{length}2 1 1\nend\nunits_mesh {length}\n"
                "units_mat_and_load own\nunits_res own\nmesh\n", "E=2.1e11", "E=1e20")
    pascal = 1e20 * FORCES[force] / LENGTHS[length] ** 2
    return deck, ("E=[1e20]",
                  f"warning: E of material 1 is {pascal:.6g} N/m2 in the units of the deck; steel has 2.1e11 "
                  "[magnitude]")


MAGNITUDES = [
    *(modulus_in(force, "m") for force in FORCES),
    *(modulus_in("N", length) for length in LENGTHS),
    # 210 kN/m2, and rubber has a million N/m2.
    (edit(PORTAL, "1  E=2.1e8", "1  E=210"),
     ("E=[210]", "warning: E of material 1 is 210000 N/m2 in the units of the deck; steel has 2.1e11 [magnitude]")),
    # Named units only tell what a value stands for.
    (edit(SPRINGS, "E=2.1e11", "E=2.1e15"),
     ("E=[2.1e15]", "warning: E of material 1 is 2.1e+15: beyond anything built in any units [magnitude]")),
    (edit(SPRINGS, "    1  1 2  1\n", "    1  1 2  1  Ex=2.1e15 A=0.01 Iz=1e-4\n"),
     ("Ex=[2.1e15]",
      "warning: Ex of the material of element 1 is 2.1e+15: beyond anything built in any units [magnitude]")),
    (edit(PORTAL, "Weight=78.5\n  2", "Weight=7850\n  2"),
     ("Weight=[7850]",
      "warning: Weight of material 1 is 7.85e+06 N/m3 in the units of the deck; steel has 78500 [magnitude]")),
    (edit(PORTAL, "Weight=78.5\n  2", "Weight=0.001\n  2"),
     ("Weight=[0.001]",
      "warning: Weight of material 1 is 1 N/m3 in the units of the deck; steel has 78500 [magnitude]")),
    (edit(PORTAL, "Weight=78.5\n  2", "Weight=-78.5\n  2"),
     ("Weight=[-78.5]",
      "warning: Weight of material 1 is -78.5: only one above 0 acts, along GravityDirection [magnitude]")),
    # sqrt(4e4 / 0.02) = 1414.21, and the beams 2 and 3 are 3 long.
    (edit(PORTAL, "Iz=4e-4", "Iz=4e4"),
     ("Iz=[4e4]", "warning: Iz and A of material 2 give a radius of gyration of 1414.21 on a beam of length 3 "
      "[magnitude]")),
    # sqrt(2e-4 / 10000) = 1.41421e-4, less than 1e-4 of the columns of 4.
    (edit(PORTAL, "A=0.01 Iz", "A=10000 Iz"),
     ("A=10000 Iz=[2e-4]",
      "warning: Iz and A of material 1 give a radius of gyration of 0.000141421 on a beam of length 4 "
      "[magnitude]")),
    # Elements 1, 2 and 4 are 3, 4 and 3 long: sqrt(9 / 1e-2) = 30 is too much for the longest,
    (edit(SPACE, "Iy=2e-5", "Iy=9"),
     ("Iy=[9]", "warning: Iy and A of material 1 give a radius of gyration of 30 on a beam of length 4 [magnitude]")),
    # and sqrt(4e-10 / 1e-2) = 2e-4 too little for the shortest.
    (edit(SPACE, "Iy=2e-5", "Iy=4e-10"),
     ("Iy=[4e-10]",
      "warning: Iy and A of material 1 give a radius of gyration of 0.0002 on a beam of length 3 [magnitude]")),
]

ROWS = MISSING + VALUES + MAGNITUDES
