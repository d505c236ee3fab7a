#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "input/Words.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {

namespace {

using testing::ElementsAre;
using testing::Eq;
using testing::Optional;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// What is left of the text.
std::string Rest(TextInput& input) {
  std::string rest;
  while (input.Peek() != TextInput::kEnd) rest += static_cast<char>(input.Get());
  return rest;
}

// --- words and lines --------------------------------------------------------------------------

TEST(Words, LowerCaseChangesLettersOnly) {
  EXPECT_EQ(LowerCase("ConvertTo6Nodes_[@`{\xc3\x89"), "convertto6nodes_[@`{\xc3\x89");
}

TEST(Words, ReadWordSkipsEveryKindOfWhiteSpace) {
  TextInput input(" \t\r\n\v\fone\r\ntwo");
  EXPECT_EQ(ReadWord(input), "one");
  EXPECT_EQ(ReadWord(input), "two");
  EXPECT_EQ(ReadWord(input), "");
  EXPECT_EQ(ReadWord(input), "");
}

TEST(Words, RestOfLineLosesItsLineEnd) {
  TextInput input("a b\nc\r\n\nd");
  EXPECT_THAT(ReadRestOfLine(input), Optional(Eq("a b")));
  EXPECT_THAT(ReadRestOfLine(input), Optional(Eq("c")));
  EXPECT_THAT(ReadRestOfLine(input), Optional(Eq("")));
  EXPECT_THAT(ReadRestOfLine(input), Optional(Eq("d")));
  EXPECT_EQ(ReadRestOfLine(input), std::nullopt);
}

TEST(Words, RestOfLineOfAnEmptyTextIsNone) {
  TextInput input("");
  EXPECT_EQ(ReadRestOfLine(input), std::nullopt);
  EXPECT_FALSE(SkipRestOfLine(input));
}

TEST(Words, SkipToRecordSkipsSignsAndComments) {
  TextInput input(" : = \t\r\n# a comment 1 2\n#another\n 7 8");
  SkipToRecord(input);
  EXPECT_EQ(Rest(input), "7 8");
}

TEST(Words, SkipToRecordEndsWithTheText) {
  TextInput input(" # comment without line end");
  SkipToRecord(input);
  EXPECT_EQ(input.Peek(), TextInput::kEnd);
}

TEST(Words, CommentLongerThanAnyBufferIsOneComment) {
  TextInput input("#" + std::string(5'000'000, '#') + " 12\n3");
  SkipToRecord(input);
  EXPECT_EQ(Rest(input), "3");
}

TEST(Words, FindWordTakesTheFirstWordThatContainsIt) {
  TextInput input("PROB lem myPROBLEM: rest");
  FindWord(input, "problem");
  EXPECT_EQ(Rest(input), " rest");
}

TEST(Words, FindWordKnowsNoComments) {
  TextInput input("# the bending moment\n7");
  FindWord(input, "end");
  EXPECT_EQ(Rest(input), " moment\n7");
}

TEST(Words, FindWordRefusesTheEndOfTheText) {
  TextInput input("pro blem");
  EXPECT_FATAL(FindWord(input, "problem"), "can't find word ***problem*** in input file\n");
}

TEST(Words, FindWordExactlyWantsTheWholeWordInAnyCase) {
  TextInput input("dimension=2 dimensions Dimension 3");
  FindWordExactly(input, "dimension");
  EXPECT_EQ(Rest(input), " 3");
}

TEST(Words, FindWordExactlyRefusesTheEndOfTheText) {
  TextInput input("dimension=2");
  EXPECT_FATAL(FindWordExactly(input, "dimension"),
               "can't find word ***dimension*** in input file\n");
}

// --- integers ---------------------------------------------------------------------------------

TEST(ReadInteger, TakesASignAndDigitsAndNothingElse) {
  TextInput input("  12 -7 +3x 2147483647 -2147483648 08");
  EXPECT_EQ(ReadInteger(input), 12);
  EXPECT_EQ(ReadInteger(input), -7);
  EXPECT_EQ(ReadInteger(input), 3);
  EXPECT_EQ(input.Get(), 'x');
  EXPECT_EQ(ReadInteger(input), 2147483647);
  EXPECT_EQ(ReadInteger(input), std::numeric_limits<int>::min());
  EXPECT_EQ(ReadInteger(input), 8);
  EXPECT_EQ(ReadInteger(input), std::nullopt);
}

TEST(ReadInteger, LeavesWhatIsNoInteger) {
  for (const char* text : {"end", "-end", "+-5", "--5", ".5", "-", "+", "#1", "x"}) {
    TextInput input(std::string(" ") + text);
    EXPECT_EQ(ReadInteger(input), std::nullopt) << text;
    EXPECT_EQ(Rest(input), text);
  }
}

TEST(ReadInteger, StopsAtThePointOfAReal) {
  TextInput input("1.5e3");
  EXPECT_EQ(ReadInteger(input), 1);
  EXPECT_EQ(Rest(input), ".5e3");
}

TEST(ReadInteger, RefusesWhatDoesNotFit32Bits) {
  for (const char* text : {"2147483648", "-2147483649", "99999999999999999999999999"}) {
    TextInput input{std::string(text)};
    EXPECT_FATAL(ReadInteger(input), "error: number out of range in input file\n");
  }
}

TEST(ReadInteger, CountsNoLeadingZeros) {
  TextInput input(std::string(1000, '0') + "42 -" + std::string(100000, '0') + "7");
  EXPECT_EQ(ReadInteger(input), 42);
  EXPECT_EQ(ReadInteger(input), -7);
}

TEST(ReadInteger, RefusesTooManyDigitsBehindLeadingZeros) {
  TextInput input(std::string(120, '0') + "1234567890123456789");
  EXPECT_FATAL(ReadInteger(input), "error: number out of range in input file\n");
}

// --- reals ------------------------------------------------------------------------------------

struct RealCase {
  const char* text;
  double value;
  const char* rest;
};

TEST(ReadReal, TakesTheLongestNumberAsStrtodDoes) {
  const RealCase cases[] = {
      {"1",          1.0,        ""     },
      {" \r\n\t2.5", 2.5,        ""     },
      {"-3.25e2,",   -325.0,     ","    },
      {"+4.",        4.0,        ""     },
      {".5.5",       0.5,        ".5"   },
      {"1e",         1.0,        "e"    },
      {"1e+",        1.0,        "e+"   },
      {"1e+2",       100.0,      ""     },
      {"1E-2-3",     0.01,       "-3"   },
      {"1+1",        1.0,        "+1"   },
      {"2d3",        2.0,        "d3"   },
      {"0x10",       16.0,       ""     },
      {"-0X1.8p1z",  -3.0,       "z"    },
      {"0x.8",       0.5,        ""     },
      {"0xg",        0.0,        "xg"   },
      {"0x-1",       0.0,        "x-1"  },
      {"0xinf",      0.0,        "xinf" },
      {"0x",         0.0,        "x"    },
      {"inf",        kInfinity,  ""     },
      {"-Infinity1", -kInfinity, "1"    },
      {"infinitx",   kInfinity,  "initx"},
      {"1e999 ",     kInfinity,  " "    },
      {"-1e999",     -kInfinity, ""     },
      {"1e-999",     0.0,        ""     },
      {"4.9e-324",   4.9e-324,   ""     },
      {"1e-310",     1e-310,     ""     },
      {"0x1p99999",  kInfinity,  ""     },
  };
  for (const RealCase& c : cases) {
    TextInput input{std::string(c.text)};
    EXPECT_THAT(ReadReal(input), Optional(c.value)) << c.text;
    EXPECT_EQ(Rest(input), c.rest) << c.text;
    char* end = nullptr;
    EXPECT_EQ(std::strtod(c.text, &end), c.value);
    EXPECT_STREQ(end, c.rest);
  }
}

TEST(ReadReal, ReadsNotANumberInAnyCase) {
  for (const char* text : {"nan", "NaN", "-nan", "+NAN"}) {
    TextInput input{std::string(text)};
    const std::optional<double> value = ReadReal(input);
    ASSERT_TRUE(value.has_value()) << text;
    EXPECT_TRUE(std::isnan(*value)) << text;
  }
}

TEST(ReadReal, LeavesWhatIsNoNumber) {
  for (const char* text : {"end", "-end", "+", "-", ".", "-.e5", "+-1", "-+1", "--1", "e5", "x1"}) {
    TextInput input(std::string(" ") + text);
    EXPECT_EQ(ReadReal(input), std::nullopt) << text;
    EXPECT_EQ(Rest(input), text);
  }
}

TEST(ReadReal, GivesNoneAtTheEndOfTheText) {
  TextInput input(" \n");
  EXPECT_EQ(ReadReal(input), std::nullopt);
}

TEST(ReadReal, NegativeZeroKeepsItsSign) {
  TextInput input("-0");
  EXPECT_TRUE(std::signbit(*ReadReal(input)));
}

TEST(ReadReal, RoundsToTheNearestDouble) {
  TextInput input("0.1 3.141592653589793 123456789012345678901234567890 7.2057594037927933e16");
  EXPECT_EQ(ReadReal(input), 0.1);
  EXPECT_EQ(ReadReal(input), 3.141592653589793);
  EXPECT_EQ(ReadReal(input), 123456789012345678901234567890.0);
  EXPECT_EQ(ReadReal(input), 72057594037927936.0);
}

TEST(ReadReal, NumberOfThousandsOfDigitsIsOneNumber) {
  TextInput input("0." + std::string(5000, '0') + "5e5001 6");
  EXPECT_EQ(ReadReal(input), 5.0);
  EXPECT_EQ(ReadReal(input), 6.0);
}

TEST(ReadReal, ManyGluedNumbersTakeTimeInProportionToTheirLength) {
  std::string text;
  while (text.size() < 4'000'000) text += "+1";
  TextInput input(std::move(text));
  double sum = 0.0;
  while (const std::optional<double> value = ReadReal(input)) sum += *value;
  EXPECT_EQ(sum, 2'000'000.0);
}

// --- pieces of a line -------------------------------------------------------------------------

TEST(TakeReal, TakesTheNumberOffTheFront) {
  std::string_view text = " \t1.5 -2e1x";
  EXPECT_EQ(TakeReal(text), 1.5);
  EXPECT_EQ(TakeReal(text), -20.0);
  EXPECT_EQ(TakeReal(text), std::nullopt);
  EXPECT_EQ(text, "x");
}

TEST(TakeReal, LeavesTheTextWhenThereIsNone) {
  std::string_view text = "  x";
  EXPECT_EQ(TakeReal(text), std::nullopt);
  EXPECT_EQ(text, "  x");
  std::string_view empty;
  EXPECT_EQ(TakeReal(empty), std::nullopt);
}

TEST(TakeReals, WantsAllOfThem) {
  std::string_view text = "1 2 3 4";
  double values[3];
  EXPECT_TRUE(TakeReals(text, values, 3));
  EXPECT_THAT(values, ElementsAre(1.0, 2.0, 3.0));
  EXPECT_EQ(text, " 4");
  EXPECT_FALSE(TakeReals(text, values, 2));
  EXPECT_EQ(text, "");
}

TEST(TakeReals, RefusesWhatIsNotFinite) {
  for (std::string_view text : {"1 inf", "nan 1", "1 -1e999"}) {
    double values[2];
    EXPECT_FALSE(TakeReals(text, values, 2));
  }
}

TEST(TakeDigit, TakesOneDigitOfMany) {
  std::string_view text = " 12";
  EXPECT_EQ(TakeDigit(text), 1);
  EXPECT_EQ(TakeDigit(text), 2);
  EXPECT_EQ(TakeDigit(text), std::nullopt);
}

TEST(TakeDigit, LeavesSignsAndLetters) {
  std::string_view text = " -1";
  EXPECT_EQ(TakeDigit(text), std::nullopt);
  EXPECT_EQ(text, " -1");
}

TEST(IntegerOf, ReadsDecimalOctalAndHexadecimal) {
  EXPECT_EQ(IntegerOf("12"), 12);
  EXPECT_EQ(IntegerOf(" -12x"), -12);
  EXPECT_EQ(IntegerOf("+7"), 7);
  EXPECT_EQ(IntegerOf("017"), 15);
  EXPECT_EQ(IntegerOf("08"), 0);
  EXPECT_EQ(IntegerOf("0x1F"), 31);
  EXPECT_EQ(IntegerOf("-0X10"), -16);
  EXPECT_EQ(IntegerOf("0x"), 0);
  EXPECT_EQ(IntegerOf("0xg"), 0);
  EXPECT_EQ(IntegerOf("1.5"), 1);
}

TEST(IntegerOf, IsZeroForTextThatIsNoNumber) {
  for (const char* text : {"", " ", "E=2e11", "-", "+-5", "--5"}) EXPECT_EQ(IntegerOf(text), 0);
}

TEST(IntegerOf, TakesTheWholeRangeOf32Bits) {
  EXPECT_EQ(IntegerOf("2147483647"), 2147483647);
  EXPECT_EQ(IntegerOf("-2147483648"), std::numeric_limits<int>::min());
  EXPECT_EQ(IntegerOf("-0x80000000"), std::numeric_limits<int>::min());
}

TEST(IntegerOf, RefusesWhatDoesNotFit32Bits) {
  for (const char* text : {"2147483648", "-2147483649", "0x80000000", "999999999999999999999"}) {
    EXPECT_FATAL(IntegerOf(text), "error: number out of range in input file\n");
  }
}

// Keys and values of a text, in brackets.
std::string Pairs(std::string_view text) {
  std::string pairs;
  for (std::string_view key = TakeKey(text); !key.empty(); key = TakeKey(text)) {
    pairs += "[" + std::string(key) + "]";
    pairs += "(" + std::string(TakeValue(text)) + ")";
  }
  return pairs;
}

TEST(KeysAndValues, SignOrBlankMayStandBetweenKeyAndValue) {
  EXPECT_EQ(Pairs("E=2.1e11 nu: 0.3 A 7"), "[E](2.1e11)[nu](0.3)[A](7)");
}

TEST(KeysAndValues, SignWithBlanksOnBothSidesIsTheValue) {
  EXPECT_EQ(Pairs("E = 2e11 x"), "[E](=)[2e11](x)");
  EXPECT_EQ(Pairs("E =2e11"), "[E](=2e11)");
}

TEST(KeysAndValues, SignsInFrontOfAKeyDoNotCount) {
  EXPECT_EQ(Pairs(" : = E=1"), "[E](1)");
  EXPECT_EQ(Pairs(": ="), "");
}

TEST(KeysAndValues, ValueEndsAtWhiteSpaceOnly) {
  EXPECT_EQ(Pairs("a=b=c:d e=f"), "[a](b=c:d)[e](f)");
}

TEST(KeysAndValues, TabAndCarriageReturnAreWhiteSpace) {
  EXPECT_EQ(Pairs("E\t1\tnu=2\r"), "[E](1)[nu](2)");
}

TEST(KeysAndValues, MissingValueIsEmpty) {
  EXPECT_EQ(Pairs("E=1 nu="), "[E](1)[nu]()");
  EXPECT_EQ(Pairs("E=1 nu"), "[E](1)[nu]()");
}

TEST(RealOf, IsTheLongestLeadingNumberOrZero) {
  EXPECT_EQ(RealOf("2e3x"), 2000.0);
  EXPECT_EQ(RealOf("=2e3"), 0.0);
  EXPECT_EQ(RealOf(""), 0.0);
  EXPECT_EQ(RealOf("x"), 0.0);
}

TEST(StartsWith, ComparesOnlyThePrefix) {
  EXPECT_TRUE(StartsWith("units_mesh", "units"));
  EXPECT_FALSE(StartsWith("Units", "units"));
  EXPECT_FALSE(StartsWith("uni", "units"));
  EXPECT_TRUE(StartsWithAnyCase("EULER1", "Euler"));
  EXPECT_FALSE(StartsWithAnyCase("Eule", "Euler"));
  EXPECT_TRUE(StartsWithAnyCase("", ""));
}

}  // namespace

}  // namespace kestol
