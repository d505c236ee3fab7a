#include "kestol/Mechanisms.h"

#include <algorithm>
#include <cmath>

#include "analysis/Assembly.h"
#include "kestol/findings/Profile.h"
#include "kestol/mechanisms/MechanismText.h"
#include "kestol/mechanisms/NullSpace.h"
#include "kestol/mechanisms/SparseModes.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

/// A Ritz value that no sound model was ever seen to have, on the way to one of a motion without
/// resistance.
constexpr double kSuspicious = 1e-10;

/// Rotations count as much as the displacements that they cause over the size of the model.
double SizeOfParts(const Parts& parts) {
  double size = 0.0;
  for (int index = 2; index <= parts.NodeCount(); ++index)
    size =
        std::max(size, Norm(Minus(PositionOf(parts.NodeAt(index)), PositionOf(parts.NodeAt(1)))));
  return size > 0.0 ? size : 1.0;
}

void ScaleRotations(const Project& project, double factor, ReaVecT& z) {
  const int dofs = project.dofsPerNode;
  const int firstRotation = IsPlaneFrame(project) ? 2 : 3;
  for (int i = 0; i < z.n; i += dofs)
    for (int d = firstRotation; d < dofs; ++d) z(i + d + 1) *= factor;
}

/// Scales to a largest component of 1, which is positive.
void ScaleToOne(ReaVecT& z) {
  double largest = 0.0;
  for (const double entry : z)
    if (std::abs(entry) > std::abs(largest) * (1.0 + 1e-9)) largest = entry;
  if (largest == 0.0) return;
  for (double& entry : z) entry /= largest;
}

MechanismMode ModeOf(const Project& project, const Parts& parts, ReaVecT z,
                     const RigidMotion* rigid, double ritz) {
  ScaleToOne(z);
  MechanismMode mode;
  mode.isRigid = rigid != nullptr;
  mode.ritz = ritz;
  DescribeMode(project, parts, z, rigid, mode);
  return mode;
}

/// x . A x of the unit vector along S^-1 z.
double RitzValueOf(const ScaledSystem& A, ReaVecT z) {
  A.System().TurnToSupports(z);
  A.Unscale(z);
  double length = 0.0, product = 0.0;
  const ReaVecT image = A.Times(z);
  for (int i = 1; i <= z.n; ++i) {
    length += z(i) * z(i);
    product += z(i) * image(i);
  }
  return length > 0.0 ? product / length : 0.0;
}

/// The null vectors in global axes, prescribed degrees exactly 0.
std::vector<ReaVecT> GlobalModes(const ScaledSystem& A, std::vector<ReaVecT> modes) {
  for (ReaVecT& z : modes) {
    A.Scale(z);
    A.System().TurnToGlobal(z);
  }
  return modes;
}

/// An order that does not depend on that of the equations.
bool MovesFewerNodes(const MechanismMode& a, const MechanismMode& b) {
  if (a.motion.size() != b.motion.size()) return a.motion.size() < b.motion.size();
  return std::lexicographical_compare(
      a.motion.begin(), a.motion.end(), b.motion.begin(), b.motion.end(),
      [](const NodeMotion& p, const NodeMotion& q) { return p.node < q.node; });
}

Mechanisms Describe(const Project& project, const Parts& parts, const ScaledSystem* A,
                    const std::vector<ReaVecT>& null, int explained) {
  const std::vector<RigidMotion> motions = FreeRigidMotions(project, parts);
  std::vector<ReaVecT> rigid;
  rigid.reserve(motions.size());
  for (const RigidMotion& motion : motions)
    rigid.push_back(DisplacementsOf(project, parts, motion));
  const double size = SizeOfParts(parts);
  const auto scaled = [&](std::vector<ReaVecT> vectors, double factor) {
    for (ReaVecT& z : vectors) ScaleRotations(project, factor, z);
    return vectors;
  };
  const std::vector<ReaVecT> rest =
      scaled(SparseModes(scaled(null, size), scaled(rigid, size)), 1.0 / size);
  Mechanisms result;
  for (const RigidMotion& motion : motions) {
    if (result.freeParts.empty() || result.freeParts.back().part != motion.part)
      result.freeParts.push_back({motion.part, 0});
    ++result.freeParts.back().motions;
  }
  result.isOnePart = parts.Count() == 1;
  result.count = static_cast<int>(rigid.size() + rest.size());
  const auto add = [&](const ReaVecT& z, const RigidMotion* motion) {
    const double ritz = A == nullptr ? 0.0 : RitzValueOf(*A, z);
    result.modes.push_back(ModeOf(project, parts, z, motion, ritz));
    if (motion == nullptr) return;
    result.modes.back().part = motion->part;
  };
  for (std::size_t m = 0; m < rigid.size(); ++m) add(rigid[m], &motions[m]);
  for (const ReaVecT& z : rest) add(z, nullptr);
  std::stable_sort(result.modes.begin() + static_cast<std::ptrdiff_t>(rigid.size()),
                   result.modes.end(), MovesFewerNodes);
  const auto most = static_cast<std::size_t>(std::max(explained, 0));
  if (result.modes.size() > most)
    result.modes.erase(result.modes.begin() + static_cast<std::ptrdiff_t>(most),
                       result.modes.end());
  return result;
}

