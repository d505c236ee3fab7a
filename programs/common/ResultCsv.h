#pragma once

#include <span>

#include "programs/common/OutputBuffer.h"
#include "programs/common/ResultData.h"

namespace kestol {

/// One table of results: PREFIX_name.csv.
struct CsvTable {
  const char* name;
  bool needsSolution;
  void (*write)(OutputBuffer&, const ResultData&);
};

/// All tables. Each begins with one header line that names the units, where the deck does.
std::span<const CsvTable> CsvTables();

}  // namespace kestol
