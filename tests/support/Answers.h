#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "tests/support/RunDeck.h"

namespace kestol {

// All numbers of a solved project, for tests that compare two models of one structure.

inline double LargestDisplacement(const SolvedProject& project) {
  double largest = 0.0;
  for (const double u : project.results.displacements) largest = std::max(largest, std::abs(u));
  return largest;
}

/// Displacements, printed reactions and strengths, in the order of the deck.
inline std::vector<double> AnswersOf(const SolvedProject& project) {
  std::vector<double> answers;
  for (const auto [number, node] : *project.meshes[0]->nodes) {
    for (int d = 1; d <= project.dofsPerNode; ++d)
      answers.push_back(Displacement(project, number, d));
    const Reaction* const reaction = FindReaction(project.results, node->number);
    if (reaction != nullptr)
      answers.insert(answers.end(), reaction->values.begin(), reaction->values.end());
  }
  for (const PointValues& values : project.results.meshes)
    answers.insert(answers.end(), values.local.begin(), values.local.end());
  return answers;
}

}  // namespace kestol
