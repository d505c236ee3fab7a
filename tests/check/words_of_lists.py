"""Words about lists, sections and headings: what is missing, given twice, not closed, or asked for and not there."""
from bases import BASES
from words import edit

PORTAL, SPACE, PLATE, BLOCK, SPRINGS = (BASES[name] for name in ("portal", "space", "plate", "block", "springs"))


def nodes(*numbers):
    """The springs with nodes of these numbers, in one line."""
    lines = "".join(f"    {number}  {4 * i} 0\n" for i, number in enumerate(numbers))
    return edit(SPRINGS, "    1  0 0\n    2  4 0\n    3  8 0\n", lines)


def gaps(numbers, mark, words):
    return nodes(*numbers), (mark, f"error: node numbers must be 1, 2, 3 ...: {words} [number-gap]")


def swallowed(base, end, mark, words):
    """The section whose end is taken out."""
    return edit(base, end, ""), (mark, f"error: the section has no end: {words} [missing-end]")


def asked(deck, mark, words, code):
    return deck, (mark, f"error: {words} [{code}]")


NUMBERS = [
    gaps([1, 2, 4], "    [4]  8", "3 is missing"),
    gaps([1, 2, 5, 6], "    [5]  8", "3 and 4 are missing"),
    gaps([1, 2, 6, 7], "    [6]  8", "3 to 5 are missing"),
    gaps([1, 400, 3], "    [400]  4", "2 is missing, 400 stands in its place"),
    # Each gap at the number behind it, up to five of them.
    gaps([1, 3, 6], "    [3]  4", "2 is missing")
    + (("    [6]  8", "error: node numbers must be 1, 2, 3 ...: 4 and 5 are missing [number-gap]"),),
    gaps([2, 5, 7, 11, 13, 15], "    [2]  0", "1, 3 and 4, 6, 8 to 10 and more are missing"),
    # ---- given twice
    (edit(PORTAL, "    4  6 4\n", "    3  6 4\n"),
     ("    [3]  6 4", "error: node 3 is given twice: first on line 18 [duplicate-number]")),
    (edit(PORTAL, "    3  3 4  2\n", "    2  3 4  2\n"),
     ("    [2]  3 4  2", "error: element 2 is given twice: first on line 24 [duplicate-number]")),
    (edit(PORTAL, "  2  E=2.1e8", "  1  E=2.1e8"),
     ("  [1]  E=2.1e8 A=0.02", "error: material 1 is given twice: first on line 30 [duplicate-number]")),
    (SPRINGS + "mesh\n  dimension = 2   elemtype Linear   nnode = 2\n  coordinates\n  end\n  elements\n"
     "    2  3 1  1\n  end\n",
     ("    [2]  3 1  1", "error: element 2 is given twice: first on line 13 [duplicate-number]")),
    (edit(PORTAL, "rotules\n  2\n", "rotules\n  2\n  02\n"),
     ("  [02]\n", "warning: node 2 is a hinge on line 40 already [duplicate-number]")),
    (edit(PORTAL, "1000  1\nend", "1000  1\n  SI  kN  m  kPa  1  1\nend"),
     ("  [SI]  kN", 'warning: unit system "SI" is defined twice: first on line 4, which counts [duplicate-number]')),
    # ---- asked for
    asked(edit(PORTAL, "    4  4 5  1\n", "    4  4 12  1\n"), "    [4]  4 12",
          "node 12 does not exist: asked for by element 4", "unknown-node"),
    asked(edit(PORTAL, "    3  3 4  2\n    4  4 5  1\n", "    3  3 12  2\n    4  12 5  1\n"), "    [3]  3 12",
          "node 12 does not exist: asked for by elements 3 and 4", "unknown-node"),
    asked(edit(PORTAL, "    5  6 0\n", ""), "    [4]  4 5",
          "node 5 does not exist: asked for by element 4, a support", "unknown-node"),
    asked(edit(PORTAL, "  5  110", "  15  110"), "  [15]  110",
          "node 15 does not exist: asked for by a support", "unknown-node"),
    asked(edit(PORTAL, "rotules\n  2\n", "rotules\n  22\n"), "  [22]\n",
          "node 22 does not exist: asked for by a hinge", "unknown-node"),
    asked(edit(PORTAL, "  4  10 0 0", "  44  10 0 0"), "  [44]  10",
          "node 44 does not exist: asked for by a load", "unknown-node"),
    asked(edit(PORTAL, "rotules\n  2\n", "rotules\n  44\n", "  4  10 0 0", "  44  10 0 0"), "  [44]\n",
          "node 44 does not exist: asked for by a hinge, a load", "unknown-node"),
    asked(edit(PORTAL, "  5  110", "  44  110", "  2  12.5 0 0\n  4  10 0 0", 3 * "  44  10 0 0\n"), "  [44]  110",
          "node 44 does not exist: asked for by 3 loads, a support", "unknown-node"),
    asked(edit(PORTAL, "  3  0 -20\n", "  33  0 -20\n"), "  [33]  0 -20",
          "element 33 does not exist: asked for by a load", "unknown-element"),
    asked(edit(PORTAL, "    2  3 2  2\n", "    2  3 2  7\n"), "    [2]  3 2  7",
          "material 7 does not exist: asked for by element 2", "unknown-material"),
    asked(edit(PORTAL, "  2  E=2.1e8", "  3  E=2.1e8"), "    [2]  3 2",
          "material 2 does not exist: asked for by elements 2 and 3", "unknown-material"),
    # Of a list of numbers six are shown.
    asked(edit(PLATE, "  1  E=2.1e11", "  2  E=2.1e11"), "    [1]  1 2 5",
          "material 1 does not exist: asked for by elements 1, 2, 3, 4, 5, 6 and 2 more", "unknown-material"),
    asked(edit(PORTAL, "    2  3 2  2\n", "    2  3 2\n"), "    [2]  3 2\n", "element 2 has no material",
          "unknown-material"),
    asked(edit(PORTAL, "    2  3 2  2\n    3  3 4  2\n", "    2  3 2\n    3  3 4\n"), "    [2]  3 2\n",
          "elements 2 and 3 have no material", "unknown-material"),
    asked(edit(SPRINGS, "materials\n  1  E=2.1e11 A=0.01 Iz=1e-4\nend materials\n", ""), "    [1]  1 2",
          "no element has a material: the deck has no section materials", "unknown-material"),
]

