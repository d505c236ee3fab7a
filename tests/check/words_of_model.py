"""Words about the model: its elements, nodes, joints, hinges and what the solver refuses of it."""
from bases import BASES
from words import edit

PORTAL, SPACE, PLATE, BLOCK, SPRINGS = (BASES[name] for name in ("portal", "space", "plate", "block", "springs"))


def beams(nodes, elements, held=(1,)):
    """Beams in the plane: places of the nodes, ends of the elements, nodes that are clamped. A force on node 2."""
    lines = [f"    {i}  {x:.10g} {y:.10g}" for i, (x, y) in enumerate(nodes, 1)] + ["  end coordinates", "  elements"]
    lines += [f"    {i}  {a} {b}  1" for i, (a, b) in enumerate(elements, 1)] + ["  end elements"]
    begin, end = SPRINGS.index("    1  0 0"), SPRINGS.index("\nmaterials")
    supports = "".join(f"  {node}  111  0 0 0\n" for node in held)
    return (SPRINGS[:begin] + "\n".join(lines) + "\n" + SPRINGS[end:SPRINGS.index("  1  110")] + supports
            + SPRINGS[SPRINGS.index("end constraints"):])


def chain(count, x=0.0, y=0.0):
    """Nodes one behind the other."""
    return [(x + i, y) for i in range(count)]


# One shell in the plane, 1 long and 0.1 high: tan 5.71059 = 0.1.
SLENDER = edit(PLATE[:PLATE.index("    1  0 0 0")] + """\
    1  0 0 0
    2  1 0 0
    3  1 0.1 0
  end coordinates
  elements
    1  1 2 3  1
  end elements

""" + PLATE[PLATE.index("materials"):PLATE.index("  3  111111")] + "end constraints\n", "ConvertTo6Nodes\n", "")
SLENDER += "nodal_point_loads\n  3  1000 0 0 0 0 0\nend nodal_point_loads\n"

SQUARE = edit(SLENDER, "    3  1 0.1 0\n", "    3  1 1 0\n    4  0 1 0\n", "    1  1 2 3  1\n",
              "    1  1 2 3  1\n    2  1 3 4  1\n")

# Two edges of length sqrt 2 at right angles, h apart, and 4 of sqrt(1 + h^2) between their ends: the faces have
# sqrt(1 + 2 h^2) / 2, the volume is h / 3. The longest edge over the smallest height is for h = 0.02
# sqrt 2 sqrt(1.0008) / 2 / 0.02 = 35.3695.
SLIVER = edit(BLOCK, "    2  1 0 0\n    3  0 1 0\n    4  0 0 1\n    5  1 1 1\n",
              "    2  1 1 0\n    3  0 1 0.02\n    4  1 0 0.02\n", "    2  2 5 3 4  1\n", "",
              "  2  -1  0 0", "  1  0  0 0")

