#include <cmath>
#include <limits>

#include "algebra/BlockKernels.h"
#include "algebra/DiagPreconditioner.h"
#include "algebra/ICPreconditioner.h"
#include "algebra/ILUPreconditioner.h"
#include "algebra/NodeBlockFactors.h"
#include "algebra/Preconditioner.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/RandomStiffness.h"
#include "tests/support/ScalarSparse.h"

namespace kestol {

namespace {

SparseMatrix FromDense(const std::vector<std::vector<double>>& dense) {
  const int n = static_cast<int>(dense.size());
  SparseMatrix A(n, std::vector<int>(n, n));
  for (int i = 0; i < n; ++i) {
    for (int j = n - 1; j >= 0; --j)
      if (dense[i][j] != 0.0) A.Add(i, j, dense[i][j]);
  }
  return A;
}

SparseMatrix Tridiagonal(int n) {
  SparseMatrix A(n, std::vector<int>(n, 3));
  for (int i = 0; i < n; ++i) {
    if (i > 0) A.Add(i, i - 1, -1.0);
    if (i + 1 < n) A.Add(i, i + 1, -1.0);
    A.Add(i, i, 2.5 + i);
  }
  return A;
}

std::vector<double> Solve(const Preconditioner& M, const std::vector<double>& r) {
  std::vector<double> z(r.size(), std::nan(""));
  M.Solve(r.data(), z.data());
  return z;
}
std::vector<double> TransposedSolve(const Preconditioner& M, const std::vector<double>& r) {
  std::vector<double> z(r.size(), std::nan(""));
  M.TransposedSolve(r.data(), z.data());
  return z;
}

void ExpectNear(const std::vector<double>& found, const std::vector<double>& wanted,
                double tolerance = 1e-12) {
  ASSERT_EQ(found.size(), wanted.size());
  for (std::size_t i = 0; i < found.size(); ++i)
    EXPECT_NEAR(found[i], wanted[i], tolerance * (1.0 + std::abs(wanted[i]))) << "entry " << i;
}

TEST(DiagPreconditioner, DividesByTheDiagonal) {
  const DiagPreconditioner M(FromDense({
      {2.0, 7.0 },
      {0.0, -4.0}
  }));
  EXPECT_STREQ(M.name, "Diagonal");
  EXPECT_THAT(Solve(M, {3.0, 2.0}), testing::ElementsAre(1.5, -0.5));
  EXPECT_THAT(TransposedSolve(M, {3.0, 2.0}), testing::ElementsAre(1.5, -0.5));
}

TEST(DiagPreconditioner, RefusesAZeroAndAMissingDiagonal) {
  SparseMatrix A(3, {2, 2, 2});
  for (int i = 0; i < 2; ++i) A.Add(i, i, 1.0);
  EXPECT_FATAL(DiagPreconditioner{A},
               "Diagonal preconditioner failure.\nZero detected in element 2");
  A.Reference(1, 1) = 0.0;
  EXPECT_FATAL(DiagPreconditioner{A},
               "Diagonal preconditioner failure.\nZero detected in element 1");
}

TEST(DiagPreconditioner, TakesTheUnitSlotOfARowThatWasNeverAssembled) {
  SparseMatrix A(2, {1, 2});
  A.Add(0, 0, 2.0);
  A.ReplaceByUnitRow(1);
  EXPECT_THAT(Solve(DiagPreconditioner(A), {2.0, 5.0}), testing::ElementsAre(1.0, 5.0));
}

TEST(DiagPreconditioner, IsNotRebuilt) {
  const SparseMatrix A = Tridiagonal(2);
  DiagPreconditioner M(A);
  EXPECT_FATAL(M.New_Matrix(A), "Wrong use of DiagPreconditioner::New_Matrix");
}

TEST(ICPreconditioner, IsExactOnATridiagonalMatrix) {
  const SparseMatrix A = Tridiagonal(9);
  const ICPreconditioner M(A);
  EXPECT_STREQ(M.name, "Cholesky");
  std::vector<double> x(9);
  for (int i = 0; i < 9; ++i) x[i] = 1.0 - 0.3 * i;
  ExpectNear(Solve(M, ScalarSparse(A).Times(x)), x);
  ExpectNear(TransposedSolve(M, ScalarSparse(A).Times(x)), x);
}

// The missing (3, 1) is not filled: L = [2; 1 2; 1 . 2], L L^T differs from A there only.
TEST(ICPreconditioner, DropsWhatFallsOutsideThePattern) {
  const ICPreconditioner M(FromDense({
      {4.0, 2.0, 2.0},
      {2.0, 5.0, 0.0},
      {2.0, 0.0, 5.0}
  }));
  // L y = r, L^T z = y for r = (4, 6, 6): y = (2, 2, 2), z = (0, 1, 1).
  ExpectNear(Solve(M, {4.0, 6.0, 6.0}), {0.0, 1.0, 1.0});
}

TEST(ICPreconditioner, GivesTheIncompleteLUOfASymmetricPositiveMatrix) {
  std::mt19937 random(3);
  const SparseMatrix A = RandomStiffness(random, 12, 2);
  const std::vector<double> r = RandomVector(random, A.rows);
  ExpectNear(Solve(ICPreconditioner(A), r), ScalarSparse(A).IncompleteFactors().SolveFactors(r));
}

TEST(ICPreconditioner, RefusesARowWithoutAStoredDiagonal) {
  EXPECT_FATAL(ICPreconditioner(FromDense({
                   {1.0, 1.0},
                   {1.0, 0.0}
  })),
               "IC Preconditioner: diagonal not found!");
}

TEST(ICPreconditioner, RefusesARadicandThatIsNotPositive) {
  EXPECT_FATAL(ICPreconditioner(FromDense({
                   {1.0, 1.0},
                   {1.0, 1.0}
  })),
               "IC Preconditioner: non positive diagonal in row 1");
  EXPECT_FATAL(ICPreconditioner(FromDense({
                   {std::nan(""), 1.0},
                   {1.0,          1.0}
  })),
               "IC Preconditioner: non positive diagonal in row 0");
}

TEST(ICPreconditioner, IsNotRebuilt) {
  const SparseMatrix A = Tridiagonal(2);
  ICPreconditioner M(A);
  EXPECT_FATAL(M.New_Matrix(A), "Wrong use of ICPreconditioner::New_Matrix");
}

TEST(ILUPreconditioner, IsExactOnATridiagonalMatrix) {
  const SparseMatrix A = Tridiagonal(9);
  const ILUPreconditioner M(A);
  EXPECT_STREQ(M.name, "Preconditioner");
  EXPECT_TRUE(M.IsPositive());
  std::vector<double> x(9);
  for (int i = 0; i < 9; ++i) x[i] = 1.0 - 0.3 * i;
  ExpectNear(Solve(M, ScalarSparse(A).Times(x)), x);
}

// Eliminating (3, 1) = 4 would fill (3, 2) with -2, which is not stored.
TEST(ILUPreconditioner, DropsWhatFallsOutsideThePattern) {
  const ILUPreconditioner M(FromDense({
      {2.0, 1.0, 0.0},
      {1.0, 2.0, 1.0},
      {4.0, 0.0, 3.0}
  }));
  // L = [1; 1/2 1; 2 0 1], U = [2 1 0; . 3/2 1; . . 3].
  ExpectNear(Solve(M, {3.0, 4.0, 9.0}), {1.0, 1.0, 1.0});            // y = (3, 2.5, 3)
  ExpectNear(TransposedSolve(M, {7.0, 5.0, 4.0}), {1.0, 1.0, 1.0});  // y = (3.5, 1, 1)
}

TEST(ILUPreconditioner, FactorsUnsymmetricPatternsEntryByEntry) {
  std::mt19937 random(11);
  SparseMatrix A(30, std::vector<int>(30, 8));
  for (int i = 0; i < 30; ++i) {
    A.Add(i, i, 6.0);
    for (int k = 0; k < 7; ++k) A.Add(i, static_cast<int>(random() % 30), k == 0 ? 0.0 : 0.5);
  }
  const std::vector<double> r = RandomVector(random, 30);
  const ScalarSparse factors = ScalarSparse(A).IncompleteFactors();
  const ILUPreconditioner M(A);
  ExpectNear(Solve(M, r), factors.SolveFactors(r));
  ExpectNear(TransposedSolve(M, r), factors.SolveFactorsTransposed(r));
}

class NodeBlocks : public testing::TestWithParam<int> {};

TEST_P(NodeBlocks, FactorsAreThoseOfTheEntries) {
  std::mt19937 random(5);
  for (int nodes : {1, 2, 40}) {
    const SparseMatrix A = RandomStiffness(random, nodes, GetParam(), 0.2);
    ASSERT_NE(NodeBlockFactors::Of(A), nullptr);
    const std::vector<double> r = RandomVector(random, A.rows);
    const ScalarSparse factors = ScalarSparse(A).IncompleteFactors();
    const ILUPreconditioner M(A);
    EXPECT_TRUE(M.IsPositive());
    ExpectNear(Solve(M, r), factors.SolveFactors(r));
    ExpectNear(TransposedSolve(M, r), factors.SolveFactorsTransposed(r));
  }
}

/// Fixed degrees here and there, two of them at one node, and a node that is fixed altogether.
/// Their columns stay in the matrix, and the residuals r need not vanish there.
TEST_P(NodeBlocks, FactorsKeepTheColumnsOfFixedDegrees) {
  const int dofs = GetParam();
  std::mt19937 random(6);
  SparseMatrix A = RandomStiffness(random, 40, dofs, 0.2);
  for (int i = 0; i < A.rows; ++i)
    if (random() % 5 == 0 || i / dofs == 7) A.ReplaceByUnitRow(i);
  ASSERT_NE(NodeBlockFactors::Of(A), nullptr);
  const std::vector<double> r = RandomVector(random, A.rows);
  const ScalarSparse factors = ScalarSparse(A).IncompleteFactors();
  const ILUPreconditioner M(A);
  EXPECT_TRUE(M.IsPositive());
  ExpectNear(Solve(M, r), factors.SolveFactors(r));
  ExpectNear(TransposedSolve(M, r), factors.SolveFactorsTransposed(r));
}

TEST_P(NodeBlocks, NodesWithoutElementsCountByTheirUnitSlots) {
  const int dofs = GetParam();
  SparseMatrix A(2 * dofs, std::vector<int>(2 * dofs, dofs), dofs);
  Matriu block(dofs, dofs);
  block.Fill(1.0);
  for (int d = 1; d <= dofs; ++d) block(d, d) = 5.0;
  A.AddBlock(dofs, dofs, block);
  for (int i = 0; i < dofs; ++i) A.ReplaceByUnitRow(i);
  std::mt19937 random(8);
  const std::vector<double> x = RandomVector(random, A.rows);
  ExpectNear(Solve(ILUPreconditioner(A), ScalarSparse(A).Times(x)), x);
}

TEST_P(NodeBlocks, UnsymmetricMatricesGoEntryByEntry) {
  const int dofs = GetParam();
  std::mt19937 random(9);
  const SparseMatrix symmetric = RandomStiffness(random, 20, dofs);
  const int neighbour = symmetric.Columns(0)[0];  // of the first node
  for (const int column : {1, neighbour}) {
    SparseMatrix A = symmetric;
    A.Reference(0, column) += 0.25;
    EXPECT_EQ(NodeBlockFactors::Of(A), nullptr);
    const std::vector<double> r = RandomVector(random, A.rows);
    const ScalarSparse factors = ScalarSparse(A).IncompleteFactors();
    ExpectNear(Solve(ILUPreconditioner(A), r), factors.SolveFactors(r));
    ExpectNear(TransposedSolve(ILUPreconditioner(A), r), factors.SolveFactorsTransposed(r));
  }
}

/// Entries (i, j) and (j, i) of two nodes count as equal up to 1e-10 of the greater diagonal.
TEST_P(NodeBlocks, RoundingBesideAGreatDiagonalIsNoLackOfSymmetry) {
  const int dofs = GetParam(), n = 2 * dofs;
  SparseMatrix even(n, std::vector<int>(n, n), dofs);
  Matriu block(dofs, dofs);
  block.Fill(0.0);
  for (const int row : {0, dofs}) even.AddBlock(row, row, block);
  even.AddBlock(0, dofs, block);
  for (int i = 0; i < n; ++i) even.Reference(i, i) = 2.0;
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j) {
      if (i == j) continue;
      SparseMatrix A = even;
      A.Reference(i, i) = 1e6;
      A.Reference(i, j) = 0.9e-4;
      EXPECT_NE(NodeBlockFactors::Of(A), nullptr) << i << ' ' << j;
      A.Reference(i, j) = 1.1e-4;
      EXPECT_EQ(NodeBlockFactors::Of(A), nullptr) << i << ' ' << j;
      A.Reference(j, i) = 0.3e-4;
      EXPECT_NE(NodeBlockFactors::Of(A), nullptr) << i << ' ' << j;
    }
  }
}