# The records that the reader takes up to the next "end".
SECTIONS = [
    swallowed(PORTAL, "end materials\n", "\n[materials]\n", '"constraints" and 2 records are swallowed'),
    swallowed(PORTAL, "end constraints\n", "\n[constraints]\n", '"rotules" and 1 record are swallowed'),
    swallowed(PORTAL, "  end coordinates\n", "  [coordinates]\n", '"elements" and 4 records are swallowed'),
    swallowed(edit(PORTAL, "  2  12.5 0 0\n  4  10 0 0\n", ""), "end rotules\n", "\n[rotules]\n",
              '"nodal_point_loads" and 0 records are swallowed'),
    swallowed(edit(SPRINGS, "\nmesh\n", "\nunits_names\n  SI  N  m  Pa  1  1\nend\nmesh\n"), "end\n",
              "[units_names]", '"mesh" and 3 records are swallowed')
    + (("[units_names]", "warning: unit systems are named, but units_mesh, units_mat_and_load, units_res are "
        "missing: factors 1 are taken [units-default]"),),
    swallowed(PORTAL, "end global_pressure_loads\n", "\n[global_pressure_loads]\n", "the deck ends first"),
    # ---- words that are not known
    (edit(PORTAL, "\nmaterials\n", "\nmaterails\n"),
     ("[materails]", 'error: "materails" is not known: did you mean "materials"? [unknown-word]')),
    (edit(PORTAL, "global_pressure_loads\n", "pressure\n"),
     ("\n[pressure]\n", 'error: "pressure" is not known [unknown-word]')),
    (edit(PORTAL, "nnode = 2", "nnodes = 2"),
     ("[nnodes]", 'error: "nnodes" is not known: did you mean "nnode"? [unknown-word]')),
    (edit(PORTAL, "end materials", "edn materials"),
     ("[edn]", 'error: "edn" is not known: did you mean "end"? [unknown-word]')),
    (edit(PORTAL, "TYPE 2d", "TIPO 2d"),
     ("[TIPO]", 'error: "TIPO" is not known: did you mean "type"? [unknown-word]')),
    *((edit(PORTAL, "\nrotules\n", f"\n{word}\n"),
       (f"\n[{word}]\n", f'error: "{word}" is not known: did you mean "rotules"? [unknown-word]'))
      for word in ("hinges", "releases")),
    *((edit(deck, old, f"{old} Euler4=1"),
       (mark, "error: Euler angles must be: Euler1,Euler2 or Euler3 [unknown-word]"))
      for deck, old, mark in ((PORTAL, "  3  0 -20", "  [3]  0 -20 E"), (PORTAL, "  5  110  0 0 0", "  [5]  110"))),
    ("PROBLEM x\nTYPE 2d\n", (None, "error: it is necessary at least one mesh [syntax]")),
    # ---- words that are taken for others
    (edit(PORTAL, "PROBLEM portal", "# My problems\nPROBLEM portal"),
     ("My [problems]", 'warning: "problems" is taken as the keyword "problem" [keyword-in-text]')),
    (edit(PORTAL, "PROBLEM portal", "PROBLEM of type beam"),
     ("of [type] beam", 'error: "type" is taken as a keyword: put it elsewhere [keyword-in-text]')),
    (edit(PORTAL, "TYPE 2d", "prototype 2d"),
     ("[prototype]", 'warning: "prototype" is taken as the keyword "type" [keyword-in-text]')),
    (edit(PORTAL, "PROBLEM portal", "PROBLEM prototype of a frame"),
     ("[prototype]", 'error: "prototype" is taken as the keyword "type": put it elsewhere [keyword-in-text]')),
    (edit(PORTAL, "  2  E=2.1e8", "  bending beam\n  2  E=2.1e8"),
     ("[bending]", 'error: "bending" is taken as the keyword "end": put it elsewhere [keyword-in-text]')),
    (edit(PORTAL, "units_names\n", "units_names\n  endura N m Pa 1 1\n"),
     ("[endura]", 'error: "endura" is taken as the keyword "end": put it elsewhere [keyword-in-text]')),
    # ---- headings that their lists do not fit
    (edit(PORTAL, "dimension = 2", "dimension = 3"),
     ("[dimension]", "error: the dimension is 3, but the nodes have 2 coordinates [syntax]")),
    (edit(SPACE, "dimension = 3", "dimension = 2"),
     ("[dimension]", "error: the dimension is 2, but the nodes have 3 coordinates [syntax]")),
    (edit(PLATE, "nnode = 3", "nnode = 6"),
     ("[nnode]", "error: nnode is 6, but the elements have 3 nodes and a material [syntax]")),
    *((edit(base, f"TYPE {right}", f"TYPE {wrong}"),
       ("[TYPE]", f"error: the type of the problem is {wrong}, but no support fits it; the mesh has the other "
        "dimension [syntax]")) for base, right, wrong in ((SPACE, "3d", "2d"), (PORTAL, "2d", "3d"))),
    *((edit(PORTAL, line, cut),
       (mark, "error: too few values: what stands on the next line is taken for the rest [syntax]"))
      for line, cut, mark in (("    3  3 4\n", "    3  3\n", "    [3]  3\n"),
                              ("    2  3 2  2\n", "    2  3\n", "    [2]  3\n"),
                              ("Direction 0 -1 0", "Direction 0 -1", "[GravityDirection]"))),
]


