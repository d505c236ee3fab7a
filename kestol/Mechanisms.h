#pragma once

#include <string>
#include <vector>

#include "algebra/Vector3.h"
#include "kestol/LinearSystem.h"
#include "main/ErrorChannel.h"

namespace kestol {

class ScaledSystem;

/// How a node moves in a mode; global axes, no rotation in solids.
struct NodeMotion {
  int node;  ///< number of the input
  Vector3 u{}, rotation{};
};

/// One motion that nothing resists, scaled to a largest component of 1.
struct MechanismMode {
  bool isRigid = false;            ///< a connected part moves as a rigid body
  int part = 0;                    ///< which one, from 0; of rigid motions
  double ritz = 0.0;               ///< of the scaled stiffness: rounding
  std::vector<NodeMotion> motion;  ///< of the nodes that move, by number
  std::vector<std::string> text;   ///< the motion in words, then what may be its cause
  std::vector<int> hinges;         ///< nodes with a hinge near it
  std::vector<int> supports;       ///< supported nodes near it
};

/// A connected part of the model that its supports do not hold.
struct FreePart {
  int part;     ///< as in the modes
  int motions;  ///< how many rigid ones are left to it
};

/// What is left without resistance by supports, hinges and elements.
struct Mechanisms {
  int count = 0;                     ///< of all modes
  bool isCounted = true;             ///< false where there are more, too many to be sought
  std::vector<FreePart> freeParts;   ///< all of them, in the order of the modes
  bool isOnePart = true;             ///< whether the model is connected
  std::vector<MechanismMode> modes;  ///< the explained ones, rigid motions first
  /// False where the matrix was too large to be factorised: then only rigid motions were looked
  /// for.
  bool isComplete = true;
};

struct MechanismOptions {
  int explained = 6;  ///< most modes that are explained
  /// Whether the factor of the system itself is tried first: a sound model then costs a few
  /// substitutions. Not for a system whose solver iterates.
  bool useFactor = false;
  /// Of the shifted matrix: SkyLine or Direct; Deck: whichever suits.
  SolverName solver = SolverName::Deck;
};

/// Looks for motions without resistance: vectors z with K z = 0, K the supported stiffness with its
/// springs.
///
/// With S = diag(K)^-1/2 the near null space of A = S K S is found by subspace iteration with
/// (A + 3e-14 I)^-1 and Rayleigh-Ritz; a Ritz value below 1e-12 is a mode. Stable models have
/// none below 5e-11, so that the two are told apart by orders of magnitude. Rigid motions of
/// connected parts are separated from the rest, and the rest into modes that move few nodes each.
Mechanisms FindMechanisms(LinearSystem& system, const MechanismOptions& options = {});

/// The same for a system that is scaled already; its matrix is used up.
Mechanisms FindMechanisms(LinearSystem& system, ScaledSystem& A, const MechanismOptions& options);

/// Whether nothing speaks for a motion without resistance. With a factor a few substitutions tell,
/// most often; a pivot that fails, or a small Ritz value, asks for the search above. Where the
/// solver iterates, the supports of each part are looked at, and a small model is searched.
bool IsSound(LinearSystem& system);

/// Whether the stiffness resists `displacements` (global axes) less than any sound model would: the
/// solution of a mechanism whose loads set it in motion. A model that does not move is not free.
bool IsFree(const LinearSystem& system, const ReaVecT& displacements);

/// A refusal of a model because it was found to move without resistance. Whatever else keeps it
/// from being solved, such as iterations that end too early, is a FatalError alone.
class Unresisted : public FatalError {
public:
  using FatalError::FatalError;
};

/// Whether the refusal is one of these.
bool IsOfMechanism(const FatalError& refusal);

/// Refuses such a model, as the solver refuses a singular matrix.
[[noreturn]] void RefuseMechanism(const Project& project);

/// Refuses in this way a system that is not sound.
void RequireSound(LinearSystem& system);

/// Refuses in this way displacements that nothing resists. They tell of the mechanisms of a
/// large system whose solver iterates, which RequireSound does not search.
void RequireResisted(const LinearSystem& system, const ReaVecT& displacements);

/// The rigid motions alone: what the supports leave to each connected part. Factorises nothing.
Mechanisms FindRigidMotions(const Project& project, int explained);

/// "2 ways", "at least 129 ways".
std::string WaysText(int count, bool isCounted);

/// "the model is a mechanism in 2 ways", and each mode in indented lines: for programs that end
/// there.
std::vector<std::string> MechanismReport(const Mechanisms& mechanisms);

}  // namespace kestol
