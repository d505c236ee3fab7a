"""Words about motions without resistance: which nodes move, how, and the hinges and supports around them."""
import math

from bases import BASES
from words import edit
from words_of_model import SLENDER, beams, chain, links

PORTAL, SPACE, PLATE, BLOCK, SPRINGS = (BASES[name] for name in ("portal", "space", "plate", "block", "springs"))


def supported(base, *lines):
    """The base with these supports only."""
    begin, end = base.index("constraints\n") + len("constraints\n"), base.index("end constraints")
    return base[:begin] + "".join(f"  {line}\n" for line in lines) + base[end:]


def hinged(deck, *nodes):
    rows = "".join(f"  {node}\n" for node in nodes)
    return edit(deck, "nodal_point_loads", f"rotules\n{rows}end rotules\nnodal_point_loads")


def rollers(deck, *nodes):
    """The deck whose clamps at these nodes hold y alone."""
    return edit(deck, *(part for node in nodes for part in (f"  {node}  111  0 0 0", f"  {node}  010  0 0 0")))


def rigid(deck, words, *more):
    return deck, (None, f"error: the supports leave {words} [rigid-motion]", *more)


def mechanism(deck, ways, *more):
    return deck, (None, f"error: the model is a mechanism in {ways} [mechanism]", *more)


QUARTER = "Euler3=0.7853981633974483"
SCREW = supported(edit(SPACE, SPACE[SPACE.index("    1  0 0 0"):SPACE.index("\nmaterials")], """\
    1  1 0 0
    2  0 1 0
    3  -1 0 0
  end coordinates
  elements
    1  1 2  1
    2  2 3  2
  end elements
""", SPACE[SPACE.index("local_pressure"):], "", "3  0 0 -10000 0 0 0", "2  0 0 0 0 0 1"),
                  f"1  101000  0 0 0 0 0 0  Euler1={math.pi / 4!r}",
                  f"2  011000  0 0 0 0 0 0  Euler2={math.pi / 4!r}",
                  f"3  010000  0 0 0 0 0 0  Euler1={math.pi / 4!r}")
RIGID = [
    rigid(supported(SPRINGS, "1  010  0 0 0", "3  010  0 0 0"), "the model a rigid motion",
          "mode 1: nodes 1-3 slide along x", "  supports at nodes 1 and 3 (lines 21-22)"),
    # Supports whose y' stands at 135 degrees leave what lies along x', whichever way that points.
    rigid(supported(SPRINGS, f"1  010  0 0 0 {QUARTER}", f"3  010  0 0 0 {QUARTER}"), "the model a rigid motion",
          "mode 1: nodes 1-3 slide along (0.707, 0.707)", "  supports at nodes 1 and 3 (lines 21-22)"),
    rigid(supported(SPRINGS, f"1  100  0 0 0 {QUARTER}", f"3  100  0 0 0 {QUARTER}"), "the model a rigid motion",
          "mode 1: nodes 1-3 slide along (0.707, -0.707)", "  supports at nodes 1 and 3 (lines 21-22)"),
    rigid(supported(SPRINGS, "3  110  0 0 0"), "the model a rigid motion", "mode 1: nodes 1-3 turn about z at (8, 0)",
          "  supports at node 3 (line 21)"),
    # Where the normals meet: that of node 1 is x = 0, that of node 3 stands 0.5 off it, at 8 / tan 0.5 = 14.6.
    rigid(supported(SPRINGS, "1  010  0 0 0", "3  010  0 0 0 Euler3=0.5"), "the model a rigid motion",
          "mode 1: nodes 1-3 turn about z at (0, 14.6)", "  supports at nodes 1 and 3 (lines 21-22)"),
    # Lines that follow each other are a range.
    rigid(supported(PORTAL, "1  010  0 0 0", "5  010  0 0 0", "1  001  0 0 0", "4  010  0 0 0"),
          "the model a rigid motion", "mode 1: nodes 1-5 slide along x", "  hinges at node 2 (line 42)",
          "  supports at nodes 1, 4 and 5 (lines 35-36, 38)"),
    # What another hinge lets the column at its roller do is told behind, and numbered on.
    rigid(edit(supported(PORTAL, "1  010  0 0 0", "5  010  0 0 0", "1  001  0 0 0"), "rotules\n  2\n",
               "rotules\n  2\n  4\n"),
          "the model a rigid motion", "mode 1: nodes 1-5 slide along x", "  hinges at nodes 2 and 4 (lines 41-42)",
          "  supports at nodes 1 and 5 (lines 35-36)")
    + ((None, "error: the model is a mechanism in 1 way [mechanism]",
        "mode 2: node 5 moves along x and turns about z", "        element 4 turns about z",
        "  hinges at node 4 (line 42)", "  supports at node 5 (line 36)"),),
    # A beam that nothing holds, around its middle.
    rigid(beams(chain(2) + chain(2, y=1), [(1, 2), (3, 4)]), "a part of the model 3 rigid motions",
          "mode 1: nodes 3 and 4 slide along x", "mode 2: nodes 3 and 4 slide along y",
          "mode 3: nodes 3 and 4 turn about z at (0.5, 1)"),
    # All velocities (-y, x, 1) but no others: at node 1 along (0, 1, 1), at 2 along (-1, 0, 1), at 3 along (0, -1, 1).
    rigid(SCREW, "the model a rigid motion",
          "mode 1: nodes 1-3 turn about the line through (0, 0, 0) along z, and slide along it",
          "  supports at nodes 1, 2 and 3 (lines 22-24)"),
    rigid(supported(BLOCK, "1  111  0 0 0", "5  111  0 0 0"), "the model a rigid motion",
          "mode 1: nodes 1-5 turn about the line through (0.4, 0.4, 0.4) along (0.577, 0.577, 0.577)",
          "  supports at nodes 1 and 5 (lines 23-24)"),
]