TEST_P(NodeBlocks, BlocksWithoutTheirMirrorGoEntryByEntry) {
  const int dofs = GetParam();
  SparseMatrix A(2 * dofs, std::vector<int>(2 * dofs, 2 * dofs), dofs);
  Matriu block(dofs, dofs);
  block.Fill(0.0);
  for (int d = 1; d <= dofs; ++d) block(d, d) = 2.0;
  A.AddBlock(0, dofs, block);
  A.AddBlock(0, 0, block);
  A.AddBlock(dofs, dofs, block);
  A.colIndex[2] = -1;  // the lower block of the second row and what came after it
  A.colIndex[3] = -1;
  EXPECT_EQ(NodeBlockFactors::Of(A), nullptr);
}

/// Both sweeps of all kernels give the bits of the simplest ones.
TEST_P(NodeBlocks, KernelsAgreeToTheLastBit) {
  const int dofs = GetParam();
  std::mt19937 random(10);
  SparseMatrix A = RandomStiffness(random, 40, dofs, 0.2);
  for (int i = 3; i < A.rows; i += 11) A.ReplaceByUnitRow(i);
  const auto factors = NodeBlockFactors::Of(A);
  ASSERT_NE(factors, nullptr);
  const std::vector<double> r = RandomVector(random, A.rows);
  std::vector<std::vector<double>> solutions;
  for (const BlockKernels& kernels : SupportedBlockKernels(dofs)) {
    std::vector<double> work(40 * kernels.stride), z(A.rows);
    kernels.forward(factors->Blocks(), r.data(), work.data());
    kernels.backward(factors->Blocks(), work.data(), z.data());
    solutions.push_back(z);
  }
  EXPECT_THAT(solutions, testing::Each(solutions.back()));
}

