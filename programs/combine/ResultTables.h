#pragma once

#include <memory>
#include <string>
#include <vector>

#include "programs/common/OutputFile.h"
#include "programs/common/ResultData.h"

namespace kestol {

/// The tables of all cases and combinations, PREFIX_nodes.csv and so on: those of one result, one
/// below the other, with the name of the result in a first column.
class ResultTables {
public:
  /// Opens the files.
  ResultTables(const std::string& prefix, const std::vector<std::string>& inputs);

  void Add(const std::string& name, const ResultData& data);
  void Commit();

private:
  std::vector<std::unique_ptr<OutputFile>> files_;  ///< in the order of CsvTables
  bool first_ = true;
};

}  // namespace kestol
