#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

#include "programs/common/CsvWriter.h"
#include "programs/common/JsonWriter.h"

namespace kestol {

namespace {

std::string TextOf(double value) {
  char text[kShortestLength];
  return {text, WriteShortest(text, value)};
}

TEST(WriteShortest, IsTheShortestTextThatReadsBack) {
  EXPECT_EQ(TextOf(0.1), "0.1");
  EXPECT_EQ(TextOf(5.0), "5");
  EXPECT_EQ(TextOf(-0.0), "-0");
  EXPECT_EQ(TextOf(1e300), "1e+300");
  EXPECT_EQ(TextOf(1.0 / 3.0), "0.3333333333333333");
  std::mt19937_64 random(3);
  for (int k = 0; k < 20000; ++k) {
    const double value = std::bit_cast<double>(random());
    if (value != value) continue;
    EXPECT_EQ(std::strtod(TextOf(value).c_str(), nullptr), value);
  }
}

TEST(OutputBuffer, KeepsTheOrderAcrossItsLimits) {
  OutputString output;
  std::string wanted;
  const std::string large(OutputBuffer::kLargestRoom + 7, 'x'), small(1000, 'y');
  for (int k = 0; k < 600; ++k) {
    const std::string& part = k % 300 == 150 ? large : small;
    output << part << k;
    wanted += part + std::to_string(k);
  }
  output.WriteZeros(3 * OutputBuffer::kLargestRoom);
  wanted.append(3 * OutputBuffer::kLargestRoom, '\0');
  output << 'z';
  EXPECT_EQ(output.Text(), wanted + 'z');
}

template <class Compose>
std::string Json(Compose compose) {
  OutputString output;
  JsonWriter json(output);
  compose(json);
  return output.Text();
}

TEST(JsonWriter, PutsCommasBetweenMembersAndValues) {
  EXPECT_EQ(Json([](JsonWriter& json) {
              json.BeginObject().Member("a", 1).Member("b", 2.5).Key("c").BeginArray();
              json.Value(true).Null().BeginObject().EndObject().BeginArray().EndArray();
              json.EndArray().Member("d", "text").EndObject();
            }),
            R"({"a": 1, "b": 2.5, "c": [true, null, {}, []], "d": "text"})");
}

TEST(JsonWriter, BeginsLinesWhereItIsTold) {
  EXPECT_EQ(Json([](JsonWriter& json) {
              json.BeginArray();
              json.NewLine().Value(1).NewLine().Value(2).EndArray();
            }),
            "[\n1,\n2]");
}

TEST(JsonWriter, WhatIsNotFiniteIsNull) {
  const double values[] = {1.0, std::numeric_limits<double>::infinity(),
                           -std::numeric_limits<double>::infinity(),
                           std::numeric_limits<double>::quiet_NaN()};
  EXPECT_EQ(Json([&](JsonWriter& json) { json.Value(std::span<const double>(values)); }),
            "[1, null, null, null]");
}

TEST(JsonWriter, AZeroKeepsItsSign) {
  const double values[] = {0.0, -0.0};
  EXPECT_EQ(Json([&](JsonWriter& json) { json.Value(std::span<const double>(values)); }),
            "[0, -0.0]");
}

TEST(JsonWriter, EscapesWhatTextsMayNotHold) {
  EXPECT_EQ(Json([](JsonWriter& json) { json.Value("a\"b\\c\n\x01\x1f"); }),
            "\"a\\\"b\\\\c\\u000a\\u0001\\u001f\"");
}

TEST(JsonWriter, BytesThatAreNoTextBecomeReplacementCharacters) {
  const std::string replaced = "\xef\xbf\xbd";
  const auto of = [](std::string_view text) {
    return Json([&](JsonWriter& json) { json.Value(text); });
  };
  EXPECT_EQ(of("\xc3\xa4 \xe2\x82\xac \xf0\x9f\x8c\x89"),
            "\"\xc3\xa4 \xe2\x82\xac \xf0\x9f\x8c\x89\"");
  EXPECT_EQ(of("\xe4"), '"' + replaced + '"');                                // Latin-1
  EXPECT_EQ(of("\xc0\x80"), '"' + replaced + replaced + '"');                 // overlong
  EXPECT_EQ(of("\xed\xa0\x80"), '"' + replaced + replaced + replaced + '"');  // surrogate
  EXPECT_EQ(of("\xf4\x90\x80\x80"), '"' + replaced + replaced + replaced + replaced + '"');
  EXPECT_EQ(of("\xe2\x82"), '"' + replaced + replaced + '"');  // cut
}

TEST(CsvWriter, QuotesWhatNeedsIt) {
  OutputString output;
  CsvWriter csv(output);
  csv.Field("plain").Field("a,b").Field("say \"x\"").Field("two\nlines").EndRow();
  csv.Field(1).Field(0.5).Field(std::numeric_limits<double>::quiet_NaN());
  const double values[] = {2.0, 3.0};
  csv.Fields(values).EndRow();
  EXPECT_EQ(output.Text(), "plain,\"a,b\",\"say \"\"x\"\"\",\"two\nlines\"\n1,0.5,,2,3\n");
}

TEST(CsvWriter, BytesThatAreNoTextBecomeReplacementCharacters) {
  OutputString output;
  CsvWriter(output).Field(std::string_view("a\xff\0\x1b\tb\xc3\xa4", 8)).EndRow();
  EXPECT_EQ(output.Text(), "a\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd\tb\xc3\xa4\n");
}

}  // namespace

}  // namespace kestol
