#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/LoadedFaces.h"
#include "tests/support/NodalFields.h"
#include "tests/support/SampleModels.h"

namespace kestol {

// Loads on shells and solids against the reactions of their supports.

/// The elements of the first block that no support touches: their whole load reaches the printed
/// reactions.
inline std::vector<MeshModel::Element> InnerElements(const MeshModel& model) {
  std::vector<MeshModel::Element> inner;
  for (const MeshModel::Element& element : model.blocks[0].elements)
    if (std::none_of(element.nodes.begin(), element.nodes.end(),
                     [&](int node) { return model.At(node)[0] == 0.0; }))
      inner.push_back(element);
  return inner;
}

/// A node that turns about the common normal of its elements against their small stiffness.
struct Spin {
  Vector3 normal;
  double angle, stiffness;
};

/// The spins of a shell: 1e-6 t G A of every element at each of its nodes that lie in one plane.
inline std::vector<Spin> SpinsOf(const SolvedProject& project, const MeshModel& model) {
  std::vector<Spin> spins;
  for (const MeshModel::Element& element : model.blocks[0].elements) {
    const Face face = FaceOf(model, element);
    const MeshModel::Material& material = model.MaterialOf(element);
    const double G = material.Has("G") ? material["G"] : material["Gxy"];
    for (const int n : element.nodes) {
      if (project.coplanar[NodeOf(project, n).number - 1] == 0) continue;
      const Vector3 rotation{Displacement(project, n, 4), Displacement(project, n, 5),
                             Displacement(project, n, 6)};
      spins.push_back(
          {face.Normal(), Dot(rotation, face.Normal()), 1e-6 * material["t"] * G * face.Area()});
    }
  }
  return spins;
}

/// Expects that the printed reactions balance the loads.
inline void ExpectBalance(const MeshModel& model, const Resultant& loads) {
  const auto project = Solved(model);
  const NodalFields fields(*project);
  Resultant sum = loads;
  for (std::size_t i = 0; i < model.nodes.size(); ++i) {
    sum.AddForce(model.nodes[i], fields.reaction[i]);
    sum.AddCouple(fields.couple[i]);
  }
  if (!model.IsSolid())
    for (const Spin& spin : SpinsOf(*project, model))
      sum.AddCouple(Times(spin.normal, -spin.stiffness * spin.angle));
  ASSERT_GT(Norm(loads.force) + Norm(loads.moment), 1.0);
  ExpectNone(sum, 1e-10 * (Norm(loads.force) + Norm(loads.moment)));
}

/// Another load for every element.
inline Vector3 LoadOf(int element) {
  return {3.0 + element, -5.0 + 0.5 * element, 7.0 - 2.0 * element};
}

/// Makes the elements of the list heavy.
inline void LetWeigh(MeshModel& model, const std::vector<MeshModel::Element>& heavy) {
  const auto light = model.materials;
  for (const auto& [number, material] : light) {
    model.materials[10 + number] = material;
    model.materials[10 + number].values.emplace_back("Weight", 40.0 + number);
  }
  for (MeshModel::Element& element : model.blocks[0].elements)
    for (const MeshModel::Element& other : heavy)
      if (element.number == other.number) element.material += 10;
  model.gravity = Unit({2, -1, -3});
}

}  // namespace kestol
