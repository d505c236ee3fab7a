#include "kestol/LinearSystem.h"

#include <algorithm>
#include <utility>

#include "algebra/NodeBlockMatrix.h"
#include "algebra/SkyLine.h"
#include "algebra/SparseSolver.h"
#include "analysis/Assembly.h"
#include "analysis/Counts.h"
#include "analysis/NodeBlocks.h"
#include "analysis/Reactions.h"
#include "analysis/Smoothing.h"
#include "analysis/SolveDriver.h"
#include "analysis/Strengths.h"
#include "analysis/TurnBlock.h"
#include "kestol/DirectMatrix.h"
#include "kestol/Mechanisms.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

/// Makes the project name the solver; its Double solver leaves the conversion behind.
SolveSettings SettingsFor(Project& project, const SolveOptions& options) {
  SolveSettings settings;
  settings.renumber = options.renumber;
  settings.info = options.info;
  if (options.solver == SolverName::Deck) return settings;
  if (project.solverChoice == SolveDouble) ConvertForDouble(project);
  project.solverChoice = options.solver == SolverName::Sparse ? SolveSparse : SolveSkyLine;
  if (options.solver == SolverName::Direct) settings.otherMatrix = NewDirectMatrix;
  return settings;
}

void AssembleSupported(const Project& project, StiffnessMatrix& K, std::ostream* info) {
  BuildStructure(project, K, info);
  AddStiffnessOfAllMeshes(project, K, BlockAxes::Support);
  ReaVecT nothing(K.NumDegrees());
  ForEachHeldDegree(project, [&](int equation, int code, double value) {
    if (code == Prescribed) K.Prescribe(equation, 0.0, nothing);
    if (code == Spring) K.Entry(equation, equation) += value;
  });
}

}  // namespace

LinearSystem::LinearSystem(Project& project, const SolveOptions& options)
    : project_(project), info_(options.info) {
  error.Clear();
  // Many loads have no use for one starting vector.
  if (project.solverChoice == SolveDouble) ConvertForDouble(project);
  const SolveSettings settings = SettingsFor(project, options);
  PrepareModel(project, settings);
  matrix_ = NewMatrix(project, settings, {});
  AssembleSupported(project, *matrix_, info_);
}

LinearSystem::LinearSystem(Project& project, std::unique_ptr<StiffnessMatrix> factorised)
    : project_(project), info_(nullptr), matrix_(std::move(factorised)), factorised_(true) {}

LinearSystem::~LinearSystem() = default;

void LinearSystem::Factorise() {
  if (factorised_) return;
  error.Clear();
  // What a failure leaves of the matrix must not be factorised as if it were one.
  if (failure_ == 0) failure_ = matrix_->Factorise(info_);
  if (failure_ != 0) RefuseUnsolved(project_, failure_);
  factorised_ = true;
}

StiffnessMatrix& LinearSystem::Factor() {
  Factorise();
  return *matrix_;
}

bool LinearSystem::HasFactor() const {
  return dynamic_cast<const SparseSolver*>(matrix_.get()) == nullptr;
}

ReaVecT LinearSystem::DeckLoads() const {
  error.Clear();
  return LoadsOfDeck(project_);
}

ReaVecT LinearSystem::DeckSettlements() const {
  ReaVecT settlements(EquationCount());
  ForEachHeldDegree(project_, [&](int equation, int code, double value) {
    if (code == Prescribed) settlements(equation) = value;
  });
  return settlements;
}

int LinearSystem::EquationCount() const {
  return kestol::EquationCount(project_);
}

void LinearSystem::SetHeldToZero(ReaVecT& vector) const {
  ForEachHeldDegree(project_, [&](int equation, int code, double) {
    if (code == Prescribed) vector(equation) = 0.0;
  });
}

void LinearSystem::TurnToSupports(ReaVecT& vector) const {
  TurnToSupportAxes(project_, vector);
}

void LinearSystem::TurnToGlobal(ReaVecT& vector) const {
  TurnToGlobalAxes(project_, vector);
}

Results LinearSystem::Solve(const ReaVecT& loads, const ReaVecT& settlements) {
  return ResultsOf(loads, SolveForDisplacements(loads, settlements));
}

