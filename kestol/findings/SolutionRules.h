#pragma once

#include <memory>
#include <optional>

#include "kestol/LinearSystem.h"
#include "kestol/Mechanisms.h"
#include "kestol/mechanisms/ScaledSystem.h"

namespace kestol {

class Inspection;

/// What is known of the model once it is assembled, and solved.
struct SolvedModel {
  std::unique_ptr<LinearSystem> system;
  std::unique_ptr<ScaledSystem> scaled;
  std::optional<Mechanisms> mechanisms;
  std::optional<double> condition;
  std::optional<Results> results;
};

/// The solver that suits the model: Direct where it is built, SkyLine while its profile is small,
/// else what the deck says.
SolverName SuitableSolver(const Project& project);

/// The place of what the solver refuses: the record of the element or node that the text names.
void AddRefusal(Inspection& deck, const std::string& text);

// Rules that look at the assembled model.
void FindRigid(Inspection& deck);         // rigid-motion
void FindMechanism(Inspection& deck);     // mechanism
void FindStiffSprings(Inspection& deck);  // spring

// Rules that look at the solution.
void FindIllConditioning(Inspection& deck);     // ill-conditioned
void FindLargeDisplacements(Inspection& deck);  // large-displacement
void FindImbalance(Inspection& deck);           // out-of-balance
void FindStiffElements(Inspection& deck);       // stiff-element

}  // namespace kestol