def two_ways(*more):
    """A chain of 6 nodes with 4 hinges: nodes 3 and 4 hang on what they stand between."""
    return mechanism(
        hinged(beams(chain(6), links(1, 6), (1, 6)), 2, 3, 4, 5), "2 ways",
        "mode 1: node 3 moves along y and turns about z", "        node 4 turns about z",
        "        elements 2 and 3 turn about z", "  hinges at nodes 2, 3, 4 and 5 (lines 32-35)", *more)


SECOND_WAY = ["mode 2: node 4 moves along y and turns about z", "        node 5 turns about z",
              "        elements 3 and 4 turn about z", "  hinges at nodes 3, 4 and 5 (lines 33-35)",
              "  supports at node 6 (line 28)"]

TIES = edit(supported(SLENDER, "1  111111  0 0 0 0 0 0", *(f"{i}  001110  0 0 0 0 0 0" for i in (2, 3, 4)),
                      "5  111111  0 0 0 0 0 0"),
            "    2  1 0 0\n    3  1 0.1 0\n", "    2  0.5 0.5 0\n    3  1 0 0\n    4  1.5 0.5 0\n    5  2 0 0\n",
            "    1  1 2 3  1\n", "    1  1 3 2  1\n    2  3 5 4  1\n")

# Two chains of other lengths with a strut between their middles.
STRUT = hinged(beams(chain(5) + [(-1, -1), (0, -1), (2, -1), (4, -1), (5, -1)], links(1, 5) + links(6, 10) + [(3, 8)],
                     (1, 5, 6, 10)), 2, 3, 4, 7, 8, 9)

