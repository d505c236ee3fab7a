#pragma once

#include <iosfwd>
#include <memory>

#include "analysis/Results.h"
#include "input/Project.h"

namespace kestol {

class StiffnessMatrix;

/// Which equation solver serves a system.
enum class SolverName {
  Deck,     ///< the one that the deck names, with its tolerances
  SkyLine,  ///< profile factorisation
  Sparse,   ///< preconditioned conjugate gradients
  Direct,   ///< sparse factorisation; only where DirectSolverIsBuilt()
};

/// Whether this library was built with the sparse direct solver.
bool DirectSolverIsBuilt();

/// How a model is solved. Whatever solver is named, the meshes are those of the deck: its Double
/// solver keeps the conversion to 6 nodes.
struct SolveOptions {
  SolverName solver = SolverName::Deck;
  bool renumber = true;          ///< false: nodes keep the order of the input
  std::ostream* info = nullptr;  ///< progress; not owned; null: none
  /// SolveOnce refuses what IsSound() finds wanting, also where the program itself does not notice.
  bool requireSound = false;
};

/// One stiffness, many loads.
///
/// The constructor prepares the model (hinges, conversion to 6 nodes, numbering, normals),
/// assembles its stiffness and imposes the supports; Factorise prepares the solutions; Solve gives
/// one answer per load vector. The project must outlive the system and is not changed by a
/// solution.
///
/// Vectors have one entry per equation, EquationCount() of them: degree d (from 1) of the node with
/// internal index i (from 1) is entry (i - 1) * project.dofsPerNode + d, counted from 1. They are
/// in global axes where nothing else is said, in the units of the results.
///
///     Project project = ReadDeck("portal.dat");
///     LinearSystem system(project);
///     const Results results = system.Solve(system.DeckLoads());
///
/// Every call may refuse with FatalError, in the words of the solver, or throw std::bad_alloc.
class LinearSystem {
public:
  explicit LinearSystem(Project& project, const SolveOptions& options = {});
  ~LinearSystem();
  LinearSystem(const LinearSystem&) = delete;
  LinearSystem& operator=(const LinearSystem&) = delete;

  /// Factorises the stiffness, or makes the preconditioner of the iterations. Refuses a singular
  /// matrix. Solve calls it when it was not called.
  void Factorise();

  /// The equivalent nodal forces of all loads of the deck.
  ReaVecT DeckLoads() const;

  /// The prescribed displacements of the deck: each in the axes of its support; 0 elsewhere.
  ReaVecT DeckSettlements() const;

  /// The complete answer to `loads` and to prescribed displacements (laid out as DeckSettlements).
  /// Refuses what leaves a rigid motion free or does not converge.
  Results Solve(const ReaVecT& loads, const ReaVecT& settlements);
  /// With the settlements of the deck.
  Results Solve(const ReaVecT& loads) { return Solve(loads, DeckSettlements()); }
  /// With the loads and the settlements of the deck.
  Results SolveDeck() { return Solve(DeckLoads()); }

  // The two halves of Solve, for those who add up solutions.

  /// The displacements alone.
  ReaVecT SolveForDisplacements(const ReaVecT& loads, const ReaVecT& settlements);
  /// Everything that follows from displacements under `loads`. Costs no substitution.
  Results ResultsOf(const ReaVecT& loads, ReaVecT displacements) const;

  int EquationCount() const;
  const Project& Model() const { return project_; }

  /// K u of the model without supports and springs.
  ReaVecT Product(const ReaVecT& u) const;

  // The system that is solved: in the axes of the supports, springs added, rows and columns of
  // prescribed degrees those of the unit matrix.

  /// Its product with v.
  ReaVecT SupportedProduct(const ReaVecT& v) const;

  /// Its matrix, assembled anew and not factorised; SkyLine or Direct.
  std::unique_ptr<StiffnessMatrix> SupportedMatrix(SolverName solver) const;

  /// The diagonal of that matrix.
  ReaVecT SupportedDiagonal() const;

  /// The factorised matrix, for further substitutions in the axes of the supports.
  StiffnessMatrix& Factor();
  /// Whether it has a factor. If not its solver iterates, and every substitution is a new run.
  bool HasFactor() const;

  // Between global axes and those of inclined supports, in place.
  void TurnToSupports(ReaVecT& vector) const;
  void TurnToGlobal(ReaVecT& vector) const;

private:
  friend Results SolveOnce(Project& project, const SolveOptions& options);

  /// Around a matrix that is factorised, of a model that is prepared.
  LinearSystem(Project& project, std::unique_ptr<StiffnessMatrix> factorised);

  StiffnessMatrix& Stiffness() const;
  void SetHeldToZero(ReaVecT& vector) const;

  Project& project_;
  std::ostream* info_;
  std::unique_ptr<StiffnessMatrix> matrix_;             // supported
  mutable std::unique_ptr<StiffnessMatrix> stiffness_;  // K; null until it is asked for
  bool factorised_ = false;
  int failure_ = 0;  // of the factorisation
};

/// The answer of the program itself, to the same digits: one solution by the deck's solver (or
/// another one), and K u at all nodes in results.internalForces beside what the program computes.
Results SolveOnce(Project& project, const SolveOptions& options = {});

}  // namespace kestol
