#pragma once

#include <memory>
#include <string>
#include <vector>

#include "kestol/Check.h"
#include "programs/check/Options.h"
#include "programs/common/OutputFile.h"

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
  OutputFile* Open(const std::string& name);

  const CheckRequest& request_;
  std::vector<std::unique_ptr<OutputFile>> files_;
  OutputFile* document_ =
      nullptr;  // tables, or everything as JSON or SARIF; null when not asked for
  OutputFile* modes_ = nullptr;
};

}  // namespace kestol
