"""Words about single records: numbers, keys, codes and values that the reader takes otherwise than they look."""
from bases import BASES
from words import edit

PORTAL, SPACE, PLATE, BLOCK, SPRINGS = (BASES[name] for name in ("portal", "space", "plate", "block", "springs"))


def value_of_A(value, severity, words):
    """Material 2 of the portal with that area, and what is said of it."""
    said = f'{severity}: "{value}" is read as {words} [number-cut]'
    return edit(PORTAL, "A=0.02", f"A={value}"), (f"A=[{value}]", said)


# What is read ends before the first letter or sign that no number has.
NUMBERS = [
    value_of_A("0,02", "error", "0: a decimal comma?"),
    value_of_A(",02", "error", "0: a decimal comma?"),
    value_of_A("-1,5e-2", "error", "-1: a decimal comma?"),
    value_of_A("2d-2", "error", "2: write e for the exponent"),
    value_of_A("2.1D-2", "error", "2.1: write e for the exponent"),
    value_of_A("2Oe-3", "error", "2: a letter O in place of a zero?"),
    value_of_A("0.o2", "error", "0.: a letter O in place of a zero?"),
    value_of_A("0.l2", "error", "0.: a letter in place of a one?"),
    value_of_A("2Ie-3", "error", "2: a letter in place of a one?"),
    value_of_A("2d", "error", "2: write the number alone"),
    value_of_A("2dm2", "error", "2: write the number alone"),
    value_of_A("2oz", "error", "2: write the number alone"),
    value_of_A("2lb", "error", "2: write the number alone"),
    value_of_A("200cm2", "error", "200: write the number alone"),
    value_of_A("2e-2M2", "error", "2e-2: write the number alone"),
    value_of_A("small", "error", "0: write the number alone"),
    value_of_A("1/50", "error", "1: write one number"),
    value_of_A("0.0.2", "error", "0.0: write one number"),
    value_of_A("-", "error", "0: write one number"),
    # Nothing is lost behind a separator.
    value_of_A("0.02,", "warning", "0.02: write one number"),
    value_of_A("0.02;", "warning", "0.02: write one number"),
    # Behind a 0 the reader takes octal digits: 010 is 8.
    (edit(PORTAL, "    2  3 2  2\n", "    2  3 2  010\n"),
     ("3 2  [010]\n", 'error: "010" is read as 8: octal behind a 0 [number-cut]')),
    (edit(BLOCK, "2  -1  0 0", "2  010  0 0"),
     ("2  [010]  0 0", 'error: "010" is read as 8: octal behind a 0 [number-cut]')),
    (edit(PORTAL, "    2  3 2  2\n", "    2  3 2  09\n"),
     ("3 2  [09]\n", 'error: "09" is read as 0: octal behind a 0 [number-cut]')),
    *((edit(PORTAL, "NumOfDivisions 10", f"NumOfDivisions {value}"),
       (f"NumOfDivisions [{value}]", f'error: "{value}" is read as {read}: write a whole number [number-cut]'))
      for value, read in (("10.5", "10"), ("1e2", "1"))),
    # One comma in a record is a habit: the others are not told.
    (edit(PORTAL, "  2  12.5 0 0", "  2  12,5 0,0 0,0"),
     ("2  [12,5] 0,0", 'error: "12,5" is read as 12: a decimal comma? [number-cut]')),
    *((edit(SPRINGS, "\nmesh\n", f"\n{words}\nmesh\n"),
       (words.replace(value, f"[{value}]"), f'error: "{value}" is read as {value[0]}: a decimal comma? [number-cut]'))
      for words, value in (("DoSmoothing 0,5", "0,5"), ("CoplanarityAngle 1,5", "1,5"), ("NumOfDivisions 8,5", "8,5"),
                           ("GravityDirection 0 0,6 -1", "0,6"), ("Solver Sparse 1e-6 2,5e-3 500", "2,5e-3"))),
    # The place of a material's number.
    *((edit(PORTAL, "    2  3 2  2\n", f"    2  3 2  {word}\n"),
       (f"3 2  [{word}]\n", f'error: "{word}" is read as 0: write its number [number-cut]'))
      for word in ("C30", "steel")),
    # Only a separator too much: the reader takes what was meant.
    (edit(PORTAL, "rotules\n  2\n", "rotules\n  2,\n"),
     ("  [2,]\n", 'warning: "2," is read as 2: write the number alone [node-number]')),
    ("\ufeff" + PORTAL,),
    # ---- numbers of nodes, elements and records
    (edit(PORTAL, "    2  0 4\n", "    2.0  0 4\n"),
     ("    [2.0]  0 4\n", 'error: "2.0" is read as 2, ".0" as what follows [node-number]')),
    (edit(PORTAL, "    2  3 2  2\n", "    2  3; 2  2\n"),
     ("    2  [3;] 2", 'error: "3;" is read as 3, ";" as what follows [node-number]')),
    (edit(PORTAL, "    2  3 2  2\n", "    2  3 b  2\n"),
     ("    2  3 [b]  2", 'error: "b" is no whole number [node-number]')),
    (edit(PORTAL, "    2  0 4\n", "    N2  0 4\n"),
     ("    [N2]  0 4\n", 'error: "N2" is no number: the list would end here [node-number]')),
    (edit(PORTAL, "A=0.01 Iz=2e-4 Weight=78.5\n", "A=0.01\n     Iz=2e-4 Weight=78.5\n"),
     ("     [Iz=2e-4] Weight", 'error: "Iz=2e-4" is no number: the list would end here [node-number]')),
    # ---- blanks around the sign
    (edit(PORTAL, "A=0.02", "A = 0.02"),
     ("A [=] 0.02", 'error: A is read as 0: a blank stands before "=", write A=value [empty-value]')),
    (edit(PORTAL, "A=0.02", "A :0.02"),
     ("A [:0.02]", 'error: A is read as 0: a blank stands before ":0.02", write A=value [empty-value]')),
    (edit(SPRINGS, "Euler3=0.5", "Euler3 = 0.5"),
     ("Euler3 [=]", 'error: Euler3 is read as 0: a blank stands before "=", write Euler3=value [empty-value]')),
    (edit(PORTAL, "A=0.02", "A="),
     ("A= [Iz=4e-4]", 'error: A has no value: "Iz=4e-4" is taken for it [empty-value]')),
    (edit(PORTAL, "NumOfDivisions 10", "NumOfDivisions = 10"),
     ("[NumOfDivisions] =",
      "error: no value is read behind NumOfDivisions: write NumOfDivisions=value [empty-value]")),
    (edit(PORTAL, "units_res kN-m", "units_res : kN-m"),
     ("[units_res] :", "error: no value is read behind units_res: write units_res=value [empty-value]")),
    # ---- behind the last value
    (edit(PORTAL, "    3  3 4\n", "    3  3 4 0\n"),
     ("3  3 4 [0]\n", 'warning: "0" stands behind the last value: nothing reads it [surplus]')),
    (edit(PORTAL, "rotules\n  2\n", "rotules\n  2 3\n"),
     ("  2 [3]\n", 'warning: "3" stands behind the last value: nothing reads it [surplus]')),
    (edit(SPRINGS, "2  0 -1000 0\n", "2  0 -1000 0 Euler3=1\n"),
     ("[Euler3]=1", 'warning: "Euler3" stands behind the last value: nothing reads it [surplus]')),
    # A column behind all nodes is one finding.
    (edit(SPRINGS, "1  0 0\n", "1  0 0 7\n", "2  4 0\n", "2  4 0 7\n", "3  8 0\n", "3  8 0 7\n"),
     ("1  0 0 [7]\n", 'warning: "7" stands behind the last value: nothing reads it [surplus]')),
    # Of a word no more than 40 letters are shown.
    (edit(SPRINGS, "2  4 0\n", "2  4 0 " + 41 * "a" + "\n"),
     ("2  4 0 [" + 41 * "a" + "]",
      'warning: "' + 40 * "a" + '..." stands behind the last value: nothing reads it [surplus]')),
    (edit(SPRINGS, "2  4 0\n", "2  4 0 " + 40 * "a" + "\n"),
     ("2  4 0 [" + 40 * "a" + "]",
      'warning: "' + 40 * "a" + '" stands behind the last value: nothing reads it [surplus]')),
    # ---- codes and angles
    (edit(PORTAL, "5  110", "5  140"),
     ("5  1[4]0", "error: support code 4: only 0 (free), 1 (prescribed) and 2 (spring) [support-code]")),
    # 30 pi / 180 = 0.523599, -400 pi / 180 = -6.98132.
    (edit(SPRINGS, "Euler3=0.5", "Euler3=30"),
     ("Euler3=[30]", "warning: Euler3 is in radians, and 30 is beyond 2 pi: 30 degrees are 0.523599 [degrees]")),
    (edit(SPRINGS, "Euler3=0.5", "Euler3=-400"),
     ("Euler3=[-400]",
      "warning: Euler3 is in radians, and -400 is beyond 2 pi: -400 degrees are -6.98132 [degrees]")),
    (edit(PORTAL, "GravityDirection 0 -1 0", "GravityDirection 0 -9.81 0"),
     ("Direction [0] -9.81",
      "warning: only the direction counts: the length 9.81 has no effect, Weight is the force per "
      "volume [gravity]")),
    # sqrt(2^2 + 3^2 + 6^2) = 7
    (edit(SPACE, "\nmesh\n", "\nGravityDirection 2 -3 -6\nmesh\n"),
     ("Direction [2] -3", "warning: only the direction counts: the length 7 has no effect, Weight is the force per "
      "volume [gravity]")),
]


