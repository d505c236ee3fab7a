#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "kestol/Condition.h"
#include "kestol/Mechanisms.h"
#include "kestol/ReadDeck.h"
#include "kestol/mechanisms/NullSpace.h"
#include "kestol/mechanisms/ScaledSystem.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

/// Three beams in a row, each 3 m long.
std::string Row(const std::string& constraints, const std::string& rest = "") {
  return "problem row\ntype 2d\nmesh dimension = 2 elemtype Linear nnode = 2\ncoordinates\n"
         "1 0 0\n2 3 0\n3 6 0\n4 9 0\nend\nelements\n1 1 2 1\n2 2 3 1\n3 3 4 2\nend\n"
         "materials\n1 E=2.1e11 A=1e-2 Iz=1e-5\n2 E=2.1e11 A=1e-2 Iz=1e-5\nend\nconstraints\n" +
         constraints + "end\n" + rest;
}

const std::string kHeld = "1 111 0 0 0\n4 010 0 0 0\n";
const std::string kLoose = "1 110 0 0 0\n4 010 0 0 0\n";
const std::string kHinges = "rotules\n2\n3\nend\n";

Project Read(const std::string& deck) {
  return ReadDeckText(deck, "row.dat");
}

std::vector<std::string> Examples() {
  const std::string folder = KESTOL_SOURCE_DIR "/examples/";
  return {folder + "02-portal-frame.dat",         folder + "04-spring-and-settlement.dat",
          folder + "05-inclined-roller.dat",      folder + "06-space-frame.dat",
          folder + "12-plate-under-pressure.dat", folder + "17-bar-in-tension.dat"};
}

// --- the scaled system ------------------------------------------------------------------------

class ScaledSystems : public testing::TestWithParam<std::string> {};

TEST_P(ScaledSystems, DiagonalIsThatOfTheAssembledMatrix) {
  Project project = ReadDeck(GetParam());
  const LinearSystem system(project, {.solver = SolverName::SkyLine});
  const auto K = system.SupportedMatrix(SolverName::SkyLine);
  const ReaVecT diagonal = system.SupportedDiagonal();
  ASSERT_EQ(diagonal.n, system.EquationCount());
  for (int i = 1; i <= diagonal.n; ++i)
    EXPECT_NEAR(diagonal(i), K->Entry(i, i), 1e-12 * std::abs(K->Entry(i, i))) << i;
}

TEST_P(ScaledSystems, ProductIsTheColumnOfTheScaledMatrix) {
  Project project = ReadDeck(GetParam());
  const LinearSystem system(project, {.solver = SolverName::SkyLine});
  const ScaledSystem A(system, SolverName::SkyLine);
  for (const int column : {1, system.EquationCount() / 2, system.EquationCount()}) {
    ReaVecT unit(system.EquationCount());
    unit.Fill(0.0);
    unit(column) = 1.0;
    const ReaVecT product = A.Times(unit);
    EXPECT_NEAR(product(column), 1.0, 1e-12);
    EXPECT_THAT(std::vector<double>(product.begin(), product.end()),
                Each(testing::AllOf(testing::Ge(-1.0 - 1e-12), testing::Le(1.0 + 1e-12))));
  }
}

