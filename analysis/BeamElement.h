#pragma once

#include <vector>

#include "algebra/Matriu.h"
#include "algebra/ReaVecT.h"
#include "analysis/NodeBlocks.h"
#include "model/BeamLoad.h"
#include "model/PreassureLT.h"

namespace kestol {

class Elem;
class Material;
class MeshPart;
class Project;

/// One beam at a time with what its stiffness, loads, strengths and stations need. The work space
/// serves one beam after the other without touching the heap.
class BeamElement {
public:
  explicit BeamElement(const Project& project);

  /// Goes on to the next beam and sets everything below. Ends the run for a missing material, a
  /// beam of no length, and axes or values that do not fit, in this order, then for loads that do
  /// not.
  void SetElem(const Elem& elem);

  // The parts of SetElem, for those who need not all of them. SetAxes comes first.
  void SetAxes(const Elem& elem);  ///< elem, material, T, L, endCode
  void SetStiffness();             ///< Kii, Kij, Kjj
  void SetLoads();                 ///< loads

  /// Whether a beam, this one or another, has weight or loads at all.
  bool HasLoads(const Elem& elem) const;

  /// The element's displacements at its two ends in local axes, from those of all equations.
  void LocalDisplacements(const ReaVecT& global, double u1[6], double u2[6]) const;

  /// The stiffness from local to global axes, in place: K := T K T^T. SetStiffness sets it anew.
  void TurnStiffnessToGlobal();

  const Project& project;
  const Elem* elem = nullptr;
  const Material* material = nullptr;
  Matriu T;              ///< local axes as columns: 3x3 (plane) or 6x6 (space)
  Matriu Kii, Kij, Kjj;  ///< stiffness; local axes until TurnStiffnessToGlobal
  double L = 0.0;
  int endCode = BothFixed;
  std::vector<BeamLoad> loads;  ///< own weight first, then the loads of the deck in input order

private:
  PreassureLT weight_{GlobalPressure};  ///< own weight of the beam in SetLoads
};

/// Adds every element's stiffness.
void AddBeamStiffness(const Project& project, const MeshPart& mesh, NodeBlocks& K);

/// Adds the equivalent nodal forces of own weight and loads of every element to f.
void AddBeamLoads(const Project& project, const MeshPart& mesh, ReaVecT& f);

/// End strengths in local axes, 2 x dofsPerNode per element: stiffness times displacements.
/// `values` has its size.
void BeamStrengths(const Project& project, const MeshPart& mesh, const ReaVecT& u, ReaVecT& values);

}  // namespace kestol
