#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "programs/common/JsonWriter.h"
#include "programs/common/OutputBuffer.h"

namespace kestol {

/// How exactly numbers go into a page.
enum class Precision {
  Exact,   ///< doubles, bit for bit
  Compact  ///< seven digits, or 65536 steps between the limits of each component
};

/// Numbers of one kind on their way into the page: an inert script element of base64, and a line in
/// the page's head that says how to read it.
///
///     type    bytes a number
///     f64     8                exact reals
///     f32     4                compact reals
///     u16     2                compact reals that may be coarse: low + step * n, a pair of limits
///                              for each component in turn
///     delta   1 to 5           indices: zigzag differences, seven bits a byte, lowest first
struct PageBlock {
  static PageBlock Reals(std::string name, int components, std::vector<double> values,
                         bool mayBeCoarse = false) {
    return {std::move(name), components, mayBeCoarse, std::move(values), {}};
  }
  static PageBlock Indices(std::string name, std::vector<std::uint32_t> values) {
    return {std::move(name), 1, false, {}, std::move(values)};
  }

  std::string name;
  int components = 1;
  bool mayBeCoarse = false;
  std::vector<double> reals;
  std::vector<std::uint32_t> indices;
};

/// The beginning of the names of numbered blocks: "m0.".
std::string NumberedPrefix(char kind, std::size_t number);

/// The member of "blocks" for this block.
void WriteBlockHead(JsonWriter& json, const PageBlock& block, Precision precision);

/// The script element with the numbers.
void WriteBlock(OutputBuffer& output, const PageBlock& block, Precision precision);

}  // namespace kestol