def refused(deck, mark, words, hint):
    """What the reader says, and what helps to understand it."""
    return deck, (mark, f"error: {words} [syntax]", hint)


HINTS = [
    refused(edit(SPRINGS, "TYPE 2d", "TYPE 4d"), "[TYPE]", "Type of problem unknown. Only 2d and 3d",
            "write TYPE 2d or TYPE 3d, with a blank"),
    refused(edit(SPRINGS, "PROBLEM beam", "FRAME beam"), "[FRAME]", "can't find word ***problem*** in input file",
            "the first word must be PROBLEM"),
    refused("PROBLEM x\n", "[PROBLEM]", "can't find word ***type*** in input file",
            "a line TYPE 2d or TYPE 3d is missing"),
    *(refused(edit(SPRINGS, f"{word}{sign}", f"{word}={value}"), f"[{word}={value}]",
              f"can't find word ***{word}*** in input file",
              "in a mesh block it must stand between blanks")
      for word, sign, value in (("dimension", " = 2", "2"), ("elemtype", " Linear", "Linear"),
                                ("nnode", " = 2", "2"))),
    *(refused(edit(PORTAL, f"  {word}\n", ""), mark, f"can't find word ***{word}*** in input file",
              "in a mesh block it must stand between blanks")
      for word, mark in (("coordinates", "    [1]  0 0"), ("elements", "    [1]  1 2"))),
    refused(edit(PORTAL, "    3  3 4\n", "    0  3 4\n"), "    [0]  3 4", "Invalid void index 0",
            "numbers begin at 1"),
    refused(edit(PORTAL, "5  110  0 0 0", "5  110  0 0"), "  [5]  110",
            "Not reading correctly the constraints. Number=5",
            "one code per degree, then one value per degree"),
    refused(edit(SPACE, "5  111000  0 0 0 0 0 0", "5  11100  0 0 0 0 0 0"), "  [5]  11100 ",
            "Not reading correctly the constraints. -A- Number=5", "one code per degree, then one value per degree"),
    refused(edit(PORTAL, "5  110  0 0 0", "5  110  0 0 0 units"), "  [5]  110",
            "Not reading correctly the constraints. -B- Number=5", "a value or a key stands alone at the end"),
    refused(edit(PORTAL, "4  10 0 0", "4  10 0"), "  [4]  10 0", "Not reading correctly the loads B. Number=4",
            "one number per degree of freedom"),
    refused(edit(SPACE, "3  0 0 -10000 0 0 0", "3  0 0 -10000 0 0 0 units"), "  [3]  0 0 -10000",
            "Not reading correctly the loads. -D- Number=3", "a value or a key stands alone at the end"),
    (edit(SPRINGS, "\nmesh\n", "\nSolver Sparse 0 0 0\nmesh\n"),
     ("[Solver]", "error: Solver Sparse needs three aditional arguments: [syntax]",
      "    Solver: Sparse tolerance1 tolerance2 MaxIterations", "with 0.0<tolerance<10 and MaxIterations>10 and",
      " tolerance1<=tolerance2<10")),
    refused(edit(SPACE, "3  0 0 -10000 0 0 0", "3  0 0 -10000"), "  [3]  0 0 -10000",
            "Not reading correctly the loads C. Number=3", "one number per degree of freedom"),
    refused(edit(PORTAL, "Weight=78.5\n  2", "Weight=\n  2"), "  [1]  E=",
            "error in materials. Key without value: 'Weight'",
            "every key needs a value: key=value"),
    refused(edit(PORTAL, "Weight=78.5\n  2", "Weight=78.5  # steel\n  2"), "  [1]  E=",
            "Input of materials not correct. Unknown char: '#'", "no comment stands behind values"),
]

