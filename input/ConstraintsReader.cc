#include "input/ConstraintsReader.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

#include "input/LinePairs.h"
#include "input/NodeSections.h"
#include "input/Project.h"
#include "input/RecordList.h"
#include "input/Words.h"
#include "main/ErrorChannel.h"
#include "model/Constraint.h"
#include "model/EulerAngles.h"

namespace kestol {

namespace {

/// What one line says, as it says it.
struct SupportLine {
  std::array<int, 6> codes{};
  std::array<double, 6> values{};
  std::array<double, 3> euler{};
  bool hasEuler = false;
  UnitFactors factors;
};

/// The codes, one digit each and then white space, and the values; false when they are not there.
bool TakeCodesAndValues(std::string_view& text, int n, SupportLine& line) {
  for (int d = 0; d < n; ++d) {
    const std::optional<int> digit = TakeDigit(text);
    if (!digit) return false;
    line.codes[d] = *digit;
  }
  const bool ends = !text.empty() && IsSpace(static_cast<unsigned char>(text.front()));
  return ends && TakeReals(text, line.values.data(), n);
}

void TakeEulerAngle(std::string_view key, std::string_view value, SupportLine& line) {
  line.euler[WhichEulerAngle(key)] = RealOf(value);
  line.hasEuler = true;
}

void TakePairs(std::string_view text, int nodeNumber, const Units& units, SupportLine& line) {
  LinePairs pairs(text, units);
  while (pairs.Next())
    if (StartsWithAnyCase(pairs.key, "Euler")) TakeEulerAngle(pairs.key, pairs.value, line);
  if (pairs.KeyWithoutValue())
    Fatal("Not reading correctly the constraints. -B- Number=", nodeNumber, "\n");
  line.factors = pairs.factors;
}

SupportLine ReadSupportLine(TextInput& input, int nodeNumber, const Project& project) {
  SupportLine line;
  std::string_view text = ReadRestOfLine(input).value_or("");
  if (!TakeCodesAndValues(text, project.dofsPerNode, line)) {
    if (project.dofsPerNode == 3)
      Fatal("Not reading correctly the constraints. Number=", nodeNumber, "\n");
    Fatal("Not reading correctly the constraints. -A- Number=", nodeNumber, "\n");
  }
  TakePairs(text, nodeNumber, project.units, line);
  return line;
}

/// Result units per unit of the input, for the value of degree `d` of `n`.
double ScaleOf(int code, int d, int n, const UnitFactors& factors) {
  // Deliberate: the last half counts as rotations, so does the third direction of a solid.
  const bool rotational = d > (n - 1) / 2;
  if (code == Prescribed) return rotational ? 1.0 : factors.length;
  if (code == Spring)
    return rotational ? factors.force * factors.length : factors.force / factors.length;
  return 1.0;
}

/// Adds the line to the record: a code of 0 leaves what earlier lines said about its degree.
void Store(const SupportLine& line, int dofsPerNode, Constraint& constraint) {
  const int n = std::min(dofsPerNode, constraint.dofs);
  for (int d = 0; d < n; ++d) {
    if (line.codes[d] == Free) continue;
    constraint.codes[d] = line.codes[d];
    constraint.values[d] = line.values[d] * ScaleOf(line.codes[d], d, n, line.factors);
  }
  if (!line.hasEuler) return;
  constraint.hasLocalAxes = true;
  constraint.Euler1 = line.euler[0];
  constraint.Euler2 = line.euler[1];
  constraint.Euler3 = line.euler[2];
}

void ReadSupport(Project& project, TextInput& input, int nodeNumber) {
  Node* const node = FindNode(project, nodeNumber);
  if (node == nullptr) Fatal("error: Trying to assign constrain to unknown node\n");
  const SupportLine line = ReadSupportLine(input, nodeNumber, project);
  if (!node->constraint) node->constraint = std::make_unique<Constraint>(project.dofsPerNode);
  Store(line, project.dofsPerNode, *node->constraint);
}

}  // namespace

void ReadConstraints(Project& project, TextInput& input, SourceMap* map) {
  const RecordList list{input, map, RecordKind::Support, input.RecordOffset()};
  ReadRecords(list, [&](int nodeNumber) { ReadSupport(project, input, nodeNumber); });
  TakeEnd(list);
}

}  // namespace kestol
