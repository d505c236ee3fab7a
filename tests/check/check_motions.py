"""check_motions.py KESTOL-CHECK: motions without resistance in words: which nodes, how, and why."""
import sys

from bases import BASES
from checker import Checker, Score

BLOCK, PLATE, PORTAL = BASES["block"], BASES["plate"], BASES["portal"]


def supported(base, lines):
    """The base with these supports only."""
    begin, end = base.index("constraints\n") + len("constraints\n"), base.index("end constraints")
    return base[:begin] + "".join(f"  {line}\n" for line in lines) + base[end:]


# Two tetrahedra that share the edge 1-2 only: the second turns about it.
EDGE = supported(BLOCK, ["1  111  0 0 0", "2  111  0 0 0", "3  111  0 0 0"]) \
    .replace("    5  1 1 1\n", "    5  0.5 -1 0\n    6  0.5 -1 1\n").replace("2 5 3 4  1", "1 2 6 5  1")
ZEROS = "0 0 0 0 0 0"


def space_frame(places, beams, supports, hinges):
    """A deck of beams of one section."""
    def rows(records):
        return "".join(f"  {number + 1}  {record}\n" for number, record in enumerate(records))
    return ("PROBLEM frame\nTYPE 3d\nmesh\ndimension = 3  elemtype Linear  nnode = 2\ncoordinates\n"
            + rows(places) + "end coordinates\nelements\n" + rows(f"{beam}  1" for beam in beams)
            + "end elements\nmaterials\n  1  E=2.1e11 G=8e10 A=0.01 Iy=1e-4 Iz=1e-4 J=2e-4\n"
            + "end materials\nconstraints\n"
            + "".join(f"  {support}  {ZEROS}\n" for support in supports)
            + "end constraints\nrotules\n" + "".join(f"  {hinge}\n" for hinge in hinges)
            + "end rotules\nnodal_point_loads\n  2  0 0 -1000 0 0 0\nend nodal_point_loads\n")


# A straight bar between two hinges, which spins: none of its nodes changes its place.
SPINDLE = space_frame(["0 0 0", "3 0 0", "6 0 0", "0 2 0", "6 2 0"], ["1 2", "2 3", "4 1", "5 3"],
                      ["4  111111", "5  111111"], [1, 3])
# What leans at right angles to the girder, and a beam whose nodes say nothing of its own turning.
LEANING = space_frame(["0 0 0", "0 0 3", "4 0 0", "4 0 3", "8 0 0", "8 0 3"],
                      ["2 4", "3 4", "6 5", "4 6", "1 2"],
                      ["1  111000", "3  111001", "5  111111"], [2, 4, 6])

# (deck, its code, the words of its modes)
MOTIONS = [
    (supported(BLOCK, ["1  111  0 0 0", "2  111  0 0 0"]), "rigid-motion",
     [["nodes 1-5 turn about the line through (0.4, 0, 0) along x"]]),
    (supported(BLOCK, ["1  111  0 0 0"]), "rigid-motion",
     [["nodes 1-5 turn about the line through (0.4, 0, 0) along x"],
      ["nodes 1-5 turn about the line through (0, 0.4, 0) along y"],
      ["nodes 1-5 turn about the line through (0, 0, 0.4) along z"]]),
    (supported(BLOCK, ["1  110  0 0 0", "2  010  0 0 0", "3  100  0 0 0", "5  010  0 0 0"]),
     "rigid-motion", [["nodes 1-5 slide along z"],
                      ["nodes 1-5 turn about the line through (0.4, 0.4, 0) along y"]]),
    (SPINDLE, "mechanism", [["nodes 1-3 turn about the line through (3, 0, 0) along x"]]),
    (LEANING, "mechanism", [["nodes 2 and 4 slide along y", "nodes 1 and 3 turn about x",
                             "elements 2 and 5 turn about x", "element 4 turns about z"]]),
    (EDGE, "mechanism", [["nodes 5 and 6 turn about the line through (0.5, 0, 0) along x"]]),
    # No element feels the rotation about the normal of a plate: one clamped node does not hold it.
    (supported(PLATE, [f"1  111111  {ZEROS}"]), "rigid-motion",
     [["nodes 1-9 turn about the line through (0, 0, 0) along z"]]),
    (supported(PLATE, [f"5  111000  {ZEROS}"]), "rigid-motion",
     [["nodes 1-9 turn about the line through (1, 1, 0) along " + axis] for axis in "xyz"]),
    (supported(PLATE, [f"1  111000  {ZEROS}", f"9  111000  {ZEROS}"]), "rigid-motion",
     [["nodes 1-9 turn about the line through (1, 1, 0) along (0.707, 0.707, 0)"]]),
    # The part of a support's axis along the normal holds nothing: here y is held.
    (supported(PLATE, [f"1  000001  {ZEROS}  Euler1=0.6"]), "rigid-motion",
     [["nodes 1-9 slide along " + axis] for axis in "xyz"]
     + [["nodes 1-9 turn about the line through (1, 1, 0) along " + axis] for axis in "xz"]),
]


def check_words(checker, score):
    for deck, code, words in MOTIONS:
        document = checker.json(checker.write(deck))
        score.equal([m["text"] for m in document["mechanisms"]], words, deck[:60])
        score.equal(document["modes"], len(words), words)
        score.equal({f["code"] for f in document["findings"] if f["severity"] == "error"}, {code},
                    words)


def check_lines(checker, score):
    """Supports and hinges are named with their lines."""
    deck = PORTAL.replace("rotules\n  2\n", "rotules\n  2\n  3\n  4\n")
    line = deck.split("\n").index("rotules") + 2
    text = checker.findings(deck)[-1]["text"]
    score.expect(f"hinges at nodes 2, 3 and 4 (lines {line}-{line + 2})" in text, text)
    deck = supported(PORTAL, ["1  010  0 0 0"])
    line = deck.split("\n").index("  1  010  0 0 0") + 1
    text = checker.findings(deck)[-1]["text"]
    score.expect(f"supports at node 1 (line {line})" in text, text)


def main():
    checker, score = Checker(sys.argv[1]), Score()
    check_words(checker, score)
    check_lines(checker, score)
    score.end()


if __name__ == "__main__":
    main()
