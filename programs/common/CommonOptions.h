#pragma once

#include <string>

namespace kestol {

/// What every companion can be asked for.
struct CommonOptions {
  std::string deck;
  std::string output;  ///< -o; empty when not given
  bool quiet = false;
  bool verbose = false;
};

}  // namespace kestol