// With u = s + v, s the settlements: K v = f - K s at the free degrees, v = 0 at the held ones.
ReaVecT LinearSystem::SolveForDisplacements(const ReaVecT& loads, const ReaVecT& settlements) {
  Factorise();
  error.Clear();
  ReaVecT v = loads;
  if (std::any_of(settlements.begin(), settlements.end(), [](double s) { return s != 0.0; })) {
    ReaVecT s = settlements;
    TurnToGlobal(s);
    const ReaVecT Ks = Product(s);
    for (int i = 1; i <= v.n; ++i) v(i) -= Ks(i);
  }
  TurnToSupports(v);
  SetHeldToZero(v);

  int result = matrix_->Substitute(v, info_);
  for (int i = 1; i <= v.n; ++i) v(i) += settlements(i);
  if (result == 0) result = CheckSolution(project_, v);
  if (result != 0) RefuseUnsolved(project_, result);
  TurnToGlobal(v);
  return v;
}

Results LinearSystem::ResultsOf(const ReaVecT& loads, ReaVecT displacements) const {
  error.Clear();
  Results results;
  results.loads = loads;
  results.displacements = std::move(displacements);
  results.internalForces = Product(results.displacements);
  ComputePointValues(project_, results);
  results.reactions = ReactionsOf(project_, Stiffness(), results.displacements);
  if (project_.DoSmoothing) SmoothPointValues(project_, results);
  return results;
}

StiffnessMatrix& LinearSystem::Stiffness() const {
  if (!stiffness_) {
    auto K = std::make_unique<NodeBlockMatrix>(EquationCount());
    BuildStructure(project_, *K, nullptr);
    AddStiffnessOfAllMeshes(project_, *K, BlockAxes::Global);
    stiffness_ = std::move(K);
  }
  return *stiffness_;
}

ReaVecT LinearSystem::Product(const ReaVecT& u) const {
  ReaVecT product(u.n);
  Stiffness().Times(u, product);
  return product;
}

ReaVecT LinearSystem::SupportedProduct(const ReaVecT& v) const {
  ReaVecT u = v;
  SetHeldToZero(u);
  TurnToGlobal(u);
  ReaVecT product = Product(u);
  TurnToSupports(product);
  ForEachHeldDegree(project_, [&](int equation, int code, double value) {
    if (code == Prescribed) product(equation) = v(equation);
    if (code == Spring) product(equation) += value * v(equation);
  });
  return product;
}

ReaVecT LinearSystem::SupportedDiagonal() const {
  StiffnessMatrix& K = Stiffness();
  const int dofs = project_.dofsPerNode;
  ReaVecT diagonal(EquationCount());
  for (int i = 1; i <= diagonal.n; ++i) diagonal(i) = K.Entry(i, i);
  for (const auto [number, node] : *project_.meshes[0]->nodes) {
    const auto axes = SupportAxes(project_, *node);
    if (!axes) continue;
    const int first = FirstEquation(node->number, dofs);
    Matriu block(dofs, dofs);
    for (int i = 1; i <= dofs; ++i)
      for (int j = 1; j <= dofs; ++j)
        block(i, j) = K.Entry(first + std::min(i, j) - 1, first + std::max(i, j) - 1);
    TurnBlock(Transpose(*axes), Transpose(*axes), block);
    for (int i = 1; i <= dofs; ++i) diagonal(first + i - 1) = block(i, i);
  }
  ForEachHeldDegree(project_, [&](int equation, int code, double value) {
    if (code == Prescribed) diagonal(equation) = 1.0;
    if (code == Spring) diagonal(equation) += value;
  });
  return diagonal;
}

std::unique_ptr<StiffnessMatrix> LinearSystem::SupportedMatrix(SolverName solver) const {
  std::unique_ptr<StiffnessMatrix> K;
  if (solver == SolverName::Direct)
    K = NewDirectMatrix(EquationCount());
  else
    K = std::make_unique<SkyLine>(EquationCount());
  AssembleSupported(project_, *K, nullptr);
  return K;
}

Results SolveOnce(Project& project, const SolveOptions& options) {
  error.Clear();
  Solution solution = SolveProject(project, SettingsFor(project, options));
  if (options.requireSound) {
    LinearSystem system(project, std::move(solution.matrix));
    RequireSound(system);
    RequireResisted(system, solution.results.displacements);
    solution.matrix = std::move(system.matrix_);
  }
  ComputeStrengths(project, std::move(solution.matrix), solution.results, options.info,
                   Forces::OfAllNodes);
  return std::move(solution.results);
}

}  // namespace kestol
