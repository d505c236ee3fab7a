#pragma once

#include <array>
#include <memory>
#include <ostream>
#include <vector>

#include "algebra/Plex.h"
#include "algebra/ReaVec3.h"
#include "input/Units.h"
#include "model/Material.h"
#include "model/Mesh.h"
#include "model/PreassureLT.h"

namespace kestol {

class OutputText;
struct Results;

/// Most meshes that a model can hold.
constexpr int kMaxMeshes = 10;

/// How K u = f is solved.
enum SolverChoice : int { Automatic = 0, SolveSkyLine = 1, SolveSparse = 2, SolveDouble = 3 };

/// Which shell values are kept and written.
enum StressOption : int { LocalStresses = 0, MainStresses = 1, MainAndLocalStresses = 2 };

/// The whole model of one run: what the deck says, and what follows from it before a solution. The
/// groups below are headed by the stage that writes them.
class Project {
public:
  /// `capacity` numbers per block of the materials and loads containers.
  explicit Project(int capacity) : materials(capacity), loads(capacity) {
    meshes.reserve(kMaxMeshes);
  }

  /// The text report: displacements, beam strengths, reactions.
  void WriteResults(const Results& results, OutputText& output) const;

  // --- set by the reader --------------------------------------------------------------------
  Units units;
  ProblemType problemType = Plane;
  int dofsPerNode = 3;           ///< 3 plane, 6 space, 3 again for tetrahedra
  bool ConvertTo6Nodes = false;  ///< also set by the Double solver
  StressOption stressOption = LocalStresses;
  int nodesAsRead = 0;  ///< highest node number in the input
  int numNodes = 0;     ///< current node count; grows with the conversion to 6 nodes
  std::array<int, kMaxMeshes> numElements{};  ///< per mesh
  std::vector<std::unique_ptr<Mesh>> meshes;  ///< at most kMaxMeshes
  Plex<Material> materials;                   ///< by material number
  Plex<PreassureLT> loads;                    ///< first load of an element, by element number
  SolverChoice solverChoice = Automatic;      ///< resolved by the solve driver
  double tolerance1 = -1.0;                   ///< Sparse: relative residual aimed at
  double tolerance2 = -1.0;                   ///< Sparse: relative residual still accepted
  int MaxIterations = 0;                      ///< Sparse; 0: the solver's own defaults
  ReaVec3 gravity{0.0, 0.0, 1.0};             ///< unit vector along which weight acts
  int NumOfDivisions = 20;                    ///< beam stations less one
  double CoplanarityAngle = 1e-07;            ///< radians
  bool DoSmoothing = false;
  double smoothingAngle = -1.0;  ///< radians
  bool hasHinges = false;        ///< some node is a hinge

  // --- set when the model is prepared for a solution ------------------------------------------
  std::vector<int> endCodes;  ///< EndCode by element number - 1; empty without hinges
  std::vector<int> coplanar;  ///< flag by node index - 1; empty without shells

  /// The end code of a beam.
  int EndCodeOf(int elementNumber) const {
    return endCodes.empty() ? int{BothFixed} : endCodes[elementNumber - 1];
  }
  /// The number in the input of a node's internal index.
  int ExternalNumber(int index) const { return meshes[0]->ExternalNumber(index); }
};

}  // namespace kestol
