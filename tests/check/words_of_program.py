"""Words of the program itself: its usage, what it refuses, its list of codes, and the tables."""
from math import cos, tan

from bases import BASES
from words import edit
from words_of_model import SQUARE, beams, chain
from words_of_solutions import TIPS

USAGE = """\
Says what is wrong with a model, where, and what to write.
Usage: kestol-check [OPTIONS] [DECK]
Positionals:
DECK the model
Options:
--help this text
--version the version
-q,--quiet errors only, no progress
-v,--verbose the solver's own information on standard error
-o FILE where the output goes; "-" is standard output
--syntax read only: nothing is assembled
--no-solve everything before the solution
--reactions true reactions K u - F of every supported node
--equilibrium loads, reactions and their balance
--mechanism N most motions without resistance that are explained (6)
--mode FILE.vtu these motions for ParaView
--no-condition no estimate of the condition number
--strict warnings count as errors
--disable CODE,... ... leave findings of these codes out
--list-codes all codes, then stop
--explain CODE what a code means, then stop
--format NAME text, json or sarif
"""

# What stands on standard error with exit status 2; a name of the deck is never opened.
REFUSED = [
    ((), "DECK is required"),
    (("--disable", "surplus,nonsense", "deck.dat"), "--disable: unknown code nonsense"),
    (("--explain", "nonsense"), "--explain: unknown code nonsense"),
    (("--format", "xml", "deck.dat"), "--format: xml is none of json, sarif, text"),
    (("--mechanism", "-1", "deck.dat"), "--mechanism: Value -1 not in range 0 to 1000"),
    (("--mechanism", "1001", "deck.dat"), "--mechanism: Value 1001 not in range 0 to 1000"),
    (("--nonsense", "deck.dat"), "unknown option --nonsense"),
]

CODES = """\
bad-material       error    a material value that cannot be, or that does not fit the others
bad-shape          warning  an aspect above 20 or an angle below 10 degrees
coincident-nodes   warning  nodes at one place that no element joins
corner-diagonal    warning  an inner edge between supports, whose mid-side becomes one
cost               warning  output above 1 GB, or a SkyLine matrix above 4 GB
crossing-members   warning  beams that cross, or a node on a beam, without a common node
degrees            warning  an Euler angle beyond 2 pi: angles are in radians
disconnected       warning  parts of the model that share no node
duplicate-load     warning  a second load on the same node or face
duplicate-number   error    a number that is given twice in a list
empty-value        error    key = value with blanks on both sides, where only one side is read
gravity            warning  a gravity direction whose length, or whole, has no effect
hinge-first        warning  a loaded beam that is hinged at its first node
hinge-shared       warning  a hinge where three or more beams meet
ill-conditioned    warning  fewer than 4 digits of the results are sound
key-prefix         error    a material key that is taken by its beginning
keyword-in-text    warning  a word of a title or comment that is taken as a keyword
large-displacement warning  displacements above a tenth of the model's size
load-on-fixed      warning  a nodal load on a prescribed degree: it appears nowhere
magnitude          warning  a property far from anything built in its units
mechanism          error    any other motion that nothing resists
missing-end        error    a section that is not closed and swallows what follows
missing-property   error    an element whose material lacks what its family needs
model              error    what the solver refuses after reading, in its words
no-effect-load     warning  a projected load on an element without size across it
no-loads           warning  neither loads, weight nor settlements
node-number        error    a node or element number that is not a whole number
number-cut         error    a number of which only the beginning is read
number-gap         error    node numbers that are not 1, 2, 3 ... N
opposite-normals   error    neighbouring shells whose normals disagree
orphan-node        error    a node without elements that nothing holds
out-of-balance     error    loads and true reactions that differ
replaced-support   warning  a support line that replaces a code or value of an earlier one
rigid-motion       error    supports that leave the model, or a part of it, a rigid motion
spring             warning  a spring that is zero, negative, or far stiffer than the model
stiff-element      warning  elements that are too stiff in bending
support-code       error    a support code other than 0, 1 and 2
surplus            warning  values behind the last one of a record, which nothing reads
syntax             error    what the reader of the deck refuses, in its words
units-default      warning  unit systems are named, but a units keyword is missing
units-order        warning  a units keyword behind the values that it should scale
unknown-element    error    a load on an element that does not exist
unknown-material   error    an element whose material does not exist
unknown-node       error    a reference to a node that does not exist
unknown-word       error    a keyword or key that is not known
unused             warning  a material that no element has, or a held node without elements
value-without-code warning  a value on a degree of freedom whose code is 0
zero-size          error    an element without length, area or volume
"""

