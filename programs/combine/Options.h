#pragma once

#include <string>

#include "kestol/LinearSystem.h"
#include "programs/common/CommonOptions.h"

namespace kestol {

/// What kestol-combine is asked for. `deck` of the common options is the combination file.
struct CombineOptions : CommonOptions {
  std::string csv, json, vtu;  ///< empty when not given
  bool list = false;
  bool cases = false, combinations = false, envelopes = false;  ///< what is written
  SolverName solver = SolverName::Deck;

  /// Whether results go anywhere but to the text.
  bool WritesFiles() const { return !csv.empty() || !json.empty() || !vtu.empty(); }
};

/// Ends the program itself on --help, --version and what it does not understand.
CombineOptions ParseOptions(int argc, char** argv);

}  // namespace kestol