ELEMENTS = [
    (edit(PORTAL, "    3  3 4\n", "    3  0 4\n"), ("    [2]  3 2  2", "error: element 2 has no length [zero-size]")),
    (edit(PORTAL, "    2  3 2  2\n", "    2  2 2  2\n"),
     ("    [2]  2 2  2", "error: element 2 has no length: both its nodes are the same [zero-size]")),
    (edit(SLENDER, "    3  1 0.1 0\n", "    3  2 0 0\n"),
     ("    [1]  1 2 3", "error: element 1 has no area [zero-size]")),
    (edit(PLATE, "    5  1 1 0\n", "    5  1 0 0\n"),
     ("    [1]  1 2 5", "error: elements 1 and 3 have no area [zero-size]")),
    # Nodes 2, 3 and 4 lie in the plane x + y + z = 1.
    (edit(BLOCK, "    5  1 1 1\n", "    5  0.5 0.2 0.3\n"),
     ("    [2]  2 5 3 4", "error: element 2 has no volume [zero-size]")),
    (edit(BLOCK, "    4  0 0 1\n    5  1 1 1\n", "    4  1 1 0\n    5  2 3 0\n"),
     ("    [1]  1 2 3 4", "error: elements 1 and 2 have no volume [zero-size]")),
    (SLENDER, ("    [1]  1 2 3", "warning: element 1 has an angle of 5.71059 degrees [bad-shape]")),
    (SLIVER, ("    [1]  1 2 3 4", "warning: element 1 has an aspect of 35.3695 [bad-shape]")),
    # Nodes 1, 2 and 3 of the plate make the elements around them slender: tan 3.17983 = 0.05 / 0.9 in the worst.
    (edit(PLATE, "    1  0 0 0\n", "    1  0.9 0.95 0\n", "    3  2 0 0\n", "    3  1.1 0 0\n"),
     ("    [2]  1 5 4",
      "warning: element 2 has an angle of 3.17983 degrees, and 2 beside it are bad too [bad-shape]")),
    # Its neighbour has atan 0.1 + atan 0.02.
    (edit(SQUARE, "    3  1 1 0\n    4  0 1 0\n", "    3  1 0.1 0\n    4  0 0.12 0\n"),
     ("    [1]  1 2 3",
      "warning: element 1 has an angle of 5.71059 degrees, and 1 beside it is bad too [bad-shape]")),
    # ---- normals
    (edit(PLATE, "    3  2 3 5  1\n", "    3  3 2 5  1\n"),
     ("    [3]  3 2 5", "error: element 3 has its normal against elements 1 and 4: exchange two of its nodes "
      "[opposite-normals]")),
    (edit(PLATE, "    3  2 3 5  1\n    4  3 6 5  1\n", "    3  3 2 5  1\n    4  6 3 5  1\n"),
     ("    [3]  3 2 5", "error: elements 3 and 4 have their normal against elements 1 and 7: exchange two nodes of "
      "each [opposite-normals]")),
    (edit(SQUARE, "2  1 3 4", "2  1 4 3"),
     ("    [2]  1 4 3",
      "error: element 2 has its normal against element 1: exchange two of its nodes [opposite-normals]")),
    # Their planes stand at 44.7 degrees: tan^2 = 0.7^2 + 0.7^2.
    (edit(SQUARE, "2  1 3 4", "2  1 4 3", "    4  0 1 0\n", "    4  0 1 0.7\n"),
     ("    [2]  1 4 3",
      "warning: element 2 has its normal against element 1: exchange two of its nodes [opposite-normals]")),
    (edit(PLATE, "    1  1 2 5  1\n    2  1 5 4  1\n", "    1  1 2 4  1\n    2  2 5 4  1\n"),
     ("    [1]  1 2 4", "warning: the inner edge 2-4 joins two supported nodes: its mid-side becomes a support too "
      "[corner-diagonal]")),
]

GRID = [(x, i) for i in (1, 2, 3) for x in (0, 4)] + [(i, y) for i in (1, 2, 3) for y in (0, 4)]
PAIRS = [(i, i + 1) for i in range(1, 12, 2)]


def links(first, last, step=1):
    """Elements from each of the nodes to the one that stands `step` behind it."""
    return [(i, i + step) for i in range(first, last)]