TEST_P(NodeBlocks, NegativeAndInfinitePivotsShow) {
  const int dofs = GetParam();
  std::mt19937 random(12);
  SparseMatrix A = RandomStiffness(random, 10, dofs);
  A.Reference(dofs + 1, dofs + 1) = -3.0;
  EXPECT_FALSE(ILUPreconditioner(A).IsPositive());
  const std::vector<double> r = RandomVector(random, A.rows);
  ExpectNear(Solve(ILUPreconditioner(A), r), ScalarSparse(A).IncompleteFactors().SolveFactors(r));
  A.Reference(dofs + 1, dofs + 1) = std::numeric_limits<double>::infinity();
  EXPECT_FALSE(ILUPreconditioner(A).IsPositive());
}

INSTANTIATE_TEST_SUITE_P(DegreesPerNode, NodeBlocks, testing::Values(3, 6));

TEST(ILUPreconditioner, PivotsThatAreNotPositiveShow) {
  EXPECT_TRUE(ILUPreconditioner(FromDense({
                                    {1.0, 1.0},
                                    {1.0, 2.0}
  }))
                  .IsPositive());
  EXPECT_FALSE(ILUPreconditioner(FromDense({
                                     {1.0, 1.0},
                                     {1.0, 1.0}
  }))
                   .IsPositive());
  EXPECT_FALSE(ILUPreconditioner(FromDense({
                                     {1.0, 2.0},
                                     {2.0, 1.0}
  }))
                   .IsPositive());
  EXPECT_FALSE(ILUPreconditioner(FromDense({
                                     {0.0, 1.0},
                                     {1.0, 1.0}
  }))
                   .IsPositive());
}

TEST(ILUPreconditioner, AMissingDiagonalIsAPivotOfZero) {
  const ILUPreconditioner M(FromDense({
      {0.0, 1.0},
      {1.0, 2.0}
  }));
  for (double z : Solve(M, {1.0, 1.0})) EXPECT_FALSE(std::isfinite(z));
}

TEST(ILUPreconditioner, IsNotRebuilt) {
  const SparseMatrix A = Tridiagonal(2);
  ILUPreconditioner M(A);
  EXPECT_FATAL(M.New_Matrix(A), "Wrong use of ILUPreconditioner::New_Matrix");
}

}  // namespace

}  // namespace kestol
