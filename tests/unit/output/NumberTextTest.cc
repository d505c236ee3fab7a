#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <limits>
#include <random>
#include <string>

#include "output/NumberText.h"

namespace kestol {

namespace {

std::string Default(double value) {
  char text[kNumberLength];
  return {text, WriteDefault(text, value)};
}
std::string VectorForm(double value) {
  char text[kNumberLength];
  return {text, WriteVectorForm(text, value)};
}
std::string Integer(std::int64_t value) {
  char text[kNumberLength];
  return {text, WriteInteger(text, value)};
}

std::string Printed(const char* format, double value) {
  char text[64];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

// Both forms of the value and of its negative against printf.
void ExpectAsPrinted(double value) {
  for (const double v : {value, -value}) {
    ASSERT_EQ(Default(v), Printed("%g", v)) << std::hexfloat << v;
    ASSERT_EQ(VectorForm(v), Printed("  %13.6e", v)) << std::hexfloat << v;
  }
}

// The value and the doubles around it.
void ExpectNeighboursAsPrinted(double value) {
  double below = value, above = value;
  ExpectAsPrinted(value);
  for (int i = 0; i < 3; ++i) {
    below = std::nextafter(below, 0.0);
    above = std::nextafter(above, std::numeric_limits<double>::infinity());
    ExpectAsPrinted(below);
    ExpectAsPrinted(above);
  }
}

TEST(NumberText, ZerosKeepTheirSign) {
  EXPECT_EQ(Default(0.0), "0");
  EXPECT_EQ(Default(-0.0), "-0");
  EXPECT_EQ(VectorForm(0.0), "   0.000000e+00");
  EXPECT_EQ(VectorForm(-0.0), "  -0.000000e+00");
}

TEST(NumberText, DefaultFormIsTheShorterOfFixedAndExponentNotation) {
  EXPECT_EQ(Default(1.0), "1");
  EXPECT_EQ(Default(-1000.0), "-1000");
  EXPECT_EQ(Default(0.5), "0.5");
  EXPECT_EQ(Default(-0.0045), "-0.0045");
  EXPECT_EQ(Default(0.0001), "0.0001");
  EXPECT_EQ(Default(0.00001), "1e-05");
  EXPECT_EQ(Default(123456.0), "123456");
  EXPECT_EQ(Default(999999.0), "999999");
  EXPECT_EQ(Default(1000000.0), "1e+06");
  EXPECT_EQ(Default(1234567.0), "1.23457e+06");
  EXPECT_EQ(Default(999999.5), "1e+06");
  EXPECT_EQ(Default(3.14159265), "3.14159");
  EXPECT_EQ(Default(1e100), "1e+100");
}

TEST(NumberText, VectorFormIsThirteenWideBehindTwoBlanks) {
  EXPECT_EQ(VectorForm(1.0), "   1.000000e+00");
  EXPECT_EQ(VectorForm(-1.0), "  -1.000000e+00");
  EXPECT_EQ(VectorForm(-4.5e-3), "  -4.500000e-03");
  EXPECT_EQ(VectorForm(1.0e100), "  1.000000e+100");
  EXPECT_EQ(VectorForm(-1.0e-100), "  -1.000000e-100");
  EXPECT_EQ(VectorForm(9.99999951), "   1.000000e+01");
}

TEST(NumberText, NotANumberAndInfinityAreAsPrinted) {
  ExpectAsPrinted(std::numeric_limits<double>::infinity());
  ExpectAsPrinted(std::numeric_limits<double>::quiet_NaN());
}

TEST(NumberText, TiesGoToTheEvenDigit) {
  EXPECT_EQ(Default(1.000005), Printed("%g", 1.000005));
  EXPECT_EQ(Default(0.5 + 1.0 / 1024 / 1024), "0.500001");
  EXPECT_EQ(Default(12345.25), "12345.2");
  EXPECT_EQ(Default(12345.75), "12345.8");
  EXPECT_EQ(Default(1234565.0), "1.23456e+06");
  EXPECT_EQ(Default(1234575.0), "1.23458e+06");
  EXPECT_EQ(VectorForm(12345678.5 - 3.5), "   1.234568e+07");
  EXPECT_EQ(VectorForm(12345665.0), "   1.234566e+07");
}

TEST(NumberText, TiesOfEveryPowerOfTwoAreAsPrinted) {
  for (int power = 0; power < 60; ++power)
    for (std::int64_t odd = 1; odd < 4000; odd += 2) ExpectAsPrinted(std::ldexp(odd, -power));
}

TEST(NumberText, HalvesOfTheLastDigitAreAsPrinted) {
  std::mt19937_64 random(7);
  for (int i = 0; i < 5000; ++i) {
    const auto digits = static_cast<std::int64_t>(random() % 90000000 + 10000000);
    const double tie = static_cast<double>(digits / 10 * 10 + 5);
    for (const double scale : {1e-12, 1e-7, 1e-3, 1e-2, 1e-1, 1.0, 10.0, 1e4, 1e12})
      ExpectNeighboursAsPrinted(tie * scale);
  }
}

TEST(NumberText, EveryBinadeIsAsPrinted) {
  std::mt19937_64 random(1);
  for (std::uint64_t exponent = 0; exponent < 2047; ++exponent)
    for (int i = 0; i < 64; ++i)
      ExpectAsPrinted(std::bit_cast<double>(exponent << 52 | random() >> 12));
}

TEST(NumberText, RandomBitPatternsAreAsPrinted) {
  std::mt19937_64 random(2);
  for (int i = 0; i < 200000; ++i) ExpectAsPrinted(std::bit_cast<double>(random()));
}

TEST(NumberText, ValuesOfEverydayMagnitudeAreAsPrinted) {
  std::mt19937_64 random(3);
  std::uniform_real_distribution<double> exponent(-12.0, 12.0);
  for (int i = 0; i < 200000; ++i) ExpectAsPrinted(std::pow(10.0, exponent(random)));
}

TEST(NumberText, ShortDecimalsAreAsPrinted) {
  for (int i = 0; i < 100000; ++i)
    for (const double scale : {1e-9, 1e-5, 1e-3, 0.01, 0.1}) ExpectAsPrinted(i * scale);
}

TEST(NumberText, PowersOfTenAndTheirNeighboursAreAsPrinted) {
  for (int power = -323; power <= 308; ++power) {
    const double ten = std::strtod(("1e" + std::to_string(power)).c_str(), nullptr);
    for (const double part : {1.0, 0.5, 0.9999995, 0.99999995, 0.999999, 1.0000005})
      ExpectNeighboursAsPrinted(ten * part);
  }
}

TEST(NumberText, LimitsOfTheDoublesAreAsPrinted) {
  using Limits = std::numeric_limits<double>;
  ExpectAsPrinted(Limits::max());
  ExpectAsPrinted(Limits::min());
  ExpectAsPrinted(std::nextafter(Limits::min(), 0.0));
  for (std::uint64_t i = 1; i < 2000; ++i) ExpectAsPrinted(std::bit_cast<double>(i));
}

TEST(NumberText, SmallIntegersAreAsPrinted) {
  for (int i = 0; i < 1100000; i += 7) ASSERT_EQ(Default(i), Printed("%g", i));
}

TEST(NumberText, IntegersAreDecimal) {
  EXPECT_EQ(Integer(0), "0");
  EXPECT_EQ(Integer(-7), "-7");
  EXPECT_EQ(Integer(2147483648), "2147483648");
  EXPECT_EQ(Integer(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
}

}  // namespace

}  // namespace kestol
