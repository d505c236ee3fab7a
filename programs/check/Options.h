#pragma once

#include <string>
#include <vector>

#include "kestol/Check.h"
#include "programs/common/CommonOptions.h"

namespace kestol {

enum class CheckFormat { Text, Json, Sarif };

/// What kestol-check is asked for.
struct CheckRequest : CommonOptions {
  CheckOptions check;
  CheckFormat format = CheckFormat::Text;
  bool reactions = false, equilibrium = false;
  bool strict = false;
  std::string modes;    ///< --mode: a VTU file; empty when not asked for
  std::string explain;  ///< a code; empty when not asked for
  bool listCodes = false;
};

/// Reads the command line; ends the program itself for --help, --version and whatever does not fit.
CheckRequest ParseOptions(int argc, char** argv);

}  // namespace kestol
