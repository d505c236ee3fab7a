// Where the iterations start, and how they end: converged, accepted, out of steps, broken down.
#include <cmath>
#include <sstream>

#include "algebra/ConjugateGradient.h"
#include "algebra/ILUPreconditioner.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/FlushCounter.h"
#include "tests/support/ScalarSparse.h"
#include "tests/support/SmallSparse.h"

namespace kestol {

namespace {

TEST(SparseSolver, TheSolutionAsStartingVectorNeedsNoIteration) {
  Chain K(4);
  ReaVecT f = Filled(4, 0.0);
  f(4) = 1.0;
  ReaVecT start(4);
  for (int i = 1; i <= 4; ++i) start(i) = i;
  K.SetInitialValues(start);
  start.Fill(99.0);  // the solver has its own copy
  std::ostringstream info;
  ASSERT_EQ(K.Solve(f, &info), 0);
  EXPECT_EQ(info.str(), "iteration number 0 OK resid=0 tol=1e-12\n");
  EXPECT_EQ(f(4), 4.0);
}

TEST(SparseSolver, AllocateClearsTheStartOnlyWhereThereIsNone) {
  SparseSolver cleared(2);
  cleared.Allocate(1);
  EXPECT_THAT(cleared.Start(), testing::ElementsAre(0.0, 0.0));
  SparseSolver given(2);
  given.SetInitialValues(Filled(2, 3.0));
  given.Allocate(1);
  EXPECT_THAT(given.Start(), testing::ElementsAre(3.0, 3.0));
}

TEST(SparseSolver, StartsFromZerosAfterASolution) {
  Chain K(4);
  ReaVecT f = Filled(4, 1.0);
  ASSERT_EQ(K.Solve(f, nullptr), 0);
  EXPECT_TRUE(K.Start().empty());
  EXPECT_FALSE(K.IsFactorised());
  ReaVecT none = Filled(4, 0.0);
  std::ostringstream info;
  ASSERT_EQ(K.Solve(none, &info), 0);
  EXPECT_EQ(info.str(), "iteration number 0 OK resid=0 tol=1e-12\n");
  EXPECT_EQ(none(4), 0.0);
}

TEST(SparseSolver, OnePreconditionerServesManyRightHandSides) {
  const GridModel grid = SmallGrid(3);
  ReaVecT ones;
  Held K(grid, ones, 1e-12, 1e-6, 1000);
  ASSERT_EQ(K.Factorise(nullptr), 0);
  std::string progress[3];
  ReaVecT f[3] = {ones, Filled(K.n, 0.0), ones};
  for (int k = 0; k < 3; ++k) {
    std::ostringstream info;
    ASSERT_EQ(K.Substitute(f[k], &info), 0);
    progress[k] = info.str();
  }
  EXPECT_THAT(progress[0], testing::HasSubstr("Converged it number. "));
  EXPECT_EQ(progress[2], progress[0]);
  for (int i = 1; i <= K.n; ++i) {
    EXPECT_EQ(f[2](i), f[0](i));
    EXPECT_EQ(f[1](i), 0.0);
  }
  ASSERT_EQ(K.Solve(ones, nullptr), 0);
  for (int i = 1; i <= K.n; ++i) EXPECT_EQ(ones(i), f[0](i));
}

TEST(SparseSolver, EveryRightHandSideStartsFromTheInitialValues) {
  Chain K(4);
  K.SetInitialValues(Filled(4, 1.0));
  ASSERT_EQ(K.Factorise(nullptr), 0);
  for (int k = 0; k < 2; ++k) {
    ReaVecT f = Filled(4, 0.0);
    f(1) = 1.0;  // which moves all of the chain by 1
    std::ostringstream info;
    ASSERT_EQ(K.Substitute(f, &info), 0);
    EXPECT_EQ(info.str(), "iteration number 0 OK resid=0 tol=1e-12\n");
    EXPECT_EQ(f(4), 1.0);
  }
}

TEST(SparseSolver, PrescribedDegreesMoveByWhatTheRightHandSideHolds) {
  const GridModel grid = SmallGrid(3);
  ReaVecT f;
  Held K(grid, f, 1e-12, 1e-6, 1000);
  ASSERT_EQ(K.Factorise(nullptr), 0);
  for (const double value : {0.0, 0.25, -3.0}) {
    f.Fill(0.0);
    for (int i = 1; i <= grid.nx * grid.ny * 3; ++i) f(i) = value;
    ASSERT_EQ(K.Substitute(f, nullptr), 0);
    for (int i = 1; i <= K.n; ++i) EXPECT_NEAR(f(i), value, 1e-10);
  }
}

TEST(SparseSolver, SubstitutesOnlyWhereThereIsAPreconditioner) {
  Chain K(3);
  ReaVecT f = Filled(3, 1.0);
  const char* const refused = "error in SparseSolver::Substitute. Matrix not factorised\n";
  EXPECT_FATAL(K.Substitute(f, nullptr), refused);
  ASSERT_EQ(K.Factorise(nullptr), 0);
  K.SetZero();
  EXPECT_FATAL(K.Substitute(f, nullptr), refused);
  EXPECT_EQ(K.Factorise(nullptr), -1);
}

TEST(SparseSolver, AnotherAssemblyForgetsWhatWasPrescribed) {
  Chain K(2);
  ReaVecT f = Filled(2, 0.0);
  K.Prescribe(2, 5.0, f);
  K.SetZero();
  K.AddBlock(1, 1, Single(2.0));
  K.AddBlock(2, 2, Single(4.0));
  K.SetInitialValues(Filled(2, 0.5));
  ASSERT_EQ(K.Factorise(nullptr), 0);
  f(1) = 1.0;
  f(2) = 2.0;
  std::ostringstream info;
  ASSERT_EQ(K.Substitute(f, &info), 0);
  EXPECT_EQ(info.str(), "iteration number 0 OK resid=0 tol=1e-12\n");
  EXPECT_EQ(f(2), 0.5);
}

/// The residual after `iterations` on the small grid.
double ResidualAfter(const GridModel& grid, int iterations) {
  ReaVecT f;
  Held K(grid, f, 1e-14, 1.0, iterations);
  const ILUPreconditioner M(K.Matrix());
  double residual = 1e-14;
  std::vector<double> x = K.Start();
  ConjugateGradient(K.Matrix(), x.data(), f.begin(), M, iterations, residual, nullptr);
  return residual;
}

TEST(SparseSolver, AcceptsTheWeakerToleranceWithANotice) {
  const GridModel grid = SmallGrid(3);
  const double residual = ResidualAfter(grid, 3);
  ASSERT_GT(residual, 1e-6);
  ReaVecT f;
  Held K(grid, f, 1e-14, residual, 3);
  std::ostringstream info;
  EXPECT_EQ(K.Solve(f, &info), 0);
  char line[80];
  std::snprintf(line, sizeof line, "After 3 Iterations, accepted tolerance of %lf\n", residual);
  EXPECT_EQ(info.str(), line);
  EXPECT_NE(f(f.n), 1.0);  // the solution so far
}

TEST(SparseSolver, TheAcceptedLineShowsSixDecimals) {
  const GridModel grid = SmallGrid(3);
  int iterations = 1;
  while (ResidualAfter(grid, iterations) > 1.5e-5) ++iterations;
  ReaVecT f;
  Held K(grid, f, 1e-14, 1e-3, iterations);
  std::ostringstream info;
  EXPECT_EQ(K.Solve(f, &info), 0);
  EXPECT_THAT(
      info.str(),
      testing::ContainsRegex("After [0-9]+ Iterations, accepted tolerance of 0\\.0000[01][0-9]\n"));
}

TEST(SparseSolver, BeyondTheWeakerToleranceReturnsMinusTheLimit) {
  const GridModel grid = SmallGrid(6);
  ReaVecT f;
  Held K(grid, f, 1e-14, 1e-12, 3);
  FlushCounter info;  // the run ends here: what is not flushed is lost
  EXPECT_EQ(K.Solve(f, &info), -3);
  EXPECT_EQ(info.Text(), "Not Solved after 3 Iterations\n");
  EXPECT_EQ(info.Flushes(), 1);
  EXPECT_TRUE(K.Start().empty());
  EXPECT_EQ(f(f.n), 1.0);  // still the load
}

TEST(SparseSolver, LimitsOfZeroAndOneReturnMinusOne) {
  const GridModel grid = SmallGrid(3);
  for (const int limit : {0, 1}) {
    ReaVecT f;
    Held K(grid, f, 1e-14, 1e-12, limit);
    EXPECT_EQ(K.Solve(f, nullptr), -1) << limit;
  }
}

TEST(SparseSolver, AnInfiniteResidualIsNotConvergedAndNoBreakdown) {
  Chain K(1, 1e-12, 1e-6, 0);
  K.SetInitialValues(Filled(1, 1e200));  // its square overflows
  ReaVecT f = Filled(1, 1.0);
  std::ostringstream info;
  EXPECT_LT(K.Solve(f, &info), 0);
  EXPECT_EQ(info.str(), "Not Solved after 0 Iterations\n");
}

TEST(SparseSolver, ARowWithoutADiagonalIsABreakdown) {
  SparseSolver K(6);
  K.Allocate(3);
  K.AddBlock(1, 1, Scaled(3, 2.0));
  ReaVecT f = Filled(6, 0.0);
  std::ostringstream info;
  EXPECT_EQ(K.Solve(f, &info), -1);
  EXPECT_EQ(info.str(), "");
  EXPECT_TRUE(K.Start().empty());
}

TEST(SparseSolver, AnIsolatedNodeThatIsFixedAltogetherSolvesExactly) {
  for (int dofs : {1, 3, 6}) {
    SparseSolver K(2 * dofs);
    K.Allocate(dofs);
    K.AddBlock(1, 1, Scaled(dofs, 2.0));
    ReaVecT f = Filled(2 * dofs, 4.0);
    for (int d = 1; d <= dofs; ++d) K.Prescribe(dofs + d, 0.5 * d, f);
    ASSERT_EQ(K.Solve(f, nullptr), 0);
    for (int d = 1; d <= dofs; ++d) {
      EXPECT_NEAR(f(d), 2.0, 1e-12);
      EXPECT_EQ(f(dofs + d), 0.5 * d);
    }
  }
}

TEST(SparseSolver, AFixedIsolatedNodeCostsNoIterations) {
  for (const int dofs : {1, 3, 6}) {
    const GridModel grid = SmallGrid(dofs);
    std::string counts[2];
    for (const int isolated : {0, 1}) {
      SparseSolver K(grid.NumDegrees() + isolated * dofs, 1e-10, 1e-8, 1000);
      grid.Structure(K);
      grid.Assemble(K);
      ReaVecT f = Filled(K.n, 1.0);
      grid.Hold(K, 0.0, f);
      for (int i = grid.NumDegrees() + 1; i <= K.n; ++i) K.Prescribe(i, 0.25, f);
      std::ostringstream info;
      ASSERT_EQ(K.Solve(f, &info), 0);
      const std::string text = info.str();
      const auto at = text.find("Converged it number. ");
      ASSERT_NE(at, std::string::npos) << text;
      counts[isolated] = text.substr(at, text.find(" resid=", at) - at);
    }
    EXPECT_EQ(counts[1], counts[0]) << dofs;
  }
}

TEST(SparseSolver, AnEntryThatIsNotANumberIsABreakdown) {
  Chain K(3);
  K.Entry(2, 2) = std::nan("");
  ReaVecT f = Filled(3, 1.0);
  EXPECT_EQ(K.Solve(f, nullptr), -1);
  EXPECT_TRUE(K.Start().empty());
}

// [1 1 .; 1 1 1; . 1 -1] is regular, but its second pivot is 0; with a negative diagonal there is
// no second preconditioner.
TEST(SparseSolver, AZeroPivotIsDividedByAndEndsAsABreakdown) {
  SparseSolver K(3, 1e-10, 1e-6, 50);
  K.AddNodePair(1, 2, 1);
  K.AddNodePair(2, 3, 1);
  K.Allocate(1);
  K.AddBlock(1, 1, Single(1.0));
  K.AddBlock(2, 2, Single(1.0));
  K.AddBlock(3, 3, Single(-1.0));
  K.AddBlock(1, 2, Single(1.0));
  K.AddBlock(2, 3, Single(1.0));
  ReaVecT f = Filled(3, 1.0);
  EXPECT_EQ(K.Solve(f, nullptr), -1);
}

TEST(SparseSolver, AnInfiniteResidualIsNotSolved) {
  const GridModel grid = SmallGrid(3);
  ReaVecT f;
  Held K(grid, f, 1e-10, 1e-6, 3);
  ReaVecT start = Filled(K.n, 0.0);
  for (int i = 1; i <= K.n; ++i) {
    if (i > 36) start(i) = 1.0;
    for (int j = 1; j <= K.n; ++j)  // the squares of residuals overflow
      if (K.Matrix().Read(i - 1, j - 1) != 0.0) K.Entry(i, j) *= 1e200;
  }
  K.SetInitialValues(start);
  std::ostringstream info;
  EXPECT_EQ(K.Solve(f, &info), -3);
  EXPECT_EQ(info.str(), "Not Solved after 3 Iterations\n");
}

// Two springs that hang free: the pivot of the last degree vanishes, the system has no solution.
TEST(SparseSolver, AZeroPivotUnderALoadIsNotASuccess) {
  Chain K(2, 1e-12, 1e-6, 100);
  K.Entry(1, 1) = 1.0;
  ReaVecT f = Filled(2, 1.0);
  std::ostringstream info;
  EXPECT_LT(K.Solve(f, &info), 0);
}

// A ring with the diagonal 3 and -2, -2, -2, +2 between neighbours: its eigenvalues are
// 3 +- 2 sqrt 2, but the pivots of its incomplete factors are 3, 5/3, 3/5 and then negative.
TEST(SparseSolver, FactorsThatAreNotPositiveGiveWayToTheDiagonal) {
  const double entries[4][4] = {
      {3.0,  -2.0, 0.0,  2.0 },
      {-2.0, 3.0,  -2.0, 0.0 },
      {0.0,  -2.0, 3.0,  -2.0},
      {2.0,  0.0,  -2.0, 3.0 }
  };
  SparseSolver K(4, 1e-10, 1e-6, 100);
  for (int i = 1; i < 4; ++i) K.AddNodePair(i, i + 1, 1);
  K.AddNodePair(1, 4, 1);
  K.Allocate(1);
  for (int i = 0; i < 4; ++i) {
    for (int j = i; j < 4; ++j)
      if (entries[i][j] != 0.0) K.AddBlock(i + 1, j + 1, Single(entries[i][j]));
  }
  ASSERT_FALSE(ILUPreconditioner(K.Matrix()).IsPositive());
  ReaVecT f(4);
  for (int i = 0; i < 4; ++i) {
    f(i + 1) = 0.0;
    for (int j = 0; j < 4; ++j) f(i + 1) += entries[i][j] * (j + 1);
  }
  std::ostringstream info;
  ASSERT_EQ(K.Solve(f, &info), 0);
  for (int i = 1; i <= 4; ++i) EXPECT_NEAR(f(i), i, 1e-8);
  // A constant diagonal leaves plain conjugate gradients, which take a step per eigenvalue.
  EXPECT_THAT(info.str(), testing::StartsWith("Converged it number. 2 resid="));
}

TEST(SparseSolver, IterationsAreThoseOfTheScalarAlgorithm) {
  for (int dofs : {1, 2, 3, 6}) {
    const GridModel grid{6, 5, 7, dofs};
    ReaVecT f;
    Held K(grid, f, 1e-10, 1e-6, 1000);
    std::vector<double> x(f.n, 0.0);
    const std::vector<double> b(f.begin(), f.end());
    const int iterations = ScalarSparse(K.Matrix()).ConjugateGradient(x, b, 1e-10, 1000);
    std::ostringstream info;
    ASSERT_EQ(K.Solve(f, &info), 0);
    const std::string converged = "Converged it number. " + std::to_string(iterations) + " resid=";
    EXPECT_THAT(info.str(), testing::HasSubstr(converged)) << dofs;
    for (int i = 1; i <= f.n; ++i) EXPECT_NEAR(f(i), x[i - 1], 1e-8 * (1.0 + std::abs(f(i))));
  }
}

}  // namespace

}  // namespace kestol
