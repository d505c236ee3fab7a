#pragma once

#include <vector>

#include "algebra/Matriu.h"
#include "algebra/ReaVecT.h"
#include "analysis/NodeBlocks.h"
#include "model/BeamLoad.h"

class Elem;
class Material;
class Mesh;
class Project;

/// One beam at a time with what its stiffness, loads, strengths and stations need. The work space
/// serves one beam after the other without touching the heap.
class BeamElement {
public:
  explicit BeamElement(const Project& project);

  /// Takes the next beam. Ends the run for a missing material, a beam of no length, and axes or
  /// values that do not fit, in this order.
  void Take(const Elem& elem);

  /// The element's displacements at its two ends in local axes, from the global vector.
  void LocalDisplacements(const ReaVecT& global, double u1[6], double u2[6]) const;

  const Project& project;
  const Elem* elem = nullptr;
  const Material* material = nullptr;
  Matriu T;              ///< local axes as columns: 3x3 (plane) or 6x6 (space)
  Matriu Kii, Kij, Kjj;  ///< stiffness in local axes
  double L = 0.0;
  int endCode = 11;
  std::vector<BeamLoad> loads;  ///< own weight first, then the loads of the deck in input order
};

/// Adds every element's stiffness to the project's solver.
void AddBeamStiffness(Project& project, const Mesh& mesh, BlockAxes axes);

/// Adds the equivalent nodal forces of own weight and loads of every element to project.global.
void AddBeamLoads(Project& project, const Mesh& mesh);

/// End strengths in local axes, 2 x dofsPerNode per element: stiffness times displacements.
void BeamStrengths(const Project& project, const Mesh& mesh, ReaVecT& values);