MECHANISMS = [
    mechanism(hinged(beams(chain(3), links(1, 3)), 2), "1 way", "mode 1: node 3 moves along y and turns about z",
              "        element 2 turns about z", "  hinges at node 2 (line 25)"),
    two_ways(*SECOND_WAY),
    # A beam on two columns that are hinged above and pinned below.
    mechanism(edit(supported(PORTAL, "1  110  0 0 0", "5  110  0 0 0"), "rotules\n  2\n", "rotules\n  2\n  4\n",
                   "    3  3 4  2\n    4  4 5  1\n", "    3  3 4  2\n    4  5 4  1\n"), "1 way",
              "mode 1: nodes 1 and 2 turn about z at (0, 0)", "        nodes 3 and 4 slide along x",
              "        node 5 turns about z", "        element 4 turns about z",
              "  hinges at nodes 2 and 4 (lines 40-41)", "  supports at nodes 1 and 5 (lines 35-36)"),
    (STRUT,
     ("  [3]\n  4\n",
      "warning: hinge at node 3: elements 3 and 9 are released, element 2 keeps the node [hinge-shared]"),
     ("  [8]\n  9\n",
      "warning: hinge at node 8: elements 7 and 9 are released, element 6 keeps the node [hinge-shared]"),
     *mechanism(STRUT, "1 way", "mode 1: nodes 3 and 8 move along y and turn about z",
                "        nodes 4 and 9 turn about z",
                "        elements 2, 3, 6 and 7 turn about z", "  hinges at nodes 2, 3, 4, 7, 8 and 9 (lines 42-47)",
                "  supports at nodes 5 and 10 (lines 36, 38)")[1:]),
    # A rail on a swinging strut moves without turning: element 2 keeps node 3, element 3 node 4.
    mechanism(hinged(rollers(beams([(0, 0), (1, 0), (1, 1), (2, 1)], links(1, 4), (1, 4)), 4), 2, 3), "1 way",
              "mode 1: node 4 moves along x", "        node 3 moves along x and turns about z",
              "        element 2 turns about z", "  hinges at nodes 2 and 3 (lines 28-29)",
              "  supports at node 4 (line 24)"),
    # Two triangles that turn against each other in their plane about nodes 1 and 5, and share node 3 between these.
    mechanism(TIES, "1 way", "mode 1: nodes 2-4 move in different ways",
              "  supports at nodes 1, 2, 3, 4 and 5 (lines 23-27)"),
    # Two tetrahedra with one edge in common.
    mechanism(edit(BLOCK, "    5  1 1 1\n", "    5  0.5 -1 0\n    6  0.5 -1 1\n", "2 5 3 4  1", "1 2 6 5  1"),
              "1 way", "mode 1: nodes 5 and 6 turn about the line through (0.5, 0, 0) along x",
              "  supports at nodes 1 and 2 (lines 24-25)"),
    # A beam along (1, 1, 0) on a hinge that takes its torsion.
    mechanism(hinged(edit(SCREW, "    1  1 0 0\n    2  0 1 0\n    3  -1 0 0\n",
                          "    1  0 0 0\n    2  1 0 0\n    3  2 1 0\n",
                          SCREW[SCREW.index("  1  101"):SCREW.index("end constr")], "  1  111111  0 0 0 0 0 0\n"), 2),
              "2 ways", "mode 1: node 3 moves along (0.707, -0.707, 0) and turns about z",
              "        element 2 turns about z",
              "  hinges at node 2 (line 26)", "mode 2: node 3 moves along z and turns about (0.707, -0.707, 0)",
              "        element 2 turns about (0.707, -0.707, 0)", "  hinges at node 2 (line 26)"),
]


def interleaved(count):
    """A chain of odd nodes on rollers, and one of even nodes that is held."""
    last = 2 * count - 1
    nodes = [(i, i % 2) for i in range(last)]
    return rollers(beams(nodes, links(1, last - 1, 2), (1, last, 4)), 1, last)


def columns(copies):
    """11 columns with a node half-way, which are pinned below and lean on each other above; so many times, apart."""
    nodes, elements, held, hinges = [], [], [], []
    for first in range(1, 33 * copies, 33):
        nodes += [(x, y + first - 1) for x in range(11) for y in range(3)]
        elements += [(i, i + 1) for i in range(first, first + 32) if (i - first) % 3 < 2]
        elements += [(i, i + 3) for i in range(first + 2, first + 32, 3)]
        held += range(first, first + 31, 3)
        hinges += range(first + 2, first + 33, 3)
    return hinged(beams(nodes, elements, held).replace("  111  0 0 0", "  110  0 0 0"), *hinges)


