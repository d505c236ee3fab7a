#include <random>

#include "algebra/BlockKernels.h"
#include "algebra/SparseKernels.h"
#include "algebra/SparseMatrix.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/RandomStiffness.h"

namespace kestol {

namespace {

using namespace kernel_code;
using testing::DoubleEq;
using testing::ElementsAre;

constexpr MatrixDescriptor kAny{kGeneral, kLower, kStoredDiagonal};

/// [ 2 0 1 ; 3 4 0 ; 0 5 8 ]
CompressedRows General() {
  CompressedRows A;
  A.Append(0, 2.0);
  A.Append(2, 1.0);
  A.CloseRow();
  A.Append(1, 4.0);
  A.Append(0, 3.0);
  A.CloseRow();
  A.Append(1, 5.0);
  A.Append(2, 8.0);
  A.CloseRow();
  return A;
}

/// [ 2 . . ; 3 4 . ; 1 5 8 ] below, its transpose above.
CompressedRows Lower() {
  CompressedRows L;
  L.Append(0, 2.0);
  L.CloseRow();
  L.Append(0, 3.0);
  L.Append(1, 4.0);
  L.CloseRow();
  L.Append(0, 1.0);
  L.Append(1, 5.0);
  L.Append(2, 8.0);
  L.CloseRow();
  return L;
}
CompressedRows Upper() {
  CompressedRows U;
  U.Append(0, 2.0);
  U.Append(1, 3.0);
  U.Append(2, 1.0);
  U.CloseRow();
  U.Append(1, 4.0);
  U.Append(2, 5.0);
  U.CloseRow();
  U.Append(2, 8.0);
  U.CloseRow();
  return U;
}

std::vector<double> Product(int transpose, const MatrixDescriptor& descriptor, double beta = 0.0) {
  const double x[] = {1.0, 2.0, 3.0};
  std::vector<double> y{99.0, 99.0, 99.0};
  MultiplyRows(transpose, descriptor, General(), x, beta, y.data());
  return y;
}

std::vector<double> Solution(int transpose, const MatrixDescriptor& descriptor,
                             std::vector<double> x, double unitd = 1.0, double beta = 0.0) {
  std::vector<double> y(3, 99.0);
  const CompressedRows T = descriptor.triangle == kUpper ? Upper() : Lower();
  SolveRows(transpose, unitd, descriptor, T, x.data(), beta, y.data());
  SolveRows(transpose, unitd, descriptor, T, x.data(), beta, x.data());
  EXPECT_EQ(x, y) << "in place";
  return y;
}

TEST(SparseKernels, ProductAddsRowByRow) {
  EXPECT_THAT(Product(kPlain, kAny), ElementsAre(5.0, 11.0, 34.0));
}

TEST(SparseKernels, TransposedProductBeginsWithZeros) {
  EXPECT_THAT(Product(kTransposed, kAny), ElementsAre(8.0, 23.0, 25.0));
}

// x = (1, 2, 3) behind every right-hand side.
TEST(SparseKernels, SolvesWithStoredDiagonals) {
  const MatrixDescriptor lower{kTriangular, kLower, kStoredDiagonal};
  const MatrixDescriptor upper{kTriangular, kUpper, kStoredDiagonal};
  const auto isX = ElementsAre(DoubleEq(1.0), DoubleEq(2.0), DoubleEq(3.0));
  EXPECT_THAT(Solution(kPlain, lower, {2.0, 11.0, 35.0}), isX);
  EXPECT_THAT(Solution(kTransposed, upper, {2.0, 11.0, 35.0}), isX);
  EXPECT_THAT(Solution(kPlain, upper, {11.0, 23.0, 24.0}), isX);
  EXPECT_THAT(Solution(kTransposed, lower, {11.0, 23.0, 24.0}), isX);
}

TEST(SparseKernels, SolvesWithUnitDiagonalsWhateverIsStoredThere) {
  const MatrixDescriptor lower{kTriangular, kLower, kUnitDiagonal};
  const MatrixDescriptor upper{kTriangular, kUpper, kUnitDiagonal};
  const auto isX = ElementsAre(DoubleEq(1.0), DoubleEq(2.0), DoubleEq(3.0));
  EXPECT_THAT(Solution(kPlain, lower, {1.0, 5.0, 14.0}), isX);
  EXPECT_THAT(Solution(kTransposed, upper, {1.0, 5.0, 14.0}), isX);
  EXPECT_THAT(Solution(kPlain, upper, {10.0, 17.0, 3.0}), isX);
  EXPECT_THAT(Solution(kTransposed, lower, {10.0, 17.0, 3.0}), isX);
}

// Deliberate: the refusals of the kernels end the process with status 1, not 2.
TEST(SparseKernels, RefusalsEndWithStatusOne) {
  const MatrixDescriptor lower{kTriangular, kLower, kStoredDiagonal};
  const std::vector<double> x(3, 1.0);
  EXPECT_EXIT_TEXT(Product(kPlain, {kTriangular, kLower, kStoredDiagonal}), 1,
                   "Must have general matrix");
  EXPECT_EXIT_TEXT(Product(2, kAny), 1, "Bad transa");
  EXPECT_EXIT_TEXT(Product(kPlain, kAny, 1.0), 1, "beta != 0 not implemented");
  EXPECT_EXIT_TEXT(Solution(kPlain, {kTriangular, 0, kStoredDiagonal}, x), 1, "Bad descra[1]");
  EXPECT_EXIT_TEXT(Solution(kPlain, {kTriangular, 3, kStoredDiagonal}, x), 1, "Bad descra[1]");
  EXPECT_EXIT_TEXT(Solution(kPlain, {kTriangular, kUpper, 2}, x), 1, "Bad descra[2]");
  EXPECT_EXIT_TEXT(Solution(-1, lower, x), 1, "Bad transa");
  EXPECT_EXIT_TEXT(Solution(kPlain, lower, x, 1.0, 0.5), 1, "beta != 0 not implemented");
  EXPECT_EXIT_TEXT(Solution(kPlain, lower, x, 2.0), 1, "unitd != 1 not implemented");
}

TEST(SparseKernels, RefusalsComeInTheirOrder) {
  const std::vector<double> x(3, 1.0);
  EXPECT_EXIT_TEXT(Product(7, {kTriangular, 9, 9}, 1.0), 1, "Must have general matrix");
  EXPECT_EXIT_TEXT(Solution(7, {kTriangular, 9, 9}, x, 2.0, 1.0), 1, "Bad descra[1]");
  EXPECT_EXIT_TEXT(Solution(7, {kTriangular, kUpper, 9}, x, 2.0, 1.0), 1, "Bad descra[2]");
  EXPECT_EXIT_TEXT(Solution(7, {kTriangular, kUpper, kUnitDiagonal}, x, 2.0, 1.0), 1, "Bad transa");
  EXPECT_EXIT_TEXT(Solution(kPlain, {kTriangular, kUpper, kUnitDiagonal}, x, 2.0, 1.0), 1,
                   "beta != 0 not implemented");
}

/// y = A x by the given kernels.
std::vector<double> Product(const BlockKernels& kernels, const SparseMatrix& A,
                            const std::vector<double>& x) {
  std::vector<double> y(A.rows);
  kernels.multiply({A.rows / A.blockSize, A.rowStart.data(), A.colIndex.data(), A.values.data()},
                   x.data(), y.data());
  return y;
}

TEST(SparseKernels, EveryProductOfNodeBlocksIsTheRowsTimesTheVectorToTheLastBit) {
  std::mt19937 random(7);
  for (int dofs : {3, 6}) {
    for (int nodes : {1, 2, 37}) {
      SparseMatrix A = RandomStiffness(random, nodes, dofs);
      A.ReplaceByUnitRow(nodes * dofs / 2);
      const std::vector<double> x = RandomVector(random, A.rows);
      std::vector<double> rows(A.rows);
      for (int i = 0; i < A.rows; ++i) rows[i] = A.RowTimesVector(i, x.data());
      ASSERT_FALSE(SupportedBlockKernels(dofs).empty());
      for (const BlockKernels& kernels : SupportedBlockKernels(dofs))
        EXPECT_EQ(Product(kernels, A, x), rows) << kernels.name << ", " << nodes << " nodes";
    }
  }
}

TEST(SparseKernels, ProductsLeaveUnclaimedSlotsOutAndKeepUnitSlots) {
  for (int dofs : {1, 3, 6}) {
    // Two coupled nodes of which only the first has its own block, and one that nothing touches.
    SparseMatrix A(3 * dofs, std::vector<int>(3 * dofs, 3 * dofs), dofs);
    Matriu block(dofs, dofs);
    block.Fill(2.0);
    A.AddBlock(0, 0, block);
    A.AddBlock(0, dofs, block);
    for (int i = 0; i < 3 * dofs; ++i)
      if (i % dofs == 0) A.ReplaceByUnitRow(i);
    std::vector<double> x(3 * dofs), rows(3 * dofs), y(3 * dofs);
    for (int i = 0; i < 3 * dofs; ++i) x[i] = i + 1.0;
    for (int i = 0; i < 3 * dofs; ++i) rows[i] = A.RowTimesVector(i, x.data());
    EXPECT_EQ(rows[0], x[0]);
    EXPECT_EQ(rows[dofs], x[dofs]);
    EXPECT_EQ(rows[2 * dofs], x[2 * dofs]);
    Multiply(A, x.data(), y.data());
    EXPECT_EQ(y, rows);
    if (dofs == 1) continue;
    for (const BlockKernels& kernels : SupportedBlockKernels(dofs))
      EXPECT_EQ(Product(kernels, A, x), rows) << kernels.name;
  }
}

TEST(SparseKernels, NodeBlockKernelsExistForThreeAndSixDegrees) {
  for (int dofs : {1, 2, 4, 5, 12}) EXPECT_EQ(BlockKernelsFor(dofs), nullptr);
  for (int dofs : {3, 6}) {
    EXPECT_EQ(BlockKernelsFor(dofs), &SupportedBlockKernels(dofs).front());
    EXPECT_STREQ(SupportedBlockKernels(dofs).back().name, "128 bits");
  }
}

}  // namespace

}  // namespace kestol
