// What does not change the answer of shells and solids: solvers, numbers, meshes, turns.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "model/EulerAngles.h"
#include "tests/support/NodalFields.h"
#include "tests/support/SampleModels.h"

namespace kestol {

namespace {

class MeshInvariance : public testing::TestWithParam<Sample> {
protected:
  static MeshModel Model() { return GetParam().build(Dress::Complete); }
};
INSTANTIATE_TEST_SUITE_P(Samples, MeshInvariance, testing::ValuesIn(AllSamples()), NameOf);

TEST_P(MeshInvariance, EverySolverGivesTheSameInEveryNumbering) {
  const auto wanted = Solved(Model(), "Solver SkyLine", 1);
  for (const char* const solver : {"SkyLine", "Automatic", "Sparse 1e-14 1e-10 20000"})
    for (const int renumber : {0, 1}) {
      SCOPED_TRACE(std::string(solver) + (renumber ? "" : " -r0"));
      const auto project = Solved(Model(), std::string("Solver ") + solver, renumber);
      ExpectSameAnswer(*project, *wanted, 1e-8);
    }
}

TEST_P(MeshInvariance, NumbersAndMeshesOfTheDeckDoNotMatter) {
  const MeshModel model = Model();
  const auto wanted = Solved(model);
  const std::vector<int> newNumber = Shuffle(static_cast<int>(model.nodes.size()));
  for (int pieces = 1; pieces <= 3; ++pieces) {
    SCOPED_TRACE(pieces);
    const MeshModel other = Renumbered(model, newNumber, pieces);
    const auto got = ReadDeck(other.Text());
    Solution solution = SolveProject(*got, {});
    const bool hasResults = !model.IsSolid() || pieces == 1;  // solids of several meshes have none
    got->results = std::move(solution.results);
    if (hasResults) ComputeStrengths(*got, std::move(solution.matrix), got->results, nullptr);
    ASSERT_EQ(got->meshes.size(), model.blocks.size() + pieces - 1);
    const NodalFields a(*got), b(*wanted);
    const auto back = [&](const Field& field) {
      Field ordered(field.size());
      for (std::size_t i = 0; i < field.size(); ++i) ordered[i] = field[newNumber[i] - 1];
      return ordered;
    };
    ExpectSameField(back(a.displacement), b.displacement, 1e-9, "displacement");
    ExpectSameField(back(a.rotation), b.rotation, 1e-9, "rotation");
    if (!hasResults) continue;
    ExpectSameField(back(a.reaction), b.reaction, 1e-9, "reaction");
    ExpectSameField(back(a.couple), b.couple, 1e-9, "couple");
    for (const MeshModel::Block& block : model.blocks)
      for (const MeshModel::Element& element : block.elements)
        ExpectSameValues(ValuesOf(*got, NewElementNumber(element.number)),
                         ValuesOf(*wanted, element.number), 1e-8, element.number);
  }
}

/// The same elements, begun at their second corner; faces and edges of loads follow.
MeshModel Cycled(MeshModel model) {
  const bool solid = model.IsSolid();
  const std::vector<int> order =
      solid ? std::vector<int>{1, 2, 0, 3, 5, 6, 4, 8, 9, 7} : std::vector<int>{1, 2, 0, 4, 5, 3};
  for (MeshModel::Element& element : model.blocks[0].elements) {
    const std::vector<int> old = element.nodes;
    for (std::size_t i = 0; i < old.size(); ++i) element.nodes[i] = old[order[i]];
  }
  const std::vector<int> newFace = solid ? std::vector<int>{0, 3, 1, 2} : std::vector<int>{2, 0, 1};
  for (MeshModel::ElementLoad& load : model.elementLoads)
    if (load.face >= 0) load.face = newFace[load.face];
  return model;
}

TEST_P(MeshInvariance, TheFirstCornerOfAnElementDoesNotMatter) {
  const auto wanted = Solved(Model()), got = Solved(Cycled(Model()));
  const NodalFields a(*got), b(*wanted);
  ExpectSameDisplacements(a, b, 1e-7);  // the points of solids have seven digits
  ExpectSameReactions(a, b, 1e-7);
}

// --- turning ------------------------------------------------------------------------------------

/// The stresses of a solid point turned by R: x, y, z, xy, xz, yz.
std::vector<double> TurnedStresses(const Rotation& R, const std::vector<double>& values) {
  std::vector<double> turned;
  for (std::size_t p = 0; p < values.size(); p += 6) {
    const double* const s = values.data() + p;
    Rotation tensor;
    tensor.entries = {s[0], s[3], s[4], s[3], s[1], s[5], s[4], s[5], s[2]};
    const Rotation t = R * tensor * Transpose(R);
    for (const double value : {t(1, 1), t(2, 2), t(3, 3), t(1, 2), t(1, 3), t(2, 3)})
      turned.push_back(value);
  }
  return turned;
}

/// What of a shell point does not depend on the axes: traces and determinants of N and M, |Q|.
std::vector<double> Invariants(const std::vector<double>& values) {
  std::vector<double> invariants;
  for (std::size_t p = 0; p < values.size(); p += 8) {
    const double* const v = values.data() + p;
    for (const int i : {0, 3}) {
      invariants.push_back(v[i] + v[i + 1]);
      invariants.push_back(std::hypot(v[i] - v[i + 1], 2 * v[i + 2]));
    }
    invariants.push_back(std::hypot(v[6], v[7]));
  }
  return invariants;
}

void ExpectTurnedValues(const SolvedProject& got, const SolvedProject& wanted,
                        const MeshModel& model, const MeshModel::Element& element,
                        const Rotation& R) {
  const std::vector<double> turned = ValuesOf(got, element.number);
  const std::vector<double> straight = ValuesOf(wanted, element.number);
  const bool shell = !model.IsSolid() && element.nodes.size() > 2;
  if (model.IsSolid())
    ExpectSameValues(turned, TurnedStresses(R, straight), 1e-8, element.number);
  else if (shell && model.MaterialOf(element).angles)
    ExpectSameValues(turned, straight, 1e-8, element.number);
  else if (shell)
    ExpectSameValues(Invariants(turned), Invariants(straight), 1e-8, element.number);
}

TEST_P(MeshInvariance, TurningAndMovingTheModelTurnsTheAnswer) {
  const MeshModel model = Model();
  const auto straight = Solved(model);
  const Rotation R = EulerRotation(0.7, -0.4, 1.9);
  const auto turned = Solved(Turned(model, R, {12, -5, 7}));
  const NodalFields a(*turned);
  const NodalFields b =
      Changed(NodalFields(*straight), [&](const Vector3& v) { return Turn(R, v); });
  ExpectSameDisplacements(a, b, 1e-9);
  // Printed reactions of inclined supports are cut to the degrees that are held; K u is not.
  ExpectSameForces(a, b, 1e-8);
  for (const MeshModel::Block& block : model.blocks)
    for (const MeshModel::Element& element : block.elements)
      ExpectTurnedValues(*turned, *straight, model, element, R);
}

}  // namespace

}  // namespace kestol
