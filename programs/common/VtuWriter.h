#pragma once

#include <string>
#include <utility>
#include <vector>

#include "programs/common/VtuArray.h"

namespace kestol {

/// Cell types of the format that kestol's elements become.
enum VtuCell : std::uint8_t {
  kVtuPolyLine = 4,
  kVtuTriangle = 5,
  kVtuQuad = 9,
  kVtuTetra = 10,
  kVtuQuadraticTriangle = 22,
  kVtuQuadraticTetra = 24
};

/// An unstructured grid as arrays. The counts of `points` and `types` are those of the grid.
struct VtuGrid {
  VtuArray points;        ///< Float64, 3
  VtuArray connectivity;  ///< Int32, point places from 0
  VtuArray offsets;       ///< Int32, behind the last place of each cell
  VtuArray types;         ///< UInt8, VtuCell
  std::vector<VtuArray> pointData, cellData;
};

/// The grid as one VTK XML 1.0 file: UInt64 headers, little endian, written in one pass.
void WriteVtu(OutputBuffer& output, const VtuGrid& grid, VtuEncoding encoding);

/// A collection for ParaView: one file for each time value.
void WritePvd(OutputBuffer& output, const std::vector<std::pair<double, std::string>>& files);

/// The index of a grid that lies in pieces, all with the arrays of `grid`, of which only names and
/// types are asked.
void WritePvtu(OutputBuffer& output, const VtuGrid& grid, const std::vector<std::string>& pieces);

/// `text` as the value of an XML attribute, without the quotes: valid, whatever bytes it holds.
std::string XmlText(std::string_view text);

}  // namespace kestol
