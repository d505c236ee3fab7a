"""The words around the problems of the manual."""

HEAD = """\
# Verification manual

This page is generated: `script/verify` builds kestol and its companions, runs every problem below and writes the page,
its pictures and its decks. Do not edit it by hand. A test compares it with what the programs give.

Each problem names its source, its target and what kestol prints. The values are those of the direct solver
(`Solver SkyLine`); every deck is also run with the iterative one (`Solver Sparse 1e-10 1e-8 20000` unless the page says
otherwise), whose displacements must be the same to 1e-5 of the largest.

- *6 digits*: beams are exact at their nodes and patch tests are exact everywhere, so that value and target are the same
  in the six digits that the program prints. Tests in the build hold them to 1e-6 and closer.
- A percentage: what the method, on this mesh, is expected to reach. Rows marked *shown* have no verdict: coarser
  meshes, or elements that are not meant for the problem.

Column *kestol-export*: the same checks, with the same targets and tolerances, on the values that
[kestol-export](export.md) writes as JSON, by the solver that it takes where nobody names one. Column *balance*: what
loads and reactions differ by in [kestol-check](check.md), relative to the sum of their sizes. *1e-10* is an upper bound
for all decks of the problem; *rounding* stands where more is left, no more than the rounding of stiff parts explains:
thin plates, slender cantilevers, bars that do not stretch, patches without a load. The drawings are those of
[kestol-view](view.md), `--svg`.

Signs: [conventions](conventions.md). Node orders and formulas: [elements](elements.md).

## Summary
"""

TAIL = """\
## Sources

- NAFEMS, *The Standard NAFEMS Benchmarks*, revision 3, 1990 (LE1, LE2, LE6, LE10).
- R. H. MacNeal, R. L. Harder, A proposed standard set of problems to test finite element accuracy, *Finite Elements in
  Analysis and Design* 1 (1985) 3-20.
- S. Timoshenko, S. Woinowsky-Krieger, *Theory of Plates and Shells*, 2nd edition, McGraw-Hill 1959.
- W. C. Young, R. G. Budynas, *Roark's Formulas for Stress and Strain*, 7th edition, McGraw-Hill 2002.
- Societe francaise des mecaniciens, *Guide de validation des progiciels de calcul de structures*, AFNOR 1990 (SSLL10,
  SSLL11).
- N. F. Knight, Raasch challenge for shell elements, *AIAA Journal* 35 (1997) 375-381.
"""
