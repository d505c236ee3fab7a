#pragma once

#include <string>

#include "kestol/Check.h"
#include "programs/check/Options.h"
#include "programs/common/OutputFiles.h"

namespace kestol {

/// The files of one run, opened before any work is done.
class Outputs {
public:
  explicit Outputs(const CheckRequest& request);

  /// Writes the findings in the format that was asked for, the tables and the modes.
  void Write(const Project& project, const Findings& findings);

  /// Says in the document that the deck could not be read, where the format has words for it.
  void WriteFailure(const std::string& why);

private:
  const CheckRequest& request_;
  OutputFiles files_;
  OutputFile* document_ =
      nullptr;  // tables, or everything as JSON or SARIF; null when not asked for
  OutputFile* modes_ = nullptr;
};

}  // namespace kestol
