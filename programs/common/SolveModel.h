#pragma once

#include <string>

#include "kestol/LinearSystem.h"

namespace kestol {

/// The complete answer of the model to the loads of its deck, for a program that was asked for it.
///
/// What the deck says wrongly is refused as always. A model that is well written and cannot be
/// solved, or moves without resistance although it can, ends the program with kFindings and the
/// words of EndUnsolved.
///
/// `asProgram`: to the same digits as the program kestol, for its own files.
Results SolveModel(Project& project, const std::string& deck, const SolveOptions& options,
                   bool asProgram);

}  // namespace kestol