TEST_P(ScaledSystems, ShiftedFactorSolves) {
  Project project = ReadDeck(GetParam());
  const LinearSystem system(project, {.solver = SolverName::SkyLine});
  ScaledSystem A(system, SolverName::SkyLine);
  constexpr double kShift = 1e-3;
  ASSERT_TRUE(A.FactoriseShifted(kShift));
  ReaVecT x(A.Size());
  for (int i = 1; i <= x.n; ++i) x(i) = std::sin(i);
  std::vector<ReaVecT> block{A.Times(x), x};
  for (int i = 1; i <= x.n; ++i) block.front()(i) += kShift * x(i);
  A.SolveShifted(block);
  const ReaVecT back = A.Times(block.back());
  for (int i = 1; i <= x.n; ++i) {
    EXPECT_NEAR(block.front()(i), x(i), 1e-9) << i;
    EXPECT_NEAR(back(i) + kShift * block.back()(i), x(i), 1e-9) << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Examples, ScaledSystems, testing::ValuesIn(Examples()),
                         [](const auto& test) {
                           std::string name = test.param.substr(test.param.rfind('/') + 1);
                           std::replace_if(
                               name.begin(), name.end(),
                               [](char c) { return c == '-' || c == '.'; }, '_');
                           return name;
                         });

// --- what moves -------------------------------------------------------------------------------

TEST(NullSpace, HoldsWhatTheMatrixTakesToZero) {
  Project project = Read(Row("", kHinges));
  const LinearSystem system(project, {.solver = SolverName::SkyLine});
  ScaledSystem A(system, SolverName::SkyLine);
  const RitzVectors null = NullSpaceOf(A, 6);
  ASSERT_EQ(null.vectors.size(), 5U);  // three rigid motions and two hinges
  for (const ReaVecT& z : null.vectors)
    for (const double entry : A.Times(z)) EXPECT_NEAR(entry, 0.0, 1e-11);
  for (const double value : null.values) EXPECT_LT(std::abs(value), kNoResistance);
}

TEST(NullSpace, GrowsUntilItHoldsAll) {
  Project project = Read(Row("", kHinges));
  const LinearSystem system(project, {.solver = SolverName::SkyLine});
  ScaledSystem A(system, SolverName::SkyLine);
  EXPECT_EQ(NullSpaceOf(A, 0).vectors.size(), 5U);
}

TEST(NullSpace, EndsBeforeTheSearchBecomesLong) {
  constexpr int kNodes = 14;
  std::string deck =
      "problem chain\ntype 2d\nmesh dimension = 2 elemtype Linear nnode = 2\ncoordinates\n";
  for (int i = 1; i <= kNodes; ++i) deck += std::to_string(i) + " " + std::to_string(i) + " 0\n";
  deck += "end\nelements\n";
  for (int i = 1; i < kNodes; ++i)
    deck += std::to_string(i) + " " + std::to_string(i) + " " + std::to_string(i + 1) + " 1\n";
  deck += "end\nmaterials\n1 E=2.1e11 A=1e-2 Iz=1e-5\nend\nrotules\n";
  for (int i = 2; i < kNodes; ++i) deck += std::to_string(i) + "\n";
  Project project = Read(deck + "end\n");
  const LinearSystem system(project, {.solver = SolverName::SkyLine});
  const auto search = [&](double longest) {
    ScaledSystem A(system, SolverName::SkyLine);
    return NullSpaceOf(A, 0, longest);
  };
  const double of16 = 3.0 * kNodes * 16 * 16;
  const RitzVectors all = search(of16);  // three rigid motions and a hinge at each inner node
  EXPECT_EQ(all.vectors.size(), 15U);
  EXPECT_TRUE(all.areAll);
  const RitzVectors few = search(of16 - 1.0);
  EXPECT_EQ(few.vectors.size(), 8U);
  EXPECT_FALSE(few.areAll);
}

TEST(WaysText, CountsAndSaysWhenThereAreMore) {
  EXPECT_EQ(WaysText(1, true), "1 way");
  EXPECT_EQ(WaysText(2, true), "2 ways");
  EXPECT_EQ(WaysText(128, false), "at least 128 ways");
}

TEST(FindMechanisms, TellsRigidMotionsFirst) {
  Project project = Read(Row(kLoose, kHinges));
  LinearSystem system(project, {.solver = SolverName::SkyLine});
  const Mechanisms found = FindMechanisms(system);
  EXPECT_TRUE(found.isComplete);
  EXPECT_EQ(found.count, 2);
  ASSERT_EQ(found.modes.size(), 2U);
  EXPECT_FALSE(found.modes[0].isRigid);
  EXPECT_LE(found.modes[0].motion.size(), found.modes[1].motion.size());
  EXPECT_THAT(MechanismReport(found)[0], "the model is a mechanism in 2 ways");

  Project loose = Read(Row("1 100 0 0 0\n", kHinges));
  LinearSystem free(loose, {.solver = SolverName::SkyLine});
  const Mechanisms more = FindMechanisms(free);
  EXPECT_EQ(more.count, 4);
  EXPECT_TRUE(more.modes[0].isRigid && more.modes[1].isRigid);
  EXPECT_FALSE(more.modes[2].isRigid || more.modes[3].isRigid);
}

TEST(FindMechanisms, ExplainsAsManyAsAreAskedFor) {
  Project project = Read(Row("", kHinges));
  LinearSystem system(project, {.solver = SolverName::SkyLine});
  const Mechanisms found = FindMechanisms(system, {.explained = 2});
  EXPECT_EQ(found.count, 5);
  EXPECT_EQ(found.modes.size(), 2U);
  const std::vector<std::string> report = MechanismReport(found);
  EXPECT_THAT(report.front(), "the model is a mechanism in 5 ways");
  EXPECT_THAT(report[1], StartsWith("  mode 1: "));
  EXPECT_EQ(report.back(), "  and 3 more");
  const Mechanisms counted = FindMechanisms(system, {.explained = 0});
  EXPECT_EQ(counted.count, 5);
  EXPECT_THAT(MechanismReport(counted), ElementsAre("the model is a mechanism in 5 ways"));
}

TEST(FindMechanisms, HasNothingToSayOfASoundModelByEitherWay) {
  for (const bool useFactor : {false, true}) {
    Project project = Read(Row(kHeld, "rotules\n3\nend\n"));
    LinearSystem system(project, {.solver = SolverName::SkyLine});
    const Mechanisms found = FindMechanisms(system, {.useFactor = useFactor});
    EXPECT_EQ(found.count, 0) << useFactor;
    EXPECT_TRUE(found.modes.empty()) << useFactor;
  }
}

TEST(FindMechanisms, FactorOfAMechanismIsNotTakenForSound) {
  Project project = Read(Row(kLoose, kHinges));
  LinearSystem system(project, {.solver = SolverName::SkyLine});
  EXPECT_EQ(FindMechanisms(system, {.useFactor = true}).count, 2);
}

// --- soundness --------------------------------------------------------------------------------

class Soundness : public testing::TestWithParam<SolverName> {};

TEST_P(Soundness, IsSeenWithEverySolver) {
  if (GetParam() == SolverName::Direct && !DirectSolverIsBuilt()) return;
  Project sound = Read(Row(kHeld));
  LinearSystem held(sound, {.solver = GetParam()});
  EXPECT_TRUE(IsSound(held));
  EXPECT_NO_THROW(RequireSound(held));
  EXPECT_EQ(held.HasFactor(), GetParam() != SolverName::Sparse);
  for (const std::string& deck : {Row(kLoose, kHinges), Row("1 110 0 0 0\n"), Row("")}) {
    Project project = Read(deck);
    LinearSystem system(project, {.solver = GetParam()});
    EXPECT_FALSE(IsSound(system)) << deck;
    EXPECT_THROW(RequireSound(system), Unresisted) << deck;
  }
}

INSTANTIATE_TEST_SUITE_P(Solvers, Soundness,
                         testing::Values(SolverName::SkyLine, SolverName::Sparse,
                                         SolverName::Direct));

TEST(Soundness, OfASlenderModelIsDecidedByTheWholeSearch) {
  // The smallest Ritz value of a clamped chain of n beams falls as n^-4: here to 1e-11.
  constexpr int kBeams = 400;
  std::string nodes, beams;
  for (int n = 1; n <= kBeams + 1; ++n)
    nodes += std::to_string(n) + " " + std::to_string(n) + " 0\n";
  for (int b = 1; b <= kBeams; ++b)
    beams += std::to_string(b) + " " + std::to_string(b) + " " + std::to_string(b + 1) + " 1\n";
  Project project = Read(
      "PROBLEM chain\nTYPE 2d\nmesh dimension = 2 elemtype Linear nnode = 2\n"
      "coordinates\n" +
      nodes + "end coordinates\nelements\n" + beams +
      "end elements\nmaterials\n1 E=1e6 A=1 Iz=1\nend\n"
      "constraints\n1 111 0 0 0\nend\nnodal_point_loads\n2 0 1 0\nend\n");
  LinearSystem system(project, {.solver = SolverName::SkyLine});
  system.Factorise();
  EXPECT_TRUE(IsSound(system));
}

TEST(Soundness, OfTheProgramsOwnAnswerIsRequiredOnDemand) {
  const std::string deck = Row(kLoose, kHinges + "nodal_point_loads\n2 0 -1000 0\nend\n");
  Project project = Read(deck);
  EXPECT_THROW(SolveOnce(project, {.solver = SolverName::SkyLine, .requireSound = true}),
               FatalError);
  Project sound = Read(Row(kHeld, "nodal_point_loads\n2 0 -1000 0\nend\n"));
  Project same = Read(Row(kHeld, "nodal_point_loads\n2 0 -1000 0\nend\n"));
  const Results checked = SolveOnce(sound, {.requireSound = true}), plain = SolveOnce(same);
  EXPECT_EQ(std::vector<double>(checked.displacements.begin(), checked.displacements.end()),
            std::vector<double>(plain.displacements.begin(), plain.displacements.end()));
}

TEST(IsFree, TellsARigidMotionFromASolution) {
  Project loose = Read(Row("1 010 0 0 0\n4 010 0 0 0\n"));
  const LinearSystem system(loose, {.solver = SolverName::SkyLine});
  ReaVecT slide(system.EquationCount());
  for (int i = 1; i <= slide.n; ++i) slide(i) = i % 3 == 1 ? 0.7 : 0.0;
  EXPECT_TRUE(IsFree(system, slide));

  Project sound = Read(Row(kHeld, "nodal_point_loads\n2 5 -1000 0\nend\n"));
  LinearSystem held(sound, {.solver = SolverName::SkyLine});
  EXPECT_FALSE(IsFree(held, held.SolveDeck().displacements));
}

TEST(IsFree, AModelThatDoesNotMoveIsNot) {
  for (const char* loads : {"", "nodal_point_loads\n1 5 -1000 0\nend\n"}) {
    Project project = Read(Row(kHeld, loads));
    LinearSystem system(project, {.solver = SolverName::SkyLine});
    const Results results = system.SolveDeck();
    EXPECT_FALSE(IsFree(system, results.displacements));
    EXPECT_NO_THROW(RequireResisted(system, results.displacements));
  }
}

// --- condition --------------------------------------------------------------------------------

double OneNorm(const ReaVecT& column) {
  double sum = 0.0;
  for (const double entry : column) sum += std::abs(entry);
  return sum;
}

/// |A|_1 |A^-1|_1, column by column.
double ConditionOf(LinearSystem& system, const ScaledSystem& A) {
  double norm = 0.0, ofInverse = 0.0;
  for (int j = 1; j <= A.Size(); ++j) {
    ReaVecT unit(A.Size());
    unit.Fill(0.0);
    unit(j) = 1.0;
    norm = std::max(norm, OneNorm(A.Times(unit)));
    A.Unscale(unit);
    system.Factor().Substitute(unit, nullptr);
    A.Unscale(unit);
    ofInverse = std::max(ofInverse, OneNorm(unit));
  }
  return norm * ofInverse;
}

TEST(EstimateCondition, IsNeverAboveTheTrueOneAndSeldomFarBelow) {
  for (const std::string& path : Examples()) {
    Project project = ReadDeck(path);
    LinearSystem system(project, {.solver = SolverName::SkyLine});
    const ScaledSystem A(system, SolverName::SkyLine);
    const double exact = ConditionOf(system, A), estimate = EstimateCondition(system, A);
    EXPECT_LE(estimate, exact * (1.0 + 1e-9)) << path;
    EXPECT_GE(estimate, exact / 3.0) << path;
  }
}

TEST(SoftestElements, AreWhereTheSoftestMotionBends) {
  // Two stiff beams at the end of a soft one.
  std::string deck = Row("1 111 0 0 0\n");
  const auto put = [&](const std::string& old, const std::string& text) {
    deck.replace(deck.find(old), old.size(), text);
  };
  put("2 2 3 1", "2 2 3 2");
  put("1 E=2.1e11 A=1e-2 Iz=1e-5", "1 E=2.1e11 A=1e-2 Iz=1e-9");
  Project project = Read(deck);
  LinearSystem system(project, {.solver = SolverName::SkyLine});
  const ScaledSystem A(system, SolverName::SkyLine);
  EXPECT_EQ(SoftestElements(system, A, 3).front(), 1);
}

}  // namespace

}  // namespace kestol
