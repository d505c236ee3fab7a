#pragma once

#include <memory>
#include <optional>
#include <ostream>

#include "kestol/Check.h"
#include "programs/view/Cases.h"
#include "programs/view/Options.h"

namespace kestol {

/// A deck with what could be found out about it.
struct Subject {
  std::unique_ptr<SourceMap> map;
  std::unique_ptr<Project> project;
  Findings found;
  std::optional<Results> results;  ///< of the deck's loads
  std::optional<SolvedCases> cases;
};

/// Reads, checks and solves. What is wrong with the deck becomes a finding, which is told on
/// standard error too, and what was read stays. Refuses mistakes of combination and case files.
Subject Study(const ViewOptions& options, std::ostream* info);

}  // namespace kestol
