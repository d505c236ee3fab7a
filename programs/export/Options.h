#pragma once

#include <string>
#include <vector>

#include "kestol/LinearSystem.h"
#include "programs/common/CommonOptions.h"
#include "programs/common/VtuArray.h"

namespace kestol {

/// What kestol-export is asked for; file names are empty where nothing is.
struct ExportOptions : CommonOptions {
  std::string vtu, csv, json, report, res;
  VtuEncoding encoding = VtuEncoding::Raw;
  int stations = 0;  ///< 0: as the deck says
  SolverName solver = SolverName::Deck;
  bool meshOnly = false;
};

/// Reads the command line; ends the program itself for --help, --version and whatever does not fit.
ExportOptions ParseOptions(int argc, char** argv);

}  // namespace kestol
