// The sparse direct solver against the skyline and closed forms.
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <sstream>
#include <utility>
#include <vector>

#include "algebra/SkyLine.h"
#include "direct/DirectSolver.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/GridModel.h"
#include "tests/support/Vectors.h"

namespace kestol {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Springs of stiffness 1 in a row, and one from each end to the ground unless it is to hang free.
struct Chain : DirectSolver {
  explicit Chain(int n, double toGround = 1.0) : DirectSolver(n) {
    for (int i = 1; i < n; ++i) AddNodePair(i, i + 1, 1);
    Allocate(1);
    for (int i = 1; i < n; ++i) {
      Entry(i, i) += 1.0;
      Entry(i + 1, i + 1) += 1.0;
      Entry(i, i + 1) -= 1.0;
    }
    Entry(1, 1) += toGround;
    Entry(n, n) += toGround;
  }
};

/// A grid in a fresh solver; `rhs` gets a load that differs from degree to degree.
template <class Solver>
std::unique_ptr<Solver> Assembled(const GridModel& grid, ReaVecT& rhs) {
  auto K = std::make_unique<Solver>(grid.NumDegrees());
  grid.Structure(*K);
  grid.Assemble(*K);
  rhs = ReaVecT(grid.NumDegrees());
  for (int i = 1; i <= rhs.n; ++i) rhs(i) = std::sin(i);
  return K;
}

void ExpectClose(const ReaVecT& a, const ReaVecT& b, double tolerance) {
  ASSERT_EQ(a.n, b.n);
  for (int i = 1; i <= a.n; ++i) ASSERT_NEAR(a(i), b(i), tolerance) << i;
}

TEST(DirectSolver, AgreesWithTheSkyline) {
  for (const int dofs : {1, 2, 3, 6}) {
    const GridModel grid{7, 6, 5, dofs};
    for (const double held : {0.0, 0.25}) {
      ReaVecT f, g;
      const auto K = Assembled<DirectSolver>(grid, f);
      const auto sky = Assembled<SkyLine>(grid, g);
      grid.Hold(*K, held, f);
      grid.Hold(*sky, held, g);
      ASSERT_EQ(K->Solve(f, nullptr), 0);
      ASSERT_EQ(sky->Solve(g, nullptr), 0);
      ExpectClose(f, g, 1e-10);
      EXPECT_EQ(f(1), held);
    }
  }
}

TEST(DirectSolver, SolvesABlockAsItDoesOneByOne) {
  const GridModel grid{5, 5, 4, 6};
  ReaVecT f;
  const auto K = Assembled<DirectSolver>(grid, f);
  grid.Hold(*K, 0.0, f);
  std::vector<ReaVecT> block;
  EXPECT_FATAL(K->SubstituteAll(block, nullptr),
               "error in DirectSolver::Substitute. Matrix not factorised\n");
  ASSERT_EQ(K->Factorise(nullptr), 0);
  for (const int count : {0, 1, 15, 16, 17, 40}) {
    block.assign(count, f);
    for (int v = 0; v < count; ++v)
      for (int i = 1; i <= f.n; ++i) block[v](i) = std::cos(v + i);
    const std::vector<ReaVecT> wanted = block;
    ASSERT_EQ(K->SubstituteAll(block, nullptr), 0);
    for (int v = 0; v < count; ++v) {
      ReaVecT x = wanted[v];
      ASSERT_EQ(K->Substitute(x, nullptr), 0);
      ExpectClose(block[v], x, 1e-12);
    }
  }
}

TEST(DirectSolver, LeavesTheMatrixAndServesManyRightHandSides) {
  const GridModel grid{5, 5, 4, 6};
  ReaVecT f;
  const auto K = Assembled<DirectSolver>(grid, f);
  grid.Hold(*K, 0.0, f);
  ASSERT_EQ(K->Factorise(nullptr), 0);
  for (int k = 1; k <= 20; ++k) {
    for (int i = 1; i <= f.n; ++i) f(i) = std::cos(k * i);
    ReaVecT x = f;
    ASSERT_EQ(K->Substitute(x, nullptr), 0);
    ReaVecT product;
    K->Times(x, product);
    ExpectClose(product, f, 1e-11);
  }
}

TEST(DirectSolver, ARepeatedRightHandSideGivesTheSameBits) {
  Chain K(50);
  ASSERT_EQ(K.Factorise(nullptr), 0);
  ReaVecT first(50);
  first(17) = 1.0;
  ReaVecT second = first;
  ASSERT_EQ(K.Substitute(first, nullptr), 0);
  ASSERT_EQ(K.Substitute(second, nullptr), 0);
  EXPECT_EQ(Entries(first), Entries(second));
  EXPECT_NEAR(first(50), 17.0 / 51.0, 1e-14);
}

TEST(DirectSolver, WritesNothingAnywhere) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  std::ostringstream info;
  Chain K(30);
  Chain free(30, 0.0);
  ReaVecT f(30);
  EXPECT_EQ(K.Solve(f, &info), 0);
  EXPECT_GT(free.Solve(f, &info), 0);
  EXPECT_EQ(info.str(), "");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(DirectSolver, AZeroOnTheDiagonalIsNoObstacle) {
  DirectSolver K(2);
  K.AddNodePair(1, 2, 1);
  K.Allocate(1);
  K.Entry(1, 2) = 2.0;
  ReaVecT f = Vec({6, 10});
  ASSERT_EQ(K.Solve(f, nullptr), 0);
  EXPECT_NEAR(f(1), 5.0, 1e-14);
  EXPECT_NEAR(f(2), 3.0, 1e-14);
  EXPECT_EQ(K.NegativePivots(), 1);
}

// Nothing on the diagonal: the search for pivots fills far more than the analysis expects, and the
// library has to be given more room, several times.
TEST(DirectSolver, PivotsThatAreFarToSeekFindTheirRoom) {
  const int n = 1000;
  std::mt19937 random(1);
  const auto pick = [&] { return 1 + static_cast<int>(random() % n); };
  std::vector<std::pair<int, int>> pairs;
  for (int i = 1; i < n; i += 2) pairs.emplace_back(i, i + 1);
  for (int k = 0; k < 3 * n / 2; ++k) pairs.emplace_back(pick(), pick());
  DirectSolver K(n);
  for (const auto& [i, j] : pairs) K.AddNodePair(i, j, 1);
  K.Allocate(1);
  for (const auto& [i, j] : pairs)
    if (i != j) K.Entry(i, j) += 0.1 + 0.001 * static_cast<double>(random() % 1000);
  ReaVecT f(n);
  for (int i = 1; i <= n; ++i) f(i) = std::sin(i);
  ReaVecT x = f;
  ASSERT_EQ(K.Solve(x, nullptr), 0);
  ReaVecT product;
  K.Times(x, product);
  ExpectClose(product, f, 1e-7);
}

TEST(DirectSolver, ADegreeWithoutStiffnessFailsAtItsNumber) {
  for (const int dofs : {1, 3}) {
    DirectSolver K(99);
    K.Allocate(dofs);
    for (int i = 1; i <= 99; ++i) K.Entry(i, i) = i == 77 || i == 80 ? 0.0 : 1.0;
    ReaVecT f(99);
    EXPECT_EQ(K.Solve(f, nullptr), 77);
    EXPECT_THAT(K.NullPivots(), ElementsAre(77, 80));
  }
}

TEST(DirectSolver, TheNullPivotsAreAsManyAsTheRigidMotions) {
  Chain chain(40, 0.0);
  EXPECT_GE(chain.Factorise(nullptr), 1);
  EXPECT_THAT(chain.NullPivots(), SizeIs(1));

  const GridModel grid{4, 4, 4, 3};
  ReaVecT f;
  const auto K = Assembled<DirectSolver>(grid, f);
  const int failed = K->Factorise(nullptr);
  EXPECT_THAT(K->NullPivots(), SizeIs(3));  // the springs resist rotations of the whole
  EXPECT_EQ(K->NullPivots().front(), failed);
  EXPECT_FATAL(K->Substitute(f, nullptr),
               "error in DirectSolver::Substitute. Matrix not factorised\n");
}

TEST(DirectSolver, SoftIsNotSingular) {
  Chain K(40, 1e-10);
  ReaVecT f(40);
  f.Fill(1.0);
  ASSERT_EQ(K.Solve(f, nullptr), 0);
  EXPECT_THAT(K.NullPivots(), IsEmpty());
  EXPECT_NEAR(f(1) * 2e-10, 40.0, 1e-3);
}

TEST(DirectSolver, UnitsDoNotMatterToTheTestOfPivots) {
  for (const double unit : {1e-20, 1e20}) {
    Chain K(20);
    ReaVecT scale(20);
    scale.Fill(unit);
    scale(3) = 1.0;
    K.ScaleAndShift(scale, 0.0);
    EXPECT_EQ(K.Factorise(nullptr), 0) << unit;
  }
}

// The eigenvalues of a chain held at both ends are 2 - 2 cos(k pi / (n + 1)).
TEST(DirectSolver, NegativePivotsCountTheEigenvaluesBelowAShift) {
  const int n = 30;
  ReaVecT ones(n);
  ones.Fill(1.0);
  for (const int below : {0, 1, 7, 30}) {
    const double pi = std::acos(-1.0);
    const double shift = 2.0 - 2.0 * std::cos((below + 0.5) * pi / (n + 1));
    Chain K(n);
    K.ScaleAndShift(ones, -shift);
    ASSERT_EQ(K.Factorise(nullptr), 0);
    EXPECT_EQ(K.NegativePivots(), below);
    ReaVecT f(n);
    f(4) = 1.0;
    ReaVecT x = f;
    ASSERT_EQ(K.Substitute(x, nullptr), 0);
    ReaVecT product;
    K.Times(x, product);
    ExpectClose(product, f, 1e-11);
  }
}

TEST(DirectSolver, AShiftMakesASingularMatrixRegular) {
  const GridModel grid{4, 3, 3, 6};
  ReaVecT f;
  const auto K = Assembled<DirectSolver>(grid, f);
  ReaVecT scale(f.n);
  for (int i = 1; i <= f.n; ++i) scale(i) = 1.0 / std::sqrt(K->Entry(i, i));
  ASSERT_GT(K->Factorise(nullptr), 0);
  K->ScaleAndShift(scale, 1e-6);
  ASSERT_EQ(K->Factorise(nullptr), 0);
  EXPECT_EQ(K->NegativePivots(), 0);
  ReaVecT x = f;
  ASSERT_EQ(K->Substitute(x, nullptr), 0);
  ReaVecT product;
  K->Times(x, product);
  ExpectClose(product, f, 1e-8);
}

TEST(DirectSolver, AnotherAssemblyOnTheSameStructure) {
  const GridModel grid{4, 3, 3, 3};
  ReaVecT f;
  const auto K = Assembled<DirectSolver>(grid, f);
  ReaVecT first = f;
  grid.Hold(*K, 0.0, first);
  ASSERT_EQ(K->Solve(first, nullptr), 0);
  K->SetZero();
  EXPECT_FATAL(K->Substitute(f, nullptr),
               "error in DirectSolver::Substitute. Matrix not factorised\n");
  EXPECT_EQ(K->Factorise(nullptr), 1);  // nothing but zeros
  EXPECT_THAT(K->NullPivots(), SizeIs(grid.NumDegrees()));
  grid.Assemble(*K);
  grid.Assemble(*K);  // twice as stiff
  grid.Hold(*K, 0.0, f);
  ASSERT_EQ(K->Solve(f, nullptr), 0);
  for (int i = 1; i <= f.n; ++i) EXPECT_NEAR(f(i), 0.5 * first(i), 1e-12);
}

TEST(DirectSolver, AnotherStructureInTheSameSolver) {
  Chain K(6);
  ASSERT_EQ(K.Factorise(nullptr), 0);
  K.AddNodePair(1, 2, 3);
  K.Allocate(3);
  for (int i = 1; i <= 6; ++i) K.Entry(i, i) = i;
  ReaVecT f = Vec({1, 2, 3, 4, 5, 6});
  ASSERT_EQ(K.Solve(f, nullptr), 0);
  EXPECT_THAT(Entries(f), ElementsAre(1, 1, 1, 1, 1, 1));
}

TEST(DirectSolver, AnEntryThatIsNotANumberIsABreakdown) {
  for (const double entry : {std::nan(""), std::numeric_limits<double>::infinity()}) {
    Chain K(5);
    K.Entry(3, 3) = entry;
    ReaVecT f(5);
    EXPECT_EQ(K.Solve(f, nullptr), -1);
  }
}

TEST(DirectSolver, NothingToSolveIsSolved) {
  DirectSolver K(0);
  K.Allocate(3);
  ReaVecT f(0);
  EXPECT_EQ(K.Solve(f, nullptr), 0);
  EXPECT_THAT(K.NullPivots(), IsEmpty());
  EXPECT_EQ(K.NegativePivots(), 0);
}

TEST(DirectSolver, ANodeMayHaveAnyNumberOfNeighbours) {
  const int arms = 3000;
  DirectSolver K(3 * (arms + 1));
  for (int arm = 2; arm <= arms + 1; ++arm) K.AddNodePair(1, arm, 3);
  K.Allocate(3);
  for (int arm = 1; arm <= arms; ++arm) {
    for (int d = 1; d <= 3; ++d) {
      K.Entry(d, d) += 1.0;
      K.Entry(3 * arm + d, 3 * arm + d) += 2.0;  // a spring to the hub and one to the ground
      K.Entry(d, 3 * arm + d) -= 1.0;
    }
  }
  ReaVecT f(3 * (arms + 1));
  f(2) = 1.0;
  ASSERT_EQ(K.Solve(f, nullptr), 0);
  EXPECT_NEAR(f(2), 2.0 / arms, 1e-15);
  EXPECT_NEAR(f(302), 1.0 / arms, 1e-15);
  EXPECT_EQ(f(301), 0.0);
}

// Of such a graph the ordering that is right for all others would end the process.
TEST(DirectSolver, AllNodesMayBeCoupledWithAllOthers) {
  for (const int nodes : {1, 2, 3, 10, 150}) {
    DirectSolver K(2 * nodes);
    for (int a = 1; a <= nodes; ++a)
      for (int b = a + 1; b <= nodes; ++b) K.AddNodePair(a, b, 2);
    K.Allocate(2);
    for (int i = 1; i <= 2 * nodes; ++i)
      for (int j = i; j <= 2 * nodes; ++j) K.Entry(i, j) = i == j ? 2.0 : 1.0;
    ReaVecT f(2 * nodes);
    f.Fill(2.0 * nodes + 1.0);
    ASSERT_EQ(K.Solve(f, nullptr), 0);
    for (int i = 1; i <= f.n; ++i) EXPECT_NEAR(f(i), 1.0, 1e-12);
  }
}

TEST(DirectSolver, SaysInTheStorageReportWhatItIs) {
  DirectSolver K(12);
  K.AddNodePair(1, 2, 6);
  K.Allocate(6);
  std::ostringstream info;
  K.PrintInfo(info);
  EXPECT_EQ(info.str(),
            "\nINFORMATION ABOUT STIFFNESS MATRIX\n"
            "Node block storage with sparse direct solver\n"
            "Degrees of freedom= 12\n"
            "Total number of positions= 108\n"
            "Amount of memory= 0.0Mb\n\n");
}

}  // namespace

}  // namespace kestol
