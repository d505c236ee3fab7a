#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "input/Project.h"
#include "results/BeamResults.h"
#include "results/NodeResults.h"
#include "results/UnitNames.h"

namespace kestol {

/// What every writer of results is given: the model, its results and the tables that more than one
/// of them needs. Of a model that was not solved `results` holds the loads alone.
struct ResultData {
  /// `stations` of each beam; 0: as the deck says.
  ResultData(const Project& model, const Results& answer, int stations = 0);

  const Project& project;
  const Results& results;
  bool solved;
  UnitNames units;
  BeamTable beams;
  bool hasShells = false, hasSolids = false;
  std::vector<const Node*> nodes;  ///< by number in the input, then what the conversion created
  std::vector<std::int32_t> placeOfIndex;  ///< place in `nodes`, from 0, by internal index

  bool HasBeams() const { return !beams.beams.empty(); }
  /// The number in the input; 0 for a created node.
  int NumberOf(const Node& node) const;

  /// "name [unit]"; the name alone where the deck names no units. The unit is made of the deck's
  /// names for F (force), L (length) and P (pressure); other characters stay: "F L/L2".
  std::string Label(const std::string& name, const std::string& unit) const;
};

/// The model without a solution: prepared as far as its input goes (hinges), with its loads.
/// Refuses elements on unknown nodes in the solver's words.
Results LoadsOfUnsolved(Project& project);

}  // namespace kestol
