"""Words about what a solution shows."""
from bases import BASES
from words import edit
from words_of_loads import support
from words_of_model import beams, chain, links

PLATE, BLOCK, SPRINGS = (BASES[name] for name in ("plate", "block", "springs"))


def bars(*moduli):
    """Bars in a line that can only stretch; the first is held."""
    deck = beams(chain(len(moduli) + 1), links(1, len(moduli) + 1))
    materials = "".join(f"  {i}  E={modulus!r} A=0.01 Iz=1e-4\n" for i, modulus in enumerate(moduli, 1))
    deck = edit(deck, "  1  E=2.1e11 A=0.01 Iz=1e-4\n", materials, "  2  0 -1000 0", "  2  1e-9 0 0")
    for i in range(1, len(moduli) + 1):
        deck = edit(deck, f"    {i}  {i} {i + 1}  1\n", f"    {i}  {i} {i + 1}  {i}\n",
                    "end constraints",
                    f"  {i + 1}  {support(3, 1, 1, 0)}\n  {i + 1}  {support(3, 2, 1, 0)}\nend constraints")
    return deck


# Two tetrahedra on both sides of the triangle 1, 2, 3, which is held, and a force of 1000 on the tip of one.
TIPS = edit(BLOCK, BLOCK[BLOCK.index("    1  0 0 0"):BLOCK.index("  end coord")],
            "    1  0 0 0\n    2  0 1 0\n    3  0 0 1\n    4  1 0 0\n    5  -1 0 0\n",
            "    1  1 2 3 4  1\n    2  2 5 3 4  1\n", "    1  1 2 3 4  1\n    2  1 3 2 5  1\n",
            "face_loads\n  2  -1  0 0 -1000\nend face_loads",
            "nodal_point_loads\n  4  1000 200 300\nend nodal_point_loads")
JUMPS = "4-noded tetrahedra in bending are too stiff: stresses jump by"

SOLUTIONS = [
    # P = 3 EI u / L^3 with EI = 2.1e7, u = 0.5, L = 1.
    (edit(beams(chain(2), [(1, 2)]), "  2  0 -1000", "  2  0 -3.15e7"),
     (None, "warning: node 2 moves by 0.5, a model of size 1: linear theory holds for small displacements "
      "[large-displacement]")),
    # Two bars of stiffness s behind one of e s, scaled: 1 on the diagonal, -1 / sqrt 2 beside it, whose softest
    # vector is (1, sqrt 2, 1) / 2 with the value e / 4. The condition is (1 + sqrt 2) (1 + sqrt 2) / 2 * 4 / e, for
    # e = 5e-12 2.331e12: its log10 is 12.4, and 16 less that 3.6.
    (bars(1.0, 2e11, 2e11),
     (None, "warning: about 3 digits of the results are sound (condition ≈2.331e12): see element 1 "
      "[ill-conditioned]")),
    # One bar of stiffness s behind two of 2 e s: -1 / sqrt(1 + e) beside the diagonal, and a condition of 4 / e.
    (bars(1.0, 1.0, 2e11),
     (None, "warning: about 3 digits of the results are sound (condition ≈1.6e12): see elements 1 and 2 "
      "[ill-conditioned]")),
    # Where one tip is pulled and the other at rest, a node of both has half of the stress, and the mean of the four
    # nodes of either is 3/8 of it off: sqrt(2 (3/8)^2) = 0.53.
    (TIPS, ("[elemtype]", f"warning: {JUMPS} 53 %; ten nodes are better [stiff-element]")),
    # With opposite stresses it is twice that for both: sqrt(2 (6/8)^2 / 2) = 0.75.
    (edit(TIPS, "  4  1000 200 300\n", "  4  1000 200 300\n  5  1000 200 300\n"),
     ("[elemtype]", f"warning: {JUMPS} 75 %; ten nodes are better [stiff-element]")),
    (edit(PLATE, "ConvertTo6Nodes\n", ""),
     ("[elemtype]",
      "warning: 3-noded shells larger than 3 t are too stiff in bending: add ConvertTo6Nodes [stiff-element]")),
]

ROWS = SOLUTIONS
