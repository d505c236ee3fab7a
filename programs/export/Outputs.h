#pragma once

#include <string>
#include <vector>

#include "programs/common/OutputFiles.h"
#include "programs/common/ResultData.h"
#include "programs/export/Options.h"

namespace kestol {

/// The files that one run writes. All are opened before anything is solved, and get their names
/// together when all are complete.
class Outputs {
public:
  /// Refuses names that cannot be written, are the deck, or stand for two files. Whether the model
  /// has beams decides on their diagrams.
  Outputs(const ExportOptions& options, bool hasBeams);

  void Write(const ResultData& data);

private:
  OutputFile* Open(const std::string& name);
  void WriteOwnFiles(const ResultData& data);

  const ExportOptions& options_;
  OutputFiles files_;
  OutputFile *vtu_, *diagrams_, *json_, *report_, *res_;  ///< null: not asked for
  std::vector<OutputFile*> tables_;                       ///< by place of the table
};

}  // namespace kestol
