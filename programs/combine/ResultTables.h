#pragma once

#include <string>
#include <vector>

#include "programs/common/OutputFiles.h"
#include "programs/common/ResultData.h"

namespace kestol {

/// The tables of all cases and combinations, PREFIX_nodes.csv and so on: those of one result, one
/// below the other, with the name of the result in a first column.
class ResultTables {
public:
  /// Opens its files among those of the run.
  ResultTables(const std::string& prefix, OutputFiles& files);

  void Add(const std::string& name, const ResultData& data);

private:
  std::vector<OutputFile*> files_;  ///< in the order of CsvTables
  bool first_ = true;
};

}  // namespace kestol
