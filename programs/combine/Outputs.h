#pragma once

#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "kestol/combine/Envelopes.h"
#include "kestol/combine/Superposition.h"
#include "programs/combine/CombinationFile.h"
#include "programs/combine/Options.h"
#include "programs/combine/ResultTables.h"
#include "programs/common/JsonWriter.h"
#include "programs/common/OutputFile.h"
#include "programs/common/ProgressLine.h"

namespace kestol {

/// Everything that one run writes. Results are computed one after the other, each for all formats.
class Outputs {
public:
  /// Opens the files, so that one that cannot be written shows before any work is done. All
  /// arguments must outlive this.
  Outputs(const CombineOptions& options, const CombinationFile& file,
          const std::vector<Combination>& combinations, std::vector<std::string> inputs);

  void Write(Superposition& sums, const ExtremeFinder* finder, ProgressLine& progress);

private:
  void WriteHead(const Project& project);
  void WriteCases(Superposition& sums, ProgressLine& progress);
  void WriteCombinations(Superposition& sums, ProgressLine& progress);
  void WriteResult(const std::string& name, const Results& results, const Project& project);
  void WriteVtuFile(const std::string& name, const class ResultData& data);
  void WriteAllEnvelopes(Superposition& sums, const ExtremeFinder& finder);
  void WriteCollection();
  void Commit();

  const CombineOptions& options_;
  const CombinationFile& file_;
  const std::vector<Combination>& combinations_;
  std::vector<std::string> inputs_;
  bool needsResults_;  ///< whether cases or combinations go to some file
  std::unique_ptr<OutputFile> text_, json_, collection_;
  std::unique_ptr<JsonWriter> document_;  ///< on json_
  std::unique_ptr<ResultTables> tables_;
  std::set<std::string> vtuNames_;
  std::vector<std::pair<double, std::string>> vtuFiles_;
};

}  // namespace kestol