# The portal's units for the plate, whose lengths and forces are any.
IN_UNITS = edit(PLATE, "\nmesh\n", PORTAL[PORTAL.index("units_names"):PORTAL.index("NumOf")] + "mesh\n",
                "E=2.1e11", "E=2.1e8", "G=8.0769e10", "G=8.0769e7")


def behind(base, section, called=None):
    """The base with a section, perhaps of another name, in front of the units of all values."""
    begin, end = base.index(f"\n{section}\n") + 1, f"end {section}\n"
    text, keyword, name = base[begin:base.index(end) + len(end)], "units_mat_and_load kN-m\n", called or section
    deck = edit(base, keyword, "", text, "", "  end elements\n",
                "  end elements\n" + text.replace(section, name) + keyword)
    line = deck[:deck.index(f"\n{name}\n") + 1].count("\n") + 1
    return deck, ("[units_mat_and_load]", f"warning: units_mat_and_load stands behind {name} on line {line}, whose "
                  "values it does not scale [units-order]")


UNITS = [
    behind(PORTAL, "constraints"),
    behind(PORTAL, "nodal_point_loads"),
    behind(PORTAL, "global_pressure_loads"),
    behind(PORTAL, "global_pressure_loads", "local_pressure_loads"),
    behind(PORTAL, "global_pressure_loads", "global_projected_pressure_loads"),
    behind(IN_UNITS, "face_loads"),
    *((edit(PORTAL, f"{keyword}\n", "") + f"{keyword}\n",
       (f"\n[{name}] {system}",
        f"warning: {name} stands behind {first} on line {line}, whose values it does not scale [units-order]"))
      for name, system, first, line in (("units_mesh", "m", "mesh", 12), ("units_res", "kN-m", "mesh", 12),
                                        ("units_mat_and_load", "kN-m", "materials", 28))
      for keyword in [f"{name} {system}"]),
    *((edit(PORTAL, *(part for name in names for part in (name, ""))),
       ("[units_names]",
        f"warning: unit systems are named, but {words} missing: factors 1 are taken [units-default]"))
      for names, words in ((["units_mesh m\n"], "units_mesh is"), (["units_res kN-m\n"], "units_res is"),
                           (["units_mat_and_load kN-m\n"], "units_mat_and_load is"),
                           (["units_mesh m\n", "units_res kN-m\n"], "units_mesh, units_res are"),
                           (["units_mesh m\n", "units_mat_and_load kN-m\n", "units_res kN-m\n"],
                            "units_mesh, units_mat_and_load, units_res are"))),
    # Results are in the units that are named last, and what was read before is in the others.
    (PORTAL + "units_res SI\n",
     ("[units_res] SI", "warning: units_res stands behind mesh on line 13, whose values it does not scale "
      "[units-order]")),
    # One that stands too late, and one that is missing, are two mistakes.
    (edit(PORTAL, "units_mesh m\n", "", "units_res kN-m\n", "") + "units_res kN-m\n",
     ("[units_names]",
      "warning: unit systems are named, but units_mesh is missing: factors 1 are taken [units-default]"),
     ("[units_res] kN-m", "warning: units_res stands behind mesh on line 11, whose values it does not scale "
      "[units-order]")),
    # A further list of systems is none given twice.
    (edit(PORTAL, "units_mesh m\n", "units_names\n  N-mm  N  mm  MPa  1  0.001\nend\nunits_mesh m\n"),),
    (edit(PORTAL, "units_mesh m\n", "units_names\n  SI  N  m  Pa  1  1\nend\nunits_mesh m\n"),
     ("  [SI]  N  m  Pa", 'warning: unit system "SI" is defined twice: first on line 4, which counts '
      "[duplicate-number]")),
    # One mistake, however often the system is asked for.
    (edit(PORTAL, PORTAL[PORTAL.index("units_names"):PORTAL.index("units_mesh")], ""),
     ("[units_mesh]", "error: Unit length name 'm' has not been previously defined [syntax]")),
    (edit(PORTAL, "  kN-m  kN", "  kNm   kN"),
     ("[units_mat_and_load]", "error: Unit name 'kN-m' has not been previously defined [syntax]")),
    (edit(PORTAL, "kPa  1000  1", "kPa  0,001  1"),
     ("kPa  [0,001]", 'error: "0,001" is read as 0: a decimal comma? [number-cut]')),
    *((edit(PORTAL, "units_mat_and_load kN-m", f"{word} kN-m"),
       (f"[{word}]", f'error: "{word}" is not known: did you mean "units_mat_and_load"? [unknown-word]'))
      for word in ("units_mat_load", "units_loads", "units_materials")),
    (edit(PORTAL, "units_mat_and_load kN-m", "unidades kN-m"),
     ("[unidades]", 'error: "unidades" is not known [unknown-word]')),
]

