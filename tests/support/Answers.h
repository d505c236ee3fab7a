#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "tests/support/RunDeck.h"

namespace kestol {

// All numbers of a solved project, for tests that compare two models of one structure.

inline double LargestDisplacement(const Project& project) {
  double largest = 0.0;
  for (const double u : project.global) largest = std::max(largest, std::abs(u));
  return largest;
}

/// Displacements, printed reactions and strengths, in the order of the deck.
inline std::vector<double> AnswersOf(const Project& project) {
  std::vector<double> answers;
  for (const auto [number, node] : *project.meshes[0]->nodes) {
    for (int d = 1; d <= project.dofsPerNode; ++d)
      answers.push_back(Displacement(project, number, d));
    if (!node->constraint) continue;
    for (const double reaction : node->constraint->reactions) answers.push_back(reaction);
  }
  for (const ReaVecT& strengths : project.gaussVariables)
    answers.insert(answers.end(), strengths.begin(), strengths.end());
  return answers;
}

}  // namespace kestol