# ---- tables -----------------------------------------------------------------------------------

IN_PLANE, IN_SOLIDS, IN_SPACE = (["Fx", "Fy", "Mz"], ["Fx", "Fy", "Fz"], ["Fx", "Fy", "Fz", "Mx", "My", "Mz"])
IN_KN = "\nunits_names\n  own kN m kPa 1 1\nend\nunits_mesh m\nunits_mat_and_load own\nunits_res own\nmesh\n"
SPRINGS, SPACE = BASES["springs"], BASES["space"]
# A beam of 2 from the origin along x, held there.
CANTILEVER = edit(SPACE, SPACE[SPACE.index("    2  0 0 3"):SPACE.index("  end coord")], "    2  2 0 0\n",
                  SPACE[SPACE.index("    2  2 3  1"):SPACE.index("  end elements")], "",
                  SPACE[SPACE.index("  2  E="):SPACE.index("end materials")], "",
                  SPACE[SPACE.index("  5  111000"):SPACE.index("end constraints")], "",
                  "  3  0 0 -10000 0 0 0", "  2  10 20 30 1 2 3", SPACE[SPACE.index("local_press"):], "",
                  "\nmesh\n", IN_KN, "E=2.1e11 G=8.1e10", "E=2.1e8 G=8.1e7")
H, V = 500 * tan(0.5), 500 / cos(0.5)

# Deck, columns, rows of the reactions, rows of the equilibrium but for the relative error.
TABLES = [
    # A force of (1000, 250) at (4, 0) on a beam that is held at (3, 0).
    (edit(beams(chain(2, x=3), [(1, 2)]), "  2  0 -1000 0", "  2  1000 250 0", "\nmesh\n", IN_KN, "E=2.1e11",
          "E=2.1e8"),
     ["Fx [kN]", "Fy [kN]", "Mz [kN m]"], [("node 1", -1000, -250, -250)],
     [("loads", 1000, 250, 1000), ("reactions", -1000, -250, -1000)]),
    # Half of 1000 goes to a roller whose y' stands 0.5 off the vertical.
    (edit(SPRINGS, "  2  020  0 5e6 0\n", "", "-0.01 0", "0 0"), IN_PLANE,
     [("node 1", H, 500, 0), ("node 3", -H, 500, 0), ("  in its axes", 0, V, 0)],
     [("loads", 0, -1000, -4000), ("reactions", 0, 1000, 4000)]),
    # (2, 0, 0) x (10, 20, 30) = (0, -60, 40)
    (CANTILEVER, ["Fx [kN]", "Fy [kN]", "Fz [kN]", "Mx [kN m]", "My [kN m]", "Mz [kN m]"],
     [("node 1", -10, -20, -30, -1, 58, -43)],
     [("loads", 10, 20, 30, 1, -58, 43), ("reactions", -10, -20, -30, -1, 58, -43)]),
    # The tip's stress is (1000, 200, 300) per volume along x, and 3/7 of 1000 in y and z by nu = 0.3: each node gets
    # that times the gradient of its shape function, (-1, -1, -1), (0, 1, 0) and (0, 0, 1).
    (TIPS, IN_SOLIDS, [("node 1", -1500, -200 - 3000 / 7, -300 - 3000 / 7), ("node 2", 200, 3000 / 7, 0),
                       ("node 3", 300, 0, 3000 / 7)],
     [("loads", 1000, 200, 300), ("reactions", -1000, -200, -300)]),
    # What turns a shell in its plane is held by its drilling stiffness.
    (edit(SQUARE, "  3  1000 0 0 0 0 0", "  4  0 0 0 0 0 100"), IN_SPACE,
     [("node 1", 0, 0, 0, 0, 0, 0), ("node 2", 0, 0, 0, 0, 0, 0)],
     [("loads", 0, 0, 0, 0, 0, 100), ("reactions", 0, 0, 0, 0, 0, 0), ("drilling", 0, 0, 0, 0, 0, -100)]),
]
