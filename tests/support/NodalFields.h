#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

#include "tests/support/ElementStiffness.h"
#include "tests/support/RunDeck.h"

namespace kestol {

// The answer of a spatial model node by node, in the numbers of the deck, for tests that compare
// two models of one structure.

/// A vector for every node, at place number - 1.
using Field = std::vector<Vector3>;

struct NodalFields {
  Field displacement, rotation;  ///< of the solution
  Field force, moment;           ///< K u without supports: what holds the node in place
  Field reaction, couple;        ///< as printed; 0 without a support record

  explicit NodalFields(const SolvedProject& project);
};

/// Three numbers of a vector by equation, at every node as read; zeros when it has only three.
inline Field FieldOf(const Project& project, const ReaVecT& vector, int firstDegree) {
  Field field(project.nodesAsRead);
  if (firstDegree > project.dofsPerNode) return field;
  for (int n = 1; n <= project.nodesAsRead; ++n) {
    const int first = FirstEquation(NodeOf(project, n).number, project.dofsPerNode);
    for (int d = 0; d < 3; ++d) field[n - 1][d] = vector(first + firstDegree - 1 + d);
  }
  return field;
}

inline Field PrintedReactions(const SolvedProject& project, int firstDegree) {
  Field field(project.nodesAsRead);
  if (firstDegree > project.dofsPerNode) return field;
  for (int n = 1; n <= project.nodesAsRead; ++n)
    if (FindReaction(project.results, NodeOf(project, n).number) != nullptr)
      for (int d = 0; d < 3; ++d) field[n - 1][d] = PrintedReaction(project, n, firstDegree + d);
  return field;
}

/// K u of a solved project, by equation: without supports, in global axes.
inline ReaVecT InternalForces(const SolvedProject& project) {
  const Matriu K = GlobalStiffness(project);
  ReaVecT forces(K.nrows);
  for (int i = 1; i <= K.nrows; ++i) {
    double sum = 0.0;
    for (int j = 1; j <= K.ncols; ++j) sum += K(i, j) * project.results.displacements(j);
    forces(i) = sum;
  }
  return forces;
}

inline NodalFields::NodalFields(const SolvedProject& project)
    : displacement(FieldOf(project, project.results.displacements, 1)),
      rotation(FieldOf(project, project.results.displacements, 4)),
      reaction(PrintedReactions(project, 1)),
      couple(PrintedReactions(project, 4)) {
  const ReaVecT forces = InternalForces(project);
  force = FieldOf(project, forces, 1);
  moment = FieldOf(project, forces, 4);
}

inline double LargestOf(const Field& field) {
  double largest = 0.0;
  for (const Vector3& v : field) largest = std::max(largest, Norm(v));
  return largest;
}

/// Expects got = wanted to `tolerance` times the largest vector.
inline void ExpectSameField(const Field& got, const Field& wanted, double tolerance,
                            const char* what) {
  ASSERT_EQ(got.size(), wanted.size());
  const double allowed = tolerance * std::max(LargestOf(wanted), 1e-12);
  for (std::size_t i = 0; i < wanted.size(); ++i)
    for (int d = 0; d < 3; ++d)
      EXPECT_NEAR(got[i][d], wanted[i][d], allowed) << what << ' ' << d << " of node " << i + 1;
}

inline void ExpectSameDisplacements(const NodalFields& got, const NodalFields& wanted,
                                    double tolerance) {
  ExpectSameField(got.displacement, wanted.displacement, tolerance, "displacement");
  ExpectSameField(got.rotation, wanted.rotation, tolerance, "rotation");
}
inline void ExpectSameForces(const NodalFields& got, const NodalFields& wanted, double tolerance) {
  ExpectSameField(got.force, wanted.force, tolerance, "force");
  ExpectSameField(got.moment, wanted.moment, tolerance, "moment");
}
inline void ExpectSameReactions(const NodalFields& got, const NodalFields& wanted,
                                double tolerance) {
  ExpectSameField(got.reaction, wanted.reaction, tolerance, "reaction");
  ExpectSameField(got.couple, wanted.couple, tolerance, "couple");
}

/// Every vector of every field through `change`.
inline NodalFields Changed(NodalFields fields,
                           const std::function<Vector3(const Vector3&)>& change) {
  for (Field* field : {&fields.displacement, &fields.rotation, &fields.force, &fields.moment,
                       &fields.reaction, &fields.couple})
    for (Vector3& v : *field) v = change(v);
  return fields;
}

/// Values at the integration points of an element, by its number.
inline std::vector<double> ValuesOf(const SolvedProject& project, int elementNumber) {
  for (std::size_t m = 0; m < project.meshes.size(); ++m) {
    const Mesh& mesh = *project.meshes[m];
    const ReaVecT& values = project.results.meshes[m].local;
    const int perElement = values.n / std::max(project.numElements[m], 1);
    int position = 0;
    for (const auto [number, elem] : mesh.elems) {
      const double* const first = values.begin() + perElement * position++;
      if (number == elementNumber) return {first, first + perElement};
    }
  }
  ADD_FAILURE() << "no element " << elementNumber;
  return {};
}

inline void ExpectSameValues(const std::vector<double>& got, const std::vector<double>& wanted,
                             double tolerance, int element) {
  ASSERT_EQ(got.size(), wanted.size());
  double largest = 0.0;
  for (const double value : wanted) largest = std::max(largest, std::abs(value));
  for (std::size_t i = 0; i < wanted.size(); ++i)
    EXPECT_NEAR(got[i], wanted[i], tolerance * largest) << "value " << i << " of " << element;
}

/// Expects one answer from two projects of one deck.
inline void ExpectSameAnswer(const SolvedProject& got, const SolvedProject& wanted,
                             double tolerance) {
  const NodalFields a(got), b(wanted);
  ExpectSameDisplacements(a, b, tolerance);
  ExpectSameReactions(a, b, tolerance);
  for (const auto& mesh : wanted.meshes)
    for (const auto [number, elem] : mesh->elems)
      ExpectSameValues(ValuesOf(got, number), ValuesOf(wanted, number), 10 * tolerance, number);
}

}  // namespace kestol
