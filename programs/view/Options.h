#pragma once

#include <cstdint>
#include <string>

#include "kestol/LinearSystem.h"
#include "programs/common/CommonOptions.h"
#include "programs/view/PageWriter.h"

namespace kestol {

/// What kestol-view is asked for.
struct ViewOptions : CommonOptions {
  std::string cases;  ///< combination file; empty: the loads of the deck alone
  std::string svg;    ///< prefix of the drawings; empty: none
  std::int64_t maxTriangles = 1'000'000;
  Tables tables = Tables::All;
  SolverName solver = SolverName::Deck;

  /// With drawings alone no page is written unless -o names it.
  bool WantsPage() const { return svg.empty() || !output.empty(); }
};

/// Reads the command line; ends the program itself for --help, --version and whatever does not fit.
ViewOptions ParseOptions(int argc, char** argv);

}  // namespace kestol
