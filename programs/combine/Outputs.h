#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "kestol/combine/Envelopes.h"
#include "kestol/combine/Superposition.h"
#include "programs/combine/CombinationFile.h"
#include "programs/combine/EnvelopeCsv.h"
#include "programs/combine/Options.h"
#include "programs/combine/ResultTables.h"
#include "programs/common/JsonWriter.h"
#include "programs/common/OutputFiles.h"
#include "programs/common/ProgressLine.h"

namespace kestol {

/// Everything that one run writes. Results are computed one after the other, each for all formats.
class Outputs {
public:
  /// Opens the files, so that one that cannot be written shows before any work is done. All
  /// arguments must outlive this.
  Outputs(const CombineOptions& options, const CombinationFile& file,
          const std::vector<Combination>& combinations, const Project& project,
          std::vector<std::string> inputs);

  void Write(Superposition& sums, const ExtremeFinder* finder, ProgressLine& progress);

private:
  void OpenDocuments();
  void OpenTables(const Project& project);
  void NameVtuFiles();
  void WriteHead(const Project& project);
  void WriteCases(Superposition& sums, ProgressLine& progress);
  void WriteCombinations(Superposition& sums, ProgressLine& progress);
  void WriteResult(const std::string& name, const Results& results, const Project& project);
  void WriteVtuFile(const ResultData& data);
  void WriteAllEnvelopes(Superposition& sums, const ExtremeFinder& finder);
  void WriteCollection();

  const CombineOptions& options_;
  const CombinationFile& file_;
  const std::vector<Combination>& combinations_;
  bool needsResults_;  ///< whether cases or combinations go to some file
  OutputFiles files_;
  OutputFile *text_ = nullptr, *json_ = nullptr, *collection_ = nullptr;  ///< null: not asked for
  std::unique_ptr<JsonWriter> document_;                                  ///< on json_
  std::unique_ptr<ResultTables> tables_;
  std::unique_ptr<EnvelopeCsv> envelopeTables_;
  std::vector<std::string> vtuNames_;                     ///< of all results, in their order
  std::vector<std::pair<double, std::string>> vtuFiles_;  ///< of those that are written
};

}  // namespace kestol
