#include <sstream>

#include "algebra/Matriu.h"
#include "algebra/SparseMatrix.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {

namespace {

using testing::ElementsAre;

Matriu Counting(int rows, int columns) {
  Matriu M(rows, columns);
  for (int k = 0; k < rows * columns; ++k) M.data[k] = k + 1.0;
  return M;
}

/// Two nodes of three degrees, each with room for both.
SparseMatrix TwoNodes() {
  return SparseMatrix(6, std::vector<int>(6, 6), 3);
}

/// The claimed columns of a row in their order.
std::vector<int> ClaimsOf(const SparseMatrix& A, int i) {
  std::vector<int> claims;
  for (int k = 0; k < A.Length(i) && A.ColumnOf(i, k) >= 0; ++k) claims.push_back(A.ColumnOf(i, k));
  return claims;
}

TEST(SparseMatrix, StartsWithZerosAndUnclaimedSlots) {
  const SparseMatrix A(3, {2, 0, 3});
  EXPECT_EQ(A.nnz, 5);
  EXPECT_EQ(A.rows, 3);
  EXPECT_EQ(A.cols, 3);
  EXPECT_THAT(A.rowStart, ElementsAre(0, 2, 2, 5));
  EXPECT_THAT(A.colIndex, ElementsAre(-1, -1, -1, -1, -1));
  for (double value : A.values) EXPECT_EQ(value, 0.0);
}

TEST(SparseMatrix, RefusesToBeEmpty) {
  EXPECT_FATAL(SparseMatrix(2, {0, 0}), "Sparse Matrix size must be greater than 0");
  EXPECT_FATAL(SparseMatrix(0, {}), "Sparse Matrix size must be greater than 0");
}

TEST(SparseMatrix, RefusesNegativeRowLengths) {
  EXPECT_FATAL(SparseMatrix(2, {-1, 5}), "Sparse Matrix size must be greater than 0");
}

TEST(SparseMatrix, SumsRowLengthsBeyond32Bits) {
  EXPECT_NO_MEMORY(SparseMatrix(3, {1 << 30, 1 << 30, 1 << 30}));
}

TEST(SparseMatrix, SlotsAreClaimedInTheOrderOfFirstUse) {
  SparseMatrix A(4, {3, 1, 1, 1});
  A.Add(0, 3, 1.0);
  A.Add(0, 1, 2.0);
  A.Add(0, 3, 4.0);
  EXPECT_THAT(A.colIndex, ElementsAre(3, 1, -1, -1, -1, -1));
  EXPECT_EQ(A.values[0], 5.0);
  EXPECT_EQ(A.values[1], 2.0);
}

TEST(SparseMatrix, AddingTwiceAccumulatesInOneSlot) {
  SparseMatrix A(2, {2, 1});
  A.Add(0, 1, 1.5);
  A.Add(0, 1, 2.0);
  EXPECT_EQ(A.Read(0, 1), 3.5);
  EXPECT_THAT(ClaimsOf(A, 0), ElementsAre(1));
}

TEST(SparseMatrix, RefusesANewColumnInAFullRow) {
  SparseMatrix A(3, {2, 1, 1});
  A.Add(0, 0, 1.0);
  A.Add(0, 2, 1.0);
  EXPECT_FATAL(A.Add(0, 1, 1.0), "Wrong Row 0 definition: Row length 2");
}

TEST(SparseMatrix, RefusesPlacesOutOfBounds) {
  const char* const text = "Sparse Matrix accessing exception -- out of bounds.";
  SparseMatrix A(2, {2, 2});
  EXPECT_FATAL(A.Read(2, 0), text);
  EXPECT_FATAL(A.Read(0, 2), text);
  EXPECT_FATAL(A.Read(-1, 0), text);
  EXPECT_FATAL(A.Reference(0, -1), text);
  EXPECT_FATAL(A.Add(2, 0, 1.0), text);
  EXPECT_FATAL(A.SetDiagonal(2), text);
  EXPECT_FATAL(A.ReplaceByUnitRow(-1), text);
  EXPECT_FATAL(A.AddBlock(1, 1, Matriu(2, 2)), text);
}

TEST(SparseMatrix, ReadsZeroWhereNothingWasAssembled) {
  SparseMatrix A(2, {2, 2});
  A.Add(0, 0, 1.0);
  EXPECT_EQ(A.Read(0, 1), 0.0);
  EXPECT_EQ(A.Read(1, 1), 0.0);
}

TEST(SparseMatrix, RefusesToAssignOutsideTheStructure) {
  SparseMatrix A(3, {3, 3, 3});
  EXPECT_FATAL(A.Reference(1, 2),
               "Sparse Matrix element (1,2) not in sparse structure -- cannot assign.");
}

TEST(SparseMatrix, ReferenceIsTheStoredPlace) {
  SparseMatrix A(2, {2, 2});
  A.Add(1, 0, 2.0);
  A.Reference(1, 0) += 5.0;
  EXPECT_EQ(A.Read(1, 0), 7.0);
}

TEST(SparseMatrix, SetDiagonalClaimsOrOverwritesTheDiagonal) {
  SparseMatrix A(2, {2, 1});
  A.Add(0, 1, 3.0);
  A.SetDiagonal(0);
  EXPECT_THAT(ClaimsOf(A, 0), ElementsAre(1, 0));
  A.Reference(0, 0) = 9.0;
  A.SetDiagonal(0);
  EXPECT_EQ(A.Read(0, 0), 1.0);
  EXPECT_EQ(A.Read(0, 1), 3.0);
}

TEST(SparseMatrix, RefusesABoundaryConditionInAFullRowWithoutDiagonal) {
  SparseMatrix A(2, {1, 1});
  A.Add(0, 1, 3.0);
  EXPECT_FATAL(A.SetDiagonal(0), "Wrong Row 0 boundary condition");
}

TEST(SparseMatrix, UnitRowKeepsColumnsAndClearsTheOthers) {
  SparseMatrix A(3, {3, 1, 1});
  A.Add(0, 2, 5.0);
  A.Add(0, 0, 7.0);
  A.ReplaceByUnitRow(0);
  EXPECT_THAT(A.colIndex, ElementsAre(2, 0, -1, -1, -1));
  EXPECT_EQ(A.Read(0, 2), 0.0);
  EXPECT_EQ(A.Read(0, 0), 1.0);
  EXPECT_EQ(A.values[2], 1.0);  // the unclaimed slot as well
}

TEST(SparseMatrix, UnitRowWithoutDiagonalFillsTheFirstUnclaimedSlotWhoseColumnStays) {
  SparseMatrix A(2, {2, 1});
  A.Add(0, 1, 5.0);
  A.ReplaceByUnitRow(0);
  EXPECT_THAT(A.colIndex, ElementsAre(1, -1, -1));
  EXPECT_EQ(A.values[1], 1.0);
  EXPECT_EQ(A.Read(0, 0), 0.0);   // reading looks at columns only
  EXPECT_EQ(A.Diagonal(0), 1.0);  // the row acts as a unit row
  const double x[] = {3.0, 100.0};
  EXPECT_EQ(A.RowTimesVector(0, x), 3.0);
}

TEST(SparseMatrix, UnclaimedSlotsNextToAStoredDiagonalCountForNothing) {
  SparseMatrix A(2, {2, 1});
  A.Add(0, 0, 5.0);
  A.ReplaceByUnitRow(0);
  const double x[] = {3.0, 100.0};
  EXPECT_EQ(A.RowTimesVector(0, x), 3.0);
  EXPECT_EQ(A.UnitSlot(0), -1);
}

TEST(SparseMatrix, AFullRowWithoutDiagonalHasNone) {
  SparseMatrix A(2, {1, 1});
  A.Add(0, 1, 3.0);
  A.Add(1, 1, 5.0);
  A.ReplaceByUnitRow(0);
  EXPECT_EQ(A.UnitSlot(0), -1);  // the slot behind the row belongs to the next one
  EXPECT_EQ(A.Diagonal(0), 0.0);
}

TEST(SparseMatrix, UnclaimedSlotsAreNeverMultiplied) {
  SparseMatrix A(2, {2, 2});
  A.Add(0, 1, 2.0);
  const std::vector<double> x{10.0, 20.0};  // x[-1] would be a fault
  EXPECT_EQ(A.RowTimesVector(0, x.data()), 40.0);
  EXPECT_EQ(A.RowTimesVector(1, x.data()), 0.0);
}

TEST(SparseMatrix, RowTimesVectorAddsFromTheFirstSlotOn) {
  SparseMatrix A(3, {3, 1, 1});
  A.Add(0, 2, 1e20);
  A.Add(0, 0, -1e20);
  A.Add(0, 1, 1.0);
  const double x[] = {1.0, 1.0, 1.0};
  EXPECT_EQ(A.RowTimesVector(0, x), 1.0);  // by columns, or from the last on, 1.0 would be lost
}

TEST(SparseMatrix, ClearValuesKeepsTheClaims) {
  SparseMatrix A(2, {2, 1});
  A.Add(0, 1, 5.0);
  A.ReplaceByUnitRow(0);
  A.ClearValues();
  EXPECT_THAT(A.colIndex, ElementsAre(1, -1, -1));
  for (double value : A.values) EXPECT_EQ(value, 0.0);  // unclaimed ones too
}

TEST(SparseMatrix, ClearStructureLeavesRowsWithoutRoom) {
  SparseMatrix A = TwoNodes();
  A.AddBlock(0, 3, Counting(3, 3));
  A.ClearStructure();
  EXPECT_THAT(A.rowStart, testing::Each(0));
  EXPECT_THAT(A.colIndex, testing::Each(-1));
  EXPECT_FATAL(A.Add(1, 0, 1.0), "Wrong Row 1 definition: Row length 0");
  EXPECT_FATAL(A.AddBlock(3, 3, Matriu(3, 3)), "Wrong Row 3 definition: Row length 0");
}

TEST(SparseMatrix, ACopyHasItsOwnValues) {
  SparseMatrix A(2, {1, 1});
  A.Add(0, 0, 1.0);
  SparseMatrix copy = A;
  copy.Add(0, 0, 1.0);
  EXPECT_EQ(A.Read(0, 0), 1.0);
  EXPECT_EQ(copy.Read(0, 0), 2.0);
}

TEST(SparseMatrix, NodeBlocksOffTheDiagonalAreMirrored) {
  SparseMatrix A = TwoNodes();
  const Matriu M = Counting(3, 3);
  A.AddBlock(0, 3, M);
  for (int r = 0; r < 3; ++r) {
    for (int c = 0; c < 3; ++c) {
      EXPECT_EQ(A.Read(r, 3 + c), M(r + 1, c + 1));
      EXPECT_EQ(A.Read(3 + c, r), M(r + 1, c + 1));
      EXPECT_EQ(A.Read(r, c), 0.0);
    }
  }
}

TEST(SparseMatrix, NodeBlocksOnTheDiagonalAreAddedOnceAsTheyAre) {
  SparseMatrix A = TwoNodes();
  A.AddBlock(3, 3, Counting(3, 3));
  EXPECT_EQ(A.Read(3, 4), 2.0);
  EXPECT_EQ(A.Read(4, 3), 4.0);
}

TEST(SparseMatrix, NodeBlocksClaimInTheOrderOfFirstUse) {
  SparseMatrix A = TwoNodes();
  A.AddBlock(0, 3, Counting(3, 3));
  A.AddBlock(0, 0, Counting(3, 3));
  EXPECT_THAT(ClaimsOf(A, 1), ElementsAre(3, 4, 5, 0, 1, 2));
  EXPECT_THAT(ClaimsOf(A, 4), ElementsAre(0, 1, 2));
  EXPECT_EQ(A.blockSize, 3);
}

TEST(SparseMatrix, ZerosOfABlockClaimTheirSlots) {
  SparseMatrix A = TwoNodes();
  Matriu zeros(3, 3);
  zeros.Fill(0.0);
  A.AddBlock(0, 3, zeros);
  EXPECT_THAT(ClaimsOf(A, 0), ElementsAre(3, 4, 5));
}

TEST(SparseMatrix, RefusesABlockThatFindsNoRoom) {
  SparseMatrix A(6, {3, 3, 3, 3, 3, 3}, 3);
  A.AddBlock(0, 0, Counting(3, 3));
  EXPECT_FATAL(A.AddBlock(0, 3, Counting(3, 3)), "Wrong Row 0 definition: Row length 3");
}

/// What a matrix of single columns makes of the same additions.
void ExpectLikeScalars(const SparseMatrix& A, SparseMatrix B) {
  ASSERT_EQ(B.blockSize, 1);
  for (int i = 0; i < A.rows; ++i) {
    EXPECT_EQ(ClaimsOf(A, i), ClaimsOf(B, i)) << "row " << i;
    for (int j = 0; j < A.cols; ++j) EXPECT_EQ(A.Read(i, j), B.Read(i, j)) << i << ", " << j;
  }
}

TEST(SparseMatrix, BlocksOfSeveralNodesClaimLikeTheirEntries) {
  const std::vector<int> room(12, 12);
  SparseMatrix A(12, room, 3), B(12, room);
  for (SparseMatrix* matrix : {&A, &B}) {
    matrix->AddBlock(6, 0, Counting(6, 6));
    matrix->AddBlock(0, 0, Counting(12, 12));
  }
  EXPECT_EQ(A.blockSize, 3);
  ExpectLikeScalars(A, B);
}

TEST(SparseMatrix, PartsOfNodeBlocksSplitTheMatrixAndClaimAlone) {
  const std::vector<int> room(12, 12);
  SparseMatrix A(12, room, 6), B(12, room);
  for (SparseMatrix* matrix : {&A, &B}) {
    matrix->AddBlock(0, 6, Counting(6, 6));
    matrix->Add(2, 2, 8.0);
    matrix->AddBlock(6, 6, Counting(6, 6));
    matrix->AddBlock(3, 1, Counting(2, 4));
    matrix->ReplaceByUnitRow(7);
  }
  EXPECT_EQ(A.blockSize, 1);
  EXPECT_THAT(ClaimsOf(A, 2), ElementsAre(6, 7, 8, 9, 10, 11, 2, 3, 4));
  ExpectLikeScalars(A, B);
}

TEST(SparseMatrix, BlocksThatOverlapTheirMirrorClaimEntryByEntry) {
  const std::vector<int> room(9, 9);
  SparseMatrix A(9, room, 3), B(9, room);
  for (SparseMatrix* matrix : {&A, &B}) matrix->AddBlock(0, 3, Counting(6, 6));
  // Row 3 is touched by the mirror three times before the block itself comes to it.
  EXPECT_THAT(ClaimsOf(A, 3), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8));
  ExpectLikeScalars(A, B);
}

