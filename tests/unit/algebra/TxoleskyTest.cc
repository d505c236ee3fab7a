#include <numeric>
#include <random>
#include <sstream>
#include <vector>

#include "algebra/Txolesky.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/Profiles.h"
#include "tests/support/Reference.h"

namespace kestol {

namespace {

/// The largest difference between the entries of two matrices of the same profile, relative to the
/// largest entry.
double Difference(const TestMatrix& A, const TestMatrix& B) {
  double largest = 0.0;
  double difference = 0.0;
  for (std::size_t k = 0; k < A.entries.size(); ++k) {
    largest = std::max(largest, std::abs(B.entries[k]));
    difference = std::max(difference, std::abs(A.entries[k] - B.entries[k]));
  }
  return difference / largest;
}

/// Runs every test with each kernel that this processor supports.
class Txolesky : public testing::TestWithParam<TileKernel> {
protected:
  int Factorise(TestMatrix& K, std::ostream* info = nullptr) {
    return kestol::Txolesky(K.View(), info, GetParam());
  }
};

INSTANTIATE_TEST_SUITE_P(Kernels, Txolesky, testing::ValuesIn(SupportedTileKernels()),
                         [](const auto& kernel) {
                           std::string name = kernel.param.name;
                           name.erase(name.find(' '), 1);
                           return "With" + name;
                         });

struct FactorisedRowByRow {
  std::string name;
  TestMatrix matrix;
  TestMatrix factors;
};

/// One matrix of each kind; made once, as the row by row statement takes its time.
const std::vector<FactorisedRowByRow>& Factorised() {
  static const std::vector<FactorisedRowByRow> all = [] {
    std::vector<FactorisedRowByRow> made;
    for (const auto& [name, heights] : ProfileKinds()) {
      const TestMatrix matrix = DominantMatrix(heights);
      made.push_back({name, matrix, matrix});
      EXPECT_EQ(reference::Txolesky(made.back().factors.View(), nullptr), 0);
    }
    return made;
  }();
  return all;
}

TEST_P(Txolesky, AgreesWithTheRowByRowStatementOnEveryKindOfProfile) {
  for (const auto& [name, matrix, factors] : Factorised()) {
    TestMatrix blocked = matrix;
    ASSERT_EQ(Factorise(blocked), 0) << name;
    EXPECT_LT(Difference(blocked, factors), 1e-10) << name;
  }
}

TEST_P(Txolesky, AgreesWithTheRowByRowStatementAtEveryOrderAroundTheBlocks) {
  for (int n = 1; n <= 100; ++n) {
    TestMatrix blocked = DominantMatrix(FullHeights(n));
    TestMatrix rowByRow = blocked;
    ASSERT_EQ(Factorise(blocked), 0);
    ASSERT_EQ(reference::Txolesky(rowByRow.View(), nullptr), 0);
    EXPECT_LT(Difference(blocked, rowByRow), 1e-10) << n;
  }
}

TEST_P(Txolesky, IndefiniteMatricesHaveNegativePivots) {
  TestMatrix blocked = DominantMatrix(FullHeights(150));
  for (int j = 0; j < 150; j += 3) blocked.Entry(j + 1, j + 1) *= -1.0;
  TestMatrix rowByRow = blocked;
  ASSERT_EQ(Factorise(blocked), 0);
  ASSERT_EQ(reference::Txolesky(rowByRow.View(), nullptr), 0);
  EXPECT_LT(Difference(blocked, rowByRow), 1e-10);
  EXPECT_LT(blocked.Entry(1, 1), 0.0);
  EXPECT_GT(blocked.Entry(2, 2), 0.0);
}

/// K = U^T U with U full of ones has pivots and factors 1; K(i, j) = min(i, j).
TEST_P(Txolesky, FactorsOfOnesAreExact) {
  const int n = 500;
  TestMatrix K(FullHeights(n));
  for (int j = 1; j <= n; ++j)
    for (int i = 1; i <= j; ++i) K.Entry(i, j) = i;
  ASSERT_EQ(Factorise(K), 0);
  EXPECT_EQ(K.entries, std::vector<double>(K.entries.size(), 1.0));
}

TEST_P(Txolesky, FailsAtTheFirstBadPivotOfEveryPlace) {
  for (const int failing : {1, 2, 7, 8, 9, 24, 25, 96, 97, 192, 300}) {
    for (const double bad : {0.0, 0.9e-15, -0.9e-15, std::nan("")}) {
      TestMatrix K = DominantMatrix(FullHeights(300));
      for (int j = 1; j <= 300; ++j)  // the failing degree and those above it are uncoupled
        for (int i = 1; i < std::min(j, failing + 1); ++i) K.Entry(i, j) = 0.0;
      K.Entry(failing, failing) = bad;
      K.Entry(300, 300) = failing == 300 ? bad : 0.0;  // a later one as well
      EXPECT_EQ(Factorise(K), failing);
    }
  }
}

/// A bad number above the diagonal spoils its own column first, in whatever tile it lies.
TEST_P(Txolesky, ANumberThatIsNoneFailsAtItsColumn) {
  for (const auto& [row, column] : {
           std::pair{1,   2  },
           {3,   8  },
           {1,   25 },
           {24,  25 },
           {90,  97 },
           {5,   200},
           {191, 290}
  }) {
    TestMatrix K = DominantMatrix(FullHeights(300));
    K.Entry(row, column) = std::nan("");
    EXPECT_EQ(Factorise(K), column) << row;
  }
}

/// Row and column `failing` are those of degree 1 times a number: exact in floating point.
TEST_P(Txolesky, FailsWhereTheRowByRowStatementFindsADependentRow) {
  for (const double value : {1.0, 3.0, 49.0, 1e8 / 3.0}) {
    for (const int failing : {2, 9, 24, 31, 97, 250}) {
      TestMatrix blocked(FullHeights(260));
      for (int j = 1; j <= 260; ++j) blocked.Entry(j, j) = value;
      blocked.Entry(1, failing) = value;
      TestMatrix rowByRow = blocked;
      ASSERT_EQ(reference::Txolesky(rowByRow.View(), nullptr), failing);
      EXPECT_EQ(Factorise(blocked), failing) << value;
    }
  }
}

TEST_P(Txolesky, PivotsBeforeTheFailingOneAreThere) {
  TestMatrix K = DominantMatrix(FullHeights(120));
  TestMatrix whole = K;
  K.Entry(100, 100) = std::nan("");
  ASSERT_EQ(Factorise(K), 100);
  ASSERT_EQ(Factorise(whole), 0);
  for (int i = 1; i < 100; ++i) EXPECT_EQ(K.Entry(i, i), whole.Entry(i, i));
}

TEST_P(Txolesky, ReportsEvery500thPivotWhenItIsFormed) {
  TestMatrix K = DominantMatrix(BandHeights(1600, 40));
  K.Entry(1500, 1500) = 0.0;
  for (int i = 1461; i < 1500; ++i) K.Entry(i, 1500) = 0.0;
  std::ostringstream info;
  EXPECT_EQ(Factorise(K, &info), 1500);
  EXPECT_EQ(info.str(),
            "Solving degree 500 of 1600\n"
            "Solving degree 1000 of 1600\n"
            "Solving degree 1500 of 1600\n");
}

TEST_P(Txolesky, ReportsTheLastPivotToo) {
  for (const int height : {8, 120, 400}) {  // narrow, middle and wide blocks
    TestMatrix K = DominantMatrix(BandHeights(500, height));
    std::ostringstream info;
    EXPECT_EQ(Factorise(K, &info), 0);
    EXPECT_EQ(info.str(), "Solving degree 500 of 500\n");
  }
}

TEST_P(Txolesky, NothingBesideTheProfileIsTouched) {
  const std::vector<int> heights = RandomHeights(500, 200);
  TestMatrix K = DominantMatrix(heights);
  std::vector<double> guarded(K.entries.size() + 2, -7.0);  // one number before, one behind
  std::copy(K.entries.begin(), K.entries.end(), guarded.begin() + 1);
  std::vector<double*> columns;
  double* next = &guarded[1];
  for (const int height : heights) {
    columns.push_back(next);
    next += height;
  }
  EXPECT_EQ(kestol::Txolesky({500, heights.data(), columns.data()}, nullptr, GetParam()), 0);
  EXPECT_EQ(guarded.front(), -7.0);
  EXPECT_EQ(guarded.back(), -7.0);
}

TEST(TxoleskySubstitution, SolvesForAKnownVector) {
  for (const auto& [name, heights] : ProfileKinds()) {
    TestMatrix K = DominantMatrix(heights);
    const int n = K.View().n;
    std::vector<double> x(n);
    std::iota(x.begin(), x.end(), 1.0);
    std::vector<double> f = K.Times(x);
    ASSERT_EQ(kestol::Txolesky(K.View(), nullptr), 0);
    SubstituteForward(K.View(), f.data());
    DivideByDiagonal(K.View(), f.data());
    SubstituteBackward(K.View(), f.data());
    for (int i = 0; i < n; ++i) ASSERT_NEAR(f[i], x[i], 1e-10 * n) << name;
  }
}

/// U with ones next to the diagonal: U^-T sums with alternating signs from the left, U^-1 from the
/// right.
TEST(TxoleskySubstitution, GoesForwardsWithTheTransposedAndBackwardsWithTheFactor) {
  TestMatrix U(BandHeights(3, 2));
  U.Entry(1, 2) = U.Entry(2, 3) = 1.0;
  for (int i = 1; i <= 3; ++i) U.Entry(i, i) = 2.0 * i;  // D is no part of U
  std::vector<double> forward = {1, 2, 4};
  SubstituteForward(U.View(), forward.data());
  EXPECT_THAT(forward, testing::ElementsAre(1, 1, 3));
  std::vector<double> backward = {1, 2, 4};
  SubstituteBackward(U.View(), backward.data());
  EXPECT_THAT(backward, testing::ElementsAre(3, -2, 4));
  std::vector<double> divided = {1, 2, 3};
  DivideByDiagonal(U.View(), divided.data());
  EXPECT_THAT(divided, testing::ElementsAre(0.5, 0.5, 0.5));
}

}  // namespace

}  // namespace kestol