# Sections that stand before the mesh, of whose nodes and elements nobody knows yet.
EARLY = [
    (edit(PORTAL, section, "", "\nmesh\n", f"\n{section}\nmesh\n"),
     (mark, f"error: {what} does not exist yet: a {who} stands before the mesh on line {line} [{code}]"))
    for section, mark, what, who, line, code in (
        ("constraints\n  1  111  0 0 0\n  5  110  0 0 0\nend constraints\n", "  [1]  111  0", "node 1", "support", 18,
         "unknown-node"),
        ("rotules\n  2\nend rotules\n", "rotules\n  [2]\n", "node 2", "hinge", 17, "unknown-node"),
        ("nodal_point_loads\n  2  12.5 0 0\n  4  10 0 0\nend nodal_point_loads\n", "  [2]  12.5", "node 2", "load", 18,
         "unknown-node"),
        ("global_pressure_loads\n  2  0 -20\n  3  0 -20\nend global_pressure_loads\n", "  [2]  0 -20", "element 2",
         "load", 18, "unknown-element"))
]

# A heading that cannot be, and what is wrong behind it all the same.
HEADINGS = [
    *((edit(PORTAL, "elemtype Linear   nnode = 2", heading, "  2  12.5 0 0\n", "  2  12.5 0\n"),
       (heading.replace("nnode", "[nnode]"), "error: Unknown Femview type [syntax]"),
       ("  [2]  12.5 0\n", "error: Not reading correctly the loads B. Number=2 [syntax]",
        "one number per degree of freedom"))
      for heading in ("elemtype Linear   nnode = 5", "elemtype Quad   nnode = 2",
                      "elemtype Tetrahedra   nnode = 2", "elemtype Triangle   nnode = 2")),
    # Most lines tell, though one of them is short.
    (edit(PLATE, "nnode = 3", "nnode = 6", "    3  2 3 5  1\n", "    3  2 3 5\n"),
     ("[nnode] = 6", "error: nnode is 6, but the elements have 3 nodes and a material [syntax]"),
     ("    [3]  2 3 5\n", "error: element 3 has no material [unknown-material]")),
]

ROWS = NUMBERS + SECTIONS + HINTS + UNITS + EARLY + HEADINGS
