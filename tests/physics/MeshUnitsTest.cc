// Shells and solids in several systems of units.
#include <gtest/gtest.h>

#include <string>

#include "tests/support/NodalFields.h"
#include "tests/support/SampleModels.h"

namespace kestol {

namespace {

constexpr UnitSizes kSI{1.0, 1.0};
constexpr UnitSizes kKilonewtonMillimetre{1e-3, 1e3};
constexpr UnitSizes kKipInch{1.0 / 4448.2216152605, 1.0 / 0.0254};

const std::string kTable =
    "units_names\nSI N m Pa 1 1\nkN-mm kN mm GPa 1000 0.001\n"
    "kip-in kip in ksi 4448.2216152605 0.0254\nend\n";

class MeshUnits : public testing::TestWithParam<Sample> {
protected:
  static MeshModel Model() { return GetParam().build(Dress::Complete); }

  /// Expects from a deck what the deck in N and m says, in `results`.
  static void ExpectSameStructure(const MeshModel& model, const UnitSizes& results) {
    const auto plain = Solved(Model());
    NodalFields wanted(*plain);
    for (Vector3& u : wanted.displacement) u = Times(u, results.length);
    for (Field* const field : {&wanted.force, &wanted.reaction})
      for (Vector3& f : *field) f = Times(f, results.force);
    for (Field* const field : {&wanted.moment, &wanted.couple})
      for (Vector3& m : *field) m = Times(m, results.force * results.length);
    const auto project = Solved(model);
    const NodalFields got(*project);
    ExpectSameDisplacements(got, wanted, 1e-9);
    ExpectSameForces(got, wanted, 1e-8);
    ExpectSameReactions(got, wanted, 1e-8);
    for (const MeshModel::Element& element : model.blocks[0].elements) {
      std::vector<double> values = ValuesOf(*plain, element.number);
      for (std::size_t i = 0; i < values.size(); ++i) values[i] *= SizeOfValue(model, i, results);
      ExpectSameValues(ValuesOf(*project, element.number), values, 1e-8, element.number);
    }
  }

private:
  static double SizeOfValue(const MeshModel& model, std::size_t i, const UnitSizes& results) {
    if (model.IsSolid()) return results.force / results.length / results.length;
    const bool moment = i % 8 >= 3 && i % 8 < 6;  // per length, as the forces
    return moment ? results.force : results.force / results.length;
  }
};
INSTANTIATE_TEST_SUITE_P(Samples, MeshUnits, testing::ValuesIn(AllSamples()), NameOf);

std::string Units(const std::string& mesh, const std::string& lines, const std::string& results) {
  return kTable + "units_mesh " + mesh + "\nunits_mat_and_load " + lines + "\nunits_res " + results;
}

TEST_P(MeshUnits, OneSystemThroughoutNeedsNoKeyword) {
  ExpectSameStructure(InUnits(Model(), kKipInch, kKipInch, kKipInch), kKipInch);
}

TEST_P(MeshUnits, KilonewtonsAndMillimetresAnswerInNewtonsAndMetres) {
  MeshModel model = InUnits(Model(), kKilonewtonMillimetre, kKilonewtonMillimetre, kSI);
  model.keys += Units("mm", "kN-mm", "SI");
  ExpectSameStructure(model, kSI);
}

TEST_P(MeshUnits, MetresAndKipsAnswerInKilonewtonsAndMillimetres) {
  MeshModel model = InUnits(Model(), kSI, kKipInch, kKilonewtonMillimetre);
  model.keys += Units("m", "kip-in", "kN-mm");
  ExpectSameStructure(model, kKilonewtonMillimetre);
}

TEST_P(MeshUnits, LinesMayNameTheirOwn) {
  MeshModel model = InUnits(Model(), kKilonewtonMillimetre, kKipInch, kSI);
  model.keys += Units("mm", "kN-mm", "SI");
  model.lineUnits = "kip-in";
  ExpectSameStructure(model, kSI);
}

}  // namespace

}  // namespace kestol