def keyed(base, old, new, key, severity, words, code):
    """A row whose word is a key of a material."""
    return edit(base, old, new), (f"[{key}]=", f'{severity}: "{key}" {words} [{code}]')


KEYS = [
    keyed(PORTAL, "A=0.02", "Weigth=0.02", "Weigth", "error", 'is not known: did you mean "Weight"?', "unknown-word"),
    keyed(PORTAL, "A=0.02", "Q=0.02", "Q", "error", "is not known", "unknown-word"),
    keyed(SPRINGS, "Euler3=0.5", "Eulr3=0.5", "Eulr3", "error", 'is not known: did you mean "Euler3"?',
          "unknown-word"),
    *(keyed(SPRINGS, "Euler3=0.5", f"Eulr{i}=0.5", f"Eulr{i}", "error", f'is not known: did you mean "Euler{i}"?',
            "unknown-word") for i in (1, 2)),
    keyed(SPRINGS, "Euler3=0.5", "unts=m", "unts", "error", 'is not known: did you mean "units"?', "unknown-word"),
    keyed(SPRINGS, "Euler3=0.5", "angle=0.5", "angle", "error", "is not known", "unknown-word"),
    keyed(PORTAL, "Weight=78.5\n  2", "Weight=78.5 Alpha=1.2e-5\n  2", "Alpha", "error",
          'sets A by its beginning and overrides "A"', "key-prefix"),
    keyed(PLATE, "nu=0.3", "number=4 nu=0.3", "number", "error",
          'sets nu by its beginning and is overridden by "nu"', "key-prefix"),
    keyed(SPACE, "J=3e-5", "J=3e-5 Iyz=1e-6", "Iyz", "error", 'sets Iy by its beginning and overrides "Iy"',
          "key-prefix"),
    keyed(PORTAL, "A=0.02", "areas=0.02", "areas", "error", "sets A by its beginning", "key-prefix"),
    keyed(SPACE, "1  E=2.1e11", "1  Exx=2.1e11", "Exx", "error", "sets Ex by its beginning", "key-prefix"),
    keyed(SPACE, "2  E=2.1e11 G=", "2  E=2.1e11 Gxyz=", "Gxyz", "error", "sets Gxy by its beginning", "key-prefix"),
    keyed(SPACE, "J=3e-5", "J=3e-5 Euler1x=0", "Euler1x", "error", "sets Euler1 by its beginning", "key-prefix"),
    keyed(SPACE, "widthY=0.1", "widthYY=0.1", "widthYY", "error", "sets widthY by its beginning", "key-prefix"),
    keyed(PLATE, "t=0.02", "temperature=0.02", "temperature", "error", "sets t by its beginning", "key-prefix"),
    keyed(SPACE, "2  E=2.1e11 G=", "2  E=2.1e11 gxyz=", "gxyz", "error", "sets Gxy by its beginning", "key-prefix"),
    # Small first letters are the same keys.
    (edit(PORTAL, "2  E=2.1e8 A=0.02 Iz", "2  ex=2.1e8 ey=2.1e8 a=0.02 iz"),),
    (edit(PLATE, "G=", "gxy=8.1e10 gxz=8.1e10 gyz="),),
    # Other names of the same thing set what they mean.
    *(keyed(SPACE, old, new + old[-5:], new, "warning", f"sets {name} by its beginning", "key-prefix")
      for old, new, name in [("A=1e-2", "Area", "A"), ("A=1e-2", "area", "A"), ("Iy=2e-5", "Iyy", "Iy"),
                             ("Iy=2e-5", "iyy", "Iy"), ("Iz=8e-5", "Izz", "Iz"), ("Iz=8e-5", "izz", "Iz"),
                             ("Iz=8e-5", "Inertia", "Iz"), ("J=3e-5", "Jx", "J"), ("J=3e-5", "Jxx", "J"),
                             ("J=3e-5", "Jt", "J"), ("J=3e-5", "jx", "J")]),
    keyed(PLATE, "t=0.02", "thk=0.02", "thk", "warning", "sets t by its beginning", "key-prefix"),
    keyed(PLATE, "t=0.02", "th=0.02", "th", "warning", "sets t by its beginning", "key-prefix"),
]

ROWS = NUMBERS + KEYS
