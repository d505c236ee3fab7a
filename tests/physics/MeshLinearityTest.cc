// Superposition, reciprocity and work of shells and solids.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/Balance.h"

namespace kestol {

namespace {

class MeshLinearity : public testing::TestWithParam<Sample> {
protected:
  static MeshModel Model(Dress dress) { return GetParam().build(dress); }
};
INSTANTIATE_TEST_SUITE_P(Samples, MeshLinearity, testing::ValuesIn(AllSamples()), NameOf);

// --- superposition ------------------------------------------------------------------------------

/// The model with its loads, or its prescribed values, times a positive factor.
MeshModel WithLoadsTimes(double factor, MeshModel model) {
  for (auto& load : model.nodeLoads) {
    load.force = Times(load.force, factor);
    load.moment = Times(load.moment, factor);
  }
  for (auto& load : model.elementLoads) {
    load.q = Times(load.q, factor);
    load.couple *= factor;
  }
  for (auto& [number, material] : model.materials)
    for (auto& [key, value] : material.values)
      if (key == "Weight") value *= factor;
  return model;
}

MeshModel Unloaded(MeshModel model) {
  model.nodeLoads.clear();
  model.elementLoads.clear();
  for (auto& [number, material] : model.materials) material.values.pop_back();  // the weight
  return model;
}

MeshModel WithSettlementsTimes(double factor, MeshModel model) {
  for (auto& support : model.supports)
    for (std::size_t d = 0; d < support.codes.size(); ++d)
      if (support.codes[d] == '1') support.values[d] *= factor;
  return model;
}

std::vector<double> AllNumbers(const SolvedProject& project) {
  std::vector<double> numbers(project.results.displacements.begin(),
                              project.results.displacements.end());
  for (const auto [key, node] : *project.meshes[0]->nodes)
    if (const Reaction* const reaction = FindReaction(project.results, node->number))
      numbers.insert(numbers.end(), reaction->values.begin(), reaction->values.end());
  for (const PointValues& values : project.results.meshes)
    numbers.insert(numbers.end(), values.local.begin(), values.local.end());
  return numbers;
}

TEST_P(MeshLinearity, LoadsAndSettlementsSuperpose) {
  const MeshModel model = Model(Dress::Complete);
  MeshModel onElements = WithSettlementsTimes(0.0, model), onNodes = Unloaded(onElements);
  onElements.nodeLoads.clear();
  onNodes.nodeLoads = model.nodeLoads;
  const auto a = AllNumbers(*Solved(onNodes)), b = AllNumbers(*Solved(onElements));
  const auto c = AllNumbers(*Solved(Unloaded(model)));
  const auto sum = AllNumbers(*Solved(model));
  ASSERT_EQ(sum.size(), a.size());
  for (std::size_t i = 0; i < sum.size(); ++i)
    EXPECT_NEAR(a[i] + b[i] + c[i], sum[i],
                1e-9 * (std::abs(a[i]) + std::abs(b[i]) + std::abs(c[i])) + 1e-10);
}

TEST_P(MeshLinearity, TwiceTheCauseIsTwiceTheEffect) {
  const MeshModel model = Model(Dress::Complete);
  const auto once = AllNumbers(*Solved(model));
  const auto twice = AllNumbers(*Solved(WithLoadsTimes(2, WithSettlementsTimes(2, model))));
  for (std::size_t i = 0; i < once.size(); ++i)
    EXPECT_NEAR(twice[i], 2 * once[i], 1e-9 * std::abs(once[i]) + 1e-10);
}

// --- reciprocity --------------------------------------------------------------------------------

MeshModel WithUnitLoad(MeshModel model, int node, int d) {
  Vector3 force{}, moment{};
  (d < 3 ? force[d] : moment[d - 3]) = 1.0;
  return WithSettlementsTimes(0.0, Unloaded(std::move(model))).Load(node, force, moment);
}

TEST_P(MeshLinearity, DisplacementsAreReciprocal) {
  const MeshModel model = Model(Dress::Complete);
  const int degrees = model.IsSolid() ? 3 : 6;
  const std::vector<int> nodes = {7, 8, 14, 17, 5};
  for (int d = 0; d < degrees; ++d) {
    const int other = (d + 2) % degrees, p = nodes[d % 5], q = nodes[(d + 3) % 5];
    if (p > static_cast<int>(model.nodes.size()) || q > static_cast<int>(model.nodes.size()))
      continue;
    const auto atP = Solved(WithUnitLoad(model, p, d));
    const auto atQ = Solved(WithUnitLoad(model, q, other));
    const double wanted = Displacement(*atQ, p, d + 1);
    EXPECT_NEAR(Displacement(*atP, q, other + 1), wanted, 1e-10 * std::abs(wanted)) << d;
    EXPECT_NE(wanted, 0.0);
  }
}

TEST_P(MeshLinearity, AReactionIsTheDeflectionUnderTheUnitSettlement) {
  const MeshModel model = Model(Dress::Held);
  const int support = model.supports[1].node, d = 2;
  MeshModel settled = model;
  settled.supports[1].values[d] = 1.0;
  const auto deflected = Solved(settled);
  for (const int node : {8, 9, 14}) {
    MeshModel loaded = model;
    const auto forced = Solved(loaded.Load(node, {1, -2, 3}));
    const double deflection = Displacement(*deflected, node, 1) -
                              2 * Displacement(*deflected, node, 2) +
                              3 * Displacement(*deflected, node, 3);
    EXPECT_NEAR(PrintedReaction(*forced, support, d + 1), -deflection, 1e-9) << node;
    EXPECT_GT(std::abs(deflection), 1e-4);
  }
}

// --- work ---------------------------------------------------------------------------------------

double NumberOf(const MeshModel::Material& m, const std::string& key, const std::string& common) {
  return m.Has(key) ? m[key] : m[common];
}

/// Half of it is the energy of one shell point per unit of area.
double WorkPerArea(const MeshModel::Material& m, const double* v) {
  const double Ex = NumberOf(m, "Ex", "E"), Ey = NumberOf(m, "Ey", "E"), t = m["t"];
  const double nu = NumberOf(m, "nuXY", "nu"), Gxy = NumberOf(m, "Gxy", "G");
  // Hooke's law of the plane, strains from stresses.
  const auto plane = [&](const double* s) {
    return s[0] * s[0] / Ex + s[1] * s[1] / Ey - 2 * nu * s[0] * s[1] / Ey + s[2] * s[2] / Gxy;
  };
  const double shear =
      v[6] * v[6] / NumberOf(m, "Gxz", "G") + v[7] * v[7] / NumberOf(m, "Gyz", "G");
  return plane(v) / t + 12 * plane(v + 3) / (t * t * t) + shear / (5.0 / 6 * t);
}

double WorkPerVolume(const MeshModel::Material& m, const double* s) {
  const double trace = s[0] + s[1] + s[2], E = m["E"], nu = m["nu"];
  double work = -nu * trace * trace / E;
  for (int i = 0; i < 6; ++i) work += (i < 3 ? 1 : 2) * (1 + nu) * s[i] * s[i] / E;
  return work;
}

/// u.K.u from the resultants or stresses at the points, on straight elements.
double WorkOfStrengths(const SolvedProject& project, const MeshModel& model) {
  const int perPoint = model.IsSolid() ? 6 : 8;
  double work = 0.0;
  for (const MeshModel::Element& element : model.blocks[0].elements) {
    const std::vector<double> values = ValuesOf(project, element.number);
    const MeshModel::Material& m = model.MaterialOf(element);
    const double size = model.IsSolid() ? VolumeOf(model, element) : FaceOf(model, element).Area();
    const int points = static_cast<int>(values.size()) / perPoint;
    for (int p = 0; p < points; ++p) {
      const double* const v = values.data() + p * perPoint;
      work += size / points * (model.IsSolid() ? WorkPerVolume(m, v) : WorkPerArea(m, v));
    }
  }
  return work;
}

/// Loads on nodes alone, supports in global axes: clamps, settlements and springs.
MeshModel Worked(MeshModel model) {
  model.supports[0].values[2] = 1e-3;
  model.supports[1].values[0] = -2e-3;
  model.Hold(5, model.IsSolid() ? "022" : "022020", {0, 3e4, 5e4, 0, 700, 0});
  return model.Load(8, {10, -20, 30}, {4, 5, -6}).Load(14, {-15, 5, -25}, {-3, 0, 2});
}

TEST(MeshWork, OfLoadsAndSupportsIsThatOfTheStrengths) {
  for (const MeshModel& bare : {SampleShell(false, Dress::Held), SampleShell(true, Dress::Held),
                                SampleSolid(false, Dress::Held), SampleSolid(true, Dress::Held)}) {
    const MeshModel model = Worked(bare);
    const auto project = Solved(model);
    const NodalFields fields(*project);
    double work = 0.0;
    for (std::size_t i = 0; i < model.nodes.size(); ++i)
      work += Dot(fields.reaction[i], fields.displacement[i]) +
              Dot(fields.couple[i], fields.rotation[i]);
    for (const auto& load : model.nodeLoads)
      work += Dot(load.force, fields.displacement[load.node - 1]) +
              Dot(load.moment, fields.rotation[load.node - 1]);
    EXPECT_GT(work, 1e-3);
    double strengths = WorkOfStrengths(*project, model);
    if (!model.IsSolid())
      for (const Spin& spin : SpinsOf(*project, model))
        strengths += spin.stiffness * spin.angle * spin.angle;
    EXPECT_NEAR(strengths, work, 1e-10 * work);
    double inner = 0.0;
    for (std::size_t i = 0; i < model.nodes.size(); ++i)
      inner +=
          Dot(fields.force[i], fields.displacement[i]) + Dot(fields.moment[i], fields.rotation[i]);
    EXPECT_NEAR(inner, work, 1e-10 * work);
  }
}

}  // namespace

}  // namespace kestol
