// Three-noded shells that are solved with six nodes: the ways to the same model agree.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/Answers.h"
#include "tests/support/NodalFields.h"
#include "tests/support/SampleModels.h"

namespace kestol {

namespace {

const std::string kSparse = "Solver Sparse 1e-14 1e-10 20000\n";

std::vector<MeshModel> Shells() {
  return {SampleShell(false, Dress::Complete), SampleStiffenedShell(false, Dress::Complete)};
}

TEST(ConvertedShell, DoubleIsConversionAndSparse) {
  for (const MeshModel& shell : Shells())
    for (const int renumber : {0, 1}) {
      const auto converted = Solved(shell, kSparse + "ConvertTo6Nodes", renumber);
      const auto twice = Solved(shell, kSparse + "Solver Double", renumber);
      ASSERT_GT(twice->numNodes, twice->nodesAsRead);
      ExpectSameAnswer(*twice, *converted, 1e-8);
    }
}

TEST(ConvertedShell, SolversAndNumberingsAgree) {
  for (const MeshModel& shell : Shells()) {
    const auto wanted = Solved(shell, "Solver SkyLine\nConvertTo6Nodes", 1);
    for (const std::string solver : {"Solver SkyLine\n", "Solver Automatic\n", kSparse.c_str()})
      for (const int renumber : {0, 1})
        ExpectSameAnswer(*Solved(shell, solver + "ConvertTo6Nodes", renumber), *wanted, 1e-8);
  }
}

TEST(ConvertedShell, EqualsTheSameShellWrittenWithSixNodes) {
  MeshModel three = SampleShell(false, Dress::Held), six = SampleShell(true, Dress::Held);
  for (MeshModel* const model : {&three, &six}) {
    model->Load(8, {10, -20, 30}, {4, 5, -6}).Load(15, {0, 0, -7});
    model->Load("local_pressure_loads", 7, MeshModel::kNoFace, {11, -6, 16}, 3.5);
    model->Load("face_loads", 14, 1, {-8, 9, 5});
  }
  const auto converted = Solved(three, "ConvertTo6Nodes");
  const auto written = Solved(six);
  ASSERT_EQ(converted->numNodes, written->numNodes);
  const NodalFields a(*converted), b(*written);
  for (std::size_t i = 0; i < a.displacement.size(); ++i)
    for (int d = 0; d < 3; ++d) {
      EXPECT_NEAR(a.displacement[i][d], b.displacement[i][d], 1e-11 * LargestOf(b.displacement));
      EXPECT_NEAR(a.rotation[i][d], b.rotation[i][d], 1e-11 * LargestOf(b.rotation));
    }
  for (int element = 1; element <= 16; ++element)
    ExpectSameValues(ValuesOf(*converted, element), ValuesOf(*written, element), 1e-9, element);
}

TEST(ConvertedShell, CornersTakeHalfOfTheReactionsOfMidSides) {
  MeshModel three = SampleShell(false, Dress::Held), six = SampleShell(true, Dress::Held);
  for (MeshModel* const model : {&three, &six}) model->Load(8, {10, -20, 30}, {4, 5, -6});
  const auto converted = Solved(three, "ConvertTo6Nodes"), written = Solved(six);
  const NodalFields all(*written);
  const int edge[] = {1, 6, 11};  // the clamped end, from corner to corner
  Field force(three.nodes.size()), couple(three.nodes.size());
  for (const int n : edge) {
    force[n - 1] = all.reaction[n - 1];
    couple[n - 1] = all.couple[n - 1];
  }
  for (const int k : {0, 1}) {
    const int a = edge[k], b = edge[k + 1];
    const Vector3 half = Times(Plus(six.At(a), six.At(b)), 0.5);
    const std::vector<int> middle =
        six.Where([&](const Vector3& p) { return Norm(Minus(p, half)) < 1e-9; });
    ASSERT_EQ(middle.size(), 1U);
    for (const int n : {a, b}) {
      force[n - 1] = Plus(force[n - 1], Times(all.reaction[middle[0] - 1], 0.5));
      couple[n - 1] = Plus(couple[n - 1], Times(all.couple[middle[0] - 1], 0.5));
    }
  }
  const NodalFields got(*converted);
  ExpectSameField(got.reaction, force, 1e-9, "reaction");
  ExpectSameField(got.couple, couple, 1e-9, "couple");
}

TEST(ConvertedShell, MeshesThatShareEdgesShareTheirMidSides) {
  for (const MeshModel& shell : Shells()) {
    std::vector<int> same(shell.nodes.size());
    for (std::size_t i = 0; i < same.size(); ++i) same[i] = static_cast<int>(i) + 1;
    const auto one = Solved(shell, "ConvertTo6Nodes");
    const auto three = Solved(Renumbered(shell, same, 3), "ConvertTo6Nodes");
    ASSERT_EQ(three->numNodes, one->numNodes);
    const NodalFields a(*three), b(*one);
    ExpectSameDisplacements(a, b, 1e-10);
    ExpectSameReactions(a, b, 1e-10);
  }
}

/// The shell of straight edges whose first half has six nodes and whose second half three.
MeshModel HalfConverted() {
  const MeshModel three = SampleShell(false, Dress::Held);
  TestMesh half{"Triangle", three.nodes, {}};
  std::vector<MeshModel::Element> first, second;
  for (const MeshModel::Element& element : three.blocks[0].elements)
    ((element.number - 1) / 2 % 4 < 2 ? first : second).push_back(element);
  for (const MeshModel::Element& element : first) half.elems.push_back(element.nodes);
  ToSix(half);
  for (std::size_t i = 0; i < first.size(); ++i) first[i].nodes = half.elems[i];
  MeshModel model = three;
  model.nodes = half.nodes;
  for (int node = static_cast<int>(three.nodes.size()) + 1; node <= int(half.nodes.size()); ++node)
    if (model.At(node)[0] == 0.0) model.Hold(node, "111111");
  model.blocks = {
      {"Triangle", first },
      {"Triangle", second}
  };
  return model;
}

TEST(ConvertedShell, MeshesOfSixNodesTakeThoseOfThreeAlong) {
  MeshModel half = HalfConverted(), six = SampleShell(true, Dress::Held);
  for (MeshModel* const model : {&half, &six}) {
    model->Load(8, {10, -20, 30}, {4, 5, -6}).Load(15, {0, 0, -7});
    model->Load("local_pressure_loads", 7, MeshModel::kNoFace, {11, -6, 16}, 3.5);
    model->Load("local_pressure_loads", 3, MeshModel::kNoFace, {0, 0, 16});
  }
  const auto converted = Solved(half, "ConvertTo6Nodes"), written = Solved(six);
  ASSERT_EQ(converted->numNodes, written->numNodes);
  for (int n = 1; n <= 15; ++n)
    for (int d = 1; d <= 6; ++d)
      EXPECT_NEAR(Displacement(*converted, n, d), Displacement(*written, n, d),
                  1e-10 * LargestDisplacement(*written));
  for (int element = 1; element <= 16; ++element)
    ExpectSameValues(ValuesOf(*converted, element), ValuesOf(*written, element), 1e-9, element);
}

TEST(ConvertedShell, MeshesOfThreeAndSixNodesStandTogether) {
  MeshModel half = HalfConverted();
  half.Load(8, {10, -20, 30}, {4, 5, -6}).Load(15, {0, 0, -7});
  half.Load("local_pressure_loads", 7, MeshModel::kNoFace, {11, -6, 16}, 3.5);
  const auto wanted = Solved(half, "Solver SkyLine");
  for (const int renumber : {0, 1})
    ExpectSameAnswer(*Solved(half, kSparse, renumber), *wanted, 1e-8);
}

}  // namespace

}  // namespace kestol
