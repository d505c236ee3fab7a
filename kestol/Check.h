#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "input/SourceMap.h"
#include "kestol/LinearSystem.h"
#include "kestol/Mechanisms.h"
#include "kestol/findings/Finding.h"

namespace kestol {

/// How far a deck is looked at.
struct CheckOptions {
  bool syntaxOnly = false;              ///< what the text says; nothing is assembled
  bool assemble = true;                 ///< false: only the model as it was read
  bool solve = true;                    ///< when the deck has no error
  bool strict = false;                  ///< warnings are errors
  bool condition = true;                ///< estimate the condition number
  int mechanisms = 6;                   ///< most modes that are explained; 0: none
  std::vector<std::string> disabled{};  ///< codes that are left out
};

/// Everything that was found out about a deck.
struct Findings {
  std::vector<Finding> list;  ///< in the order of the deck, then those without a place
  std::optional<Mechanisms> mechanisms;
  std::optional<double> condition;       ///< of the scaled stiffness
  std::unique_ptr<LinearSystem> system;  ///< null when nothing was assembled; refers to the project
  std::optional<Results> results;        ///< when the model was solved

  int Count(Severity severity) const;
};

/// Looks for mistakes in a model that was read with a map. The model is prepared for the solution
/// on the way; it must outlive what is given back.
Findings Check(Project& project, const SourceMap& map, const CheckOptions& options = {});

/// One kind of finding.
struct FindingKind {
  std::string_view code;
  Severity severity;         ///< the usual one
  std::string_view explain;  ///< one line
};

/// All kinds, in the order in which they are looked for.
std::vector<FindingKind> FindingKinds();

/// Whether one of them has this code.
bool IsFindingCode(const std::string& code);

}  // namespace kestol
