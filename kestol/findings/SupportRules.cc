#include <cmath>
#include <map>
#include <string>

#include "kestol/findings/Inspection.h"
#include "kestol/findings/ModelRules.h"
#include "model/Constraint.h"

namespace kestol {

namespace {

/// The name of degree `d` (from 0).
std::string_view DegreeName(const Project& project, int d) {
  static constexpr std::string_view kPlane[] = {"x", "y", "rotation"};
  static constexpr std::string_view kSpace[] = {"x",          "y",          "z",
                                                "rotation x", "rotation y", "rotation z"};
  return project.problemType == Plane ? kPlane[d] : kSpace[d];
}

/// What the lines of one node said so far.
struct Said {
  std::array<int, 6> codes{};
  std::array<double, 6> values{};
  std::array<std::uint64_t, 6> offsets{};
  bool hasEuler = false;
  std::array<double, 3> euler{};
  std::uint64_t eulerOffset = 0;
};

std::string CodeText(int code, double value) {
  const char* const what = code == Spring ? "spring " : "prescribed ";
  return what + NumberText(value);
}

void Compare(Inspection& deck, const Inspection::NodeLine& line, Said& said) {
  bool isReported = false;
  for (int d = 0; d < deck.project.dofsPerNode; ++d) {
    if (line.codes[d] == Free) continue;
    const bool differs = said.codes[d] != Free &&
                         (said.codes[d] != line.codes[d] || said.values[d] != line.values[d]);
    if (differs && !isReported) {
      isReported = true;
      Finding& finding = deck.Add(
          {line.offset, 0},
          std::string(DegreeName(deck.project, d)) + " of node " + std::to_string(line.node) +
              ": " + CodeText(line.codes[d], line.values[d]) + " replaces " +
              CodeText(said.codes[d], said.values[d]) + " of line " + LineOfMention());
      finding.nodes = {line.node};
      finding.mentions.push_back(said.offsets[d]);
    }
    said.codes[d] = line.codes[d];
    said.values[d] = line.values[d];
    said.offsets[d] = line.offset;
  }
  if (!line.hasEuler) return;
  if (said.hasEuler && said.euler != line.euler && !isReported) {
    Finding& finding =
        deck.Add({line.offset, 0}, "the axes of the support at node " + std::to_string(line.node) +
                                       " replace those of line " + LineOfMention());
    finding.nodes = {line.node};
    finding.mentions.push_back(said.eulerOffset);
  }
  said.hasEuler = true;
  said.euler = line.euler;
  said.eulerOffset = line.offset;
}

}  // namespace

void FindReplacedSupports(Inspection& deck) {
  std::map<int, Said> said;
  for (const Inspection::NodeLine& line : deck.supports) Compare(deck, line, said[line.node]);
}

void FindValuesWithoutCode(Inspection& deck) {
  for (const Inspection::NodeLine& line : deck.supports)
    for (int d = 0; d < deck.project.dofsPerNode; ++d) {
      if (line.codes[d] != Free || line.values[d] == 0.0) continue;
      deck.Add(line.places[d],
               NumberText(line.values[d]) + " for " + std::string(DegreeName(deck.project, d)) +
                   " of node " + std::to_string(line.node) + " has no effect: its code is 0 (free)")
          .nodes = {line.node};
      break;
    }
}

void FindSprings(Inspection& deck) {
  for (const Inspection::NodeLine& line : deck.supports)
    for (int d = 0; d < deck.project.dofsPerNode; ++d) {
      if (line.codes[d] != Spring || line.values[d] > 0.0) continue;
      const bool isZero = line.values[d] == 0.0;
      deck.Add(line.places[d], "the spring for " + std::string(DegreeName(deck.project, d)) +
                                   " of node " + std::to_string(line.node) +
                                   (isZero ? " has no stiffness" : " has a negative stiffness"))
          .nodes = {line.node};
      break;
    }
}

}  // namespace kestol