MANY = [
    # Of a list eight are told here, with their lines.
    rigid(hinged(rollers(edit(beams(chain(12), links(1, 12), range(1, 13)), "  2  0 -1000 0", "  2  7 0 0"),
                         *range(1, 13)), *range(2, 12)),
          "the model a rigid motion", "mode 1: nodes 1-12 slide along x",
          "  hinges at nodes 2, 3, 4, 5, 6, 7, 8, 9 and 2 more (lines 54-61)",
          "  supports at nodes 1, 2, 3, 4, 5, 6, 7, 8 and 4 more (lines 39-46)"),
    # 12 ranges are shown whole, of more ten.
    rigid(interleaved(12), "a part of the model a rigid motion",
          "mode 1: nodes 1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21 and 23 slide along x",
          "  supports at nodes 1 and 23 (lines 60-61)"),
    rigid(interleaved(13), "a part of the model a rigid motion",
          "mode 1: nodes 1, 3, 5, 7, 9, 11, 13, 15, 17, 19 and more slide along x",
          "  supports at nodes 1 and 25 (lines 64-65)"),
]


def leaning(copies):
    """The columns with their ways: of a list eight are told with their lines, and all of these in 70 places."""
    support, hinge = 65 * copies + 16, 76 * copies + 19  # their first lines: 33 nodes, 32 elements, 11 supports each
    more = []
    for k in range(copies):
        n, blanks = 33 * k, " " * 8
        own = [f"{n + 3 * i + 1}-{n + 3 * i + 3} turn about z at ({i}, {n})" for i in range(9)]
        lines = [f" (lines {first + 11 * k}-{first + 11 * k + 7})" if k < 4 else "" for first in (hinge, support)]
        hinges, supports = (", ".join(str(n + 3 * i + j) for i in range(8)) for j in (3, 1))
        more += [f"mode {k + 1}: nodes {own[0]}", *(f"{blanks}nodes {words}" for words in own[1:]),
                 f"{blanks}and more nodes move", f"  hinges at nodes {hinges} and 3 more{lines[0]}",
                 f"  supports at nodes {supports} and 3 more{lines[1]}"]
    return mechanism(columns(copies), "1 way" if copies == 1 else f"{copies} ways", *more)


# With hinges that more than two beams share, and parts that share no node, which is not the point here.
SHARED = [leaning(1), leaning(5)]


def long_chain(count):
    """A chain whose ends are clamped, with all between hinged: one way for each node that no clamped beam holds."""
    hinge = 25 + (count - 3) + (count - 1 - 2) + (2 - 1)  # the line of node 2: 25 for 3 nodes, 2 elements, 1 support
    more = []
    for way, node in enumerate(range(3, count - 1), 1):
        near = [n for n in range(node - 1, node + 3) if n < count]
        blanks = " " * len(f"mode {way}: ")
        more += [f"mode {way}: node {node} moves along y and turns about z", f"{blanks}node {node + 1} turns about z",
                 f"{blanks}elements {node - 1} and {node} turn about z",
                 f"  hinges at nodes {', '.join(map(str, near[:-1]))} and {near[-1]} "
                 f"(lines {hinge + near[0] - 2}-{hinge + near[-1] - 2})"]
    return mechanism(hinged(beams(chain(count), links(1, count), (1, count)), *range(2, count)), f"{count - 4} ways",
                     *more, f"  supports at node {count} (line {hinge - 4})")


# Three beams, of which the last two hang on nothing.
LOOSE = beams(chain(2) + chain(2, y=1) + chain(2, y=2), [(1, 2), (3, 4), (5, 6)])

# With --mechanism 10, 1, and 0: what is not explained is counted all the same.
ALL = [long_chain(14)]
LIMITED = [
    two_ways("and 1 more"),
    rigid(supported(SPRINGS, "3  010  0 0 0"), "the model 2 rigid motions",
          "mode 1: nodes 1-3 slide along x", "  supports at node 3 (line 21)"),
    rigid(LOOSE, "a part of the model 3 rigid motions", "mode 1: nodes 3 and 4 slide along x")
    + ((None, "error: the supports leave rigid motions to 1 more part [rigid-motion]"),),
    rigid(beams(chain(2) + chain(2, y=1) + chain(2, y=2) + chain(2, y=3), [(1, 2), (3, 4), (5, 6), (7, 8)]),
          "a part of the model 3 rigid motions", "mode 1: nodes 3 and 4 slide along x")
    + ((None, "error: the supports leave rigid motions to 2 more parts [rigid-motion]"),),
]
UNEXPLAINED = [row[:1] + (row[1][:2],) + row[2:] for row in LIMITED]

ROWS = RIGID + MECHANISMS + MANY
