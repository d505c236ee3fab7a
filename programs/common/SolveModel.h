#pragma once

#include <string>

#include "kestol/LinearSystem.h"

namespace kestol {

/// The complete answer of the model to the loads of its deck, for a program that was asked for it.
///
/// What the deck says wrongly is refused as always. A model that is well written and cannot be
/// solved moves without resistance: that is a finding, told on standard error, and ends the program
/// with kFindings.
///
/// `asProgram`: to the same digits as the program kestol, for its own files.
Results SolveModel(Project& project, const std::string& deck, const SolveOptions& options,
                   bool asProgram);

}  // namespace kestol