TEST(SparseMatrix, MirrorsThatClaimBeforeTheBlockSplitTheMatrix) {
  const std::vector<int> room(9, 9);
  SparseMatrix A(9, room, 3), B(9, room);
  for (SparseMatrix* matrix : {&A, &B}) matrix->AddBlock(3, 0, Counting(6, 6));
  // The mirror of row 3 claims column 3 of row 4 before the block comes to row 4.
  EXPECT_THAT(ClaimsOf(A, 4), ElementsAre(3, 0, 1, 2, 4, 5, 6, 7, 8));
  ExpectLikeScalars(A, B);
}

TEST(SparseMatrix, BlocksWithoutEntriesDoNothing) {
  SparseMatrix A = TwoNodes();
  A.AddBlock(0, 0, Matriu(0, 3));
  A.AddBlock(0, 0, Matriu(3, 0));
  EXPECT_THAT(A.colIndex, testing::Each(-1));
  EXPECT_EQ(A.blockSize, 3);
}

TEST(SparseMatrix, EntriesOfClaimedNodeBlocksKeepTheBlocks) {
  SparseMatrix A = TwoNodes();
  A.AddBlock(0, 0, Counting(3, 3));
  A.Add(1, 2, 100.0);
  A.SetDiagonal(2);
  EXPECT_EQ(A.blockSize, 3);
  EXPECT_EQ(A.Read(1, 2), 106.0);
  EXPECT_EQ(A.Read(2, 2), 1.0);
}

TEST(SparseMatrix, UnitRowsOfANodeWithoutElementsActOnThemselves) {
  SparseMatrix A = TwoNodes();
  for (int i = 3; i < 6; ++i) A.ReplaceByUnitRow(i);
  const double x[] = {0.0, 0.0, 0.0, 4.0, 5.0, 6.0};
  for (int i = 3; i < 6; ++i) {
    EXPECT_EQ(A.RowTimesVector(i, x), x[i]);
    EXPECT_EQ(A.Diagonal(i), 1.0);
  }
  EXPECT_EQ(A.blockSize, 3);
}

TEST(SparseMatrix, PrintsClaimedEntriesRowByRow) {
  SparseMatrix A(3, {3, 1, 1});
  A.Add(0, 2, 1.5);
  A.Add(0, 0, -2.0);
  A.ReplaceByUnitRow(1);
  std::ostringstream text;
  A.Print(text);
  EXPECT_EQ(text.str(), "(0,2)=1.5    (0,0)=-2\n(1,1)=1\n\n");
}

}  // namespace

}  // namespace kestol
