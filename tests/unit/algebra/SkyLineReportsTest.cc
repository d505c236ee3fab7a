#include <limits>
#include <sstream>

#include "algebra/SkyLine.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/FlushCounter.h"

namespace kestol {

namespace {

/// A matrix with all entries stored, the given upper triangle row by row.
SkyLine Full(int n, std::initializer_list<double> upperRows) {
  SkyLine K(n);
  for (int j = 1; j <= n; ++j) K.AddDegreePair(1, j);
  K.Allocate(1);
  const double* next = upperRows.begin();
  for (int i = 1; i <= n; ++i)
    for (int j = i; j <= n; ++j) K.Entry(i, j) = *next++;
  return K;
}

template <class Report>
std::string TextOf(Report report) {
  std::ostringstream stream;
  report(stream);
  return stream.str();
}

TEST(SkyLineReports, StorageReportCountsTheProfile) {
  SkyLine K(600);
  for (int node = 1; node < 200; ++node) K.AddNodePair(node, node + 1, 3);
  K.Allocate(3);
  // 1 + 2 + 3 of the first node, 4 + 5 + 6 of each of the 199 others: 2991 doubles.
  EXPECT_EQ(TextOf([&](auto& s) { K.PrintInfo(s); }),
            "\nINFORMATION ABOUT STIFFNESS MATRIX\n"
            "Sky matrix storage with Txolesky\n"
            "Degrees of freedom= 600\n"
            "Average column size= 4\n"
            "Total number of positions= 2991\n"
            "Amount of memory= 0.0Mb\n\n");
}

TEST(SkyLineReports, MemoryIsInMegabytesOf1048576Bytes) {
  SkyLine K(724);
  for (int j = 1; j <= 724; ++j) K.AddDegreePair(1, j);
  K.Allocate(1);
  // 724 * 725 / 2 = 262450 doubles = 2099600 bytes = 2.0023 megabytes (2.0996 million).
  EXPECT_THAT(TextOf([&](auto& s) { K.PrintInfo(s); }),
              testing::EndsWith("Average column size= 362\n"
                                "Total number of positions= 262450\n"
                                "Amount of memory= 2.0Mb\n\n"));
}

TEST(SkyLineReports, TotalsBeyond32BitsAreCounted) {
  SkyLine K(70000);
  for (int j = 1; j <= 70000; ++j) K.AddDegreePair(1, j);
  EXPECT_THAT(TextOf([&](auto& s) { K.PrintInfo(s); }),
              testing::EndsWith("Average column size= 35000\n"
                                "Total number of positions= 2450035000\n"
                                "Amount of memory= 18692.3Mb\n\n"));
}

TEST(SkyLineReports, StorageReportOfNoDegreesHasAverageZero) {
  SkyLine K(0);
  K.Allocate(3);
  EXPECT_THAT(TextOf([&](auto& s) { K.PrintInfo(s); }),
              testing::HasSubstr("Average column size= 0\nTotal number of positions= 0\n"));
}

TEST(SkyLineReports, StorageReportIsFlushed) {
  SkyLine K = Full(2, {1, 0, 1});
  FlushCounter stream;
  K.PrintInfo(stream);
  EXPECT_GE(stream.Flushes(), 1);
  EXPECT_THAT(stream.Text(), testing::EndsWith("Mb\n\n"));
}

TEST(SkyLineReports, PrintGoesFromTheFirstToTheLastEntryOfEachRow) {
  SkyLine K = Full(4, {2, -1, 0, 0.5,  //
                       0, 0, 0,        //
                       1e-15, 0,       //
                       1e6});
  EXPECT_EQ(TextOf([&](auto& s) { K.Print(s); }),
            "\nprinting SkyLine Matrix size=4x4\n"
            "row=1 from 1 to 4\n"
            "      2      -1       0     0.5 \n"
            "row=2 from 1 to 1     -1 \n"
            "row=3 NONE\n"
            "row=4 from 1 to 4    0.5       0       0 \n"
            "  1e+06 \n");
}

TEST(SkyLineReports, PrintLeavesOutTheLineEndOfADiagonalBeforeTheFirstEntry) {
  SkyLine K = Full(2, {0, 3, 0});
  EXPECT_EQ(TextOf([&](auto& s) { K.Print(s); }),
            "\nprinting SkyLine Matrix size=2x2\n"
            "row=1 from 2 to 2      3 \n"
            "row=2 from 1 to 1      3 \n");
}

TEST(SkyLineReports, FullPrintHasAllEntries) {
  SkyLine K = Full(2, {2, -1, 1.0 / 3});
  EXPECT_EQ(TextOf([&](auto& s) { K.PrintFull(s); }),
            "\nprinting SkyLine Matrix\n"
            "         1       2 "
            "\n\n\n\n\n 1       2      -1 "
            "\n\n\n\n\n 2      -1 0.333333 ");
}

TEST(SkyLineReports, PictureIsAMeshOfOneCellPerEntry) {
  SkyLine K = Full(2, {2, -1.5, 1e7});
  EXPECT_EQ(TextOf([&](auto& s) { K.WriteForVemo(s); }),
            "NumElems NumNodes ElemType\n"
            "4 16 4\n"
            "node x y z\n"
            "1 0 0 0\n2 1 0 0\n3 1 -1 0\n4 0 -1 0\n"
            "5 1 0 0\n6 2 0 0\n7 2 -1 0\n8 1 -1 0\n"
            "9 0 -1 0\n10 1 -1 0\n11 1 -2 0\n12 0 -2 0\n"
            "13 1 -1 0\n14 2 -1 0\n15 2 -2 0\n16 1 -2 0\n"
            "element node1 node2\n"
            "1 1 2 3 4\n2 5 6 7 8\n3 9 10 11 12\n4 13 14 15 16\n"
            "value          4 1.0 Estatic 1 1 0\n"
            "1 2\n2 -1.5\n3 -1.5\n4 1e+07\n");
}

TEST(SkyLineReports, FirstZeroRowIsTheLowestWithoutAnEntry) {
  SkyLine K = Full(4, {1, 0, 0, 0,  //
                       0, 0, 2,     //
                       1e-15, 0,    //
                       0});
  EXPECT_EQ(K.FirstZeroRow(), 3);
}

TEST(SkyLineReports, FirstZeroRowLooksAtEveryRow) {
  for (int zero = 1; zero <= 3; ++zero) {
    SkyLine K = Full(3, {0, 0, 0, 0, 0, 0});
    for (int i = 1; i <= 3; ++i) K.Entry(i, i) = i == zero ? 0.0 : 1.0;
    EXPECT_EQ(K.FirstZeroRow(), zero);
  }
}

TEST(SkyLineReports, FirstZeroRowIsZeroWhenEveryRowHasAnEntry) {
  SkyLine K = Full(2, {0, 2e-15, 0});
  EXPECT_EQ(K.FirstZeroRow(), 0);
}

TEST(SkyLineReports, DependenceOfEqualRowsIsReported) {
  SkyLine K = Full(2, {1, 1, 1});
  EXPECT_FATAL(K.ReportDependence(2), "error: Degree of freedom 2 and 1 are dependent\n");
}

TEST(SkyLineReports, DependenceOfMultiplesIsReported) {
  SkyLine K = Full(3, {1, 7, 2,  //
                       3, 14,    //
                       4});
  EXPECT_FATAL(K.ReportDependence(1), "error: Degree of freedom 1 and 3 are dependent\n");
}

TEST(SkyLineReports, ColumnsThatVanishInBothRowsAreSkipped) {
  SkyLine K = Full(3, {1, 0, 2,  //
                       5, 0,     //
                       4});
  EXPECT_FATAL(K.ReportDependence(3), "error: Degree of freedom 3 and 1 are dependent\n");
}

TEST(SkyLineReports, ZeroRowsAreDependent) {
  SkyLine K = Full(3, {0, 0, 0,  //
                       5, 0,     //
                       0});
  EXPECT_FATAL(K.ReportDependence(1), "error: Degree of freedom 1 and 3 are dependent\n");
}

TEST(SkyLineReports, AnEntryThatOnlyTheFailedRowLacksEndsTheComparison) {
  SkyLine K = Full(2, {0, 1, 1});
  K.ReportDependence(1);
}

TEST(SkyLineReports, RatiosThatDifferAreNotDependent) {
  SkyLine K = Full(2, {1, 1, 1 + 1e-14});
  K.ReportDependence(2);
  K.ReportDependence(1);
}

TEST(SkyLineReports, RatiosWithinTheZeroToleranceAreDependent) {
  const double epsilon = std::numeric_limits<double>::epsilon();
  SkyLine K = Full(2, {1, 1, 1 + 4 * epsilon});  // 0.9e-15 above 1
  EXPECT_FATAL(K.ReportDependence(1), "error: Degree of freedom 1 and 2 are dependent\n");
}

TEST(SkyLineReports, RatiosAreHeldAgainstTheFirstOne) {
  const double epsilon = std::numeric_limits<double>::epsilon();
  // Each ratio of row 2 lies within the tolerance of the one before, the last not of the first.
  SkyLine K = Full(3, {1, 1, 1,                           //
                       1 + 4 * epsilon, 1 + 8 * epsilon,  //
                       5});
  K.ReportDependence(1);
}

TEST(SkyLineReports, TheLowestDependentRowIsNamed) {
  SkyLine K = Full(4, {7, 0, 0, 0,  //
                       1, 2, 3,     //
                       4, 6,        //
                       9});
  EXPECT_FATAL(K.ReportDependence(3), "error: Degree of freedom 3 and 2 are dependent\n");
  EXPECT_FATAL(K.ReportDependence(2), "error: Degree of freedom 2 and 3 are dependent\n");
}

TEST(SkyLineReports, AVanishingRowIsADependentMultipleOfAnother) {
  SkyLine K = Full(2, {1, 0, 0});
  EXPECT_FATAL(K.ReportDependence(1), "error: Degree of freedom 1 and 2 are dependent\n");
}

}  // namespace

}  // namespace kestol