JOINTS = [
    (beams([(0, 0), (1, 0), (1, 0), (2, 0)], [(1, 2), (3, 4)], (1, 4)),
     ("    [3]  1 0", "warning: nodes 2 and 3 stand at one place, and nothing joins them [coincident-nodes]")),
    # Each node once, of three chains on each other.
    (beams(3 * chain(6), links(1, 6) + links(7, 12) + links(13, 18), (1, 7, 13)),
     ("    [7]  0 0", "warning: 12 nodes stand where others stand: 7, 8, 9, 10 and 8 more [coincident-nodes]")),
    # Of a node that lies far away the others know nothing: sqrt(4e-4 / 0.02) = 0.141421.
    (edit(PORTAL, "    3  3 4\n", "    3  3e9 4\n"),
     ("Iz=[4e-4]", "warning: Iz and A of material 2 give a radius of gyration of 0.141421 on a beam of length 3e+09 "
      "[magnitude]")),
    (beams(chain(10) + chain(10), links(1, 10) + links(11, 20), (1, 20)),
     ("    [11]  0 0", "warning: 10 nodes stand where others stand: 11, 12, 13, 14 and 6 more [coincident-nodes]")),
    (beams([(0, 0), (2, 2), (0, 2), (2, 0)], [(1, 2), (3, 4)], (1, 3)),
     ("    [2]  3 4", "warning: elements 1 and 2 cross without a common node [crossing-members]")),
    (beams([(0, 0), (2, 0), (1, 0), (1, 1)], [(1, 2), (3, 4)], (1, 4)),
     ("    [1]  1 2", "warning: node 3 stands on element 1 but does not belong to it: divide the element there "
      "[crossing-members]")),
    # Three beams across three others.
    (beams(GRID, PAIRS, range(1, 12, 2)),
     ("    [4]  7 8",
      "warning: 9 times a beam crosses another, or passes a node: elements 1 and 4 cross without a common "
      "node [crossing-members]")),
    *((beams(chain(2) + chain(count + 1, y=1), links(1, 2) + links(3, count + 3), (1, 3)),
       ("    [2]  3 4",
        f"warning: the model has 2 parts that share no node: {words} apart from element 1 [disconnected]"))
      for count, words in ((1, "element 2 is"), (2, "elements 2 and 3 are"),
                           (6, "elements 2, 3, 4, 5 and 2 more are"))),
    (beams(chain(2) + chain(2, y=1) + chain(2, y=2), PAIRS[:3], (1, 3, 5)),
     ("    [2]  3 4",
      "warning: the model has 3 parts that share no node: element 2 is apart from element 1 [disconnected]")),
    (beams(chain(3), [(1, 2)]),
     ("    [3]  2 0", "error: no element has node 3, and nothing holds it: give it an element or "
      "leave it out [orphan-node]")),
    (edit(PORTAL, "    5  6 0\n", "    5  6 0\n    6  9 0\n", "end constraints", "  6  110  0 0 0\nend constraints"),
     ("    [6]  9 0", "error: no element has node 6, and its support does not hold it wholly: give it an element or "
      "leave it out [orphan-node]")),
    (edit(PORTAL, "    5  6 0\n", "    5  6 0\n" + "".join(f"    {i}  {i} 8\n" for i in range(6, 16)),
          "end constraints", "  7  110  0 0 0\nend constraints"),
     ("    [6]  6 8", "error: no element has the nodes 6, 7, 8, 9, 10, 11 and 4 more, and their supports do not hold "
      "them wholly [orphan-node]")),
    (beams(chain(11), [(1, 2)]),
     ("    [3]  2 0", "error: no element has the nodes 3, 4, 5, 6, 7, 8 and 3 more, and nothing "
      "holds them [orphan-node]")),
    # The solver takes no such node in a solid, also where supports hold it.
    *((edit(BLOCK, "    5  1 1 1\n", "    5  1 1 1\n    6  2 2 2\n", "end constraints", f"{held}end constraints"),
       ("    [6]  2 2", "error: no element has node 6, and solids may have none such: give it an element or leave "
        "it out [orphan-node]")) for held in ("", "  6  111  0 0 0\n")),
    (edit(BLOCK, "    5  1 1 1\n", "    5  1 1 1\n" + "".join(f"    {i}  {i} 2 2\n" for i in range(6, 15))),
     ("    [6]  6 2", "error: no element has the nodes 6, 7, 8, 9, 10, 11 and 3 more, and solids may have none such "
      "[orphan-node]")),
    (beams(chain(3), [(1, 2)], (1, 3)), ("    [3]  2 0", "warning: no element has node 3 [unused]")),
    # ---- hinges
    (edit(PORTAL, "    2  3 2  2\n", "    2  2 3  2\n"),
     ("    [2]  2 3", 'warning: element 2 is loaded and hinged at its first node 2: write "3 2" [hinge-first]')),
    (edit(PORTAL, "    4  4 5  1\n", "    4  4 5  1\n    5  5 2  1\n", "rotules\n  2\n", "rotules\n  02\n"),
     ("  [02]\n", "warning: hinge at node 2: elements 2 and 5 are released, element 1 keeps the node [hinge-shared]")),
]

ROWS = ELEMENTS + JOINTS
