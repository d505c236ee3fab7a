#pragma once

#include <pybind11/pybind11.h>

#include <string>
#include <vector>

#include "kestol/LinearSystem.h"

namespace kestol {

/// What is asked of a check.
struct CheckRequest {
  bool solve;
  bool condition;
  int mechanisms;                     ///< most modes that are explained
  std::vector<std::string> disabled;  ///< codes
};

/// The findings about the deck in the file, as tuples (code, severity, text, file, line, column,
/// endColumn, nodes, elements); file and lines None where a finding has no place.
pybind11::list CheckFile(const std::string& path, const CheckRequest& request);

/// The same for a text in memory, which findings call `name`.
pybind11::list CheckText(const std::string& text, const std::string& name,
                         const CheckRequest& request);

/// Raises kestol.Error with the modes of a system that moves without resistance; returns for any
/// other.
void RaiseMechanism(LinearSystem& system);

}  // namespace kestol
