#include <cmath>
#include <cstring>
#include <sstream>

#include "algebra/Matriu.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/Vectors.h"

namespace kestol {

namespace {

TEST(Matriu, PrintsATableWithRowAndColumnNumbers) {
  std::ostringstream stream;
  stream << Mat(2, 2, {1, -2.5, 1e10, 0.1234567});
  EXPECT_EQ(stream.str(),
            "\n            1          2 "
            "\n 1          1       -2.5 "
            "\n 2      1e+10   0.123457 \n");
}

TEST(Matriu, PrintsAZeroSizeMatrixAsSuch) {
  std::ostringstream stream;
  stream << Matriu(0, 3);
  EXPECT_EQ(stream.str(), "\n\t(Zero size Matriu)\n");
}

TEST(Matriu, WritesEntriesWithTwoBlanksAndALinePerRow) {
  std::ostringstream stream;
  Mat(2, 2, {1, -2.5, 1e10, 0.12345678}).WriteAscii(stream);
  EXPECT_EQ(stream.str(), "1.000000  -2.500000  \n10000000000.000000  0.123457  \n");
}

TEST(Matriu, WritesLargeNumbersInFull) {
  std::ostringstream stream;
  Mat(1, 1, {-std::ldexp(1.0, 1023)}).WriteAscii(stream);
  EXPECT_EQ(stream.str().size(), 1 + 308 + 7 + 2 + 1u);
  EXPECT_EQ(stream.str().substr(0, 10), "-898846567");
}

TEST(Matriu, ReadsRowByRowIntoTheShapeItHas) {
  Matriu M(2, 3);
  std::istringstream stream("1 2\n3 4 5 -6.5 99");
  M.ReadAscii(stream);
  EXPECT_EQ(M, Mat(2, 3, {1, 2, 3, 4, 5, -6.5}));
}

TEST(Matriu, ReadsWhatItWrote) {
  const Matriu M = Mat(2, 2, {1, 0.5, -0.25, 1024});
  std::stringstream stream;
  M.WriteAscii(stream);
  Matriu copy(2, 2);
  copy.ReadAscii(stream);
  EXPECT_EQ(copy, M);
}

TEST(Matriu, ReadRefusesTooFewNumbers) {
  Matriu M(2, 2);
  for (const char* const text : {"", "1 2 3", "1 2 x 4"}) {
    std::istringstream stream(text);
    EXPECT_FATAL(M.ReadAscii(stream), "error: can't ascii read matrix\n");
  }
}

TEST(Matriu, TextOfAnEmptyMatrixIsRefused) {
  Matriu empty(0, 2);
  std::stringstream stream("1 2");
  EXPECT_FATAL(empty.WriteAscii(stream), "error: can't ascii write 0x0 matrix\n");
  EXPECT_FATAL(empty.ReadAscii(stream), "error: can't ascii read 0x0 matrix\n");
}

TEST(Matriu, WritesTheBareDoublesAsBytes) {
  std::ostringstream stream;
  Mat(1, 3, {1, -2, 0.1}).WriteBinary(stream);
  const std::string bytes = stream.str();
  const double expected[] = {1, -2, 0.1};
  ASSERT_EQ(bytes.size(), sizeof expected);
  EXPECT_EQ(std::memcmp(bytes.data(), expected, sizeof expected), 0);
}

TEST(Matriu, BinaryOfAnEmptyMatrixIsRefused) {
  std::ostringstream stream;
  EXPECT_FATAL(Matriu().WriteBinary(stream), "error: can't write 0x0 matrix\n");
}

TEST(Matriu, BinaryReadIsAlwaysRefused) {
  Matriu M(1, 1);
  std::istringstream stream("12345678");
  EXPECT_FATAL(M.ReadBinary(stream), "error: Function 'ReadBinary' should not be used\n");
}

}  // namespace

}  // namespace kestol
