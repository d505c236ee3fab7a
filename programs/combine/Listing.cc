#include "programs/combine/Listing.h"

#include <algorithm>
#include <array>

#include "programs/combine/TextTable.h"

namespace kestol {

namespace {

std::string FactorText(double factor) {
  if (factor == 0.0) return "-";
  std::array<char, kShortestLength> text;
  return {text.data(), WriteShortest(text.data(), factor)};
}

}  // namespace

void WriteListing(OutputBuffer& output, const std::vector<Combination>& combinations,
                  const std::vector<std::string>& cases) {
  TextTable table;
  table.Row().Left("combination");
  for (const std::string& name : cases) table.Right(name);
  table.Left("formula");
  for (const Combination& combination : combinations) {
    table.Row().Left(combination.name);
    for (const double factor : combination.factors) table.Right(FactorText(factor));
    table.Left(combination.formula);
  }
  table.Write(output);
}

}  // namespace kestol
