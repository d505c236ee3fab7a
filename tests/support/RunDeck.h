#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "analysis/BeamElement.h"
#include "analysis/Results.h"
#include "analysis/SolveDriver.h"
#include "analysis/Strengths.h"
#include "input/Project.h"
#include "input/ProjectReader.h"
#include "input/TextInput.h"

namespace kestol {

// From the text of a deck to a solved project, in process, and questions to that project in the
// numbers of the deck.

/// A model together with what its solution gives.
struct SolvedProject : Project {
  using Project::Project;
  Results results;
};

/// The model as read; its results are empty.
inline std::unique_ptr<SolvedProject> ReadDeck(std::string deck) {
  auto project = std::make_unique<SolvedProject>(100);
  TextInput input(std::move(deck));
  ReadProject(*project, input);
  project->results.meshes.resize(project->meshes.size());
  return project;
}

/// Solves a model that was read: displacements, strengths and reactions.
inline void Run(SolvedProject& project, int renumber = 1, std::ostream* info = nullptr) {
  Solution solution = SolveProject(project, {.renumber = renumber != 0, .info = info});
  ComputeStrengths(project, std::move(solution.matrix), solution.results, info);
  project.results = std::move(solution.results);
}

/// The model with displacements, strengths and reactions.
inline std::unique_ptr<SolvedProject> RunDeck(std::string deck, int renumber = 1,
                                              std::ostream* info = nullptr) {
  auto project = ReadDeck(std::move(deck));
  Run(*project, renumber, info);
  return project;
}

inline const Node& NodeOf(const Project& project, int nodeNumber) {
  return *project.meshes[0]->nodes->Get(nodeNumber);
}

/// Displacement d (from 1) of a node.
inline double Displacement(const SolvedProject& project, int nodeNumber, int d) {
  const int first = FirstEquation(NodeOf(project, nodeNumber).number, project.dofsPerNode);
  return project.results.displacements(first + d - 1);
}

/// Reaction d (from 1) of a supported node, as the reports print it.
inline double PrintedReaction(const SolvedProject& project, int nodeNumber, int d) {
  return FindReaction(project.results, NodeOf(project, nodeNumber).number)->values.at(d - 1);
}

/// What a beam's ends feel, in local axes: stiffness times displacements less the equivalent forces
/// of its loads. First end 1, then end 2.
inline std::vector<double> EndForces(const SolvedProject& project, int elemNumber) {
  const int dofs = project.dofsPerNode;
  std::vector<double> forces;
  for (std::size_t m = 0; m < project.meshes.size(); ++m) {
    int position = 0;
    for (const auto [number, elem] : project.meshes[m]->elems) {
      if (number == elemNumber) {
        const double* const stored = project.results.meshes[m].local.begin() + 2 * dofs * position;
        forces.assign(stored, stored + 2 * dofs);
        BeamElement beam(project);
        beam.SetElem(*elem);
        for (const BeamLoad& load : beam.loads) {
          const BeamEndForces f =
              EquivalentEndForces(load, beam.L, project.problemType, beam.endCode);
          for (int d = 0; d < dofs; ++d) {
            forces[d] -= f.f1[d];
            forces[dofs + d] -= f.f2[d];
          }
        }
      }
      ++position;
    }
  }
  return forces;
}

/// What the supports of a node really give, in global axes: the end forces of its beams less the
/// load on the node itself.
inline std::vector<double> SupportForces(const SolvedProject& project, int nodeNumber) {
  const int dofs = project.dofsPerNode;
  const Node& node = NodeOf(project, nodeNumber);
  std::vector<double> sum(dofs, 0.0);
  for (const auto& mesh : project.meshes)
    for (const auto [number, elem] : mesh->elems)
      for (int end = 0; end < 2; ++end) {
        if (elem->nodes[end] != &node) continue;
        const std::vector<double> forces = EndForces(project, number);
        BeamElement beam(project);
        beam.SetElem(*elem);
        for (int i = 1; i <= dofs; ++i)
          for (int j = 1; j <= dofs; ++j) sum[i - 1] += beam.T(i, j) * forces[end * dofs + j - 1];
      }
  if (node.load)
    for (int d = 0; d < dofs; ++d) sum[d] -= (*node.load)(d + 1);
  return sum;
}

}  // namespace kestol