bool Factorises(LinearSystem& system) {
  try {
    system.Factorise();
    return true;
  } catch (const FatalError&) {
    error.Clear();
    return false;
  }
}

/// Whether the system's own factor shows that everything is resisted.
bool FactorIsSound(LinearSystem& system, const ScaledSystem& A) {
  constexpr int kFewVectors = 4, kFewSteps = 3;
  if (!Factorises(system)) return false;
  StiffnessMatrix& factor = system.Factor();
  const RitzVectors ritz = SubspaceIteration(
      A, kFewVectors, kFewSteps, [&](std::vector<ReaVecT>& block) { A.SolveBy(factor, block); });
  return std::none_of(ritz.values.begin(), ritz.values.end(),
                      [](double value) { return std::abs(value) < kSuspicious; });
}

SolverName SolverFor(const LinearSystem& system, const MechanismOptions& options) {
  if (options.solver == SolverName::SkyLine || options.solver == SolverName::Direct)
    return options.solver;
  if (DirectSolverIsBuilt()) return SolverName::Direct;
  return ProfileBytes(system.Model()) > kMostProfile ? SolverName::Sparse : SolverName::SkyLine;
}

}  // namespace

Mechanisms FindMechanisms(LinearSystem& system, const MechanismOptions& options) {
  error.Clear();
  const Project& project = system.Model();
  const SolverName solver = SolverFor(system, options);
  if (solver == SolverName::Sparse) {
    Mechanisms rigid = FindRigidMotions(project, options.explained);
    rigid.isComplete = false;
    return rigid;
  }
  ScaledSystem A(system, solver);
  return FindMechanisms(system, A, options);
}

Mechanisms FindMechanisms(LinearSystem& system, ScaledSystem& A, const MechanismOptions& options) {
  const Project& project = system.Model();
  const Parts parts(project);
  if (options.useFactor && FactorIsSound(system, A))
    return FindRigidMotions(project, options.explained);
  const RitzVectors null = NullSpaceOf(A, options.explained);
  Mechanisms result = Describe(project, parts, &A, GlobalModes(A, null.vectors), options.explained);
  result.isCounted = null.areAll;
  return result;
}

bool IsSound(LinearSystem& system) {
  constexpr int kSmall = 20'000;  // equations, for which a factor costs little
  error.Clear();
  if (system.HasFactor()) {
    if (FactorIsSound(system, ScaledSystem(system, SolverName::SkyLine))) return true;
    // Very thin plates come near to a mechanism: the whole search tells them apart.
    const Mechanisms found = FindMechanisms(system);
    return found.isComplete && found.count == 0;
  }
  if (system.EquationCount() <= kSmall) return FindMechanisms(system).count == 0;
  return FreeRigidMotions(system.Model(), Parts(system.Model())).empty();
}

bool IsFree(const LinearSystem& system, const ReaVecT& displacements) {
  const bool moves = std::any_of(displacements.begin(), displacements.end(),
                                 [](double component) { return component != 0.0; });
  if (!moves) return false;
  return std::abs(RitzValueOf(ScaledSystem(system, SolverName::SkyLine), displacements)) <
         kNoResistance;
}

bool IsOfMechanism(const FatalError& refusal) {
  return dynamic_cast<const Unresisted*>(&refusal) != nullptr;
}

void RefuseMechanism(const Project& project) {
  error.Clear();
  try {
    RefuseUnsolved(project, kBreakdown);
  } catch (const FatalError& refusal) {
    throw Unresisted(error, refusal.Status());
  }
}

void RequireSound(LinearSystem& system) {
  if (!IsSound(system)) RefuseMechanism(system.Model());
}

void RequireResisted(const LinearSystem& system, const ReaVecT& displacements) {
  if (IsFree(system, displacements)) RefuseMechanism(system.Model());
}

Mechanisms FindRigidMotions(const Project& project, int explained) {
  const Parts parts(project);
  return Describe(project, parts, nullptr, {}, explained);
}

std::string WaysText(int count, bool isCounted) {
  return (isCounted ? "" : "at least ") + std::to_string(count) + (count == 1 ? " way" : " ways");
}

std::vector<std::string> MechanismReport(const Mechanisms& mechanisms) {
  std::vector<std::string> lines;
  lines.push_back("the model is a mechanism in " +
                  WaysText(mechanisms.count, mechanisms.isCounted));
  for (std::size_t m = 0; m < mechanisms.modes.size(); ++m) {
    const MechanismMode& mode = mechanisms.modes[m];
    const std::string name = "  mode " + std::to_string(m + 1) + ": ";
    for (std::size_t i = 0; i < mode.text.size(); ++i)
      lines.push_back((i == 0 ? name : std::string(name.size(), ' ')) + mode.text[i]);
    if (!mode.hinges.empty()) lines.push_back("    hinges at " + NodesText(mode.hinges));
    if (!mode.supports.empty()) lines.push_back("    supports at " + NodesText(mode.supports));
  }
  const std::size_t explained = mechanisms.modes.size();
  if (static_cast<int>(explained) < mechanisms.count && explained > 0)
    lines.push_back("  and " + std::to_string(mechanisms.count - static_cast<int>(explained)) +
                    " more");
  return lines;
}

}  // namespace kestol
